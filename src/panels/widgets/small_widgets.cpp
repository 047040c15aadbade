#include "panels/widgets/small_widgets.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionButton>

namespace Vantora_TesserinePro {

QMessageBox* window_modal_box(QMessageBox::Icon icon, const QString& title, const QString& text,
                              QWidget* parent, const char* name,
                              QMessageBox::StandardButtons buttons) {
    auto* box = new QMessageBox(icon, title, text, buttons, parent);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    return box;
}

CheckboxWithFocus::CheckboxWithFocus(QWidget* parent, const QString& caption)
    : QCheckBox(caption, parent) {
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QCheckBox::clicked, this, [this](bool checked) {
        if (m_callback) m_callback(checked);
    });
}

void CheckboxWithFocus::set_checked(bool value) {
    const QSignalBlocker quiet(this);
    setChecked(value);
}

void CheckboxWithFocus::paintEvent(QPaintEvent* event) {
    QCheckBox::paintEvent(event);
    if (!hasFocus()) return;
    // A red frame around the box shows where Tab has landed.
    QStyleOptionButton option;
    initStyleOption(&option);
    const QRect box = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
    QPainter p(this);
    p.setPen(QPen(Qt::red, 1));
    p.drawRect(box.adjusted(-1, -1, 0, 0));
}

void CheckboxWithFocus::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        // On press and on repeat, as the user holds it.
        click();
        event->accept();
        return;
    }
    QCheckBox::keyPressEvent(event);
}

void CheckboxWithFocus::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        event->accept();
        return;
    }
    QCheckBox::keyReleaseEvent(event);
}

W_Image::W_Image(QWidget* parent, int width, int height, const QString& resource)
    : QWidget(parent) {
    setFixedSize(width, height);
    if (!resource.isEmpty()) m_image = QImage(resource);
}

void W_Image::set_image(const QImage& image) {
    m_image = image;
    update();
}

void W_Image::paintEvent(QPaintEvent*) {
    if (m_image.isNull()) return;
    QPainter p(this);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(rect(), m_image);
}

NOP::NOP(QWidget* parent, int width, int height) : QWidget(parent) {
    setFixedSize(width, height);
}

void WidgetWithReverse::move_last_child_to_first() {
    if (auto* box = qobject_cast<QBoxLayout*>(layout())) {
        if (box->count() < 2) return;
        QLayoutItem* last = box->takeAt(box->count() - 1);
        box->insertItem(0, last);
        return;
    }
    const QList<QWidget*> kids = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    if (kids.size() < 2) return;
    kids.back()->stackUnder(kids.front());
}

} // namespace Vantora_TesserinePro
