// Test patterns and identify frames: exact pixels at cabinet edges, only on
// the cabinets of visible screens, and the cabinets each step lights.

#include "plan/chain_colors.h"
#include "plan/power_plan.h"
#include "render/test_patterns.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// Screen A at (4, 4): 4 x 2 cabinets of 10, cabinet (1, 0) excluded; B at
// (48, 28): 2 x 1 of 8; C hidden over the raster's top right corner.
struct wall_frames : workspace_test {
    pointer<boxes_layer> a, b;
    wall_frames() {
        global.set_paper_width(64);
        global.set_paper_height(40);
        a = add_screen(global, "A", 4, 4, 4, 2, 10);
        a->ExcludeBoxes.add(box_id(1, 0));
        b = add_screen(global, "B", 48, 28, 2, 1, 8);
        add_screen(global, "C", 50, 0, 2, 2, 7)->set_hidden(true);
        for (auto& s : {a, b}) {
            // Two cabinets of A to a port, three to a circuit.
            s->DataDiagramType = 1;
            s->SnakeLimit = 200;
            s->PowerWatts = 100;
            s->CircuitAmps = 300, s->CircuitDerate = 100, s->PowerVolts = 1;
        }
    }
};

constexpr QRgb K = 0xff000000, W = 0xffffffff, R = 0xffff0000, Y = 0xffffff00, B = 0xff0000ff;

} // namespace

TEST_F(wall_frames, PatternsLightTheCabinetsOfVisibleScreensToTheEdgePixel) {
    // A pattern at a step, a colour and the points "x,y ..." that have it.
    const std::tuple<test_pattern, long long, QRgb, const char*> table[] = {
        // Around the cabinets, in the excluded one and under the hidden
        // screen: dark, whatever the pattern.
        {test_pattern::white, 0, K, "3,4 4,3 44,23 43,24 19,8 55,5"},
        {test_pattern::white, 0, W, "4,4 43,23"},
        {test_pattern::red, 0, K, "47,28"},
        {test_pattern::red, 0, R, "48,28 63,35"},
        {test_pattern::blue, 0, B, "24,4"},
        {test_pattern::map, 0, K, "4,4"},
        {test_pattern::black, 0, K, "4,4"},
        // Each cabinet's outermost pixels: where two meet, two lines.
        {test_pattern::crosshatch, 0, W, "4,8 13,18 14,18 8,13 8,14 13,8 63,35"},
        {test_pattern::crosshatch, 0, K, "5,8 12,18 15,18 8,15 62,34"},
        // Eight bars across each screen: 5 pixels on A, 2 on B.
        {test_pattern::bars, 0, W, "8,18 49,30"},
        {test_pattern::bars, 0, Y, "9,18 50,30"},
        {test_pattern::bars, 0, B, "38,18 61,30"},
        {test_pattern::bars, 0, K, "39,18"},
        // Sixteen grey steps, 2.5 pixels each on A: 0, 17, ... 255.
        {test_pattern::grey, 0, K, "6,18"},
        {test_pattern::grey, 0, 0xff111111, "7,18"},
        {test_pattern::grey, 0, 0xff222222, "9,18"},
        {test_pattern::grey, 0, W, "43,18"},
        // The moving line: column 5, then row 18 (64 + 18), on cabinets only.
        {test_pattern::moving_line, 5, W, "5,4 5,23"},
        {test_pattern::moving_line, 5, K, "5,3 4,4 6,4"},
        {test_pattern::moving_line, 19, K, "19,8"},
        {test_pattern::moving_line, 19, W, "19,18"},
        {test_pattern::moving_line, 82, W, "4,18 43,18"},
        {test_pattern::moving_line, 82, K, "44,18 4,17"},
        {test_pattern::moving_line, 82 + 104, W, "4,18"},
    };
    for (const auto& [p, step, want, points] : table) {
        const image frame = pattern_frame(global, p, step);
        std::istringstream in(points);
        int x = 0, y = 0;
        char comma = 0;
        while (in >> x >> comma >> y)
            EXPECT_EQ(frame.pixel(x, y), want)
                << int(p) << " step " << step << " at " << x << "," << y;
    }
    // Transparent: nothing around the cabinets, for a media server's layer.
    EXPECT_EQ(pattern_frame(global, test_pattern::red, 0, true).pixel(3, 4), 0u);
    EXPECT_EQ(pattern_frame(global, test_pattern::red, 0, true).size(), QSize(64, 40));
    EXPECT_EQ(test_pattern_named("crosshatch"), test_pattern::crosshatch);
    EXPECT_EQ(test_pattern_named("map"), std::nullopt);
    EXPECT_EQ(moving_line_steps(global), 104);
}

