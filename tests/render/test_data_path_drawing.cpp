// The data path over a layer: lines per port, arrows, and port labels that
// number the ports of the whole project.

#include "datapath/snake.h"
#include "render/data_path_drawing.h"
#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <set>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// A 10 by 10 cabinet at (column, row).
Snake::box cell(unsigned column, unsigned row, bool start = false, bool end = false) {
    Snake::box b;
    b.column = column;
    b.row = row;
    b.x0 = float(column * 10);
    b.y0 = float(row * 10);
    b.x1 = b.x0 + 10;
    b.y1 = b.y0 + 10;
    if (start) b.start_known = b.starts_port = 1;
    if (end) b.end_known = b.ends_port = 1;
    return b;
}

const std::string green = "FF00FF00", red = "FF0000FF", blue = "FFFF0000";

struct data_path : workspace_test {
    recording_context rec;

    pointer<boxes_layer> layer() {
        auto l = screen_layer(global);
        global.insert_layer_at(l, -1);
        return l;
    }
    int counter() { return global.current_project()->ends_counter; }
    // The lines of the calls from the first one equal to from (inclusive).
    std::vector<std::string> lines_from(long from, long count) {
        std::vector<std::string> out;
        for (long i = from; i < from + count && i < long(rec.log().size()); ++i)
            out.push_back(rec.log()[std::size_t(i)].line());
        return out;
    }
    // Stroke colours set after the lines were stroked (the markers').
    std::vector<std::string> marker_colours() {
        std::vector<std::string> out;
        bool lines_done = false;
        for (const auto& c : rec.log()) {
            if (c.op == "stroke" && !lines_done) {
                lines_done = true;
                continue;
            }
            if (lines_done && c.op == "stroke_color") out.push_back(c.args[0]);
        }
        return out;
    }
};

} // namespace

TEST_F(data_path, OnePortShowsStartAndEndLabels) {
    auto l = layer();
    global.current_project()->ends_counter = 1;
    draw_data_path(*l, &rec, {cell(0, 0, true), cell(1, 0), cell(2, 0, false, true)});

    EXPECT_EQ(rec.log().front().op, "save");
    EXPECT_EQ(rec.log().back().op, "restore");
    EXPECT_EQ(lines_from(1, 8),
              (std::vector<std::string>{"stroke_color FFFFFFFF", "stroke_width 8", "begin_path",
                                        "move_to 5 5", "line_to 5 5", "line_to 15 5",
                                        "line_to 25 5", "stroke"}));
    // The start points along the way; its label stands behind the tip.
    const long start = rec.index_of("stroke_color " + green);
    ASSERT_GT(start, 0);
    EXPECT_EQ(lines_from(start, 5),
              (std::vector<std::string>{"stroke_color " + green, "fill_color " + green,
                                        "move_to 2 2", "line_to 2 8", "line_to 8 5"}));
    // "P1" is 40 wide at size 40; the gap is 2 * 3 + 3.
    EXPECT_GE(rec.index_of("text P1 -44 5"), 0);
    // The end looks back at the box before it, so it points against the way.
    const long end = rec.index_of("stroke_color " + red);
    EXPECT_EQ(lines_from(end, 5),
              (std::vector<std::string>{"stroke_color " + red, "fill_color " + red, "move_to 28 8",
                                        "line_to 28 2", "line_to 22 5"}));
    EXPECT_GE(rec.index_of("text R1 34 5"), 0);
    EXPECT_EQ(rec.texts(), (std::vector<std::string>{"P1", "R1"}));
    EXPECT_EQ(counter(), 2);
    for (const auto& c : rec.calls("text_align"))
        EXPECT_EQ(c.args[0], "17");
    EXPECT_EQ(rec.calls("font_size")[0].args[0], "40");
}

TEST_F(data_path, NumbersContinueAcrossLayersAndRestartPerBuild) {
    auto first = layer();
    auto second = layer();
    first->resetProjectEndsCounter();
    EXPECT_EQ(counter(), 1);
    draw_data_path(*first, &rec, {cell(0, 0, true), cell(1, 0, false, true)});
    draw_data_path(
        *second, &rec,
        {cell(0, 0, true), cell(1, 0, false, true), cell(2, 0, true), cell(3, 0, false, true)});
    EXPECT_EQ(rec.texts(), (std::vector<std::string>{"P1", "R1", "P2", "R2", "P3", "R3"}));
    EXPECT_EQ(counter(), 4);
    second->resetProjectEndsCounter();
    EXPECT_EQ(counter(), 1);
}

