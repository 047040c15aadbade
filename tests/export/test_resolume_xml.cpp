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

// The document around the slices, for a raster of w by h.
std::string document(const std::string& w, const std::string& h, const std::string& slices,
                     const std::string& unique_id = "1234567890123") {
    std::string layers = slices.empty() ? "\t\t\t\t<layers />\n"
                                        : "\t\t\t\t<layers>\n" + slices + "\t\t\t\t</layers>\n";
    return "<?xml version=\"1.0\"?>\n"
           "<XmlState name=\"Test\">\n"
           "\t<versionInfo name=\"Resolume Arena\" majorVersion=\"6\" minorVersion=\"1\" "
           "microVersion=\"0\" revision=\"61231\" />\n"
           "\t<ScreenSetup name=\"ScreenSetup\">\n"
           "\t\t<Params name=\"ScreenSetupParams\" />\n"
           "\t\t<screens>\n"
           "\t\t\t<Screen name=\"Screen 1\" uniqueId=\"" +
           unique_id + "\">\n" + layers +
           "\t\t\t\t<OutputDevice>\n"
           "\t\t\t\t\t<OutputDeviceVirtual name=\"Screen 1\" deviceId=\"VirtualScreen 1\" "
           "idHash=\"10094742552620344504\" width=\"" +
           w + "\" height=\"" + h +
           "\">\n"
           "\t\t\t\t\t\t<Params name=\"Params\">\n"
           "\t\t\t\t\t\t\t<ParamRange name=\"Width\" default=\"" +
           w + "\" value=\"" + w +
           "\" />\n"
           "\t\t\t\t\t\t\t<ParamRange name=\"Height\" default=\"" +
           h + "\" value=\"" + h +
           "\" />\n"
           "\t\t\t\t\t\t\t<ValueRange name=\"defaultRange\" min=\"1\" max=\"16384\" />\n"
           "\t\t\t\t\t\t</Params>\n"
           "\t\t\t\t\t</OutputDeviceVirtual>\n"
           "\t\t\t\t</OutputDevice>\n"
           "\t\t\t</Screen>\n"
           "\t\t</screens>\n"
           "\t</ScreenSetup>\n"
           "</XmlState>\n";
}

std::string v(const std::string& tabs, long long x, long long y) {
    return tabs + "<v x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" />\n";
}

// The slice of a layer named name (as escaped) at offset x, y with the four
// corners and the sixteen control points given.
std::string slice(const std::string& name, const long long corners[4][2],
                  const long long grid[16][2]) {
    const std::string t5 = "\t\t\t\t\t", t6 = t5 + "\t", t7 = t6 + "\t", t8 = t7 + "\t",
                      t9 = t8 + "\t";
    std::string rects;
    for (const char* rect : {"InputRect", "OutputRect"}) {
        rects += t6 + "<" + rect + " orientation=\"0\">\n";
        for (int i = 0; i < 4; ++i)
            rects += v(t7, corners[i][0], corners[i][1]);
        rects += t6 + "</" + rect + ">\n";
    }
    std::string points;
    for (int i = 0; i < 16; ++i)
        points += v(t9, grid[i][0], grid[i][1]);
    return t5 + "<Slice>\n" + t6 + "<Params name=\"Common\">\n" + t7 +
           "<Param name=\"Name\" default=\"Layer\" value=\"" + name + "\" />\n" + t6 +
           "</Params>\n" + rects + t6 + "<Warper>\n" + t7 + "<Params>\n" + t8 +
           "<ParamChoice name=\"Point Mode\" default=\"PM_LINEAR\" value=\"PM_LINEAR\" "
           "storeChoices=\"0\" />\n" +
           t8 + "<Param name=\"Flip\" default=\"0\" value=\"0\" />\n" + t7 + "</Params>\n" + t7 +
           "<BezierWarper controlWidth=\"4\" controlHeight=\"4\">\n" + t8 + "<vertices>\n" +
           points + t8 + "</vertices>\n" + t7 + "</BezierWarper>\n" + t6 + "</Warper>\n" + t5 +
           "</Slice>\n";
}

// The sixteen control points of a layer at (x, y) of w by h, from the
// column and row positions expected.
struct grid16 {
    long long p[16][2];
    grid16(const long long columns[4], const long long rows[4]) {
        for (int r = 0; r < 4; ++r)
            for (int c = 0; c < 4; ++c) {
                p[r * 4 + c][0] = columns[c];
                p[r * 4 + c][1] = rows[r];
            }
    }
};

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
    EXPECT_EQ(global.layers_xml_text(1234567890123), document("1920", "1080", ""));
    add_picture(global, "Pic", 5, 5, 50, 50); // image layers give no slices
    global.set_paper_width(0);
    global.set_paper_height(-5);
    EXPECT_EQ(global.layers_xml_text(7), document("1", "1", "", "7"));
    global.set_paper_width(7680);
    global.set_paper_height(4320);
    EXPECT_EQ(global.layers_xml_text(-1), document("7680", "4320", "", "-1"));
}

TEST_F(resolume, OneScreenLayerWholeDocument) {
    add_screen(global, "Wall", 10, 20, 3, 2, 100); // 300 by 200
    const long long corners[4][2] = {{10, 20}, {310, 20}, {310, 220}, {10, 220}};
    const long long columns[4] = {10, 110, 210, 310};
    const long long rows[4] = {20, 86, 153, 220}; // 66.67 and 133.33 truncated after the offset
    const grid16 grid(columns, rows);
    EXPECT_EQ(global.layers_xml_text(1234567890123),
              document("1920", "1080", slice("Wall", corners, grid.p)));
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

TEST_F(resolume, TwoExportsDifferOnlyInUniqueId) {
    add_screen(global, "Wall", 3, 4, 2, 2, 10);
    global.layers_to_xml_at(path("one"));
    global.layers_to_xml_at(path("two.xml"));
    const std::regex id("uniqueId=\"\\d+\"");
    EXPECT_EQ(std::regex_replace(read_file(path("one.xml")), id, "uniqueId"),
              std::regex_replace(read_file(path("two.xml")), id, "uniqueId"));
}

TEST_F(resolume, NoOrAnUnwritableTargetWritesNothing) {
    EXPECT_TRUE(global.layers_to_xml_at(file::path()).empty()); // the dialog cancelled
    EXPECT_TRUE(global.layers_to_xml_at(path("missing/wall.xml")).empty());
    EXPECT_FALSE(global.last_write_error().empty());
    ASSERT_TRUE(QDir(dir.path()).mkdir("folder.xml"));
    EXPECT_TRUE(global.layers_to_xml_at(path("folder.txt")).empty());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{});
}

TEST_F(resolume, FailedWriteKeepsTheOldFileWhole) {
    // A small document and a large one: a short write must be seen whether
    // it happens in the last flush or in the middle.
    for (int layers : {2, 40}) {
        global.m_project = std::make_shared<project>();
        for (int i = 0; i < layers; ++i)
            add_screen(global, "Wall " + std::to_string(i), i, i, 2, 2);
        const std::size_t size = global.layers_xml_text(1).size();
        ASSERT_GT(size, layers == 2 ? 3000u : 40000u);
        ASSERT_TRUE(write_file(path("wall.xml"), "old"));
        {
            file_size_limit limit(layers == 2 ? 1024 : 8192);
            EXPECT_TRUE(global.layers_to_xml_at(path("wall.xml")).empty()) << layers;
        }
        EXPECT_EQ(read_file(path("wall.xml")), "old");
        EXPECT_EQ(files_in(dir), QStringList{"wall.xml"});
        EXPECT_FALSE(global.last_write_error().empty());
    }
}
