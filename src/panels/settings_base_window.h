#pragma once
// The frame every palette shares: a floating box over the canvas with a
// title bar that drags it and an "x" that hides it, and the interface by
// which the main screen refills a palette from the current screen layer.

#include "core/types.h"

#include <QFrame>

#include <functional>

class QLabel;
class QPushButton;

namespace Vantora_TesserinePro {

class Global;
class boxes_layer;
class MainScreen;

class SettingsFromLayer {
  public:
    explicit SettingsFromLayer(Global* global) : m_global(global) {}
    virtual ~SettingsFromLayer() = default;
    // Fills the controls from layer without running their callbacks.
    virtual void get_settings_from_layer(const pointer<boxes_layer>&) {}
    // The current layer when it is a screen layer, otherwise null.
    pointer<boxes_layer> current_boxes_layer() const;
    Global* global() const { return m_global; }

    // Puts the text fields, number fields and check boxes among the
    // children of parent into the Tab chain, in order, going into children
    // of the container types named.
    template <class... Containers> static void add_children_to_tab_order(QWidget* parent);
    // Whether Tab stops at this widget.
    static bool takes_tab(QWidget* widget);
    static void add_to_tab_order(QWidget* widget);

  protected:
    // A control's callback that writes one field of the current screen
    // layer and marks the layer changed; with no screen layer it does
    // nothing.
    template <class Write> auto writes(Write write) {
        return [this, write](auto value) {
            if (const pointer<boxes_layer> layer = current_boxes_layer()) {
                write(*layer, value);
                mark_changed(*layer);
            }
        };
    }
    static void mark_changed(boxes_layer& layer);

    Global* m_global;
};

class SettingsBaseWindow : public QFrame, public SettingsFromLayer {
  public:
    SettingsBaseWindow(QWidget* parent, Global* global, const QString& title);

    QString title() const;
    // Where the palette's own controls go.
    QWidget* body() const { return m_body; }

    // The visibility the layout file keeps; the palette shows by it while
    // a screen layer (or none) is current.
    bool stored_visible() const { return m_stored_visible; }
    void set_stored_visible(bool value) { m_stored_visible = value; }
    // The show commands of the menu: flips the stored flag, saves the
    // layout and shows or hides the palette accordingly.
    void toggle_stored_visibility();
    // Whether the palette shows: false while palettes step aside for a
    // drag, whatever the widget says.
    bool palette_visible() const;
    // Gives the text fields that are direct children of the body this size.
    void setTextBoxesFixedSize(const QSize& size);

    // Called when the palette was moved by its title bar.
    void set_moved_callback(std::function<void()> callback) { m_moved = std::move(callback); }

    // Asks for the palette's follow-up (a line that any edit may change):
    // done once per turn of the event loop however many edits ask, and
    // only while the palette is seen; a hidden palette catches up when it
    // shows.
    void post_follow_up();
    // The follow-up at once, or when the palette shows.
    void follow_up_now();

  protected:
    virtual void follow_up() {}
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    MainScreen* main_screen() const;

    QWidget* m_title_bar;
    QLabel* m_title;
    QPushButton* m_close;
    QWidget* m_body;
    bool m_stored_visible = true;
    bool m_follow_up_posted = false;
    bool m_follow_up_stale = false;
    std::function<void()> m_moved;
    // The drag of the title bar: the pointer's offset in the palette.
    QPoint m_grab;
    bool m_dragging = false;
};

template <class... Containers> void SettingsFromLayer::add_children_to_tab_order(QWidget* parent) {
    for (QObject* child : parent->children()) {
        auto* w = qobject_cast<QWidget*>(child);
        if (!w) continue;
        if (takes_tab(w))
            add_to_tab_order(w);
        else if ((dynamic_cast<Containers*>(w) || ...))
            add_children_to_tab_order<Containers...>(w);
    }
}

} // namespace Vantora_TesserinePro
