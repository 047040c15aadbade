#pragma once
// The colours that tell ports (or circuits) apart on the map, on the live
// output and in legends: one fixed list, so that port 3 has the same colour
// in a render, in the window and on the wall. Neighbours in the list differ
// in hue by far; the list repeats after its end.

#include "core/color.h"

#include <array>
#include <cstddef>

namespace Vantora_TesserinePro::plan {

inline constexpr std::array<color::color, 12> chain_palette{{
    {230, 25, 75},   // red
    {60, 180, 75},   // green
    {0, 130, 200},   // blue
    {255, 225, 25},  // yellow
    {245, 130, 48},  // orange
    {145, 30, 180},  // purple
    {70, 240, 240},  // cyan
    {240, 50, 230},  // magenta
    {210, 245, 60},  // lime
    {0, 128, 128},   // teal
    {170, 110, 40},  // brown
    {128, 128, 255}, // lavender
}};

// The colour of chain `index` (0 for port or circuit 1).
constexpr color::color chain_color(std::size_t index) {
    return chain_palette[index % chain_palette.size()];
}

// The darker square of a chain's chequer: the same hue at two thirds, so
// that cabinet edges still show inside one chain.
constexpr color::color chain_color_dark(std::size_t index) {
    const color::color c = chain_color(index);
    return {std::uint8_t(c.red * 2 / 3), std::uint8_t(c.green * 2 / 3),
            std::uint8_t(c.blue * 2 / 3)};
}

} // namespace Vantora_TesserinePro::plan
