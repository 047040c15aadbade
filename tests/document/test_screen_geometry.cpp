// Cabinet geometry of a screen layer: half columns and rows, hit tests,
// exclusions and colours.

#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct screen : screen_test {
    // The rectangle of a cabinet as the walk gives it.
    cabinet_rect at(std::uint32_t column, std::uint32_t row) {
        return cabinet_rects(*layer)[box_id(column, row)];
    }
    std::vector<std::uint32_t> excluded() {
        return {layer->ExcludeBoxes.begin(), layer->ExcludeBoxes.end()};
    }
};

} // namespace

TEST_F(screen, HalfColumnsAndRows) {
    // Bit 0, the half first column: 0..64, 64..192, and the last ends at 960.
    layer->HalfColumns.set(0);
    EXPECT_EQ(at(0, 0), cabinet_rect(0, 0, 64, 128));
    EXPECT_EQ(at(1, 0), cabinet_rect(64, 0, 192, 128));
    EXPECT_EQ(std::get<2>(at(7, 0)), 960.0f);
    EXPECT_EQ(layer->get_full_width(), 960);
    EXPECT_FLOAT_EQ(layer->get_full_columns(), 7.5f);
    // Both bits of the pair: the cabinets end at 896, the width stays 960.
    layer->HalfColumns.set(1);
    EXPECT_EQ(std::get<2>(at(7, 0)), 896.0f);
    EXPECT_EQ(layer->get_full_width(), 960);
    // Bit 3, the half last row.
    layer->HalfColumns = std::bitset<4>(0b1000);
    EXPECT_EQ(std::get<3>(at(7, 4)), 576.0f);
    EXPECT_EQ(layer->get_full_height(), 576);
    // An odd width: 7.5 columns of 129 round up to 968, the half is 64.5 wide.
    layer->Width = 129;
    layer->HalfColumns = std::bitset<4>(0b0001);
    EXPECT_EQ(layer->get_full_width(), 968);
    EXPECT_EQ(at(0, 0), cabinet_rect(0, 0, 64.5f, 128));
}

TEST_F(screen, HitTestIsStrictAndIncludesExcluded) {
    layer->Columns = 3;
    layer->Rows = 2;
    layer->Width = 10;
    layer->Height = 10;
    layer->ExcludeBoxes.add(box_id(1, 0));
    EXPECT_EQ(layer->hit_test(5, 5, 15, 6),
              (std::vector<std::uint32_t>{box_id(0, 0), box_id(1, 0)}));
    EXPECT_EQ(layer->hit_test(10, 10, 10, 10), std::vector<std::uint32_t>{}); // empty rectangle
    EXPECT_EQ(layer->hit_test(10, 10, 11, 11), (std::vector<std::uint32_t>{box_id(1, 1)}));
}

TEST_F(screen, ExclusionToggleAndEdges) {
    EXPECT_FALSE(layer->trigger_for_exclude_boxes(128.0f, 10.0f)); // on a shared edge
    EXPECT_TRUE(layer->ExcludeBoxes.empty());
    EXPECT_FALSE(layer->trigger_for_exclude_boxes(130.0f, 10.0f)); // now excluded
    EXPECT_EQ(excluded(), (std::vector<std::uint32_t>{box_id(1, 0)}));
    EXPECT_TRUE(layer->trigger_for_exclude_boxes(130.0f, 10.0f)); // back in
    EXPECT_TRUE(layer->ExcludeBoxes.empty());
    EXPECT_FALSE(layer->trigger_for_exclude_boxes(-5.0f, 10.0f));
}

TEST_F(screen, HalfPairKeepsOnePerPair) {
    layer->set_half_pair(0, 1, true);
    layer->set_half_pair(1, 0, true);
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 0b0010u);
    layer->set_half_pair(1, 0, false);
    EXPECT_EQ(layer->HalfColumns.to_ulong(), 0u);
    EXPECT_THROW(layer->set_half_pair(0, 4, true), std::out_of_range);
    EXPECT_THROW(layer->set_half_pair(4, 0, true), std::out_of_range);
}

TEST_F(screen, BoxColorWithIdUsesTheOldDigitRule) {
    layer->set_box_color_with_id(0, "ABC");
    EXPECT_TRUE(layer->BoxColors.empty());
    layer->set_box_color_with_id(3, "581845");
    ASSERT_EQ(layer->BoxColors.size(), 4u);
    ASSERT_EQ(layer->BoxTintColors.size(), 4u);
    EXPECT_EQ(layer->BoxColors[0], color::opaque_white);
    EXPECT_EQ(layer->BoxTintColors[2], color::opaque_white);
    EXPECT_EQ(layer->BoxColors[3], color::color(0x58, 0x18, 0x45, 255));
    EXPECT_EQ(layer->BoxTintColors[3], color::color(163, 127, 152, 255)); // 45% towards white
    layer->set_box_color_with_id(0, "B54000");
    EXPECT_EQ(layer->BoxColors[0], color::color(0x15, 0x40, 0x00, 255));
    layer->set_box_color_with_id(0, "FF0000");
    EXPECT_EQ(layer->BoxColors[0].red, 0x55);
    EXPECT_THROW(layer->set_box_color_with_id(0, "GG0000"), std::exception);
}
