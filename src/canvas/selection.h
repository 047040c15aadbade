#pragma once
// The screens selected for editing many at once, and what the canvas and
// the keys do with them. Alt is the one modifier the canvas's own rules
// leave free (Shift moves a screen, Control knocks cabinets out or moves a
// picture), so: Alt+click on a screen adds or removes it, Alt+drag from
// where no screen is draws a rectangle that adds the screens it touches;
// Ctrl+A takes every visible screen and Escape lets all go. The current
// layer stays the one the palettes show; the selection stands beside it,
// is no part of the document, and changing it alone is no undo step.

#include "core/types.h"

#include <QPoint>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class QKeyEvent;
class QLabel;
class QTimer;

namespace Vantora_TesserinePro {

class Global;
class MainImpact;
class app_layer;
class project;
namespace nano2d {
class context;
}

// The set, kept by layer so that it follows a screen moved in the stack. A
// layer that undo replaced by its copy (same place, same count) stays in.
class screen_selection {
  public:
    explicit screen_selection(const Global& global) : m_global(global) {}
    // Bottom of the stack first.
    std::vector<long long> indices() const;
    // The order of the layer list: top of the stack first.
    std::vector<long long> list_order() const;
    bool contains(long long index) const;
    bool empty() const { return indices().empty(); }
    // Screen layers only; anything else is left out.
    void set(const std::vector<long long>& indices);
    void toggle(long long index);
    void clear() { set({}); }

  private:
    struct entry {
        std::weak_ptr<app_layer> layer;
        long long index;
    };
    void resolve() const;
    const Global& m_global;
    mutable std::vector<entry> m_entries;
    mutable std::weak_ptr<project> m_project;
    mutable long long m_count = 0;
};

// What the Arrange menu and palette do, in the menu's order.
enum class arrange_command {
    align_left,
    align_right,
    align_top,
    align_bottom,
    align_horizontal_centres,
    align_vertical_centres,
    distribute_horizontally,
    distribute_vertically,
    pack,
};
// The menu's caption of a command, also the name of its undo step.
const char* arrange_caption(arrange_command command);

class selection_tool {
  public:
    selection_tool(MainImpact& canvas, Global& global);
    ~selection_tool();
    selection_tool(const selection_tool&) = delete;
    selection_tool& operator=(const selection_tool&) = delete;

    screen_selection& screens() { return m_screens; }
    const screen_selection& screens() const { return m_screens; }
    // Adds the screen at index or takes it out (Ctrl+click in the list).
    void toggle(long long index);

    // --- the canvas's mouse, p in widget coordinates; each says whether
    // it took the event
    bool press(const QPoint& p, std::uint64_t modifiers);
    bool motion(const QPoint& p);
    bool release();
    // A Shift drag of a selected screen moves the whole selection (of two
    // or more) as one block, snapping as one.
    bool moves_with(const app_layer& layer) const;
    // Where the block goes for the drag of layer to target (unsnapped): the
    // shift of every selected screen.
    QPoint block_shift(const app_layer& layer, const QPoint& target) const;
    void end_block_move(const app_layer& layer, const QPoint& target);
    // Outline and handles on each selected screen, at the place a block
    // move would give it, and the rectangle being drawn.
    void draw(nano2d::context* context);

    // --- keys: true when the key was used. held is the modifier groups,
    // name the key's name as shortcuts spell it ("A", "V").
    bool key(const QKeyEvent& event, const std::string& name, std::uint64_t held);

    // --- commands on the selection
    void arrange(arrange_command command);
    // Pack's gap, as the Arrange palette gives it.
    int pack_gap = 0;
    void select_all();
    void clear();
    void nudge(long long dx, long long dy);
    void copy();
    void paste();
    void duplicate();
    void remove();

    // The status line over the canvas's bottom left corner (and over the
    // palettes): a message that goes after a few seconds.
    void say(const QString& text);
    QLabel* status_line() const { return m_status; }
    // Called whenever the selection changes (the Arrange palette counts it).
    void set_changed_callback(std::function<void()> callback) { m_on_change = std::move(callback); }

  private:
    // The selection changed: the canvas and the list show it.
    void changed();
    // The document changed: the step's name, the palettes and the lists.
    void edited(const string& step);
    // "Screen2" for one, "3 Screens" for more.
    string what(const std::vector<long long>& indices) const;

    MainImpact& m_canvas;
    Global& m_global;
    screen_selection m_screens;
    // The rectangle being drawn, in raster pixels.
    bool m_drawing = false;
    QPoint m_from, m_to;
    QLabel* m_status = nullptr;
    QTimer* m_status_timer = nullptr;
    std::function<void()> m_on_change;
};

} // namespace Vantora_TesserinePro
