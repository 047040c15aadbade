#pragma once
// Where the palettes go: their places at a first start, which follow the
// size of the window, and the rule that keeps a palette's title bar where
// the pointer can take it.

#include <QPoint>
#include <QRect>
#include <QSize>

#include <array>

namespace Vantora_TesserinePro::palette_places {

// The window's fixed parts: the menu and the top panel above, the lists on
// the right, and the top of the canvas.
constexpr int strips_bottom = 60;
constexpr int canvas_top = 70;
constexpr int lists_width = 280;

// The palettes of the layout file, in its order.
enum palette { boxes, labels, colors, power, snake, raster, count };

struct place {
    QPoint at;
    bool shown = false;
};
using sizes = std::array<QSize, count>;
using places = std::array<place, count>;

// The places of a first start in a window of this size. A palette that does
// not fit starts hidden, at its place in the full arrangement.
places first_start(QSize window, const sizes& size);

// The place nearest the palette's own at which it lies whole in the area,
// its top left corner kept inside where it is larger.
QPoint inside(const QRect& palette, const QRect& area);

// The place nearest the palette's own at which its title bar can be taken:
// the whole bar between the top panel and the bottom edge, and a part of it
// wide enough to grip left of the lists.
QPoint reachable(const QRect& palette, QSize window);

} // namespace Vantora_TesserinePro::palette_places
