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
    // A fill writes the pairs shown back to the layer (below).
    check_edits(p(),
                {
                    {"colour", [&] { first(0)->choose(red); },
                     [](boxes_layer& l) { l.BoxColors[0] = red; }, false},
                    {"tint", [&] { second(0)->choose(red); },
                     [](boxes_layer& l) { l.BoxTintColors[0] = red; }, false},
                    {"Delete", [&] { remove(); },
                     [](boxes_layer& l) { l.BoxColors.clear(), l.BoxTintColors.clear(); }, false},
                });
}

TEST_F(colors, NewPairsTakeTheTableInTurnAndADeletedPairKeepsItsColours) {
    const pointer<boxes_layer> l = layer();
    first(0)->choose(red);
    remove();
    EXPECT_FALSE(p()->control_box()->remove->isEnabled());
    remove(); // disabled: nothing
    add();
    EXPECT_TRUE(p()->control_box()->remove->isEnabled());
    ASSERT_EQ(l->BoxColors.size(), 1u);
    EXPECT_EQ(l->BoxColors[0], red); // the hidden pair kept its colour
    // Each added pair takes the table's colour of its place and its tint;
    // the seventh starts the table again.
    while (p()->colors_in_use() < 7)
        add();
    ASSERT_EQ(l->BoxColors.size(), 7u);
    for (std::size_t i : {2, 5, 6}) {
        EXPECT_EQ(l->BoxColors[i], g_colortablea[i % 6]) << i;
        expect_tint(l->BoxTintColors[i], g_colortablea[i % 6]);
    }
    // A fill shows the layer's pairs; a pair without a tint keeps the one
    // it shows, and the layer takes it.
    const color::color tint = second(1)->get_color();
    l->BoxColors = {red, color::color(1, 2, 3)};
    l->BoxTintColors = {color::color(4, 5, 6)};
    p()->get_settings_from_layer(l);
    EXPECT_EQ(p()->colors_in_use(), 2);
    EXPECT_EQ(first(1)->get_color(), color::color(1, 2, 3));
    EXPECT_FALSE(first(2)->isVisibleTo(p()));
    EXPECT_EQ(l->BoxTintColors, (std::vector<color::color>{color::color(4, 5, 6), tint}));
}
