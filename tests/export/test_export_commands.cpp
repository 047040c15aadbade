// The export commands: which dialog each opens, and what target path it
// makes of the answer.

#include "export_helpers.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

using filters = std::vector<file::file_dialog_filter>;

struct export_commands : workspace_test {

    // Runs a command with the dialog answering answer; returns the path
    // that waits for the next paint.
    std::string requested(void (Global::*command)(), const std::string& answer) {
        host.answer = answer;
        (global.*command)();
        return global.get_save_to_file_requested_info().string();
    }
};

} // namespace

TEST_F(export_commands, DialogsOfferTheirFiltersInOrderForSaving) {
    host.answer = "";
    global.save_image_button();
    global.save_png_button();
    global.save_psd_button();
    global.layers_to_xml();
    ASSERT_EQ(host.picks.size(), 4u);
    EXPECT_EQ(host.picks[0].filters, (filters{{"png", "PNG Image"},
                                              {"tga", "TGA Image"},
                                              {"jpg", "JPG Image"},
                                              {"bmp", "BMP Image"},
                                              {"psd", "Photoshop Image"}}));
    EXPECT_EQ(host.picks[1].filters, (filters{{"png", "PNG Image"}}));
    EXPECT_EQ(host.picks[2].filters, (filters{{"psd", "PSD Document"}}));
    EXPECT_EQ(host.picks[3].filters, (filters{{"xml", "Resolute Arena XML Document"}}));
    for (const auto& pick : host.picks)
        EXPECT_TRUE(pick.save);
}

TEST_F(export_commands, SaveImageKeepsAnyTypedExtension) {
    EXPECT_EQ(requested(&Global::save_image_button, "/out/a"), "/out/a.png");
    EXPECT_EQ(requested(&Global::save_image_button, "/out/a.jpg"), "/out/a.jpg");
    EXPECT_EQ(requested(&Global::save_image_button, "/out/a.TGA"), "/out/a.TGA");
    EXPECT_EQ(requested(&Global::save_image_button, "/out/a.psd"), "/out/a.psd");
    EXPECT_EQ(requested(&Global::save_image_button, "/out/a.tif"), "/out/a.tif");
    // A dot in a folder name is not an extension of the file.
    EXPECT_EQ(requested(&Global::save_image_button, "/out.d/a"), "/out.d/a.png");
}

TEST_F(export_commands, ExportPngAndPsdReplaceAllExtensions) {
    EXPECT_EQ(requested(&Global::save_png_button, "/out/a.b.jpg"), "/out/a.png");
    EXPECT_EQ(requested(&Global::save_png_button, "/out/a"), "/out/a.png");
    EXPECT_EQ(requested(&Global::save_psd_button, "/out/a.b.jpg"), "/out/a.psd");
    EXPECT_EQ(requested(&Global::save_psd_button, "/out.d/wall"), "/out.d/wall.psd");
}

TEST_F(export_commands, CancelChangesNothingAndRequestsNoRedraw) {
    global.changed = 0;
    const int canvas = host.canvas_redraws, window = host.window_redraws;
    for (auto command : {&Global::save_image_button, &Global::save_png_button,
                         &Global::save_psd_button, &Global::layers_to_xml})
        EXPECT_EQ(requested(command, ""), "");
    EXPECT_EQ(host.picks.size(), 4u);
    EXPECT_EQ(host.canvas_redraws, canvas);
    EXPECT_EQ(host.window_redraws, window);
    EXPECT_FALSE(global.is_changed());
}

TEST_F(export_commands, ResolumeExportWritesAtOnce) {
    QTemporaryDir dir;
    add_screen(global, "Wall", 0, 0, 2, 2);
    global.changed = 0;
    requested(&Global::layers_to_xml, (dir.path() + "/wall.v2.txt").toStdString());
    EXPECT_EQ(files_in(dir), QStringList{"wall.xml"});
    EXPECT_NE(read_file((dir.path() + "/wall.xml").toStdString()).find("value=\"Wall\""),
              std::string::npos);
    // Nothing waits for a paint, and the stack is not touched.
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());
    EXPECT_FALSE(global.is_changed());
}
