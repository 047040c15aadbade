// The raster label: reading its record and the lines it draws. Its saved
// text is in the project goldens.

#include "document/global.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;

TEST(RasterLabel, ReadingRules) {
    Global g;
    g.raster_label_lines = {"old"};
    g.load_raster_label_info("Raster Label:0\r\nX:12abc\rY:-4\nLabels:skip\nFontSize:33\n"
                             "Label: a \nLabel:\nLabel:   \nLabel:d\nLabel:e");
    EXPECT_FALSE(g.raster_label_enabled);
    EXPECT_EQ(g.raster_label_x, 12);
    EXPECT_EQ(g.raster_label_y, -4);
    EXPECT_EQ(g.raster_label_font_size, 33);
    EXPECT_EQ(g.raster_label_lines, (string_array{" a ", "", "   ", "d", "e"}));
    string_array lines;
    g.get_raster_label_lines(lines);
    // First four only, trimmed, blanks dropped, then the size line.
    EXPECT_EQ(lines, (string_array{"a", "d", "1920x1080"}));

    // Fields without a line keep their values; the size line shows the
    // raster as drawn, at least one pixel.
    g.load_raster_label_info("Raster Label:1\n");
    EXPECT_TRUE(g.raster_label_enabled);
    EXPECT_EQ(g.raster_label_x, 12);
    g.set_paper_width(0);
    g.raster_label_lines.clear();
    string_array size_line;
    g.get_raster_label_lines(size_line);
    EXPECT_EQ(size_line, (string_array{"1x1080"}));
}
