// Project and preset files: the length-framed format byte for byte, the
// reader's passes, limits and messages, and the file commands.

#include "core/diagnostics.h"
#include "persistence/file_format.h"
#include "support/workspace_fixtures.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

const std::string presets_head = "TESSERINE_LED_PRESETS v2 0 0\n";

QImage test_picture(int w, int h) {
    QImage img(w, h, QImage::Format_ARGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y, qRgba(x * 30, y * 30, (x * y) & 0xFF, 255 - x * y));
    return img;
}

struct files : workspace_test {
    QTemporaryDir dir;

    void SetUp() override { clear_data_folder(); }
    std::string path(const std::string& name) const {
        return (dir.path() + "/").toStdString() + name;
    }
    pointer<boxes_layer> screen(const std::string& name) {
        auto layer = screen_layer(global);
        layer->set_name(name);
        return layer;
    }
    pointer_array<app_layer> read(const std::string& text,
                                  const std::string& magic = "TESSERINE_LED_PRESETS v2") {
        return global.create_layers_from_string(text, magic);
    }
};

// What a read gave: the names, each with ":ROWS" where the rows are not the
// default 5.
std::string summary(const pointer_array<app_layer>& layers) {
    std::string out;
    for (const auto& l : layers) {
        out += (out.empty() ? "" : " ") + l->get_name();
        auto boxes = std::dynamic_pointer_cast<boxes_layer>(l);
        if (boxes && boxes->Rows != 5) out += ":" + std::to_string(boxes->Rows);
    }
    return out;
}

} // namespace

// The worked example: a 1920 by 1080 project with one small image layer
// (its Data cut short) and a raster label.
TEST_F(files, WorkedExampleReadsBack) {
    const std::string worked_example = golden("worked_example.tsrx");
    ASSERT_EQ(worked_example.size(), 221u);
    global.set_paper_width(640);
    global.set_paper_height(480);
    capture_diagnostics out;
    global.load_project_from_string(worked_example);
    EXPECT_EQ(out.text(), "");
    // The top layer is selected.
    EXPECT_EQ(describe(global),
              "1920x1080 Screen1 (picture); current 0; label at 1920,1080 size 20 [Main wall]");
}

TEST_F(files, WorkedExampleWithARealPictureIsWrittenByteForByte) {
    auto layer = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    layer->set_image(std::make_shared<image>(test_picture(8, 8)));
    layer->set_width(8);
    global.current_project()->get_layers().push_back(layer);
    global.raster_label_x = 1920;
    global.raster_label_y = 1080;
    global.raster_label_lines = {"Main wall"};

    const std::string hex = layer->getImageAsHex();
    ASSERT_EQ(hex.substr(0, 8), "89504E47"); // a PNG
    // The worked example with the whole picture in its Data.
    std::string expected = golden("worked_example.tsrx");
    const std::string body_length = std::to_string(99 - 8 + hex.size());
    expected.replace(expected.find("Data:89504E47"), 13, "Data:" + hex);
    expected.replace(expected.find("2 99\n"), 4, "2 " + body_length);
    ASSERT_TRUE(global.save_project_to_file(path("example.tsrx")));
    EXPECT_EQ(read_file(path("example.tsrx")), expected);

    // A preset file of the same layer: the record and nothing else.
    global.get_presets().push_back(layer);
    ASSERT_TRUE(global.save_presets_to_file(path("example.tsrx_presets")));
    const std::size_t record_at = expected.find("\n2 ") + 1;
    EXPECT_EQ(read_file(path("example.tsrx_presets")),
              "TESSERINE_LED_PRESETS v2 0 0\n" +
                  expected.substr(record_at, expected.find("100 57") - record_at));

    // Read back, the picture is whole.
    Global other(&host);
    EXPECT_TRUE(other.load_project_from_file(path("example.tsrx")).clean());
    auto back = std::dynamic_pointer_cast<image_layer>(other.get_layer(0));
    ASSERT_TRUE(back && back->get_image());
    EXPECT_EQ(back->get_image()->convertToFormat(QImage::Format_ARGB32), test_picture(8, 8));
}

