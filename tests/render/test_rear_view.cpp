// The rear view and colouring by chain: the rear frame against the front one
// mirrored, the texts a rear frame draws, and the colours and legend of a
// map coloured by port or circuit.

#include "plan/cabinet_chains.h"
#include "plan/chain_colors.h"
#include "render/draw2d_context.h"
#include "render/rear_view.h"
#include "support/recording_context.h"
#include "support/workspace_builders.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

QRgb rgb(color::color c) {
    return qRgb(c.red, c.green, c.blue);
}

struct rear_view : workspace_test {};

} // namespace

// Texts held back and never drawn stand for "every text off": what is left,
// cabinets in the colours of their ports, outlines, circles, both paths, a
// picture and the raster label's box, with layers cut by the raster's
// edges, is the front mirrored.
TEST_F(rear_view, WithoutTextsTheRearFrameIsTheFrontMirrored) {
    global.set_paper_width(301);
    global.set_paper_height(120);
    auto picture = add_picture(global, "picture", -7, 3, 60, 40);
    auto pixels = std::make_shared<image>(6, 4, QImage::Format_ARGB32);
    for (int i = 0; i < 24; ++i)
        pixels->setPixel(i % 6, i / 6, qRgba(i * 10, 255 - i * 9, (i * 37) % 256, 200));
    picture->set_image(pixels);
    for (auto [x, y] : {std::pair{13, 7}, {250, 60}, {-20, 70}}) {
        auto screen = add_screen(global, "wall", x, y, 5, 3, 17);
        screen->DrawSnake = screen->DrawPowerPath = screen->DrawCircle = 1;
        screen->SnakeLimit = 17 * 17 * 5; // a row a port
        screen->ExcludeBoxes.add(box_id(1, 1));
    }
    global.raster_label_enabled = true;
    global.raster_label_lines = {"Stage left"};
    global.raster_label_x = 20;
    global.color_by = color_by_mode::port;
    global.rear_view = true;
    nano2d::draw2d_context headless;
    nano2d::text_holding_context no_texts(&headless);
    ASSERT_TRUE(global.defer_build_frame(true, &no_texts));
    const Global::frame_view frame = global.read_frame();
    ASSERT_TRUE(frame.rear());
    EXPECT_EQ(*frame.rear(), frame.composite()->mirrored(true, false));
    EXPECT_NE(*frame.rear(), *frame.composite());
}

// From behind, A1 is at the right end and keeps its name, and the label of
// the top left corner (as seen from the front) stands at that corner, now on
// the right; every text reads left to right.
TEST_F(rear_view, TextsStayReadableAtTheirMirroredPlaces) {
    auto layer = add_screen(global, "wall", 10, 20, 4, 2, 50);
    show_only_cabinets(*layer);
    layer->DrawBoxesNames = 1;
    layer->CornersMode = 1 << corner_top_left;
    recording_context log;
    build_rear_frame(*layer, &log, nullptr);
    const recorded_call* a1 = log.text_call("A1");
    const recorded_call* d1 = log.text_call("D1");
    const recorded_call* corner = log.text_call("X 10,Y 20");
    ASSERT_TRUE(a1 && d1 && corner);
    EXPECT_EQ(a1->args[1], "175");
    EXPECT_EQ(d1->args[1], "25");
    // Left-aligned 10 pixels in from the front's left edge: from behind its
    // line box ends 10 pixels in from the right edge.
    float bounds[4];
    log.font_size(float(layer->LabelFontSize.get()));
    log.text_align(nano2d::align_left | nano2d::align_top);
    const float width = log.text_bounds("X 10,Y 20", 0, 0, bounds);
    EXPECT_FLOAT_EQ(std::stof(corner->args[1]) + width, 200.0f - 10.0f);
}

// Cabinets of one port share its hue, light and dark in a chequer; the next
// port has the next colour; the info line names each port on its colour.
TEST_F(rear_view, ColourByPortAndCircuitWithLegend) {
    auto layer = add_screen(global, "wall", 0, 0, 4, 2, 40);
    show_only_cabinets(*layer);
    layer->DrawInfoLine = 1;
    layer->SnakeLimit = 4 * 1600; // four cabinets a port: two ports
    const plan::cabinet_chains ports = plan::chains_of(*layer, color_by_mode::port);
    ASSERT_EQ(ports.names, (std::vector<std::string>{"P1", "P2"}));
    EXPECT_TRUE(plan::chains_of(*layer, color_by_mode::chequer).names.empty());
    // Circuits of 10 A x 100 % x 200 V carry two cabinets of 1000 W.
    layer->PowerWatts = 1000;
    layer->CircuitAmps = 10, layer->CircuitDerate = 100, layer->PowerVolts = 200;
    EXPECT_EQ(plan::chains_of(*layer, color_by_mode::circuit).names.size(), 4u);

    global.color_by = color_by_mode::port;
    nano2d::draw2d_context headless;
    layer->build_frame(&headless, nullptr);
    const image& frame = *layer->get_offscreen();
    for (const auto& [id, chain] : ports.chain_of) {
        const int column = int(id >> 16), row = int(id & 0xFFFF);
        const bool dark = (column + row) % 2 != 0;
        const color::color want = dark ? plan::chain_color_dark(chain) : plan::chain_color(chain);
        EXPECT_EQ(frame.pixel(column * 40 + 5, row * 40 + 5), rgb(want)) << column << "," << row;
    }

    recording_context log;
    layer->build_frame(&log, nullptr);
    const recorded_call* p2 = log.text_call(" P2 ");
    ASSERT_TRUE(log.text_call(" P1 ") && p2);
    // The legend follows the info line on one line, each name on its colour.
    const long at = log.index_of(p2->line());
    ASSERT_GE(at, 4);
    EXPECT_EQ(log.log()[std::size_t(at) - 4].line(),
              "fill_color " + recording_context::col(plan::chain_color(1)));
}
