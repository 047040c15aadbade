#include "cli/cli.h"

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"

#include <cstdio>
#include <iostream>
#include <stdexcept>

namespace Vantora_TesserinePro::cli {

namespace {

// One line: the route that drawing the layer would use, whether or not the
// layer draws it.
std::string route_line(const boxes_layer& layer, long long index) {
    std::string line = "layer " + std::to_string(index) + " \"" + layer.get_name() + "\":";
    try {
        const Snake::route route = Snake::make_route(layer);
        if (!route.empty()) line += ' ' + Snake::route_text(route);
    } catch (const std::runtime_error& e) {
        line += std::string(" error: ") + e.what();
    }
    return line + '\n';
}

// One layer of "route --json": its ports and how full each is.
std::string loads_json(const boxes_layer& layer, long long index) {
    const Snake::layer_loads loads = Snake::port_loads(layer);
    std::string o = "{\"index\": " + std::to_string(index) +
                    ", \"name\": " + json_string(layer.get_name()) + ", \"type\": \"" + loads.type +
                    "\", \"limit\": " + std::to_string(loads.limit) +
                    ", \"failed\": " + (loads.failed ? "true" : "false") +
                    ", \"message\": " + json_string(loads.message) + ", \"ports\": [";
    const bool novastar = std::string(loads.type) == "novastar";
    for (const auto& p : loads.ports) {
        char percent[32] = "null";
        if (p.percent) std::snprintf(percent, sizeof percent, "%.2f", *p.percent);
        o += std::string(p.port == 1 ? "" : ", ") + "{\"port\": " + std::to_string(p.port) +
             ", \"first\": [" + std::to_string(p.first_column) + ", " +
             std::to_string(p.first_row) + "], \"last\": [" + std::to_string(p.last_column) + ", " +
             std::to_string(p.last_row) + "], \"cabinets\": " + std::to_string(p.cabinets) +
             ", \"pixels\": " + std::to_string(p.pixels) +
             (novastar ? ", \"area\": " + std::to_string(p.area) : "") +
             ", \"percent\": " + percent + ", \"over\": " + (p.over ? "true" : "false") + "}";
    }
    return o + "]}";
}

} // namespace

int cmd_route(const args& a) {
    parsed_args p = parse_args("route", a, {"--json"}, false, true);
    if (p.done) return *p.done;
    const bool json = !p.flags.empty();
    if (p.positional.size() != 1) return usage_error("route takes one FILE", "route");
    layer_choice layers;
    if (auto status = layers.parse(p, "route")) return *status;
    const std::string& file = p.positional[0];
    Global global;
    if (int status = load_for_request(global, file)) return status;
    if (auto status = layers.check(global, file)) return *status;

    if (json) std::cout << "{\"layers\": [";
    bool first = true;
    layers.for_each(global, [&](const boxes_layer& screen, long long i) {
        if (json)
            std::cout << (first ? "\n  " : ",\n  ") << loads_json(screen, i);
        else
            std::cout << route_line(screen, i);
        first = false;
    });
    if (json) std::cout << "\n]}\n";
    std::cout << std::flush;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
