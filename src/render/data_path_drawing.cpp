#include "render/data_path_drawing.h"

#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/project.h"
#include "persistence/processor_library.h"
#include "plan/processors.h"
#include "render/image_wrap.h"
#include "render/nano2d.h"

#include <cstdio>
#include <stdexcept>

namespace Vantora_TesserinePro {

namespace {

// Twenty colours far apart from each other, so that neighbouring ports
// never look alike.
constexpr color::color indexed_colors[] = {
    {230, 25, 75},   {60, 180, 75},   {255, 225, 25}, {0, 130, 200},   {245, 130, 48},
    {145, 30, 180},  {70, 240, 240},  {240, 50, 230}, {210, 245, 60},  {250, 190, 212},
    {0, 128, 128},   {220, 190, 255}, {170, 110, 40}, {255, 250, 200}, {128, 0, 0},
    {170, 255, 195}, {128, 128, 0},   {0, 100, 0},    {0, 0, 128},     {128, 128, 128},
};
constexpr long long indexed_count = (long long)(sizeof indexed_colors / sizeof indexed_colors[0]);

float middle_x(const Snake::box& b) {
    return (b.x0 + b.x1) * 0.5f;
}
float middle_y(const Snake::box& b) {
    return (b.y0 + b.y1) * 0.5f;
}

bool is_hidden(const boxes_layer& layer, const Snake::box& b) {
    return layer.SkipBlankBoxes && layer.ExcludeBoxes.contains(b.id());
}

} // namespace

color::color _020GetColor(long long index) {
    long long i = index % indexed_count;
    if (i < 0) i += indexed_count;
    return indexed_colors[i];
}

color::color get_indexed_data_path_color(long long index) {
    return _020GetColor(index);
}

int indexed_color_count() {
    return int(indexed_count);
}

void draw_data_path(boxes_layer& layer, nano2d::context* context, const Snake::route& route,
                    const std::vector<chain_labels>* labels) {
    if (!context) return;
    context->save();
    if (!route.empty()) {
        long long color_index = -1;
        if (layer.UseRandomSnakeColor) {
            color_index = 0;
            context->stroke_color(get_indexed_data_path_color(0));
        } else {
            context->stroke_color(layer.SnakeColor);
        }
        context->stroke_width(float(layer.SnakeWidth));
        context->begin_path();
        // The first box starts the line even when it is hidden.
        context->move_to(middle_x(route.front()), middle_y(route.front()));
        bool new_port = false;
        for (const Snake::box& b : route) {
            if (is_hidden(layer, b)) continue;
            if (new_port) {
                context->stroke();
                if (color_index >= 0)
                    context->stroke_color(get_indexed_data_path_color(++color_index));
                context->begin_path();
                context->move_to(middle_x(b), middle_y(b));
            } else {
                context->line_to(middle_x(b), middle_y(b));
            }
            new_port = b.is_port_end();
        }
        context->stroke();
    }

    const auto start = color::color::from_word(port_start_color_word);
    const auto end = color::color::from_word(port_end_color_word);
    const auto arrow = color::color::from_word(arrow_color_word);
    const std::size_t n = route.size();
    // The chain of the box at hand: a chain ends at an end mark after at
    // least one shown box, as the port loads count them.
    std::size_t chain = 0;
    bool chain_open = false;
    const auto label = [&](bool at_end) -> const char* {
        if (!labels || chain >= labels->size()) return nullptr;
        return (at_end ? (*labels)[chain].end : (*labels)[chain].start).c_str();
    };
    for (std::size_t k = 0; k < n; ++k) {
        const Snake::box& b = route[k];
        if (is_hidden(layer, b)) {
            if (b.is_port_end() && chain_open) ++chain, chain_open = false;
            continue;
        }
        chain_open = true;
        context->begin_path();
        const float x = middle_x(b), y = middle_y(b);
        if (b.is_port_end()) {
            // A port that ends where the route begins has nothing to look
            // back at.
            if (k != 0) {
                context->stroke_color(end);
                context->fill_color(end);
                layer.draw_triangle(context, x, y, b, route[k - 1], false, true, label(true));
            }
            ++chain, chain_open = false;
        } else if (k + 1 == n) {
            // The route's last box without an end mark gets no marker.
        } else if (b.is_port_start()) {
            context->stroke_color(start);
            context->fill_color(start);
            layer.draw_triangle(context, x, y, b, route[k + 1], true, false, label(false));
        } else if (k % 3 == 2) {
            context->stroke_color(arrow);
            context->fill_color(arrow);
            layer.draw_triangle(context, x, y, b, route[k + 1], false, false);
        }
        context->close_path();
        context->stroke();
    }
    context->restore();
}

void boxes_layer::draw_snake(nano2d::context* context) {
    OffscreenDraw draw(context, offscreen.get());
    if (!uses_processor_keys()) {
        draw_data_path(*this, context, Snake::make_route(*this));
        return;
    }
    // The route and its labels as the plan of the whole wall has them: the
    // unit's ports are shared with the layers below.
    const pointer<project> owner = get_project();
    pointer_array<app_layer> stack;
    if (owner) stack = owner->layers;
    long long index = -1;
    for (std::size_t i = 0; i < stack.size(); ++i)
        if (stack[i].get() == this) index = (long long)i;
    if (index < 0) {
        // A layer of no project (a preset): planned alone, not owned here.
        stack = {pointer<app_layer>(pointer<app_layer>(), this)};
        index = 0;
    }
    static const processor_library builtin_only;
    const plan::processor_plan plan =
        plan::plan_processors(stack, global ? global->processor_models() : builtin_only, true);
    const plan::layer_plan* mine = plan.layer(index);
    if (!mine) return;
    if (!mine->routed) throw std::runtime_error(mine->message);
    std::vector<chain_labels> labels;
    for (const plan::chain_plan& c : mine->chains) {
        if (!c.main) break;
        labels.push_back({plan::port_label(*c.main),
                          c.backup ? plan::backup_label(*c.backup) : plan::port_label(*c.main)});
    }
    draw_data_path(*this, context, mine->route, labels.empty() ? nullptr : &labels);
}

void boxes_layer::draw_triangle(nano2d::context* context, float x, float y, const Snake::box& box,
                                const Snake::box& other, bool port_start, bool port_end,
                                const char* label) {
    if (!context) return;
    enum { right, left, up, down } direction;
    const bool vertical = box.y0 != other.y0;
    if (vertical)
        direction = other.y0 > box.y0 ? down : up;
    else
        direction = other.x1 > box.x0 ? right : left;
    switch (direction) {
    case right:
        draw_triangle_right(context, x, y);
        break;
    case left:
        draw_triangle_left(context, x, y);
        break;
    case up:
        draw_triangle_up(context, x, y);
        break;
    case down:
        draw_triangle_down(context, x, y);
        break;
    }

    // Port labels number the ports of the whole project: start and end of
    // one port share the number, and the end moves the counter on.
    pointer<project> owner = get_project();
    char text[32] = "";
    if (port_start) {
        context->fill_color(color::color::from_word(port_start_color_word));
        std::snprintf(text, sizeof text, "P%d", owner ? owner->ends_counter : 1);
    }
    if (port_end) {
        context->fill_color(color::color::from_word(port_end_color_word));
        std::snprintf(text, sizeof text, "R%d", owner ? owner->ends_counter : 1);
        if (owner) owner->ends_counter += 1;
    }
    if (label && text[0] != 0) std::snprintf(text, sizeof text, "%s", label);
    if (text[0] == 0) return;

    const float s = float(arrow_half_size);
    context->font_size(float(BoxesNamesFontSize.get()));
    context->font_face("sans");
    context->text_align(nano2d::align_left | nano2d::align_middle);
    float bounds[4];
    context->text_bounds(text, 0.0f, 0.0f, bounds);
    const float width = bounds[2] - bounds[0];
    context->text_align(nano2d::align_left | nano2d::align_middle);
    const float gap = float(2 * arrow_half_size + 3);
    const float wide = width + gap;
    if (!vertical) {
        // Behind the tip, on the side the path comes from.
        if (direction == right)
            context->text(text, x - wide, y);
        else
            context->text(text, x + gap, y);
    } else if (direction == down) {
        context->text_align(nano2d::align_left | nano2d::align_bottom);
        context->text(text, x + (wide - gap) * -0.5f, y - s);
    } else {
        context->text_align(nano2d::align_left | nano2d::align_top);
        context->text(text, x + (wide - gap) * -0.5f, y + s);
    }
}

void boxes_layer::draw_triangle_right(nano2d::context* context, float x, float y) {
    if (!context) return;
    const float s = float(arrow_half_size);
    context->move_to(x - s, y - s);
    context->line_to(x - s, y + s);
    context->line_to(x + s, y);
}

void boxes_layer::draw_triangle_left(nano2d::context* context, float x, float y) {
    if (!context) return;
    const float s = float(arrow_half_size);
    context->move_to(x + s, y + s);
    context->line_to(x + s, y - s);
    context->line_to(x - s, y);
}

void boxes_layer::draw_triangle_up(nano2d::context* context, float x, float y) {
    if (!context) return;
    const float s = float(arrow_half_size);
    context->move_to(x - s, y + s);
    context->line_to(x + s, y + s);
    context->line_to(x, y - s);
}

void boxes_layer::draw_triangle_down(nano2d::context* context, float x, float y) {
    if (!context) return;
    const float s = float(arrow_half_size);
    context->move_to(x - s, y - s);
    context->line_to(x + s, y - s);
    context->line_to(x, y + s);
}

void boxes_layer::resetProjectEndsCounter() {
    if (pointer<project> owner = get_project()) owner->ends_counter = 1;
}

} // namespace Vantora_TesserinePro