TEST_F(files, CountsAndLengthsAtTheirLimitsAreAccepted) {
    // 1024 layers and the raster label: 1025 passes, all used.
    std::string text = "TESSERINE_LED_PROJECT v2 1024 0\n";
    for (int i = 0; i < 1024; ++i)
        text += record(1, "Name:L" + std::to_string(i) + "\n");
    text += record(100, "Raster Label:1\nX:7\n");
    capture_diagnostics out;
    auto layers = read(text, "TESSERINE_LED_PROJECT v2");
    ASSERT_EQ(layers.size(), 1024u);
    EXPECT_EQ(layers[1023]->get_name(), "L1023");
    EXPECT_EQ(global.raster_label_x, 7);
    // A record of 16777216 bytes is read; one more byte is refused.
    std::string body = "Name:big\n";
    body.resize(16777216 - 1, 'x');
    body += '\n';
    EXPECT_EQ(summary(read(presets_head + record(1, body))), "big");
    EXPECT_EQ(out.text(), "");
    body += 'y';
    EXPECT_TRUE(read(presets_head + record(1, body)).empty());
    EXPECT_EQ(out.text(), "create_layers_from_string::data len too large [16777217]\n");
}
TEST_F(files, ReaderPassesAndMessages) {
    const std::string a = record(1, "Name:A\n"), b = record(1, "Name:B\n");
    const std::string header_error = "create_layers_from_string::header check err\n";
    const std::string count_error = "layers_count can't be <0 or >1024\n";
    const std::string step2 = "create_layers_from_string::HDR::step2 error [std:";
    const std::string first = "Name:First layer\nRows:7\n";
    std::string nul_body = "Name:A\n";
    nul_body += '\0';
    nul_body += "Rows:9\n";
    struct {
        std::string text, layers, message;
        std::string raster = ""; // the raster after the read, when checked
    } const cases[] = {
        // A count past the records repeats the last one once.
        {"TESSERINE_LED_PRESETS v2 1024 0\n" + a + b, "A B B",
         "create_layers_from_string::layers_count 1024 runs past the end of the text, stopped "
         "after 3 passes\n"},
        {"", "", header_error},
        {"TESSERINE_LED_PRESETS\n1 7\nName:A\n", "", header_error},
        {"TESSERINE_LED_PROJECT v2 0 0\n", "", header_error},
        {"tesserine_led_presets v2 0\n", "", header_error},
        {"\nTESSERINE_LED_PRESETS v2 0 0\n", "", header_error},
        // The comparison is unsigned.
        {"TESSERINE_LED_PRESETS v2 1025 0\n" + a, "", count_error},
        {"TESSERINE_LED_PRESETS v2 -1 0\n" + a, "", count_error},
        {"TESSERINE_LED_PRESETS v2 -1024 0\n" + a, "", count_error},
        {presets_head + "1 0\nName:A\n", "", "create_layers_from_string::data len too large [0]\n"},
        {presets_head + "1 -5\nName:A\n", "",
         "create_layers_from_string::data len too large [-5]\n"},
        // CR LF heads read like LF; converted bodies lose their framing.
        {"TESSERINE_LED_PRESETS v2 1 0\r\n1 14\r\nName:A\nRows:2\n1 7\r\nName:B\n", "A:2 B", ""},
        {"TESSERINE_LED_PRESETS v2 1 0\r\n1 14\r\nName:A\r\nRows:2\r\n1 7\r\nName:B\r\n", "A:2",
         step2 + "]\n"},
        // An unknown record type stops the load, keeping what came before.
        {"TESSERINE_LED_PRESETS v2 3 0\n" + a + record(3, "abcd\n") + record(1, "Name:C\n"), "A",
         "create_layers_from_string::ROW layer type incorrect [3]\n"},
        {presets_head, "", step2 + "TESSERINE_LED_PRESETS v2 0 0]\n"},
        // A cut file: "Name:B\n", then what the buffer held from index 7,
        // "rst layer\nRows:7\n".
        {"TESSERINE_LED_PRESETS v2 2 0\n" + record(1, first) + "1 " + std::to_string(first.size()) +
             "\nName:B\n",
         "First layer:7 B:7 B:7", ""},
        // Declared 20, but the body has 14: "1 7\n" and "Na" go with it.
        {"TESSERINE_LED_PRESETS v2 2 0\n1 20\nName:A\nRows:2\n1 7\nName:B\n", "A:2",
         step2 + "me:B]\n"},
        // A body ends at its first NUL.
        {presets_head + record(1, nul_body), "A", ""},
        // A raster block is read in any pass, "Width" anywhere in its first
        // line starts it, a scan that fails counts 0, and it takes effect
        // only when both sides are at least 1, as the logo file's zeros.
        {"TESSERINE_LED_PRESETS v2 0 16\nWidth:0\nHeight:0\n" + a, "A", "", "1920x1080"},
        {"TESSERINE_LED_PRESETS v2 0 18\nWidth:1024\nHeight:0\n" + a, "A", "", "1920x1080"},
        {"TESSERINE_LED_PRESETS v2 1 0\n" + a + "Width:640\nHeight:480\n" + b, "A B", "",
         "640x480"},
        {"TESSERINE_LED_PRESETS v2 2 0\n" + a + "Width:700\nHeight:500\n" + b +
             "xWidth:900\nHeight:900\n" + record(1, "Name:C\n"),
         "A B C", "", "700x500"},
    };
    for (const auto& c : cases) {
        capture_diagnostics out;
        EXPECT_EQ(summary(read(c.text)), c.layers) << c.text.substr(0, 60);
        EXPECT_EQ(out.text(), c.message) << c.text.substr(0, 60);
        if (!c.raster.empty()) {
            EXPECT_EQ(std::to_string(global.paper_width) + "x" +
                          std::to_string(global.paper_height),
                      c.raster)
                << c.text.substr(0, 60);
        }
    }
}

