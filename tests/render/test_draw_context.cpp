// The production drawing context on real images and ImageWrap.

#include "render/draw2d_context.h"
#include "render/image_wrap.h"

#include <QPainter>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;

namespace {

image blank(int w, int h) {
    image img(w, h, image_format);
    img.fill(Qt::transparent);
    return img;
}

// The pixels at the points given, as AARRGGBB words.
std::string pixels(const image& img, std::initializer_list<QPoint> points) {
    std::string out;
    for (const QPoint& p : points)
        out += (out.empty() ? "" : " ") +
               QString::number(img.pixel(p), 16).rightJustified(8, '0').toUpper().toStdString();
    return out;
}

} // namespace

TEST(draw_context, TextBoundsAreTheLineBoxAroundTheAnchor) {
    nano2d::draw2d_context ctx;
    ctx.font_size(30);
    const auto& f = ctx.get_font_sink()->font("sans", 30);
    float b[4];
    ctx.text_align(nano2d::align_center | nano2d::align_middle);
    const float advance = ctx.text_bounds("W 1024", 100, 50, b);
    EXPECT_GT(advance, 0.0f);
    EXPECT_NEAR((b[0] + b[2]) * 0.5f, 100.0f, 1e-3);
    EXPECT_NEAR((b[1] + b[3]) * 0.5f, 50.0f, 1e-3);
    EXPECT_NEAR(b[2] - b[0], advance, 1e-3);
    EXPECT_NEAR(b[3] - b[1], f.ascent + f.descent, 1e-3);

    ctx.text_align(nano2d::align_left | nano2d::align_top);
    ctx.text_bounds("W", 10, 5, b);
    EXPECT_FLOAT_EQ(b[0], 10);
    EXPECT_FLOAT_EQ(b[1], 5);
    ctx.text_align(nano2d::align_right | nano2d::align_bottom);
    ctx.text_bounds("W", 10, 5, b);
    EXPECT_FLOAT_EQ(b[2], 10);
    EXPECT_FLOAT_EQ(b[3], 5);
    ctx.text_align(nano2d::align_left); // baseline
    ctx.text_bounds("W", 10, 50, b);
    EXPECT_FLOAT_EQ(b[1], 50 - f.ascent);
    EXPECT_FLOAT_EQ(b[3], 50 + f.descent);
}

TEST(draw_context, RectanglesPathsAndOutlines) {
    image img = blank(40, 40);
    {
        nano2d::draw2d_context ctx(&img);
        ctx.fill_color(color::color(0, 0, 255));
        ctx.begin_path();
        ctx.rectangle(0, 0, 10, 10);
        ctx.close_path();
        ctx.fill();
        // The outline stays inside its pixels 20..29.
        ctx.rectangle_outline(20, 20, 9, 9, color::color(0, 255, 0), 2);
        // A stroked line of width 2 along y = 35.
        ctx.stroke_color(color::color(255, 255, 0));
        ctx.stroke_width(2);
        ctx.begin_path();
        ctx.move_to(0, 35);
        ctx.line_to(40, 35);
        ctx.stroke();
    }
    EXPECT_EQ(pixels(img, {{0, 0}, {9, 9}, {10, 10}}), "FF0000FF FF0000FF 00000000");
    EXPECT_EQ(pixels(img, {{20, 20}, {21, 25}, {29, 29}, {28, 25}, {22, 25}, {30, 25}, {19, 25}}),
              "FF00FF00 FF00FF00 FF00FF00 FF00FF00 00000000 00000000 00000000");
    EXPECT_EQ(pixels(img, {{5, 34}, {5, 35}, {5, 33}}), "FFFFFF00 FFFFFF00 00000000");
}

TEST(draw_context, AWidgetContextKeepsItsHandlesFromPaintToPaint) {
    // As a widget does it: one context for its life, a painter per paint.
    image device = blank(4, 4), picture = blank(2, 2);
    picture.fill(QColor(0, 0, 255));
    nano2d::draw2d_context ctx;
    ImageWrap wrap;
    for (int paint = 0; paint < 2; ++paint) {
        QPainter painter(&device);
        ctx.set_graphics(painter);
        wrap.setData(&ctx, &picture);
        ctx.begin_path();
        ctx.rectangle(0, 0, 4, 4);
        ctx.fill_paint(ctx.image_pattern(wrap.handle, 0, 0, 4, 4, 0, 1));
        ctx.fill();
        ctx.set_graphics(nullptr);
        EXPECT_EQ(wrap.handle, 1) << paint; // the same handle both times
    }
    EXPECT_EQ(device.pixel(3, 3), qRgba(0, 0, 255, 255));
    EXPECT_EQ(ctx.get_font_sink()->image_count(), 1u);
}
