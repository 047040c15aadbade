// Small shared pieces: the line rule, paths and colours. Number reading is
// checked with the screen record, file reads and writes through the
// commands and the writers.

#include "core/color.h"
#include "core/file_path.h"
#include "core/line_reader.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;

TEST(LineRule, AllThreeEndingsAndLfCrEndsTwo) {
    EXPECT_EQ(split_lines("a\nb\rc\r\nd"), (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_EQ(split_lines("a\n\rb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(split_lines("a\n"), (std::vector<std::string>{"a"}));
    EXPECT_EQ(split_lines("\n\n"), (std::vector<std::string>{"", ""}));
    EXPECT_TRUE(split_lines("").empty());
    EXPECT_EQ(split_lines("x\r"), (std::vector<std::string>{"x"}));
}

TEST(Paths, FinalExtensionAndJoins) {
    // The commands' extension rules are in one table, with the export commands.
    EXPECT_EQ(file::path("x/A.JPG").final_extension_lower(), "jpg");
    EXPECT_EQ(file::path("x.y\\noext").final_extension_lower(), "");
    EXPECT_EQ(file::path("d") / "f", file::path("d/f"));
    EXPECT_EQ(file::path("d/") / "f", file::path("d/f"));
}

TEST(Colours, WordsAndTexts) {
    const auto c = color::color::from_word(0xFF7F7F3F);
    EXPECT_EQ(c, color::color(0x3F, 0x7F, 0x7F, 0xFF));
    EXPECT_EQ(c.word(), 0xFF7F7F3Fu);
    EXPECT_EQ(color_to_text(c), "0.247059 0.498039 0.498039 1.000000");
    EXPECT_EQ(as_color("0.247059 0.498039 0.498039 1.000000"), c);
    EXPECT_EQ(as_color("0.247059 0.498039 0.498039 1.000000 \t"), c);   // white space may trail
    EXPECT_EQ(as_color("EFDADE"), color::color(0xEF, 0xDA, 0xDE, 255)); // real hex here
    EXPECT_EQ(as_color("#00ff80"), color::color(0, 255, 128, 255));
    for (int v = 0; v < 256; ++v) {
        const color::color x(std::uint8_t(v), std::uint8_t(255 - v), 7, std::uint8_t(v));
        EXPECT_EQ(as_color(color_to_text(x)), x);
    }
    EXPECT_THROW(as_color(""), std::invalid_argument);
    EXPECT_THROW(as_color("1 2 3"), std::invalid_argument);
    EXPECT_THROW(as_color("EFDADG"), std::invalid_argument);
    EXPECT_THROW(as_color("0.1 0.2 0.3 0.4 junk"), std::invalid_argument);
    EXPECT_EQ(_hex_color(color::color(1, 0xab, 0xff)), "#01abff");
}
