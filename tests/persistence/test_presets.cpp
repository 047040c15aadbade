// The built-in catalogue, the preset list and its automatic save file, and
// a new workspace with and without a saved logo.

#include "core/data_folder.h"
#include "persistence/presets.h"
#include "support/layer_texts.h"
#include "support/test_support.h"
#include "support/workspace_builders.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct catalogue_row {
    const char* name;
    std::size_t bytes;
    int width, height, columns, rows;
    const char* color1;
    const char* color2;
    int label_font, size_font;
};

const catalogue_row catalogue[29] = {
    {"P 2.6mm", 598, 192, 192, 5, 3, "581845", "900C3F", 40, 0},
    {"P 2.9mm", 598, 168, 168, 5, 3, "B54000", "00DF00", 40, 0},
    {"P 3.9mm", 598, 128, 128, 5, 3, "2E4053", "2980B9", 40, 0},
    {"P 4.8mm", 598, 104, 104, 5, 3, "A1A100", "DFDF00", 40, 0},
    {"P 5.9mm", 596, 84, 84, 5, 3, "E74C3C", "E74C3C", 40, 0},
    {"P 7.9mm", 596, 64, 64, 5, 3, "BA4A00", "00DF00", 40, 1},
    {"P 8.9mm", 596, 56, 56, 5, 3, "003700", "00DF00", 10, 1},
    {"P 10 mm", 596, 48, 48, 5, 3, "9C3297", "003700", 30, 0},
    {"P 6.25", 595, 80, 80, 5, 3, "00B601", "DF4A00", 10, 1},
    {"P 7.8", 594, 64, 64, 5, 3, "003700", "00DF00", 10, 1},
    {"P 8.9", 594, 56, 56, 5, 3, "DFDF00", "B54000", 10, 1},
    {"P 10.4", 595, 48, 48, 5, 3, "DF3300", "00B601", 10, 1},
    {"P 15.6", 595, 32, 32, 5, 3, "B54000", "00DF00", 10, 1},
    {"CIRCLE", 601, 540, 960, 1, 1, "003700", "DF3300", 10, 1},
    {"CROSS", 596, 540, 960, 2, 2, "003700", "DF3300", 10, 1},
    {"X3C", 594, 128, 128, 5, 3, "DF4A00", "DF3300", 10, 1},
    {"X4C", 594, 104, 104, 5, 3, "B54000", "00DF00", 10, 1},
    {"X5C", 592, 84, 84, 5, 3, "003700", "DF3300", 10, 1},
    {"X7C", 592, 64, 64, 5, 3, "00DF00", "DFDF00", 10, 1},
    {"X7HD", 595, 128, 128, 5, 3, "00B601", "DF3300", 10, 1},
    {"X7B", 592, 80, 80, 5, 3, "A1A100", "003700", 10, 1},
    {"X7W", 592, 80, 80, 5, 3, "00DF01", "00DF00", 10, 1},
    {"HDO X7", 596, 80, 160, 5, 6, "DFDF00", "003700", 10, 1},
    {"X12", 592, 48, 48, 5, 3, "00B601", "DF4A00", 10, 1},
    {"HDO X12", 596, 48, 96, 5, 6, "003700", "00DF00", 10, 1},
    {"Lighthouse 12", 602, 48, 48, 5, 3, "DFDF00", "B54000", 10, 1},
    {"X15", 592, 32, 64, 5, 6, "DF4A00", "00B601", 10, 1},
    {"Linx-9", 596, 32, 128, 5, 6, "B54000", "00DF00", 10, 1},
    {"AOTO M10", 597, 48, 48, 5, 3, "C6C601", "DFDF00", 10, 1},
};

// One record body as the catalogue has it: 38 lines, the same in every
// record but for the values of the row.
std::string catalogue_body(const catalogue_row& r) {
    const bool circle = std::string(r.name) == "CIRCLE";
    auto n = [](int v) { return std::to_string(v); };
    return "undefined:boxes\nSnakeMode:1\nDrawSnake:false\nPowerVolts:110\nPowerPhases:1\n"
           "PowerWatts:100\nDrawSnake:true\nDrawBoxes:true\nDrawGrid:false\nDrawCircle:false\n"
           "DrawCorners:false\nDrawBoxesNames:false\nBoxesNamesReverse:false\n"
           "DrawScreenSize:false\nHeight:" +
           n(r.height) + "\nWidth:" + n(r.width) + "\nColumns:" + n(r.columns) +
           "\nRows:" + n(r.rows) + "\noffsetX:" + (circle ? "270" : "0") +
           "\noffsetY:" + (circle ? "480" : "0") +
           "\nGridWidth:1\nCircleWidth:1\nLabelFontSize:" + n(r.label_font) +
           "\nScreenSizeFontSize:" + n(r.size_font) + "\nundefined:1\nName:" + r.name +
           "\nundefined:200\nBoxColors_1:" + r.color1 + "\nBoxColors_2:" + r.color2 +
           "\nBoxBorderColor:EFDADE\nCircleColor:FFFFFF\nLabelsColor:AAFF00\n"
           "ScreenSizeColor:0000FF\nBoxesNamesColor:DEAABF\nundefined:1000\nundefined:true\n"
           "undefined:2,3\nundefined:true\n";
}

