// The live output on three monitors side by side: 1600 x 1000, then
// 800 x 600, then 640 x 480 device pixels; and the menu that chooses among
// them. The program runs at display scales 1, 1.5 and 2 (QT_SCALE_FACTOR),
// so places are the monitors' own and pixels are device pixels. (The
// offscreen platform lists its monitors by name, hence the numbered names.)

#include "canvas/live_output.h"
#include "canvas/live_show.h"
#include "core/keys.h"
#include "panels/top_menu.h"
#include "render/test_patterns.h"
#include "window/window_fixture.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct live_output : window_test {
    live_output_window* live() const { return app->live_output_window_pointer.get(); }
    static QRect monitor(int i) { return QGuiApplication::screens()[i]->geometry(); }
    // The Live Output section, opened: it is built anew at each opening.
    TopMenuSubmenu* live_output_menu() {
        screen->top_menu()->fold();
        screen->top_menu()->setSubmenu(TopMenuSubmenu::live_output_section);
        return screen->top_menu()->submenu(TopMenuSubmenu::live_output_section);
    }
    std::vector<std::string> captions() {
        std::vector<std::string> shown;
        // The monitors come before the patterns.
        for (WidgetWithBackground* e : live_output_menu()->entries())
            if (e->getMenuName() == "Identify: Ports")
                return shown;
            else
                shown.push_back(e->getMenuName());
        return std::vector<std::string>{};
    }
};

} // namespace

