// A screen layer's frame through the recording context: every call, in
// order, with its texts and places, kept as golden logs under tests/data.

#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

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

// Each layer is drawn from its defaults with a few keys of its record
// changed; the log holds the chequer and its tints, outlines, circle,
// diagonals, dashes, labels on their backgrounds, corner texts, names and
// the drawing order.
TEST_F(layer_frame, GoldenLogs) {
    // Nothing on but what a case switches on.
    const std::string bare = "DrawGrid:0\nDrawCircle:0\nDrawLayerName:0\nDrawScreenSize:0\n"
                             "DrawInfoLine:0\nDrawBoxes:0\nCornersMode:0\n";
    const std::pair<const char*, std::string> cases[] = {
        // The new layer, with cabinet names, power and one excluded cabinet.
        {"layer_frame_new.log", "DrawBoxesNames:1\nDrawPower:1\nExcludeBoxes:65536"},
        // Name size 0 takes the label size, read through its normaliser (3 -> 5).
        {"layer_frame_small_labels.log", "LabelFontSize:3"},
        // A thick coloured circle with dashes; three size lines; the four
        // corners off the raster origin; half columns and an exclusion in
        // the info line; one phase; name and label sizes apart.
        {"layer_frame_options.log",
         bare + "DrawCircle:1\nCircleWidth:6\nCircleColor:010203\nDrawScreenSize:1\nShowMM:1\n"
                "ShowFT:1\nCornersMode:15\nOffsetX:100\nOffsetY:-20\nDrawInfoLine:1\nDrawPower:1\n"
                "DrawLayerName:1\nHalfColumns:0011\nSkipBlankBoxes:0\nExcludeBoxes:131075\n"
                "PowerWatts:100\nPowerPhases:1\nLabelFontSize:20\nLayerNameFontSize:50"},
        // Cabinet names run past Z: AA, BB, AAA.
        {"layer_frame_names.log", bare + "DrawBoxesNames:1\nColumns:53\nRows:2\nWidth:4\nHeight:4"},
        // Reversed, the name to the right of A1 is A2.
        {"layer_frame_names_reversed.log",
         bare + "DrawBoxesNames:1\nBoxesNamesReverse:1\nColumns:27\nRows:2\nWidth:4\nHeight:4"},
    };
    for (const auto& [log, settings] : cases) {
        auto layer = global.new_boxes_layer();
        layer->apply_layer_info(settings);
        rec.clear();
        build(*layer);
        EXPECT_TRUE(matches_golden(rec.text(), log)) << settings;
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
    // Two colours and a shorter list of one tint, on six cabinets in a row;
    // the record's lists add to the layer's own.
    auto layer = bare();
    layer->BoxColors.clear();
    layer->BoxTintColors.clear();
    layer->apply_layer_info(
        "DrawBoxes:1\nColumns:6\nRows:1\nBoxColors:0A0000|140000\nBoxTintColors:000A00");
    build(*layer);
    std::string colours;
    for (const auto& c : rec.calls("fill_color"))
        colours += c.args[0] + " ";
    // Cabinet k takes colour k / 2 % 2, its tint when k is odd.
    EXPECT_EQ(colours, "FF00000A FF000A00 FF000014 FF000014 FF00000A FF000A00 ");
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
