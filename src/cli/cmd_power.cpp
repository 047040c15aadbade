#include "cli/cli.h"

#include "core/string_format.h"
#include "plan/power_plan.h"

#include <iostream>

namespace Vantora_TesserinePro::cli {

namespace {

std::string cabinet(std::uint32_t column, std::uint32_t row) {
    return "(" + std::to_string(column) + "," + std::to_string(row) + ")";
}

// A layer's circuits, a line each, then its phases and totals; a failed plan
// in one line, as route writes a failed route.
std::string plan_text(const boxes_layer& layer, long long index) {
    const plan::power_plan p = plan::plan_power(layer);
    std::string text = "layer " + std::to_string(index) + " \"" + layer.get_name() + "\":";
    if (p.failed) return text + " error: " + p.message + "\n";
    text += string_format(" %d A x %d %% x %d V = %lld W a circuit\n", layer.CircuitAmps,
                          layer.CircuitDerate, layer.PowerVolts, (long long)p.capacity_watts);
    for (const plan::circuit& c : p.circuits)
        text += string_format("  circuit %d %s %s-%s %lld cabinets %s W %.2f A %.2f %%\n", c.number,
                              plan::phase_name(c.phase).c_str(),
                              cabinet(c.first_column, c.first_row).c_str(),
                              cabinet(c.last_column, c.last_row).c_str(), (long long)c.cabinets,
                              plan::watts_text(c.quarter_watts).c_str(), c.amperes, c.percent);
    text += " ";
    for (int k = 0; k < p.phases; ++k)
        text += string_format(" %s %.2f A", plan::phase_name(k + 1).c_str(), p.phase_amperes[k]);
    return text + string_format("\n  total %zu circuits %lld cabinets %s W %.2f A\n",
                                p.circuits.size(), (long long)p.cabinets,
                                plan::watts_text(p.quarter_watts).c_str(), p.amperes());
}

std::string plan_json(const boxes_layer& layer, long long index) {
    const plan::power_plan p = plan::plan_power(layer);
    std::string o =
        "{\"index\": " + std::to_string(index) + ", \"name\": " + json_string(layer.get_name()) +
        ", \"failed\": " + (p.failed ? "true" : "false") +
        ", \"message\": " + json_string(p.message) +
        ", \"capacity_watts\": " + std::to_string(p.capacity_watts) + ", \"circuits\": [";
    for (const plan::circuit& c : p.circuits)
        o += string_format("%s{\"circuit\": %d, \"phase\": \"%s\", \"first\": [%u, %u], "
                           "\"last\": [%u, %u], \"cabinets\": %lld, \"watts\": %s, "
                           "\"amperes\": %.2f, \"percent\": %.2f}",
                           c.number == 1 ? "" : ", ", c.number, plan::phase_name(c.phase).c_str(),
                           c.first_column, c.first_row, c.last_column, c.last_row,
                           (long long)c.cabinets, plan::watts_text(c.quarter_watts).c_str(),
                           c.amperes, c.percent);
    o += "], \"phases\": {";
    for (int k = 0; !p.failed && k < p.phases; ++k)
        o += string_format("%s\"%s\": %.2f", k ? ", " : "", plan::phase_name(k + 1).c_str(),
                           p.phase_amperes[k]);
    return o + string_format("}, \"cabinets\": %lld, \"watts\": %s, \"amperes\": %.2f}",
                             (long long)p.cabinets, plan::watts_text(p.quarter_watts).c_str(),
                             p.amperes());
}

} // namespace

int cmd_power(const args& a) {
    return report_layers(a, "power", [](const Global&, bool json) -> layer_part {
        return [json](const boxes_layer& screen, long long i) {
            return json ? plan_json(screen, i) : plan_text(screen, i);
        };
    });
}

} // namespace Vantora_TesserinePro::cli
