#include "render/rear_view.h"

#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/history.h"
#include "render/draw2d_context.h"
#include "render/image_wrap.h"

namespace Vantora_TesserinePro {
namespace nano2d {

text_holding_context::text_holding_context(context* inner)
    : m_inner(inner), m_held(std::make_shared<std::vector<held_text>>()) {}

text_holding_context::text_holding_context(std::unique_ptr<context> own,
                                           std::shared_ptr<std::vector<held_text>> held)
    : m_own(std::move(own)), m_inner(m_own.get()), m_held(std::move(held)) {}

void text_holding_context::save() {
    m_saved.push_back(m_state);
    m_inner->save();
}

void text_holding_context::restore() {
    if (!m_saved.empty()) {
        m_state = m_saved.back();
        m_saved.pop_back();
    }
    m_inner->restore();
}

void text_holding_context::translate(float x, float y) {
    m_state.tx += x;
    m_state.ty += y;
    m_inner->translate(x, y);
}

void text_holding_context::fill_color(color::color c) {
    m_state.look.fill = c;
    m_inner->fill_color(c);
}

void text_holding_context::font_size(float size) {
    m_state.look.size = size;
    m_inner->font_size(size);
}

void text_holding_context::font_face(const std::string& face) {
    m_state.look.face = face;
    m_inner->font_face(face);
}

void text_holding_context::text_align(int align) {
    m_state.look.align = align;
    m_inner->text_align(align);
}

void text_holding_context::text(const std::string& text, float x, float y) {
    held_text t = m_state.look;
    t.text = text;
    t.x = x + m_state.tx;
    t.y = y + m_state.ty;
    m_held->push_back(std::move(t));
}

std::unique_ptr<context> text_holding_context::make_offscreen(image* target) {
    return std::unique_ptr<context>(
        new text_holding_context(m_inner->make_offscreen(target), m_held));
}

void draw_mirrored_texts(context* target, const std::vector<held_text>& texts, float width) {
    for (const held_text& t : texts) {
        target->font_size(t.size);
        target->font_face(t.face);
        target->text_align(t.align);
        target->fill_color(t.fill);
        float bounds[4];
        target->text_bounds(t.text, t.x, t.y, bounds);
        // The line box from left to right goes to width - right .. width - left.
        target->text(t.text, t.x + (width - bounds[2]) - bounds[0], t.y);
    }
}

} // namespace nano2d

void build_rear_frame(app_layer& layer, nano2d::context* context,
                      const std::function<void(const std::string&)>& on_error) {
    nano2d::text_holding_context holding(context);
    layer.build_frame(&holding, on_error);
    image* frame = layer.get_offscreen().get();
    if (!frame || frame->isNull()) return;
    frame->mirror(true, false);
    OffscreenDraw draw(context, frame);
    nano2d::draw_mirrored_texts(context, holding.held(), float(frame->width()));
}

std::vector<image> rear_screen_maps(const Global& global) {
    nano2d::draw2d_context context;
    const pointer<project> owner = global.current_project_pointer();
    if (owner) owner->ends_counter = 1;
    std::vector<image> maps;
    for (long long i = 0; i < global.get_layers_count(); ++i) {
        const pointer<app_layer> layer = global.get_layer(i);
        maps.emplace_back();
        if (!layer || layer->get_layer_type() != e_layer_boxes) continue;
        // A hidden screen is not in the frame and moves no port number on.
        const int counter = owner ? owner->ends_counter : 1;
        const pointer<app_layer> copy = copy_layer(*layer);
        copy->set_references(const_cast<Global*>(&global), owner);
        build_rear_frame(*copy, &context, nullptr);
        if (copy->get_offscreen()) maps.back() = *copy->get_offscreen();
        if (owner && layer->is_hidden()) owner->ends_counter = counter;
    }
    return maps;
}

} // namespace Vantora_TesserinePro
