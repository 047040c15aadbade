#pragma once
// What the live output shows instead of the map while the crew checks the
// wall: a test pattern, or one port (circuit) at a time to identify, or
// every cabinet's ID. The frames come from the core (render/test_patterns)
// so that `render --pattern` and `--identify` write the same pixels.

#include "core/types.h"
#include "render/test_patterns.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class Global;

class live_show : public QObject {
  public:
    explicit live_show(Global& workspace);

    // --- what shows
    // A pattern; test_pattern::map shows the map again and ends identify.
    void show_pattern(test_pattern p);
    // Starts identifying at the first port (circuit); the same kind again
    // ends it, and the map shows again.
    void identify(identify_kind kind);
    // The next (delta 1) or previous step, round the end.
    void step(int delta);
    // Steps every auto_interval_ms on its own.
    void set_auto(bool on);
    static constexpr int auto_interval_ms = 2000;

    bool is_active() const { return m_identifying || m_pattern != test_pattern::map; }
    bool is_identifying() const { return m_identifying; }
    bool is_auto() const { return m_auto.isActive(); }
    test_pattern pattern() const { return m_pattern; }
    identify_kind kind() const { return m_kind; }
    int current_step() const { return m_step; }
    // "Port 3 of 8", "Circuit 1 of 4", "Cabinets", "Colour Bars"..., or empty
    // for the map.
    std::string status_text() const;

    // The frame to show instead of the map, null for the map. It is made
    // again when the document's frame (frame_generation) or the choice
    // changed; generation then moves (above any frame's own).
    const image* frame(std::uint64_t frame_generation, std::uint64_t& generation);

    // Called after every change of what shows (the live output repaints);
    // on_status with the status text when the choice or the step changed.
    std::function<void()> on_change;
    std::function<void(const std::string&)> on_status;

  private:
    void changed();
    void advance_line();

    Global& m_workspace;
    test_pattern m_pattern = test_pattern::map;
    bool m_identifying = false;
    identify_kind m_kind = identify_kind::ports;
    int m_step = 0;
    long long m_line_step = 0, m_drawn_line_step = -1;
    QTimer m_auto, m_line;

    image m_frame;
    std::vector<wall_cabinet> m_cabinets;
    bool m_dirty = true;
    std::uint64_t m_frame_generation = 0;
    std::uint64_t m_generation = std::uint64_t(1) << 62;
};

// Left and Right step a running identify, Escape ends a pattern or an
// identify; true when the key was taken.
bool live_show_key(live_show& shown, int key);

} // namespace Vantora_TesserinePro
