#pragma once
// Frames for the wall itself rather than for the map: test patterns, and the
// identification of ports, circuits and cabinets. They fill the screens'
// cabinets only (the rest of the raster stays dark), so a wall with gaps
// shows where each cabinet really is. `render --pattern`, the live output
// and the tests all build them here.

#include "core/types.h"

#include <QRect>
#include <QRgb>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class Global;
class boxes_layer;

enum class test_pattern {
    map, // no pattern: the pixel map itself
    bars,
    grey,
    crosshatch,
    red,
    green,
    blue,
    white,
    black,
    moving_line,
};

// The pattern `render --pattern` names: "bars", "grey", "crosshatch",
// "red", "green", "blue", "white", "black"; none for any other word.
std::optional<test_pattern> test_pattern_named(const std::string& name);

// One cabinet of a visible screen layer, in whole raster pixels, with the
// screen it belongs to (its rectangle on the raster too). Excluded cabinets
// are no part of the wall: patterns leave them dark.
struct wall_cabinet {
    QRect rect;
    QRect screen;
    const boxes_layer* layer = nullptr;
    std::uint32_t id = 0;
    bool excluded = false;
};
// Bottom layer first, row by row; cut to nothing off the raster.
std::vector<wall_cabinet> wall_cabinets(const Global& global);

// The eight bars, white to black, and the sixteen grey levels, left to
// right across each screen.
inline constexpr QRgb colour_bars[8] = {0xffffffff, 0xffffff00, 0xff00ffff, 0xff00ff00,
                                        0xffff00ff, 0xffff0000, 0xff0000ff, 0xff000000};
constexpr QRgb grey_step(int step) {
    return 0xff000000u | 0x010101u * std::uint32_t(step * 17);
}

// The raster (premultiplied ARGB32) with pattern p on every cabinet and
// opaque black (or, when transparent, nothing) elsewhere. Colour bars and
// grey steps run across each screen; the crosshatch lights every cabinet's
// outermost pixels in white on black; the moving line is at step (see
// draw_moving_line). map gives a black raster: the map is the frame's own.
image pattern_frame(const Global& global, test_pattern p, long long step = 0,
                    bool transparent = false);
// The same into frame, whose pixels are reused when it has the raster's
// size (the live output keeps one), for these cabinets of the workspace.
void draw_pattern_frame(image& frame, const Global& global,
                        const std::vector<wall_cabinet>& cabinets, test_pattern p,
                        long long step = 0, bool transparent = false);
// The moving line: for step below the raster's width a one-pixel column at
// x = step, then a one-pixel row at y = step - width, drawn in colour over
// the cabinets only. Its steps repeat after width + height.
long long moving_line_steps(const Global& global);
void draw_moving_line(image& frame, const std::vector<wall_cabinet>& cabinets, long long step,
                      QRgb colour);

enum class identify_kind { ports, circuits, cabinets };

// The steps of identification: the most ports (circuits) any visible
// screen has; cabinets have one step, all of them at once.
int identify_steps(const Global& global, identify_kind kind);
// Port (circuit) number step + 1 of every visible screen: its cabinets lit
// in its colour of the shared chain palette (a light and a dark square in
// turn, so edges show), each with the number large ("3"; "C3" for a
// circuit), every other cabinet and the rest of the raster black. Cabinets:
// every cabinet in its port's colours with its ID ("A1") as large as the
// cabinet holds. A screen whose path cannot be routed stays dark.
image identify_frame(const Global& global, identify_kind kind, int step);
void draw_identify_frame(image& frame, const Global& global,
                         const std::vector<wall_cabinet>& cabinets, identify_kind kind, int step);
// The text on a lit cabinet: "3", "C3", or the cabinet's ID.
std::string identify_label(identify_kind kind, int step, const boxes_layer& layer,
                           std::uint32_t id);

} // namespace Vantora_TesserinePro
