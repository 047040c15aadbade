#pragma once
// Drawing a screen layer's data path: the route's lines, arrows and port
// labels, and the colours of ports.

#include "core/color.h"
#include "datapath/snake.h"

#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class boxes_layer;
namespace nano2d {
class context;
}

// A colour by number from a fixed table of clearly different colours; any
// index is taken, negative ones too.
color::color _020GetColor(long long index);
// The colour of port index when each port has its own colour.
color::color get_indexed_data_path_color(long long index);
// How many different colours the table holds before it repeats.
int indexed_color_count();

// Marker colours of the data path.
constexpr std::uint32_t port_start_color_word = 0xFF00FF00; // green
constexpr std::uint32_t port_end_color_word = 0xFF0000FF;   // red
constexpr std::uint32_t arrow_color_word = 0xFFFF0000;      // blue

// A chain's labels where a processor is chosen: at its first cabinet and
// at its last ("1:3", "1:3" or the backup's "B1:5").
struct chain_labels {
    std::string start, end;
};

// Everything draw_snake paints once it has the route: lines per port, then
// the triangles and port labels, in the context as it is (no offscreen
// scope of its own). Port labels advance the project's ends counter; with
// labels (one a chain, chains counted as the port loads count them) they
// replace the "P1" and "R1" texts.
void draw_data_path(boxes_layer& layer, nano2d::context* context, const Snake::route& route,
                    const std::vector<chain_labels>* labels = nullptr);

} // namespace Vantora_TesserinePro
