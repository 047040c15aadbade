#include "plan/cabinet_chains.h"

#include "datapath/snake.h"
#include "plan/power_plan.h"

#include <exception>

namespace Vantora_TesserinePro::plan {

namespace {

// Numbers the chains of a route in order; a chain with no cabinet takes no
// number.
void number_chains(const Snake::route& route, cabinet_chains& out, std::size_t& count) {
    bool any = false;
    Snake::walk_chains(
        route, [](const Snake::box&) { return false; },
        [&](const Snake::box& b) {
            out.chain_of[b.id()] = count;
            any = true;
        },
        [&] {
            if (any) ++count;
            any = false;
        });
}

} // namespace

cabinet_chains chains_of(const boxes_layer& layer, color_by_mode mode) {
    cabinet_chains out;
    std::size_t count = 0;
    if (mode == color_by_mode::port) {
        Snake::route route;
        try {
            route = Snake::make_route(layer);
        } catch (const std::exception&) {
            return out;
        }
        number_chains(route, out, count);
        for (std::size_t k = 0; k < count; ++k)
            out.names.push_back("P" + std::to_string(k + 1));
    } else if (mode == color_by_mode::circuit) {
        const power_plan power = plan_power(layer, true);
        if (power.failed) return out;
        number_chains(power.route, out, count);
        for (std::size_t k = 0; k < count; ++k)
            out.names.push_back(
                "C" + std::to_string(k < power.circuits.size() ? power.circuits[k].number : k + 1));
    }
    return out;
}

const char* color_by_name(color_by_mode mode) {
    switch (mode) {
    case color_by_mode::port:
        return "port";
    case color_by_mode::circuit:
        return "circuit";
    case color_by_mode::chequer:
        break;
    }
    return "chequer";
}

bool color_by_from_name(const std::string& name, color_by_mode& mode) {
    for (color_by_mode m : {color_by_mode::chequer, color_by_mode::port, color_by_mode::circuit})
        if (name == color_by_name(m)) {
            mode = m;
            return true;
        }
    return false;
}

} // namespace Vantora_TesserinePro::plan
