// The screen layer's key:value text: what the writer gives, byte for byte,
// and every reading rule, including the catalogue's older forms.

#include "core/diagnostics.h"
#include "core/number_reader.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct parameter_text : screen_test {
    std::ostringstream parse_errors;

    void SetUp() override { set_parse_error_out(&parse_errors); }
    void TearDown() override { set_parse_error_out(nullptr); }

    pointer<boxes_layer> screen() { return screen_layer(global); }
    std::string params(const boxes_layer& layer) {
        return layer.get_all_parameters().as_string(":", "\n");
    }
    // The two lines a guarded read writes on failure.
    static std::string parse_error(const std::string& failure, const std::string& key,
                                   const std::string& value) {
        return "Parse error: " + failure + "\n" + key + " : " + value + "\n";
    }
};

} // namespace

TEST_F(parameter_text, WriterForms) {
    layer->BoxColors = {color::color(255, 0, 0, 255), color::color(0, 0, 255, 0)};
    layer->PhysW = 0.1f; // widened to double before "%f"
    layer->PhysH = -2.5f;
    layer->HalfColumns = std::bitset<4>("1001");
    layer->ExcludeBoxes.add(box_id(1, 2));
    layer->ExcludeBoxes.add(0xFFFFFFFFu);
    layer->ExcludeBoxes.add(7);
    layer->Rows = -3;
    const property_set p = layer->get_all_parameters();
    EXPECT_EQ(p.get("BoxColors"),
              "1.000000 0.000000 0.000000 1.000000|0.000000 0.000000 1.000000 0.000000");
    EXPECT_EQ(p.get("PhysW"), "0.100000");
    EXPECT_EQ(p.get("PhysH"), "-2.500000");
    EXPECT_EQ(p.get("HalfColumns"), "1001");
    EXPECT_EQ(p.get("ExcludeBoxes"), "7|-1|65538"); // newest first, signed
    EXPECT_EQ(p.get("Rows"), "-3");
}

TEST_F(parameter_text, IntegersTakeWordsInAnyCase) {
    for (const char* no : {"false", "False", "0", "FALSE", "off", "No"}) {
        layer->DrawSnake = 1;
        layer->apply_parameter_by_name("DrawSnake", no);
        EXPECT_EQ(layer->DrawSnake, 0) << no;
    }
    for (const char* yes : {"true", "TRUE", "On", "yes", "1"}) {
        layer->DrawSnake = 0;
        layer->apply_parameter_by_name("DrawSnake", yes);
        EXPECT_EQ(layer->DrawSnake, 1) << yes;
    }
    layer->apply_parameter_by_name("Width", "ON"); // words go to every integer key
    EXPECT_EQ(layer->Width, 1);
    EXPECT_EQ(parse_errors.str(), "");
}

TEST_F(parameter_text, IntegerFailureKeepsDigitsReadAndReportsTwoLines) {
    layer->apply_parameter_by_name("Columns", "5x");
    EXPECT_EQ(layer->Columns, 5);
    EXPECT_EQ(parse_errors.str(), parse_error("invalid digit 'x' in \"5x\"", "Columns", "5x"));

    parse_errors.str("");
    layer->apply_parameter_by_name("Columns", "x5");
    EXPECT_EQ(layer->Columns, 0);
    EXPECT_EQ(parse_errors.str(), parse_error("invalid digit 'x' in \"x5\"", "Columns", "x5"));

    parse_errors.str("");
    layer->apply_parameter_by_name("Rows", "-3"); // no clamping here
    EXPECT_EQ(layer->Rows, -3);
    layer->apply_parameter_by_name("Rows", "-12z"); // no sign on failure
    EXPECT_EQ(layer->Rows, 12);
    layer->apply_parameter_by_name("GridWidth", "");
    EXPECT_EQ(layer->GridWidth, 0);
    layer->apply_parameter_by_name("SnakeLimit", " 7"); // no trimming
    EXPECT_EQ(layer->SnakeLimit, 0);
    EXPECT_EQ(parse_errors.str(),
              parse_error("invalid digit 'z' in \"-12z\"", "Rows", "-12z") +
                  parse_error("invalid digit ' ' in \" 7\"", "SnakeLimit", " 7"));
}

TEST_F(parameter_text, HalfColumnsBitString) {
    layer->apply_parameter_by_name("HalfColumns", "0010");
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 2u); // the half last column
    layer->apply_parameter_by_name("HalfColumns", "2");
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 2u);
    EXPECT_EQ(parse_errors.str(),
              parse_error("bitset string ctor has invalid argument", "HalfColumns", "2"));
    layer->apply_parameter_by_name("HalfColumns", "1");
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 1u); // higher bits clear
    layer->apply_parameter_by_name("HalfColumns", "10");
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 2u);
    layer->apply_parameter_by_name("HalfColumns", "110000"); // the first four count
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 12u);
    layer->apply_parameter_by_name("HalfColumns", "1111x"); // checked to the end
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 12u);
    layer->apply_parameter_by_name("HalfColumns", "");
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 0u);
}

