#pragma once
// The power plan of a screen layer as the crew cables it: which cabinets hang
// on which circuit, which phase each circuit takes and how full its breaker
// is. Circuits are sized from each cabinet's full watts, with a derating.

#include "datapath/snake.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class boxes_layer;

namespace plan {

// One circuit: a chain of cabinets on one breaker, in chain order.
struct circuit {
    int number = 0; // from 1, within its layer
    int phase = 1;  // 1 for L1, 2 for L2, 3 for L3
    std::uint32_t first_column = 0, first_row = 0, last_column = 0, last_row = 0;
    std::int64_t cabinets = 0;
    std::int64_t quarter_watts = 0; // a half cabinet draws half
    double amperes = 0;             // at the layer's line-to-ground voltage
    double percent = 0;             // of the breaker rating

    double watts() const { return double(quarter_watts) / 4.0; }
};

struct power_plan {
    bool failed = false;
    std::string message; // why it failed, naming the layer and the value
    // What one circuit may carry: rating x derate / 100 x volts, whole watts.
    std::int64_t capacity_watts = 0;
    int phases = 1; // the phase conductors circuits take in turn
    std::vector<circuit> circuits;
    double phase_amperes[3] = {0, 0, 0};
    std::int64_t cabinets = 0;
    std::int64_t quarter_watts = 0;
    // The chains as drawn: kept only when asked for.
    Snake::route route;

    double watts() const { return double(quarter_watts) / 4.0; }
    double amperes() const { return phase_amperes[0] + phase_amperes[1] + phase_amperes[2]; }
    // The circuit nearest its rating, or null when there is none.
    const circuit* fullest() const;
};

// The plan of one layer. Excluded cabinets draw nothing and are on no
// circuit. A rating or voltage of 0 or less, a derate outside 1-100, negative
// watts or a cabinet that alone passes a circuit's capacity fail the plan.
power_plan plan_power(const boxes_layer& layer, bool keep_route = false);

// "L1", "L2", "L3".
std::string phase_name(int phase);
// Watts as few digits as they need: "1000", "1000.5", "1000.25".
std::string watts_text(std::int64_t quarter_watts);
// "Circuits: 7 · L1 31.3 A · L2 31.3 A · L3 20.9 A · fullest 92 %", or the
// failure.
std::string circuits_line(const power_plan& p);

} // namespace plan
} // namespace Vantora_TesserinePro
