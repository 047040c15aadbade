// The file commands: which dialog each opens, and what target path it makes
// of the answer.

#include "export_helpers.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

using filters = std::vector<file::file_dialog_filter>;
using command = void (Global::*)();

struct export_commands : workspace_test {
    QTemporaryDir dir;

    export_commands() {
        add_screen(global, "Wall", 0, 0, 2, 2);
        global.get_presets().push_back(screen_layer(global));
    }
    // Runs a command with the dialog answering answer (in the test's folder);
    // returns the file it wrote or the one that waits for the next paint.
    std::string target(command c, const std::string& answer) {
        QDir(dir.path()).removeRecursively();
        QDir().mkpath(dir.path());
        host.answer = answer.empty() ? "" : (dir.path() + "/").toStdString() + answer;
        (global.*c)();
        std::string out = global.get_save_to_file_requested_info().string();
        if (!out.empty()) global.request_save_to_file(file::path()); // no paint follows
        if (out.empty() && !files_in(dir).isEmpty()) out = files_in(dir).join(" ").toStdString();
        return out.empty() ? "" : out.substr(out.find_last_of('/') + 1);
    }
};

} // namespace

TEST_F(export_commands, ExtensionRules) {
    // Extensions are the text after the first dot of the last path
    // component, a leading dot aside; a dot in a folder name is none.
    const struct {
        command c;
        const char *answer, *target;
    } cases[] = {
        {&Global::save_project_button, "show", "show.tsrx"},
        {&Global::save_project_button, "show.other", "show.other"},
        {&Global::save_presets_button, "show", "show.tsrx_presets"},
        {&Global::save_image_button, "a", "a.png"},
        {&Global::save_image_button, "a.jpg", "a.jpg"},
        {&Global::save_image_button, "a.TGA", "a.TGA"},
        {&Global::save_image_button, "a.tif", "a.tif"},
        {&Global::save_image_button, "out.d/a", "a.png"},
        {&Global::save_png_button, "a.b.jpg", "a.png"},
        {&Global::save_png_button, "out.d/a", "a.png"},
        {&Global::save_psd_button, "a.b.jpg", "a.psd"},
        {&Global::save_psd_button, "out.d/wall", "wall.psd"},
        {&Global::layers_to_xml, "wall.v2.txt", "wall.xml"},
        {&Global::layers_to_xml, "one", "one.xml"},
        {&Global::layers_to_xml, ".setup", ".setup.xml"},
        {&Global::save_report_button, "show.v2.txt", "show.pdf"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(target(c.c, c.answer), c.target) << c.answer;
}

TEST_F(export_commands, ResolumeExportAndReportWriteAtOnce) {
    global.changed = 0;
    EXPECT_EQ(target(&Global::layers_to_xml, "wall.xml"), "wall.xml");
    EXPECT_NE(read_file((dir.path() + "/wall.xml").toStdString()).find("value=\"Wall\""),
              std::string::npos);
    EXPECT_EQ(target(&Global::save_report_button, "wall"), "wall.pdf");
    EXPECT_EQ(read_file((dir.path() + "/wall.pdf").toStdString()).rfind("%PDF-", 0), 0u);
    EXPECT_FALSE(global.is_changed()); // the stack is not touched
    EXPECT_TRUE(host.errors.empty());
}
