#include "canvas/live_show.h"

#include "document/global.h"

#include <algorithm>

namespace Vantora_TesserinePro {

namespace {

// The moving line's pace: one pixel a tick, about a display frame.
constexpr int line_interval_ms = 16;

const char* pattern_name(test_pattern p) {
    switch (p) {
    case test_pattern::bars:
        return "Colour Bars";
    case test_pattern::grey:
        return "Grey Steps (16)";
    case test_pattern::crosshatch:
        return "Cabinet Crosshatch";
    case test_pattern::red:
        return "Solid Red";
    case test_pattern::green:
        return "Solid Green";
    case test_pattern::blue:
        return "Solid Blue";
    case test_pattern::white:
        return "Solid White";
    case test_pattern::black:
        return "Solid Black";
    case test_pattern::moving_line:
        return "Moving Line";
    default:
        return "";
    }
}

} // namespace

live_show::live_show(Global& workspace) : m_workspace(workspace) {
    m_auto.setInterval(auto_interval_ms);
    connect(&m_auto, &QTimer::timeout, this, [this] { step(1); });
    m_line.setInterval(line_interval_ms);
    connect(&m_line, &QTimer::timeout, this, [this] { advance_line(); });
}

void live_show::changed() {
    m_dirty = true;
    if (m_pattern == test_pattern::moving_line && !m_identifying)
        m_line.start();
    else
        m_line.stop();
    if (on_change) on_change();
    if (on_status) on_status(status_text());
}

void live_show::show_pattern(test_pattern p) {
    m_identifying = false;
    m_auto.stop();
    m_pattern = p;
    m_line_step = 0;
    changed();
}

void live_show::identify(identify_kind kind) {
    if (m_identifying && m_kind == kind) return show_pattern(test_pattern::map);
    m_identifying = true;
    m_kind = kind;
    m_step = 0;
    m_pattern = test_pattern::map;
    changed();
}

void live_show::step(int delta) {
    if (!m_identifying) return;
    const int steps = std::max(1, identify_steps(m_workspace, m_kind));
    m_step = ((m_step + delta) % steps + steps) % steps;
    changed();
}

void live_show::set_auto(bool on) {
    if (on && m_identifying)
        m_auto.start();
    else
        m_auto.stop();
    if (on_status) on_status(status_text() + (is_auto() ? " (auto)" : ""));
}

void live_show::advance_line() {
    ++m_line_step;
    if (on_change) on_change();
}

std::string live_show::status_text() const {
    if (!m_identifying) return pattern_name(m_pattern);
    if (m_kind == identify_kind::cabinets) return "Cabinets";
    const int steps = identify_steps(m_workspace, m_kind);
    return std::string(m_kind == identify_kind::ports ? "Port " : "Circuit ") +
           std::to_string(m_step + 1) + " of " + std::to_string(steps);
}

const image* live_show::frame(std::uint64_t frame_generation, std::uint64_t& generation) {
    if (!is_active()) return nullptr;
    if (m_dirty || frame_generation != m_frame_generation) {
        m_cabinets = wall_cabinets(m_workspace);
        if (m_identifying)
            draw_identify_frame(m_frame, m_workspace, m_cabinets, m_kind, m_step);
        else
            draw_pattern_frame(m_frame, m_workspace, m_cabinets, m_pattern, m_line_step);
        m_drawn_line_step = m_line_step;
        m_frame_generation = frame_generation;
        m_dirty = false;
        ++m_generation;
    } else if (m_pattern == test_pattern::moving_line && m_drawn_line_step != m_line_step) {
        // Only the line moves: put the old one out and draw the new one.
        draw_moving_line(m_frame, m_cabinets, m_drawn_line_step, 0xff000000);
        draw_moving_line(m_frame, m_cabinets, m_line_step, 0xffffffff);
        m_drawn_line_step = m_line_step;
        ++m_generation;
    }
    generation = m_generation;
    return &m_frame;
}

bool live_show_key(live_show& shown, int key) {
    if (shown.is_identifying() && (key == Qt::Key_Left || key == Qt::Key_Right)) {
        shown.step(key == Qt::Key_Left ? -1 : 1);
        return true;
    }
    if (shown.is_active() && key == Qt::Key_Escape) {
        shown.show_pattern(test_pattern::map);
        return true;
    }
    return false;
}

} // namespace Vantora_TesserinePro
