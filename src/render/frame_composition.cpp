// The paint-time frame build: rebuild changed layers, stack them into the
// composite, put the raster label on top and write a requested image file.

#include "core/diagnostics.h"
#include "core/large_allocator.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "export/psd_saver.h"
#include "render/image_wrap.h"
#include "render/image_writers.h"
#include "render/nano2d.h"
#include "render/rear_view.h"

#include <algorithm>

namespace Vantora_TesserinePro {

namespace {

// Puts a layer's DrawBoxes back after "Draw Current Only" cleared it, also
// when the build leaves by an exception.
class draw_boxes_switch {
  public:
    draw_boxes_switch(boxes_layer* layer) : m_layer(layer) {
        if (!m_layer) return;
        m_was_on = m_layer->DrawBoxes != 0;
        m_layer->DrawBoxes = 0;
        m_layer->set_changed();
    }
    ~draw_boxes_switch() {
        if (!m_layer) return;
        m_layer->DrawBoxes = m_was_on ? 1 : 0;
        m_layer->set_changed();
    }
    draw_boxes_switch(const draw_boxes_switch&) = delete;
    draw_boxes_switch& operator=(const draw_boxes_switch&) = delete;

  private:
    boxes_layer* m_layer;
    bool m_was_on = false;
};

// Sets a layer's kept frame aside while its rear frame is built and stacked,
// and puts it back after.
class kept_frame_aside {
  public:
    explicit kept_frame_aside(app_layer& layer) : m_layer(layer) { swap(); }
    ~kept_frame_aside() {
        m_layer.release_frame();
        swap();
    }
    kept_frame_aside(const kept_frame_aside&) = delete;
    kept_frame_aside& operator=(const kept_frame_aside&) = delete;

