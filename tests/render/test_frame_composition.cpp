// Frame composition: real renders read back pixel by pixel, and the
// recording context for what is (or is not) drawn.

#include "render/draw2d_context.h"
#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

constexpr QRgb main_colour = qRgba(0x3F, 0x7F, 0x7F, 255);
constexpr QRgb tint_colour = qRgba(0x95, 0xB8, 0xB8, 255);

struct composition : workspace_test {
    nano2d::draw2d_context ctx;

    void paper(int w, int h) {
        global.set_paper_width(w);
        global.set_paper_height(h);
    }
    // A screen layer that draws only its cabinets, put on top of the stack.
    pointer<boxes_layer> cabinets(int columns, int rows, int size, int x = 0, int y = 0) {
        auto layer = global.new_boxes_layer();
        show_only_cabinets(*layer);
        set_grid(*layer, columns, rows, size, size);
        layer->set_offset_x(x);
        layer->set_offset_y(y);
        // new_boxes_layer inserts at the bottom; tests want stack order.
        auto& layers = global.current_project()->layers;
        layers.erase(layers.begin());
        layers.push_back(layer);
        return layer;
    }
    const image& frame() { return *global.get_composite_image(); }
    QRgb at(int x, int y) { return frame().pixel(x, y); }
    bool clear_at(int x, int y) { return qAlpha(at(x, y)) == 0; }
};

} // namespace

TEST_F(composition, CabinetsLandAtTheirPlaceOnTheRaster) {
    paper(1920, 1080);
    cabinets(8, 5, 128, 100, 50);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    ASSERT_TRUE(global.get_composite_image());
    EXPECT_EQ(frame().width(), 1920);
    EXPECT_EQ(frame().height(), 1080);
    EXPECT_EQ(at(100 + 64, 50 + 64), main_colour);
    EXPECT_EQ(at(100 + 128 + 64, 50 + 64), tint_colour);
    EXPECT_EQ(at(100 + 128 + 64, 50 + 128 + 64), main_colour);
    EXPECT_EQ(at(100, 50), main_colour);
    EXPECT_TRUE(clear_at(99, 60));
    EXPECT_TRUE(clear_at(100 + 1024 + 1, 60));
    EXPECT_GE(global.frame_image_wrap.handle, 1);
    EXPECT_TRUE(host.errors.empty());
}

TEST_F(composition, EmptyProjectIsTransparentAndTinyRastersAreOnePixel) {
    paper(64, 32);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_TRUE(clear_at(x, y));

    auto* const same = global.get_composite_image().get();
    paper(0, -3);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(frame().width(), 1);
    EXPECT_EQ(frame().height(), 1);
    EXPECT_EQ(global.get_composite_image().get(), same); // resized, never replaced
}

TEST_F(composition, LayerOnTheRasterEdgeLosesItsLastColumnAndRow) {
    paper(256, 128);
    cabinets(2, 1, 128);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_FALSE(clear_at(254, 126));
    EXPECT_TRUE(clear_at(255, 60));
    EXPECT_TRUE(clear_at(60, 127));

    paper(257, 129); // ends one pixel inside: drawn whole
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at(255, 127), tint_colour);
    EXPECT_TRUE(clear_at(256, 60));
}

TEST_F(composition, ClippingCutsAndNeverSqueezes) {
    recording_context rec;
    paper(1920, 1080);
    cabinets(8, 5, 128, 2000, 0);   // wholly right of the raster
    cabinets(8, 5, 128, 1000, 500); // crosses both edges
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    EXPECT_GE(rec.index_of("rectangle 2000 0 1 640"), 0);
    EXPECT_GE(rec.index_of("rectangle 1000 500 919 579"), 0);
    // The pattern has the layer image's own size at the layer's offset.
    const auto patterns = rec.calls("fill_paint");
    ASSERT_EQ(patterns.size(), 2u);
    EXPECT_EQ(patterns[1].args[1] + " " + patterns[1].args[2] + " " + patterns[1].args[3] + " " +
                  patterns[1].args[4],
              "1000 500 1024 640");
    EXPECT_EQ(patterns[0].target, "image 1920x1080");
}

