// The canvas: the frame at pan and zoom, the hit tests, the editing marks,
// and the paint as the one place where frames are built.

#include "canvas/view_fit.h"
#include "core/keys.h"
#include "panels/look.h"
#include "panels/right_panel.h"
#include "support/recording_context.h"
#include "window/window_fixture.h"

#include <QMessageBox>
#include <QPainter>
#include <QWheelEvent>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct canvas_test : window_test {
    void SetUp() override {
        window_test::SetUp();
        start();
        window->resize(1400, 900);
        canvas->actual_size(); // points below are at zoom 1 and the starting pan
        layer = global->current_boxes_layer();
    }
    void wheel(int notches) {
        QWheelEvent e(QPointF(500, 300), canvas->mapToGlobal(QPointF(500, 300)), QPoint(),
                      QPoint(0, 120 * notches), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
        QCoreApplication::sendEvent(canvas, &e);
    }
    // The composite's pixel as the canvas shows it: over the background.
    QRgb shown(int x, int y) {
        const QRgb c = global->get_composite_image()->pixel(x, y);
        QImage one(1, 1, QImage::Format_RGB32);
        one.fill(look::screen_background);
        QPainter(&one).fillRect(0, 0, 1, 1, QColor::fromRgba(c));
        return one.pixel(0, 0);
    }
    // The marks of one paint, recorded.
    recording_context marks() {
        recording_context rec;
        canvas->draw(&rec);
        return rec;
    }
    // The rectangles stroked in colour, in order.
    static std::vector<std::string> strokes_in(recording_context& rec, const std::string& colour) {
        std::vector<std::string> rects, pending;
        std::string current;
        for (const auto& c : rec.log()) {
            if (c.target != "screen") continue;
            if (c.op == "stroke_color") current = c.args[0];
            if (c.op == "begin_path") pending.clear();
            if (c.op == "rectangle") pending.push_back(c.line());
            if (c.op == "stroke" && current == colour)
                rects.insert(rects.end(), pending.begin(), pending.end());
        }
        return rects;
    }
    pointer<boxes_layer> layer;
};

} // namespace

TEST_F(canvas_test, TheFrameShowsAtThePanAndShrinksAroundItsTopLeftCorner) {
    QImage seen = canvas_pixels();
    // At a display scale a logical pixel is several device pixels: its middle.
    const auto px = [&](int x, int y) {
        const qreal r = seen.devicePixelRatio();
        return seen.pixel(int((x + 0.5) * r), int((y + 0.5) * r));
    };
    // Cabinet (1, 1) of the default wall, clear of lines and labels.
    EXPECT_EQ(px(280 + 200, 200), shown(200, 200));
    EXPECT_EQ(px(100, 100), look::screen_background.rgb()); // left of the raster
    EXPECT_EQ(canvas->get_pan(), QPoint(280, 0));

    // The wheel stops at a quarter: cabinet (1, 1) is at a quarter of its
    // place, and the raster's top left corner stays where it was.
    wheel(-20);
    seen = canvas_pixels();
    EXPECT_FLOAT_EQ(canvas->get_zoom(), 0.25f);
    EXPECT_EQ(px(280 + 50, 50), shown(200, 200));
    EXPECT_EQ(px(280 + 1920 / 4 + 5, 100), look::screen_background.rgb());

    // At a zoom of one over the display scale, a device pixel shows one
    // raster pixel: the frame is drawn from its full resolution (clear of
    // the raster's outline along its top and left edges).
    const qreal r = canvas->devicePixelRatioF();
    canvas->set_zoom(float(1.0 / r));
    seen = canvas_pixels();
    const image& frame = *global->get_composite_image();
    const int x0 = int(std::lround(280 * r));
    for (int y : {3, 130, 639})
        for (int x = 3; x < 1024; ++x)
            ASSERT_EQ(seen.pixel(x0 + x, y), QColor::fromRgba(frame.pixel(x, y)).rgb())
                << x << "," << y;
}

