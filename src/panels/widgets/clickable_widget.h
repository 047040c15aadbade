#pragma once
// The clickable pieces the menus and lists are built of: a widget with a
// click, a double click and a drag that can swap or drop on others of its
// group, and the same with the three background colours of an entry.

#include <QColor>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <string>

namespace Vantora_TesserinePro {

class Global;
class ClickableWidget;

// A parent that knows which of its items is selected or hovered (a list, a
// menu bar) and wants to hear when the pointer enters one.
class item_container {
  public:
    virtual ~item_container() = default;
    virtual bool is_item_selected(const QWidget* item) const = 0;
    virtual bool is_item_hover(const QWidget* item) const { return item->underMouse(); }
    // Marked beside selected or not: a screen of the selection.
    virtual bool is_item_marked(const QWidget*) const { return false; }
    virtual void on_item_hover(QWidget*) {}
};

class ClickableWidget : public QWidget {
  public:
    using handler = std::function<bool(ClickableWidget* target, ClickableWidget* dragged)>;

    ClickableWidget(QWidget* parent, Global* global);

    void set_callback(std::function<bool()> callback) { m_click = std::move(callback); }
    void setDblCallback(std::function<bool()> callback) { m_double_click = std::move(callback); }
    // Called on the widget a drag ends on, and on each widget a drag enters.
    void set_drop_handler(handler h) { m_drop = std::move(h); }
    void set_swap_handler(handler h) { m_swap = std::move(h); }
    // Widgets of one group swap and drop onto each other only.
    void set_drag_group(int group) { m_group = group; }
    int drag_group() const { return m_group; }
    // In drag mode the widget follows the pointer once it moved more than
    // a few pixels, and a release after that is no click.
    void setUseDrag(bool value) { m_use_drag = value; }
    bool is_pressed() const { return m_pressed; }

    // Runs the click callback; false when there is none.
    bool run_click() { return m_click ? m_click() : false; }

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

    Global* m_global;

  private:
    // The clickable widget of this group under a point of the screen.
    ClickableWidget* peer_at(const QPointF& global_position) const;
    void set_palettes_shown(bool shown);

    std::function<bool()> m_click, m_double_click;
    handler m_drop, m_swap;
    int m_group = 0;
    bool m_use_drag = false;
    bool m_pressed = false;
    // Squared movement since the press, and the movement itself.
    std::uint64_t m_moved_squared = 0;
    QPoint m_moved;
    QPointF m_last;
    ClickableWidget* m_entered = nullptr;
};

class WidgetWithBackground : public ClickableWidget {
  public:
    WidgetWithBackground(QWidget* parent, const QColor& normal, const QColor& hover,
                         const QColor& selected, Global* global, void* user_data = nullptr);

    void changeColors(const QColor& normal, const QColor& hover, const QColor& selected);
    void* getUserdata() const { return m_user_data; }
    const std::string& getMenuName() const { return m_menu_name; }
    void set_menu_name(const std::string& name) { m_menu_name = name; }
    const std::string& getAccessKey() const { return m_access_key; }
    void setAccessKey(const std::string& key) { m_access_key = key; }
    void killFocus() { clearFocus(); }
    // Runs the click callback and gives its result; 0 without one.
    int exec() { return run_click() ? 1 : 0; }
    // The colour it shows now.
    QColor current_color() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    item_container* container() const;

    QColor m_normal, m_hover, m_selected;
    void* m_user_data;
    std::string m_menu_name;
    std::string m_access_key;
};

} // namespace Vantora_TesserinePro
