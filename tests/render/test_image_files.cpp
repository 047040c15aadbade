// The image files a paint writes: formats by extension, the black
// background rule, our own TGA byte for byte and whole-or-nothing writes.
// ImageMagick's view of every format is checked through the render
// command, and the PSD a paint writes with the exports.

#include "render/draw2d_context.h"
#include "render/image_writers.h"
#include "support/workspace_fixtures.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
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
    static bool exists(const std::string& p) { return QFile::exists(QString::fromStdString(p)); }
};

} // namespace

TEST_F(image_files, PngIsDrawnOverBlackUnlessTransparent) {
    ASSERT_TRUE(save(path("black.png")));
    QImage black(QString::fromStdString(path("black.png")));
    ASSERT_FALSE(black.isNull());
    EXPECT_EQ(black.size(), QSize(320, 200));
    EXPECT_EQ(black.pixel(200, 100), qRgba(0, 0, 0, 255));
    EXPECT_EQ(black.pixel(10, 10), qRgba(0x3F, 0x7F, 0x7F, 255));
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());

    global.black_background = false;
    ASSERT_TRUE(save(path("clear.png")));
    QImage clear(QString::fromStdString(path("clear.png")));
    EXPECT_EQ(qAlpha(clear.pixel(200, 100)), 0);
    EXPECT_EQ(clear.pixel(10, 10), qRgba(0x3F, 0x7F, 0x7F, 255));
    // The composite itself never shows the black.
    EXPECT_EQ(qAlpha(global.get_composite_image()->pixel(200, 100)), 0);
}

TEST_F(image_files, TgaIsUncompressed32BitWithAlphaByteForByte) {
    QImage img(3, 2, QImage::Format_ARGB32);
    img.setPixel(0, 0, qRgba(1, 2, 3, 255));
    img.setPixel(1, 0, qRgba(4, 5, 6, 255));
    img.setPixel(2, 0, qRgba(200, 100, 50, 128));
    img.setPixel(0, 1, qRgba(7, 8, 9, 255));
    img.setPixel(1, 1, qRgba(0, 0, 0, 0));
    img.setPixel(2, 1, qRgba(10, 11, 12, 255));
    const std::string tga = encode_tga(img.convertToFormat(image_format));
    const unsigned char header[18] = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 2, 0, 32, 8};
    ASSERT_EQ(tga.size(), 18u + 3 * 2 * 4 + 26);
    EXPECT_EQ(tga.substr(0, 18), std::string(reinterpret_cast<const char*>(header), 18));
    // Bottom row first, B G R A, straight alpha.
    const unsigned char pixels[24] = {9, 8, 7, 255, 0, 0, 0, 0,   12, 11,  10,  255,
                                      3, 2, 1, 255, 6, 5, 4, 255, 50, 100, 200, 128};
    std::string expected_pixels(reinterpret_cast<const char*>(pixels), 24);
    // Un-premultiplying rounds: allow the translucent pixel one step.
    for (int i = 0; i < 24; ++i)
        EXPECT_NEAR((unsigned char)tga[18 + i], (unsigned char)expected_pixels[i], i >= 20 ? 1 : 0)
            << "byte " << i;
    EXPECT_EQ(tga.substr(18 + 24), std::string("\0\0\0\0\0\0\0\0TRUEVISION-XFILE.\0", 26));

    // Written through a paint, it reads back with our own loader.
    ASSERT_TRUE(save(path("frame.tga")));
    pointer<image> back = load_image_file(path("frame.tga"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->size(), QSize(320, 200));
    EXPECT_EQ(back->pixel(10, 10), qRgba(0x3F, 0x7F, 0x7F, 255));
    EXPECT_EQ(qAlpha(back->pixel(200, 100)), 0); // black background is for PNG only
}

TEST_F(image_files, BmpAndJpgTakeTheCompositeAsItStands) {
    ASSERT_TRUE(save(path("frame.bmp")));
    QImage bmp(QString::fromStdString(path("frame.bmp")));
    ASSERT_FALSE(bmp.isNull());
    EXPECT_EQ(bmp.size(), QSize(320, 200));
    EXPECT_EQ(qRed(bmp.pixel(10, 10)), 0x3F);

    ASSERT_TRUE(save(path("frame.JPG"))); // the extension is lower-cased
    // JPEG at quality 90: the bytes the encoder makes of the composite so.
    QByteArray expected;
    QBuffer buffer(&expected);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpg");
    writer.setQuality(90);
    ASSERT_TRUE(writer.write(*global.get_composite_image()));
    EXPECT_EQ(read_file(path("frame.JPG")), expected.toStdString());
}
