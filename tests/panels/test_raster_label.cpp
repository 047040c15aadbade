// The raster label palette, which works on the workspace and marks no
// layer.

#include "palette_fixture.h"
#include "panels/settings_raster_label.h"

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {
struct raster_label : palette_test {
    SettingsRasterLabel* p() const { return screen->settings_raster_label(); }
};
} // namespace

TEST_F(raster_label, FillsFromTheWorkspaceAndEachControlWritesItBackMarkingNoLayer) {
    SettingsRasterLabel* s = p();
    EXPECT_EQ(s->title(), "Raster Label"); // not "Labels", which is the other palette
    global->raster_label_enabled = false;
    global->raster_label_x = -12; // only a file or a drag sets a negative place
    global->raster_label_lines = {"a", "b"};
    s->get_settings_from_layer(nullptr);
    EXPECT_EQ(s->offset_x->text(), "-12");
    EXPECT_EQ(s->lines[1]->text(), "b");
    // The other way: the boxes into the workspace, the negative place kept.
    global->raster_label_x = 0;
    s->get_settings_from_raster();
    EXPECT_EQ(global->raster_label_x, -12);

    const pointer<boxes_layer> l = layer();
    const auto layer_before = saved(*l);
    l->changed = false;
    // Each control writes its field, and the next paint composes anew.
    const std::vector<std::function<void()>> edits = {
        [&] { click(s->enabled); },       [&] { type(s->offset_x, "1920/8"); },
        [&] { type(s->offset_y, "-5"); }, [&] { type(s->font_size, 33); },
        [&] { type(s->lines[1], ""); },   [&] { type(s->lines[2], "c"); },
    };
    for (const auto& edit : edits) {
        global->changed = 0;
        edit();
        EXPECT_EQ(global->changed.load(), 1);
    }
    EXPECT_TRUE(global->raster_label_enabled);
    EXPECT_EQ(global->raster_label_x, 240);
    EXPECT_EQ(s->offset_x->text(), "240"); // arithmetic, shown as its result
    EXPECT_EQ(global->raster_label_y, 0);  // a negative place typed is 0
    EXPECT_EQ(s->offset_y->text(), "0");
    EXPECT_EQ(global->raster_label_font_size, 33);
    // An empty second line with a third one filled: the second is kept empty.
    EXPECT_EQ(global->raster_label_lines, (string_array{"a", "", "c", ""}));
    EXPECT_FALSE(l->changed);
    EXPECT_EQ(saved(*l), layer_before);
}