TEST_F(canvas_test, HitTests) {
    // The default wall is 1024 x 640 at (0, 0); a picture over part of it.
    auto picture = global->new_image_layer(); // index 0, under the wall
    picture->set_width(100);
    picture->set_height(100);
    global->move_layer_to_visual_top_by_1(0); // now on top
    picture->set_offset_x(1000);
    picture->set_offset_y(600);
    EXPECT_EQ(canvas->hit_test_layer(QPointF(280 + 1024, 0)), 0); // right edge included
    EXPECT_EQ(canvas->hit_test_layer(QPointF(280 + 1025, 0)), -1);
    EXPECT_EQ(canvas->hit_test_layer(QPointF(280 + 1010, 610)), 1); // the top one wins
    picture->set_hidden(true);
    EXPECT_EQ(canvas->hit_test_layer(QPointF(280 + 1010, 610)), 0);
    EXPECT_EQ(canvas->hit_test_layer(QPointF(279, 10)), -1);

    // The raster label: off, then on at (100, 40) sized 50 x 20, at two zooms.
    global->raster_label_x = 100;
    global->raster_label_y = 40;
    global->raster_label_width = 50;
    global->raster_label_height = 20;
    EXPECT_FALSE(canvas->hit_test_raster_label(280 + 110, 50));
    global->raster_label_enabled = true;
    EXPECT_TRUE(canvas->hit_test_raster_label(280 + 150, 60)); // corner included
    EXPECT_FALSE(canvas->hit_test_raster_label(280 + 151, 60));
    canvas->set_zoom(0.5f);
    canvas_pixels();
    EXPECT_TRUE(canvas->hit_test_raster_label(280 + 60, 25));
    EXPECT_FALSE(canvas->hit_test_raster_label(280 + 110, 50));
    EXPECT_EQ(canvas->hit_test_layer(QPointF(280 + 512, 320)), 0);
    EXPECT_EQ(canvas->hit_test_layer(QPointF(280 + 513, 320)), -1);
}

TEST_F(canvas_test, MarksOfTheCurrentLayerFollowTheModifierGroups) {
    const std::string outline = "FFCCFF7F";
    // No modifier: no outline; the raster outline is there.
    recording_context rec = marks();
    EXPECT_TRUE(strokes_in(rec, outline).empty());
    EXPECT_EQ(strokes_in(rec, "FFB6B6B6"), std::vector<std::string>{"rectangle 0.5 0.5 1919 1079"});

    // Group A on a screen layer: its outline; a move running shows the
    // place it would give.
    global->set_keyboard_modifiers(keys::group_a);
    layer->set_offset_x(10);
    rec = marks();
    EXPECT_EQ(strokes_in(rec, outline), std::vector<std::string>{"rectangle 10 0 1024 640"});
    canvas->move_delta = QPoint(-30, -20);
    rec = marks();
    EXPECT_EQ(strokes_in(rec, outline), std::vector<std::string>{"rectangle 40 20 1024 640"});
    canvas->cancel_drag();

    // A picture with group B: outline and four handles.
    auto picture = global->new_image_layer();
    picture->setMaintainAspectRatio(false);
    picture->set_width(40);
    picture->set_height(20);
    global->set_keyboard_modifiers(keys::group_b);
    rec = marks();
    EXPECT_EQ(strokes_in(rec, outline), std::vector<std::string>{"rectangle 0 0 40 20"});
    for (const char* handle : {"rectangle 20 -2 4 4", "rectangle 20 18 4 4", "rectangle -2 10 4 4",
                               "rectangle 38 10 4 4"})
        EXPECT_GE(rec.index_of(handle), 0) << handle;

    // The exclude rectangle replaces the outline while it is drawn.
    global->set_current_layer_index(1);
    canvas->selecting = true;
    canvas->selection_rectangle = QRect(QPoint(300, 200), QPoint(100, 50));
    rec = marks();
    EXPECT_EQ(strokes_in(rec, outline), std::vector<std::string>{"rectangle 110 50 200 150"});
    canvas->selecting = false;

    // Over the raster label only the label is outlined.
    global->raster_label_enabled = true;
    global->raster_label_x = 7, global->raster_label_y = 8;
    global->raster_label_width = 30, global->raster_label_height = 10;
    canvas->hover_raster_label = true;
    rec = marks();
    EXPECT_EQ(strokes_in(rec, outline), std::vector<std::string>{"rectangle 7 8 30 10"});
}

