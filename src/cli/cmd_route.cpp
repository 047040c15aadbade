#include "cli/cli.h"

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"

#include <charconv>
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
    long long only = -1;
    if (p.has_layer) {
        const char* first = p.layer.data();
        const char* last = first + p.layer.size();
        auto [end, ec] = std::from_chars(first, last, only);
        if (p.layer.empty() || ec != std::errc() || end != last || only < 0)
            return usage_error(
                "--layer needs a layer index (0 is the bottom of the stack), not \"" + p.layer +
                    "\"",
                "route");
    }
    const std::string& file = p.positional[0];
    Global global;
    if (int status = load_for_request(global, file)) return status;

    if (only >= 0) {
        const auto layer = only < global.get_layers_count() ? global.get_layer(only) : nullptr;
        if (!layer)
            return file_error(file, "has no layer " + std::to_string(only) + " (it has " +
                                        std::to_string(global.get_layers_count()) + ")");
        if (layer->get_layer_type() != e_layer_boxes)
            return file_error(file, "layer " + std::to_string(only) + " is not a screen layer");
    }
    if (json) std::cout << "{\"layers\": [";
    bool first = true;
    for (long long i = 0; i < global.get_layers_count(); ++i) {
        if (only >= 0 && i != only) continue;
        const auto layer = global.get_layer(i);
        if (!layer || layer->get_layer_type() != e_layer_boxes) continue;
        const auto& screen = static_cast<const boxes_layer&>(*layer);
        if (json)
            std::cout << (first ? "\n  " : ",\n  ") << loads_json(screen, i);
        else
            std::cout << route_line(screen, i);
        first = false;
    }
    if (json) std::cout << "\n]}\n";
    std::cout << std::flush;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
