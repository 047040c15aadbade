// Frame composition: real renders read back pixel by pixel, the recording
// context for what is (or is not) drawn, and the image files a paint
// writes. ImageMagick's view of every format is checked through the render
// command, failed writes and the PSD a paint writes with the exports.

#include "render/draw2d_context.h"
#include "render/image_writers.h"
#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

constexpr QRgb main_colour = qRgba(0x3F, 0x7F, 0x7F, 255);
constexpr QRgb tint_colour = qRgba(0x95, 0xB8, 0xB8, 255);

struct composition : workspace_test {
    nano2d::draw2d_context ctx;
    QTemporaryDir dir;

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
    std::string path(const std::string& name) {
        return dir.filePath(QString::fromStdString(name)).toStdString();
    }
    // Requests a save and paints once.
    bool save(const std::string& file) {
        global.request_save_to_file(file::path(file));
        global.defer_build_frame(true, &ctx);
        return global.last_save_succeeded();
    }
    const image& frame() { return *global.get_composite_image(); }
    QRgb at(int x, int y) { return frame().pixel(x, y); }
    // The frame's pixels at the points given: "main" and "tint" for the
    // default cabinet colours, "clear" where nothing is, AARRGGBB else.
    std::string at(std::initializer_list<QPoint> points) {
        std::string out;
        for (const QPoint& p : points) {
            const QRgb v = at(p.x(), p.y());
            out += out.empty() ? "" : " ";
            out += v == main_colour   ? "main"
                   : v == tint_colour ? "tint"
                   : qAlpha(v) == 0   ? "clear"
                                      : QString::number(v, 16).toUpper().toStdString();
        }
        return out;
    }
};

} // namespace

TEST_F(composition, CabinetsLandAtTheirPlaceOnTheRaster) {
    paper(1920, 1080);
    cabinets(8, 5, 128, 100, 50);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    ASSERT_TRUE(global.get_composite_image());
    EXPECT_EQ(frame().size(), QSize(1920, 1080));
    // The chequer from the layer's corner on, and nothing beside it.
    EXPECT_EQ(at({{164, 114}, {292, 114}, {292, 242}, {100, 50}, {99, 60}, {1125, 60}}),
              "main tint main main clear clear");
    EXPECT_GE(global.frame_image_wrap.handle, 1);
    EXPECT_TRUE(host.errors.empty());
}

TEST_F(composition, EmptyProjectIsTransparentAndTinyRastersAreOnePixel) {
    paper(64, 32);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    image clear(64, 32, frame().format());
    clear.fill(Qt::transparent);
    EXPECT_EQ(frame(), clear);

    auto* const same = global.get_composite_image().get();
    paper(0, -3);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(frame().size(), QSize(1, 1));
    EXPECT_EQ(global.get_composite_image().get(), same); // resized, never replaced
}

TEST_F(composition, LayerOnTheRasterEdgeLosesItsLastColumnAndRow) {
    paper(256, 128);
    cabinets(2, 1, 128);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at({{254, 126}, {255, 60}, {60, 127}}), "tint clear clear");
    paper(257, 129); // ends one pixel inside: drawn whole
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at({{255, 127}, {256, 60}}), "tint clear");
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
    EXPECT_EQ(at({{10, 10}, {70, 10}, {200, 10}}), "main FFFF0000 FF0000FF");
    top->set_hidden(true);
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at({{70, 10}, {200, 10}, {300, 10}}), "main tint clear");
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
    // The quarters of the 100 by 50 at (10, 20), and nothing beside it.
    EXPECT_EQ(at({{15, 25}, {105, 25}, {15, 65}, {105, 65}, {9, 25}, {111, 25}}),
              "FFFF0000 FF00FF00 FF0000FF FFFFFFFF clear clear");
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
    EXPECT_EQ(at({{64, 64}, {364, 64}}), "main clear");
    EXPECT_EQ(first->DrawBoxes, 1);
    EXPECT_EQ(second->DrawBoxes, 1); // written back as a truth value
    EXPECT_EQ(third->DrawBoxes, 0);
    // The write-back marks the layers, so every paint rebuilds meanwhile.
    EXPECT_TRUE(global.defer_build_frame(true, &ctx));

    host.only_current = false;
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at({{364, 64}}), "main");
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

// A one-off render keeps no layer frame: each is built, stacked and let go,
// the frame and the PSD are those of a paint that keeps them, and a later
// save with nothing changed builds them again.
TEST_F(composition, WithoutKeptFramesTheSameFrameAndNoLayerFrameStays) {
    paper(300, 200);
    cabinets(2, 1, 64, 10, 10);
    cabinets(2, 2, 50, 40, 30);
    ASSERT_TRUE(save(path("kept.psd")));
    const image kept = frame().copy();
    global.keep_layer_frames = false;
    for (const char* name : {"lean.psd", "again.psd"}) {
        ASSERT_TRUE(save(path(name)));
        EXPECT_EQ(frame(), kept);
        EXPECT_EQ(read_file(path(name)), read_file(path("kept.psd")));
        for (const auto& layer : global.current_project()->layers)
            EXPECT_FALSE(layer->get_offscreen());
    }
}

