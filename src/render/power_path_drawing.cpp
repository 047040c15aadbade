// The power path: a dashed line through each circuit's cabinets in chain
// order, in a colour and a place of its own (a quarter cabinet down and to
// the right of the centres the data path runs through), so that both paths
// show together. Each circuit's first cabinet is labelled "C1 L1".

#include "document/boxes_layer.h"
#include "plan/power_plan.h"
#include "render/image_wrap.h"
#include "render/nano2d.h"

#include <algorithm>

namespace Vantora_TesserinePro {

namespace {

constexpr color::color power_path_color{255, 170, 0};
constexpr std::uint32_t label_background = 0xCC000000;

float at_x(const Snake::box& b) {
    return b.x0 + (b.x1 - b.x0) * 0.75f;
}
float at_y(const Snake::box& b) {
    return b.y0 + (b.y1 - b.y0) * 0.75f;
}

} // namespace

void boxes_layer::draw_power_path(nano2d::context* context) {
    if (!context) return;
    const plan::power_plan power = plan::plan_power(*this, true);
    if (power.failed || power.route.empty()) return;
    OffscreenDraw draw(context, offscreen.get());
    context->save();
    const float width = float(std::max(2, SnakeWidth / 2));
    context->stroke_color(power_path_color);
    context->stroke_width(width);
    context->stroke_dash(width * 3, width * 2);
    // Where each circuit starts, for its label.
    std::vector<const Snake::box*> starts;
    bool open = false;
    for (const Snake::box& b : power.route) {
        if (!open) {
            context->begin_path();
            context->move_to(at_x(b), at_y(b));
            starts.push_back(&b);
            open = true;
        } else {
            context->line_to(at_x(b), at_y(b));
        }
        if (b.is_port_end()) {
            context->stroke();
            open = false;
        }
    }
    if (open) context->stroke();
    context->stroke_dash(0, 0);

    const float size = float(std::max(10, BoxesNamesFontSize.get() * 3 / 4));
    context->font_size(size);
    context->font_face("sans");
    context->text_align(nano2d::align_center | nano2d::align_middle);
    for (std::size_t k = 0; k < starts.size() && k < power.circuits.size(); ++k) {
        const plan::circuit& c = power.circuits[k];
        const std::string text = "C" + std::to_string(c.number) + " " + plan::phase_name(c.phase);
        float x = at_x(*starts[k]), y = at_y(*starts[k]);
        float bounds[4];
        context->text_bounds(text, x, y, bounds);
        // Inside the layer, where the map can show it.
        const float right = float(get_width()) - 2 - bounds[2], left = 2 - bounds[0];
        const float shift = right < 0 ? std::max(right, left) : std::max(left, 0.0f);
        x += shift;
        bounds[0] += shift;
        bounds[2] += shift;
        context->begin_path();
        context->rectangle(bounds[0] - 2, bounds[1], bounds[2] - bounds[0] + 4,
                           bounds[3] - bounds[1]);
        context->fill_color(color::color::from_word(label_background));
        context->fill();
        context->fill_color(power_path_color);
        context->text(text, x, y);
    }
    context->restore();
}

} // namespace Vantora_TesserinePro
