// The computed routers, "Novastar" and "Other Type": a table of small walls
// whose routes are written out cabinet by cabinet (tests/data/routes.txt),
// thousands of random walls whose routes, marks included, are kept as
// fingerprints in a golden file, and a table of port loads
// (tests/data/port_loads.txt).

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

struct route_test : wall_test {
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
    // Sets the wall of a table line, "TYPE MODE LIMIT SKIP HALF COLUMNSxROWS
    // [(COLUMN,ROW)...] : WANTED", of cabinets of 10 by 10, and returns
    // WANTED. TYPE is N "Novastar", O "Other Type" or C "Novastar" on a
    // fixed custom path.
    std::string wall_of(const std::string& line) {
        const std::size_t colon = line.find(" :");
        std::istringstream in(line.substr(0, colon));
        std::string type, half, size;
        in >> type >> layer->SnakeMode >> layer->SnakeLimit >> layer->SkipBlankBoxes >> half >>
            size;
        layer->DataDiagramType = type == "O";
        layer->CustomDataPath = type == "C";
        layer->CustomPath = {
            {box_id(0, 0), box_id(1, 0), box_id(2, 0), box_id(3, 0), box_id(3, 1), box_id(2, 1)},
            {box_id(0, 2)},
            {box_id(1, 2), box_id(2, 2)}};
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
        return colon == std::string::npos ? "" : line.substr(std::min(line.size(), colon + 3));
    }
    // The lines of a table under tests/data, comments and blanks left out.
    static std::vector<std::string> table(const std::string& name) {
        std::vector<std::string> lines;
        std::istringstream in(golden(name));
        for (std::string line; std::getline(in, line);)
            if (!line.empty() && line[0] != '#') lines.push_back(line);
        return lines;
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
    const auto lines = table("routes.txt");
    for (const std::string& line : lines) {
        const std::string wanted = wall_of(line);
        EXPECT_EQ(route(), wanted) << line;
    }
    EXPECT_GT(lines.size(), 50u);
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
    for (const std::string& line : table("port_loads.txt")) {
        const std::string wanted = wall_of(line);
        const Snake::layer_loads loads = Snake::port_loads(*layer);
        std::string text = loads.type;
        if (loads.failed) text += " failed: " + loads.message;
        char figure[128];
        for (const auto& p : loads.ports) {
            std::snprintf(figure, sizeof figure, "%s%d (%u,%u)-(%u,%u) %lld %lld %lld ",
                          &p == &loads.ports[0] ? " " : " | ", p.port, p.first_column, p.first_row,
                          p.last_column, p.last_row, (long long)p.cabinets, (long long)p.pixels,
                          (long long)p.area);
            text += figure;
            if (p.percent) std::snprintf(figure, sizeof figure, "%.1f", *p.percent);
            text += p.percent ? figure : "-";
            if (p.over) text += '!';
        }
        EXPECT_EQ(text, wanted) << line;
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
