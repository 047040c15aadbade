// The image files a paint writes: the black background rule and our own
// TGA byte for byte. ImageMagick's view of every format is checked through
// the render command, failed writes and the PSD a paint writes with the
// exports.

#include "render/draw2d_context.h"
#include "render/image_writers.h"
#include "support/workspace_fixtures.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct image_files : workspace_test {
    QTemporaryDir dir;
    nano2d::draw2d_context ctx;

    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        global.set_paper_width(320);
        global.set_paper_height(200);
        // One 64 x 64 cabinet at the top left, nothing else.
        auto l = global.new_boxes_layer();
        show_only_cabinets(*l);
        set_grid(*l, 1, 1, 64, 64);
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
};

} // namespace

// The files themselves, black background and all, are read by ImageMagick
// in the render command's checks; the composite on screen stays clear.
TEST_F(image_files, PngIsDrawnOverBlackAndTheCompositeStaysClear) {
    ASSERT_TRUE(save(path("black.png")));
    QImage black(QString::fromStdString(path("black.png")));
    EXPECT_EQ(black.pixel(200, 100), qRgba(0, 0, 0, 255));
    EXPECT_EQ(black.pixel(10, 10), qRgba(0x3F, 0x7F, 0x7F, 255));
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());
    EXPECT_EQ(qAlpha(global.get_composite_image()->pixel(200, 100)), 0);
}

TEST_F(image_files, TgaIsUncompressed32BitWithAlphaByteForByte) {
    // Bottom row first, B G R A, straight alpha (a fifth of 255 is exact
    // both ways).
    QImage img(3, 2, QImage::Format_ARGB32);
    const QRgb pixels[] = {qRgba(1, 2, 3, 255), qRgba(4, 5, 6, 255), qRgba(255, 0, 255, 51),
                           qRgba(7, 8, 9, 255), qRgba(0, 0, 0, 0),   qRgba(10, 11, 12, 255)};
    for (int i = 0; i < 6; ++i)
        img.setPixel(i % 3, i / 3, pixels[i]);
    EXPECT_TRUE(matches_golden(encode_tga(img.convertToFormat(image_format)), "three_by_two.tga"));

    // Written through a paint, it reads back with our own loader.
    ASSERT_TRUE(save(path("frame.tga")));
    pointer<image> back = load_image_file(path("frame.tga"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->size(), QSize(320, 200));
    EXPECT_EQ(back->pixel(10, 10), qRgba(0x3F, 0x7F, 0x7F, 255));
    EXPECT_EQ(qAlpha(back->pixel(200, 100)), 0); // black background is for PNG only
}
