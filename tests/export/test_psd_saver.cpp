// The layered PSD writer: the file is a contract with other programs, so it
// is checked byte for byte against golden files; and the PSD a paint writes.

#include "export/psd_saver.h"
#include "export_helpers.h"
#include "render/draw2d_context.h"
#include "support/test_support.h"

#include <QImage>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// A straight RGBA picture where every byte tells its place, with padding
// at the end of each row that must never reach the file.
struct composite {
    int width, height, stride;
    std::vector<unsigned char> pixels;
    composite(int w, int h, int padding = 0) : width(w), height(h), stride(w * 4 + padding) {
        pixels.assign(std::size_t(stride) * h, 0xEE);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                for (int c = 0; c < 4; ++c)
                    pixels[std::size_t(y * stride + x * 4 + c)] =
                        (unsigned char)(c * 64 + y * 16 + x);
    }
};

struct psd_file : workspace_test {
    QTemporaryDir dir;
    std::string path(const std::string& name = "out.psd") const {
        return (dir.path() + "/").toStdString() + name;
    }
    std::string save(PSDSaver& saver, const composite& c, const std::string& name = "out.psd") {
        EXPECT_TRUE(saver.savePSD(c.pixels.data(), c.width, c.height, c.stride, path(name)))
            << saver.last_error();
        return read_file(path(name));
    }
};

} // namespace

TEST_F(psd_file, GoldenFiles) {
    PSDSaver none;
    EXPECT_TRUE(matches_golden(save(none, composite(3, 2)), "psd_no_layers.psd"));

    // Layers in order: names empty, of 15 and 16 bytes and cut through a
    // multi-byte character; offsets off the raster and layers beyond it;
    // rows of 37 pixels (two blocks of sixteen and a tail) with padding.
    PSDSaver saver;
    const unsigned char two[] = {1, 2, 3, 4, 5, 6, 7, 8};
    saver.add_layer(1, 0, 2, 1, two, 8, "A");
    composite wide(37, 3, 12);
    saver.add_layer(0, 0, 37, 3, wide.pixels.data(), wide.stride, "");
    composite small(5, 3);
    saver.add_layer(unsigned(-3), unsigned(-2), 5, 3, small.pixels.data(), 20, "exactly15bytes!");
    saver.add_layer(1, 1, 5, 3, small.pixels.data(), 20, "sixteen bytes!!!");
    saver.add_layer(0, 0, 1, 1, two, 4, "abcdefghijklmn\xC3\xA9");
    EXPECT_TRUE(matches_golden(save(saver, composite(2, 2, 4)), "psd_layers.psd"));
    EXPECT_EQ(saver.layers()[1].name, "NoName");
}

TEST_F(psd_file, BadCompositesAndTooManyLayersAreRefused) {
    PSDSaver saver;
    composite c(2, 2);
    EXPECT_FALSE(saver.savePSD(nullptr, 2, 2, 8, path()));
    EXPECT_FALSE(saver.savePSD(c.pixels.data(), 0, 2, 8, path()));
    EXPECT_FALSE(saver.savePSD(c.pixels.data(), 2, -1, 8, path()));
    EXPECT_FALSE(saver.savePSD(c.pixels.data(), 2, 2, 4, path())); // rows overlap
    EXPECT_TRUE(files_in(dir).isEmpty());
    // The count is a signed 16-bit field: 32767 layers fit, one more would
    // be cut to a wrong count, so such a file is not written at all.
    const unsigned char px[4] = {1, 2, 3, 4};
    for (int i = 0; i < 32767; ++i)
        saver.add_layer(0, 0, 1, 1, px, 4, "L");
    composite one(1, 1);
    EXPECT_EQ(psd_layer_count(save(saver, one, "many.psd")), 32767);
    saver.add_layer(0, 0, 1, 1, px, 4, "L");
    EXPECT_FALSE(saver.savePSD(one.pixels.data(), 1, 1, 4, path("too_many.psd")));
    EXPECT_FALSE(saver.last_error().empty());
    EXPECT_EQ(files_in(dir), QStringList{"many.psd"});
}

