// The processors of a wall: port capacity from depth and rate, chains on
// units and ports across layers, backups, conflicts, the map's labels and
// the library file.

#include "persistence/processor_library.h"
#include "plan/processors.h"
#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// A port of 400 pixels at 8-bit: a line of the 4 by 3 wall of 100-pixel
// cabinets a chain under "Other Type".
processor_library tiny_library() {
    processor_library library;
    EXPECT_TRUE(library.put({"Tiny 8", 8, 400, 200}));
    return library;
}

// The plan in one line: each layer's chains (main>backup), the units and
// the conflicts.
std::string summary(const plan::processor_plan& p) {
    std::string s;
    for (const plan::layer_plan& l : p.layers) {
        s += l.name + ":";
        for (const plan::chain_plan& c : l.chains)
            s += " " + (c.main ? plan::port_label(*c.main) : "-") +
                 (c.backup ? ">" + plan::backup_label(*c.backup) : "");
        s += " | ";
    }
    for (const plan::unit_plan& u : p.units) {
        s += "unit " + std::to_string(u.unit) + " " + u.model + " " + std::to_string(u.main_ports) +
             "+" + std::to_string(u.backup_ports) + " free " + std::to_string(u.free_ports) +
             (u.mirrors ? " of " + std::to_string(u.mirrors) : "") + " [";
        for (const std::string& name : u.layers)
            s += name + (&name == &u.layers.back() ? "" : ",");
        s += "] | ";
    }
    for (const plan::conflict& c : p.conflicts)
        s += c.name + ": " + c.message + " | ";
    for (const auto& [model, count] : p.models)
        s += model + " x" + std::to_string(count);
    return s;
}

} // namespace

// Depth x rate x model: the model's figure at the depth (12-bit as 10-bit)
// times 60 / rate, rounded down; without a model SnakeLimit, halved above 8
// bits; the defaults give SnakeLimit exactly.
TEST(processors, EffectiveLimitTable) {
    const processor_library library;
    struct row {
        const char* model;
        int depth, rate, snake_limit;
        long long limit;
    } rows[] = {
        {"", 8, 60, 655360, 655360},
        {"", 8, 60, 1234567, 1234567},
        {"", 10, 60, 655360, 327680},
        {"", 12, 60, 655361, 327680},
        {"", 8, 120, 655360, 327680},
        {"", 10, 120, 655360, 163840},
        {"", 8, 50, 655360, 786432},
        {"", 10, 144, 655360, 136533},
        {"", 10, 60, -1, -1},
        {"", 8, 0, 1000, 1000},
        {"Generic 16 x 1G", 8, 60, 1, 655360},
        {"Generic 16 x 1G", 10, 60, 1, 327680},
        {"Generic 8 x 1G", 12, 120, 1, 163840},
        {"Generic 4 x 1G", 8, 30, 1, 1310720},
        {"Generic 4 x 10G", 8, 60, 1, 6553600},
        {"Generic 4 x 10G", 10, 50, 1, 3932160},
        {"Generic 4 x 10G", 8, 144, 1, 2730666},
    };
    for (const row& r : rows) {
        BoxesLayerDescription layer;
        layer.BitDepth = r.depth, layer.FrameRate = r.rate, layer.SnakeLimit = r.snake_limit;
        EXPECT_EQ(plan::effective_limit(layer, *r.model ? library.find(r.model) : nullptr), r.limit)
            << r.model << " " << r.depth << " bits " << r.rate << " Hz";
    }
    EXPECT_EQ(library.models().size(), 4u);
}

