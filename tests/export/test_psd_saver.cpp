// The layered PSD writer: the file is a contract with other programs, so it
// is checked byte for byte.

#include "export/psd_saver.h"
#include "export_helpers.h"
#include "support/test_support.h"

#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// A straight RGBA composite where every byte tells its place.
struct composite {
    int width, height, stride;
    std::vector<unsigned char> pixels;
    composite(int w, int h, int padding = 0) : width(w), height(h), stride(w * 4 + padding) {
        pixels.assign(std::size_t(stride) * h, 0xEE); // padding must never reach the file
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                for (int c = 0; c < 4; ++c)
                    pixels[std::size_t(y * stride + x * 4 + c)] =
                        (unsigned char)(c * 64 + y * 16 + x);
    }
    // The merged image section: compression word and the three planes.
    std::string merged() const {
        bytes b;
        b.u16(0);
        for (int c = 0; c < 3; ++c)
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    b.u8(pixels[std::size_t(y * stride + x * 4 + c)]);
        return b.s;
    }
};

// The 83-byte record of a layer of w by h at (x, y) with a 15-byte name field.
std::string record(std::uint32_t x, std::uint32_t y, std::uint32_t w, std::uint32_t h,
                   const std::string& name_field) {
    const std::uint32_t size = w * h + 2;
    bytes b;
    b.u32(y).u32(x).u32(y + h).u32(x + w).u16(4);
    b.u16(0xFFFF).u32(size).u16(0).u32(size).u16(1).u32(size).u16(2).u32(size);
    b.text("8BIMnorm").u8(255).u8(0).u8(0).u8(0).u32(25).u32(0).u32(0);
    b.u8(15).text(name_field).u8(0);
    return b.s;
}

struct psd_file : ::testing::Test {
    QTemporaryDir dir;
    std::string path(const std::string& name = "out.psd") const {
        return (dir.path() + "/").toStdString() + name;
    }
    std::string save(PSDSaver& saver, const composite& c, const std::string& name = "out.psd") {
        EXPECT_TRUE(saver.savePSD(c.pixels.data(), c.width, c.height, c.stride, path(name)))
            << saver.last_error();
        return read_file(path(name));
    }
    // The record of the first layer in a file with one layer.
    static std::string first_record(const std::string& file) { return file.substr(44, 83); }
};

} // namespace

TEST_F(psd_file, NoLayers) {
    PSDSaver saver;
    composite c(3, 2);
    const std::string file = save(saver, c);
    const std::string expected =
        psd_head(3, 2) + bytes{}.u32(10).u32(6).u16(0).u32(0).s + c.merged();
    EXPECT_EQ(file, expected);
    EXPECT_EQ(file.size(), 34u + 14u + 2u + 3u * 6u);
}

TEST_F(psd_file, OneLayerWholeFile) {
    PSDSaver saver;
    const unsigned char layer[] = {1, 2, 3, 4, 5, 6, 7, 8};
    saver.add_layer(1, 0, 2, 1, layer, 8, "A");
    composite c(3, 2);
    const std::string file = save(saver, c);

    bytes expected;
    expected.text(psd_head(3, 2)).u32(99 + 10).u32(99 + 6).u16(1);
    expected.text(record(1, 0, 2, 1, "A              "));
    expected.u16(0).u8(4).u8(8); // alpha
    expected.u16(0).u8(1).u8(5); // red
    expected.u16(0).u8(2).u8(6); // green
    expected.u16(0).u8(3).u8(7); // blue
    expected.u32(0);             // global layer mask
    expected.text(c.merged());
    EXPECT_EQ(file, expected.s);
}

TEST_F(psd_file, LayersInOrderAndTotalsAddUp) {
    PSDSaver saver;
    std::vector<unsigned char> a(3 * 2 * 4, 0x11), b(1 * 4 * 4, 0x22);
    saver.add_layer(0, 0, 3, 2, a.data(), 12, "bottom");
    saver.add_layer(5, 6, 1, 4, b.data(), 4, "top");
    composite c(4, 4);
    const std::string file = save(saver, c);

    const std::uint32_t total = (3 * 2 * 4 + 91) + (1 * 4 * 4 + 91);
    EXPECT_EQ(file.substr(34, 10), bytes{}.u32(total + 10).u32(total + 6).u16(2).s);
    EXPECT_EQ(file.substr(44, 83), record(0, 0, 3, 2, "bottom         "));
    EXPECT_EQ(file.substr(127, 83), record(5, 6, 1, 4, "top            "));
    // Section length counts from behind its own field to the merged image.
    const std::size_t merged_at = 34 + 4 + (total + 10);
    EXPECT_EQ(file.substr(merged_at), c.merged());
    EXPECT_EQ(file.substr(merged_at - 4, 4), bytes{}.u32(0).s);
    // Channel data: the bottom layer's four arrays, then the top layer's.
    EXPECT_EQ(file.substr(210, 8), bytes{}.u16(0).repeat(0x11, 6).s);
    EXPECT_EQ(file.substr(210 + 4 * 8, 6), bytes{}.u16(0).repeat(0x22, 4).s);
}

