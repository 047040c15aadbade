// The computed routers: "Novastar" and "Other Type" on small walls whose
// routes are written out cabinet by cabinet, with S at a port's first box and
// E at its last.

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include <stdexcept>
#include <string>
#include <tuple>

using namespace Vantora_TesserinePro;

namespace {

constexpr int novastar = 0;
constexpr int other_type = 1;

// A wall of 4 columns and 3 rows of 10 by 10 cabinets (100 pixels each).
struct route_test : ::testing::Test {
    Global global;
    pointer<boxes_layer> layer;
    void SetUp() override {
        global.m_project = std::make_shared<project>();
        layer = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
        layer->Columns = 4;
        layer->Rows = 3;
        layer->Width = 10;
        layer->Height = 10;
        layer->SkipBlankBoxes = 1;
    }
    std::string route(int type, int mode, int limit) {
        layer->DataDiagramType = type;
        layer->SnakeMode = mode;
        layer->SnakeLimit = limit;
        return Snake::route_text(Snake::make_route(*layer));
    }
    // The failure text, or "" when the router does not fail.
    std::string failure(int type, int mode, int limit) {
        try {
            route(type, mode, limit);
        } catch (const std::runtime_error& e) {
            return e.what();
        }
        return "";
    }
    void exclude(std::uint32_t column, std::uint32_t row) {
        layer->ExcludeBoxes.add(box_id(column, row));
    }
};

const std::string limit_text = "Some panels consume more pixels then limit used.";

Snake::box cell(float x0, float y0, float x1, float y1) {
    Snake::box b;
    b.x0 = x0;
    b.y0 = y0;
    b.x1 = x1;
    b.y1 = y1;
    return b;
}

} // namespace

TEST(pixel_count, CeilOfTheAreaInSinglePrecision) {
    EXPECT_EQ(Snake::pixel_count(cell(0, 0, 10, 10)), 100);
    EXPECT_EQ(Snake::pixel_count(cell(0, 0, 5, 10)), 50); // a half cabinet counts half
    EXPECT_EQ(Snake::pixel_count(cell(0, 0, 64.5f, 128)), 8256);
    EXPECT_EQ(Snake::pixel_count(cell(0, 0, 2.5f, 3)), 8); // 7.5 rounds up
    EXPECT_EQ(Snake::pixel_count(cell(3, 3, 3, 7)), 0);
    EXPECT_EQ(Snake::pixel_count(cell(10, 0, 0, 10)), -100);
    // Far beyond an int: held at the largest value instead of overflowing.
    EXPECT_EQ(Snake::pixel_count(cell(0, 0, 1e10f, 1e10f)), 2147483647);
}

TEST(pixel_count, FailureTextIsShared) {
    EXPECT_EQ(Snake::limit_failure_text, limit_text);
}

// --- "Novastar"

