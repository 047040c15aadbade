#pragma once
// The data path: the order in which a screen layer's cabinets are chained
// onto processor ports.

#include <cstdint>
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

} // namespace Snake
} // namespace Vantora_TesserinePro