TEST_F(psd_file, WideRowsSplitLikeNarrowOnes) {
    // 37 pixels: two blocks of sixteen and a tail of five, with padding.
    composite layer(37, 3, 12), c(37, 2, 4);
    PSDSaver saver;
    saver.add_layer(0, 0, 37, 3, layer.pixels.data(), layer.stride, "W");
    const std::string file = save(saver, c);
    bytes channels;
    for (int ch : {3, 0, 1, 2}) {
        channels.u16(0);
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 37; ++x)
                channels.u8(layer.pixels[std::size_t(y * layer.stride + x * 4 + ch)]);
    }
    EXPECT_EQ(file.substr(44 + 83, channels.s.size()), channels.s);
    EXPECT_EQ(file.substr(file.size() - c.merged().size()), c.merged());
    EXPECT_EQ(file.size(), 44 + 83 + channels.s.size() + 4 + c.merged().size());
}

TEST_F(psd_file, LargeLayerKeepsEveryByte) {
    // Channels of megabytes take the huge-page road of the allocator.
    const unsigned w = 1920, h = 1024;
    std::vector<unsigned char> px(std::size_t(w) * h * 4);
    for (std::size_t i = 0; i < px.size(); ++i)
        px[i] = (unsigned char)(i * 7 + i / 4099);
    PSDSaver saver;
    saver.add_layer(3, 4, w, h, px.data(), int(w * 4), "Big");
    const auto& d = saver.layers().at(0);
    ASSERT_EQ(d.alpha.size(), std::size_t(w) * h + 2);
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < std::size_t(w) * h; ++i)
        wrong += d.red[2 + i] != px[4 * i] || d.green[2 + i] != px[4 * i + 1] ||
                 d.blue[2 + i] != px[4 * i + 2] || d.alpha[2 + i] != px[4 * i + 3];
    EXPECT_EQ(wrong, 0u);
    composite c(4, 4);
    const std::string file = save(saver, c);
    EXPECT_EQ(file.size(), 44 + 83 + 4 * (std::size_t(w) * h + 2) + 4 + c.merged().size());
    EXPECT_EQ(file.substr(44 + 83, 2 + 3), bytes{}.u16(0).list({px[3], px[7], px[11]}).s);
}