TEST_F(route_test, NovastarRowsFromTopLeft) {
    EXPECT_EQ(route(novastar, 0, 800),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(route_test, NovastarColumnsFromBottomLeft) {
    EXPECT_EQ(route(novastar, 6, 800),
              "(0,2)S (0,1) (0,0) (1,0) (1,1) (1,2)E (2,2)S (2,1) (2,0) (3,0) (3,1) (3,2)E");
}

TEST_F(route_test, NovastarExcludedCabinetLeavesTheSumButNotTheRectangle) {
    exclude(1, 1);
    EXPECT_EQ(route(novastar, 0, 800),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(route_test, NovastarRoutesThroughExcludedCabinetsUnlessSkipping) {
    exclude(1, 1);
    layer->SkipBlankBoxes = 0;
    EXPECT_EQ(route(novastar, 0, 800),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
    // With the excluded cabinet counted, two lines no longer fit 700.
    EXPECT_EQ(route(novastar, 0, 700),
              "(0,0)S (1,0) (2,0) (3,0)E (0,1)S (1,1) (2,1) (3,1)E (0,2)S (1,2) (2,2) (3,2)E");
    // Skipping it, the sum of two lines is 700, but their rectangle is 800.
    layer->SkipBlankBoxes = 1;
    EXPECT_EQ(route(novastar, 0, 700),
              "(0,0)S (1,0) (2,0) (3,0)E (0,1)S (2,1) (3,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(route_test, NovastarLineAboveTheLimitFails) {
    EXPECT_EQ(failure(novastar, 0, 300), limit_text);
    EXPECT_EQ(failure(novastar, 0, 400), "");
    // Columns of 300 pixels fit where rows of 400 do not.
    EXPECT_EQ(failure(novastar, 4, 300), "");
}

TEST_F(route_test, NovastarLineAboveTheLimitFailsAfterTheFirstPortToo) {
    layer->Columns = 2;
    layer->Rows = 2;
    layer->HalfColumns.set(2); // first row half height: 100, then 200
    EXPECT_EQ(failure(novastar, 0, 150), limit_text);
}

TEST_F(route_test, NovastarAreaStartsANewPort) {
    // Row 1 keeps only its end cabinets: 200 pixels spread over 400.
    exclude(1, 1);
    exclude(2, 1);
    EXPECT_EQ(route(novastar, 0, 700),
              "(0,0)S (1,0) (2,0) (3,0)E (0,1)S (3,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(route_test, NovastarFirstLineWiderThanTheLimitByAreaFails) {
    exclude(1, 0);
    exclude(2, 0);
    // 200 pixels, but the rectangle around them is 400.
    EXPECT_EQ(failure(novastar, 0, 300), limit_text);
    EXPECT_EQ(failure(novastar, 0, 400), "");
}

TEST_F(route_test, NovastarLaterLineWiderThanTheLimitByAreaStartsAPort) {
    // Rows 0 and 1 are 300 pixels in a 300 rectangle; row 2 keeps its two end
    // cabinets, 200 pixels in a 400 rectangle. Only the first line can fail
    // by area: a later one starts a port of its own.
    exclude(3, 0);
    exclude(3, 1);
    exclude(1, 2);
    exclude(2, 2);
    EXPECT_EQ(route(novastar, 0, 300), "(0,0)S (1,0) (2,0)E (0,1)S (1,1) (2,1)E (0,2)S (3,2)E");
}

TEST_F(route_test, NovastarPortRectangleGrowsWithEachLine) {
    // Column 3 alone would fit 500 by sum and by area; merged with column 2
    // its rectangle is 600.
    exclude(3, 1);
    EXPECT_EQ(route(novastar, 4, 500),
              "(0,0)S (0,1) (0,2)E (1,0)S (1,1) (1,2)E (2,0)S (2,1) (2,2)E (3,0)S (3,2)E");
}

TEST_F(route_test, NovastarDefaultLayerIsOnePort) {
    auto fresh = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
    const Snake::route r = Snake::make_route(*fresh);
    ASSERT_EQ(r.size(), 40u);
    for (std::size_t k = 0; k < r.size(); ++k) {
        EXPECT_EQ(r[k].is_port_start(), k == 0) << k;
        EXPECT_EQ(r[k].is_port_end(), k + 1 == r.size()) << k;
    }
    // Mode 6: bottom left, up the first column.
    EXPECT_EQ(r[0].id(), box_id(0, 4));
    EXPECT_EQ(r[5].id(), box_id(1, 0));
    EXPECT_EQ(r.back().id(), box_id(7, 4));
}

TEST_F(route_test, NovastarLimitZeroFailsOnTheFirstLine) {
    EXPECT_EQ(failure(novastar, 0, 0), limit_text);
    EXPECT_EQ(failure(novastar, 6, 0), limit_text);
}

TEST_F(route_test, NegativeLimitMeansNoLimit) {
    layer->Columns = 300;
    layer->Rows = 200;
    layer->Width = 128;
    layer->Height = 128;
    for (int type : {novastar, other_type}) {
        for (int limit : {-1, -655360, INT32_MIN}) {
            layer->DataDiagramType = type;
            layer->SnakeLimit = limit;
            const Snake::route r = Snake::make_route(*layer);
            ASSERT_EQ(r.size(), 60000u);
            int starts = 0, ends = 0;
            for (const auto& b : r) {
                starts += b.is_port_start();
                ends += b.is_port_end();
            }
            EXPECT_EQ(starts, 1) << type << " " << limit;
            EXPECT_EQ(ends, 1) << type << " " << limit;
            EXPECT_TRUE(r.front().is_port_start());
            EXPECT_TRUE(r.back().is_port_end());
        }
    }
}

TEST_F(route_test, LargestPositiveLimitIsStillALimit) {
    EXPECT_EQ(route(novastar, 0, INT32_MAX),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1) (0,2) (1,2) (2,2) (3,2)E");
}

// --- "Other Type"

TEST_F(route_test, OtherTypeLimit500) {
    EXPECT_EQ(route(other_type, 0, 500),
              "(0,0)S (1,0) (2,0) (3,0) (3,1)E (2,1)S (1,1) (0,1) (0,2) (1,2)E (2,2)S (3,2)E");
}

TEST_F(route_test, OtherTypeLimit700EndsInTheMiddleOfALine) {
    EXPECT_EQ(route(other_type, 0, 700),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1)E (0,1)S (0,2) (1,2) (2,2) (3,2)E");
}

TEST_F(route_test, OtherTypeLimit800LooksAheadLikeNovastar) {
    EXPECT_EQ(route(other_type, 0, 800), route(novastar, 0, 800));
    EXPECT_EQ(route(other_type, 0, 800),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(route_test, OtherTypeLimit900) {
    EXPECT_EQ(route(other_type, 0, 900),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1) (0,2)E (1,2)S (2,2) (3,2)E");
}

TEST_F(route_test, OtherTypeNeverFailsAndGivesACabinetAboveTheLimitItsOwnPort) {
    EXPECT_EQ(failure(other_type, 0, 300), "");
    // 100-pixel cabinets, limit 50: each one a port that counts only as an end.
    EXPECT_EQ(
        route(other_type, 0, 50),
        "(0,0)E (1,0)E (2,0)E (3,0)E (0,1)E (1,1)E (2,1)E (3,1)E (0,2)E (1,2)E (2,2)E (3,2)E");
}

TEST_F(route_test, OtherTypeLimitZeroMarksEveryCabinetAsAnEndAndNoneAsAStart) {
    for (int mode = 0; mode < 8; ++mode) {
        layer->SnakeMode = mode;
        layer->DataDiagramType = other_type;
        layer->SnakeLimit = 0;
        const Snake::route r = Snake::make_route(*layer);
        ASSERT_EQ(r.size(), 12u) << mode;
        for (const auto& b : r) {
            EXPECT_TRUE(b.is_port_end()) << mode;
            EXPECT_FALSE(b.is_port_start()) << mode;
        }
    }
    // Every line is a fresh port, so every line goes in the first direction.
    EXPECT_EQ(
        route(other_type, 6, 0),
        "(0,2)E (0,1)E (0,0)E (1,2)E (1,1)E (1,0)E (2,2)E (2,1)E (2,0)E (3,2)E (3,1)E (3,0)E");
}

TEST_F(route_test, OtherTypeNeverRoutesThroughExcludedCabinets) {
    exclude(1, 1);
    const std::string expected =
        "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (0,1) (0,2)E (1,2)S (2,2) (3,2)E";
    EXPECT_EQ(route(other_type, 0, 800), expected);
    layer->SkipBlankBoxes = 0;
    EXPECT_EQ(route(other_type, 0, 800), expected);
}

TEST_F(route_test, OtherTypeMarkOnThePreviousRunNeverReachesTheRoute) {
    // A half first row: its cabinets are 50 pixels, the next row's 100. Row 0
    // ends at (3,0) with 200 used; the look-ahead of one more 50 still fits
    // 250, but the first cabinet of row 1 does not. The end mark meant for
    // (3,0) is written on row 0's own copy only, so the route shows a new
    // start at (3,1) with no end before it.
    layer->HalfColumns.set(2);
    EXPECT_EQ(route(other_type, 0, 250),
              "(0,0)S (1,0) (2,0) (3,0) (3,1)S (2,1)E (1,1)S (0,1)E (0,2)S (1,2)E (2,2)S (3,2)E");
    const Snake::route r = Snake::make_route(*layer);
    EXPECT_TRUE(r[3].end_known);
    EXPECT_FALSE(r[3].ends_port);
    EXPECT_FALSE(r[3].starts_port);
}

// --- both routers

TEST_F(route_test, AllCabinetsExcludedGiveAnEmptyRoute) {
    layer->switch_all_exclude_boxes();
    for (int type : {novastar, other_type})
        for (int mode = 0; mode < 8; ++mode)
            for (int limit : {0, 300, 800, -1}) {
                EXPECT_EQ(route(type, mode, limit), "") << type << " " << mode << " " << limit;
                EXPECT_EQ(failure(type, mode, limit), "");
            }
    // Not skipping, "Novastar" routes through them all; "Other Type" still
    // leaves them out.
    layer->SkipBlankBoxes = 0;
    EXPECT_EQ(route(novastar, 0, 800),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
    EXPECT_EQ(route(other_type, 0, 800), "");
}

TEST_F(route_test, EmptyWallGivesAnEmptyRoute) {
    layer->Columns = 0;
    EXPECT_EQ(route(novastar, 0, 0), "");
    layer->Columns = 4;
    layer->Rows = 0;
    EXPECT_EQ(route(other_type, 0, 0), "");
    layer->Rows = -3;
    EXPECT_EQ(route(novastar, 6, 800), "");
}

TEST_F(route_test, WhollyExcludedOutermostLineTakenFirstAddsNothing) {
    for (std::uint32_t c = 0; c < 4; ++c)
        exclude(c, 2);
    // Mode 2 takes the rows bottom first; the bottom one is empty.
    const std::string expected = "(0,1)S (1,1) (2,1) (3,1) (3,0) (2,0) (1,0) (0,0)E";
    EXPECT_EQ(route(novastar, 2, 800), expected);
    EXPECT_EQ(route(other_type, 2, 800), expected);
    EXPECT_EQ(route(novastar, 2, 400), "(0,1)S (1,1) (2,1) (3,1)E (0,0)S (1,0) (2,0) (3,0)E");
    // Taken last under forward order, it adds nothing either.
    EXPECT_EQ(route(novastar, 0, 800), "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E");
    EXPECT_EQ(route(other_type, 0, 800), "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E");
}

TEST_F(route_test, WhollyExcludedMiddleLineDoesNotTurnTheSerpentine) {
    for (std::uint32_t c = 0; c < 4; ++c)
        exclude(c, 1);
    const std::string expected = "(0,0)S (1,0) (2,0) (3,0) (3,2) (2,2) (1,2) (0,2)E";
    EXPECT_EQ(route(novastar, 0, -1), expected);
    EXPECT_EQ(route(other_type, 0, -1), expected);
}

TEST_F(route_test, ExcludedIdsOffTheGridChangeNothing) {
    exclude(9, 9);
    exclude(0xFFFF, 0);
    EXPECT_EQ(route(novastar, 0, 800),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(route_test, ShouldSkipBoxNeedsTheFlagAndTheId) {
    Snake::box b;
    b.column = 1;
    b.row = 2;
    EXPECT_FALSE(layer->should_skip_box(b));
    exclude(1, 2);
    EXPECT_TRUE(layer->should_skip_box(b));
    layer->SkipBlankBoxes = 0;
    EXPECT_FALSE(layer->should_skip_box(b));
    layer->SkipBlankBoxes = 7; // any non-zero value counts as set
    EXPECT_TRUE(layer->should_skip_box(b));
    b.row = 1;
    EXPECT_FALSE(layer->should_skip_box(b));
}

TEST_F(route_test, RoutingLeavesTheLayerAsItWas) {
    exclude(1, 1);
    layer->clear_changed();
    global.changed = 0;
    route(novastar, 0, 800);
    route(other_type, 0, 500);
    EXPECT_FALSE(layer->has_changed());
    EXPECT_FALSE(global.is_changed());
    EXPECT_EQ(layer->ExcludeBoxes.size(), 1u);
    EXPECT_TRUE(layer->CustomPath.empty());
}

// --- the eight patterns, with half first and last lines

namespace {

// The order of a 3 by 2 wall in each mode, as one port.
const char* const one_port_order[8] = {
    "(0,0)S (1,0) (2,0) (2,1) (1,1) (0,1)E", "(2,0)S (1,0) (0,0) (0,1) (1,1) (2,1)E",
    "(0,1)S (1,1) (2,1) (2,0) (1,0) (0,0)E", "(2,1)S (1,1) (0,1) (0,0) (1,0) (2,0)E",
    "(0,0)S (0,1) (1,1) (1,0) (2,0) (2,1)E", "(2,0)S (2,1) (1,1) (1,0) (0,0) (0,1)E",
    "(0,1)S (0,0) (1,0) (1,1) (2,1) (2,0)E", "(2,1)S (2,0) (1,0) (1,1) (0,1) (0,0)E",
};

// Each line a port: every line starts at the side of the very first.
const char* const port_per_line_order[8] = {
    "(0,0)S (1,0) (2,0)E (0,1)S (1,1) (2,1)E",   "(2,0)S (1,0) (0,0)E (2,1)S (1,1) (0,1)E",
    "(0,1)S (1,1) (2,1)E (0,0)S (1,0) (2,0)E",   "(2,1)S (1,1) (0,1)E (2,0)S (1,0) (0,0)E",
    "(0,0)S (0,1)E (1,0)S (1,1)E (2,0)S (2,1)E", "(2,0)S (2,1)E (1,0)S (1,1)E (0,0)S (0,1)E",
    "(0,1)S (0,0)E (1,1)S (1,0)E (2,1)S (2,0)E", "(2,1)S (2,0)E (1,1)S (1,0)E (0,1)S (0,0)E",
};

using rect = std::tuple<float, float, float, float>;

} // namespace

struct patterns : route_test, ::testing::WithParamInterface<std::tuple<int, unsigned>> {};

TEST_P(patterns, OrderMarksAndRectangles) {
    const auto [mode, half_bits] = GetParam();
    layer->Columns = 3;
    layer->Rows = 2;
    layer->Width = 20;
    layer->Height = 10;
    layer->HalfColumns = std::bitset<4>(half_bits);
    std::map<std::uint32_t, rect> walked;
    layer->for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short c, unsigned short r) {
            walked[box_id(c, r)] = rect{x0, y0, x1, y1};
            return false;
        },
        false);
    for (int type : {novastar, other_type}) {
        EXPECT_EQ(route(type, mode, -1), one_port_order[mode]) << type;
        // The route's boxes carry the walk's rectangles, half ones included.
        for (const auto& b : Snake::make_route(*layer))
            EXPECT_EQ((rect{b.x0, b.y0, b.x1, b.y1}), walked[b.id()]) << type << " " << b.id();
    }
    // A limit of the largest line: no two lines share a "Novastar" port.
    const bool transposed = (mode & 4) != 0;
    std::map<int, int> line_pixels;
    layer->for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short c, unsigned short r) {
            line_pixels[transposed ? c : r] += Snake::pixel_count(cell(x0, y0, x1, y1));
            return false;
        },
        transposed);
    int line = 0;
    for (const auto& [index, pixels] : line_pixels)
        line = std::max(line, pixels);
    EXPECT_EQ(route(novastar, mode, line), port_per_line_order[mode]);
    // "Other Type" looks ahead by the last cabinet, so only full lines end
    // exactly at the limit.
    if (half_bits == 0) {
        EXPECT_EQ(route(other_type, mode, line), port_per_line_order[mode]);
    }
}

INSTANTIATE_TEST_SUITE_P(AllModes, patterns,
                         ::testing::Combine(::testing::Range(0, 8),
                                            ::testing::Values(0u, 0b0101u, 0b1010u, 0b1111u)));

TEST_F(route_test, ModeIsReadAsThreeBits) {
    const std::string mode6 = route(novastar, 6, 800);
    EXPECT_EQ(route(novastar, 6 + 8, 800), mode6);
    EXPECT_EQ(route(novastar, -2, 800), mode6); // ...11110
}

TEST_F(route_test, HalfCabinetsCountHalf) {
    // Half first and last column: 50 + 100 + 100 + 50 = 300 a row.
    layer->HalfColumns.set(0);
    layer->HalfColumns.set(1);
    EXPECT_EQ(route(novastar, 0, 600),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
    EXPECT_EQ(failure(novastar, 0, 299), limit_text);
    EXPECT_EQ(route(other_type, 0, 450),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1)E (1,1)S (0,1) (0,2) (1,2) (2,2) (3,2)E");
}
