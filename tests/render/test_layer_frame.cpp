// A screen layer's frame through the recording context: every call, in
// order, with its texts and places, kept as golden logs under tests/data.

#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct layer_frame : workspace_test {
    recording_context rec;
    std::vector<std::string> errors;

    // A layer with nothing on but what the test switches on.
    pointer<boxes_layer> bare() {
        auto layer = global.new_boxes_layer();
        show_only_cabinets(*layer);
        layer->DrawBoxes = 0;
        return layer;
    }
    void build(boxes_layer& layer) {
        layer.build_frame(&rec, [this](const std::string& m) { errors.push_back(m); });
    }
};

} // namespace

// Each layer is drawn from its defaults with a few settings changed; the
// log holds the chequer and its tints, outlines, circle, diagonals, dashes,
// labels on their backgrounds, corner texts, names and the drawing order.
TEST_F(layer_frame, GoldenLogs) {
    const struct {
        const char* golden;
        std::function<void(boxes_layer&)> set;
        bool from_bare;
    } cases[] = {
        // The new layer, with cabinet names, power and one excluded cabinet.
        {"layer_frame_new.log",
         [](boxes_layer& l) {
             l.DrawBoxesNames = l.DrawPower = 1;
             l.ExcludeBoxes.add(box_id(1, 0));
         },
         false},
        // Name size 0 takes the label size, read through its normaliser (3 -> 5).
        {"layer_frame_small_labels.log", [](boxes_layer& l) { l.LabelFontSize.value = 3; }, false},
        // A thick coloured circle with dashes; three size lines; the four
        // corners off the raster origin; half columns and an exclusion in
        // the info line; one phase; name and label sizes apart.
        {"layer_frame_options.log",
         [](boxes_layer& l) {
             l.DrawCircle = 1;
             l.CircleWidth = 6;
             l.CircleColor = color::color(1, 2, 3);
             l.DrawScreenSize = l.ShowMM = l.ShowFT = 1;
             l.CornersMode = 0xF;
             l.offset_x = 100;
             l.offset_y = -20;
             l.DrawInfoLine = l.DrawPower = l.DrawLayerName = 1;
             l.HalfColumns.set(0);
             l.HalfColumns.set(1);
             l.SkipBlankBoxes = 0;
             l.ExcludeBoxes.add(box_id(2, 3));
             l.PowerWatts = 100;
             l.PowerPhases = 1;
             l.LabelFontSize.value = 20;
             l.LayerNameFontSize.value = 50;
         },
         true},
        // Cabinet names run past Z: AA, BB, AAA.
        {"layer_frame_names.log",
         [](boxes_layer& l) {
             l.DrawBoxesNames = 1;
             l.Columns = 53;
             l.Rows = 2;
             l.Width = l.Height = 4;
         },
         true},
        // Reversed, the name to the right of A1 is A2.
        {"layer_frame_names_reversed.log",
         [](boxes_layer& l) {
             l.DrawBoxesNames = l.BoxesNamesReverse = 1;
             l.Columns = 27;
             l.Rows = 2;
             l.Width = l.Height = 4;
         },
         true},
    };
    for (const auto& c : cases) {
        auto layer = c.from_bare ? bare() : global.new_boxes_layer();
        c.set(*layer);
        rec.clear();
        build(*layer);
        EXPECT_TRUE(matches_golden(rec.text(), c.golden));
    }
    EXPECT_TRUE(errors.empty());
}

TEST_F(layer_frame, PhaseWordIsPluralButForOne) {
    auto layer = bare();
    layer->DrawPower = 1;
    layer->PowerWatts = 200;
    for (int phases : {3, 0}) { // 0 divides by zero; the word is still plural
        layer->PowerPhases = phases;
        rec.clear();
        build(*layer);
        EXPECT_NE(rec.text().find("| 110V | " + std::to_string(phases) + " Phases"),
                  std::string::npos)
            << rec.text();
    }
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

TEST_F(layer_frame, NoAreaDrawsNothingAndRefusedImageIsReported) {
    auto layer = global.new_boxes_layer();
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
