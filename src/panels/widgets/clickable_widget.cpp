#include "panels/widgets/clickable_widget.h"

#include "app/main_screen.h"
#include "document/global.h"
#include "panels/look.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

namespace Vantora_TesserinePro {

ClickableWidget::ClickableWidget(QWidget* parent, Global* global)
    : QWidget(parent), m_global(global) {}

ClickableWidget* ClickableWidget::peer_at(const QPointF& global_position) const {
    for (QWidget* w = QApplication::widgetAt(global_position.toPoint()); w; w = w->parentWidget())
        if (auto* c = dynamic_cast<ClickableWidget*>(w))
            if (c != this && c->m_group == m_group) return c;
    return nullptr;
}

void ClickableWidget::set_palettes_shown(bool shown) {
    if (MainScreen* screen = MainScreen::of(this)) screen->set_palettes_shown(shown);
}

void ClickableWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    event->accept();
    m_pressed = true;
    m_moved_squared = 0;
    m_moved = QPoint();
    m_last = event->globalPosition();
    m_entered = nullptr;
    // Palettes step aside while something is pressed, so that a drag is
    // not hidden under them.
    if (!m_use_drag && (m_click || m_double_click)) set_palettes_shown(false);
}

void ClickableWidget::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed || !(event->buttons() & Qt::LeftButton)) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    const QPointF now = event->globalPosition();
    const QPoint d = (now - m_last).toPoint();
    m_last = now;
    if (m_use_drag) {
        m_moved_squared += std::uint64_t(d.x() * d.x() + d.y() * d.y());
        // Below 26 squared units the widget stays: a shaky click.
        if (m_moved_squared >= 26) {
            m_moved += d;
            move(pos() + d);
        }
    }
    // Entering another widget of the group may swap the two.
    ClickableWidget* peer = peer_at(now);
    if (peer != m_entered) {
        m_entered = peer;
        if (peer && peer->m_swap) peer->m_swap(peer, this);
    }
}

void ClickableWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_pressed) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    event->accept();
    m_pressed = false;
    if (m_use_drag) {
        const bool dragged = m_moved_squared > 25;
        m_moved_squared = 0;
        if (!m_moved.isNull()) move(pos() - m_moved);
        m_moved = QPoint();
        if (!dragged && rect().contains(event->position().toPoint())) run_click();
        return;
    }
    set_palettes_shown(true);
    // A release on a peer that takes drops is a drop; on any other (its
    // own row, say) it stays a click.
    ClickableWidget* peer = peer_at(event->globalPosition());
    if (peer && peer->m_drop) {
        peer->m_drop(peer, this);
        return;
    }
    if (rect().contains(event->position().toPoint())) run_click();
}

void ClickableWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!m_double_click) {
        // Qt sends a double click in place of the second press.
        mousePressEvent(event);
        return;
    }
    event->accept();
    m_pressed = false;
    m_double_click();
}

// ---------------------------------------------------------------- entries

WidgetWithBackground::WidgetWithBackground(QWidget* parent, const QColor& normal,
                                           const QColor& hover, const QColor& selected,
                                           Global* global, void* user_data)
    : ClickableWidget(parent, global), m_normal(normal), m_hover(hover), m_selected(selected),
      m_user_data(user_data) {
    setAttribute(Qt::WA_Hover);
}

void WidgetWithBackground::changeColors(const QColor& normal, const QColor& hover,
                                        const QColor& selected) {
    m_normal = normal;
    m_hover = hover;
    m_selected = selected;
    update();
}

item_container* WidgetWithBackground::container() const {
    return dynamic_cast<item_container*>(parentWidget());
}

QColor WidgetWithBackground::current_color() const {
    const item_container* c = container();
    if (c && c->is_item_selected(this)) return m_selected;
    if (c ? c->is_item_hover(this) : underMouse()) return m_hover;
    return m_normal;
}

void WidgetWithBackground::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), current_color());
    if (const item_container* c = container(); c && c->is_item_marked(this))
        p.fillRect(QRect(0, 0, 4, height()), look::selection);
}

void WidgetWithBackground::enterEvent(QEnterEvent* event) {
    ClickableWidget::enterEvent(event);
    if (item_container* c = container()) c->on_item_hover(this);
    update();
}

void WidgetWithBackground::leaveEvent(QEvent* event) {
    ClickableWidget::leaveEvent(event);
    update();
}

} // namespace Vantora_TesserinePro
