// A screen layer's frame through the recording context: what is drawn, in
// which order, with which texts and where.

#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct layer_frame : workspace_test {
    recording_context rec;
    std::vector<std::string> errors;

    // The "New" screen layer: default colours and defaults.
    pointer<boxes_layer> screen() { return global.new_boxes_layer(); }
    // A layer with nothing on but what the test switches on.
    pointer<boxes_layer> bare() {
        auto layer = screen();
        layer->DrawGrid = layer->DrawCircle = layer->DrawLayerName = layer->DrawScreenSize = 0;
        layer->DrawInfoLine = layer->DrawBoxes = layer->CornersMode = 0;
        return layer;
    }
    void build(boxes_layer& layer) {
        layer.build_frame(&rec, [this](const std::string& m) { errors.push_back(m); });
    }
    // The call that draw_label made for text: the background rectangle.
    recorded_call background_of(const std::string& text) {
        auto& log = rec.log();
        for (std::size_t i = 0; i < log.size(); ++i)
            if (log[i].op == "text" && log[i].args[0] == text)
                for (std::size_t j = i; j-- > 0;)
                    if (log[j].op == "rectangle") return log[j];
        ADD_FAILURE() << "no label " << text;
        return {};
    }
    const recorded_call& text(const std::string& s) {
        static recorded_call none{"", "", {"", "", ""}};
        const recorded_call* c = rec.text_call(s);
        if (!c) {
            ADD_FAILURE() << "text not drawn: " << s;
            return none;
        }
        return *c;
    }
    // Index of the first text call whose string holds part.
    long text_with(const std::string& part) {
        for (std::size_t i = 0; i < rec.log().size(); ++i)
            if (rec.log()[i].op == "text" && rec.log()[i].args[0].find(part) != std::string::npos)
                return long(i);
        return -1;
    }
    // Where text s was drawn, with the font size and alignment then in
    // force: "X,Y SIZE/ALIGN".
    std::string placed(const std::string& s) {
        const auto [size, align] = font_of(s);
        const recorded_call& c = text(s);
        return c.args[1] + "," + c.args[2] + " " + size + "/" + align;
    }
    // The font size and alignment in force when text s was drawn.
    std::pair<std::string, std::string> font_of(const std::string& s) {
        auto& log = rec.log();
        std::string size, align;
        for (const auto& c : log) {
            if (c.op == "font_size") size = c.args[0];
            if (c.op == "text_align") align = c.args[0];
            if (c.op == "text" && c.args[0] == s) return {size, align};
        }
        return {};
    }
};

std::string at(float x, float y) {
    return recording_context::f(x) + "," + recording_context::f(y);
}
std::string where(const recorded_call& c) {
    return c.args[1] + "," + c.args[2];
}

} // namespace

TEST_F(layer_frame, NewLayerDrawsChequerGridCircleAndThreeLabels) {
    auto layer = screen();
    EXPECT_EQ(layer->get_width(), 1024);
    EXPECT_EQ(layer->get_height(), 640);
    build(*layer);
    EXPECT_TRUE(errors.empty());
    ASSERT_FALSE(rec.log().empty());
    EXPECT_EQ(rec.log().front().line(), "offscreen image 1024x640");

    // Chequer: main colour where column + row is even, tint where odd.
    int cabinets = 0;
    auto& log = rec.log();
    for (std::size_t i = 0; i < log.size(); ++i) {
        if (log[i].op != "rectangle" || log[i].args[2] != "128") continue;
        ASSERT_GE(i, 2u);
        ASSERT_EQ(log[i - 2].op, "fill_color");
        const int column = std::stoi(log[i].args[0]) / 128, row = std::stoi(log[i].args[1]) / 128;
        EXPECT_EQ(log[i - 2].args[0], (column + row) % 2 ? "FFB8B895" : "FF7F7F3F")
            << column << "," << row;
        EXPECT_EQ(log[i + 1].op, "close_path");
        EXPECT_EQ(log[i + 2].op, "fill");
        ++cabinets;
    }
    EXPECT_EQ(cabinets, 40);

    const auto outlines = rec.calls("rectangle_outline");
    ASSERT_EQ(outlines.size(), 40u);
    EXPECT_EQ(outlines.front().line(), "rectangle_outline 0 0 127 127 FFFFFFFF 2");
    EXPECT_EQ(outlines.back().line(), "rectangle_outline 896 512 127 127 FFFFFFFF 2");

    ASSERT_EQ(rec.calls("circle").size(), 1u);
    EXPECT_EQ(rec.calls("circle")[0].line(), "circle 512 320 159");

    EXPECT_EQ(rec.texts(),
              (std::vector<std::string>{
                  "W 1024 X H 640", "Screen1",
                  "8.0 Columns X 5.0 Rows - 40 Cabinets Total / Resolution: 1024 x 640 ( 655360 ) "
                  "/ Aspect Ratio: 1.60",
                  "X 0,Y 0"}));
}