// The odd digit rule of the old colour key: a letter counts its distance from 'a'.
color::color old_rule_color(const std::string& hex) {
    auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'A'; };
    auto pair = [&](int i) { return std::uint8_t(digit(hex[i]) * 16 + digit(hex[i + 1])); };
    return color::color(pair(0), pair(2), pair(4), 255);
}

struct presets : ::testing::Test {
    recording_host host;
    Global global{&host};
    capture_diagnostics out; // the missing logo file is reported on each start

    void SetUp() override { clear_data_folder(); }

    std::string autosave() const { return global.auto_save_preset_file_name().string(); }
    bool autosave_exists() const { return QFile::exists(QString::fromStdString(autosave())); }
    std::vector<std::string> preset_names(const Global& g) {
        std::vector<std::string> names;
        for (const auto& p : const_cast<Global&>(g).get_presets())
            names.push_back(p->get_name());
        return names;
    }
    void start(Global& g) {
        g.load_default_presets();
        g.load_default_layers();
    }
};

} // namespace

TEST_F(presets, CatalogueTextIsExactAndFramesExactly) {
    const std::string text = getPresetsSource();
    std::string expected = "TESSERINE_LED_PRESETS v2 8\n";
    for (const auto& row : catalogue) {
        const std::string body = catalogue_body(row);
        EXPECT_EQ(body.size(), row.bytes) << row.name; // the table's own lengths
        expected += "1 " + std::to_string(body.size()) + "\n" + body;
    }
    EXPECT_EQ(text, expected);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1132);

    // Read with a count of 28: 29 passes read all 29 records, none twice.
    global.load_presets_from_string("TESSERINE_LED_PRESETS v2 28" + text.substr(text.find('\n')));
    EXPECT_EQ(out.text(), "");
    ASSERT_EQ(global.get_presets_count(), 29);
    for (std::size_t i = 0; i < 29; ++i) {
        const catalogue_row& row = catalogue[i];
        auto p = std::dynamic_pointer_cast<boxes_layer>(global.get_presets()[i]);
        ASSERT_TRUE(p) << i;
        EXPECT_EQ(p->get_name(), row.name);
        EXPECT_EQ(std::tie(p->Width, p->Height, p->Columns, p->Rows, p->LabelFontSize.value),
                  std::tie(row.width, row.height, row.columns, row.rows, row.label_font))
            << row.name;
        // "offsetX" is not the key, and BoxColors_2 is passed over.
        EXPECT_EQ(p->get_offset_x() + p->get_offset_y(), 0) << row.name;
        ASSERT_EQ(p->BoxColors.size(), 1u) << row.name;
        EXPECT_EQ(p->BoxColors[0], old_rule_color(row.color1)) << row.name;
    }
}