// ------------------------------------------------------------ from layers

TEST_F(psd_file, UnpremultiplyMatchesQtForEveryValue) {
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

TEST_F(psd_file, LayersGiveTheirFullSizeOffsetAndName) {
    // 3 columns of 2 with a half column: 5 pixels wide, placed off the raster.
    auto layer = add_screen(global, "", 7, -1, 3, 2, 2);
    layer->HalfColumns.set(0);
    paint_offscreen(*layer, [](int x, int) { return qRgba(x, x, x, 255); });
    // A picture in another format, converted; and one never drawn, left out.
    auto picture = add_picture(global, "Pic", 0, 0, 2, 1);
    picture->offscreen = std::make_shared<image>(2, 1, QImage::Format_RGB888);
    picture->offscreen->setPixel(0, 0, qRgb(1, 2, 3));
    picture->offscreen->setPixel(1, 0, qRgb(4, 5, 6));
    PSDSaver saver;
    saver.add_layer(pointer<app_layer>());
    saver.add_layer(add_screen(global, "Never", 0, 0, 1, 1));
    saver.add_layer(layer);
    saver.add_layer(picture);
    ASSERT_EQ(saver.layers().size(), 2u);
    const auto& d = saver.layers()[0];
    EXPECT_EQ(std::make_tuple(d.x, d.y, d.width, d.height, d.name),
              std::make_tuple(7u, 0xFFFFFFFFu, 5u, 4u, std::string("NoName")));
    EXPECT_EQ(d.red.size(), 22u);
    EXPECT_EQ(d.red[2 + 5 + 4], 4); // second row, last column
    EXPECT_EQ(plain(saver.layers()[1].red), (std::vector<unsigned char>{0, 0, 1, 4}));
    EXPECT_EQ(plain(saver.layers()[1].alpha), (std::vector<unsigned char>{0, 0, 255, 255}));

    // A stale, smaller image leaves the rest transparent.
    layer->Columns = 4; // 7 wide now, the image is still 5 wide
    PSDSaver grown;
    grown.add_layer(layer);
    EXPECT_EQ(plain(grown.layers()[0].alpha).size(), 2u + 7 * 4);
    EXPECT_EQ(grown.layers()[0].alpha[2 + 4], 255);
    EXPECT_EQ(grown.layers()[0].alpha[2 + 5], 0);
}

// A PSD request carried out by a frame build: every composed layer lands in
// the file in stack order, hidden ones do not, and the merged image is the
// composite; the same bytes as the writer makes of those layers by itself.
TEST_F(psd_file, AFrameWritesItsComposedLayersInStackOrderHiddenLeftOut) {
    global.set_paper_width(40);
    global.set_paper_height(20);
    auto bottom = add_screen(global, "Bottom", 0, 0, 2, 1, 8);
    add_screen(global, "Hidden", 4, 4, 1, 1, 8)->set_hidden(true);
    auto picture = add_picture(global, "Picture", 30, -2, 6, 5);
    auto source = std::make_shared<image>(3, 3, image_format);
    source->fill(qRgba(0, 0, 128, 128));
    picture->set_image(source);
    auto top = add_screen(global, "Top", 12, 6, 3, 2, 4);
    global.request_save_to_file(path("frame.psd"));
    nano2d::draw2d_context context;
    ASSERT_TRUE(global.defer_build_frame(true, &context));
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());

    PSDSaver saver;
    saver.add_layer(bottom);
    saver.add_layer(picture);
    saver.add_layer(top);
    // The merged image is the composite's colour without its alpha.
    const QImage merged = global.get_composite_image()->convertToFormat(QImage::Format_RGBA8888);
    ASSERT_TRUE(saver.savePSD(merged.constBits(), 40, 20, int(merged.bytesPerLine()),
                              path("expected.psd")));
    EXPECT_EQ(read_file(path("frame.psd")), read_file(path("expected.psd")));
    EXPECT_EQ(psd_layer_count(read_file(path("frame.psd"))), 3);
}