TEST_F(layer_frame, LabelsStandAtTheirAnchorsOnTheirBackgrounds) {
    auto layer = screen();
    build(*layer);
    // labelSize 30, name size 0 -> 30, so y0 = 30: the size line sits 30
    // below the centre, the name on it.
    EXPECT_EQ(placed("W 1024 X H 640"), "512,350 30/18");
    EXPECT_EQ(where(text("Screen1")), at(512, 320));
    const std::string info = rec.texts()[2];
    EXPECT_EQ(placed(info), "512,640 14/34"); // H - 5, then y 5: the very edge
    EXPECT_EQ(placed("X 0,Y 0"), "10,5 30/9");

    // The background is the text's line box: 14 bytes * 15 wide, centred;
    // ascent 24 and descent 6 around a middle anchor.
    EXPECT_EQ(background_of("W 1024 X H 640").line(), "rectangle 407 335 210 30");
    const long size_text = rec.index_of("text W 1024 X H 640 512 350");
    ASSERT_GT(size_text, 4);
    const auto& log = rec.log();
    EXPECT_EQ(log[size_text - 4].line(), "fill_color CC000000");
    EXPECT_EQ(log[size_text - 3].line(), "fill");
    EXPECT_EQ(log[size_text - 2].line(), "fill_color FFFFFFFF");
    EXPECT_EQ(log[size_text - 1].line(), "stroke_color FFFFFFFF");
    // The name: black on translucent white.
    const long name_text = rec.index_of("text Screen1 512 320");
    EXPECT_EQ(log[name_text - 4].line(), "fill_color CCFFFFFF");
    EXPECT_EQ(log[name_text - 2].line(), "fill_color FF000000");
}

TEST_F(layer_frame, PowerLineNamesItsPhases) {
    auto layer = bare();
    layer->DrawPower = 1;
    layer->PowerWatts = 100;
    layer->PowerPhases = 1;
    build(*layer);
    EXPECT_EQ(rec.texts(), std::vector<std::string>{"36.36A | 110V | 1 Phase"});
    // Just above the centre: y0 = 30.
    EXPECT_EQ(where(text("36.36A | 110V | 1 Phase")), at(512, 290));

    rec.clear();
    layer->PowerWatts = 200;
    layer->PowerPhases = 3;
    build(*layer);
    EXPECT_EQ(rec.texts(), std::vector<std::string>{"41.99A | 110V | 3 Phases"});

    rec.clear();
    layer->PowerPhases = 0; // divides by zero; the word is still plural
    build(*layer);
    ASSERT_EQ(rec.texts().size(), 1u);
    EXPECT_NE(rec.texts()[0].find("| 110V | 0 Phases"), std::string::npos) << rec.texts()[0];
}

TEST_F(layer_frame, NameSizeOfZeroTakesTheLabelSize) {
    auto layer = screen();
    layer->DrawPower = 1;
    layer->LabelFontSize.value = 20;
    build(*layer);
    EXPECT_EQ(font_of("Screen1").first, "20");
    EXPECT_EQ(where(text("W 1024 X H 640")), at(512, 340)); // y0 = 20
    EXPECT_EQ(rec.texts()[2].substr(0, 6), "41.99A");
    EXPECT_EQ(where(text(rec.texts()[2])), at(512, 300));

    rec.clear();
    layer->LayerNameFontSize.value = 50;
    build(*layer);
    EXPECT_EQ(font_of("Screen1").first, "50");
    EXPECT_EQ(where(text("W 1024 X H 640")), at(512, 355)); // (20 + 50) / 2 = 35
    EXPECT_EQ(where(text(rec.texts()[2])), at(512, 285));

    rec.clear();
    layer->LabelFontSize.value = 3; // read through its normaliser: 5
    layer->LayerNameFontSize.value = 0;
    build(*layer);
    EXPECT_EQ(font_of("Screen1").first, "5");
}

