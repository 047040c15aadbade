// The built-in catalogue, the preset list and its automatic save file, and
// a new workspace with and without a saved logo.

#include "core/data_folder.h"
#include "persistence/presets.h"
#include "support/test_support.h"
#include "support/workspace_builders.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct presets : ::testing::Test {
    recording_host host;
    Global global{&host};
    capture_diagnostics out; // the missing logo file is reported on each start

    void SetUp() override { clear_data_folder(); }

    std::string autosave() const { return global.auto_save_preset_file_name().string(); }
    bool autosave_exists() const { return QFile::exists(QString::fromStdString(autosave())); }
    void start(Global& g) {
        g.load_default_presets();
        g.load_default_layers();
    }
};

} // namespace

TEST_F(presets, CatalogueTextAndWhatItReadsAs) {
    const std::string text = getPresetsSource();
    EXPECT_TRUE(matches_golden(text, "catalogue.tsrx_presets"));
    // Read with a count of 28: 29 passes read all 29 records, none twice.
    // Written again they show every value read, the old keys' colours and
    // the defaults that come before the text.
    global.load_presets_from_string("TESSERINE_LED_PRESETS v2 28" + text.substr(text.find('\n')));
    EXPECT_EQ(out.text(), "");
    EXPECT_TRUE(matches_golden(
        global.project_or_presets_text(global.get_presets(), "TESSERINE_LED_PRESETS", "", false),
        "catalogue_read.tsrx_presets"));
}

TEST_F(presets, FirstStartGivesTheNineLoadedPresets) {
    global.load_default_presets();
    EXPECT_EQ(host.reloads, 1);
    EXPECT_FALSE(autosave_exists()); // not saved until the list changes
    // Their values: the defaults of a start come after the text, so grid and
    // circle are on although it says false.
    EXPECT_TRUE(matches_golden(
        global.project_or_presets_text(global.get_presets(), "TESSERINE_LED_PRESETS", "", false),
        "first_start.tsrx_presets"));
    global.load_default_layers();
    EXPECT_EQ(describe(global), "1920x1080 Screen1; current 0");
    // No logo saved yet: nothing to say.
    EXPECT_EQ(out.text(), "");
}

TEST_F(presets, NewProjectBytesForTheDefaultWorkspace) {
    // What "tesserine new -o FILE" writes with an empty data folder.
    Global fresh;
    fresh.load_default_layers();
    QTemporaryDir dir;
    const std::string file = dir.path().toStdString() + "/new.tsrx";
    ASSERT_TRUE(fresh.save_project_to_file(file));
    EXPECT_TRUE(matches_golden(read_file(file), "new.tsrx"));
}

// The list is saved on each change, and read at the next start; emptied,
// it gives the catalogue again.
TEST_F(presets, ThePresetListIsSavedOnEachChange) {
    start(global);
    global.delete_preset(-1);
    global.delete_preset(9);
    EXPECT_FALSE(autosave_exists()); // bad indices: nothing, not even a save
    global.current_boxes_layer()->set_name("Mine");
    global.clone_current_layer_to_preset();
    ASSERT_EQ(global.get_presets_count(), 10);
    EXPECT_EQ(global.get_presets()[0]->get_name(), "Mine"); // the newest stands first
    EXPECT_NE(global.get_presets()[0], global.get_layer(0));
    EXPECT_EQ(read_file(autosave()).substr(0, 30), "TESSERINE_LED_PRESETS v2 9 0\n1");

    recording_host other_host; // and the next start does not save it again
    Global next(&other_host);
    next.load_default_presets();
    EXPECT_EQ(next.get_presets()[0]->get_name(), "Mine");
    EXPECT_EQ(read_file(autosave()).substr(0, 30), "TESSERINE_LED_PRESETS v2 9 0\n1");

    while (global.get_presets_count() > 0)
        global.delete_preset(0);
    EXPECT_EQ(read_file(autosave()), "TESSERINE_LED_PRESETS v2 0 0\n");
    EXPECT_EQ(host.reloads, 1 + 1 + 10); // the start, the clone, each delete
    Global last;
    last.load_default_presets();
    EXPECT_EQ(last.get_presets_count(), 9);
}

// A damaged saved list is copied aside at start and the user told where;
// what could be read is used, the catalogue only when nothing could. Load
// Presets of a refused or empty file changes neither the list nor the file.
TEST_F(presets, DamagedPresetFilesLoseNothing) {
    const std::string cut = "TESSERINE_LED_PRESETS v2 1 0\n1 10\nName:Mine\n1 90\nName:Cu";
    for (const std::string& text : {std::string("garbage"), cut}) {
        write_file(autosave(), text);
        host.warnings.clear();
        global.load_default_presets();
        EXPECT_EQ(global.get_presets()[0]->get_name(), text == cut ? "Mine" : "P 2.6mm");
        EXPECT_EQ(read_file(autosave()), text); // stays until the next save
        const std::string copy = global.damaged_presets_copy().string();
        EXPECT_NE(copy.find("autosaved.tsrx_presets.damaged-20"), std::string::npos);
        EXPECT_EQ(read_file(copy), text);
        ASSERT_EQ(host.warnings.size(), 1u);
        EXPECT_NE(host.warnings[0].find(copy), std::string::npos);
    }
    QTemporaryDir dir;
    const std::string bad = (dir.path() + "/bad.tsrx_presets").toStdString();
    for (const char* text : {"\x01\xff random", "TESSERINE_LED_PRESETS v2 0 0\n"}) {
        write_file(bad, text);
        global.open_presets_button(); // cancelled: nothing
        host.answer = bad;
        global.open_presets_button();
        EXPECT_EQ(global.get_presets()[0]->get_name(), "Mine");
        EXPECT_EQ(read_file(autosave()), cut);
        EXPECT_FALSE(host.errors.empty());
    }
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
    EXPECT_EQ(logo.substr(0, 49), "TESSERINE_LED_PROJECT v2 0 16\nWidth:0\nHeight:0\n2 ");

    recording_host other_host;
    Global next(&other_host);
    capture_diagnostics quiet;
    next.load_default_presets();
    next.load_default_layers();
    EXPECT_EQ(quiet.text(), "");
    // The logo is on top, the raster as it was: the block of zeros is read past.
    ASSERT_EQ(describe(next), "1920x1080 Screen1 Logo (picture); current 0");
    EXPECT_TRUE(next.get_layer(1)->is_logo);
    auto logo_layer = std::dynamic_pointer_cast<image_layer>(next.get_layer(1));
    ASSERT_TRUE(logo_layer && logo_layer->get_image());
    EXPECT_EQ(logo_layer->get_image()->size(), QSize(6, 4));
}
