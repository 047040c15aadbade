#include "panels/settings_base_window.h"

#include "app/main_screen.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/look.h"
#include "panels/widgets/small_widgets.h"

#include <QAbstractSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace Vantora_TesserinePro {

pointer<boxes_layer> SettingsFromLayer::current_boxes_layer() const {
    return m_global ? m_global->current_boxes_layer() : nullptr;
}

void SettingsFromLayer::mark_changed(boxes_layer& layer) {
    layer.set_changed();
}

bool SettingsFromLayer::takes_tab(QWidget* widget) {
    return qobject_cast<QLineEdit*>(widget) || qobject_cast<QAbstractSpinBox*>(widget) ||
           dynamic_cast<CheckboxWithFocus*>(widget);
}

void SettingsFromLayer::add_to_tab_order(QWidget* widget) {
    if (MainScreen* screen = MainScreen::of(widget)) screen->add_to_tab_order(widget);
}

void SettingsBaseWindow::setTextBoxesFixedSize(const QSize& size) {
    // Only the palette's own fields: those inside a row group keep theirs.
    for (QLineEdit* edit : m_body->findChildren<QLineEdit*>(Qt::FindDirectChildrenOnly))
        edit->setFixedSize(size);
}

SettingsBaseWindow::SettingsBaseWindow(QWidget* parent, Global* global, const QString& title)
    : QFrame(parent), SettingsFromLayer(global) {
    setObjectName(title.trimmed());
    setAttribute(Qt::WA_NoMousePropagation);
    // Opaque: what lies under a palette need not be painted.
    setAttribute(Qt::WA_OpaquePaintEvent);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);

    m_title_bar = new QWidget(this);
    m_title_bar->setFixedHeight(look::title_bar_height);
    m_title_bar->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    auto* bar = new QHBoxLayout(m_title_bar);
    bar->setContentsMargins(8, 0, 2, 0);
    m_title = new QLabel(title, m_title_bar);
    m_title->setFont(look::sans(14, true));
    look::set_text_color(m_title, look::title_text);
    m_title->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_close = new QPushButton("x", m_title_bar);
    m_close->setObjectName("close");
    m_close->setFixedSize(20, 20);
    m_close->setFocusPolicy(Qt::NoFocus);
    bar->addStretch(1);
    bar->addWidget(m_title);
    bar->addStretch(1);
    bar->addWidget(m_close);
    // The "x" hides and keeps the stored flag, so the palette comes back
    // at the next change of layer if it is stored as shown.
    connect(m_close, &QPushButton::clicked, this, [this] { setVisible(false); });

    m_body = new QWidget(this);
    column->addWidget(m_title_bar);
    column->addWidget(m_body, 1);
}

QString SettingsBaseWindow::title() const {
    return m_title->text();
}

MainScreen* SettingsBaseWindow::main_screen() const {
    return MainScreen::of(const_cast<SettingsBaseWindow*>(this));
}

void SettingsBaseWindow::toggle_stored_visibility() {
    m_stored_visible = !m_stored_visible;
    if (MainScreen* screen = main_screen()) {
        screen->settings_save_layout();
        screen->update_settings_visibility();
    }
}

bool SettingsBaseWindow::palette_visible() const {
    if (m_global && !m_global->palettes_shown) return false;
    return isVisible();
}

void SettingsBaseWindow::post_follow_up() {
    if (!isVisible()) {
        m_follow_up_stale = true;
        return;
    }
    if (m_follow_up_posted) return;
    m_follow_up_posted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_follow_up_posted = false;
            follow_up();
        },
        Qt::QueuedConnection);
}

void SettingsBaseWindow::follow_up_now() {
    m_follow_up_stale = !isVisible();
    if (!m_follow_up_stale) follow_up();
}

void SettingsBaseWindow::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    if (!m_follow_up_stale) return;
    m_follow_up_stale = false;
    follow_up();
}

void SettingsBaseWindow::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), look::palette_border);
    p.fillRect(rect().adjusted(1, 1, -1, -1), look::palette_fill);
    p.fillRect(QRect(1, 1, width() - 2, look::title_bar_height), look::title_bar);
}

void SettingsBaseWindow::mousePressEvent(QMouseEvent* event) {
    raise();
    if (event->button() == Qt::LeftButton && event->position().y() < look::title_bar_height + 1) {
        m_dragging = true;
        m_grab = event->position().toPoint();
    }
    event->accept();
}

void SettingsBaseWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragging) return;
    move(mapToParent(event->position().toPoint()) - m_grab);
}

void SettingsBaseWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (m_dragging && event->button() == Qt::LeftButton) {
        m_dragging = false;
        // Dropped outside, it would be lost, and saved so.
        if (MainScreen* screen = main_screen()) screen->keep_within_reach(this);
        if (m_moved) m_moved();
    }
}

} // namespace Vantora_TesserinePro
