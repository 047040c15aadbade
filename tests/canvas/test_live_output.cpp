// The live output on three monitors side by side: 1600 x 1000, then
// 800 x 600, then 640 x 480; and the menu that chooses among them. (The
// offscreen platform lists its monitors by name, hence the numbered names.)

#include "canvas/live_output.h"
#include "panels/top_menu.h"
#include "window/window_fixture.h"

#include <QGuiApplication>
#include <QScreen>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct live_output : window_test {
    live_output_window* live() const { return app->live_output_window_pointer.get(); }
};

} // namespace

TEST_F(live_output, ChoosingAMonitorCoversItWithTheFrameAtFullSize) {
    ASSERT_EQ(QGuiApplication::screens().size(), 3);
    start();
    window->setGeometry(100, 100, 1200, 800);
    // The main window's monitor is not offered.
    EXPECT_EQ(get_live_output_monitors(window), (std::vector<int>{1, 2}));
    window->setGeometry(1700, 100, 600, 400);
    EXPECT_EQ(get_live_output_monitors(window), (std::vector<int>{0, 2}));
    window->setGeometry(100, 100, 1200, 800);

    // "No Live Output" before any: nothing.
    canvas->set_live_output_to_monitor(-1);
    EXPECT_EQ(live(), nullptr);

    canvas->set_zoom(0.25f);
    canvas->set_live_output_to_monitor(1);
    ASSERT_NE(live(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(live()));
    EXPECT_EQ(live()->geometry(), QRect(1600, 0, 800, 600));
    EXPECT_TRUE(live()->windowFlags() & Qt::FramelessWindowHint);

    // One raster pixel to one screen pixel from the top left corner,
    // whatever the canvas's zoom and pan; the raster is cut at the edge.
    const QImage shown = live()->grab().toImage();
    ASSERT_EQ(shown.size(), QSize(800, 600));
    const image& composite = *global->get_composite_image();
    for (QPoint p : {QPoint(200, 200), QPoint(700, 150), QPoint(799, 599)})
        EXPECT_EQ(shown.pixel(p), QColor::fromRgba(composite.pixel(p)).rgb())
            << p.x() << "," << p.y();

    // A change shows on both in the paint that follows.
    auto layer = global->current_boxes_layer();
    layer->set_offset_x(300);
    ASSERT_TRUE(wait_until(
        [&] { return live()->grab().toImage().pixel(200, 200) != shown.pixel(200, 200); }));

    // "No Live Output" hides it; choosing a monitor again shows the same
    // window there.
    live_output_window* first = live();
    canvas->set_live_output_to_monitor(-1);
    EXPECT_FALSE(live()->isVisible());
    canvas->set_live_output_to_monitor(0);
    EXPECT_EQ(live(), first);
    EXPECT_TRUE(live()->isVisible());
    EXPECT_EQ(live()->geometry(), QRect(0, 0, 1600, 1000));
    // A close request does not close it.
    live()->close();
    EXPECT_TRUE(live()->isVisible());
}
