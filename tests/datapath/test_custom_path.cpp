// The hand-made data path: its route, the canvas edits and its text form.

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

using namespace Vantora_TesserinePro;

namespace {

using path = std::vector<std::vector<std::uint32_t>>;

// 4 by 3 cabinets of 10 by 10, the path switched on.
struct custom_path : ::testing::Test {
    Global global;
    pointer<boxes_layer> layer;
    void SetUp() override {
        global.m_project = std::make_shared<project>();
        layer = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
        layer->Columns = 4;
        layer->Rows = 3;
        layer->Width = 10;
        layer->Height = 10;
        layer->CustomDataPath = 1;
    }
    std::string route() { return Snake::route_text(Snake::make_route(*layer)); }
    void forget_changes() {
        layer->clear_changed();
        global.changed = 0;
    }
    // A click in the middle of a cabinet.
    void click(std::uint32_t column, std::uint32_t row, bool remove = false) {
        layer->trigger_for_override_path(float(column) * 10 + 5, float(row) * 10 + 5, remove);
    }
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
}

TEST_F(custom_path, LastBoxOfTheRouteGetsNoExtraMark) {
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0)}, {box_id(3, 2)}};
    EXPECT_EQ(route(), "(0,0)S (1,0)E (3,2)S");
}

TEST_F(custom_path, NoLimitAndNoFailure) {
    layer->SnakeLimit = 0;
    layer->DataDiagramType = 0;
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0), box_id(2, 0), box_id(3, 0)}};
    EXPECT_EQ(route(), "(0,0)S (1,0) (2,0) (3,0)E");
}

TEST_F(custom_path, EmptyPathAndEmptyRunsAddNothing) {
    EXPECT_EQ(route(), "");
    layer->CustomPath = {{}, {box_id(1, 1), box_id(2, 1)}, {}, {box_id(0, 2)}, {}};
    EXPECT_EQ(route(), "(1,1)S (2,1)E (0,2)S");
    // Switched off, the computed route is back.
    layer->CustomDataPath = 0;
    layer->SnakeMode = 0;
    layer->SnakeLimit = 800;
    EXPECT_EQ(route(),
              "(0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (1,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E");
}

TEST_F(custom_path, IdsOffTheGridStillGiveABox) {
    layer->CustomPath = {{box_id(10, 20), box_id(0xFFFF, 0xFFFF)}};
    const Snake::route r = Snake::make_route(*layer);
    ASSERT_EQ(r.size(), 2u);
    EXPECT_EQ(r[0].column, 10u);
    EXPECT_EQ(r[0].row, 20u);
    EXPECT_EQ(std::make_tuple(r[0].x0, r[0].y0, r[0].x1, r[0].y1),
              std::make_tuple(100.0f, 200.0f, 110.0f, 210.0f));
    EXPECT_EQ(r[1].column, 0xFFFFu);
    EXPECT_EQ(r[1].x0, 655350.0f);
}

TEST_F(custom_path, ExcludedCabinetsStayOnTheRoute) {
    layer->ExcludeBoxes.add(box_id(1, 0));
    layer->SkipBlankBoxes = 1;
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0), box_id(2, 0)}};
    EXPECT_EQ(route(), "(0,0)S (1,0) (2,0)E");
    layer->DataDiagramType = 1;
    EXPECT_EQ(route(), "(0,0)S (1,0) (2,0)E");
}

TEST_F(custom_path, RectanglesAreTheWalksWithHalfLines) {
    using rect = std::tuple<float, float, float, float>;
    path all(1);
    for (std::uint32_t c = 0; c < 4; ++c)
        for (std::uint32_t r = 0; r < 3; ++r)
            all[0].push_back(box_id(c, r));
    layer->CustomPath = all;
    layer->Width = 15; // odd, so a half is not a whole number
    for (unsigned bits = 0; bits < 16; ++bits) {
        layer->HalfColumns = std::bitset<4>(bits);
        std::map<std::uint32_t, rect> walked;
        layer->for_each_box(
            [&](float x0, float y0, float x1, float y1, unsigned short c, unsigned short r) {
                walked[box_id(c, r)] = rect{x0, y0, x1, y1};
                return false;
            },
            false);
        const Snake::route route = Snake::make_route(*layer);
        ASSERT_EQ(route.size(), 12u);
        for (const auto& b : route)
            EXPECT_EQ((rect{b.x0, b.y0, b.x1, b.y1}), walked[b.id()]) << bits << " " << b.id();
    }
}

// --- editing on the canvas

