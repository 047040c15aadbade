// The hand-made data path: its route and its text form (the canvas edits
// are made with real clicks and keys in the canvas tests).

#include "datapath/snake.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

using path = std::vector<std::vector<std::uint32_t>>;

// The 4 by 3 wall of 10 by 10 cabinets, the path switched on.
struct custom_path : wall_test {
    custom_path() { layer->CustomDataPath = 1; }
    std::string route() { return Snake::route_text(Snake::make_route(*layer)); }
};

} // namespace

// --- the route

TEST_F(custom_path, RunsBecomePortsAndARunOfOneHasNoEnd) {
    layer->CustomPath = {
        {box_id(0, 0), box_id(1, 0), box_id(2, 0)}, {box_id(2, 1)}, {box_id(1, 1), box_id(0, 1)}};
    EXPECT_EQ(route(), "(0,0)S (1,0) (2,0)E (2,1)S (1,1)S (0,1)E");
    const Snake::route r = Snake::make_route(*layer);
    ASSERT_EQ(r.size(), 6u);
    // Every box has a decided start; only run ends have a decided end.
    for (const auto& b : r)
        EXPECT_TRUE(b.start_known);
    EXPECT_FALSE(r[1].starts_port);
    EXPECT_FALSE(r[1].end_known);
    EXPECT_FALSE(r[3].end_known); // the run of one
    EXPECT_FALSE(r[4].end_known);
    EXPECT_TRUE(r[5].end_known);
    // The last box of the route gets no extra mark, and empty runs add nothing.
    layer->CustomPath = {{}, {box_id(0, 0), box_id(1, 0)}, {}, {box_id(3, 2)}, {}};
    EXPECT_EQ(route(), "(0,0)S (1,0)E (3,2)S");
    layer->CustomPath = {};
    EXPECT_EQ(route(), "");
}

TEST_F(custom_path, NoLimitNoFailureAndExcludedCabinetsStay) {
    layer->SnakeLimit = 0;
    layer->ExcludeBoxes.add(box_id(1, 0));
    layer->SkipBlankBoxes = 1;
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0), box_id(2, 0), box_id(3, 0)}};
    for (int type : {0, 1}) {
        layer->DataDiagramType = type;
        EXPECT_EQ(route(), "(0,0)S (1,0) (2,0) (3,0)E");
    }
    // Switched off, the computed route is back.
    layer->CustomDataPath = 0;
    layer->ExcludeBoxes.clear();
    layer->SnakeMode = layer->DataDiagramType = 0;
    layer->SnakeLimit = 800;
    EXPECT_EQ(route(),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(custom_path, RectanglesAreTheWalksWithHalfLines) {
    path all(1);
    for (std::uint32_t c = 0; c < 4; ++c)
        for (std::uint32_t r = 0; r < 3; ++r)
            all[0].push_back(box_id(c, r));
    layer->CustomPath = all;
    layer->Width = 15; // odd, so a half is not a whole number
    for (unsigned bits = 0; bits < 16; ++bits) {
        layer->HalfColumns = std::bitset<4>(bits);
        auto walked = cabinet_rects(*layer);
        const Snake::route route = Snake::make_route(*layer);
        ASSERT_EQ(route.size(), 12u);
        for (const auto& b : route)
            EXPECT_EQ((cabinet_rect{b.x0, b.y0, b.x1, b.y1}), walked[b.id()])
                << bits << " " << b.id();
    }
}

// --- text form

TEST_F(custom_path, Text) {
    const std::pair<path, std::string> written[] = {
        {{{box_id(0, 0), box_id(1, 0)}, {box_id(1, 2)}}, "0,65536|65538"},
        {{}, ""},
        {{{}}, ""},
        {{{1, 2}, {}}, "1,2|"},     // an empty run writes only its bar...
        {{{}, {1, 2}, {}}, "1,2|"}, // ...once there is text before it
        {{{1}, {}, {2}}, "1||2"},
        {{{box_id(0x8000, 1), 0xFFFFFFFFu}}, "-2147483647,-1"}, // signed
    };
    for (const auto& [p, text] : written) {
        layer->CustomPath = p;
        EXPECT_EQ(layer->get_custom_path_string(), text);
    }
    const std::pair<std::string, path> read[] = {
        {"0,65536|65538", {{0, 65536}, {65538}}},
        {"", {}},
        {"1,2|", {{1, 2}, {}}},    // a trailing empty run round-trips
        {"1,,x,2|", {{1, 2}, {}}}, // a piece without digits makes no id
        {"|abc|,|3", {{}, {}, {}, {3}}},
        {" 7abc,+8,-1,0,4294967297", {{7, 8, 0xFFFFFFFFu, 0, 1}}}, // as atoi reads them
    };
    for (const auto& [text, p] : read) {
        layer->set_custom_path_string(text);
        EXPECT_EQ(layer->CustomPath, p) << text;
    }
}
