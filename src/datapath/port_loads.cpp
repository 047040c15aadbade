// How full each processor port of a layer is: the figures a technician needs
// before a show, taken from the same route that drawing uses.

#include "datapath/snake.h"
#include "document/boxes_layer.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace Vantora_TesserinePro::Snake {

const port_load* layer_loads::fullest() const {
    const auto it = std::max_element(ports.begin(), ports.end(),
                                     [](const auto& a, const auto& b) { return a.load < b.load; });
    return it == ports.end() ? nullptr : &*it;
}

namespace {

// Truncated to whole pixels, held in a range no product of two can leave.
std::int64_t whole(float v) {
    if (!std::isfinite(v)) return 0;
    return std::int64_t(std::clamp(double(v), -1e12, 1e12));
}

} // namespace

layer_loads port_loads(const boxes_layer& layer) {
    return port_loads(layer, layer.SnakeLimit);
}

layer_loads port_loads(const boxes_layer& layer, std::int64_t pixel_limit, route* kept) {
    layer_loads out;
    const bool novastar = !layer.CustomDataPath && layer.DataDiagramType == 0;
    out.type = layer.CustomDataPath ? "custom" : novastar ? "novastar" : "other";
    out.limit = pixel_limit;
    route r;
    try {
        r = make_route(layer, pixel_limit);
    } catch (const std::runtime_error& e) {
        out.failed = true;
        out.message = e.what();
        return out;
    }

    port_load port;
    // The rectangle in whole pixels, as the "Novastar" router measures it.
    std::int64_t x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    auto close = [&] {
        if (port.cabinets == 0) return;
        port.port = int(out.ports.size()) + 1;
        if (novastar) port.area = (x1 - x0) * (y1 - y0);
        port.load = novastar ? std::max(port.area, port.pixels) : port.pixels;
        // A negative limit is no limit at all to the routers; 0 holds nothing.
        port.over = out.limit >= 0 && port.load > out.limit;
        if (out.limit > 0) port.percent = 100.0 * double(port.load) / double(out.limit);
        out.ports.push_back(port);
        port = {};
    };
    const auto add = [&](const box& b) {
        const std::int64_t bx0 = whole(b.x0), by0 = whole(b.y0);
        const std::int64_t bx1 = whole(b.x1), by1 = whole(b.y1);
        if (port.cabinets == 0) {
            port.first_column = b.column;
            port.first_row = b.row;
            x0 = bx0, y0 = by0, x1 = bx1, y1 = by1;
        }
        x0 = std::min(x0, bx0), y0 = std::min(y0, by0);
        x1 = std::max(x1, bx1), y1 = std::max(y1, by1);
        port.last_column = b.column;
        port.last_row = b.row;
        ++port.cabinets;
        port.pixels += pixel_count(b);
    };
    walk_chains(
        r, [&](const box& b) { return layer.should_skip_box(b); }, add, close);
    if (kept) *kept = std::move(r);
    return out;
}

} // namespace Vantora_TesserinePro::Snake