TEST_F(data_path, RandomColoursGoPortByPortAndRestartPerLayer) {
    auto l = layer();
    l->UseRandomSnakeColor = 1;
    const Snake::route route = {cell(0, 0, true), cell(1, 0, false, true),
                                cell(2, 0, true), cell(3, 0, false, true),
                                cell(4, 0, true), cell(5, 0, false, true)};
    draw_data_path(*l, &rec, route);
    std::vector<std::string> line_colours;
    for (const auto& c : rec.log()) {
        if (c.op == "stroke_color") line_colours.push_back(c.args[0]);
        if (c.op == "begin_path" && line_colours.size() == 3) break;
        if (c.op == "fill_color") break; // the markers have begun
    }
    const auto col = [](long long i) { return recording_context::col(_020GetColor(i)); };
    EXPECT_EQ(line_colours, (std::vector<std::string>{col(0), col(1), col(2)}));
    // Each port has its own line.
    EXPECT_GE(rec.index_of("move_to 25 5"), 0);
    EXPECT_GE(rec.index_of("move_to 45 5"), 0);

    rec.clear();
    draw_data_path(*layer(), &rec, {cell(0, 0, true), cell(1, 0, false, true)});
    EXPECT_EQ(rec.calls("stroke_color")[0].args[0], "FFFFFFFF"); // the other layer's own colour
    rec.clear();
    draw_data_path(*l, &rec, route);
    EXPECT_EQ(rec.calls("stroke_color")[0].args[0], col(0));
}

TEST_F(data_path, PortEndAtPositionZeroShowsNothing) {
    auto l = layer();
    global.current_project()->ends_counter = 1;
    draw_data_path(*l, &rec, {cell(0, 0, false, true)});
    EXPECT_TRUE(rec.texts().empty());
    EXPECT_EQ(rec.calls("move_to").size(), 1u); // the line's own start, no triangle
    EXPECT_EQ(counter(), 1);
}

TEST_F(data_path, LastBoxWithoutEndAndEveryThirdArrow) {
    auto l = layer();
    l->resetProjectEndsCounter();
    draw_data_path(*l, &rec,
                   {cell(0, 0, true), cell(1, 0), cell(2, 0), cell(3, 0), cell(4, 0), cell(5, 0)});
    // k = 2 gets a blue arrow towards the next box; k = 5 is last and unmarked.
    EXPECT_EQ(marker_colours(), (std::vector<std::string>{green, blue}));
    EXPECT_GE(rec.index_of("move_to 22 2"), 0);
    EXPECT_GE(rec.index_of("line_to 28 5"), 0);
    EXPECT_EQ(rec.texts(), std::vector<std::string>{"P1"});
    // Markers are outlines: fill is never called for them.
    EXPECT_TRUE(rec.calls("fill").empty());
}

TEST_F(data_path, HiddenBoxesLeaveLineAndMarkersButKeepTheCount) {
    auto l = layer();
    l->SkipBlankBoxes = 1;
    l->ExcludeBoxes.add(box_id(2, 0));
    const Snake::route route = {cell(0, 0, true), cell(1, 0), cell(2, 0),
                                cell(3, 0),       cell(4, 0), cell(5, 0, false, true)};
    draw_data_path(*l, &rec, route);
    EXPECT_EQ(rec.index_of("line_to 25 5"), -1);
    EXPECT_GE(rec.index_of("line_to 35 5"), 0);
    EXPECT_EQ(marker_colours(), (std::vector<std::string>{green, red}));

    rec.clear();
    l->SkipBlankBoxes = 0; // excluded but on the route: a normal box
    draw_data_path(*l, &rec, route);
    EXPECT_GE(rec.index_of("line_to 25 5"), 0);
    EXPECT_EQ(marker_colours(), (std::vector<std::string>{green, blue, red}));
}

TEST_F(data_path, VerticalTrianglesAndTheirLabels) {
    auto l = layer();
    global.current_project()->ends_counter = 1;
    draw_data_path(*l, &rec, {cell(0, 0, true), cell(0, 1), cell(0, 2, false, true)});
    // Down at the start: label above the triangle, bottom aligned.
    const long start = rec.index_of("stroke_color " + green);
    EXPECT_EQ(lines_from(start + 2, 3),
              (std::vector<std::string>{"move_to 2 2", "line_to 8 2", "line_to 5 8"}));
    const recorded_call* p1 = rec.text_call("P1");
    ASSERT_NE(p1, nullptr);
    EXPECT_EQ(p1->args[1] + "," + p1->args[2], "-15,2");
    // Up at the end (looking back at the box above).
    const long end = rec.index_of("stroke_color " + red);
    EXPECT_EQ(lines_from(end + 2, 3),
              (std::vector<std::string>{"move_to 2 28", "line_to 8 28", "line_to 5 22"}));
    const recorded_call* r1 = rec.text_call("R1");
    ASSERT_NE(r1, nullptr);
    EXPECT_EQ(r1->args[1] + "," + r1->args[2], "-15,28");
    std::vector<std::string> aligns;
    for (const auto& c : rec.calls("text_align"))
        aligns.push_back(c.args[0]);
    EXPECT_EQ(aligns, (std::vector<std::string>{"17", "17", "33", "17", "17", "9"}));
}