// Chains on units and ports across layers in stack order, both backups,
// and every conflict: named, failing its layer only, which then takes no
// port.
TEST_F(workspace_test, PortsAcrossLayersBackupsAndConflicts) {
    const processor_library library = tiny_library();
    const std::string tiny = "DataDiagramType:1\nSnakeMode:0\nProcessor:Tiny 8\n";
    struct scenario {
        std::vector<std::string> layers; // settings of A, B, ...
        std::string plan;
    } scenarios[] = {
        {{tiny, tiny + "FirstPort:4"},
         "A: 1:1 1:2 1:3 | B: 1:4 1:5 1:6 | unit 1 Tiny 8 6+0 free 2 [A,B] | Tiny 8 x1"},
        {{tiny + "Backup:1", tiny + "FirstPort:7\nProcessorUnit:2"},
         "A: 1:1>B1:4 1:2>B1:5 1:3>B1:6 | B: 2:7 2:8 2:9 | unit 1 Tiny 8 3+3 free 2 [A] | "
         "B: ports 7\u20139 of unit 2 are wanted; a \"Tiny 8\" has 8. | Tiny 8 x1"},
        // A backup unit is numbered after every main unit.
        {{tiny + "Backup:2", tiny + "ProcessorUnit:2\nBackup:2", tiny + "ProcessorUnit:4"},
         "A: 1:1>B5:1 1:2>B5:2 1:3>B5:3 | B: 2:1>B6:1 2:2>B6:2 2:3>B6:3 | C: 4:1 4:2 4:3 | "
         "unit 1 Tiny 8 3+0 free 5 [A] | unit 2 Tiny 8 3+0 free 5 [B] | "
         "unit 4 Tiny 8 3+0 free 5 [C] | unit 5 Tiny 8 0+3 free 5 of 1 [A] | "
         "unit 6 Tiny 8 0+3 free 5 of 2 [B] | Tiny 8 x5"},
        {{tiny, tiny + "FirstPort:3", tiny + "FirstPort:4"},
         "A: 1:1 1:2 1:3 | B: 1:3 1:4 1:5 | C: 1:4 1:5 1:6 | unit 1 Tiny 8 6+0 free 2 [A,C] | "
         "B: unit 1 port 3 is taken by \"A\". | Tiny 8 x1"},
        {{tiny + "Backup:1", tiny + "FirstPort:6"},
         "A: 1:1>B1:4 1:2>B1:5 1:3>B1:6 | B: 1:6 1:7 1:8 | unit 1 Tiny 8 3+3 free 2 [A] | "
         "B: unit 1 port 6 is taken by \"A\". | Tiny 8 x1"},
        {{tiny, "Processor:Generic 4 x 1G\nColumns:1\nRows:1"},
         "A: 1:1 1:2 1:3 | B: 1:1 | unit 1 Tiny 8 3+0 free 5 [A] | "
         "B: unit 1 is a \"Tiny 8\" (of \"A\"), not a \"Generic 4 x 1G\". | Tiny 8 x1"},
        // A chain over the limit: an "Other Type" cabinet alone, a
        // "Novastar" line that does not fit (the router's failure).
        {{tiny + "Width:30\nHeight:30\nColumns:1\nRows:1", tiny + "DataDiagramType:0\nBitDepth:10"},
         "A: 1:1 | B: | A: port 1:1 carries 900 px, over the effective limit of 400 px. | "
         "B: Some panels consume more pixels then limit used. | "},
        {{"Processor:Nope", "BitDepth:9", "FrameRate:0", "Processor:Tiny 8\nProcessorUnit:0",
          "Processor:Tiny 8\nFirstPort:0", "Processor:Tiny 8\nBackup:3"},
         "A: - | B: - | C: - | D: - - - - | E: - - - - | F: - - - - | "
         "A: the processor \"Nope\" is not in the library. | "
         "B: the colour depth is 9 bits; it must be 8, 10 or 12. | "
         "C: the frame rate is 0 Hz; it must be above 0. | D: the unit is 0; units count from 1. | "
         "E: the first port is 0; ports count from 1. | "
         "F: the backup is 3; it must be 0 (none), 1 (loop back) or 2 (backup unit). | "},
        // Without the keys a layer is as before: a router's failure and a
        // port over the limit are no conflicts; with a depth alone, they are.
        {{"SnakeLimit:50", "DataDiagramType:1\nSnakeLimit:50", "SnakeLimit:300\nBitDepth:10"},
         "A: | B: - - - - - - - - - - - - | C: | "
         "C: Some panels consume more pixels then limit used. | "},
    };
    for (const scenario& s : scenarios) {
        global.m_project = std::make_shared<project>();
        char name = 'A';
        for (const std::string& settings : s.layers) {
            auto layer = add_screen(global, std::string(1, name++), 0, 0, 4, 3, 10);
            layer->apply_layer_info(settings);
        }
        const plan::processor_plan p = plan::plan_processors(global.m_project->layers, library);
        EXPECT_EQ(summary(p), s.plan);
        // The counts a bill of materials reads add up.
        int main = 0, backup = 0;
        for (const plan::layer_plan& l : p.layers)
            for (const plan::chain_plan& c : l.chains)
                if (!l.failed) main += c.main.has_value(), backup += c.backup.has_value();
        EXPECT_EQ(p.main_ports(), main) << s.plan;
        EXPECT_EQ(p.backup_ports(), backup) << s.plan;
    }
}

