#include "render/test_patterns.h"

#include "document/boxes_layer.h"
#include "document/global.h"
#include "plan/chain_colors.h"
#include "plan/power_plan.h"
#include "render/draw2d_context.h"

#include <QPainter>
#include <QRegion>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <unordered_map>

namespace Vantora_TesserinePro {

namespace {

constexpr QRgb opaque_black = 0xff000000;

// Layer pixels to whole raster pixels: a half cabinet of an odd width
// starts on the pixel its half falls in, so neighbours share no pixel.
int whole(float v) {
    return int(std::floor(v));
}

// Makes frame the raster's size (keeping its pixels when it is) and puts
// the background where no cabinet is and on excluded cabinets, leaving the
// rest for the pattern: on the 8K wall every pixel is then written once.
void clear_around_cabinets(image& frame, const Global& global,
                           const std::vector<wall_cabinet>& cabinets, bool transparent) {
    const QSize size(global.get_paper_width(), global.get_paper_height());
    if (frame.size() != size || frame.format() != QImage::Format_ARGB32_Premultiplied)
        frame = image(size, QImage::Format_ARGB32_Premultiplied);
    // A screen's cabinets tile the rectangle they span.
    QRegion outside(QRect(QPoint(0, 0), size));
    QRect block;
    const boxes_layer* layer = nullptr;
    for (const wall_cabinet& c : cabinets) {
        if (c.layer != layer) {
            outside -= block;
            block = QRect();
            layer = c.layer;
        }
        block |= c.rect;
    }
    outside -= block;
    QPainter painter(&frame);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const QColor background =
        transparent ? QColor(Qt::transparent) : QColor::fromRgba(opaque_black);
    for (const QRect& r : outside)
        painter.fillRect(r, background);
    for (const wall_cabinet& c : cabinets)
        if (c.excluded) painter.fillRect(c.rect, background);
}

// A span of the screen cut into `parts` equal parts: the part of pixel x.
int part_of(int x, const QRect& screen, int parts) {
    const long long part = (long long)(x - screen.left()) * parts / std::max(1, screen.width());
    return int(std::clamp(part, 0LL, (long long)parts - 1));
}

// Fills each cabinet with the colour of the part (of `parts` across its
// screen) that each of its columns falls in.
template <class Colour>
void fill_across(QPainter& painter, const std::vector<wall_cabinet>& cabinets, int parts,
                 Colour colour) {
    for (const wall_cabinet& c : cabinets) {
        int x = c.rect.left();
        while (x <= c.rect.right()) {
            const int part = part_of(x, c.screen, parts);
            // The first column of the next part.
            const int next_x = c.screen.left() +
                               int(((long long)(part + 1) * c.screen.width() + parts - 1) / parts);
            const int end = std::min(c.rect.right() + 1, std::max(next_x, x + 1));
            painter.fillRect(QRect(x, c.rect.top(), end - x, c.rect.height()),
                             QColor::fromRgba(colour(part)));
            x = end;
        }
    }
}

QRgb solid_colour(test_pattern p) {
    switch (p) {
    case test_pattern::red:
        return 0xffff0000;
    case test_pattern::green:
        return 0xff00ff00;
    case test_pattern::blue:
        return 0xff0000ff;
    case test_pattern::white:
        return 0xffffffff;
    default:
        return opaque_black;
    }
}

QColor rgb(color::color c) {
    return QColor(c.red, c.green, c.blue);
}

// Black text on light colours, white on dark ones.
QColor text_on(const QColor& c) {
    return 299 * c.red() + 587 * c.green() + 114 * c.blue() > 140000 ? Qt::black : Qt::white;
}

// The text as large as the cabinet holds: six tenths of its height, less
// when that would pass most of its width.
void draw_large_text(QPainter& painter, const QRect& rect, const std::string& text,
                     const QColor& colour) {
    int size = std::max(1, rect.height() * 6 / 10);
    const double advance = nano2d::font_sink::font("sans", size)
                               .metrics.horizontalAdvance(QString::fromStdString(text));
    const double room = rect.width() * 0.85;
    if (advance > room) size = std::max(1, int(size * room / advance));
    painter.setFont(nano2d::font_sink::font("sans", size).font);
    painter.setPen(colour);
    painter.drawText(QRectF(rect), Qt::AlignCenter, QString::fromStdString(text));
}

// Each cabinet of the layer's chains: the chain's index (0 for port or
// circuit 1). Empty when the layer cannot be routed or planned.
std::unordered_map<std::uint32_t, int> chain_of_cabinets(const boxes_layer& layer, bool circuits) {
    std::unordered_map<std::uint32_t, int> chain_of;
    Snake::route route;
    if (circuits) {
        plan::power_plan power = plan::plan_power(layer, true);
        if (power.failed) return chain_of;
        route = std::move(power.route);
    } else {
        try {
            route = Snake::make_route(layer);
        } catch (const std::runtime_error&) {
            return chain_of;
        }
    }
    int chain = 0;
    bool any = false;
    Snake::walk_chains(
        route, [&](const Snake::box& b) { return layer.should_skip_box(b); },
        [&](const Snake::box& b) {
            chain_of.emplace(b.id(), chain);
            any = true;
        },
        [&] {
            // Drawing numbers only the chains that hold a cabinet.
            if (any) ++chain;
            any = false;
        });
    return chain_of;
}

int chain_count(const std::unordered_map<std::uint32_t, int>& chain_of) {
    int count = 0;
    for (const auto& [id, chain] : chain_of)
        count = std::max(count, chain + 1);
    return count;
}

// A light and a dark square in turn, as the map's chequer.
QColor chain_square(int chain, std::uint32_t id) {
    const bool dark = (((id >> 16) + (id & 0xFFFF)) & 1) != 0;
    return rgb(dark ? plan::chain_color_dark(std::size_t(chain))
                    : plan::chain_color(std::size_t(chain)));
}

} // namespace

std::optional<test_pattern> test_pattern_named(const std::string& name) {
    static const std::pair<const char*, test_pattern> names[] = {
        {"bars", test_pattern::bars},
        {"grey", test_pattern::grey},
        {"crosshatch", test_pattern::crosshatch},
        {"red", test_pattern::red},
        {"green", test_pattern::green},
        {"blue", test_pattern::blue},
        {"white", test_pattern::white},
        {"black", test_pattern::black},
    };
    for (const auto& [word, p] : names)
        if (name == word) return p;
    return std::nullopt;
}

std::vector<wall_cabinet> wall_cabinets(const Global& global) {
    std::vector<wall_cabinet> cabinets;
    const QRect raster(0, 0, global.get_paper_width(), global.get_paper_height());
    for (long long i = 0; i < global.get_layers_count(); ++i) {
        const auto layer = global.get_layer(i);
        if (!layer || layer->is_hidden() || layer->get_layer_type() != e_layer_boxes) continue;
        const auto& screen = static_cast<const boxes_layer&>(*layer);
        const int ox = screen.get_offset_x(), oy = screen.get_offset_y();
        const QRect screen_rect(ox, oy, screen.get_full_width(), screen.get_full_height());
        if (!screen_rect.intersects(raster)) continue;
        screen.for_each_box(
            [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
                const std::uint32_t id = box_id(column, row);
                const QRect r = QRect(QPoint(ox + whole(x0), oy + whole(y0)),
                                      QPoint(ox + whole(x1) - 1, oy + whole(y1) - 1)) &
                                raster;
                if (!r.isEmpty())
                    cabinets.push_back(
                        {r, screen_rect, &screen, id, screen.ExcludeBoxes.contains(id)});
                return false;
            },
            false);
    }
    return cabinets;
}

long long moving_line_steps(const Global& global) {
    return (long long)global.get_paper_width() + global.get_paper_height();
}

void draw_moving_line(image& frame, const std::vector<wall_cabinet>& cabinets, long long step,
                      QRgb colour) {
    const long long width = frame.width(), steps = width + frame.height();
    if (steps <= 0) return;
    step = ((step % steps) + steps) % steps;
    const bool column = step < width;
    const int at = int(column ? step : step - width);
    const QRect line = column ? QRect(at, 0, 1, frame.height()) : QRect(0, at, frame.width(), 1);
    QPainter painter(&frame);
    for (const wall_cabinet& c : cabinets) {
        if (c.excluded) continue;
        const QRect part = line & c.rect;
        if (!part.isEmpty()) painter.fillRect(part, QColor::fromRgba(colour));
    }
}

void draw_pattern_frame(image& frame, const Global& global,
                        const std::vector<wall_cabinet>& cabinets, test_pattern p, long long step,
                        bool transparent) {
    clear_around_cabinets(frame, global, cabinets, transparent);
    std::vector<wall_cabinet> lit;
    for (const wall_cabinet& c : cabinets)
        if (!c.excluded) lit.push_back(c);
    {
        QPainter painter(&frame);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        switch (p) {
        case test_pattern::bars:
            fill_across(painter, lit, 8, [](int part) { return colour_bars[part]; });
            break;
        case test_pattern::grey:
            fill_across(painter, lit, 16, [](int part) { return grey_step(part); });
            break;
        case test_pattern::crosshatch:
            for (const wall_cabinet& c : lit) {
                const QRect& r = c.rect;
                painter.fillRect(r.adjusted(1, 1, -1, -1), QColor::fromRgba(opaque_black));
                for (const QRect& edge : {QRect(r.left(), r.top(), r.width(), 1),
                                          QRect(r.left(), r.bottom(), r.width(), 1),
                                          QRect(r.left(), r.top(), 1, r.height()),
                                          QRect(r.right(), r.top(), 1, r.height())})
                    painter.fillRect(edge, Qt::white);
            }
            break;
        default:
            // The map and the moving line start from black cabinets.
            for (const wall_cabinet& c : lit)
                painter.fillRect(c.rect, QColor::fromRgba(solid_colour(p)));
        }
    }
    if (p == test_pattern::moving_line) draw_moving_line(frame, cabinets, step, 0xffffffff);
}

image pattern_frame(const Global& global, test_pattern p, long long step, bool transparent) {
    image frame;
    draw_pattern_frame(frame, global, wall_cabinets(global), p, step, transparent);
    return frame;
}

std::string identify_label(identify_kind kind, int step, const boxes_layer& layer,
                           std::uint32_t id) {
    if (kind == identify_kind::ports) return std::to_string(step + 1);
    if (kind == identify_kind::circuits) return "C" + std::to_string(step + 1);
    // As the map names cabinets: A to Z, then AA, BB .. ZZ, then AAA.
    const int column = int(id >> 16), row = int(id & 0xFFFF);
    const int k = layer.BoxesNamesReverse ? row : column;
    const int m = layer.BoxesNamesReverse ? column : row;
    return std::string(std::size_t(k / 26 + 1), char('A' + k % 26)) + std::to_string(m + 1);
}

int identify_steps(const Global& global, identify_kind kind) {
    if (kind == identify_kind::cabinets) return 1;
    int steps = 0;
    for (long long i = 0; i < global.get_layers_count(); ++i) {
        const auto layer = global.get_layer(i);
        if (!layer || layer->is_hidden() || layer->get_layer_type() != e_layer_boxes) continue;
        steps =
            std::max(steps, chain_count(chain_of_cabinets(static_cast<const boxes_layer&>(*layer),
                                                          kind == identify_kind::circuits)));
    }
    return steps;
}

void draw_identify_frame(image& frame, const Global& global,
                         const std::vector<wall_cabinet>& cabinets, identify_kind kind, int step) {
    clear_around_cabinets(frame, global, cabinets, false);
    QPainter painter(&frame);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const boxes_layer* layer = nullptr;
    std::unordered_map<std::uint32_t, int> chain_of;
    for (const wall_cabinet& c : cabinets) {
        if (c.excluded) continue;
        if (c.layer != layer) {
            layer = c.layer;
            chain_of = chain_of_cabinets(*layer, kind == identify_kind::circuits);
        }
        const auto found = chain_of.find(c.id);
        const int chain = found == chain_of.end() ? -1 : found->second;
        if (kind != identify_kind::cabinets && chain != step) {
            painter.fillRect(c.rect, QColor::fromRgba(opaque_black));
            continue;
        }
        // A cabinet on no port (a screen that cannot be routed) in grey.
        const QColor square = chain < 0 ? QColor(96, 96, 96) : chain_square(chain, c.id);
        painter.fillRect(c.rect, square);
        draw_large_text(painter, c.rect, identify_label(kind, step, *layer, c.id), text_on(square));
    }
}

image identify_frame(const Global& global, identify_kind kind, int step) {
    image frame;
    draw_identify_frame(frame, global, wall_cabinets(global), kind, step);
    return frame;
}

} // namespace Vantora_TesserinePro
