#pragma once
// The production drawing context: paints antialiased with QPainter, on a
// QImage (layer images, the composite) or on any other paint device such as
// a widget, with the same calls for both.

#include "render/nano2d.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <map>
#include <memory>
#include <unordered_map>

namespace Vantora_TesserinePro {
namespace nano2d {

class draw2d_context;

// The width at which a stroke of path is drawn on a target covering area:
// width itself, or less where a wider line could change no pixel of area.
float bounded_stroke_width(const QPainterPath& path, const QRectF& area, float width);

// Fonts and image handles, shared by a context and every offscreen context
// made from it. It also knows which paint devices have a painter open, so
// that nested offscreen scopes on one image share it (a device takes only
// one painter at a time).
class font_sink : public handle_owner {
  public:
    struct font_entry {
        QFont font;
        QFontMetricsF metrics;
        float ascent, descent, line_height;
    };
    // The face at a pixel size (at least 1). "sans" is DejaVu Sans through
    // fontconfig.
    static const font_entry& font(const std::string& face, int pixel_size);

    struct image_entry {
        QImage image; // wraps the caller's pixels, or owns a loaded file
        int stride = 0;
        QImage::Format format = image_format;
    };
    image_entry* find_image(int handle);
    int add_image(image_entry entry);
    void remove_image(int handle) { m_images.erase(handle); }
    void forget_image(int handle) override { remove_image(handle); }
    std::size_t image_count() const { return m_images.size(); }

  private:
    friend class draw2d_context;
    struct surface;
    std::shared_ptr<surface> surface_for(QPaintDevice* device);

    std::unordered_map<int, image_entry> m_images;
    int m_next_handle = 1;
    std::map<QPaintDevice*, std::weak_ptr<surface>> m_surfaces;
};

class draw2d_context : public context {
  public:
    // A context that draws nothing but measures text and holds image
    // handles: enough for a headless frame build.
    draw2d_context();
    // Opens a painter on device (a QImage or a widget in its paint event)
    // for the life of the context.
    explicit draw2d_context(QPaintDevice* device);
    // Draws through a painter that the caller has open (a widget's paint
    // event); the painter must outlive the context.
    explicit draw2d_context(QPainter& painter);
    ~draw2d_context() override;

    // Rebinds the context to another target, keeping fonts and image
    // handles. A widget keeps one context for its life and binds the
    // painter of each paint event (then nullptr when done), so that the
    // handles of layers and frame stay valid from paint to paint.
    void set_graphics(QPaintDevice* device);
    void set_graphics(QPainter& painter);
    std::shared_ptr<font_sink> get_font_sink() const { return m_sink; }
    // The painter this context draws through; null when it draws nothing.
    QPainter* painter() const;
    void set_font_sink(std::shared_ptr<font_sink> sink);

    void save() override;
    void restore() override;
    void translate(float x, float y) override;

    void begin_path() override;
    void close_path() override;
    void move_to(float x, float y) override;
    void line_to(float x, float y) override;
    void rectangle(float x, float y, float width, float height) override;
    void circle(float cx, float cy, float radius) override;
    void rectangle_outline(int x, int y, int width, int height, color::color c,
                           int line_width) override;
    void fill() override;
    void stroke() override;

    void fill_color(color::color c) override;
    void stroke_color(color::color c) override;
    void fill_paint(const paint& p) override;
    void stroke_width(float width) override;
    void stroke_dash(float on, float off) override;

    void font_size(float size) override;
    void font_face(const std::string& face) override;
    void text_align(int align) override;
    void text(const std::string& text, float x, float y) override;
    float text_bounds(const std::string& text, float x, float y, float bounds[4]) override;
    void measure_lines(const std::vector<std::string>& lines, float& widest,
                       float& line_height) override;

    paint image_pattern(int handle, float x, float y, float width, float height, float angle,
                        float alpha) override;
    int load_image(const std::string& file_name, int flags) override;
    int create_image(int width, int height, int flags, const void* pixels, int stride) override;
    bool read_image_size(int handle, int& width, int& height) override;
    void update_image(int handle, const void* pixels) override;
    void delete_image(int handle) override;
    std::shared_ptr<handle_owner> image_owner() override { return m_sink; }

    std::unique_ptr<context> make_offscreen(image* target) override;

  private:
    draw2d_context(std::shared_ptr<font_sink> sink, std::shared_ptr<font_sink::surface> surface);
    const font_sink::font_entry& current_font();
    // Left edge and baseline of a text of advance width at the anchor.
    void place_text(const font_sink::font_entry& f, float advance, float x, float y, float& left,
                    float& baseline) const;

    std::shared_ptr<font_sink> m_sink;
    std::shared_ptr<font_sink::surface> m_surface;
};

} // namespace nano2d
} // namespace Vantora_TesserinePro