TEST_F(custom_path, ClicksBuildTheLastRun) {
    forget_changes();
    click(0, 0);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(0, 0)}}));
    EXPECT_TRUE(layer->has_changed());
    EXPECT_TRUE(global.is_changed());
    click(1, 0);
    click(1, 1);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(0, 0), box_id(1, 0), box_id(1, 1)}}));
}

TEST_F(custom_path, ACabinetStandsOnlyOnceOnThePath) {
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0)}, {box_id(2, 2)}};
    forget_changes();
    click(1, 0);
    click(2, 2);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(0, 0), box_id(1, 0)}, {box_id(2, 2)}}));
    EXPECT_FALSE(layer->has_changed());
    EXPECT_FALSE(global.is_changed());
}

TEST_F(custom_path, RemoveDeletesTheEntryAndAnEmptiedRun) {
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0)}, {box_id(2, 2)}, {box_id(3, 2)}};
    forget_changes();
    click(0, 0, true);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(1, 0)}, {box_id(2, 2)}, {box_id(3, 2)}}));
    EXPECT_TRUE(layer->has_changed());
    EXPECT_TRUE(global.is_changed());
    click(2, 2, true);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(1, 0)}, {box_id(3, 2)}}));
    click(1, 0, true);
    click(3, 2, true);
    EXPECT_TRUE(layer->CustomPath.empty());
}

TEST_F(custom_path, RemoveOfWhatIsNotThereChangesNothing) {
    forget_changes();
    click(0, 0, true); // empty path
    EXPECT_TRUE(layer->CustomPath.empty());
    layer->CustomPath = {{box_id(0, 0)}};
    click(1, 1, true);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(0, 0)}}));
    EXPECT_FALSE(layer->has_changed());
    EXPECT_FALSE(global.is_changed());
}

TEST_F(custom_path, ClicksOnEdgesAndOutsideHitNothing) {
    forget_changes();
    layer->trigger_for_override_path(10, 5, false); // between (0,0) and (1,0)
    layer->trigger_for_override_path(5, 10, false);
    layer->trigger_for_override_path(-1, 5, false);
    layer->trigger_for_override_path(45, 5, false);
    layer->trigger_for_override_path(0, 0, false);
    EXPECT_TRUE(layer->CustomPath.empty());
    EXPECT_FALSE(layer->has_changed());
    layer->trigger_for_override_path(10.5f, 0.5f, false);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(1, 0)}}));
}

TEST_F(custom_path, ClickAfterTheSpaceKeyFillsTheNewRun) {
    click(0, 0);
    click(1, 0);
    layer->on_space_key();
    click(1, 1);
    click(0, 0); // already on the path
    EXPECT_EQ(layer->CustomPath, (path{{box_id(0, 0), box_id(1, 0)}, {box_id(1, 1)}}));
    EXPECT_EQ(route(), "(0,0)S (1,0)E (1,1)S");
}

TEST_F(custom_path, HalfColumnsMoveTheClickTargets) {
    layer->HalfColumns.set(0); // column 0 is 0..5, column 1 is 5..15
    layer->trigger_for_override_path(7, 5, false);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(1, 0)}}));
}

// --- the space key

TEST_F(custom_path, SpaceKeyClosesARunOfAtLeastTwo) {
    forget_changes();
    layer->on_space_key(); // empty path
    EXPECT_TRUE(layer->CustomPath.empty());
    layer->CustomPath = {{box_id(0, 0)}};
    layer->on_space_key(); // a run of one can't be closed
    EXPECT_EQ(layer->CustomPath.size(), 1u);
    layer->CustomPath[0].push_back(box_id(1, 0));
    layer->on_space_key();
    EXPECT_EQ(layer->CustomPath, (path{{box_id(0, 0), box_id(1, 0)}, {}}));
    layer->on_space_key(); // the new run is empty
    EXPECT_EQ(layer->CustomPath.size(), 2u);
    EXPECT_FALSE(layer->has_changed());
    EXPECT_FALSE(global.is_changed());
}

TEST_F(custom_path, SpaceKeyNeedsTheCustomPathSwitchedOn) {
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0)}};
    layer->CustomDataPath = 0;
    layer->on_space_key();
    EXPECT_EQ(layer->CustomPath.size(), 1u);
    layer->CustomDataPath = 2;
    layer->on_space_key();
    EXPECT_EQ(layer->CustomPath.size(), 2u);
}

// --- text form

