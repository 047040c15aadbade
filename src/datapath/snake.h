#pragma once
// The data path: the order in which a screen layer's cabinets are chained
// onto processor ports.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class boxes_layer;

namespace Snake {

struct box {
    std::uint32_t column = 0;
    std::uint32_t row = 0;
    float x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    std::uint8_t starts_port = 0;
    std::uint8_t start_known = 0;
    std::uint8_t ends_port = 0;
    std::uint8_t end_known = 0;

    bool is_port_start() const { return start_known && starts_port; }
    bool is_port_end() const { return end_known && ends_port; }
    std::uint32_t id() const { return (column << 16) | (row & 0xFFFF); }
};

using run = std::vector<box>;
using route = std::vector<box>;

// Pixel count: ceil of the area in single precision, truncated.
int pixel_count(const box& b);

// The route that drawing the data path uses: the custom path when
// CustomDataPath is set, else the "Novastar" or "Other Type" router.
// Throws std::runtime_error(limit_failure_text) when a "Novastar" port cannot
// hold a line, and std::runtime_error(too_many_cabinets_text) for a computed
// route of a wall above max_route_cabinets.
route make_route(const boxes_layer& layer);

extern const char* const limit_failure_text;
extern const char* const too_many_cabinets_text;
// Far beyond any real wall (a route of them is 1.8 GB), yet small enough
// that a mistyped grid size cannot exhaust memory.
constexpr std::uint64_t max_route_cabinets = std::uint64_t(1) << 26;

// The route as "(COLUMN,ROW)" words joined by spaces, with S after a port's
// first box and E after its last.
std::string route_text(const route& r);

// How full one port is: its cabinets from first to last in route order.
struct port_load {
    int port = 0; // from 1, within its layer
    std::uint32_t first_column = 0, first_row = 0, last_column = 0, last_row = 0;
    std::int64_t cabinets = 0;
    std::int64_t pixels = 0;
    std::int64_t area = 0; // of the bounding rectangle, "Novastar" only
    // Of the limit, in per cent; none when the limit is not positive.
    std::optional<double> percent;
    bool over = false;
    // What the limit is measured against: the area for "Novastar" (its
    // router holds both the sum and the rectangle under the limit), else the
    // pixels.
    std::int64_t load = 0;
};

// The ports of a layer as drawing would split them: a port ends at a box
// marked as its end. Hidden cabinets (skipped and excluded) count nothing.
struct layer_loads {
    const char* type = "novastar"; // "novastar", "other" or "custom"
    std::int64_t limit = 0;
    bool failed = false;
    std::string message; // the router's failure
    std::vector<port_load> ports;
    // The port with the largest load, or null when there is none.
    const port_load* fullest() const;
};
layer_loads port_loads(const boxes_layer& layer);

} // namespace Snake
} // namespace Vantora_TesserinePro
