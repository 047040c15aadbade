#include "cli/cli.h"

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "plan/processors.h"

#include <cstdio>
#include <iostream>

namespace Vantora_TesserinePro::cli {

namespace {

// The route with " unit U port P" after each chain's last cabinet (and the
// backup's port after that), chains counted as the port loads count them.
std::string route_with_units(const plan::layer_plan& l, const boxes_layer& layer) {
    std::string text;
    std::size_t chain = 0;
    bool open = false;
    const auto close = [&] {
        if (!open) return;
        if (chain < l.chains.size()) {
            const plan::chain_plan& c = l.chains[chain];
            text +=
                " unit " + std::to_string(c.main->unit) + " port " + std::to_string(c.main->port);
            if (c.backup)
                text += " backup unit " + std::to_string(c.backup->unit) + " port " +
                        std::to_string(c.backup->port);
        }
        ++chain;
        open = false;
    };
    for (const Snake::box& b : l.route) {
        text += (text.empty() ? "" : " ") + Snake::route_text({b});
        if (!layer.should_skip_box(b)) open = true;
        if (b.is_port_end()) close();
    }
    close();
    return text;
}

// One line: the route that drawing the layer would use, whether or not the
// layer draws it.
std::string route_line(const plan::layer_plan& l, const boxes_layer& layer) {
    std::string line = "layer " + std::to_string(l.index) + " \"" + l.name + "\":";
    if (!l.routed) return line + " error: " + l.message + '\n';
    if (l.route.empty()) return line + '\n';
    const bool units = !l.chains.empty() && l.chains[0].main;
    return line + ' ' + (units ? route_with_units(l, layer) : Snake::route_text(l.route)) + '\n';
}

std::string port_json(const std::optional<plan::port_ref>& p) {
    return p ? "{\"unit\": " + std::to_string(p->unit) +
                   ", \"unit_port\": " + std::to_string(p->port) + "}"
             : "null";
}

// One layer of "route --json": its ports and how full each is; a layer that
// uses the processor keys also gets its effective limit and the unit ports.
std::string loads_json(const plan::layer_plan& l) {
    std::string o =
        "{\"index\": " + std::to_string(l.index) + ", \"name\": " + json_string(l.name) +
        ", \"type\": \"" + l.type + "\", \"limit\": " + std::to_string(l.limit) +
        (l.processor_keys ? ", \"effective_limit\": " + std::to_string(l.effective_limit) : "") +
        ", \"failed\": " + (l.failed ? "true" : "false") +
        ", \"message\": " + json_string(l.message) + ", \"ports\": [";
    const bool novastar = std::string(l.type) == "novastar";
    for (const plan::chain_plan& c : l.chains) {
        const Snake::port_load& p = c.load;
        char percent[32] = "null";
        if (p.percent) std::snprintf(percent, sizeof percent, "%.2f", *p.percent);
        o += std::string(p.port == 1 ? "" : ", ") + "{\"port\": " + std::to_string(p.port) +
             ", \"first\": [" + std::to_string(p.first_column) + ", " +
             std::to_string(p.first_row) + "], \"last\": [" + std::to_string(p.last_column) + ", " +
             std::to_string(p.last_row) + "], \"cabinets\": " + std::to_string(p.cabinets) +
             ", \"pixels\": " + std::to_string(p.pixels) +
             (novastar ? ", \"area\": " + std::to_string(p.area) : "") +
             ", \"percent\": " + percent + ", \"over\": " + (p.over ? "true" : "false");
        if (l.processor_keys)
            o += ", \"unit\": " + (c.main ? std::to_string(c.main->unit) : "null") +
                 ", \"unit_port\": " + (c.main ? std::to_string(c.main->port) : "null") +
                 ", \"backup\": " + port_json(c.backup);
        o += "}";
    }
    return o + "]}";
}

} // namespace

int cmd_route(const args& a) {
    return report_layers(a, "route", [](const Global& global, bool json) -> layer_part {
        // The text draws each route; JSON needs the loads only.
        auto plan =
            std::make_shared<const plan::processor_plan>(plan::plan_processors(global, !json));
        return [plan, json](const boxes_layer& screen, long long i) {
            const plan::layer_plan& l = *plan->layer(i);
            return json ? loads_json(l) : route_line(l, screen);
        };
    });
}

} // namespace Vantora_TesserinePro::cli