TEST_F(presets, FirstStartGivesTheNineLoadedPresets) {
    global.load_default_presets();
    EXPECT_EQ(preset_names(global),
              (std::vector<std::string>{"P 2.6mm", "P 2.9mm", "P 3.9mm", "P 4.8mm", "P 5.9mm",
                                        "P 7.9mm", "P 8.9mm", "P 10 mm", "P 6.25"}));
    EXPECT_EQ(host.reloads, 1);
    EXPECT_FALSE(autosave_exists()); // not saved until the list changes
    for (std::size_t i = 0; i < 9; ++i) {
        auto p = std::static_pointer_cast<boxes_layer>(global.get_presets()[i]);
        // The defaults come after the text: grid and circle on although it says false.
        EXPECT_EQ(std::tie(p->DrawGrid, p->GridWidth, p->DrawCircle, p->CircleWidth, p->DrawSnake,
                           p->DrawBoxesNames, p->DrawInfoLine, p->SnakeMode, p->PowerPhases,
                           p->PowerWatts, p->Columns, p->Rows, p->Width),
                  std::make_tuple(1, 2, 1, 2, 0, 0, 1, 1, 1, 100, 5, 3, catalogue[i].width))
            << catalogue[i].name;
        EXPECT_EQ(p->BoxBorderColor, color::color(0xEF, 0xDA, 0xDE, 255));
        EXPECT_EQ(p->BoxesNamesColor, color::color(0xDE, 0xAA, 0xBF, 255));
    }
    auto second = std::static_pointer_cast<boxes_layer>(global.get_presets()[1]);
    EXPECT_EQ(second->BoxColors[0], color::color(0x15, 0x40, 0x00, 255)); // "B54000"

    global.load_default_layers();
    EXPECT_EQ(layer_names(global), std::vector<std::string>{"Screen1"});
    EXPECT_EQ(global.get_paper_width(), 1920);
    EXPECT_EQ(global.get_paper_height(), 1080);
    EXPECT_EQ(global.get_current_layer_id(), 0);
    EXPECT_EQ(out.text(), "create_layers_from_string::header check err\n");
}

TEST_F(presets, NewProjectBytesForTheDefaultWorkspace) {
    // What "tesserine new -o FILE" writes with an empty data folder.
    Global fresh;
    fresh.load_default_layers();
    QTemporaryDir dir;
    const std::string file = dir.path().toStdString() + "/new.tsrx";
    ASSERT_TRUE(fresh.save_project_to_file(file));
    const std::string expected =
        "TESSERINE_LED_PROJECT v2 1 22\nWidth:1920\nHeight:1080\n"
        "1 925\nOffsetX:0\nOffsetY:0\nName:Screen1\nHidden:0\nCustomPath:\n" +
        new_screen_parameters() + "100 41\nRaster Label:1\nX:1920\nY:1080\nFontSize:20\n";
    EXPECT_EQ(read_file(file), expected);
}

TEST_F(presets, CloningAPresetTwiceNumbersTheNames) {
    start(global);
    global.clone_preset_to_layers(0);
    global.clone_preset_to_layers(0);
    EXPECT_EQ(layer_names(global), (std::vector<std::string>{"Screen1", "P 2.6mm1", "P 2.6mm2"}));
    EXPECT_EQ(global.get_current_layer_id(), 2); // on top, selected
    EXPECT_EQ(global.get_layer(2)->get_project(), global.current_project_pointer());
    EXPECT_NE(global.get_layer(2), global.get_presets()[0]); // a copy
    EXPECT_EQ(global.get_presets()[0]->get_name(), "P 2.6mm");
    auto copy = std::static_pointer_cast<boxes_layer>(global.get_layer(1));
    EXPECT_EQ(copy->Width, 192);
    EXPECT_EQ(copy->DrawGrid, 1);
}

TEST_F(presets, CloningABadPresetIsAProgrammingError) {
    start(global);
    global.clone_preset_to_layers(-1); // quietly nothing
    EXPECT_EQ(global.get_layers_count(), 1);
    try {
        global.clone_preset_to_layers(9);
        FAIL() << "no exception";
    } catch (const preset_error& e) {
        EXPECT_EQ(e.status(), preset_status_bad_argument);
    }
    global.get_presets().push_back(nullptr);
    EXPECT_THROW(global.clone_preset_to_layers(9), preset_error);
    global.get_presets()[9] = global.create_layer(e_layer_image);
    EXPECT_THROW(global.clone_preset_to_layers(9), std::runtime_error);
    EXPECT_EQ(global.get_layers_count(), 1);
}

TEST_F(presets, AddingAPresetFromTheCurrentLayer) {
    start(global);
    auto picture = global.new_image_layer(); // at index 0, selected
    const int reloads = host.reloads;
    global.clone_current_layer_to_preset(); // an image layer cannot become a preset
    EXPECT_EQ(global.get_presets_count(), 9);
    EXPECT_EQ(host.reloads, reloads);
    EXPECT_FALSE(autosave_exists());

    global.set_current_layer_index(1);
    global.current_boxes_layer()->set_name("Mine");
    global.clone_current_layer_to_preset();
    ASSERT_EQ(global.get_presets_count(), 10);
    EXPECT_EQ(global.get_presets()[0]->get_name(), "Mine"); // the newest stands first
    EXPECT_NE(global.get_presets()[0], global.get_layer(1));
    EXPECT_EQ(host.reloads, reloads + 1);
    ASSERT_TRUE(autosave_exists());
    EXPECT_EQ(read_file(autosave()).substr(0, 30), "TESSERINE_LED_PRESETS v2 10 0\n");

    // The next start reads n + 1: the last one twice.
    recording_host other_host;
    Global next(&other_host);
    next.load_default_presets();
    ASSERT_EQ(next.get_presets_count(), 11);
    EXPECT_EQ(next.get_presets()[0]->get_name(), "Mine");
    EXPECT_EQ(next.get_presets()[9]->get_name(), "P 6.25");
    EXPECT_EQ(next.get_presets()[10]->get_layer_info(), next.get_presets()[9]->get_layer_info());
    EXPECT_EQ(read_file(autosave()).substr(0, 30),
              "TESSERINE_LED_PRESETS v2 10 0\n"); // not saved again
}

