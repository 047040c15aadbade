// The computed routers: "Novastar" and "Other Type" on small walls whose
// routes are written out cabinet by cabinet, with S at a port's first box and
// E at its last.

#include "datapath/snake.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

constexpr int novastar = 0;
constexpr int other_type = 1;

const std::string limit_text = "Some panels consume more pixels then limit used.";
// The 4 by 3 wall in mode 0 as two ports: the first two rows, then the last.
const std::string two_ports =
    "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E";
const std::string columns_from_bottom_left =
    "(0,2)S (0,1) (0,0) (1,0) (1,1) (1,2)E (2,2)S (2,1) (2,0) (3,0) (3,1) (3,2)E";
const std::string port_per_row =
    "(0,0)S (1,0) (2,0) (3,0)E (0,1)S (1,1) (2,1) (3,1)E (0,2)S (1,2) (2,2) (3,2)E";

struct route_test : wall_test {
    route_test() { layer->SkipBlankBoxes = 1; }
    // The route as text, or the failure text when the router fails.
    std::string route(int type, int mode, int limit) {
        layer->DataDiagramType = type;
        layer->SnakeMode = mode;
        layer->SnakeLimit = limit;
        try {
            return Snake::route_text(Snake::make_route(*layer));
        } catch (const std::runtime_error& e) {
            return e.what();
        }
    }
    void exclude(std::uint32_t column, std::uint32_t row) {
        layer->ExcludeBoxes.add(box_id(column, row));
    }
};

Snake::box cell(float x0, float y0, float x1, float y1) {
    Snake::box b;
    b.x0 = x0;
    b.y0 = y0;
    b.x1 = x1;
    b.y1 = y1;
    return b;
}

// One wall of the table below, 4 by 3 unless said otherwise, with its
// route as text or the failure text.
struct route_case {
    int type, mode, limit;
    const char* excluded; // "(column,row) ..."
    std::string expected;
    int skip = 1;
    unsigned half = 0;
    int columns = 4, rows = 3;
};

