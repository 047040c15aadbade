#pragma once
// Where the raster goes when the view fits it: the largest part of the
// canvas that nothing shown over it covers, the raster centred there at the
// largest zoom that shows it whole, never above one to one.

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

namespace Vantora_TesserinePro::view_fit {

// A margin all round the fitted raster, so that its outline shows.
constexpr int margin = 10;
// A free part smaller than this on either side counts as no room at all.
constexpr int least_room = 100;

// Of the rectangles inside area that meet none of covered, the one that
// shows a raster of that size largest (the larger of two that show it
// alike); an empty rectangle when none has least_room on both sides.
QRect largest_free_part(const QRect& area, const std::vector<QRect>& covered, QSize raster);

struct view {
    float zoom = 1.0f;
    QPoint pan; // where the raster's top left corner lands
};
// The raster centred in room less the margin, as large as fits, at most 1.
view fitted(const QRect& room, QSize raster);

} // namespace Vantora_TesserinePro::view_fit