TEST_F(psd_file, TallCompositeIsWrittenInBands) {
    // The merged planes are gathered a band of rows at a time: 700 rows of
    // 1000 pixels make three bands, the last one short.
    PSDSaver saver;
    const unsigned char px[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    saver.add_layer(0, 0, 2, 1, px, 8, "A");
    composite c(1000, 700, 4);
    const std::string file = save(saver, c);
    EXPECT_EQ(file.size(), 44 + 83 + 4 * 4 + 4 + c.merged().size());
    EXPECT_EQ(file.substr(44 + 83 + 16 + 4), c.merged());
}

TEST_F(psd_file, NamesArePaddedOrCutAtFifteenBytes) {
    PSDSaver saver;
    const unsigned char px[4] = {};
    saver.add_layer(0, 0, 1, 1, px, 4, "");
    saver.add_layer(0, 0, 1, 1, px, 4, "exactly15bytes!");
    saver.add_layer(0, 0, 1, 1, px, 4, "sixteen bytes!!!");
    // A multi-byte character is cut through, whatever the encoding.
    saver.add_layer(0, 0, 1, 1, px, 4, "abcdefghijklmn\xC3\xA9");
    composite c(1, 1);
    const std::string file = save(saver, c);
    auto name_at = [&](int i) { return file.substr(44 + 83 * i + 66, 17); };
    EXPECT_EQ(name_at(0), std::string("\x0F") + "NoName         " + '\0');
    EXPECT_EQ(name_at(1), std::string("\x0F") + "exactly15bytes!" + '\0');
    EXPECT_EQ(name_at(2), std::string("\x0F") + "sixteen bytes!!" + '\0');
    EXPECT_EQ(name_at(3), std::string("\x0F") + "abcdefghijklmn\xC3" + '\0');
    EXPECT_EQ(saver.layers()[0].name, "NoName");
}

TEST_F(psd_file, NegativeOffsetsAndOversizeLayersKeepTheirPlace) {
    PSDSaver saver;
    std::vector<unsigned char> px(5 * 3 * 4, 0);
    saver.add_layer(unsigned(-3), unsigned(-2), 5, 3, px.data(), 20, "out");
    saver.add_layer(1, 1, 5, 3, px.data(), 20, "big");
    composite c(2, 2);
    const std::string file = save(saver, c);
    EXPECT_EQ(file.substr(44, 16), bytes{}.u32(0xFFFFFFFE).u32(0xFFFFFFFD).u32(1).u32(2).s);
    EXPECT_EQ(file.substr(127, 16), bytes{}.u32(1).u32(1).u32(4).u32(6).s);
    EXPECT_EQ(file.substr(14, 8), bytes{}.u32(2).u32(2).s); // header keeps the raster
}

TEST_F(psd_file, LayersAreCopiesTakenWhenAdded) {
    PSDSaver saver;
    unsigned char px[4] = {1, 2, 3, 4};
    saver.add_layer(0, 0, 1, 1, px, 4, "L");
    px[0] = 99;
    const auto& d = saver.layers().at(0);
    EXPECT_EQ(plain(d.red), (std::vector<unsigned char>{0, 0, 1}));
    EXPECT_EQ(plain(d.alpha), (std::vector<unsigned char>{0, 0, 4}));
}

// ------------------------------------------------------------ failures

TEST_F(psd_file, BadCompositeIsRefused) {
    PSDSaver saver;
    composite c(2, 2);
    EXPECT_FALSE(saver.savePSD(nullptr, 2, 2, 8, path()));
    EXPECT_FALSE(saver.savePSD(c.pixels.data(), 0, 2, 8, path()));
    EXPECT_FALSE(saver.savePSD(c.pixels.data(), 2, -1, 8, path()));
    EXPECT_FALSE(saver.savePSD(c.pixels.data(), 2, 2, 4, path())); // rows overlap
    EXPECT_TRUE(files_in(dir).isEmpty());
}

TEST_F(psd_file, MoreLayersThanTheCountFieldHoldsAreRefused) {
    // The count is a signed 16-bit field: 32767 layers fit, one more would
    // be cut to a wrong count, so such a file is not written at all.
    PSDSaver saver;
    const unsigned char px[4] = {1, 2, 3, 4};
    for (int i = 0; i < 32767; ++i)
        saver.add_layer(0, 0, 1, 1, px, 4, "L");
    composite c(1, 1);
    EXPECT_EQ(save(saver, c, "many.psd").substr(42, 2), bytes{}.u16(32767).s);
    saver.add_layer(0, 0, 1, 1, px, 4, "L");
    EXPECT_FALSE(saver.savePSD(c.pixels.data(), 1, 1, 4, path("too_many.psd")));
    EXPECT_FALSE(saver.last_error().empty());
    EXPECT_EQ(files_in(dir), QStringList{"many.psd"});
}

// ------------------------------------------------------------ from layers

namespace {

struct psd_workspace : psd_file {
    recording_host host;
    Global global{&host};
    psd_workspace() { global.m_project = std::make_shared<project>(); }
};

} // namespace

TEST_F(psd_workspace, UnpremultiplyMatchesQtForEveryValue) {
    // Every valid premultiplied pair of colour and alpha, transparent black
    // included, against Qt's own conversion to straight RGBA.
    auto layer = add_screen(global, "All", 0, 0, 1, 1, 256);
    paint_offscreen(*layer, [](int c, int a) {
        const int v = std::min(c, a);
        return qRgba(v, (v * 7) % (a + 1), a - v, a);
    });
    const QImage straight = layer->get_offscreen()->convertToFormat(QImage::Format_RGBA8888);
    PSDSaver saver;
    saver.add_layer(layer);
    const auto& d = saver.layers().at(0);
    int mismatches = 0;
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x) {
            const unsigned char* s = straight.constScanLine(y) + x * 4;
            const std::size_t i = 2 + std::size_t(y) * 256 + x;
            mismatches +=
                d.red[i] != s[0] || d.green[i] != s[1] || d.blue[i] != s[2] || d.alpha[i] != s[3];
        }
    EXPECT_EQ(mismatches, 0);
}

TEST_F(psd_workspace, OtherImageFormatsAreConverted) {
    auto layer = add_picture(global, "Pic", 0, 0, 2, 1);
    layer->offscreen = std::make_shared<image>(2, 1, QImage::Format_RGB888);
    layer->offscreen->setPixel(0, 0, qRgb(1, 2, 3));
    layer->offscreen->setPixel(1, 0, qRgb(4, 5, 6));
    PSDSaver saver;
    saver.add_layer(layer);
    const auto& d = saver.layers().at(0);
    EXPECT_EQ(plain(d.red), (std::vector<unsigned char>{0, 0, 1, 4}));
    EXPECT_EQ(plain(d.alpha), (std::vector<unsigned char>{0, 0, 255, 255}));
}

