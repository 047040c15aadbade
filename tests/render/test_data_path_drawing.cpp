// The data path over a layer: lines per port, arrows, and port labels that
// number the ports of the whole project. Every call is kept, in order, in
// one golden log of cases.

#include "datapath/snake.h"
#include "render/data_path_drawing.h"
#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// A route of 10 by 10 cabinets written as route_text writes it: "(0,0)S
// (1,0) (2,0)E". Marks not written stay unknown.
Snake::route cells(const std::string& text) {
    Snake::route out;
    std::istringstream words(text);
    for (std::string w; words >> w;) {
        Snake::box b;
        std::sscanf(w.c_str(), "(%u,%u)", &b.column, &b.row);
        b.x0 = float(b.column * 10);
        b.y0 = float(b.row * 10);
        b.x1 = b.x0 + 10;
        b.y1 = b.y0 + 10;
        if (w.find('S') != std::string::npos) b.start_known = b.starts_port = 1;
        if (w.find('E') != std::string::npos) b.end_known = b.ends_port = 1;
        out.push_back(b);
    }
    return out;
}

struct data_path : workspace_test {
    recording_context rec;
    std::string log;

    pointer<boxes_layer> layer() {
        auto l = screen_layer(global);
        set_grid(*l, 6, 3, 10, 10);
        global.insert_layer_at(l, -1);
        return l;
    }
    int& counter() { return global.current_project()->ends_counter; }
    void draw(const std::string& name, boxes_layer& l, const Snake::route& route) {
        rec.clear();
        draw_data_path(l, &rec, route);
        log += "== " + name + " (counter " + std::to_string(counter()) + ")\n" + rec.text();
    }
};

} // namespace

TEST_F(data_path, GoldenLog) {
    auto l = layer();
    counter() = 1;
    // Start and end triangles with their labels beside them; the end looks
    // back at the box before it.
    draw("one port", *l, cells("(0,0)S (1,0) (2,0)E"));
    draw("vertical", *l, cells("(0,0)S (0,1) (0,2)E"));
    // An end at position zero shows nothing and counts nothing.
    draw("end first", *l, cells("(0,0)E"));
    // Every third box a blue arrow; the last box without an end is unmarked.
    draw("arrows", *l, cells("(0,0)S (1,0) (2,0) (3,0) (4,0) (5,0)"));
    // Numbers continue across layers and restart per build.
    l->resetProjectEndsCounter();
    draw("first layer", *l, cells("(0,0)S (1,0)E"));
    auto second = layer();
    draw("second layer", *second, cells("(0,0)S (1,0)E (2,0)S (3,0)E"));
    // Hidden boxes leave the line and markers but keep the count; excluded
    // but not skipped, a box is a normal one.
    l->SkipBlankBoxes = 1;
    l->ExcludeBoxes.add(box_id(2, 0));
    const auto six = cells("(0,0)S (1,0) (2,0) (3,0) (4,0) (5,0)E");
    draw("skipped", *l, six);
    l->SkipBlankBoxes = 0;
    draw("not skipped", *l, six);
    // Random colours go port by port and restart per layer; the other layer
    // keeps its own colour.
    l->UseRandomSnakeColor = 1;
    const auto three = cells("(0,0)S (1,0)E (2,0)S (3,0)E (4,0)S (5,0)E");
    draw("random colours", *l, three);
    draw("own colour", *second, three);
    draw("random colours again", *l, three);
    // "Other Type" with a limit of nothing: every cabinet ends a port and
    // none starts one.
    auto others = layer();
    set_grid(*others, 4, 1, 10, 10);
    others->DataDiagramType = 1;
    others->SnakeMode = others->SnakeLimit = 0;
    draw("only ends", *others, Snake::make_route(*others));
    // A custom run of one has no end: its label repeats and its line goes on.
    others->CustomDataPath = 1;
    others->CustomPath = {{box_id(0, 0)}, {box_id(1, 0), box_id(2, 0)}};
    others->resetProjectEndsCounter();
    draw("custom run of one", *others, Snake::make_route(*others));
    // The four triangle routines, and a plain arrow that leaves the counter.
    rec.clear();
    l->draw_triangle_right(&rec, 50, 50);
    l->draw_triangle_left(&rec, 50, 50);
    l->draw_triangle_up(&rec, 50, 50);
    l->draw_triangle_down(&rec, 50, 50);
    l->draw_triangle(&rec, 5, 5, cells("(0,0)")[0], cells("(1,0)")[0], false, false);
    log += "== triangles\n" + rec.text();
    EXPECT_TRUE(matches_golden(log, "data_path.log"));
}

TEST_F(data_path, FrameBuildsNumberFromOneAndAFailingRouteSwitchesThePathOff) {
    auto l = global.new_boxes_layer();
    l->DrawSnake = l->CustomDataPath = 1;
    l->CustomPath = {{box_id(0, 0), box_id(1, 0), box_id(2, 0)}};
    counter() = 9;
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    EXPECT_NE(rec.text_call("P1"), nullptr);
    EXPECT_NE(rec.text_call("R1"), nullptr);
    EXPECT_TRUE(host.errors.empty());

    rec.clear();
    l->CustomDataPath = l->DataDiagramType = 0;
    l->SnakeLimit = 300; // a line of 8 cabinets of 128 * 128 is far above this
    std::vector<std::string> errors;
    l->build_frame(&rec, [&](const std::string& m) { errors.push_back(m); });
    EXPECT_EQ(errors, std::vector<std::string>{Snake::limit_failure_text});
    EXPECT_EQ(l->DrawSnake, 0);
    EXPECT_TRUE(l->has_changed());
    EXPECT_NE(rec.text_call("Screen1"), nullptr); // labels still drawn
}