TEST_F(composition, HiddenLayersAreLeftOutAndLaterLayersCoverEarlierOnes) {
    paper(512, 256);
    auto bottom = cabinets(2, 1, 128);
    auto top = cabinets(2, 1, 128, 64, 0);
    top->BoxColors = {color::color(255, 0, 0)};
    top->BoxTintColors = {color::color(0, 0, 255)};
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at(10, 10), main_colour);
    EXPECT_EQ(at(70, 10), qRgba(255, 0, 0, 255));
    EXPECT_EQ(at(200, 10), qRgba(0, 0, 255, 255));

    top->set_hidden(true);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at(70, 10), main_colour);
    EXPECT_EQ(at(200, 10), tint_colour);
    EXPECT_TRUE(clear_at(300, 10));
    EXPECT_TRUE(top->get_offscreen()); // a hidden layer keeps its last image
}

TEST_F(composition, ImageLayerIsStretchedToItsSize) {
    paper(200, 100);
    auto picture = std::make_shared<image>(2, 2, QImage::Format_ARGB32);
    picture->setPixel(0, 0, qRgba(255, 0, 0, 255));
    picture->setPixel(1, 0, qRgba(0, 255, 0, 255));
    picture->setPixel(0, 1, qRgba(0, 0, 255, 255));
    picture->setPixel(1, 1, qRgba(255, 255, 255, 255));
    auto layer = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    layer->set_image(picture);
    layer->width = 100;
    layer->height = 50;
    layer->set_offset_x(10);
    layer->set_offset_y(20);
    global.insert_layer_at(layer, -1);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at(10 + 5, 20 + 5), qRgba(255, 0, 0, 255));
    EXPECT_EQ(at(10 + 95, 20 + 5), qRgba(0, 255, 0, 255));
    EXPECT_EQ(at(10 + 5, 20 + 45), qRgba(0, 0, 255, 255));
    EXPECT_EQ(at(10 + 95, 20 + 45), qRgba(255, 255, 255, 255));
    EXPECT_TRUE(clear_at(9, 25));
    EXPECT_TRUE(clear_at(111, 25));
    EXPECT_EQ(layer->get_offscreen()->size(), QSize(100, 50));

    // No picture, or no size: nothing drawn, no image asked for.
    auto empty = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    global.insert_layer_at(empty, -1);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_FALSE(empty->get_offscreen());
}

TEST_F(composition, DrawCurrentOnlyHidesOtherCabinetsAndChangesNoValue) {
    paper(600, 200);
    auto first = cabinets(2, 1, 128);
    auto second = cabinets(2, 1, 128, 300, 0);
    auto third = cabinets(1, 1, 64, 0, 150);
    second->DrawBoxes = 7;
    third->DrawBoxes = 0;
    global.set_current_layer_index(0);
    host.only_current = true;
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at(64, 64), main_colour);
    EXPECT_TRUE(clear_at(364, 64));
    EXPECT_EQ(first->DrawBoxes, 1);
    EXPECT_EQ(second->DrawBoxes, 1); // written back as a truth value
    EXPECT_EQ(third->DrawBoxes, 0);
    // The write-back marks the layers, so every paint rebuilds meanwhile.
    EXPECT_TRUE(global.defer_build_frame(true, &ctx));

    host.only_current = false;
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at(364, 64), main_colour);
}

TEST_F(composition, PaintWithNothingChangedDrawsNothing) {
    recording_context rec;
    paper(300, 200);
    auto layer = cabinets(2, 1, 128);
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    EXPECT_FALSE(rec.log().empty());
    rec.clear();
    EXPECT_FALSE(global.defer_build_frame(true, &rec));
    EXPECT_TRUE(rec.log().empty());

    layer->set_changed(); // the layer's mark alone is enough
    global.changed = 0;
    EXPECT_TRUE(global.defer_build_frame(true, &rec));
    rec.clear();
    // A pending save composes (and writes) without rebuilding any layer.
    global.request_save_to_file(file::path("ignored.none"));
    EXPECT_EQ(host.window_redraws, 1);
    EXPECT_TRUE(global.defer_build_frame(true, &rec));
    EXPECT_EQ(rec.index_of("offscreen image 256x128"), -1);
    EXPECT_GE(rec.index_of("offscreen image 300x200"), 0);
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());
}

TEST_F(composition, LayerFailureStopsThePassAndKeepsTheSaveRequest) {
    const std::string out = QDir::tempPath().toStdString() + "/tesserine_failed_frame.png";
    QFile::remove(QString::fromStdString(out));
    paper(300, 200);
    auto good = cabinets(2, 1, 128);
    auto bad = cabinets(1, 1, 100000);
    global.request_save_to_file(file::path(out));
    EXPECT_FALSE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(host.errors, std::vector<std::string>{"Offscreen allocated nullptr."});
    EXPECT_EQ(host.reloads, 1);
    EXPECT_EQ(global.get_save_to_file_requested_info().string(), out);
    EXPECT_FALSE(global.get_composite_image());
    EXPECT_FALSE(QFile::exists(QString::fromStdString(out)));

    bad->Width = bad->Height = 32;
    bad->set_changed();
    EXPECT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_TRUE(global.last_save_succeeded());
    EXPECT_TRUE(QFile::exists(QString::fromStdString(out)));
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());
    QFile::remove(QString::fromStdString(out));
}

