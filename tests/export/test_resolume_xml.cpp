// The Resolume Arena screen setup: the media server reads this tree as it
// stands, so the text is checked byte for byte against golden documents.

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
    for (const auto& [key, value] : {std::pair<std::string, std::string>{"@WIDTH@", w},
                                     {"@HEIGHT@", h},
                                     {"@UNIQUE_ID@", id}})
        for (std::size_t at; (at = text.find(key)) != std::string::npos;)
            text.replace(at, key.size(), value);
    return text;
}

} // namespace

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

TEST_F(workspace_test, ResolumeSavedFileIsTheDocumentWithTheClock) {
    QTemporaryDir dir;
    add_screen(global, "Wall", 0, 0, 2, 2, 10);
    const auto now = [] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
                   std::chrono::system_clock::now().time_since_epoch())
            .count();
    };
    const auto before = now();
    const file::path written = global.layers_to_xml_at((dir.path() + "/wall.v2.txt").toStdString());
    const auto after = now();
    EXPECT_EQ(written.string(), (dir.path() + "/wall.xml").toStdString()); // one extension
    const std::string file = read_file(written.string());
    std::smatch m;
    ASSERT_TRUE(std::regex_search(file, m, std::regex("uniqueId=\"(\\d+)\"")));
    const long long id = std::stoll(m[1]);
    EXPECT_GE(id, before);
    EXPECT_LE(id, after);
    EXPECT_EQ(file, global.layers_xml_text(id));
}
