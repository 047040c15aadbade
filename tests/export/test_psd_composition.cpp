// A PSD request carried out by a frame build: every composed layer lands in
// the file in stack order, hidden ones do not, and the merged image is the
// composite; the same bytes as the writer makes of those layers by itself.

#include "export_helpers.h"
#include "render/draw2d_context.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

TEST(psd_through_frame, ComposedLayersInStackOrderHiddenLeftOut) {
    recording_host host;
    Global global{&host};
    global.m_project = std::make_shared<project>();
    global.set_paper_width(40);
    global.set_paper_height(20);
    auto bottom = add_screen(global, "Bottom", 0, 0, 2, 1, 8);
    add_screen(global, "Hidden", 4, 4, 1, 1, 8)->set_hidden(true);
    auto picture = add_picture(global, "Picture", 30, -2, 6, 5);
    auto source = std::make_shared<image>(3, 3, image_format);
    source->fill(qRgba(0, 0, 128, 128));
    picture->set_image(source);
    auto top = add_screen(global, "Top", 12, 6, 3, 2, 4);

    QTemporaryDir dir;
    const std::string target = (dir.path() + "/frame.psd").toStdString();
    global.request_save_to_file(target);
    nano2d::draw2d_context context;
    ASSERT_TRUE(global.defer_build_frame(true, &context));
    EXPECT_TRUE(global.get_save_to_file_requested_info().empty());

    PSDSaver saver;
    saver.add_layer(bottom);
    saver.add_layer(picture);
    saver.add_layer(top);
    ASSERT_EQ(saver.layers().size(), 3u);
    // The merged image is the composite's colour without its alpha.
    const QImage merged = global.get_composite_image()->convertToFormat(QImage::Format_RGBA8888);
    const std::string expected = (dir.path() + "/expected.psd").toStdString();
    ASSERT_TRUE(saver.savePSD(merged.constBits(), 40, 20, int(merged.bytesPerLine()), expected));
    EXPECT_EQ(read_file(target), read_file(expected));
    EXPECT_EQ(psd_layer_count(read_file(target)), 3);
}