// The map: "unit:port" at each chain's first cabinet, the backup's "B1:5"
// at its last, where a processor is chosen; "P1" and "R1" elsewhere, the
// ends counter going on across both; the palette's line.
TEST_F(workspace_test, MapLabelsAndPaletteLine) {
    auto a = add_screen(global, "A", 0, 0, 4, 3, 10);
    auto b = add_screen(global, "B", 0, 40, 4, 1, 10);
    b->apply_layer_info("DrawLayerName:0\nDrawScreenSize:0\nDrawInfoLine:0");
    // A custom path whose first run ends on a hidden cabinet.
    add_screen(global, "C", 0, 60, 4, 1, 10)
        ->apply_layer_info("DrawLayerName:0\nDrawScreenSize:0\nDrawInfoLine:0\nCustomDataPath:1\n"
                           "CustomPath:0,65536|131072,196608\nExcludeBoxes:65536\n"
                           "Processor:Generic 4 x 1G\nProcessorUnit:3");
    a->apply_layer_info("Processor:Generic 16 x 1G\nFirstPort:2\nBackup:1\nSnakeMode:0\n"
                        "DataDiagramType:1\nFrameRate:120\nWidth:300\nHeight:300\n"
                        "ExcludeBoxes:65537\nDrawLayerName:0\nDrawScreenSize:0\nDrawInfoLine:0");
    recording_context rec;
    global.defer_build_frame(true, &rec);
    std::vector<std::string> labels;
    for (const auto& call : rec.calls("text"))
        labels.push_back(call.args[0]);
    // 300 x 300 cabinets: three a chain at 120 Hz (327,680 px), so a row
    // of four is two chains; the excluded (1,1) is skipped.
    const std::vector<std::string> want = {"1:2",  "B1:6", "1:3", "B1:7", "1:4", "B1:8", "1:5",
                                           "B1:9", "P5",   "R5",  "3:1",  "3:2", "3:2"};
    std::vector<std::string> got;
    for (const std::string& t : labels)
        if (t.find(':') != std::string::npos || t[0] == 'P' || t[0] == 'R') got.push_back(t);
    EXPECT_EQ(got, want);
    const plan::processor_plan p = plan::plan_processors(global);
    EXPECT_EQ(plan::processor_line(p, 0),
              "Unit 1 \u00b7 ports 2\u20135 of 16 \u00b7 backup 6\u20139 \u00b7 fullest 82 %");
    EXPECT_EQ(plan::processor_line(p, 1), "");
    b->apply_layer_info("Processor:Generic 16 x 1G\nBackup:2");
    EXPECT_EQ(plan::processor_line(plan::plan_processors(global), 1),
              "Unit 1 \u00b7 port 1 of 16 \u00b7 backup unit 4 port 1 \u00b7 fullest 0 %");
}

// The library file: the user's models round trip; what cannot be taken is
// refused or, in a file, left out and named, and a damaged file is copied
// aside before it is written over.
TEST(processors, LibraryFileRoundTripAndDamage) {
    QTemporaryDir dir;
    const file::path file = dir.path().toStdString() + "/processors.json";
    processor_library library;
    EXPECT_TRUE(library.load(file)); // no file: the built-in models only
    ASSERT_TRUE(library.put({"Mine", 12, 500000, 250000}));
    ASSERT_TRUE(library.put({"Mine 2", 2, 1, 1}, "Mine"));
    ASSERT_TRUE(library.put({"Other", 1, 9, 8}));
    for (const auto& [model, replacing, why] :
         std::vector<std::tuple<processor_model, std::string, std::string>>{
             {{"", 1, 1, 1}, "", "A model needs a name of 1 to 80 characters."},
             {{"A\nB", 1, 1, 1}, "", "A model's name is one line."},
             {{"X", 0, 1, 1}, "", "\"X\": a processor has 1 to 1024 ports."},
             {{"X", 1, 0, 1}, "", "\"X\": a port carries 1 to 1000000000 pixels."},
             {{"X", 1, 1, 1000000001}, "", "\"X\": a port carries 1 to 1000000000 pixels."},
             {{"Generic 4 x 1G", 1, 1, 1},
              "",
              "There is a model named \"Generic 4 x 1G\" already."},
             {{"Other", 1, 1, 1}, "Mine 2", "There is a model named \"Other\" already."},
             {{"X", 1, 1, 1},
              "Generic 8 x 1G",
              "\"Generic 8 x 1G\" is built in and cannot be changed."},
         }) {
        EXPECT_EQ(library.refusal(model, replacing), why);
        EXPECT_FALSE(library.put(model, replacing));
    }
    EXPECT_FALSE(library.remove("Generic 4 x 1G"));
    ASSERT_TRUE(library.save(file));
    processor_library again;
    EXPECT_TRUE(again.load(file));
    EXPECT_EQ(again.models(), library.models());
    EXPECT_TRUE(again.remove("Other"));
    EXPECT_EQ(again.models().size(), 5u);

    const std::string damaged =
        R"({"models": [{"name": "Good", "ports": 4, "pixels_8bit": 10, "pixels_10bit": 5},
        {"name": "Bad", "ports": 4.5, "pixels_8bit": 10, "pixels_10bit": 5}, {"name": 7}]})";
    for (const auto& [bytes, models, problem] :
         std::vector<std::tuple<std::string, std::size_t, std::string>>{
             {damaged, 5, "model 2 is left out: \"Bad\": a processor has 1 to 1024 ports."},
             {"{\"models\": [", 4, "it is not JSON: "},
             {"[]", 4, "it holds no \"models\" list"},
         }) {
        ASSERT_TRUE(write_file(file.string(), bytes));
        processor_library read;
        EXPECT_FALSE(read.load(file, true));
        EXPECT_EQ(read.models().size(), models);
        ASSERT_FALSE(read.problems().empty());
        EXPECT_EQ(read.problems()[0].substr(0, problem.size()), problem);
        EXPECT_EQ(read_file(read.set_aside()), bytes);
        // Saving over it keeps the copy; without protect, the save copies.
        processor_library quiet;
        quiet.load(file);
        EXPECT_TRUE(quiet.set_aside().empty());
        ASSERT_TRUE(quiet.save(file));
        EXPECT_NE(quiet.set_aside(), read.set_aside());
        EXPECT_EQ(read_file(quiet.set_aside()), bytes);
        EXPECT_TRUE(processor_library().load(file));
    }
}