TEST_F(composition, AbsurdRasterIsRefusedLikeALayer) {
    for (auto [w, h] : {std::pair{40000, 10}, {100000, 1}, {100000, 100000}}) {
        paper(w, h);
        global.set_changed();
        host.errors.clear();
        EXPECT_FALSE(global.defer_build_frame(true, &ctx));
        EXPECT_EQ(host.errors, std::vector<std::string>{"Offscreen allocated nullptr."});
        EXPECT_FALSE(global.get_composite_image());
        EXPECT_EQ(global.frame_image_wrap.handle, -1);
    }

    paper(40, 10);
    EXPECT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(frame().width(), 40);
}

TEST_F(composition, RasterLabelDocksToTheCornerItTouched) {
    recording_context rec;
    paper(1920, 1080);
    global.raster_label_enabled = true;
    global.raster_label_x = 1920;
    global.raster_label_y = 1080;
    global.raster_label_lines = {"Stage left", "   ", "", "Main"};
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    // Three lines at size 20: widest "Stage left" 100 + 20, 3 * 24 + 20.
    EXPECT_EQ(global.raster_label_width, 120);
    EXPECT_EQ(global.raster_label_height, 92);
    EXPECT_EQ(global.raster_label_x, 1800);
    EXPECT_EQ(global.raster_label_y, 988);
    EXPECT_EQ(host.label_to_palette, 1);
    EXPECT_GE(rec.index_of("rectangle 1800 988 120 92"), 0);
    EXPECT_GE(rec.index_of("fill_color 7F000000"), 0);
    EXPECT_GE(rec.index_of("text Stage left 1860 1010"), 0);
    EXPECT_GE(rec.index_of("text Main 1860 1034"), 0);
    EXPECT_GE(rec.index_of("text 1920x1080 1860 1058"), 0);
    const auto* line = rec.text_call("Main");
    EXPECT_EQ(line->target, "image 1920x1080");

    // Longer text: the label grows out of the corner it is docked to.
    global.raster_label_lines = {"A much longer line"};
    global.set_changed();
    rec.clear();
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    EXPECT_EQ(global.raster_label_width, 200);
    EXPECT_EQ(global.raster_label_x, 1720);
    EXPECT_EQ(global.raster_label_y, 1080 - 68);
    EXPECT_EQ(host.label_to_palette, 2);

    // A grown raster takes the docked label to its new corner.
    paper(3840, 2160);
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    EXPECT_EQ(global.raster_label_x, 3840 - 200);
    EXPECT_EQ(global.raster_label_y, 2160 - 68);
    EXPECT_EQ(host.label_to_palette, 3);

    // Off the edges it stays where it is.
    global.raster_label_x = 100;
    global.raster_label_y = 50;
    global.raster_label_font_size = 0; // measured at size 1 at least
    global.set_changed();
    ASSERT_TRUE(global.defer_build_frame(true, &rec));
    EXPECT_EQ(global.raster_label_x, 100);
    EXPECT_EQ(global.raster_label_y, 50);
    EXPECT_EQ(host.label_to_palette, 3);
    EXPECT_GE(rec.index_of("font_size 1"), 0);
}

TEST_F(composition, RasterLabelOnAnEmptyProjectIsTheOnlyThingDrawn) {
    paper(400, 200);
    global.raster_label_enabled = true;
    global.raster_label_x = 400;
    global.raster_label_y = 200;
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_TRUE(clear_at(10, 10));
    EXPECT_EQ(global.raster_label_x + global.raster_label_width, 400);
    // Half-black box, and the white size text somewhere in it.
    const QImage label = frame().copy(global.raster_label_x, global.raster_label_y,
                                      global.raster_label_width, global.raster_label_height);
    EXPECT_EQ(label.pixelColor(label.width() - 1, label.height() - 1), QColor(0, 0, 0, 127));
    int white = 0;
    for (int y = 0; y < label.height(); ++y)
        for (int x = 0; x < label.width(); ++x)
            white += label.pixelColor(x, y).red() > 200;
    EXPECT_GT(white, 20);
}