TEST_F(composition, ALayerOrRasterTooLargeStopsThePassAndKeepsTheSaveRequest) {
    const std::string out = path("frame.png");
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

    // A raster too large to allocate is refused the same way; the last
    // frame stays as it was.
    paper(40000, 10);
    EXPECT_FALSE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(host.errors.back(), "Offscreen allocated nullptr.");
    EXPECT_EQ(frame().size(), QSize(300, 200));
}

TEST_F(composition, RasterLabelDocksToTheCornerItTouched) {
    recording_context rec;
    paper(1920, 1080);
    global.raster_label_enabled = true;
    global.raster_label_x = 1920;
    global.raster_label_y = 1080;
    global.raster_label_lines = {"Stage left", "   ", "", "Main"};
    // A paint; where the label is then, and how often the palette was told.
    const auto label = [&] {
        rec.clear();
        global.set_changed();
        EXPECT_TRUE(global.defer_build_frame(true, &rec));
        return std::to_string(global.raster_label_x) + "," + std::to_string(global.raster_label_y) +
               " " + std::to_string(global.raster_label_width) + "x" +
               std::to_string(global.raster_label_height) + ", palette " +
               std::to_string(host.label_to_palette);
    };
    // Three lines at size 20: widest "Stage left" 100 + 20, 3 * 24 + 20.
    EXPECT_EQ(label(), "1800,988 120x92, palette 1");
    for (const char* call :
         {"rectangle 1800 988 120 92", "fill_color 7F000000", "text Stage left 1860 1010",
          "text Main 1860 1034", "text 1920x1080 1860 1058"})
        EXPECT_GE(rec.index_of(call), 0) << call;
    EXPECT_EQ(rec.text_call("Main")->target, "image 1920x1080");
    // Longer text: the label grows out of the corner it is docked to, and a
    // grown raster takes it to its new corner.
    global.raster_label_lines = {"A much longer line"};
    EXPECT_EQ(label(), "1720,1012 200x68, palette 2");
    paper(3840, 2160);
    EXPECT_EQ(label(), "3640,2092 200x68, palette 3");
    // Off the edges it stays where it is; its size is measured at 1 at least.
    global.raster_label_x = 100;
    global.raster_label_y = 50;
    global.raster_label_font_size = 0;
    EXPECT_EQ(label().substr(0, 6), "100,50");
    EXPECT_EQ(host.label_to_palette, 3);
    EXPECT_GE(rec.index_of("font_size 1"), 0);
}

TEST_F(composition, RasterLabelOnAnEmptyProjectIsTheOnlyThingDrawn) {
    paper(400, 200);
    global.raster_label_enabled = true;
    global.raster_label_x = 400;
    global.raster_label_y = 200;
    ASSERT_TRUE(global.defer_build_frame(true, &ctx));
    EXPECT_EQ(at({{10, 10}}), "clear");
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

TEST_F(composition, PngIsDrawnOverBlackAndTheCompositeStaysClear) {
    paper(320, 200);
    cabinets(1, 1, 64);
    ASSERT_TRUE(save(path("black.png")));
    QImage black(QString::fromStdString(path("black.png")));
    EXPECT_EQ(black.pixel(200, 100), qRgba(0, 0, 0, 255));
    EXPECT_EQ(black.pixel(10, 10), main_colour);
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());
    EXPECT_EQ(at({{200, 100}}), "clear");
}

TEST_F(composition, TgaAndBmpByteForByte) {
    // Bottom row first, B G R A, straight alpha (a fifth of 255 is exact
    // both ways).
    QImage img(3, 2, QImage::Format_ARGB32);
    const QRgb pixels[] = {qRgba(1, 2, 3, 255), qRgba(4, 5, 6, 255), qRgba(255, 0, 255, 51),
                           qRgba(7, 8, 9, 255), qRgba(0, 0, 0, 0),   qRgba(10, 11, 12, 255)};
    for (int i = 0; i < 6; ++i)
        img.setPixel(i % 3, i / 3, pixels[i]);
    const std::string tga = path("three_by_two.tga");
    ASSERT_TRUE(write_frame_image(img.convertToFormat(image_format), frame_file_kind::tga, true,
                                  tga, nullptr));
    EXPECT_TRUE(matches_golden(read_file(tga), "three_by_two.tga"));
    // BMP, written a band of rows at a time, is the file Qt's writer makes
    // (rows of three pixels padded to four bytes).
    const std::string bmp = path("three_by_two.bmp");
    ASSERT_TRUE(write_frame_image(img.convertToFormat(image_format), frame_file_kind::bmp, true,
                                  bmp, nullptr));
    QByteArray by_qt;
    QBuffer buffer(&by_qt);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(QImageWriter(&buffer, "bmp").write(img.convertToFormat(image_format)));
    EXPECT_EQ(read_file(bmp), by_qt.toStdString());

    // Written through a paint, it reads back with our own loader; the black
    // background is for PNG only.
    paper(320, 200);
    cabinets(1, 1, 64);
    ASSERT_TRUE(save(path("frame.tga")));
    pointer<image> back = load_image_file(path("frame.tga"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->size(), QSize(320, 200));
    EXPECT_EQ(back->pixel(10, 10), main_colour);
    EXPECT_EQ(qAlpha(back->pixel(200, 100)), 0);
}