const route_case cases[] = {
    // "Novastar": rows from the top left, columns from the bottom left.
    {novastar, 0, 800, "", two_ports},
    {novastar, 6, 800, "", columns_from_bottom_left},
    // An excluded cabinet leaves the sum but not the rectangle.
    {novastar, 0, 800, "(1,1)",
     "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E"},
    // Not skipping, it is routed, and counted: two lines are above 700.
    {novastar, 0, 800, "(1,1)", two_ports, 0},
    {novastar, 0, 700, "(1,1)", port_per_row, 0},
    // Skipping, two lines sum to 700, but their rectangle is 800.
    {novastar, 0, 700, "(1,1)",
     "(0,0)S (1,0) (2,0) (3,0)E (0,1)S (2,1) (3,1)E (0,2)S (1,2) (2,2) (3,2)E"},
    // A line above the limit fails; columns of 300 fit where rows of 400 do not.
    {novastar, 0, 300, "", limit_text},
    {novastar, 0, 400, "", port_per_row},
    {novastar, 4, 300, "",
     "(0,0)S (0,1) (0,2)E (1,0)S (1,1) (1,2)E (2,0)S (2,1) (2,2)E (3,0)S (3,1) (3,2)E"},
    // ... after the first port too: a half first row of 100, then 200.
    {novastar, 0, 150, "", limit_text, 1, 0b0100, 2, 2},
    // By area: a sparse line starts a new port.
    {novastar, 0, 700, "(1,1) (2,1)",
     "(0,0)S (1,0) (2,0) (3,0)E (0,1)S (3,1)E (0,2)S (1,2) (2,2) (3,2)E"},
    // A first line of 200 pixels in a rectangle of 400 fails at 300, fits at 400.
    {novastar, 0, 300, "(1,0) (2,0)", limit_text},
    {novastar, 0, 400, "(1,0) (2,0)",
     "(0,0)S (3,0)E (0,1)S (1,1) (2,1) (3,1)E (0,2)S (1,2) (2,2) (3,2)E"},
    // Only the first line fails by area; a later one starts a port of its own.
    {novastar, 0, 300, "(3,0) (3,1) (1,2) (2,2)",
     "(0,0)S (1,0) (2,0)E (0,1)S (1,1) (2,1)E (0,2)S (3,2)E"},
    // Column 3 alone fits 500; merged with column 2 its rectangle is 600.
    {novastar, 4, 500, "(3,1)",
     "(0,0)S (0,1) (0,2)E (1,0)S (1,1) (1,2)E (2,0)S (2,1) (2,2)E (3,0)S (3,2)E"},
    // Limit 0 fails on the first line; the largest limit is still a limit.
    {novastar, 0, 0, "", limit_text},
    {novastar, 6, 0, "", limit_text},
    {novastar, 0, INT32_MAX, "",
     "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1) (0,2) (1,2) (2,2) (3,2)E"},
    // Excluded ids off the grid change nothing.
    {novastar, 0, 800, "(9,9) (65535,0)", two_ports},
    // The mode is read as three bits: 14 and -2 are 6.
    {novastar, 14, 800, "", columns_from_bottom_left},
    {novastar, -2, 800, "", columns_from_bottom_left},
    // Half first and last columns count half: 50 + 100 + 100 + 50 a row.
    {novastar, 0, 600, "", two_ports, 1, 0b0011},
    {novastar, 0, 299, "", limit_text, 1, 0b0011},
    // "Other Type"
    {other_type, 0, 500, "",
     "(0,0)S (1,0) (2,0) (3,0) (3,1)E (2,1)S (1,1) (0,1) (0,2) (1,2)E (2,2)S (3,2)E"},
    {other_type, 0, 700, "",
     "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1)E (0,1)S (0,2) (1,2) (2,2) (3,2)E"},
    {other_type, 0, 800, "", two_ports}, // the look-ahead closes the port at (0,1)
    {other_type, 0, 900, "",
     "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1) (0,2)E (1,2)S (2,2) (3,2)E"},
    {other_type, 0, 300, "",
     "(0,0)S (1,0) (2,0)E (3,0)S (3,1) (2,1)E (1,1)S (0,1) (0,2)E (1,2)S (2,2) (3,2)E"},
    {other_type, 0, 450, "",
     "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1)E (1,1)S (0,1) (0,2) (1,2) (2,2) (3,2)E", 1, 0b0011},
    // Never failing: a cabinet above the limit is a port that counts only as an end.
    {other_type, 0, 50, "",
     "(0,0)E (1,0)E (2,0)E (3,0)E (0,1)E (1,1)E (2,1)E (3,1)E (0,2)E (1,2)E (2,2)E (3,2)E"},
    // At limit 0 every line is a fresh port, so every line goes the first way.
    {other_type, 6, 0, "",
     "(0,2)E (0,1)E (0,0)E (1,2)E (1,1)E (1,0)E (2,2)E (2,1)E (2,0)E (3,2)E (3,1)E (3,0)E"},
    // Excluded cabinets are never routed, skipping or not.
    {other_type, 0, 800, "(1,1)",
     "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (0,1) (0,2)E (1,2)S (2,2) (3,2)E"},
    {other_type, 0, 800, "(1,1)",
     "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (0,1) (0,2)E (1,2)S (2,2) (3,2)E", 0},
    // The eight modes on a 3 by 2 wall: one port, then a port per line.
    {novastar, 0, -1, "", "(0,0)S (1,0) (2,0) (2,1) (1,1) (0,1)E", 1, 0, 3, 2},
    {novastar, 1, -1, "", "(2,0)S (1,0) (0,0) (0,1) (1,1) (2,1)E", 1, 0, 3, 2},
    {novastar, 2, -1, "", "(0,1)S (1,1) (2,1) (2,0) (1,0) (0,0)E", 1, 0, 3, 2},
    {novastar, 3, -1, "", "(2,1)S (1,1) (0,1) (0,0) (1,0) (2,0)E", 1, 0, 3, 2},
    {novastar, 4, -1, "", "(0,0)S (0,1) (1,1) (1,0) (2,0) (2,1)E", 1, 0, 3, 2},
    {novastar, 5, -1, "", "(2,0)S (2,1) (1,1) (1,0) (0,0) (0,1)E", 1, 0, 3, 2},
    {novastar, 6, -1, "", "(0,1)S (0,0) (1,0) (1,1) (2,1) (2,0)E", 1, 0, 3, 2},
    {novastar, 7, -1, "", "(2,1)S (2,0) (1,0) (1,1) (0,1) (0,0)E", 1, 0, 3, 2},
    {novastar, 0, 300, "", "(0,0)S (1,0) (2,0)E (0,1)S (1,1) (2,1)E", 1, 0, 3, 2},
    {novastar, 1, 300, "", "(2,0)S (1,0) (0,0)E (2,1)S (1,1) (0,1)E", 1, 0, 3, 2},
    {novastar, 2, 300, "", "(0,1)S (1,1) (2,1)E (0,0)S (1,0) (2,0)E", 1, 0, 3, 2},
    {novastar, 3, 300, "", "(2,1)S (1,1) (0,1)E (2,0)S (1,0) (0,0)E", 1, 0, 3, 2},
    {other_type, 4, 200, "", "(0,0)S (0,1)E (1,0)S (1,1)E (2,0)S (2,1)E", 1, 0, 3, 2},
    {other_type, 5, 200, "", "(2,0)S (2,1)E (1,0)S (1,1)E (0,0)S (0,1)E", 1, 0, 3, 2},
    {other_type, 6, 200, "", "(0,1)S (0,0)E (1,1)S (1,0)E (2,1)S (2,0)E", 1, 0, 3, 2},
    {other_type, 7, 200, "", "(2,1)S (2,0)E (1,1)S (1,0)E (0,1)S (0,0)E", 1, 0, 3, 2},
    // Walls without cabinets.
    {novastar, 0, 0, "", "", 1, 0, 0, 3},
    {other_type, 0, 0, "", "", 1, 0, 4, 0},
    {novastar, 6, 800, "", "", 1, 0, 4, -3},
};