TEST_F(canvas_test, AMovePreviewAtTheOffsetLimitsStaysInRange) {
    // Offsets typed near the 32-bit limit: the preview snaps and is drawn
    // within range, without an overflow (the sanitizer build checks that).
    global->set_keyboard_modifiers(keys::group_a);
    canvas->move_delta = QPoint(-30, -20);
    for (int offset : {INT_MAX, INT_MIN}) {
        layer->set_offset_x(offset);
        layer->set_offset_y(offset);
        marks();
        EXPECT_LE(std::llabs(canvas->preview_rectangle.left()), 1ll << 29) << offset;
    }
}

TEST_F(canvas_test, APaintNeverStartsAnotherAndWhatTheBuildAsksWaits) {
    // "Draw Current Only" with two screen layers rebuilds at every paint,
    // yet asks for no further paint.
    global->new_boxes_layer();
    screen->right_panel()->set_draw_current_only(true);
    canvas_pixels();
    canvas->repaint();
    // Settled once 100 ms pass without a paint; a paint that asks for the
    // next one never settles.
    long long seen = -1;
    ASSERT_TRUE(wait_until([&] {
        const bool still = g_iMainImpactRedraw == seen;
        seen = g_iMainImpactRedraw;
        QTest::qWait(100);
        return still;
    }));
    EXPECT_TRUE(global->is_changed()); // the next paint will build again
    screen->right_panel()->set_draw_current_only(false);

    // A layer that cannot be drawn: the message waits until the paint is
    // over, then shows once.
    layer->Width = 40000;
    layer->set_changed();
    canvas_pixels();
    EXPECT_TRUE(screen->findChildren<QMessageBox*>("error").isEmpty());
    ASSERT_TRUE(wait_until([&] { return !screen->findChildren<QMessageBox*>("error").isEmpty(); }));
    EXPECT_EQ(screen->findChildren<QMessageBox*>("error").front()->text(),
              "Offscreen allocated nullptr.");
    canvas_pixels();
    bool flushed = false; // queued behind any call the paint deferred
    QMetaObject::invokeMethod(
        qApp, [&] { flushed = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(wait_until([&] { return flushed; }));
    EXPECT_EQ(screen->findChildren<QMessageBox*>("error").size(), 1); // not twice
}

TEST(view_fit, TheRasterGoesWhereItShowsLargestClearOfWhatCovers) {
    const QRect canvas(0, 0, 1000, 600);
    const QSize wall(1920, 1080), small(100, 50);
    const struct {
        std::vector<QRect> covered;
        QSize raster;
        QRect part;
    } cases[] = {
        {{}, wall, canvas},
        // A palette on the left and the lists on the right.
        {{{0, 0, 300, 600}, {900, 0, 100, 600}}, wall, {300, 0, 600, 600}},
        {{{0, 0, 600, 250}}, wall, {0, 250, 1000, 350}},   // below shows it larger
        {{{300, 0, 100, 600}}, small, {400, 0, 600, 600}}, // both at 1: the larger
        {{{0, 0, 1000, 550}}, wall, {}},                   // none of 100 a side left
    };
    for (const auto& c : cases)
        EXPECT_EQ(view_fit::largest_free_part(canvas, c.covered, c.raster), c.part);
    // Centred within the margin, never above 1.
    const auto fitted = [](QSize raster) { return view_fit::fitted({300, 0, 600, 600}, raster); };
    EXPECT_EQ(std::make_pair(fitted(wall).zoom, fitted(wall).pan),
              std::make_pair(580.0f / 1920.0f, QPoint(310, 137)));
    EXPECT_EQ(std::make_pair(fitted(small).zoom, fitted(small).pan),
              std::make_pair(1.0f, QPoint(550, 275)));
}
