// The screen layer's key:value text: every reading rule, including the
// catalogue's older forms, seen through what the writer gives back, and a
// record of every key read and written byte for byte.

#include "core/diagnostics.h"
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
};

// A value read, and what the writer gives for the key after it; read in
// order on one layer, so a failed read shows the value kept from before.
struct read_case {
    const char *key, *value, *written;
    const char* failure = ""; // the parse error reported, if any
    const char* shown = "";   // the key written, when not the one read
};

const read_case reads[] = {
    // Integers take words in any case, for every integer key.
    {"DrawSnake", "true", "1"},
    {"DrawSnake", "false", "0"},
    {"DrawSnake", "TRUE", "1"},
    {"DrawSnake", "False", "0"},
    {"DrawSnake", "On", "1"},
    {"DrawSnake", "FALSE", "0"},
    {"DrawSnake", "yes", "1"},
    {"DrawSnake", "off", "0"},
    {"DrawSnake", "1", "1"},
    {"DrawSnake", "No", "0"},
    {"Width", "ON", "1"},
    // A failure keeps the digits read, without the sign; no clamping, no
    // trimming, and nothing reads as 0.
    {"Columns", "5x", "5", "invalid digit 'x' in \"5x\""},
    {"Columns", "x5", "0", "invalid digit 'x' in \"x5\""},
    {"Rows", "-3", "-3"},
    {"Rows", "-12z", "12", "invalid digit 'z' in \"-12z\""},
    {"GridWidth", "", "0"},
    {"SnakeLimit", " 7", "0", "invalid digit ' ' in \" 7\""},
    {"SnakeLimit", "2147483647", "2147483647"},
    {"SnakeLimit", "12345678901", "1234567890"}, // ten digits at most, the rest unread
    {"PhysW", "0.1", "0.100000"},
    {"PhysH", "-2.5", "-2.500000"},
    // Half columns: a bit string, the first four count, checked to the end.
    {"HalfColumns", "0010", "0010"},
    {"HalfColumns", "2", "0010", "bitset string ctor has invalid argument"},
    {"HalfColumns", "1", "0001"},
    {"HalfColumns", "110000", "1100"},
    {"HalfColumns", "1111x", "1100", "bitset string ctor has invalid argument"},
    {"HalfColumns", "", "0000"},
    // Font sizes are written normalised; no words, and a failure keeps the size.
    {"BoxesNamesFontSize", "3", "5"},
    {"LayerNameFontSize", "3", "5"},
    {"LayerNameFontSize", "0", "0"},
    {"LabelFontSize", "0", "5"},
    {"LabelFontSize", "44", "44"},
    {"LabelFontSize", "true", "44", "invalid digit 't' in \"true\""},
    {"LabelFontSize", "7pt", "44", "invalid digit 'p' in \"7pt\""},
    // Id lists: newest first, signed; an empty value keeps the set, a bad
    // token ends the list.
    {"ExcludeBoxes", "9", "9"},
    {"ExcludeBoxes", "", "9"},
    {"ExcludeBoxes", "65538|ON|", "1|65538|9"},
    {"ExcludeBoxes", "3|x|4", "3|1|65538|9", "invalid digit 'x' in \"x\""},
    {"ExcludeBoxes", "4294967295", "-1|3|1|65538|9"},
    // The older six-digit colour form of the catalogue, whose digits A to F
    // count from 0: ABCDEF is 012345. It sets the first colour only, and
    // only from exactly six digits. Colours as text add to the list.
    {"BoxColors_1", "12345", "", "", "BoxColors"},
    {"BoxColors_1", "ABCDEF", "0.003922 0.137255 0.270588 1.000000", "", "BoxColors"},
    {"BoxColors_1", "B54000", "0.082353 0.250980 0.000000 1.000000", "", "BoxColors"},
    {"BoxColors_2", "900C3F", "0.082353 0.250980 0.000000 1.000000", "", "BoxColors"},
    // Keys beyond the design's are written only away from their defaults.
    {"CircuitAmps", "20", "20"},
    {"CircuitAmps", "16", ""},
    {"PowerPattern", "-1", ""},
    {"Processor", "Generic 16 x 1G", "Generic 16 x 1G"},
    {"Processor", "", ""},
    {"BitDepth", "8", ""},
    {"BoxColors", "0 0 1 0",
     "0.082353 0.250980 0.000000 1.000000|0.000000 0.000000 1.000000 0.000000"},
};

} // namespace

TEST_F(parameter_text, ReadingRules) {
    for (const read_case& c : reads) {
        parse_errors.str("");
        layer->apply_parameter_by_name(c.key, c.value);
        const std::string shown = *c.shown ? c.shown : c.key;
        EXPECT_EQ(layer->get_all_parameters().get(shown), c.written) << c.key << ":" << c.value;
        const std::string report =
            std::string("Parse error: ") + c.failure + "\n" + c.key + " : " + c.value + "\n";
        EXPECT_EQ(parse_errors.str(), *c.failure ? report : "") << c.key << ":" << c.value;
    }
}

// Every key, read from the text the writer gives and written back the same.
TEST_F(parameter_text, EveryKeyReadsAndWritesBack) {
    const std::string record = golden("screen_record.txt");
    layer->apply_layer_info(record);
    EXPECT_EQ(parse_errors.str(), "");
    EXPECT_EQ(layer->get_layer_info(), record);
}
