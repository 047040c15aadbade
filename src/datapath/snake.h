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
// The same with another pixel limit in place of SnakeLimit: a port's limit
// at the layer's colour depth and frame rate.
route make_route(const boxes_layer& layer, std::int64_t pixel_limit);

// The power path: the layer's cabinets chained onto circuits by the same
// engine and the same "Other Type" rule, each cabinet weighing its quarter
// watts and a chain closing where the next would pass capacity (quarter
// watts too). pattern is read as SnakeMode is. Excluded cabinets are on no
// circuit. Never fails, except on a wall above max_route_cabinets.
route power_route(const boxes_layer& layer, int pattern, std::uint64_t capacity);
// What a cabinet of the layer draws, in quarter watts: PowerWatts, half of it
// for a half cabinet, a quarter for one halved both ways.
// Which columns and rows of a screen are cut in half: its first and last,
// as the layer's half flags say. The one rule the power plan and the bill
// of materials weigh cabinets by.
class half_cuts {
  public:
    explicit half_cuts(const boxes_layer& layer);
    bool column(std::int64_t c) const {
        return (cut_first_column && c == 0) || (cut_last_column && c == last_column);
    }
    bool row(std::int64_t r) const {
        return (cut_first_row && r == 0) || (cut_last_row && r == last_row);
    }

  private:
    std::int64_t last_column, last_row;
    bool cut_first_column, cut_last_column, cut_first_row, cut_last_row;
};

class quarter_watts {
  public:
    explicit quarter_watts(const boxes_layer& layer);
    std::int64_t operator()(const box& b) const {
        return full / (cuts.column(b.column) ? 2 : 1) / (cuts.row(b.row) ? 2 : 1);
    }

  private:
    std::int64_t full;
    half_cuts cuts;
};

// Walks a route chain by chain, as drawing splits it: on_box for each box
// not skipped, and on_end where a chain ends (after a box marked as an end,
// and after the last box; the chain may then be empty).
template <class Skip, class OnBox, class OnEnd>
void walk_chains(const route& r, Skip skip, OnBox on_box, OnEnd on_end) {
    for (const box& b : r) {
        if (!skip(b)) on_box(b);
        if (b.is_port_end()) on_end();
    }
    on_end();
}

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
// The loads of a route made with pixel_limit, measured against it; the
// route itself goes to kept when one is given.
layer_loads port_loads(const boxes_layer& layer, std::int64_t pixel_limit, route* kept = nullptr);

} // namespace Snake
} // namespace Vantora_TesserinePro