// Step k lights port (circuit) k + 1 of every screen: exactly its cabinets,
// in its colours, light and dark in turn, with a label drawn on them.
TEST_F(wall_frames, IdentifyLightsOneChainAtATimeInItsColour) {
    // Cabinets: every cabinet lit, in its port's colours, with its ID.
    const image all = identify_frame(global, identify_kind::cabinets, 0);
    for (const identify_kind kind : {identify_kind::ports, identify_kind::circuits}) {
        // Each chain of A: first cabinet, last cabinet, count.
        std::vector<std::tuple<std::uint32_t, std::uint32_t, std::int64_t>> chains;
        if (kind == identify_kind::ports)
            for (const auto& p : Snake::port_loads(*a).ports)
                chains.emplace_back(box_id(p.first_column, p.first_row),
                                    box_id(p.last_column, p.last_row), p.cabinets);
        else
            for (const auto& c : plan::plan_power(*a).circuits)
                chains.emplace_back(box_id(c.first_column, c.first_row),
                                    box_id(c.last_column, c.last_row), c.cabinets);
        ASSERT_EQ(chains.size(), kind == identify_kind::ports ? 4u : 3u);
        ASSERT_EQ(identify_steps(global, kind), int(chains.size()));
        for (int step = 0; step < int(chains.size()); ++step) {
            const image frame = identify_frame(global, kind, step);
            const auto corner = [&](std::uint32_t id) {
                return frame.pixel(4 + 10 * int(id >> 16), 4 + 10 * int(id & 0xFFFF));
            };
            const auto square = [&](std::uint32_t id) {
                const color::color c = (((id >> 16) + id) & 1)
                                           ? plan::chain_color_dark(std::size_t(step))
                                           : plan::chain_color(std::size_t(step));
                return qRgb(c.red, c.green, c.blue);
            };
            const auto [first, last, count] = chains[std::size_t(step)];
            EXPECT_EQ(corner(first), square(first)) << step;
            EXPECT_EQ(corner(last), square(last)) << step;
            int lit = 0, labelled = 0;
            for (std::uint32_t c = 0; c < 4; ++c)
                for (std::uint32_t r = 0; r < 2; ++r) {
                    const std::uint32_t id = box_id(c, r);
                    if (corner(id) == K) continue;
                    ++lit;
                    EXPECT_EQ(corner(id), square(id));
                    if (kind == identify_kind::ports) {
                        EXPECT_EQ(all.pixel(4 + 10 * int(c), 4 + 10 * int(r)), square(id));
                    }
                    for (int y = 0; y < 10; ++y)
                        for (int x = 0; x < 10; ++x)
                            labelled +=
                                frame.pixel(4 + 10 * int(c) + x, 4 + 10 * int(r) + y) != square(id);
                }
            EXPECT_EQ(lit, count) << step;
            EXPECT_GT(labelled, 0) << step;
            EXPECT_EQ(frame.pixel(3, 4), K);
        }
    }
    EXPECT_EQ(all.pixel(14, 4), K);
    EXPECT_NE(all.pixel(48, 28), K);
    EXPECT_EQ(identify_steps(global, identify_kind::cabinets), 1);
    EXPECT_EQ(identify_label(identify_kind::cabinets, 0, *a, box_id(27, 1)), "BB2");
    a->BoxesNamesReverse = 1;
    EXPECT_EQ(identify_label(identify_kind::cabinets, 0, *a, box_id(2, 1)), "B3");
    EXPECT_EQ(identify_label(identify_kind::circuits, 2, *a, 0), "C3");
    EXPECT_EQ(identify_label(identify_kind::ports, 2, *a, 0), "3");
    // A screen that cannot be routed stays dark.
    a->DataDiagramType = 0;
    a->SnakeLimit = 10;
    EXPECT_EQ(identify_frame(global, identify_kind::ports, 0).pixel(4, 4), K);
}
