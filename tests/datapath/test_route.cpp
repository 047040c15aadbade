// The computed routers, "Novastar" and "Other Type": a table of small walls
// whose routes are written out cabinet by cabinet (tests/data/routes.txt),
// and thousands of random walls whose routes, marks included, are kept as
// fingerprints in a golden file.

#include "datapath/snake.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <random>
#include <sstream>
#include <stdexcept>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

constexpr int novastar = 0;
constexpr int other_type = 1;
const std::string limit_text = Snake::limit_failure_text;

struct route_test : wall_test {
    void exclude(std::uint32_t column, std::uint32_t row) {
        layer->ExcludeBoxes.add(box_id(column, row));
    }
    // The route as text, or the failure text when the router fails.
    std::string route() {
        try {
            return Snake::route_text(Snake::make_route(*layer));
        } catch (const std::runtime_error& e) {
            return e.what();
        }
    }
    std::string route(int type, int mode, int limit) {
        layer->DataDiagramType = type;
        layer->SnakeMode = mode;
        layer->SnakeLimit = limit;
        return route();
    }
    // A line of the table: "TYPE MODE LIMIT SKIP HALF COLUMNSxROWS
    // [(COLUMN,ROW)...] : ROUTE", TYPE N or O, cabinets of 10 by 10.
    std::string route_of(const std::string& line) {
        std::istringstream in(line.substr(0, line.find(" :")));
        std::string type, half, size;
        int mode, limit;
        in >> type >> mode >> limit >> layer->SkipBlankBoxes >> half >> size;
        layer->HalfColumns = std::bitset<4>(half);
        int columns = 0, rows = 0;
        std::sscanf(size.c_str(), "%dx%d", &columns, &rows);
        set_grid(*layer, columns, rows, 10, 10);
        layer->ExcludeBoxes.clear();
        for (std::string w; in >> w;) {
            unsigned column = 0, row = 0;
            std::sscanf(w.c_str(), "(%u,%u)", &column, &row);
            layer->ExcludeBoxes.add(box_id(column, row));
        }
        return route(type == "O", mode, limit);
    }
    // Every mark the route carries, known or not, hashed to four hex digits.
    std::string fingerprint() {
        std::string text;
        try {
            for (const Snake::box& b : Snake::make_route(*layer)) {
                char one[96];
                std::snprintf(one, sizeof one, "%u,%u,%g,%g,%g,%g,%d%d%d%d ", b.column, b.row,
                              double(b.x0), double(b.y0), double(b.x1), double(b.y1),
                              b.start_known, b.starts_port && b.start_known, b.end_known,
                              b.ends_port && b.end_known);
                text += one;
            }
        } catch (const std::runtime_error& e) {
            text = e.what();
        }
        std::uint32_t h = 2166136261u; // FNV-1a
        for (unsigned char c : text)
            h = (h ^ c) * 16777619u;
        char out[8];
        std::snprintf(out, sizeof out, "%04x\n", (h ^ (h >> 16)) & 0xFFFF);
        return out;
    }
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
    const auto count = [](float x0, float y0, float x1, float y1) {
        Snake::box b;
        b.x0 = x0, b.y0 = y0, b.x1 = x1, b.y1 = y1;
        return Snake::pixel_count(b);
    };
    EXPECT_EQ(count(0, 0, 10, 10), 100);
    EXPECT_EQ(count(0, 0, 5, 10), 50); // a half cabinet counts half
    EXPECT_EQ(count(0, 0, 64.5f, 128), 8256);
    EXPECT_EQ(count(0, 0, 2.5f, 3), 8); // 7.5 rounds up
    EXPECT_EQ(count(3, 3, 3, 7), 0);
    EXPECT_EQ(count(10, 0, 0, 10), -100);
    // Far beyond an int: held at the largest value instead of overflowing.
    EXPECT_EQ(count(0, 0, 1e10f, 1e10f), 2147483647);
}