// Port loads on the 4 by 3 wall: per port "NUMBER (FIRST)-(LAST) CABINETS
// PIXELS AREA PERCENT", "!" when over the limit, "-" for no limit.
constexpr int custom = 2;
struct loads_case {
    int type, mode, limit;
    const char* excluded;
    int skip;
    std::string expected;
};
const loads_case loads_cases[] = {
    {novastar, 0, 800, "", 1, "1 (0,0)-(0,1) 8 800 800 100.0 | 2 (0,2)-(3,2) 4 400 400 50.0"},
    // The excluded cabinet leaves the pixels but not the rectangle.
    {novastar, 0, 800, "(1,1)", 1, "1 (0,0)-(0,1) 7 700 800 100.0 | 2 (0,2)-(3,2) 4 400 400 50.0"},
    {novastar, 0, 700, "(1,1)", 0,
     "1 (0,0)-(3,0) 4 400 400 57.1 | 2 (0,1)-(3,1) 4 400 400 57.1 | 3 (0,2)-(3,2) 4 400 400 57.1"},
    {novastar, 0, 700, "(1,1) (2,1)", 1,
     "1 (0,0)-(3,0) 4 400 400 57.1 | 2 (0,1)-(3,1) 2 200 400 57.1 | 3 (0,2)-(3,2) 4 400 400 57.1"},
    {novastar, 4, 300, "", 1,
     "1 (0,0)-(0,2) 3 300 300 100.0 | 2 (1,0)-(1,2) 3 300 300 100.0 | "
     "3 (2,0)-(2,2) 3 300 300 100.0 | 4 (3,0)-(3,2) 3 300 300 100.0"},
    {novastar, 0, 300, "", 1, "failed: " + limit_text},
    {novastar, 0, -1, "", 1, "1 (0,0)-(3,2) 12 1200 1200 -"},
    {other_type, 0, 500, "", 1,
     "1 (0,0)-(3,1) 5 500 0 100.0 | 2 (2,1)-(1,2) 5 500 0 100.0 | 3 (2,2)-(3,2) 2 200 0 40.0"},
    {other_type, 0, 900, "", 1, "1 (0,0)-(0,2) 9 900 0 100.0 | 2 (1,2)-(3,2) 3 300 0 33.3"},
    {other_type, 0, 800, "(1,1)", 1, "1 (0,0)-(0,2) 8 800 0 100.0 | 2 (1,2)-(3,2) 3 300 0 37.5"},
    // A custom path is not held to its limit; a run of one joins the next, as drawn.
    {custom, 0, 500, "(2,0)", 1, "1 (0,0)-(2,1) 5 500 0 100.0 | 2 (0,2)-(2,2) 3 300 0 60.0"},
    {custom, 0, 500, "(2,0)", 0, "1 (0,0)-(2,1) 6 600 0 120.0! | 2 (0,2)-(2,2) 3 300 0 60.0"},
};

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

