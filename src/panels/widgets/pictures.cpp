#include "panels/widgets/pictures.h"

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "panels/look.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <exception>

namespace Vantora_TesserinePro {

namespace {

QImage blank(int width, int height) {
    QImage img(width, height, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    return img;
}

const QColor cabinet_teal(0x40, 0x80, 0x80);
const QColor cabinet_tint(0x95, 0xb8, 0xb8);

} // namespace

QImage cabinet_ids_picture(bool reverse, int size) {
    QImage img = blank(size, size);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const int half = size / 2;
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < 2; ++c)
            p.fillRect(c * half, r * half, half, half, (r + c) % 2 ? cabinet_tint : cabinet_teal);
    QFont f = look::sans(std::max(6, size * 3 / 8), true);
    p.setFont(f);
    p.setPen(Qt::white);
    // Ordinary order: the letter counts columns, so A and B stand side by
    // side; reverse order puts them one above the other.
    const char* names[] = {"A", "B"};
    for (int i = 0; i < 2; ++i) {
        const QRect cell =
            reverse ? QRect(0, i * half, half, half) : QRect(i * half, 0, half, half);
        p.drawText(cell, Qt::AlignCenter, names[i]);
    }
    return img;
}

QImage snake_pattern_picture(int mode, int size) {
    QImage img = blank(size, size);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(img.rect(), QColor(0x1e, 0x1e, 0x1e));
    constexpr int grid = 4;
    const float cell = float(size - 1) / grid;
    boxes_layer layer;
    layer.Width = layer.Height = 8;
    layer.Columns = layer.Rows = grid;
    layer.SnakeMode = mode;
    layer.SnakeLimit = 1 << 20;
    Snake::route route;
    try {
        route = Snake::make_route(layer);
    } catch (const std::exception&) {
        return img;
    }
    if (route.empty()) return img;
    const auto centre = [&](const Snake::box& b) {
        return QPointF((b.column + 0.5) * cell + 0.5, (b.row + 0.5) * cell + 0.5);
    };
    QPainterPath path(centre(route.front()));
    for (std::size_t i = 1; i < route.size(); ++i)
        path.lineTo(centre(route[i]));
    p.setPen(QPen(QColor(0xe0, 0xe0, 0xe0), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPath(path);
    // The start as a dot, the end as an arrow head.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x40, 0xd0, 0x60));
    p.drawEllipse(centre(route.front()), 2.4, 2.4);
    if (route.size() >= 2) {
        const QPointF a = centre(route[route.size() - 2]), b = centre(route.back());
        const double angle = std::atan2(b.y() - a.y(), b.x() - a.x());
        const double len = 4.0, spread = 0.6;
        QPolygonF head;
        head << b << b - QPointF(len * std::cos(angle - spread), len * std::sin(angle - spread))
             << b - QPointF(len * std::cos(angle + spread), len * std::sin(angle + spread));
        p.setBrush(QColor(0xe0, 0x50, 0x40));
        p.drawPolygon(head);
    }
    return img;
}

QImage logo_picture(int width, int height) {
    QImage img = blank(width, height);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient back(0, 0, 0, height);
    back.setColorAt(0, QColor(0x22, 0x2a, 0x2e));
    back.setColorAt(1, QColor(0x12, 0x14, 0x16));
    p.fillRect(img.rect(), back);
    // The program's icon, over its name.
    const QImage icon(":/icons/128/tesserine.png");
    const int y0 = height / 12;
    p.drawImage((width - icon.width()) / 2, y0, icon);
    p.setFont(look::sans(40, true));
    p.setPen(QColor(0xe8, 0xe8, 0xe8));
    p.drawText(QRect(0, y0 + 128, width, 52), Qt::AlignCenter, "Tesserine");
    p.setFont(look::sans(16));
    p.setPen(QColor(0x95, 0xb8, 0xb8));
    p.drawText(QRect(0, y0 + 176, width, 30), Qt::AlignCenter, "LED video wall pixel maps");
    return img;
}

} // namespace Vantora_TesserinePro