// A raster label on the right or bottom edge of the raster a file brings
// takes the palette's values; one on neither is left alone.
TEST_F(files, ARasterFromAFileMovesALabelOnItsEdge) {
    global.raster_label_x = 600;
    global.raster_label_width = 40;
    global.raster_label_y = 10;
    global.raster_label_height = 20;
    const std::string a = record(1, "Name:A\n");
    read("TESSERINE_LED_PRESETS v2 0 0\nWidth:640\nHeight:480\n" + a);
    EXPECT_EQ(host.label_from_raster, 1);
    read("TESSERINE_LED_PRESETS v2 0 0\nWidth:700\nHeight:500\n" + a);
    EXPECT_EQ(host.label_from_raster, 1);
    global.raster_label_y = 300;
    global.raster_label_height = 0;
    read("TESSERINE_LED_PRESETS v2 0 0\nWidth:320\nHeight:300\n" + a);
    EXPECT_EQ(host.label_from_raster, 2);
}
TEST_F(files, PresetFileOfThreeReadsBackAsThree) {
    for (const char* name : {"One", "Two", "Three"})
        global.get_presets().push_back(screen(name));
    std::static_pointer_cast<boxes_layer>(global.get_presets()[2])->Columns = 11;
    ASSERT_TRUE(global.save_presets_to_file(path("three.tsrx_presets")));
    const std::string text = read_file(path("three.tsrx_presets"));
    // One lower than the records: the reader's one pass more takes the last.
    EXPECT_EQ(text.substr(0, 29), "TESSERINE_LED_PRESETS v2 2 0\n");

    capture_diagnostics out;
    read_report report(file_kind::presets);
    global.get_presets() = global.read_presets_file(path("three.tsrx_presets"), report);
    EXPECT_EQ(out.text(), "");
    EXPECT_TRUE(report.clean());
    ASSERT_EQ(global.get_presets_count(), 3);
    EXPECT_EQ(global.get_presets()[0]->get_name(), "One");
    EXPECT_EQ(std::static_pointer_cast<boxes_layer>(global.get_presets()[2])->Columns, 11);
    // Saved again after the reading, the file does not grow.
    ASSERT_TRUE(global.save_presets_to_file(path("again.tsrx_presets")));
    EXPECT_EQ(read_file(path("again.tsrx_presets")), text);
    // A file of the older framing still reads its last record twice.
    global.load_presets_from_string("TESSERINE_LED_PRESETS v2 3" + text.substr(text.find(' ', 25)));
    ASSERT_EQ(global.get_presets_count(), 4);
    EXPECT_EQ(global.get_presets()[2]->get_layer_info(), global.get_presets()[3]->get_layer_info());
}

