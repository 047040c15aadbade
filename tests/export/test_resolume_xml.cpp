// The Resolume Arena screen setup: the media server reads this tree as it
// stands, so the text is checked byte for byte.

#include "export_helpers.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// A golden document with its placeholders filled in.
std::string document(const std::string& name, const std::string& w, const std::string& h,
                     const std::string& unique_id) {
    std::string text = golden(name);
    for (const auto& [key, value] : {std::pair<std::string, std::string>{"@WIDTH@", w},
                                     {"@HEIGHT@", h},
                                     {"@UNIQUE_ID@", unique_id}})
        for (std::size_t at; (at = text.find(key)) != std::string::npos;)
            text.replace(at, key.size(), value);
    return text;
}

// The x or y values of the control points of the first slice, in file order.
std::vector<long long> attribute_values(const std::string& text, const std::string& attribute) {
    std::vector<long long> out;
    const std::string vertices = text.substr(text.find("<vertices>"));
    std::regex re("<v x=\"(-?\\d+)\" y=\"(-?\\d+)\"");
    for (auto it = std::sregex_iterator(vertices.begin(), vertices.end(), re);
         it != std::sregex_iterator(); ++it)
        out.push_back(std::stoll((*it)[attribute == "x" ? 1 : 2]));
    return out;
}

struct resolume : workspace_test {
    QTemporaryDir dir;
    std::string path(const std::string& name) const {
        return (dir.path() + "/").toStdString() + name;
    }
};

} // namespace

TEST_F(resolume, WithoutScreenLayersTheScreenHasNoSlicesAndTheRasterIsClamped) {
    EXPECT_EQ(global.layers_xml_text(1234567890123),
              document("resolume_empty.xml", "1920", "1080", "1234567890123"));
    add_picture(global, "Pic", 5, 5, 50, 50); // image layers give no slices
    global.set_paper_width(0);
    global.set_paper_height(-5);
    EXPECT_EQ(global.layers_xml_text(7), document("resolume_empty.xml", "1", "1", "7"));
    global.set_paper_width(7680);
    global.set_paper_height(4320);
    EXPECT_EQ(global.layers_xml_text(-1), document("resolume_empty.xml", "7680", "4320", "-1"));
}

TEST_F(resolume, OneScreenLayerWholeDocument) {
    // 300 by 200 at (10, 20): rows at 66.67 and 133.33 are truncated after the offset.
    add_screen(global, "Wall", 10, 20, 3, 2, 100);
    EXPECT_EQ(global.layers_xml_text(1234567890123),
              document("resolume_wall.xml", "1920", "1080", "1234567890123"));
}

TEST_F(resolume, WidthOfHundredSplitsAtThirds) {
    add_screen(global, "W", 0, 0, 1, 1, 100);
    const std::string text = global.layers_xml_text(1);
    EXPECT_EQ(
        attribute_values(text, "x"),
        (std::vector<long long>{0, 33, 66, 100, 0, 33, 66, 100, 0, 33, 66, 100, 0, 33, 66, 100}));
    EXPECT_EQ(
        attribute_values(text, "y"),
        (std::vector<long long>{0, 0, 0, 0, 33, 33, 33, 33, 66, 66, 66, 66, 100, 100, 100, 100}));
}

TEST_F(resolume, NegativeOffsetsTruncateTowardZero) {
    add_screen(global, "Neg", -50, -7, 1, 1, 100);
    const std::string text = global.layers_xml_text(1);
    // -50 + 33.33 = -16.67 becomes -16, not -17.
    EXPECT_EQ(attribute_values(text, "x"),
              (std::vector<long long>{-50, -16, 16, 50, -50, -16, 16, 50, -50, -16, 16, 50, -50,
                                      -16, 16, 50}));
    EXPECT_EQ(
        attribute_values(text, "y"),
        (std::vector<long long>{-7, -7, -7, -7, 26, 26, 26, 26, 59, 59, 59, 59, 93, 93, 93, 93}));
    EXPECT_NE(text.find("<InputRect orientation=\"0\">\n\t\t\t\t\t\t\t<v x=\"-50\" y=\"-7\" />\n"
                        "\t\t\t\t\t\t\t<v x=\"50\" y=\"-7\" />"),
              std::string::npos);
}

TEST_F(resolume, HalfColumnsAndPositionsSumInFloats) {
    // 2.5 columns of 3 pixels: 7.5 rounds up to 8 wide.
    auto layer = add_screen(global, "Half", 1, 0, 3, 1, 3);
    layer->HalfColumns.set(1);
    ASSERT_EQ(layer->get_full_width(), 8);
    // 8/3 = 2.67 and 16/3 = 5.33, plus 1.
    const std::vector<long long> x = attribute_values(global.layers_xml_text(1), "x");
    EXPECT_EQ(std::vector<long long>(x.begin(), x.begin() + 4),
              (std::vector<long long>{1, 3, 6, 9}));
}

TEST_F(resolume, NamesAreEscapedAsXmlRequires) {
    // pugixml escapes what an attribute value needs; ">" and "'" may stand.
    add_screen(global, "A&B <\"wall\"> 'x' \xC3\xA9", 0, 0, 1, 1, 3);
    const std::string text = global.layers_xml_text(1);
    EXPECT_NE(text.find("<Param name=\"Name\" default=\"Layer\" "
                        "value=\"A&amp;B &lt;&quot;wall&quot;> 'x' \xC3\xA9\" />"),
              std::string::npos)
        << text;
}

TEST_F(resolume, HiddenLayersIncludedInStackOrder) {
    add_screen(global, "Bottom", 0, 0, 1, 1);
    add_picture(global, "Picture", 0, 0, 4, 4);
    add_screen(global, "Hidden", 0, 0, 1, 1)->set_hidden(true);
    add_screen(global, "Top", 0, 0, 1, 1);
    const std::string text = global.layers_xml_text(1);
    std::vector<std::string> names;
    std::regex re("<Param name=\"Name\" default=\"Layer\" value=\"([^\"]*)\"");
    for (auto it = std::sregex_iterator(text.begin(), text.end(), re); it != std::sregex_iterator();
         ++it)
        names.push_back((*it)[1]);
    EXPECT_EQ(names, (std::vector<std::string>{"Bottom", "Hidden", "Top"}));
    EXPECT_EQ(global.get_layers_count(), 4); // the stack is left as it was
}

TEST_F(resolume, SavedFileIsTheDocumentWithTheClock) {
    add_screen(global, "Wall", 0, 0, 2, 2, 10);
    const auto before = std::chrono::duration_cast<std::chrono::milliseconds>(
                            std::chrono::system_clock::now().time_since_epoch())
                            .count();
    const file::path written = global.layers_to_xml_at(path("wall.v2.txt"));
    const auto after = std::chrono::duration_cast<std::chrono::milliseconds>(
                           std::chrono::system_clock::now().time_since_epoch())
                           .count();
    EXPECT_EQ(written.string(), path("wall.xml"));
    const std::string file = read_file(path("wall.xml"));
    std::smatch m;
    ASSERT_TRUE(std::regex_search(file, m, std::regex("uniqueId=\"(\\d+)\"")));
    const long long id = std::stoll(m[1]);
    EXPECT_GE(id, before);
    EXPECT_LE(id, after);
    EXPECT_EQ(file, global.layers_xml_text(id));
    EXPECT_EQ(files_in(dir), QStringList{"wall.xml"});
}
