// Placeholders until rendering lands; delete as implemented.
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"
#include "render/nano2d.h"

namespace Vantora_TesserinePro {
void ImageWrap::defer_load_image(nano2d::context*) {}
void ImageWrap::setData(nano2d::context*, int, int, const void*, int) {}
void ImageWrap::setData(nano2d::context*, const image*) {}
OffscreenDraw::OffscreenDraw(nano2d::context*& context, image*) : m_saved(context), m_variable(&context) {}
OffscreenDraw::~OffscreenDraw() { *m_variable = m_saved; }
ImageWrap* app_layer::get_nano2d_image(nano2d::context*) { return &image_wrap; }
void boxes_layer::build_frame(nano2d::context*, error_callback) {}
void boxes_layer::draw_boxes(nano2d::context*) {}
void boxes_layer::draw_boxes_grid(nano2d::context*) {}
void boxes_layer::draw_boxes_names(nano2d::context*) {}
void boxes_layer::draw_circle(nano2d::context*) {}
void boxes_layer::draw_dotted(nano2d::context*) {}
void boxes_layer::draw_snake(nano2d::context*) {}
void boxes_layer::draw_label(nano2d::context*, int, int, const string&, color::color, color::color, const string&, int, int) {}
void boxes_layer::draw_triangle(nano2d::context*, float, float, const Snake::box&, const Snake::box&, bool, bool) {}
void boxes_layer::draw_triangle_right(nano2d::context*, float, float) {}
void boxes_layer::draw_triangle_left(nano2d::context*, float, float) {}
void boxes_layer::draw_triangle_up(nano2d::context*, float, float) {}
void boxes_layer::draw_triangle_down(nano2d::context*, float, float) {}
void boxes_layer::resetProjectEndsCounter() {}
void image_layer::build_frame(nano2d::context*, error_callback) {}
bool Global::defer_build_frame(bool, nano2d::context*) { return false; }
void Global::request_save_to_file(const file::path& path) { save_request_path = path; }
} // namespace Vantora_TesserinePro
