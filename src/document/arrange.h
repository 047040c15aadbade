#pragma once
// Many screens at once, as operations on the document that the window and
// `tesserine pack` share: lining screens up, spacing them out, packing them
// on the raster, moving them as one block with the canvas's snapping, and
// screens as project text for the clipboard. Layers are named by their
// index in the stack; nothing here draws or asks the user anything.

#include "core/types.h"

#include <QPoint>

#include <optional>
#include <vector>

namespace Vantora_TesserinePro {

class Global;
class app_layer;

// A rectangle of the raster in 64 bits, so that an offset near the 32-bit
// limit plus a size does not overflow.
struct raster_rect {
    long long x = 0, y = 0, w = 0, h = 0;
    long long right() const { return x + w; }
    long long bottom() const { return y + h; }
    // Whether the two share more than an edge.
    bool overlaps(const raster_rect& o) const {
        return x < o.right() && o.x < right() && y < o.bottom() && o.y < bottom();
    }
};
raster_rect rect_of(const app_layer& layer);
// The rectangle around the layers (at these indices).
raster_rect bounds_of(const pointer_array<app_layer>& layers);
raster_rect bounds_of(const Global& global, const std::vector<long long>& indices);

// An offset as far as the canvas takes one: within 2^31 - 1 either way.
int held_offset(long long value);

// Every visible screen layer, in the order of the layer list: the top of
// the stack first.
std::vector<long long> visible_screens_in_list_order(const Global& global);

// --- aligning, distributing, packing, moving (true when a layer moved)

enum class alignment { left, right, top, bottom, horizontal_centres, vertical_centres };
// Lines the layers up on the rectangle around them; a single layer is
// lined up on the raster.
bool align_layers(Global& global, const std::vector<long long>& indices, alignment how);
// Equal gaps between three or more layers, taken in the order of their
// left (top) edges; the leftmost left edge and the rightmost right edge
// (top and bottom) stay where they are.
bool distribute_layers(Global& global, const std::vector<long long>& indices, bool horizontally);

// Where Pack puts blocks of these sizes (x, y unused) on a raster: in rows
// from its top left corner, each right of the one before after the gap
// while it fits the raster's width, else at the start of a new row below
// the tallest of the row and the gap. Nothing when they do not all fit.
std::optional<std::vector<QPoint>> pack_places(const std::vector<raster_rect>& sizes,
                                               long long raster_width, long long raster_height,
                                               long long gap);
// Pack on the layers, in this order. Empty when done; otherwise the reason
// ("the 3 screens do not fit ..."), and no layer moved.
string pack_layers(Global& global, const std::vector<long long>& order, int gap);

bool move_layers(Global& global, const std::vector<long long>& indices, long long dx, long long dy);

// --- snapping, as the canvas snaps a moved layer

// Strictly closer than this many raster pixels snaps.
constexpr int snap_threshold = 20;
// One axis of a block of this size at v on the raster's edges (0 and side):
// the near edge first. True when it snapped.
bool snap_to_raster(int& v, long long size, long long side);
// One axis on another layer's edges: left on left, left on right, right on
// left, right on right, the first closer than the threshold.
bool snap_axis(int& v, long long size, long long other, long long other_size);
// Where a block moved to its x, y lands: each axis snaps at most once, on
// the raster first, then on the layers from the bottom of the stack
// (hidden ones too) that skip does not name.
QPoint snap_block(const Global& global, const raster_rect& block,
                  const std::vector<long long>& skip);

// --- screens as project text

// A project holds at most this many layers (its file's count is bounded).
constexpr long long max_layers = 1024;
// The project text a save would write if the project held only these
// layers: the raster size and label with them.
string screens_text(const Global& global, const std::vector<long long>& indices);
// The screen layers of such a text, read without touching any document;
// nothing for a text that is no whole Tesserine project or holds no screen.
pointer_array<app_layer> screens_from_text(const string& text);
// Puts the screens on top of the stack, moved by (dx, dy), a taken name
// made the next free one; the topmost becomes current. Their indices, or
// nothing (and no change) when the project would pass max_layers.
std::vector<long long> add_screens(Global& global, const pointer_array<app_layer>& screens,
                                   long long dx, long long dy);
// The first place, row by row from the top left, where a block of this
// size lies inside the raster and covers no visible screen.
std::optional<QPoint> first_free_place(const Global& global, long long width, long long height);

// Deletes the layers as one change. The current layer follows the rule of
// deleting one: it keeps its layer, or takes the place of the deleted one
// (the last layer when that place is past the end).
void delete_layers(Global& global, const std::vector<long long>& indices);

} // namespace Vantora_TesserinePro
