// Degenerate and huge values, as a damaged or hand-edited file brings them:
// every path stays safe and answers promptly (ctest's timeout is the guard).
// Every kept fuzz input, seeds and past findings alike, runs through its
// target here too, so a fixed fault stays fixed.

#include "datapath/snake.h"
#include "fuzz_entries.h"
#include "render/draw2d_context.h"
#include "support/workspace_fixtures.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;

namespace {

// The kept inputs of a fuzz target, in a stable order.
std::vector<std::string> inputs_of(const std::string& target) {
    std::vector<std::string> files;
    for (const char* kind : {"corpus", "regressions"}) {
        const QString dir =
            QString(TESSERINE_SOURCE_DIR) + "/fuzz/" + kind + "/" + QString::fromStdString(target);
        QDirIterator it(dir, QDir::Files);
        while (it.hasNext())
            files.push_back(it.next().toStdString());
    }
    std::sort(files.begin(), files.end());
    return files;
}

struct degenerate : Vantora_TesserinePro::testing::workspace_test {
    nano2d::draw2d_context ctx;
    pointer<boxes_layer> layer;

    void SetUp() override {
        global.set_paper_width(640);
        global.set_paper_height(480);
        layer = global.new_boxes_layer();
        layer->DrawSnake = 1;
        layer->DrawBoxesNames = 1;
        layer->DrawPower = 1;
    }
    // One paint; the errors it showed.
    std::vector<std::string> paint() {
        host.errors.clear();
        global.set_changed();
        global.defer_build_frame(true, &ctx);
        return host.errors;
    }
    std::string route_outcome() {
        try {
            return std::to_string(Snake::make_route(*layer).size());
        } catch (const std::exception& e) {
            return e.what();
        }
    }
};

} // namespace

TEST_F(degenerate, HugeGridIsRefusedNotAllocated) {
    layer->Columns = 65535;
    layer->Rows = 65535;
    // 8 million pixels across: the drawing is refused through the usual
    // error; four billion cabinets are no data path, at once.
    EXPECT_EQ(paint(), (std::vector<std::string>{"Offscreen allocated nullptr."}));
    EXPECT_EQ(route_outcome(), Snake::too_many_cabinets_text);
    // Excluding all of them is refused the same way; the set stays small.
    layer->switch_all_exclude_boxes();
    EXPECT_TRUE(layer->ExcludeBoxes.empty());
}

// A route that fails while drawing switches the path off and is told once.
TEST_F(degenerate, PortLimitOfZero) {
    layer->SnakeLimit = 0;
    EXPECT_EQ(paint(), (std::vector<std::string>{Snake::limit_failure_text}));
    EXPECT_EQ(layer->DrawSnake, 0);
    EXPECT_TRUE(paint().empty());
}

TEST_F(degenerate, HugeValuesInAFileReadAndSaveBack) {
    const std::string body = "Name:Big\nColumns:65535\nRows:65535\nWidth:-1\nHeight:0\n"
                             "SnakeLimit:-2147483648\nHalfColumns:1111\nPowerVolts:0\n"
                             "ExcludeBoxes:4294967295|-1\nCustomPath:2147483647,-5|\n";
    std::string text = "TESSERINE_LED_PROJECT v2 1 18\nWidth:100000\nHeight:0\n1 " +
                       std::to_string(body.size()) + "\n" + body;
    global.load_project_from_string(text);
    ASSERT_GE(global.get_layers_count(), 1);
    EXPECT_EQ(global.paper_width, 640); // a height of 0 leaves the raster alone
    auto big = std::static_pointer_cast<boxes_layer>(global.get_layer(0));
    EXPECT_EQ(big->Columns, 65535);
    EXPECT_EQ(big->get_full_width(), 0);
    EXPECT_NO_THROW(big->calculate_power());
    const std::string saved = global.project_or_presets_text(
        global.current_project()->layers, "TESSERINE_LED_PROJECT", "Width:1\nHeight:1", true);
    Global again;
    again.load_project_from_string(saved);
    EXPECT_EQ(again.get_layer(0)->get_layer_info(), big->get_layer_info());
}

TEST_F(degenerate, OffsetsAtTheLimitsDrawTheirCornerLabels) {
    layer->CornersMode = 15;
    for (const int offset : {2147483647, -2147483647 - 1}) {
        layer->set_offset_x(offset);
        layer->set_offset_y(offset);
        EXPECT_TRUE(paint().empty()) << offset;
    }
}

TEST(FuzzCorpus, EveryKeptInputRunsCleanly) {
    int runs = 0;
    for (const auto& target : fuzzing::targets()) {
        for (const auto& path : inputs_of(target.name)) {
            QFile f(QString::fromStdString(path));
            ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << path;
            const QByteArray bytes = f.readAll();
            SCOPED_TRACE(path);
            EXPECT_NO_THROW(target.run(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                       std::size_t(bytes.size())));
            ++runs;
        }
    }
    EXPECT_GT(runs, 0);
}
