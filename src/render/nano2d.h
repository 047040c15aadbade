#pragma once
// The drawing operations every drawing routine uses. The production context
// (draw2d_context.h) paints with QPainter on a QImage or a widget; tests use a
// recording one.

#include "core/color.h"
#include "core/types.h"

#include <memory>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {
namespace nano2d {

// Text alignment bits; with no vertical bit the text sits on its baseline.
enum align : int {
    align_left = 1,
    align_center = 2,
    align_right = 4,
    align_top = 8,
    align_middle = 16,
    align_bottom = 32,
};

// Pixel layout of create_image: the low byte of flags is a QImage::Format,
// 0 standing for the drawing targets' premultiplied ARGB32. Other bits are
// free for the library.
constexpr int image_format_mask = 0xFF;
inline int image_flags_for(QImage::Format format) {
    return format == image_format ? 0 : (int(format) & image_format_mask);
}
inline QImage::Format image_format_of(int flags) {
    const int f = flags & image_format_mask;
    return f == 0 ? image_format : QImage::Format(f);
}

// Keeper of image handles. Every context that shares one accepts the same
// handles; a handle given back is forgotten by all of them.
class handle_owner {
  public:
    virtual ~handle_owner() = default;
    virtual void forget_image(int handle) = 0;
};

struct paint {
    int image = -1;
    float x = 0, y = 0, width = 0, height = 0, angle = 0, alpha = 1;
};

class context {
  public:
    virtual ~context() = default;

    // Restore takes stroke and fill colours, stroke width, transform and
    // text settings back to what the matching save found.
    virtual void save() = 0;
    virtual void restore() = 0;
    virtual void translate(float x, float y) = 0;

    virtual void begin_path() = 0;
    virtual void close_path() = 0;
    virtual void move_to(float x, float y) = 0;
    virtual void line_to(float x, float y) = 0;
    virtual void rectangle(float x, float y, float width, float height) = 0;
    virtual void circle(float cx, float cy, float radius) = 0;
    // Paints the outline at once: a band of line_width pixels inside the
    // pixels x .. x + width and y .. y + height (both ends included).
    virtual void rectangle_outline(int x, int y, int width, int height, color::color c,
                                   int line_width) = 0;
    virtual void fill() = 0;
    virtual void stroke() = 0;

    virtual void fill_color(color::color c) = 0;
    virtual void stroke_color(color::color c) = 0;
    virtual void fill_paint(const paint& p) = 0;
    virtual void stroke_width(float width) = 0;
    // Dashes of on pixels drawn and off pixels left along a stroke; an on
    // length of 0 or less draws solid lines again.
    virtual void stroke_dash(float on, float off) = 0;

    virtual void font_size(float size) = 0;
    virtual void font_face(const std::string& face) = 0;
    virtual void text_align(int align) = 0;
    // Drawn in the fill colour, anchored as text_align says.
    virtual void text(const std::string& text, float x, float y) = 0;
    // Bounds of the line box of text anchored at x, y: left, top, right,
    // bottom. Returns the advance width.
    virtual float text_bounds(const std::string& text, float x, float y, float bounds[4]) = 0;
    // Widest line's width and the line height of the current font.
    virtual void measure_lines(const std::vector<std::string>& lines, float& widest,
                               float& line_height) = 0;

    // A paint that fills with the image placed at x, y and scaled to
    // width by height.
    virtual paint image_pattern(int handle, float x, float y, float width, float height,
                                float angle, float alpha) = 0;
    virtual int load_image(const std::string& file_name, int flags) = 0;
    // Handles are 1 and above; 0 or below means refused. The pixels must
    // stay alive while the handle is drawn (they are not copied).
    virtual int create_image(int width, int height, int flags, const void* pixels, int stride) = 0;
    virtual bool read_image_size(int handle, int& width, int& height) = 0;
    virtual void update_image(int handle, const void* pixels) = 0;
    // Forgets a handle that nobody will draw again.
    virtual void delete_image(int handle) = 0;
    // Who keeps this context's handles; null when the context does not
    // say, and its handles are then never given back.
    virtual std::shared_ptr<handle_owner> image_owner() { return nullptr; }

    // A context of the same kind that draws into target, sharing this
    // context's fonts and image handles (what OffscreenDraw switches to).
    // A null or empty target gives a context that draws nothing.
    virtual std::unique_ptr<context> make_offscreen(image* target) = 0;
};

} // namespace nano2d
} // namespace Vantora_TesserinePro
