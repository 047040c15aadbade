#pragma once
// The wall as seen from behind: a layer's frame mirrored left to right,
// with its texts drawn readable at their mirrored places. Pixels are
// mirrored as pixels, so that without texts the rear frame is the front one
// mirrored exactly; texts are held back while the frame is drawn and put on
// afterwards.

#include "render/nano2d.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class app_layer;
class Global;

namespace nano2d {

// A text a holding context did not draw, with what it would have been
// drawn with.
struct held_text {
    std::string text;
    float x = 0, y = 0; // the anchor, translation included
    float size = 14;
    std::string face = "sans";
    int align = align_left;
    color::color fill;
};

// Draws everything through another context except texts, which it keeps.
// Contexts it makes for offscreen targets keep into the same list.
class text_holding_context : public context {
  public:
    explicit text_holding_context(context* inner);

    const std::vector<held_text>& held() const { return *m_held; }

    void save() override;
    void restore() override;
    void translate(float x, float y) override;
    void begin_path() override { m_inner->begin_path(); }
    void close_path() override { m_inner->close_path(); }
    void move_to(float x, float y) override { m_inner->move_to(x, y); }
    void line_to(float x, float y) override { m_inner->line_to(x, y); }
    void rectangle(float x, float y, float w, float h) override { m_inner->rectangle(x, y, w, h); }
    void circle(float cx, float cy, float r) override { m_inner->circle(cx, cy, r); }
    void rectangle_outline(int x, int y, int w, int h, color::color c, int line_width) override {
        m_inner->rectangle_outline(x, y, w, h, c, line_width);
    }
    void fill() override { m_inner->fill(); }
    void stroke() override { m_inner->stroke(); }
    void fill_color(color::color c) override;
    void stroke_color(color::color c) override { m_inner->stroke_color(c); }
    void fill_paint(const paint& p) override { m_inner->fill_paint(p); }
    void stroke_width(float w) override { m_inner->stroke_width(w); }
    void stroke_dash(float on, float off) override { m_inner->stroke_dash(on, off); }
    void font_size(float size) override;
    void font_face(const std::string& face) override;
    void text_align(int align) override;
    void text(const std::string& text, float x, float y) override;
    float text_bounds(const std::string& text, float x, float y, float bounds[4]) override {
        return m_inner->text_bounds(text, x, y, bounds);
    }
    void measure_lines(const std::vector<std::string>& lines, float& widest,
                       float& line_height) override {
        m_inner->measure_lines(lines, widest, line_height);
    }
    paint image_pattern(int handle, float x, float y, float w, float h, float angle,
                        float alpha) override {
        return m_inner->image_pattern(handle, x, y, w, h, angle, alpha);
    }
    int load_image(const std::string& file_name, int flags) override {
        return m_inner->load_image(file_name, flags);
    }
    int create_image(int w, int h, int flags, const void* pixels, int stride) override {
        return m_inner->create_image(w, h, flags, pixels, stride);
    }
    bool read_image_size(int handle, int& w, int& h) override {
        return m_inner->read_image_size(handle, w, h);
    }
    void update_image(int handle, const void* pixels) override {
        m_inner->update_image(handle, pixels);
    }
    void delete_image(int handle) override { m_inner->delete_image(handle); }
    std::shared_ptr<handle_owner> image_owner() override { return m_inner->image_owner(); }
    std::unique_ptr<context> make_offscreen(image* target) override;

  private:
    struct state {
        float tx = 0, ty = 0;
        held_text look;
    };
    text_holding_context(std::unique_ptr<context> own, std::shared_ptr<std::vector<held_text>>);

    std::unique_ptr<context> m_own;
    context* m_inner;
    std::shared_ptr<std::vector<held_text>> m_held;
    state m_state;
    std::vector<state> m_saved;
};

// Draws held texts on a target of the given width, each where the mirror
// puts its line box, and reading as before.
void draw_mirrored_texts(context* target, const std::vector<held_text>& texts, float width);

} // namespace nano2d

// Builds layer's frame as seen from behind: its own frame mirrored about
// its vertical centre line, its texts readable.
void build_rear_frame(app_layer& layer, nano2d::context* context,
                      const std::function<void(const std::string&)>& on_error);

// Each layer's rear map, by stack index: the screen layer's own frame seen
// from behind (port numbers counted as the frame counts them), an empty
// image for other layers. The layers are copied: the workspace keeps its
// frames.
std::vector<image> rear_screen_maps(const Global& global);

} // namespace Vantora_TesserinePro