TEST_F(files, LoadingAProjectReplacesTheDocument) {
    global.current_project()->get_layers().push_back(screen("Old"));
    global.raster_label_lines = {"kept"};
    capture_diagnostics out;
    global.load_project_from_string("not a project");
    EXPECT_EQ(describe(global),
              "1920x1080; current -1"); // the label is kept: no record of type 100
    EXPECT_EQ(global.raster_label_lines, string_array{"kept"});
    EXPECT_EQ(host.reloads, 1);

    const std::string two =
        "TESSERINE_LED_PROJECT v2 2 0\n" + record(1, "Name:A\n") + record(2, "Name:P\n");
    global.load_project_from_file(""); // nothing for an empty path
    EXPECT_EQ(host.reloads, 1);
    write_file(path("two.tsrx"), two);
    global.load_project_from_file(path("two.tsrx"));
    EXPECT_EQ(describe(global), "1920x1080 A P (picture) P (picture); current 2");
    EXPECT_EQ(host.reloads, 3); // once in the string load, once more for the file
}

TEST_F(files, ProjectRoundTripGivesIdenticalBytes) {
    {
        capture_diagnostics quiet; // no logo file: the header message
        global.load_default_layers();
    }
    // Every key of a screen record reads back as written (see the
    // parameter text tests); here the layers, raster and label do.
    global.current_boxes_layer()->set_offset_x(-40);
    auto second = screen("Side: left");
    second->set_hidden(true);
    global.insert_layer_at(second, -1);
    auto picture = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    picture->set_image(std::make_shared<image>(test_picture(5, 3)));
    picture->set_width(10);
    global.insert_layer_at(picture, -1);
    global.set_paper_width(3840);
    global.raster_label_lines = {"Stage", "", "  "};
    global.raster_label_font_size = 31;

    ASSERT_TRUE(global.save_project_to_file(path("a.tsrx")));
    Global other(&host);
    EXPECT_TRUE(other.load_project_from_file(path("a.tsrx")).clean());
    ASSERT_TRUE(other.save_project_to_file(path("b.tsrx")));
    EXPECT_EQ(read_file(path("a.tsrx")), read_file(path("b.tsrx")));
    // A saved label is always switched on.
    EXPECT_EQ(describe(other), "3840x1080 Screen1 Side: left Screen1 (picture); current 2; "
                               "label at 1920,1080 size 31 [Stage] [] [  ]");
}

// Damage of a project file: its kind, its line and byte, and the layers
// read of those declared. Files this program writes report none, also with
// CR LF ends and a byte-order mark.
TEST_F(files, DamageIsReportedWithItsKindAndPlace) {
    using k = file_problem::kind;
    const std::string whole = golden("new.tsrx"); // the head of layer 0 is line 4, byte 53
    struct row {
        std::string from, to;
        std::size_t cut; // bytes kept; 0 for all
        std::optional<k> kind;
        std::size_t line, offset, read, declared;
    } rows[] = {
        {"", "", 0, {}, 0, 0, 1, 1},
        {"\n", "\r\n", 0, {}, 0, 0, 1, 1},
        {"TESSERINE", "\xEF\xBB\xBFTESSERINE", 0, {}, 0, 0, 1, 1},
        {"", "", 600, k::record_cut_short, 4, 53, 2, 1},
        {"", "", 600, k::record_read_twice, 4, 53, 2, 1},
        {"", "", 40, k::fewer_records, 2, 40, 0, 1},
        {"1 925", "x 925", 0, k::bad_record_head, 4, 53, 0, 1},
        {"1 925", "7 925", 0, k::unknown_record_type, 4, 53, 0, 1},
        {"1 925", "1 16777217", 0, k::length_out_of_range, 4, 53, 0, 1},
        {"LabelFontSize:30", "LabelFontSize:3x", 0, k::bad_value, 52, 967, 1, 1},
        {"v2 1 22", "v2 2 22", 0, k::fewer_records, 0, 0, 1, 2},
        {"Name:Screen1", std::string("Name:\0creen1", 12), 0, k::nul_byte, 4, 53, 2, 1},
        {"PROJECT", "PROJEKT", 0, k::header_refused, 0, 0, 0, 0},
        {"v2 1 22", "v2 1025 22", 0, k::count_out_of_range, 0, 0, 0, 0},
    };
    for (const row& r : rows) {
        std::string text = whole;
        if (!r.from.empty())
            for (std::size_t at = text.find(r.from); at != std::string::npos;
                 at = text.find(r.from, at + r.to.size()))
                text.replace(at, r.from.size(), r.to);
        if (r.cut) text.resize(r.cut);
        SCOPED_TRACE(r.to + " cut at " + std::to_string(r.cut));
        write_file(path("damaged.tsrx"), text);
        capture_diagnostics quiet;
        Global reader(&host);
        const read_report report = reader.load_project_from_file(path("damaged.tsrx"));
        EXPECT_EQ(report.layers_read, r.read);
        EXPECT_EQ(report.layers_declared, r.declared);
        EXPECT_TRUE(r.kind ? report.has(*r.kind) : report.clean()) << report.text();
        if (r.line && !report.problems().empty()) { // none is a failure above
            EXPECT_EQ(std::pair(report.problems()[0].line, report.problems()[0].offset),
                      std::pair(r.line, r.offset));
        }
    }
    EXPECT_TRUE(global.load_project_from_file(path("missing.tsrx")).has(k::unreadable));
}

