#include "plan/power_plan.h"

#include "core/string_format.h"
#include "document/boxes_layer.h"

#include <algorithm>
#include <climits>

namespace Vantora_TesserinePro::plan {

const circuit* power_plan::fullest() const {
    const auto it = std::max_element(circuits.begin(), circuits.end(),
                                     [](const auto& a, const auto& b) { return a.percent < b.percent; });
    return it == circuits.end() ? nullptr : &*it;
}

std::string phase_name(int phase) {
    return "L" + std::to_string(phase);
}

std::string watts_text(std::int64_t quarter_watts) {
    // Never negative: negative watts fail the plan.
    static const char* const fractions[] = {"", ".25", ".5", ".75"};
    return std::to_string(quarter_watts / 4) + fractions[quarter_watts % 4];
}

namespace {

// Why the inputs cannot make a plan; empty when they can.
std::string refusal(const boxes_layer& layer) {
    const std::string name = "\"" + layer.get_name() + "\": ";
    if (layer.CircuitAmps <= 0)
        return name + string_format("the circuit rating is %d A; it must be above 0.",
                                    layer.CircuitAmps);
    if (layer.PowerVolts <= 0)
        return name + string_format("the line voltage is %d V; it must be above 0.",
                                    layer.PowerVolts);
    if (layer.CircuitDerate < 1 || layer.CircuitDerate > 100)
        return name + string_format("the derate is %d %%; it must be 1 to 100.",
                                    layer.CircuitDerate);
    if (layer.PowerWatts < 0)
        return name + string_format("a cabinet draws %d W; it cannot be below 0.",
                                    layer.PowerWatts);
    return {};
}

} // namespace

power_plan plan_power(const boxes_layer& layer, bool keep_route) {
    power_plan out;
    out.phases = std::clamp(layer.PowerPhases, 1, 3);
    if (std::string why = refusal(layer); !why.empty()) {
        out.failed = true;
        out.message = std::move(why);
        return out;
    }
    // Whole watts, rounded down, and held where quarter watts of it still
    // fit: no rating a file can hold overflows this.
    const __int128 capacity =
        __int128(layer.CircuitAmps) * layer.CircuitDerate * layer.PowerVolts / 100;
    out.capacity_watts = std::int64_t(std::min<__int128>(capacity, INT64_MAX / 4));
    Snake::route r;
    try {
        r = Snake::power_route(layer, layer.power_pattern(), std::uint64_t(out.capacity_watts) * 4);
    } catch (const std::runtime_error& e) {
        out.failed = true;
        out.message = "\"" + layer.get_name() + "\": " + e.what();
        return out;
    }

    // One circuit a chain end, counted first: a wall of many small circuits
    // would otherwise spend its time growing the list.
    out.circuits.reserve(std::size_t(std::count_if(
        r.begin(), r.end(), [](const Snake::box& b) { return b.is_port_end(); })));
    const Snake::quarter_watts weigh(layer);
    std::int64_t heaviest = 0;
    circuit c;
    const auto add = [&](const Snake::box& b) {
        const std::int64_t w = weigh(b);
        heaviest = std::max(heaviest, w);
        if (c.cabinets == 0) {
            c.first_column = b.column;
            c.first_row = b.row;
        }
        c.last_column = b.column;
        c.last_row = b.row;
        ++c.cabinets;
        c.quarter_watts += w;
    };
    const double volts = double(layer.PowerVolts);
    const auto close = [&] {
        if (c.cabinets == 0) return;
        c.number = int(out.circuits.size()) + 1;
        c.phase = (c.number - 1) % out.phases + 1;
        c.amperes = c.watts() / volts;
        c.percent = 100.0 * c.amperes / double(layer.CircuitAmps);
        out.phase_amperes[c.phase - 1] += c.amperes;
        out.cabinets += c.cabinets;
        out.quarter_watts += c.quarter_watts;
        out.circuits.push_back(c);
        c = {};
    };
    Snake::walk_chains(
        r, [](const Snake::box&) { return false; }, add, close);
    if (heaviest > out.capacity_watts * 4) {
        power_plan refused;
        refused.failed = true;
        refused.phases = out.phases;
        refused.capacity_watts = out.capacity_watts;
        refused.message = "\"" + layer.get_name() + "\": " +
                          string_format("a cabinet draws %s W, more than one circuit carries "
                                        "(%d A x %d %% x %d V = %lld W).",
                                        watts_text(heaviest).c_str(), layer.CircuitAmps,
                                        layer.CircuitDerate, layer.PowerVolts,
                                        (long long)out.capacity_watts);
        return refused;
    }
    if (keep_route) out.route = std::move(r);
    return out;
}

std::string circuits_line(const power_plan& p) {
    if (p.failed) return p.message;
    std::string line = string_format("Circuits: %zu", p.circuits.size());
    for (int k = 0; k < p.phases; ++k)
        line += string_format(" \u00b7 %s %.1f A", phase_name(k + 1).c_str(), p.phase_amperes[k]);
    if (const circuit* f = p.fullest()) line += string_format(" \u00b7 fullest %.0f %%", f->percent);
    return line;
}

} // namespace Vantora_TesserinePro::plan
