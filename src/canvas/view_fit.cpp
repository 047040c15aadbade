#include "canvas/view_fit.h"

#include <algorithm>
#include <cmath>

namespace Vantora_TesserinePro::view_fit {

namespace {

double zoom_in(const QRect& room, QSize raster) {
    const double w = room.width() - 2 * margin, h = room.height() - 2 * margin;
    if (raster.width() <= 0 || raster.height() <= 0 || w <= 0 || h <= 0) return 0;
    return std::min({1.0, w / raster.width(), h / raster.height()});
}

} // namespace

QRect largest_free_part(const QRect& area, const std::vector<QRect>& covered, QSize raster) {
    // Every largest free rectangle has each side on an edge of the area or
    // of a covering rectangle, so those edges are all that need trying.
    std::vector<int> xs{area.left(), area.right() + 1}, ys{area.top(), area.bottom() + 1};
    for (const QRect& c : covered) {
        xs.insert(xs.end(), {c.left(), c.right() + 1});
        ys.insert(ys.end(), {c.top(), c.bottom() + 1});
    }
    for (auto* edges : {&xs, &ys}) {
        std::sort(edges->begin(), edges->end());
        edges->erase(std::unique(edges->begin(), edges->end()), edges->end());
    }
    QRect best;
    double best_zoom = 0;
    for (std::size_t l = 0; l < xs.size(); ++l)
        for (std::size_t r = l + 1; r < xs.size(); ++r)
            for (std::size_t t = 0; t < ys.size(); ++t)
                for (std::size_t b = t + 1; b < ys.size(); ++b) {
                    const QRect part(QPoint(xs[l], ys[t]), QPoint(xs[r] - 1, ys[b] - 1));
                    if (!area.contains(part) || part.width() < least_room ||
                        part.height() < least_room)
                        continue;
                    if (std::any_of(covered.begin(), covered.end(),
                                    [&](const QRect& c) { return c.intersects(part); }))
                        continue;
                    const double z = zoom_in(part, raster);
                    const auto size = [](const QRect& q) { return qint64(q.width()) * q.height(); };
                    if (z > best_zoom || (z == best_zoom && size(part) > size(best))) {
                        best = part;
                        best_zoom = z;
                    }
                }
    return best;
}

view fitted(const QRect& room, QSize raster) {
    view v;
    const double z = zoom_in(room, raster);
    if (z <= 0) return {1.0f, room.topLeft()};
    v.zoom = float(z);
    const double w = raster.width() * double(v.zoom), h = raster.height() * double(v.zoom);
    v.pan = QPoint(room.left() + int(std::lround((room.width() - w) / 2)),
                   room.top() + int(std::lround((room.height() - h) / 2)));
    return v;
}

} // namespace Vantora_TesserinePro::view_fit
