// The file commands: which dialog each opens, and what target path it makes
// of the answer; and the Resolume Arena screen setup, which the media server
// reads as it stands, so its text is checked byte for byte against golden
// documents.

#include "export_helpers.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// The golden document without slices, its placeholders filled in.
std::string empty_document(const std::string& w, const std::string& h, const std::string& id) {
    std::string text = golden("resolume_empty.xml");
    for (const auto& [key, value] :
         {std::pair<std::string, std::string>{"@WIDTH@", w}, {"@HEIGHT@", h}, {"@UNIQUE_ID@", id}})
        for (std::size_t at; (at = text.find(key)) != std::string::npos;)
            text.replace(at, key.size(), value);
    return text;
}

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
    // The setup is the document with the clock's milliseconds as its id.
    const auto now = [] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
                   std::chrono::system_clock::now().time_since_epoch())
            .count();
    };
    const auto before = now();
    EXPECT_EQ(target(&Global::layers_to_xml, "wall.xml"), "wall.xml");
    const auto after = now();
    const std::string file = read_file((dir.path() + "/wall.xml").toStdString());
    std::smatch m;
    ASSERT_TRUE(std::regex_search(file, m, std::regex("uniqueId=\"(\\d+)\"")));
    const long long id = std::stoll(m[1]);
    EXPECT_GE(id, before);
    EXPECT_LE(id, after);
    EXPECT_EQ(file, global.layers_xml_text(id));

    EXPECT_EQ(target(&Global::save_report_button, "wall"), "wall.pdf");
    EXPECT_EQ(read_file((dir.path() + "/wall.pdf").toStdString()).rfind("%PDF-", 0), 0u);
    EXPECT_FALSE(global.is_changed()); // the stack is not touched
    EXPECT_TRUE(host.errors.empty());
}

TEST_F(workspace_test, ResolumeWithoutScreenLayersHasNoSlicesAndAClampedRaster) {
    EXPECT_EQ(global.layers_xml_text(1234567890123),
              empty_document("1920", "1080", "1234567890123"));
    add_picture(global, "Pic", 5, 5, 50, 50); // image layers give no slices
    global.set_paper_width(0);
    global.set_paper_height(-5);
    EXPECT_EQ(global.layers_xml_text(7), empty_document("1", "1", "7"));
    global.set_paper_width(7680);
    global.set_paper_height(4320);
    EXPECT_EQ(global.layers_xml_text(-1), empty_document("7680", "4320", "-1"));
}

TEST_F(workspace_test, ResolumeSlices) {
    // 300 by 200 at (10, 20): rows at 66.67 and 133.33 are truncated after
    // the offset.
    add_screen(global, "Wall", 10, 20, 3, 2, 100);
    // A width of 100 splits at thirds: 0, 33, 66, 100.
    add_screen(global, "W", 0, 0, 1, 1, 100);
    // Negative offsets truncate toward zero: -50 + 33.33 is -16.
    add_screen(global, "Neg", -50, -7, 1, 1, 100);
    // 2.5 columns of 3 pixels are 8 wide; 8/3 and 16/3 plus 1 sum in floats.
    add_screen(global, "Half", 1, 0, 3, 1, 3)->HalfColumns.set(1);
    add_picture(global, "Picture", 0, 0, 4, 4);
    // Hidden layers are in, in stack order; names are escaped as XML needs.
    add_screen(global, "Hidden", 0, 0, 1, 1)->set_hidden(true);
    add_screen(global, "A&B <\"wall\"> 'x' \xC3\xA9", 0, 0, 1, 1, 3);
    EXPECT_TRUE(matches_golden(global.layers_xml_text(1234567890123), "resolume_layers.xml"));
    EXPECT_EQ(global.get_layers_count(), 7); // the stack is left as it was
}
