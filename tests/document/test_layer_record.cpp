// The key:value record shared by both layer kinds, and the image layer.
// The bytes written are in the project goldens.

#include "support/workspace_fixtures.h"

#include <QBuffer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;

namespace {

struct layers : Vantora_TesserinePro::testing::workspace_test {
    pointer<image_layer> image() {
        return std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    }
};

std::string png_hex(int w, int h, QRgb fill) {
    QImage img(w, h, QImage::Format_ARGB32);
    img.fill(fill);
    img.setPixel(0, 0, qRgba(1, 2, 3, 4));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "PNG");
    return bytes.toHex().toStdString();
}

} // namespace

TEST_F(layers, RecordReadingRules) {
    auto layer = image();
    layer->apply_layer_info("Name:a:b\rOffsetX:12abc\r\nOffsetY:-3\nno colon line\nHidden:1");
    EXPECT_EQ(layer->get_stored_name(), "a:b"); // the value keeps its colons
    EXPECT_EQ(layer->get_offset_x(), 12);
    EXPECT_EQ(layer->get_offset_y(), -3);
    EXPECT_TRUE(layer->is_hidden());
    layer->apply_layer_info("Name:");
    EXPECT_EQ(layer->get_stored_name(), "");
    layer->apply_layer_info("CustomPath:1,2|3\nUnknown:5\n:empty key"); // ignored without a word
    EXPECT_EQ(layer->get_custom_path_string(), "");
}

TEST_F(layers, DataDecodesAndEncodesLosslessly) {
    auto layer = image();
    const std::string hex = png_hex(3, 2, qRgba(200, 100, 50, 128));
    layer->apply_layer_info("Width:30\nHeight:20\nData:" + hex + "\nAspectRatio:0\n");
    ASSERT_NE(layer->get_image(), nullptr);
    EXPECT_EQ(layer->get_real_width(), 3);
    EXPECT_EQ(layer->get_width(), 30);
    EXPECT_FALSE(layer->getMaintainAspectRatio());

    auto again = image();
    again->apply_layer_info(layer->get_layer_info());
    ASSERT_NE(again->get_image(), nullptr);
    EXPECT_EQ(again->get_image()->pixel(0, 0), qRgba(1, 2, 3, 4));
    EXPECT_EQ(again->get_image()->pixel(2, 1), qRgba(200, 100, 50, 128));
    // Upper and lower case digits both read.
    auto lower = image();
    lower->load_from_hex_data(
        QString::fromStdString(again->getImageAsHex()).toLower().toStdString());
    EXPECT_NE(lower->get_image(), nullptr);
}

TEST_F(layers, PhotographsOverQtsDefaultDecodingCapReadBack) {
    // 8000 x 6000 decodes to 183 MiB, above the 128 MiB that Qt allows by
    // default, yet its file is far below the record limit.
    QImage photo(8000, 6000, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(photo.scanLine(y));
        for (int x = 0; x < photo.width(); ++x)
            row[x] = qRgb(x % 256, y % 256, 90);
    }
    QByteArray jpg;
    QBuffer buffer(&jpg);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(photo.save(&buffer, "JPG", 90));
    ASSERT_LT(jpg.size(), 8 << 20);

    auto layer = image();
    layer->apply_layer_info("Width:800\nHeight:600\nData:" + jpg.toHex().toStdString() + "\n");
    ASSERT_NE(layer->get_image(), nullptr);
    EXPECT_EQ(layer->get_real_width(), 8000);
    EXPECT_EQ(layer->get_real_height(), 6000);
    EXPECT_EQ(layer->get_width(), 800);

    // The picture file of "Add Image Layer" and of the logo: the same.
    QTemporaryDir dir;
    const std::string file = dir.filePath("photo.jpg").toStdString();
    ASSERT_TRUE(Vantora_TesserinePro::testing::write_file(file, jpg.toStdString()));
    auto loaded = load_image_file(file);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->size(), QSize(8000, 6000));
}