TEST_F(live_output, ChoosingAMonitorCoversItWithTheFrameAtFullSize) {
    ASSERT_EQ(QGuiApplication::screens().size(), 3);
    start();
    // The menu offers the monitors the main window is not (mostly) on,
    // numbered from one.
    window->setGeometry(monitor(1).adjusted(50, 50, 200, 50));
    EXPECT_EQ(captions(), (std::vector<std::string>{"No Live Output", "Live Output to Screen 1",
                                                    "Live Output to Screen 3"}));
    window->setGeometry(monitor(0).adjusted(50, 50, -50, -50));
    EXPECT_EQ(captions(), (std::vector<std::string>{"No Live Output", "Live Output to Screen 2",
                                                    "Live Output to Screen 3"}));
    // "No Live Output" before any: nothing.
    QTest::mouseClick(live_output_menu()->entries()[0], Qt::LeftButton);
    EXPECT_EQ(live(), nullptr);

    canvas->set_zoom(0.25f);
    QTest::mouseClick(live_output_menu()->entries()[1], Qt::LeftButton);
    EXPECT_FALSE(screen->top_menu()->is_showing_any_submenu());
    ASSERT_NE(live(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(live()));
    EXPECT_EQ(live()->geometry(), monitor(1));

    // One raster pixel to one device pixel from the top left corner,
    // whatever the canvas's zoom and pan and the display scale; the raster
    // is cut at the edge. The marks of a held modifier group are drawn in
    // device pixels too.
    const image& composite = *global->get_composite_image();
    const QImage shown = live()->grab().toImage();
    ASSERT_EQ(shown.size(), QSize(800, 600));
    for (int y = 0; y < 600; ++y)
        for (int x = 0; x < 800; ++x)
            ASSERT_EQ(shown.pixel(x, y), QColor::fromRgba(composite.pixel(x, y)).rgb())
                << x << "," << y;

    // A change shows on both in the paint that follows.
    auto layer = global->current_boxes_layer();
    layer->set_offset_x(300);
    ASSERT_TRUE(wait_until(
        [&] { return live()->grab().toImage().pixel(200, 200) != shown.pixel(200, 200); }));
    const QImage moved = live()->grab().toImage();
    global->set_keyboard_modifiers(keys::group_a);
    const QImage marked = live()->grab().toImage();
    global->set_keyboard_modifiers(0);
    // The wall now starts at x 300: its outline's left edge, a device pixel
    // or two wide.
    EXPECT_NE(marked.pixel(300, 300), moved.pixel(300, 300));
    for (int x : {297, 303})
        EXPECT_EQ(marked.pixel(x, 300), moved.pixel(x, 300)) << x;

    // "No Live Output" hides it; choosing a monitor again shows the same
    // window there.
    live_output_window* first = live();
    canvas->set_live_output_to_monitor(-1);
    EXPECT_FALSE(live()->isVisible());
    canvas->set_live_output_to_monitor(0);
    EXPECT_EQ(live(), first);
    EXPECT_TRUE(live()->isVisible());
    EXPECT_EQ(live()->geometry(), monitor(0));
    // A close request does not close it.
    live()->close();
    EXPECT_TRUE(live()->isVisible());
}

// Patterns and identify on the live output: exactly the core's frames, one
// raster pixel to one device pixel at every scale; Left and Right step an
// identify round its ends, auto steps on its own, Escape on the output and
// "Test Pattern: Map" bring the map back.
TEST_F(live_output, PatternsAndIdentifyShowTheCoresFramesPixelForPixel) {
    start();
    window->setGeometry(monitor(0).adjusted(50, 50, -50, -50));
    auto layer = global->current_boxes_layer();
    layer->DataDiagramType = 1;
    layer->SnakeLimit = 128 * 128 * 6; // six cabinets to a port: 7 ports
    layer->ExcludeBoxes.add(box_id(2, 1));
    layer->set_changed();
    canvas->set_live_output_to_monitor(1);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(live()));
    const auto shows = [&](const image& want) {
        return wait_until([&] {
            const QImage got = live()->grab().toImage();
            for (int y = 0; y < got.height(); y += 1)
                for (int x = 0; x < got.width(); ++x)
                    if (got.pixel(x, y) != QColor::fromRgba(want.pixel(x, y)).rgb()) return false;
            return true;
        });
    };
    live_show& shown = canvas->show();
    const auto choose = [&](const char* caption) {
        for (WidgetWithBackground* e : live_output_menu()->entries())
            if (e->getMenuName() == caption) QTest::mouseClick(e, Qt::LeftButton);
    };
    choose("Test Pattern: Cabinet Crosshatch");
    EXPECT_TRUE(shows(pattern_frame(*global, test_pattern::crosshatch)));
    choose("Identify: Ports");
    const int ports = identify_steps(*global, identify_kind::ports);
    ASSERT_EQ(ports, 7);
    EXPECT_TRUE(shows(identify_frame(*global, identify_kind::ports, 0)));
    window->activateWindow();
    canvas->setFocus();
    ASSERT_TRUE(wait_until([&] { return canvas->hasFocus(); }));
    for (const auto& [key, step] : {std::pair{Qt::Key_Right, 1},
                                    {Qt::Key_Left, 0},
                                    {Qt::Key_Left, ports - 1},
                                    {Qt::Key_Right, 0}}) {
        QTest::keyClick(canvas, key);
        EXPECT_EQ(shown.current_step(), step);
        EXPECT_EQ(canvas->selection().status_line()->text().toStdString(),
                  "Port " + std::to_string(step + 1) + " of 7");
    }
    QTest::keyClick(canvas, Qt::Key_Right);
    // The Identify palette steps too, and says where the wall is.
    QTest::mouseClick(screen->findChild<QPushButton*>("Next"), Qt::LeftButton);
    EXPECT_EQ(screen->findChild<QLabel*>("Identify status")->text(), "Port 3 of 7");
    QTest::mouseClick(screen->findChild<QPushButton*>("Previous"), Qt::LeftButton);
    EXPECT_EQ(shown.current_step(), 1);
    const image before = identify_frame(*global, identify_kind::ports, 1);
    EXPECT_TRUE(shows(before));
    // An edit shows at once, in the identify frame.
    layer->ExcludeBoxes.clear();
    layer->SnakeLimit = 128 * 128 * 4;
    layer->set_changed();
    ASSERT_NE(identify_frame(*global, identify_kind::ports, 1), before);
    EXPECT_TRUE(shows(identify_frame(*global, identify_kind::ports, 1)));
    choose("Identify: Auto");
    EXPECT_TRUE(wait_until([&] { return shown.current_step() == 2; }, 6000));
    choose("Identify: Auto");
    EXPECT_FALSE(shown.is_auto());
    choose("Identify: Cabinets");
    EXPECT_TRUE(shows(identify_frame(*global, identify_kind::cabinets, 0)));
    // The same kind again ends identify; so does Escape on the output.
    choose("Identify: Cabinets");
    EXPECT_FALSE(shown.is_active());
    choose("Identify: Circuits");
    QTest::keyClick(live(), Qt::Key_Escape);
    EXPECT_FALSE(shown.is_active());
    choose("Test Pattern: Moving Line");
    const QImage first = live()->grab().toImage();
    EXPECT_TRUE(wait_until([&] { return live()->grab().toImage() != first; }));
    choose("Test Pattern: Map");
    EXPECT_TRUE(shows(*global->get_composite_image()));
}
