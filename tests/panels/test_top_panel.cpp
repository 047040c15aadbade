// The top panel: the raster fields with arithmetic, the raster label kept
// at the edges, the switches and the counts.

#include "palette_fixture.h"
#include "panels/settings_raster_label.h"
#include "panels/top_panel.h"

#include <QLabel>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {
struct panel_test : palette_test {
    TopPanel* panel() const { return screen->top_panel(); }
};
} // namespace

TEST_F(panel_test, RasterFieldsTakeArithmeticAndTheLabelPaletteHasTheLastWord) {
    global->raster_label_width = 120;
    global->raster_label_height = 40;
    // The label is put at the new edge, then taken back from the raster
    // label palette's boxes: what they show wins.
    auto* label = screen->settings_raster_label();
    set_text_quietly(label->offset_x, "77");
    set_text_quietly(label->offset_y, "-3");
    type(panel()->raster_width(), "1920*2");
    EXPECT_EQ(global->get_paper_width(), 3840);
    EXPECT_EQ(panel()->raster_width()->text(), "3840");
    EXPECT_EQ(global->raster_label_x, 77);
    type(panel()->raster_height(), "2160/2+0.9");
    EXPECT_EQ(global->get_paper_height(), 1080);
    EXPECT_EQ(global->raster_label_y, -3);
    // A raster of 0 reads as 1.
    type(panel()->raster_width(), "abc");
    EXPECT_EQ(panel()->raster_width()->text(), "0");
    EXPECT_EQ(global->get_paper_width(), 1);
    // A new workspace brings the fields and the counts along.
    global->load_default_layers();
    screen->reload_all(true);
    EXPECT_EQ(panel()->raster_width()->text(), "1920");
    EXPECT_EQ(panel()->counts()->text().simplified(), "Layers Added: 1, Presets Loaded: 9");
}

TEST_F(panel_test, TheSwitches) {
    EXPECT_FALSE(panel()->aspect_box()->isVisible());
    auto picture = global->new_image_layer();
    EXPECT_TRUE(panel()->aspect_box()->isVisible()); // pictures only
    QTest::mouseClick(panel()->aspect_box(), Qt::LeftButton);
    EXPECT_FALSE(picture->getMaintainAspectRatio());
    // Back on the screen layer the box neither shows nor acts.
    screen->setCurrentLayerTo(1, true);
    EXPECT_FALSE(panel()->aspect_box()->isVisible());

    QTest::mouseClick(panel()->black_box(), Qt::LeftButton);
    EXPECT_FALSE(global->black_background);
    QTest::mouseClick(panel()->auto_select_box(), Qt::LeftButton);
    EXPECT_FALSE(global->auto_select);
}