TEST_F(custom_path, TextOfRunsAndIds) {
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0)}, {box_id(1, 2)}};
    EXPECT_EQ(layer->get_custom_path_string(), "0,65536|65538");
    layer->CustomPath = {};
    EXPECT_EQ(layer->get_custom_path_string(), "");
    layer->CustomPath = {{}};
    EXPECT_EQ(layer->get_custom_path_string(), "");
}

TEST_F(custom_path, EmptyRunWritesOnlyItsBar) {
    layer->CustomPath = {{1, 2}, {}};
    EXPECT_EQ(layer->get_custom_path_string(), "1,2|");
    // "|" only once there is text before it.
    layer->CustomPath = {{}, {1, 2}, {}};
    EXPECT_EQ(layer->get_custom_path_string(), "1,2|");
    layer->CustomPath = {{1}, {}, {2}};
    EXPECT_EQ(layer->get_custom_path_string(), "1||2");
}

TEST_F(custom_path, IdsAreWrittenAsSignedNumbers) {
    layer->CustomPath = {{box_id(0x8000, 1), 0xFFFFFFFFu}};
    EXPECT_EQ(layer->get_custom_path_string(), "-2147483647,-1");
    const path before = layer->CustomPath;
    layer->set_custom_path_string(layer->get_custom_path_string());
    EXPECT_EQ(layer->CustomPath, before);
}

TEST_F(custom_path, ReadingTheText) {
    layer->set_custom_path_string("0,65536|65538");
    EXPECT_EQ(layer->CustomPath, (path{{0, 65536}, {65538}}));
    EXPECT_EQ(route(), "(0,0)S (1,0)E (1,2)S");
    layer->set_custom_path_string("");
    EXPECT_TRUE(layer->CustomPath.empty());
}

TEST_F(custom_path, ATrailingEmptyRunRoundTrips) {
    layer->set_custom_path_string("1,2|");
    EXPECT_EQ(layer->CustomPath, (path{{1, 2}, {}}));
    EXPECT_EQ(layer->get_custom_path_string(), "1,2|");
    // The run opened by the space key survives, and the next click fills it.
    layer->set_custom_path_string("0,65536|");
    click(3, 2);
    EXPECT_EQ(layer->CustomPath, (path{{box_id(0, 0), box_id(1, 0)}, {box_id(3, 2)}}));
}

TEST_F(custom_path, PiecesWithoutDigitsMakeNoId) {
    layer->set_custom_path_string("1,,x,2|");
    EXPECT_EQ(layer->CustomPath, (path{{1, 2}, {}}));
    layer->set_custom_path_string("|abc|,|3");
    for (const auto& run : layer->CustomPath)
        for (std::uint32_t id : run)
            EXPECT_NE(id, 0u);
    EXPECT_EQ(layer->CustomPath.back(), (std::vector<std::uint32_t>{3}));
}

TEST_F(custom_path, TokensAreReadAsAtoiReadsThem) {
    layer->set_custom_path_string(" 7abc,+8,-1,0,4294967297");
    EXPECT_EQ(layer->CustomPath, (path{{7, 8, 0xFFFFFFFFu, 0, 1}}));
}

TEST_F(custom_path, ReadingReplacesThePathAndDoesNotMarkAChange) {
    layer->CustomPath = {{5, 6, 7}};
    forget_changes();
    layer->set_custom_path_string("9");
    EXPECT_EQ(layer->CustomPath, (path{{9}}));
    EXPECT_FALSE(layer->has_changed());
    EXPECT_FALSE(global.is_changed());
}

TEST_F(custom_path, RoundTrips) {
    for (const path& p : {path{}, path{{0}}, path{{0, 65536}, {65538}},
                          path{{box_id(3, 2), box_id(2, 2)}, {box_id(0, 0)}, {}},
                          path{{1}, {}, {2}, {3, 4, 5}}, path{{0xFFFF0000u, 0x7FFFFFFFu}}}) {
        layer->CustomPath = p;
        const std::string text = layer->get_custom_path_string();
        layer->set_custom_path_string(text);
        EXPECT_EQ(layer->CustomPath, p) << text;
        EXPECT_EQ(layer->get_custom_path_string(), text);
    }
}

TEST_F(custom_path, TextGoesThroughTheLayerRecord) {
    layer->CustomPath = {{box_id(0, 0), box_id(1, 0)}, {}};
    const std::string info = layer->get_layer_info();
    EXPECT_NE(info.find("CustomPath:0,65536|\n"), std::string::npos) << info;
    auto copy = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
    copy->apply_layer_info(info);
    EXPECT_EQ(copy->CustomPath, layer->CustomPath);
}
