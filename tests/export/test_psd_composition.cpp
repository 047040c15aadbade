// A PSD request carried out by a frame build: every composed layer lands in
// the file in stack order, hidden ones do not, and the merged image is the
// composite.

#include "export_helpers.h"
#include "render/draw2d_context.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

std::uint32_t be32(const std::string& s, std::size_t at) {
    return std::uint32_t((unsigned char)s[at]) << 24 |
           std::uint32_t((unsigned char)s[at + 1]) << 16 |
           std::uint32_t((unsigned char)s[at + 2]) << 8 | std::uint32_t((unsigned char)s[at + 3]);
}

// The four channel arrays of an image as the file holds them.
std::string channels_of(const QImage& offscreen) {
    const QImage rgba = offscreen.convertToFormat(QImage::Format_RGBA8888);
    bytes b;
    for (int ch : {3, 0, 1, 2}) {
        b.u16(0);
        for (int y = 0; y < rgba.height(); ++y)
            for (int x = 0; x < rgba.width(); ++x)
                b.u8(rgba.constScanLine(y)[x * 4 + ch]);
    }
    return b.s;
}

struct psd_through_frame : workspace_test {
    nano2d::draw2d_context context;
    QTemporaryDir dir;
};

} // namespace

TEST_F(psd_through_frame, ComposedLayersInStackOrderHiddenLeftOut) {
    global.set_paper_width(40);
    global.set_paper_height(20);
    add_screen(global, "Bottom", 0, 0, 2, 1, 8);
    add_screen(global, "Hidden", 4, 4, 1, 1, 8)->set_hidden(true);
    auto picture = add_picture(global, "Picture", 30, -2, 6, 5);
    auto source = std::make_shared<image>(3, 3, image_format);
    source->fill(qRgba(0, 0, 128, 128));
    picture->set_image(source);
    add_screen(global, "Top", 12, 6, 3, 2, 4);

    const std::string target = (dir.path() + "/frame.psd").toStdString();
    global.request_save_to_file(target);
    ASSERT_TRUE(global.defer_build_frame(true, &context));
    const std::string file = read_file(target);
    ASSERT_GE(file.size(), 44u) << "no PSD was written";

    const char* names[] = {"Bottom         ", "Picture        ", "Top            "};
    const app_layer* layers[] = {global.get_layer(0).get(), global.get_layer(2).get(),
                                 global.get_layer(3).get()};
    EXPECT_EQ(file.substr(42, 2), bytes{}.u16(3).s);
    std::size_t channels_at = 44 + 3 * 83;
    for (int i = 0; i < 3; ++i) {
        const std::string rec = file.substr(44 + 83 * i, 83);
        const app_layer& layer = *layers[i];
        EXPECT_EQ(rec.substr(67, 15), names[i]);
        EXPECT_EQ(be32(rec, 0), std::uint32_t(layer.get_offset_y()));
        EXPECT_EQ(be32(rec, 4), std::uint32_t(layer.get_offset_x()));
        EXPECT_EQ(be32(rec, 8), std::uint32_t(layer.get_offset_y() + layer.get_full_height()));
        EXPECT_EQ(be32(rec, 12), std::uint32_t(layer.get_offset_x() + layer.get_full_width()));
        // The channels are the layer's frame as drawn, in straight colour.
        const std::string expected = channels_of(*layer.get_offscreen());
        EXPECT_EQ(file.substr(channels_at, expected.size()), expected) << names[i];
        channels_at += expected.size();
    }
    EXPECT_EQ(file.substr(channels_at, 4), bytes{}.u32(0).s);

    // The merged image is the composite's colour without its alpha.
    const QImage merged = global.get_composite_image()->convertToFormat(QImage::Format_RGBA8888);
    bytes planes;
    planes.u16(0);
    for (int ch = 0; ch < 3; ++ch)
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 40; ++x)
                planes.u8(merged.constScanLine(y)[x * 4 + ch]);
    EXPECT_EQ(file.substr(channels_at + 4), planes.s);
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());
}
