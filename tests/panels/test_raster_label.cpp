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
// The raster label's fields of the workspace.
struct fields {
    bool enabled;
    int x, y, size;
    string_array lines;
    bool operator==(const fields&) const = default;
};
fields of(const Global& g) {
    return {g.raster_label_enabled, g.raster_label_x, g.raster_label_y, g.raster_label_font_size,
            g.raster_label_lines};
}
} // namespace

TEST_F(raster_label, EachControlWritesItsWorkspaceFieldAndMarksNoLayer) {
    SettingsRasterLabel* s = p();
    struct row {
        const char* name;
        std::function<void()> act;
        std::function<void(fields&)> expect;
    };
    const std::vector<row> rows = {
        {"Raster Label", [&] { click(s->enabled); }, [](fields& f) { f.enabled = !f.enabled; }},
        {"Offset X", [&] { type(s->offset_x, "1920/8"); }, [](fields& f) { f.x = 240; }},
        {"Offset Y", [&] { type(s->offset_y, "-5"); }, [](fields& f) { f.y = 0; }},
        {"Font Size", [&] { type(s->font_size, 33); }, [](fields& f) { f.size = 33; }},
        {"Line 1:", [&] { type(s->lines[0], "one"); },
         [](fields& f) {
             f.lines.resize(std::max<std::size_t>(f.lines.size(), 1)), f.lines[0] = "one";
         }},
        {"Line 4:", [&] { type(s->lines[3], "four"); },
         [](fields& f) { f.lines.resize(4), f.lines[3] = "four"; }},
    };
    const pointer<boxes_layer> l = layer();
    for (const row& r : rows) {
        SCOPED_TRACE(r.name);
        screen->reload_all(true);
        fields expected = of(*global);
        r.expect(expected);
        const auto layer_before = saved(*l);
        l->changed = false;
        global->changed = 0;
        r.act();
        EXPECT_TRUE(of(*global) == expected);
        EXPECT_EQ(global->changed.load(), 1); // the next paint composes anew
        EXPECT_FALSE(l->changed);
        EXPECT_EQ(saved(*l), layer_before);
    }
    EXPECT_EQ(s->offset_x->text(), "240");
    EXPECT_EQ(s->offset_y->text(), "0");
}

TEST_F(raster_label, FillsFromTheWorkspaceAndCopiesBack) {
    EXPECT_EQ(p()->title(), "Raster Label"); // not "Labels", which is the other palette
    global->raster_label_x = -12; // only a file or a drag sets a negative place
    global->raster_label_font_size = 18;
    global->raster_label_lines = {"a", "b"};
    SettingsRasterLabel* s = p();
    s->get_settings_from_layer(nullptr);
    EXPECT_EQ(s->offset_x->text(), "-12");
    EXPECT_EQ(s->font_size->value(), 18);
    EXPECT_EQ(s->lines[1]->text(), "b");
    // An empty second line with a third one filled: the second is kept empty.
    type(s->lines[1], "");
    type(s->lines[2], "c");
    EXPECT_EQ(global->raster_label_lines, (string_array{"a", "", "c"}));
    // The other way: the boxes into the workspace, the negative kept.
    global->raster_label_x = 0;
    s->get_settings_from_raster();
    EXPECT_EQ(global->raster_label_x, -12);
    EXPECT_EQ(global->raster_label_lines, (string_array{"a", "", "c", ""}));
}
