// The production drawing context on real images, ImageWrap and
// OffscreenDraw.

#include "render/draw2d_context.h"
#include "render/image_wrap.h"
#include "support/recording_context.h"
#include "support/workspace_builders.h"

#include <QFontInfo>
#include <QPainter>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using Vantora_TesserinePro::testing::recording_context;

namespace {

image blank(int w, int h) {
    image img(w, h, image_format);
    img.fill(Qt::transparent);
    return img;
}

QRgb px(const image& img, int x, int y) {
    return img.pixel(x, y);
}
constexpr QRgb opaque(int r, int g, int b) {
    return qRgba(r, g, b, 255);
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

TEST(draw_context, SansIsDejaVuAndLinesAreMeasuredByLineSpacing) {
    nano2d::draw2d_context ctx;
    auto sink = ctx.get_font_sink();
    const auto& f = sink->font("sans", 20);
    EXPECT_EQ(QFontInfo(f.font).family(), "DejaVu Sans");
    EXPECT_EQ(f.font.pixelSize(), 20);

    ctx.font_size(20);
    ctx.font_face("sans");
    float widest = 0, line_height = 0;
    ctx.measure_lines({"ab", "abcdef", ""}, widest, line_height);
    EXPECT_FLOAT_EQ(line_height, float(f.metrics.lineSpacing()));
    EXPECT_FLOAT_EQ(widest, float(f.metrics.horizontalAdvance("abcdef")));
    EXPECT_GT(widest, 40.0f);
    ctx.measure_lines({}, widest, line_height);
    EXPECT_EQ(widest, 0.0f);
}

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

TEST(draw_context, TextIsDrawnInTheFillColourInsideItsBounds) {
    image img = blank(200, 60);
    {
        nano2d::draw2d_context ctx(&img);
        ctx.font_size(40);
        ctx.font_face("sans");
        ctx.text_align(nano2d::align_center | nano2d::align_middle);
        ctx.fill_color(color::color(255, 0, 0));
        ctx.text("HH", 100, 30);
    }
    float b[4];
    nano2d::draw2d_context measure;
    measure.font_size(40);
    measure.text_align(nano2d::align_center | nano2d::align_middle);
    measure.text_bounds("HH", 100, 30, b);
    int red = 0, outside = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            if (qAlpha(px(img, x, y)) == 0) continue;
            const bool inside = x >= int(b[0]) - 1 && x <= int(b[2]) + 1 && y >= int(b[1]) - 1 &&
                                y <= int(b[3]) + 1;
            if (!inside) ++outside;
            if (px(img, x, y) == opaque(255, 0, 0)) ++red;
        }
    EXPECT_GT(red, 100);
    EXPECT_EQ(outside, 0);
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

TEST(draw_context, SaveRestoreAndTranslate) {
    image img = blank(20, 20);
    {
        nano2d::draw2d_context ctx(&img);
        ctx.fill_color(color::color(255, 0, 0));
        ctx.save();
        ctx.fill_color(color::color(0, 255, 0));
        ctx.translate(10, 10);
        ctx.begin_path();
        ctx.rectangle(0, 0, 5, 5);
        ctx.fill();
        ctx.restore();
        ctx.restore(); // one too many: harmless
        ctx.begin_path();
        ctx.rectangle(0, 0, 5, 5);
        ctx.fill();
    }
    EXPECT_EQ(pixels(img, {{12, 12}, {2, 2}}), "FF00FF00 FFFF0000");
}

TEST(draw_context, ImageHandlesWrapPixelsAndPatternsScale) {
    image source = blank(2, 2);
    source.setPixel(0, 0, opaque(255, 0, 0));
    source.setPixel(1, 0, opaque(0, 255, 0));
    source.setPixel(0, 1, opaque(0, 0, 255));
    source.setPixel(1, 1, opaque(255, 255, 255));
    image target = blank(8, 8);
    nano2d::draw2d_context screen;
    const int h = screen.create_image(2, 2, 0, source.constBits(), int(source.bytesPerLine()));
    ASSERT_GE(h, 1);
    int w = 0, hh = 0;
    EXPECT_TRUE(screen.read_image_size(h, w, hh));
    EXPECT_EQ(w, 2);
    EXPECT_EQ(hh, 2);
    EXPECT_FALSE(screen.read_image_size(h + 100, w, hh));
    EXPECT_EQ(screen.create_image(0, 2, 0, source.constBits(), 8), 0);
    {
        // An offscreen context shares the handles of the one it came from.
        auto off = screen.make_offscreen(&target);
        const auto p = off->image_pattern(h, 0, 0, 8, 8, 0, 1);
        off->begin_path();
        off->rectangle(0, 0, 8, 8);
        off->fill_paint(p);
        off->fill();
    }
    EXPECT_EQ(pixels(target, {{1, 1}, {6, 1}, {1, 6}, {6, 6}}),
              "FFFF0000 FF00FF00 FF0000FF FFFFFFFF");

    // The handle wraps the pixels: an update points it at new ones.
    image other = blank(2, 2);
    other.fill(QColor(10, 20, 30));
    screen.update_image(h, other.constBits());
    target.fill(Qt::transparent);
    {
        auto off = screen.make_offscreen(&target);
        off->begin_path();
        off->rectangle(2, 2, 2, 2); // only part of the pattern
        off->fill_paint(off->image_pattern(h, 0, 0, 8, 8, 0, 1));
        off->fill();
    }
    EXPECT_EQ(pixels(target, {{2, 2}, {1, 1}, {4, 4}}), "FF0A141E 00000000 00000000");
    screen.delete_image(h);
    EXPECT_FALSE(screen.read_image_size(h, w, hh));
}

TEST(draw_context, StraightAlphaPicturesAreTakenAsSuch) {
    QImage straight(1, 1, QImage::Format_ARGB32);
    straight.setPixel(0, 0, qRgba(200, 100, 50, 128));
    image target = blank(1, 1);
    nano2d::draw2d_context ctx(&target);
    const int h = ctx.create_image(1, 1, nano2d::image_flags_for(straight.format()),
                                   straight.constBits(), int(straight.bytesPerLine()));
    ctx.begin_path();
    ctx.rectangle(0, 0, 1, 1);
    ctx.fill_paint(ctx.image_pattern(h, 0, 0, 1, 1, 0, 1));
    ctx.fill();
    const QColor c = target.pixelColor(0, 0);
    EXPECT_NEAR(c.alpha(), 128, 1);
    EXPECT_NEAR(c.red(), 200, 2);
    EXPECT_NEAR(c.green(), 100, 2);
}

TEST(draw_context, NestedOffscreenScopesOnOneImageShareItsPainter) {
    image target = blank(10, 10);
    nano2d::draw2d_context screen;
    nano2d::context* ctx = &screen;
    {
        OffscreenDraw outer(ctx, &target);
        EXPECT_NE(ctx, &screen);
        nano2d::context* outer_ctx = ctx;
        ctx->fill_color(color::color(255, 0, 0));
        {
            OffscreenDraw inner(ctx, &target);
            EXPECT_NE(ctx, outer_ctx);
            ctx->begin_path();
            ctx->rectangle(0, 0, 5, 5);
            ctx->fill(); // drawing state belongs to the image: red
        }
        EXPECT_EQ(ctx, outer_ctx);
        ctx->begin_path();
        ctx->rectangle(5, 5, 5, 5);
        ctx->fill();
    }
    EXPECT_EQ(ctx, &screen);
    EXPECT_EQ(pixels(target, {{1, 1}, {8, 8}}), "FFFF0000 FFFF0000");

    // A null context still gets an image context; a null target one that
    // draws nothing.
    nano2d::context* none = nullptr;
    {
        OffscreenDraw draw(none, &target);
        ASSERT_NE(none, nullptr);
        none->fill_color(color::color(0, 0, 255));
        none->begin_path();
        none->rectangle(0, 0, 1, 1);
        none->fill();
    }
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(px(target, 0, 0), opaque(0, 0, 255));
    {
        OffscreenDraw draw(ctx, nullptr);
        ctx->begin_path();
        ctx->rectangle(0, 0, 10, 10);
        ctx->fill();
    }
    EXPECT_EQ(px(target, 0, 0), opaque(0, 0, 255));
}

// Absurd line widths are bounded where a wider line changes no pixel:
// every shape the layers stroke comes out exactly as Qt draws it unbounded.
TEST(draw_context, WideStrokesDrawAsIfUnbounded) {
    struct shape {
        const char* name;
        int w, h;
        std::vector<std::vector<QPointF>> runs; // polylines; a repeated first point closes
        bool circle;
    };
    const std::vector<shape> shapes = {
        {"data path", 40, 24, {{{2, 2}, {38, 2}, {38, 6}, {2, 6}, {2, 10}, {38, 10}}}, false},
        {"triangle", 40, 24, {{{10, 9}, {16, 12}, {10, 15}, {10, 9}}}, false},
        {"half-pixel triangle", 33, 17, {{{7.5, 3.5}, {10.5, 9.5}, {4.5, 9.5}, {7.5, 3.5}}}, false},
        {"diagonal", 37, 21, {{{0, 0}, {37, 21}}}, false},
        {"dashes", 37, 21, {{{0, 10}, {5, 10}}, {{10, 10}, {15, 10}}, {{40, 10}, {45, 10}}}, false},
        {"circle", 37, 21, {}, true},
    };
    for (const shape& sh : shapes) {
        for (float width : {300.0f, 5000.0f, 65535.0f, 1e6f}) {
            image bounded = blank(sh.w, sh.h), unbounded = blank(sh.w, sh.h);
            QPainterPath path;
            path.setFillRule(Qt::WindingFill);
            {
                nano2d::draw2d_context ctx(&bounded);
                ctx.stroke_color(color::color(255, 0, 0, 255));
                ctx.stroke_width(width);
                ctx.begin_path();
                for (const auto& run : sh.runs) {
                    const bool closed = run.size() > 2 && run.front() == run.back();
                    ctx.move_to(float(run[0].x()), float(run[0].y()));
                    path.moveTo(run[0]);
                    for (std::size_t i = 1; i < run.size() - (closed ? 1 : 0); ++i) {
                        ctx.line_to(float(run[i].x()), float(run[i].y()));
                        path.lineTo(run[i]);
                    }
                    if (closed) {
                        ctx.close_path();
                        path.closeSubpath();
                    }
                }
                if (sh.circle) {
                    ctx.circle(18.5f, 10.5f, 4.0f);
                    path.addEllipse(QPointF(18.5, 10.5), 4.0, 4.0);
                }
                ctx.stroke();
            }
            QPainter painter(&unbounded);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.strokePath(path, QPen(QBrush(QColor(255, 0, 0)), width, Qt::SolidLine,
                                          Qt::FlatCap, Qt::MiterJoin));
            painter.end();
            EXPECT_TRUE(bounded == unbounded) << sh.name << " at width " << width;
        }
    }
    QPainterPath line;
    line.moveTo(0, 0);
    line.lineTo(30, 40);
    EXPECT_EQ(nano2d::bounded_stroke_width(line, QRectF(0, 0, 30, 40), 8.0f), 8.0f);
    EXPECT_EQ(nano2d::bounded_stroke_width(line, QRectF(0, 0, 30, 40), 1e6f), 102.0f);
}

TEST(image_wrap, RefusingLibraryIsAskedTwiceThenGivenUp) {
    recording_context rec;
    rec.state().refuse_create = 2;
    image img = blank(4, 4);
    ImageWrap wrap;
    wrap.setData(&rec, 4, 4, img.constBits(), 16);
    EXPECT_EQ(rec.calls("create_image").size(), 2u);
    EXPECT_EQ(wrap.handle, 0); // the failed value stays
    EXPECT_TRUE(rec.calls("update_image").empty());

    rec.clear();
    wrap.setData(nullptr, 4, 4, img.constBits(), 16); // no context: nothing
    EXPECT_TRUE(rec.log().empty());
}

TEST(image_wrap, SameSizeReusesTheHandleNewSizeGetsANewOne) {
    recording_context rec;
    image a = blank(4, 4), b = blank(6, 3);
    ImageWrap wrap;
    wrap.setData(&rec, &a);
    const int first = wrap.handle;
    EXPECT_GE(first, 1);
    wrap.setData(&rec, &a);
    EXPECT_EQ(wrap.handle, first);
    EXPECT_EQ(rec.calls("create_image").size(), 1u);
    EXPECT_EQ(rec.calls("update_image").size(), 2u);

    rec.clear();
    wrap.setData(&rec, &b);
    EXPECT_NE(wrap.handle, first);
    EXPECT_EQ(rec.calls("create_image").size(), 1u);
    EXPECT_EQ(rec.calls("create_image")[0].line(), "create_image 6 3 0 24");
    EXPECT_EQ(rec.calls("update_image").size(), 1u);
    EXPECT_EQ(rec.state().images.count(first), 1u); // the old one is not deleted
}

TEST(image_wrap, DeferredLoadNeedsANameAndRetries) {
    recording_context rec;
    ImageWrap empty(nullptr, "");
    empty.defer_load_image(&rec);
    EXPECT_TRUE(rec.log().empty());
    ImageWrap named(nullptr, "/no/such/picture.png");
    named.defer_load_image(nullptr);
    EXPECT_TRUE(rec.log().empty());
    named.defer_load_image(&rec);
    named.defer_load_image(&rec); // failed: tried again
    EXPECT_EQ(rec.calls("load_image").size(), 2u);
    named.releaseImage();
    EXPECT_EQ(named.handle, -1);
    EXPECT_TRUE(named.file_name.empty());
}

TEST(image_wrap, LayerImageIsHandedOverOnEachCall) {
    Global global;
    global.m_project = std::make_shared<project>();
    auto layer = global.new_boxes_layer();
    recording_context rec;
    EXPECT_EQ(layer->get_nano2d_image(&rec)->handle, -1); // no image yet
    auto img = layer->request_offscreen(8, 4);
    ASSERT_TRUE(img);
    EXPECT_EQ(layer->request_offscreen(8, 4), img); // same size: same image, cleared
    ImageWrap* wrap = layer->get_nano2d_image(&rec);
    EXPECT_EQ(wrap, &layer->image_wrap);
    EXPECT_GE(wrap->handle, 1);
    layer->get_nano2d_image(&rec);
    EXPECT_EQ(rec.calls("update_image").size(), 2u);
    EXPECT_EQ(rec.state().images[wrap->handle].pixels, img->constBits());
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
    EXPECT_EQ(device.pixel(3, 3), opaque(0, 0, 255));
    EXPECT_EQ(ctx.get_font_sink()->image_count(), 1u);
}