  private:
    void swap() {
        std::swap(m_layer.offscreen, m_offscreen);
        m_layer.image_wrap.swap(m_wrap);
    }
    app_layer& m_layer;
    pointer<image> m_offscreen;
    ImageWrap m_wrap;
};

} // namespace

void Global::request_save_to_file(const file::path& path) {
    save_request_path = path;
    m_host->post_main_window_redraw();
}

bool Global::defer_build_frame(bool main, nano2d::context* context) {
    std::lock_guard<std::recursive_mutex> lock(frame_mutex);

    // The list is copied: a callback of the build may touch the project.
    const pointer_array<app_layer> layers =
        main ? (m_project ? m_project->layers : pointer_array<app_layer>()) : presets;
    const bool any_changed = take_changes(layers);
    // Kept layer frames are all built before the composite is touched: a
    // layer that cannot draw is reported to the user, the pass stops with
    // the last frame whole, and the flag stays up, so a later paint tries
    // again. Without kept frames each layer is built as it is stacked.
    const bool build_while_stacking = main && !keep_layer_frames;
    if (any_changed && main && keep_layer_frames && !rebuild_shown_layers(layers, context))
        return stop_after_failed_build();

    const file::path request = save_request_path;
    const bool saving = !request.empty();
    const bool rear = main && rear_view;
    if (!rear) rear_composite_image.reset();
    if (!any_changed && !saving && composite_image && !composite_image->isNull() &&
        (!rear || rear_composite_image))
        return false;
    if (!fit_to_raster(composite_image)) return stop_after_failed_build();

    const frame_file_kind kind =
        saving ? frame_file_kind_for(request.final_extension_lower()) : frame_file_kind::none;
    std::unique_ptr<PSDSaver> psd;
    if (kind == frame_file_kind::psd) psd = std::make_unique<PSDSaver>();
    {
        OffscreenDraw draw(context, composite_image.get());
        // A rear frame's file holds the rear layers.
        if (!stack_layers_into_composite(context, rear ? nullptr : psd.get(), build_while_stacking))
            return stop_after_failed_build();
        if (raster_label_enabled) draw_raster_label(context, false);
    }
    frame_image_wrap.setData(context, composite_image.get());
    if (rear && !compose_rear(context, psd.get())) return stop_after_failed_build();
    ++m_frame_generation;

    if (saving) write_frame_file(request, kind, psd.get());
    return true;
}

bool Global::take_changes(const pointer_array<app_layer>& layers) {
    bool any_changed = changed.exchange(0) != 0;
    for (const auto& layer : layers)
        if (layer && layer->has_changed()) any_changed = true;
    return any_changed;
}

bool Global::stop_after_failed_build() {
    m_host->reload_all(*this, true);
    changed.store(1);
    return false;
}

void Global::begin_layer_builds() {
    output_debug_string("has changed");
    if (m_project) m_project->ends_counter = 1;
}

bool Global::build_layer_frame(const pointer<app_layer>& layer, nano2d::context* context,
                               bool rear) {
    bool failed = false;
    auto report = [this, &failed](const string& message) {
        show_error(message);
        failed = true;
    };
    boxes_layer* cleared = nullptr;
    if (m_host->is_only_current() && layer != current_layer())
        cleared = dynamic_cast<boxes_layer*>(layer.get());
    draw_boxes_switch switch_off(cleared);
    if (rear)
        build_rear_frame(*layer, context, report);
    else
        layer->build_frame(context, report);
    return !failed;
}

bool Global::rebuild_shown_layers(const pointer_array<app_layer>& layers,
                                  nano2d::context* context) {
    begin_layer_builds();
    for (const auto& layer : layers)
        if (layer && !layer->is_hidden() && !build_layer_frame(layer, context)) return false;
    return true;
}

bool Global::fit_to_raster(pointer<image>& composite) {
    // The composite keeps its identity for the life of the workspace; only
    // its pixels are replaced when the raster changes size.
    const int W = std::max(get_paper_width(), 1);
    const int H = std::max(get_paper_height(), 1);
    if (!composite || composite->isNull() || composite->width() != W || composite->height() != H) {
        image fresh;
        if (image_size_allowed(W, H)) fresh = new_drawing_target(W, H);
        if (fresh.isNull()) {
            show_error("Offscreen allocated nullptr.");
            return false;
        }
        if (composite)
            *composite = std::move(fresh);
        else
            composite = std::make_shared<image>(std::move(fresh));
    }
    composite->fill(Qt::transparent);
    return true;
}

bool Global::compose_rear(nano2d::context* context, PSDSaver* psd) {
    if (!fit_to_raster(rear_composite_image)) return false;
    OffscreenDraw draw(context, rear_composite_image.get());
    const pointer_array<app_layer> stack =
        m_project ? m_project->layers : pointer_array<app_layer>();
    // Every layer is built anew for the rear, one at a time.
    begin_layer_builds();
    for (const auto& layer : stack) {
        if (!layer || layer->is_hidden()) continue;
        kept_frame_aside aside(*layer);
        if (!build_layer_frame(layer, context, true)) return false;
        stack_layer(context, layer, psd, true);
    }
    if (raster_label_enabled) draw_raster_label(context, true);
    return true;
}

bool Global::stack_layers_into_composite(nano2d::context* frame, PSDSaver* psd, bool build_each) {
    const pointer_array<app_layer> stack =
        m_project ? m_project->layers : pointer_array<app_layer>();
    if (build_each) begin_layer_builds();
    for (const auto& layer : stack) {
        if (!layer || layer->is_hidden()) continue;
        if (build_each && !build_layer_frame(layer, frame)) return false;
        stack_layer(frame, layer, psd, false);
        // Built for this frame only: at most one layer frame lives beside
        // the composite.
        if (build_each) layer->release_frame();
    }
    return true;
}

void Global::stack_layer(nano2d::context* frame, const pointer<app_layer>& layer, PSDSaver* psd,
                         bool rear) {
    const int W = std::max(get_paper_width(), 1);
    const int H = std::max(get_paper_height(), 1);
    const enum_layer type = layer->get_layer_type();
    if (type != e_layer_boxes && type != e_layer_image) return;
    const pointer<image> offscreen = layer->get_offscreen();
    if (!offscreen) return;
    const ImageWrap* wrap = layer->get_nano2d_image(frame);
    const long long ox = layer->get_offset_x(), oy = layer->get_offset_y();
    const long long w = layer->get_full_width(), h = layer->get_full_height();
    // A layer reaching the raster's right or bottom edge exactly loses its
    // last column or row: that is how frames have always been cut.
    const long long drawn_w = w + ox < W ? w : std::max<long long>(W - ox - 1, 1);
    const long long drawn_h = h + oy < H ? h : std::max<long long>(H - oy - 1, 1);
    // From behind, the layer's (mirrored) frame and the part of it drawn
    // sit where the mirror about the raster's centre line puts them.
    const long long image_x = rear ? W - ox - offscreen->width() : ox;
    const long long drawn_x = rear ? W - ox - drawn_w : ox;
    if (psd) psd->add_layer(layer, rear ? std::optional<long long>(W - ox - w) : std::nullopt);
    const nano2d::paint p =
        frame->image_pattern(wrap->handle, float(image_x), float(oy), float(offscreen->width()),
                             float(offscreen->height()), 0.0f, 1.0f);
    frame->begin_path();
    frame->rectangle(float(drawn_x), float(oy), float(drawn_w), float(drawn_h));
    frame->fill_paint(p);
    frame->fill();
}

void Global::draw_raster_label(nano2d::context* frame, bool rear) {
    const int W = std::max(get_paper_width(), 1);
    const int H = std::max(get_paper_height(), 1);
    const long long right = (long long)raster_label_x + raster_label_width;
    const long long bottom = (long long)raster_label_y + raster_label_height;
    const bool at_right = right == W || right == raster_label_drawn_width;
    const bool at_bottom = bottom == H || bottom == raster_label_drawn_height;
    raster_label_drawn_width = W;
    raster_label_drawn_height = H;
    string_array lines;
    get_raster_label_lines(lines);
    frame->font_size(std::max(float(raster_label_font_size), 1.0f));
    frame->font_face("sans");
    float widest = 0.0f, line_height = 0.0f;
    frame->measure_lines(lines, widest, line_height);
    const float width = widest + 20.0f;
    const float height = line_height * float(lines.size()) + 20.0f;
    raster_label_width = int(width);
    raster_label_height = int(height);
    // A label docked to an edge stays docked when it or the raster
    // changes size (the edge of the raster it was last drawn on counts).
    if (at_right) raster_label_x = W - raster_label_width;
    if (at_bottom) raster_label_y = H - raster_label_height;
    if (at_right || at_bottom) m_host->raster_label_settings_to_palette(*this);
    const float x = rear ? float(W) - float(raster_label_x) - width : float(raster_label_x);
    const float y = float(raster_label_y);
    frame->begin_path();
    frame->rectangle(x, y, width, height);
    frame->fill_color(color::color::from_word(0x7f000000));
    frame->fill();
    frame->text_align(nano2d::align_center | nano2d::align_middle);
    frame->fill_color(color::opaque_white);
    frame->stroke_color(color::opaque_white);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].empty()) continue;
        frame->text(lines[i], x + width * 0.5f,
                    y + line_height * 0.5f + 10.0f + float(i) * line_height);
    }
}

void Global::write_frame_file(const file::path& request, frame_file_kind kind, PSDSaver* psd) {
    const image& frame = rear_composite_image ? *rear_composite_image : *composite_image;
    if (kind == frame_file_kind::psd) {
        // PSD channels carry colours as drawn: straight alpha, top row first.
        m_last_save_ok = psd->savePSD(frame, request);
        if (!m_last_save_ok)
            m_last_write_error = psd->last_error().empty() ? "the PSD file could not be written"
                                                           : psd->last_error();
    } else if (kind == frame_file_kind::none) {
        m_last_save_ok = false;
        m_last_write_error =
            "no image type for the extension \"" + request.final_extension_lower() + "\"";
    } else {
        string error;
        m_last_save_ok = write_frame_image(frame, kind, black_background, request.string(), &error);
        if (!m_last_save_ok) m_last_write_error = error;
    }
    // The request is gone whether the writer managed or not.
    save_request_path = file::path();
}

} // namespace Vantora_TesserinePro