TEST_F(parameter_text, FontSizesStoreAsReadAndWriteNormalised) {
    layer->apply_parameter_by_name("BoxesNamesFontSize", "3");
    EXPECT_EQ(layer->BoxesNamesFontSize.value, 3);
    EXPECT_EQ(layer->BoxesNamesFontSize.get(), 5);
    EXPECT_EQ(layer->get_all_parameters().get("BoxesNamesFontSize"), "5");

    layer->apply_parameter_by_name("LayerNameFontSize", "3");
    EXPECT_EQ(layer->get_all_parameters().get("LayerNameFontSize"), "5");
    layer->apply_parameter_by_name("LayerNameFontSize", "0");
    EXPECT_EQ(layer->get_all_parameters().get("LayerNameFontSize"), "0");

    layer->apply_parameter_by_name("LabelFontSize", "0");
    EXPECT_EQ(layer->get_all_parameters().get("LabelFontSize"), "5");

    // No words, and a failure leaves the stored value whole.
    layer->apply_parameter_by_name("LabelFontSize", "44");
    layer->apply_parameter_by_name("LabelFontSize", "true");
    layer->apply_parameter_by_name("LabelFontSize", "7pt");
    EXPECT_EQ(layer->LabelFontSize.value, 44);
    EXPECT_EQ(parse_errors.str(),
              parse_error("invalid digit 't' in \"true\"", "LabelFontSize", "true") +
                  parse_error("invalid digit 'p' in \"7pt\"", "LabelFontSize", "7pt"));
}

TEST_F(parameter_text, OldColourFormUsesTheOddDigitRule) {
    layer->apply_parameter_by_name("BoxColors_1", "12345"); // not six digits
    EXPECT_TRUE(layer->BoxColors.empty());
    layer->apply_parameter_by_name("BoxColors_1", "ABCDEF");
    ASSERT_EQ(layer->BoxColors.size(), 1u);
    EXPECT_EQ(layer->BoxColors[0], color::color(0x01, 0x23, 0x45, 255));
    layer->apply_parameter_by_name("BoxColors_1", "B54000");
    EXPECT_EQ(layer->BoxColors[0], color::color(0x15, 0x40, 0x00, 255));
    layer->apply_parameter_by_name("BoxColors_1", "581845");
    EXPECT_EQ(layer->BoxColors[0], color::color(0x58, 0x18, 0x45, 255));
    EXPECT_EQ(layer->BoxColors.size(), 1u);
    layer->apply_parameter_by_name("BoxColors_2", "900C3F"); // no effect
    EXPECT_EQ(layer->BoxColors.size(), 1u);
    EXPECT_EQ(layer->BoxColors[0], color::color(0x58, 0x18, 0x45, 255));
    EXPECT_EQ(parse_errors.str(), "");
}

TEST_F(parameter_text, IdLists) {
    layer->ExcludeBoxes.add(9);
    layer->apply_parameter_by_name("ExcludeBoxes", ""); // the set stays
    EXPECT_EQ(layer->ExcludeBoxes.size(), 1u);
    layer->apply_parameter_by_name("ExcludeBoxes", "65538|ON|");
    EXPECT_EQ(layer->get_all_parameters().get("ExcludeBoxes"), "1|65538|9");

    layer->apply_parameter_by_name("ExcludeBoxes", "3|x|4"); // stops at the bad token
    EXPECT_TRUE(layer->ExcludeBoxes.contains(3));
    EXPECT_FALSE(layer->ExcludeBoxes.contains(4));
    EXPECT_EQ(parse_errors.str(),
              parse_error("invalid digit 'x' in \"x\"", "ExcludeBoxes", "3|x|4"));
}

TEST_F(parameter_text, EveryWrittenKeyReadsBack) {
    layer->default_colors();
    layer->apply_layer_info(
        "PowerVolts:230\nPowerPhases:1\nPowerWatts:450\nPhysW:640.5\nPhysH:360.25\nShowMM:1\n"
        "ShowFT:1\nDrawBoxesNames:1\nDrawPower:1\nDrawSnake:0\nSkipBlankBoxes:0\n"
        "CustomDataPath:1\nDataDiagramType:3\nDrawGrid:1\nDrawCircle:1\nDrawInfoLine:0\n"
        "DrawBoxes:0\nDrawScreenSize:0\nDrawLayerName:0\nGridWidth:4\nSnakeLimit:1000000\n"
        "SnakeMode:2\nBoxesNamesColor:102030\nBoxesNamesReverse:1\nBoxBorderColor:405060\n"
        "CircleColor:708090\nSnakeColor:A0B0C0\nSnakeWidth:3\nUseRandomSnakeColor:1\n"
        "CircleWidth:5\nCornersMode:9\nWidth:96\nHeight:48\nColumns:12\nRows:6\n"
        "ExcludeBoxes:5\nHalfColumns:0101\nBoxesNamesFontSize:22\nLayerNameFontSize:18\n"
        "LabelFontColor:D0E0F0\nLabelFontSize:26\n");
    EXPECT_EQ(parse_errors.str(), "");
    const std::string text = layer->get_layer_info();
    auto copy = screen();
    copy->apply_layer_info(text);
    EXPECT_EQ(copy->get_layer_info(), text);
    EXPECT_EQ(copy->PowerVolts, 230);
    EXPECT_EQ(copy->PhysH, 360.25f);
    EXPECT_EQ(copy->DataDiagramType, 3);
    EXPECT_EQ(copy->SnakeColor, color::color(0xA0, 0xB0, 0xC0, 255));
    EXPECT_EQ(copy->HalfColumns.to_ulong(), 5u);
    EXPECT_EQ(copy->LabelFontSize.value, 26);
}