TEST_F(route_test, Walls) {
    std::istringstream table(golden("routes.txt"));
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line[0] == '#') continue;
        const std::size_t colon = line.find(" :");
        ASSERT_NE(colon, std::string::npos) << line;
        const std::string wanted = line.substr(std::min(line.size(), colon + 3));
        EXPECT_EQ(route_of(line), wanted) << line;
        ++rows;
    }
    EXPECT_GT(rows, 50);
}

// Walls of every shape, mode, exclusion and limit, and long lines with gaps
// (longer than the walk keeps in cache at once): the engine routes in place
// and lays lines down ahead of time, and every one of these routes must
// stay as it was checked against a plain rendering of the rules.
TEST_F(route_test, RandomWallsKeepTheirRoutes) {
    std::mt19937 random(20240611);
    auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(random); };
    std::string got;
    for (int round = 0; round < 20000; ++round) {
        layer->Columns = pick(0, 7);
        layer->Rows = pick(0, 7);
        layer->Width = pick(1, 21);
        layer->Height = pick(1, 21);
        layer->HalfColumns = std::bitset<4>(unsigned(pick(0, 15)));
        layer->SnakeMode = pick(0, 9) == 0 ? pick(-20, 20) : pick(0, 7);
        layer->DataDiagramType = pick(0, 1);
        layer->SkipBlankBoxes = pick(0, 1);
        layer->ExcludeBoxes.clear();
        const int exclusion = pick(0, 3); // in eighths of a chance per cabinet
        for (int c = 0; c < layer->Columns; ++c)
            for (int r = 0; r < layer->Rows; ++r)
                if (pick(0, 7) < exclusion) layer->ExcludeBoxes.add(box_id(c, r));
        if (pick(0, 9) == 0) layer->ExcludeBoxes.add(box_id(40, 1)); // off the grid
        // Limits around a few cabinets' and a few lines' worth, and the edges.
        const int cabinet = layer->Width * layer->Height;
        const int kind = pick(0, 5);
        layer->SnakeLimit =
            kind == 0   ? pick(-2, 0)
            : kind == 1 ? cabinet * pick(1, 4) + pick(-cabinet / 2, cabinet / 2)
            : kind == 2 ? cabinet * std::max(layer->Columns, layer->Rows) * pick(1, 3)
            : kind == 3 ? pick(1, 3000)
            : kind == 4 ? INT32_MAX
                        : cabinet * pick(1, 30) + pick(0, 2);
        got += fingerprint();
    }
    std::mt19937 long_lines(7);
    set_grid(*layer, 300, 40, 10, 10);
    for (int round = 0; round < 200; ++round) {
        layer->HalfColumns = std::bitset<4>(unsigned(round % 16));
        layer->SnakeMode = round % 8;
        layer->DataDiagramType = (round / 8) % 2;
        layer->SkipBlankBoxes = 1;
        layer->ExcludeBoxes.clear();
        for (int k = 0; k < round * 20; ++k) {
            const std::uint32_t column = long_lines() % 300;
            layer->ExcludeBoxes.add(box_id(column, long_lines() % 40));
        }
        layer->SnakeLimit = int(long_lines() % 120000) + 4000;
        got += fingerprint();
    }
    EXPECT_TRUE(matches_golden(got, "route_fingerprints.txt"))
        << "line N of the file is wall N (20000 small ones, then 200 long)";
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

TEST_F(route_test, AbsurdWallIsRefusedAndRoutingChangesNothing) {
    layer->ExcludeBoxes.add(box_id(1, 1));
    forget_changes();
    route(0, 0, 800);
    route(1, 0, 500);
    EXPECT_FALSE(layer->has_changed());
    EXPECT_FALSE(global.is_changed());
    EXPECT_EQ(layer->ExcludeBoxes.size(), 1u);
    EXPECT_TRUE(layer->CustomPath.empty());

    set_grid(*layer, 65535, 65535, 10, 10);
    EXPECT_EQ(route(1, 0, 800), Snake::too_many_cabinets_text);
    // The custom path knows no grid.
    layer->CustomDataPath = 1;
    layer->CustomPath = {{box_id(0, 0)}};
    EXPECT_EQ(route(), "(0,0)S");
}
