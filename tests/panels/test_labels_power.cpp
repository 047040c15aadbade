// The "Labels" and "Power" palettes: each control's field and the fill from
// a layer, the custom voltage row and the volts a fill shows.

#include "palette_fixture.h"
#include "panels/settings_labels.h"
#include "panels/settings_power.h"

#include <QComboBox>
#include <QLabel>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {
struct labels : palette_test {
    SettingsLabels* p() const { return screen->settings_labels(); }
};
struct power : palette_test {
    SettingsPower* p() const { return screen->settings_power(); }
};
const color::color red(200, 10, 20, 255);
} // namespace

TEST_F(labels, EachControlWritesItsFieldAndNothingElse) {
    SettingsLabels* s = p();
    std::vector<edit> edits;
    for (int i = 0; i < 4; ++i)
        edits.push_back({"corner", [s, i] { click(s->corners[i]); },
                         [i](boxes_layer& l) { l.CornersMode ^= 1 << i; }});
    const std::vector<edit> rest = {
        {"Layer Name", [&] { click(s->layer_name); },
         [](boxes_layer& l) { l.DrawLayerName = !l.DrawLayerName; }},
        {"Layer Size (px)", [&] { click(s->size_px); },
         [](boxes_layer& l) { l.DrawScreenSize = !l.DrawScreenSize; }},
        {"Layer Size (m)", [&] { click(s->size_m); }, [](boxes_layer& l) { l.ShowMM = !l.ShowMM; }},
        {"Layer Size (ft)", [&] { click(s->size_ft); },
         [](boxes_layer& l) { l.ShowFT = !l.ShowFT; }},
        {"Power", [&] { space(s->power); }, [](boxes_layer& l) { l.DrawPower = !l.DrawPower; }},
        {"Info", [&] { click(s->info); }, [](boxes_layer& l) { l.DrawInfoLine = !l.DrawInfoLine; }},
        {"Labels Color", [&] { s->labels_color->choose(red); },
         [](boxes_layer& l) { l.LabelFontColor = red; }},
        {"Labels Fontsize", [&] { type(s->labels_font_size, 44); },
         [](boxes_layer& l) { l.LabelFontSize = BoxesLayerDescription::FontSize(44); }},
        {"Name Fontsize", [&] { type(s->name_font_size, 7); },
         [](boxes_layer& l) { l.LayerNameFontSize = BoxesLayerDescription::FontSize(7); }},
        {"Layer Name:", [&] { type(s->name, "Wall A"); },
         [](boxes_layer& l) { l.set_name("Wall A"); }},
    };
    edits.insert(edits.end(), rest.begin(), rest.end());
    check_edits(s, edits);
}

TEST_F(power, EachControlWritesItsFieldAndNothingElse) {
    SettingsPower* s = p();
    // A fill shows the volts as one of the list's values (below), not as typed.
    check_edits(
        s,
        {
            {"Volts 220V", [&] { s->volts->setCurrentIndex(2); },
             [](boxes_layer& l) { l.PowerVolts = 220; }, false},
            {"Volts Custom", [&] { s->volts->setCurrentIndex(5); },
             [](boxes_layer& l) { l.PowerVolts = 120; }, false},
            {"(Custom)", [&] { type(s->custom_volts, "150"); },
             [](boxes_layer& l) { l.PowerVolts = 150; }, false},
            {"Phases", [&] { s->phases->setCurrentIndex(0); },
             [](boxes_layer& l) { l.PowerPhases = 1; }},
            {"Watts", [&] { type(s->watts, 300); }, [](boxes_layer& l) { l.PowerWatts = 300; }},
            {"Circuit A", [&] { type(s->circuit_amps, 32); },
             [](boxes_layer& l) { l.CircuitAmps = 32; }},
            {"Derate", [&] { type(s->derate, 75); }, [](boxes_layer& l) { l.CircuitDerate = 75; }},
            {"Power pattern", [&] { click(s->pattern->boxes[6]); },
             [](boxes_layer& l) { l.PowerPattern = 6; }},
            {"Power Path", [&] { click(s->power_path); },
             [](boxes_layer& l) { l.DrawPowerPath = 1; }},
            {"Cabinet Weight", [&] { type(s->cabinet_weight, "7,5"); },
             [](boxes_layer& l) { l.CabinetWeight = 7.5; }},
            {"Spares", [&] { type(s->spares, 10); }, [](boxes_layer& l) { l.SparePercent = 10; }},
        });
}

TEST_F(power, CustomVoltsAtOnceAndAFillShowsAnyVoltageButOneHundredTenAs208) {
    SettingsPower* s = p();
    s->volts->setCurrentIndex(5);
    EXPECT_EQ(s->custom_volts->text(), "120"); // before anything is typed
    EXPECT_TRUE(s->custom_volts->isVisibleTo(s));
    // A standard value typed leaves custom mode.
    type(s->custom_volts, "240");
    EXPECT_EQ(s->volts->currentText(), "240V");
    EXPECT_FALSE(s->custom_volts->isVisibleTo(s));
    EXPECT_FALSE(s->custom_caption->isVisibleTo(s));
    // The total is worked out with the true voltage and sqrt(2).
    layer()->PowerVolts = 230, layer()->PowerPhases = 2;
    s->get_settings_from_layer(layer());
    EXPECT_EQ(s->volts->currentText(), "208V");
    const QString amps = QString::number(double(layer()->calculate_power()), 'f', 2);
    EXPECT_EQ(s->total->text(), "Total Power " + amps + " A");
    EXPECT_NE(amps, "0.00");
    layer()->PowerVolts = 110;
    s->get_settings_from_layer(layer());
    EXPECT_EQ(s->volts->currentText(), "110V");
}

// A hidden palette works out no plan for the edits it does not show; it
// catches up when it shows.
TEST_F(power, HiddenPaletteCatchesUpWhenShown) {
    SettingsPower* s = p();
    s->show();
    QCoreApplication::processEvents();
    const QString before = s->materials->text();
    s->hide();
    layer()->Columns = 2;
    screen->post_canvas_redraw();
    QCoreApplication::processEvents();
    EXPECT_EQ(s->materials->text(), before);
    s->show();
    EXPECT_EQ(s->materials->text().left(11), "10 cabinets");
}
