#include "app/palette_places.h"

#include "panels/look.h"

#include <algorithm>

namespace Vantora_TesserinePro::palette_places {

namespace {

// From the window's left edge, and between two palettes.
constexpr int margin = 10;
constexpr int gap = 6;
// Of a title bar, this much stays within reach: enough to take it.
constexpr int grip = 60;

// Places palettes one by one, beside or under those placed before.
struct builder {
    const sizes& size;
    places at{};
    void put(palette p, int x, int y) { at[p] = {QPoint(x, y), true}; }
    int right_of(palette p) const { return at[p].at.x() + size[p].width() + gap; }
    int under(palette p) const { return at[p].at.y() + size[p].height() + gap; }
};

// A laptop's window: Screen Info, the Data palette right of it and Colors
// under that; Power, the tallest, waits in the Window menu.
places three(const sizes& size) {
    builder b{size};
    b.put(boxes, margin, canvas_top);
    b.put(snake, b.right_of(boxes), canvas_top);
    b.put(colors, b.right_of(boxes), b.under(snake));
    return b.at;
}

// Every palette: Screen Info, the Data palette and the raster label's in a
// row at the top; Labels, Colors and Power in a row under Screen Info, where
// the tall ones have the room.
places all(const sizes& size) {
    builder b{size};
    b.put(boxes, margin, canvas_top);
    b.put(snake, b.right_of(boxes), canvas_top);
    b.put(raster, b.right_of(snake), canvas_top);
    const int row = std::max({b.under(boxes), b.under(snake), b.under(raster)});
    b.put(labels, margin, row);
    b.put(colors, b.right_of(labels), row);
    b.put(power, b.right_of(colors), row);
    return b.at;
}

// For a smaller window the four most used: the Data palette right of
// Screen Info, Colors under it and Power under Screen Info.
places four(const sizes& size) {
    places at = three(size);
    builder b{size, at};
    b.put(power, margin, b.under(boxes));
    return b.at;
}

places screen_info_alone(const sizes&) {
    places at{};
    at[boxes] = {QPoint(margin, canvas_top), true};
    return at;
}

bool fits(const places& at, const sizes& size, const QRect& room) {
    for (int p = 0; p < count; ++p)
        if (at[p].shown && !room.contains(QRect(at[p].at, size[p]))) return false;
    return true;
}

} // namespace

places first_start(QSize window, const sizes& size) {
    // Palettes keep to the canvas below the strips and left of the lists,
    // and leave a quarter of its width free on the right for the picture.
    const QRect room(0, strips_bottom, (window.width() - lists_width) * 3 / 4,
                     window.height() - strips_bottom);
    places chosen = screen_info_alone(size);
    for (places (*arrange)(const sizes&) : {all, four, three})
        if (places at = arrange(size); fits(at, size, room)) {
            chosen = at;
            break;
        }
    // Those left out wait where the full arrangement puts them, moved in as
    // far as the canvas allows, so that they show whole when asked for.
    const places full = all(size);
    const QRect canvas(0, canvas_top, window.width() - lists_width, window.height() - canvas_top);
    for (int p = 0; p < count; ++p)
        if (!chosen[p].shown) chosen[p].at = inside(QRect(full[p].at, size[p]), canvas);
    return chosen;
}

QPoint inside(const QRect& palette, const QRect& area) {
    return QPoint(
        std::max(area.left(), std::min(palette.x(), area.right() + 1 - palette.width())),
        std::max(area.top(), std::min(palette.y(), area.bottom() + 1 - palette.height())));
}

QPoint reachable(const QRect& palette, QSize window) {
    const int held = std::min(grip, palette.width());
    // The bar's rows and the frame's top line.
    const int bar = look::title_bar_height + 1;
    const int x = std::min(palette.x(), window.width() - lists_width - held);
    const int y = std::min(palette.y(), window.height() - bar);
    return QPoint(std::max(x, held - palette.width()), std::max(y, strips_bottom));
}

} // namespace Vantora_TesserinePro::palette_places