TEST_F(route_test, Walls) {
    for (const route_case& c : cases) {
        set_grid(*layer, c.columns, c.rows, 10, 10);
        layer->ExcludeBoxes.clear();
        std::istringstream words(c.excluded);
        for (std::string w; words >> w;) {
            unsigned column = 0, row = 0;
            std::sscanf(w.c_str(), "(%u,%u)", &column, &row);
            exclude(column, row);
        }
        layer->SkipBlankBoxes = c.skip;
        layer->HalfColumns = std::bitset<4>(c.half);
        EXPECT_EQ(route(c.type, c.mode, c.limit), c.expected) << "case " << (&c - cases);
    }
}

TEST_F(route_test, PortLoads) {
    for (const loads_case& c : loads_cases) {
        layer->ExcludeBoxes.clear();
        std::istringstream words(c.excluded);
        for (std::string w; words >> w;) {
            unsigned column = 0, row = 0;
            std::sscanf(w.c_str(), "(%u,%u)", &column, &row);
            exclude(column, row);
        }
        layer->SkipBlankBoxes = c.skip;
        layer->CustomDataPath = c.type == custom;
        layer->CustomPath = {
            {box_id(0, 0), box_id(1, 0), box_id(2, 0), box_id(3, 0), box_id(3, 1), box_id(2, 1)},
            {box_id(0, 2)},
            {box_id(1, 2), box_id(2, 2)}};
        route(c.type == custom ? novastar : c.type, c.mode, c.limit);
        const Snake::layer_loads loads = Snake::port_loads(*layer);
        std::string text = loads.failed ? "failed: " + loads.message : "";
        char figure[128];
        for (const auto& p : loads.ports) {
            std::snprintf(figure, sizeof figure, "%s%d (%u,%u)-(%u,%u) %lld %lld %lld ",
                          text.empty() ? "" : " | ", p.port, p.first_column, p.first_row,
                          p.last_column, p.last_row, (long long)p.cabinets, (long long)p.pixels,
                          (long long)p.area);
            text += figure;
            if (p.percent) std::snprintf(figure, sizeof figure, "%.1f", *p.percent);
            text += p.percent ? figure : "-";
            if (p.over) text += '!';
        }
        EXPECT_EQ(text, c.expected) << "case " << (&c - loads_cases);
        EXPECT_STREQ(loads.type, c.type == custom ? "custom" : c.type ? "other" : "novastar");
    }
}