TEST_F(presets, DeletingAllPresetsBringsTheCatalogueBack) {
    global.load_default_presets();
    global.delete_preset(-1);
    global.delete_preset(9);
    EXPECT_FALSE(autosave_exists()); // bad indices: nothing, not even a save
    global.delete_preset(1);
    EXPECT_EQ(global.get_presets()[1]->get_name(), "P 3.9mm");
    while (global.get_presets_count() > 0)
        global.delete_preset(0);
    EXPECT_EQ(read_file(autosave()), "TESSERINE_LED_PRESETS v2 0 0\n");
    EXPECT_EQ(host.reloads, 1 + 9);

    Global next;
    next.load_default_presets();
    EXPECT_EQ(next.get_presets_count(), 9);
    EXPECT_EQ(next.get_presets()[0]->get_name(), "P 2.6mm");
}

TEST_F(presets, ADamagedAutosaveFileCountsAsNone) {
    write_file(autosave(), "garbage");
    global.load_default_presets();
    EXPECT_EQ(global.get_presets_count(), 9);
    EXPECT_EQ(read_file(autosave()), "garbage"); // stays until the next save
}

TEST_F(presets, NewWithASavedLogo) {
    start(global);
    QTemporaryDir dir;
    const std::string png = dir.path().toStdString() + "/logo.png";
    QImage img(6, 4, QImage::Format_ARGB32);
    img.fill(qRgba(10, 20, 30, 255));
    ASSERT_TRUE(img.save(QString::fromStdString(png)));
    global.set_logo_from_path(png);
    const std::string logo = read_file((folder_to_save_data() / "logo.data").string());
    EXPECT_EQ(logo.substr(0, 49), "TESSERINE_LED_PROJECT v2 1 16\nWidth:0\nHeight:0\n2 ");

    recording_host other_host;
    Global next(&other_host);
    capture_diagnostics quiet;
    next.load_default_presets();
    next.load_default_layers();
    EXPECT_EQ(quiet.text(), "");
    ASSERT_EQ(next.get_layers_count(), 2);
    EXPECT_EQ(next.get_layer(0)->get_name(), "Screen1");
    EXPECT_EQ(next.get_layer(0)->get_layer_type(), e_layer_boxes);
    EXPECT_EQ(next.get_layer(1)->get_name(), "Logo");
    EXPECT_TRUE(next.get_layer(1)->is_logo);
    EXPECT_EQ(next.get_current_layer_id(), 0);
    auto logo_layer = std::dynamic_pointer_cast<image_layer>(next.get_layer(1));
    ASSERT_TRUE(logo_layer && logo_layer->get_image());
    EXPECT_EQ(logo_layer->get_image()->size(), QSize(6, 4));
    EXPECT_EQ(next.get_paper_width(), 1920); // the block of zeros is read past
}

TEST_F(presets, NewKeepsPresetsAndTheLabelText) {
    start(global);
    global.raster_label_enabled = true;
    global.raster_label_lines = {"Stage"};
    global.raster_label_x = 5;
    global.raster_label_width = 77;
    global.set_paper_width(800);
    global.new_image_layer();
    global.load_default_layers();
    EXPECT_EQ(global.get_presets_count(), 9);
    EXPECT_TRUE(global.raster_label_enabled);
    EXPECT_EQ(global.raster_label_lines, string_array{"Stage"});
    EXPECT_EQ(global.raster_label_x, 1920);
    EXPECT_EQ(global.raster_label_y, 1080);
    EXPECT_EQ(global.raster_label_width, 0);
    EXPECT_EQ(global.raster_label_height, 0);
    EXPECT_EQ(global.get_paper_width(), 1920);
    EXPECT_EQ(layer_names(global), std::vector<std::string>{"Screen1"});
}