TEST_F(layer_frame, ThreeSizeLinesStackDownward) {
    auto layer = bare();
    layer->DrawScreenSize = 1;
    layer->ShowMM = 1;
    layer->ShowFT = 1;
    build(*layer);
    // 4000 mm by 2500 mm.
    EXPECT_EQ(rec.texts(), (std::vector<std::string>{"W 1024 X H 640", "W 4.00(m) X H 2.50(m)",
                                                     "W 13' 1.48'' X H 8' 2.43''"}));
    EXPECT_EQ(where(text("W 1024 X H 640")), at(512, 350));
    EXPECT_EQ(where(text("W 4.00(m) X H 2.50(m)")), at(512, 380));
    EXPECT_EQ(where(text("W 13' 1.48'' X H 8' 2.43''")), at(512, 410));
}

TEST_F(layer_frame, InfoLineShowsHalfColumnsAndCountsExclusions) {
    auto layer = bare();
    layer->DrawInfoLine = 1;
    layer->DrawPower = 1;
    layer->HalfColumns.set(0);
    layer->HalfColumns.set(1);
    layer->SkipBlankBoxes = 0;
    layer->ExcludeBoxes.add(box_id(2, 3));
    build(*layer);
    ASSERT_EQ(rec.texts().size(), 2u);
    // The power figure counts the excluded cabinet in (skip is off).
    EXPECT_EQ(rec.texts()[0], "41.99A | 110V | 3 Phases");
    EXPECT_EQ(rec.texts()[1], "7.5 Columns X 5.0 Rows - 39 Cabinets Total / Resolution: 960 x "
                              "640 ( 614400 ) / Aspect Ratio: 1.50");
}

TEST_F(layer_frame, CabinetNamesRunPastZ) {
    auto layer = bare();
    layer->DrawBoxesNames = 1;
    layer->Columns = 53;
    layer->Rows = 2;
    layer->Width = layer->Height = 4;
    build(*layer);
    const auto names = rec.texts();
    ASSERT_EQ(names.size(), 106u);
    EXPECT_EQ(names[0], "A1");
    EXPECT_EQ(names[1], "B1");
    EXPECT_EQ(names[25], "Z1");
    EXPECT_EQ(names[26], "AA1");
    EXPECT_EQ(names[27], "BB1");
    EXPECT_EQ(names[52], "AAA1");
    EXPECT_EQ(names[53], "A2");
    EXPECT_EQ(placed("A1"), "2,2 40/18");

    rec.clear();
    layer->BoxesNamesReverse = 1;
    build(*layer);
    const auto reversed = rec.texts();
    EXPECT_EQ(reversed[0], "A1");
    EXPECT_EQ(reversed[1], "A2"); // the one to the right
    EXPECT_EQ(reversed[53], "B1");
}

TEST_F(layer_frame, ExcludedCabinetKeepsOutlineAndNameWithoutBoxes) {
    auto layer = screen();
    layer->DrawBoxes = 0;
    layer->DrawBoxesNames = 1;
    layer->ExcludeBoxes.add(box_id(1, 0));
    build(*layer);
    EXPECT_EQ(rec.calls("rectangle_outline").size(), 40u);
    EXPECT_GE(rec.index_of("rectangle_outline 128 0 127 127 FFFFFFFF 2"), 0);
    EXPECT_NE(rec.text_call("B1"), nullptr);
    EXPECT_EQ(where(text("B1")), at(192, 64));

    rec.clear();
    layer->DrawBoxes = 1;
    build(*layer);
    // Filled: every cabinet but the excluded one.
    int fills = 0;
    for (const auto& c : rec.calls("rectangle"))
        if (c.args[2] == "128") {
            ++fills;
            EXPECT_FALSE(c.args[0] == "128" && c.args[1] == "0");
        }
    EXPECT_EQ(fills, 39);
}

TEST_F(layer_frame, CornerLabelsReadRasterCoordinates) {
    auto layer = bare();
    layer->CornersMode = 0xF;
    layer->offset_x = 100;
    layer->offset_y = -20;
    build(*layer);
    EXPECT_EQ(rec.texts(), (std::vector<std::string>{"X 100,Y -20", "X 1123,Y -20", "X 100,Y 619",
                                                     "X 1123,Y 619"}));
    EXPECT_EQ(placed("X 100,Y -20"), "10,5 30/9");
    EXPECT_EQ(placed("X 1123,Y -20"), "1014,5 30/12");
    EXPECT_EQ(placed("X 100,Y 619"), "10,635 30/33");
    EXPECT_EQ(placed("X 1123,Y 619"), "1014,635 30/36");
    // Right aligned: the box ends at the anchor.
    EXPECT_EQ(background_of("X 1123,Y 619").args[0], recording_context::f(1014 - 15 * 12));
}