TEST_F(data_path, TriangleRoutinesPointTheirWay) {
    auto l = layer();
    l->draw_triangle_right(&rec, 50, 50);
    l->draw_triangle_left(&rec, 50, 50);
    l->draw_triangle_up(&rec, 50, 50);
    l->draw_triangle_down(&rec, 50, 50);
    std::vector<std::string> lines;
    for (const auto& c : rec.log())
        lines.push_back(c.line());
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "move_to 47 47", "line_to 47 53", "line_to 53 50", // right
                         "move_to 53 53", "line_to 53 47", "line_to 47 50", // left
                         "move_to 47 53", "line_to 53 53", "line_to 50 47", // up
                         "move_to 47 47", "line_to 53 47", "line_to 50 53", // down
                     }));
    // A plain arrow has no label and leaves the counter alone.
    rec.clear();
    global.current_project()->ends_counter = 5;
    l->draw_triangle(&rec, 5, 5, cell(0, 0), cell(1, 0), false, false);
    EXPECT_TRUE(rec.texts().empty());
    EXPECT_EQ(counter(), 5);
}

TEST_F(data_path, IndexedColoursAreClearlyDifferent) {
    const int n = indexed_color_count();
    ASSERT_GE(n, 16);
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j) {
            const auto a = _020GetColor(i), b = _020GetColor(j);
            const int d =
                std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue);
            EXPECT_GE(d, 60) << i << " and " << j;
        }
    for (int i = 0; i < n; ++i)
        EXPECT_EQ(_020GetColor(i).alpha, 255);
    EXPECT_EQ(_020GetColor(n), _020GetColor(0));
    EXPECT_EQ(_020GetColor(-1), _020GetColor(n - 1));
    EXPECT_EQ(get_indexed_data_path_color(3), _020GetColor(3));
}

TEST_F(data_path, BuildFrameDrawsTheRouteOfTheLayer) {
    auto l = global.new_boxes_layer();
    l->DrawSnake = 1;
    l->CustomDataPath = 1;
    l->CustomPath = {{box_id(0, 0), box_id(1, 0), box_id(2, 0)}};
    global.current_project()->ends_counter = 9;
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    // Every build numbers ports from 1.
    EXPECT_NE(rec.text_call("P1"), nullptr);
    EXPECT_NE(rec.text_call("R1"), nullptr);
    EXPECT_TRUE(host.errors.empty());
}

TEST_F(data_path, FailingRouteSwitchesThePathOffAndKeepsTheLabels) {
    auto l = global.new_boxes_layer();
    l->DrawSnake = 1;
    l->DataDiagramType = 0;
    l->SnakeLimit = 300; // a line of 8 cabinets of 128 * 128 is far above this
    std::vector<std::string> errors;
    l->build_frame(&rec, [&](const std::string& m) { errors.push_back(m); });
    EXPECT_EQ(errors, std::vector<std::string>{"Some panels consume more pixels then limit used."});
    EXPECT_EQ(l->DrawSnake, 0);
    EXPECT_TRUE(l->has_changed());
    EXPECT_NE(rec.text_call("Screen1"), nullptr); // labels still drawn
}

TEST_F(data_path, EveryCabinetItsOwnPortShowsOnlyEnds) {
    // "Other Type" with a limit of nothing: every cabinet ends a port and
    // none starts one, so there is no P label and the first shows nothing.
    auto l = layer();
    l->Columns = 4;
    l->Rows = 1;
    l->Width = l->Height = 10;
    l->DataDiagramType = 1;
    l->SnakeMode = 0;
    l->SnakeLimit = 0;
    l->resetProjectEndsCounter();
    draw_data_path(*l, &rec, Snake::make_route(*l));
    EXPECT_EQ(rec.texts(), (std::vector<std::string>{"R1", "R2", "R3"}));
    EXPECT_EQ(marker_colours(), (std::vector<std::string>{red, red, red}));
    // Each port's line is a single point: after the first box's own point
    // the only line_to calls are the triangles' (two each).
    EXPECT_EQ(rec.calls("line_to").size(), 1u + 3u * 2u);
}

TEST_F(data_path, CustomRunOfOneRepeatsItsPortNumber) {
    auto l = layer();
    l->Columns = 3;
    l->Rows = 1;
    l->Width = l->Height = 10;
    l->CustomDataPath = 1;
    l->CustomPath = {{box_id(0, 0)}, {box_id(1, 0), box_id(2, 0)}};
    l->resetProjectEndsCounter();
    draw_data_path(*l, &rec, Snake::make_route(*l));
    // The run of one has no end: its P label does not advance the count, and
    // the line goes on into the next run.
    EXPECT_EQ(rec.texts(), (std::vector<std::string>{"P1", "P1", "R1"}));
    EXPECT_EQ(lines_from(rec.index_of("move_to 5 5"), 5),
              (std::vector<std::string>{"move_to 5 5", "line_to 5 5", "line_to 15 5",
                                        "line_to 25 5", "stroke"}));
}