// Opening as the user does: a refused file leaves the document byte for
// byte; a damaged one opens with a warning and unsaved changes, and its
// save is offered under a new name.
TEST_F(files, OpeningADamagedOrRefusedProject) {
    global.current_project()->get_layers().push_back(screen("Mine"));
    ASSERT_TRUE(global.save_project_to_file(path("mine.tsrx")));
    const std::string mine = read_file(path("mine.tsrx"));
    QDir(dir.path()).mkdir("folder.tsrx");
    write_file(path("junk.tsrx"), "\x01\xff not a project");
    capture_diagnostics quiet;
    for (const char* name : {"junk.tsrx", "folder.tsrx", "missing.tsrx"}) {
        host.answer = path(name);
        global.open_project_button();
        ASSERT_TRUE(global.save_project_to_file(path("again.tsrx")));
        EXPECT_EQ(read_file(path("again.tsrx")), mine);
        EXPECT_FALSE(global.document_modified());
    }
    EXPECT_EQ(host.errors.size(), 3u);
    EXPECT_TRUE(host.warnings.empty());

    write_file(path("cut.tsrx"), golden("new.tsrx").substr(0, 600));
    host.answer = path("cut.tsrx");
    global.open_project_button();
    ASSERT_EQ(host.warnings.size(), 1u);
    EXPECT_NE(host.warnings[0].find("line 4, byte 53"), std::string::npos);
    EXPECT_TRUE(global.document_modified());
    host.answer.clear(); // the save dialog is cancelled
    global.save_project_button();
    EXPECT_EQ(host.picks.back().suggested.string(), path("cut (repaired).tsrx"));
    EXPECT_EQ(read_file(path("cut.tsrx")), golden("new.tsrx").substr(0, 600));
}

// The cabinets' colouring rides in a record after the raster label's, where
// older readers never look: a default project saves as before, a coloured one
// reads back, records of later versions are passed over, and a project
// without the record draws as the design does.
TEST_F(files, DrawingSettingsRecordFollowsTheRasterLabel) {
    {
        capture_diagnostics quiet;
        global.load_default_layers();
    }
    const auto text = [&] {
        return global.project_or_presets_text(global.current_project()->get_layers(), project_magic,
                                              "", true);
    };
    const std::string plain = text();
    const std::string record = "101 13\nColorBy:port\n";
    global.color_by = color_by_mode::port;
    EXPECT_EQ(text(), plain + record);
    ASSERT_TRUE(global.save_project_to_file(path("port.tsrx")));
    const std::string coloured = read_file(path("port.tsrx"));

    Global other(&host);
    other.color_by = color_by_mode::circuit;
    const std::string later = coloured.substr(0, coloured.size() - record.size()) +
                              "102 6\nFuture" + "101 16\nColorBy:circuit\n";
    ASSERT_TRUE(write_file(path("later.tsrx"), later));
    EXPECT_TRUE(other.load_project_from_file(path("later.tsrx")).clean());
    EXPECT_EQ(other.color_by, color_by_mode::circuit);
    ASSERT_TRUE(other.load_project_from_file(path("port.tsrx")).clean());
    EXPECT_EQ(other.color_by, color_by_mode::port);
    ASSERT_TRUE(other.save_project_to_file(path("again.tsrx")));
    EXPECT_EQ(read_file(path("again.tsrx")), coloured);
    ASSERT_TRUE(write_file(path("old.tsrx"), coloured.substr(0, coloured.size() - record.size())));
    ASSERT_TRUE(other.load_project_from_file(path("old.tsrx")).clean());
    EXPECT_EQ(other.color_by, color_by_mode::chequer);
}