TEST_F(layer_frame, SeveralColoursPairDiagonalsAndShortTintsFallBack) {
    auto layer = bare();
    layer->DrawBoxes = 1;
    layer->Columns = 6;
    layer->Rows = 1;
    const auto c0 = color::color(10, 0, 0), c1 = color::color(20, 0, 0),
               t0 = color::color(0, 10, 0);
    layer->BoxColors = {c0, c1};
    layer->BoxTintColors = {t0}; // shorter than the main list
    build(*layer);
    std::vector<std::string> colours;
    for (const auto& c : rec.calls("fill_color"))
        colours.push_back(c.args[0]);
    const auto w = [](color::color c) { return recording_context::col(c); };
    // counter 0..5: index = counter / 2 % 2, tint when odd.
    EXPECT_EQ(colours, (std::vector<std::string>{w(c0), w(t0), w(c1), w(c1), w(c0), w(t0)}));

    rec.clear();
    layer->BoxColors.clear();
    build(*layer);
    EXPECT_TRUE(rec.calls("fill_color").empty());
}

TEST_F(layer_frame, OrderOfDrawing) {
    auto layer = screen();
    layer->DrawBoxesNames = 1;
    layer->DrawPower = 1;
    build(*layer);
    const long first_fill = rec.index_of("fill_color FF7F7F3F");
    const long first_outline = rec.index_of("rectangle_outline 0 0 127 127 FFFFFFFF 2");
    const long first_name = rec.index_of("text A1 64 64");
    const long circle = rec.index_of("circle 512 320 159");
    const long size_line = rec.index_of("text W 1024 X H 640 512 350");
    const long name = rec.index_of("text Screen1 512 320");
    const std::vector<long> order = {first_fill,
                                     first_outline,
                                     first_name,
                                     circle,
                                     size_line,
                                     name,
                                     text_with("Phases"),
                                     text_with("Columns"),
                                     rec.index_of("text X 0,Y 0 10 5")};
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end())) << ::testing::PrintToString(order);
    EXPECT_EQ(std::count(order.begin(), order.end(), -1), 0);
}

TEST_F(layer_frame, CircleDiagonalsAndDashes) {
    auto layer = bare();
    layer->DrawCircle = 1;
    layer->CircleWidth = 6;
    layer->CircleColor = color::color(1, 2, 3);
    build(*layer);
    // ((320 - 3) / 2) = 158 after the integer divisions.
    EXPECT_GE(rec.index_of("circle 512 320 158"), 0);
    EXPECT_GE(rec.index_of("line_to 1024 640"), 0);
    EXPECT_GE(rec.index_of("move_to 1024 0"), 0);
    EXPECT_GE(rec.index_of("line_to 0 640"), 0);
    int across = 0, down = 0;
    for (const auto& c : rec.calls("move_to")) {
        if (c.args[1] == "320") ++across;
        if (c.args[0] == "512") ++down;
    }
    // Dashes start every 10 pixels while below the side + 5: 103 across,
    // and 65 down, one of which starts on the centre line too.
    EXPECT_EQ(across, 103 + 1);
    EXPECT_EQ(down, 65);
    EXPECT_GE(rec.index_of("move_to 1020 320"), 0);
    EXPECT_GE(rec.index_of("line_to 1025 320"), 0); // the last dash runs past the edge
    EXPECT_EQ(rec.calls("stroke_width")[0].args[0], "6");
    EXPECT_EQ(rec.calls("stroke_color")[0].args[0], "FF030201");
}

TEST_F(layer_frame, NoAreaDrawsNothingAndRefusedImageIsReported) {
    auto layer = screen();
    layer->Columns = 0;
    build(*layer);
    EXPECT_TRUE(rec.log().empty());
    EXPECT_TRUE(errors.empty());
    EXPECT_EQ(layer->get_offscreen(), nullptr);

    layer->Columns = 1;
    layer->Width = 100000; // wider than any image the program allocates
    build(*layer);
    EXPECT_TRUE(rec.log().empty());
    EXPECT_EQ(errors, std::vector<std::string>{"Offscreen allocated nullptr."});
}
