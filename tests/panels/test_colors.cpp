// The "Colors" palette: colour pairs that only grow, written back to the
// layer, with the first colours of new pairs from the table and their tints.

#include "palette_fixture.h"
#include "panels/settings_boxes_colors.h"

#include <QPushButton>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {
struct colors : palette_test {
    SettingsBoxesColors* p() const { return screen->settings_boxes_colors(); }
    void add() { QTest::mouseClick(p()->control_box()->add, Qt::LeftButton); }
    void remove() { QTest::mouseClick(p()->control_box()->remove, Qt::LeftButton); }
    ColorPicker* first(int i) { return p()->color_grid()->pairs.at(std::size_t(i)).first; }
    ColorPicker* second(int i) { return p()->color_grid()->pairs.at(std::size_t(i)).second; }
};
const color::color red(200, 10, 20, 255);
// 45 per cent of the way to white, within a step of rounding.
void expect_tint(const color::color& tint, const color::color& of) {
    const auto near = [](int got, int byte) {
        const double x = byte / 255.0;
        EXPECT_NEAR(got, 255.0 * (x + (1 - x) * 0.45), 1.0);
    };
    near(tint.red, of.red), near(tint.green, of.green), near(tint.blue, of.blue);
    EXPECT_EQ(tint.alpha, of.alpha);
}
} // namespace

TEST_F(colors, EachControlWritesItsFieldAndNothingElse) {
    check_edits({
        {"colour", [&] { first(0)->choose(red); }, [](boxes_layer& l) { l.BoxColors[0] = red; }},
        {"tint", [&] { second(0)->choose(red); }, [](boxes_layer& l) { l.BoxTintColors[0] = red; }},
        {"Delete", [&] { remove(); },
         [](boxes_layer& l) { l.BoxColors.clear(), l.BoxTintColors.clear(); }},
    });
}

TEST_F(colors, FillsFromTheLayerAndGrowsWithTheTable) {
    const pointer<boxes_layer> l = layer();
    l->BoxColors = {red, color::color(1, 2, 3)};
    l->BoxTintColors = {color::color(4, 5, 6), color::color(7, 8, 9)};
    p()->get_settings_from_layer(l);
    EXPECT_EQ(p()->colors_in_use(), 2);
    EXPECT_EQ(first(1)->get_color(), color::color(1, 2, 3));
    EXPECT_EQ(second(0)->get_color(), color::color(4, 5, 6));
    EXPECT_TRUE(first(1)->isVisibleTo(p()));
    // "Add": the third pair takes the table's third colour and its tint,
    // and the layer has it at once.
    add();
    ASSERT_EQ(l->BoxColors.size(), 3u);
    EXPECT_EQ(l->BoxColors[2], g_colortablea[2]);
    expect_tint(l->BoxTintColors[2], g_colortablea[2]);
    EXPECT_TRUE(second(2)->isVisibleTo(p()));
    // A tint changed leaves the colours alone.
    const auto colours = l->BoxColors;
    second(1)->choose(red);
    EXPECT_EQ(l->BoxColors, colours);
    EXPECT_EQ(l->BoxTintColors[1], red);
}

TEST_F(colors, DeleteDownToNoneAndAddBackKeepsThePairsColours) {
    const pointer<boxes_layer> l = layer();
    first(0)->choose(red);
    remove();
    EXPECT_TRUE(l->BoxColors.empty());
    EXPECT_TRUE(l->BoxTintColors.empty());
    EXPECT_FALSE(p()->control_box()->remove->isEnabled());
    EXPECT_FALSE(first(0)->isVisibleTo(p()));
    remove(); // disabled: nothing
    EXPECT_EQ(p()->colors_in_use(), 0);
    add();
    EXPECT_TRUE(p()->control_box()->remove->isEnabled());
    ASSERT_EQ(l->BoxColors.size(), 1u);
    EXPECT_EQ(l->BoxColors[0], red); // the hidden pair kept its colour
}

TEST_F(colors, TheSeventhPairStartsTheTableAgain) {
    while (p()->colors_in_use() < 7)
        add();
    const pointer<boxes_layer> l = layer();
    ASSERT_EQ(l->BoxColors.size(), 7u);
    EXPECT_EQ(l->BoxColors[6], g_colortablea[0]);
    EXPECT_EQ(l->BoxColors[5], g_colortablea[5]);
    expect_tint(l->BoxTintColors[6], g_colortablea[0]);
    EXPECT_EQ(g_colortablea[1], color::color(0xD7, 0x01, 0x01, 0xFF));
}