TEST_F(psd_workspace, ImageLayerLooksLikeScreenLayer) {
    auto screen = add_screen(global, "Same", -4, 3, 2, 1, 2); // 4 by 2
    auto picture = add_picture(global, "Same", -4, 3, 4, 2);
    auto pixel = [](int x, int y) { return qRgba(x * 10, y * 20, 5, 255); };
    paint_offscreen(*screen, pixel);
    paint_offscreen(*picture, pixel);
    PSDSaver one, two;
    one.add_layer(screen);
    two.add_layer(picture);
    composite c(4, 4);
    EXPECT_EQ(save(one, c, "screen.psd"), save(two, c, "picture.psd"));
    const std::string file = read_file(path("screen.psd"));
    EXPECT_EQ(first_record(file), record(std::uint32_t(-4), 3, 4, 2, "Same           "));
}

TEST_F(psd_workspace, LayersWithoutOffscreenAreLeftOut) {
    auto drawn = add_screen(global, "Drawn", 0, 0, 1, 1);
    auto never = add_screen(global, "Never", 0, 0, 1, 1);
    paint_offscreen(*drawn, [](int, int) { return qRgba(0, 0, 0, 255); });
    PSDSaver saver;
    saver.add_layer(pointer<app_layer>());
    saver.add_layer(never);
    saver.add_layer(drawn);
    ASSERT_EQ(saver.layers().size(), 1u);
    EXPECT_EQ(saver.layers()[0].name, "Drawn");
}

TEST_F(psd_workspace, LayerTakesFullSizeAndOffset) {
    // 3 columns of 2 with a half column: 5 pixels wide, placed off the raster.
    auto layer = add_screen(global, "", 7, -1, 3, 2, 2);
    layer->HalfColumns.set(0);
    ASSERT_EQ(layer->get_full_width(), 5);
    paint_offscreen(*layer, [](int x, int) { return qRgba(x, x, x, 255); });
    PSDSaver saver;
    saver.add_layer(layer);
    const auto& d = saver.layers().at(0);
    EXPECT_EQ(d.x, 7u);
    EXPECT_EQ(d.y, 0xFFFFFFFFu);
    EXPECT_EQ(d.width, 5u);
    EXPECT_EQ(d.height, 4u);
    EXPECT_EQ(d.name, "NoName");
    EXPECT_EQ(d.red.size(), 22u);
    EXPECT_EQ(d.red[2 + 5 + 4], 4); // second row, last column
}

TEST_F(psd_workspace, StaleSmallerOffscreenLeavesTheRestTransparent) {
    auto layer = add_screen(global, "Grown", 0, 0, 1, 1, 2);
    paint_offscreen(*layer, [](int, int) { return qRgba(9, 9, 9, 255); });
    layer->Columns = 2; // 4 wide now, the image is still 2 wide
    PSDSaver saver;
    saver.add_layer(layer);
    const auto& d = saver.layers().at(0);
    EXPECT_EQ(plain(d.alpha), (std::vector<unsigned char>{0, 0, 255, 255, 0, 0, 255, 255, 0, 0}));
}

TEST_F(psd_workspace, ImageMagickReadsMergedImageAndLayers) {
    const QString identify = QStandardPaths::findExecutable("identify");
    if (identify.isEmpty()) GTEST_SKIP() << "ImageMagick's identify is not installed";
    auto a = add_screen(global, "Left wall", 0, 0, 2, 1, 4); // 8 by 4
    auto b = add_picture(global, "Logo pic", 10, 2, 6, 6);
    paint_offscreen(*a, [](int x, int) { return qRgba(255, x * 30, 0, 255); });
    paint_offscreen(*b, [](int, int y) { return qRgba(0, 0, y * 20, 128); });
    PSDSaver saver;
    saver.add_layer(a);
    saver.add_layer(b);
    composite c(16, 8);
    save(saver, c);

    QProcess run;
    run.start(identify, {QString::fromStdString(path())});
    ASSERT_TRUE(run.waitForFinished(30000));
    ASSERT_EQ(run.exitCode(), 0) << run.readAllStandardError().toStdString();
    const QStringList lines =
        QString::fromUtf8(run.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << lines.join('\n').toStdString();
    EXPECT_TRUE(lines[0].contains(" PSD 16x8 ")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(" 8x4 8x4+0+0 ")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].contains(" 6x6 6x6+10+2 ")) << lines[2].toStdString();
}