TEST_F(route_test, NovastarDefaultLayerIsOnePort) {
    auto fresh = screen_layer(global);
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

TEST_F(route_test, NegativeLimitMeansNoLimit) {
    set_grid(*layer, 300, 200, 128, 128);
    for (int type : {novastar, other_type}) {
        for (int limit : {-1, -655360, INT32_MIN}) {
            layer->DataDiagramType = type;
            layer->SnakeLimit = limit;
            const Snake::route r = Snake::make_route(*layer);
            ASSERT_EQ(r.size(), 60000u);
            const auto starts =
                std::count_if(r.begin(), r.end(), [](const auto& b) { return b.is_port_start(); });
            const auto ends =
                std::count_if(r.begin(), r.end(), [](const auto& b) { return b.is_port_end(); });
            EXPECT_EQ(starts, 1) << type << " " << limit;
            EXPECT_EQ(ends, 1) << type << " " << limit;
            EXPECT_TRUE(r.front().is_port_start());
            EXPECT_TRUE(r.back().is_port_end());
        }
    }
}

TEST_F(route_test, OtherTypeLimitZeroMarksEveryCabinetAsAnEndAndNoneAsAStart) {
    for (int mode = 0; mode < 8; ++mode) {
        EXPECT_NE(route(other_type, mode, 0), limit_text);
        const Snake::route r = Snake::make_route(*layer);
        ASSERT_EQ(r.size(), 12u) << mode;
        for (const auto& b : r) {
            EXPECT_TRUE(b.is_port_end()) << mode;
            EXPECT_FALSE(b.is_port_start()) << mode;
        }
    }
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

TEST_F(route_test, AllCabinetsExcludedGiveAnEmptyRoute) {
    layer->switch_all_exclude_boxes();
    for (int type : {novastar, other_type})
        for (int mode = 0; mode < 8; ++mode)
            for (int limit : {0, 300, 800, -1})
                EXPECT_EQ(route(type, mode, limit), "") << type << " " << mode << " " << limit;
    // Not skipping, "Novastar" routes through them all; "Other Type" still
    // leaves them out.
    layer->SkipBlankBoxes = 0;
    EXPECT_EQ(route(novastar, 0, 800), two_ports);
    EXPECT_EQ(route(other_type, 0, 800), "");
}

TEST_F(route_test, WhollyExcludedLinesAddNothing) {
    for (std::uint32_t c = 0; c < 4; ++c)
        exclude(c, 2);
    // Mode 2 takes the rows bottom first; the bottom one is empty.
    const std::string upward = "(0,1)S (1,1) (2,1) (3,1) (3,0) (2,0) (1,0) (0,0)E";
    EXPECT_EQ(route(novastar, 2, 800), upward);
    EXPECT_EQ(route(other_type, 2, 800), upward);
    EXPECT_EQ(route(novastar, 2, 400), "(0,1)S (1,1) (2,1) (3,1)E (0,0)S (1,0) (2,0) (3,0)E");
    // Taken last under forward order, it adds nothing either.
    const std::string downward = "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E";
    EXPECT_EQ(route(novastar, 0, 800), downward);
    EXPECT_EQ(route(other_type, 0, 800), downward);
    // A wholly excluded middle line does not turn the serpentine.
    layer->ExcludeBoxes.clear();
    for (std::uint32_t c = 0; c < 4; ++c)
        exclude(c, 1);
    const std::string skipping = "(0,0)S (1,0) (2,0) (3,0) (3,2) (2,2) (1,2) (0,2)E";
    EXPECT_EQ(route(novastar, 0, -1), skipping);
    EXPECT_EQ(route(other_type, 0, -1), skipping);
}

TEST_F(route_test, RoutingLeavesTheLayerAsItWas) {
    exclude(1, 1);
    forget_changes();
    route(novastar, 0, 800);
    route(other_type, 0, 500);
    EXPECT_FALSE(layer->has_changed());
    EXPECT_FALSE(global.is_changed());
    EXPECT_EQ(layer->ExcludeBoxes.size(), 1u);
    EXPECT_TRUE(layer->CustomPath.empty());
}
