// A screen layer's pixel map: cabinets, grid, names, circle, data path and
// labels, painted into the layer's own offscreen image.

#include "core/diagnostics.h"
#include "core/string_format.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "plan/cabinet_chains.h"
#include "plan/chain_colors.h"
#include "render/image_wrap.h"
#include "render/nano2d.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>

namespace Vantora_TesserinePro {

namespace {

constexpr std::uint32_t label_background = 0xCC000000;
constexpr std::uint32_t name_text = 0xFF000000;
constexpr std::uint32_t name_background = 0xCCFFFFFF;
constexpr int centred = nano2d::align_center | nano2d::align_middle; // 18

} // namespace

string feet_and_inches(float millimetres) {
    const float feet = millimetres * 0.0032808399f;
    float whole = 0.0f;
    const float fraction = std::modf(feet, &whole);
    return string_format("%d' %.2f''", int(whole), double(fraction * 12.0f));
}

void boxes_layer::build_frame(nano2d::context* context, error_callback on_error) {
    const int w = get_width();
    const int h = get_height();
    // The product as a signed 32-bit number, wrapping as such.
    const std::int32_t area = std::int32_t(std::uint32_t(w) * std::uint32_t(h));
    if (std::int64_t(area) == empty_marker) return;

    pointer<image> target = request_offscreen((unsigned long)w, (unsigned long)h);
    if (!target || target->isNull()) {
        if (on_error) on_error("Offscreen allocated nullptr.");
        return;
    }
    OffscreenDraw draw(context, target.get());

    const plan::cabinet_chains chains =
        plan::chains_of(*this, global ? global->color_by : color_by_mode::chequer);
    if (DrawBoxes) draw_boxes(context, &chains);
    if (DrawGrid) draw_boxes_grid(context);
    if (DrawBoxesNames) draw_boxes_names(context);
    if (DrawCircle) {
        draw_circle(context);
        draw_dotted(context);
    }
    if (DrawSnake) {
        try {
            draw_snake(context);
        } catch (const std::exception& failure) {
            // The path stays off until the user switches it on again; the
            // labels below are still drawn.
            DrawSnake = 0;
            set_changed();
            if (on_error) on_error(failure.what());
        }
    }
    if (DrawPowerPath) draw_power_path(context);

    const char* phases_word = PowerPhases == 1 ? "Phase" : "Phases";
    const string power = string_format("%.2fA | %dV | %d %s", double(calculate_power()), PowerVolts,
                                       PowerPhases, phases_word);

    const int label_size = LabelFontSize.get();
    const int name_size = LayerNameFontSize.get() != 0 ? LayerNameFontSize.get() : label_size;

    string_array size_lines;
    if (DrawScreenSize) size_lines.push_back(string_format("W %d X H %d", w, h));
    const float physical_width = get_full_columns() * PhysW;
    const float physical_height = get_full_rows() * PhysH;
    if (ShowMM)
        size_lines.push_back(string_format("W %.2f(m) X H %.2f(m)",
                                           double(physical_width / 1000.0f),
                                           double(physical_height / 1000.0f)));
    if (ShowFT)
        size_lines.push_back(string_format("W %s X H %s", feet_and_inches(physical_width).c_str(),
                                           feet_and_inches(physical_height).c_str()));

    const color::color dark = color::color::from_word(label_background);
    const float y0 = float(label_size + name_size) * 0.5f;
    float s = 0.0f;
    for (const string& line : size_lines) {
        draw_label(context, 0, int(y0 + s), line, LabelFontColor, dark, "sans", label_size,
                   centred);
        s += float(label_size);
    }
    if (DrawLayerName)
        draw_label(context, 0, 0, get_name(), color::color::from_word(name_text),
                   color::color::from_word(name_background), "sans", name_size, centred);
    if (DrawPower)
        draw_label(context, 0, int(-y0), power, LabelFontColor, dark, "sans", label_size, centred);
    if (DrawInfoLine) {
        const string info = string_format(
            "%.1f Columns X %.1f Rows - %u Cabinets Total / Resolution: "
            "%d x %d ( %d ) / Aspect Ratio: %.2f",
            double(get_full_columns()), double(get_full_rows()), unsigned(cabinet_count()), w, h,
            int(unsigned(w) * unsigned(h)), double(float(w) / float(h)));
        draw_info_line(context, info, chains.names);
    }

    struct corner {
        int bit, x, y, align;
    };
    const corner corners[] = {
        {corner_top_left, offset_x, offset_y, nano2d::align_left | nano2d::align_top},
        {corner_top_right, wrapping_sum(offset_x, w, -1), offset_y,
         nano2d::align_right | nano2d::align_top},
        {corner_bottom_left, offset_x, wrapping_sum(offset_y, h, -1),
         nano2d::align_left | nano2d::align_bottom},
        {corner_bottom_right, wrapping_sum(offset_x, w, -1), wrapping_sum(offset_y, h, -1),
         nano2d::align_right | nano2d::align_bottom},
    };
    for (const corner& c : corners)
        if (CornersMode & (1 << c.bit))
            draw_label(context, 0, 0, string_format("X %d,Y %d", c.x, c.y), LabelFontColor, dark,
                       "sans", label_size, c.align);
}

void boxes_layer::draw_label(nano2d::context* context, int x, int y, const string& text,
                             color::color text_color, color::color background_color,
                             const string& face, int size, int align) {
    OffscreenDraw draw(context, offscreen.get());
    context->font_size(float(size));
    context->font_face(face);
    const int W = get_width();
    const int H = get_height();
    int anchor_x = 0;
    if (align & nano2d::align_left)
        anchor_x = 10;
    else if (align & nano2d::align_right)
        anchor_x = W - 10;
    else if (align & nano2d::align_center)
        anchor_x = W / 2;
    int anchor_y = 0;
    if (align & nano2d::align_top)
        anchor_y = 5;
    else if (align & nano2d::align_bottom)
        anchor_y = H - 5;
    else if (align & nano2d::align_middle)
        anchor_y = H / 2;
    context->text_align(align);
    const float X = float(anchor_x + x);
    const float Y = float(anchor_y + y);
    float bounds[4];
    context->text_bounds(text, X, Y, bounds);
    context->begin_path();
    context->rectangle(bounds[0], bounds[1], bounds[2] - bounds[0], bounds[3] - bounds[1]);
    context->fill_color(background_color);
    context->fill();
    context->fill_color(text_color);
    context->stroke_color(text_color);
    context->text(text, X, Y);
}

void boxes_layer::draw_info_line(nano2d::context* context, const string& info,
                                 const std::vector<std::string>& legend) {
    const int bottom = nano2d::align_bottom;
    if (legend.empty())
        return draw_label(context, 0, 5, info, color::color::from_word(name_text),
                          color::color::from_word(name_background), "sans", 14,
                          nano2d::align_center | bottom);
    // The legend's names, each on its chain's colour, then the line, centred
    // as the line alone is; a line wider than the screen starts at its left
    // edge, so that the legend stays in sight.
    constexpr float gap = 4.0f;
    context->font_size(14.0f);
    context->font_face("sans");
    context->text_align(nano2d::align_left | bottom);
    float bounds[4];
    std::vector<std::string> pieces;
    std::vector<float> widths;
    float total = 0.0f;
    for (const std::string& name : legend)
        pieces.push_back(" " + name + " ");
    pieces.push_back(info);
    for (const std::string& piece : pieces) {
        widths.push_back(context->text_bounds(piece, 0, 0, bounds));
        total += widths.back() + (widths.size() > 1 ? gap : 0.0f);
    }
    // draw_label anchors a left-aligned text 10 pixels in.
    float x = std::max(float(get_width() / 2) - total * 0.5f, 0.0f) - 10.0f;
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        color::color text = color::color::from_word(name_text);
        color::color back = color::color::from_word(name_background);
        if (k < legend.size()) {
            back = plan::chain_color(k);
            if (back.red * 299 + back.green * 587 + back.blue * 114 <= 140000)
                text = color::opaque_white;
        }
        draw_label(context, int(x), 5, pieces[k], text, back, "sans", 14,
                   nano2d::align_left | bottom);
        x += widths[k] + gap;
    }
}

void boxes_layer::draw_boxes(nano2d::context* context, const plan::cabinet_chains* chains) {
    OffscreenDraw draw(context, offscreen.get());
    if (chains && !chains->names.empty()) {
        for_each_box(
            [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
                if (ExcludeBoxes.contains(box_id(column, row))) return false;
                const auto on = chains->chain_of.find(box_id(column, row));
                color::color c;
                const bool dark = (column + row) % 2 != 0;
                if (on != chains->chain_of.end())
                    c = dark ? plan::chain_color_dark(on->second) : plan::chain_color(on->second);
                else if (!BoxColors.empty())
                    c = dark && !BoxTintColors.empty() ? BoxTintColors[0] : BoxColors[0];
                context->fill_color(c);
                context->begin_path();
                context->rectangle(x0, y0, x1 - x0, y1 - y0);
                context->close_path();
                context->fill();
                return false;
            },
            false);
        return;
    }
    if (BoxColors.empty()) return;
    const std::size_t n = BoxColors.size();
    long long counter = 0;
    for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
            if (column == 0) counter = row;
            if (!ExcludeBoxes.contains(box_id(column, row))) {
                const std::size_t index = std::size_t(counter / 2) % n;
                // A tint list shorter than the main one (a loaded text can
                // make one) falls back to the main colour.
                const bool tint = (counter % 2) != 0 && index < BoxTintColors.size();
                context->fill_color(tint ? BoxTintColors[index] : BoxColors[index]);
                context->begin_path();
                context->rectangle(x0, y0, x1 - x0, y1 - y0);
                context->close_path();
                context->fill();
            } else {
                output_debug_string("excluded");
            }
            counter += 1;
            return false;
        },
        false);
}

void boxes_layer::draw_boxes_grid(nano2d::context* context) {
    OffscreenDraw draw(context, offscreen.get());
    for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short, unsigned short) {
            context->rectangle_outline(int(x0), int(y0), int(x1 - x0 - 1), int(y1 - y0 - 1),
                                       BoxBorderColor, GridWidth);
            return false;
        },
        false);
}

void boxes_layer::draw_circle(nano2d::context* context) {
    OffscreenDraw draw(context, offscreen.get());
    const int W = get_width();
    const int H = get_height();
    context->begin_path();
    context->stroke_color(CircleColor);
    context->stroke_width(float(CircleWidth));
    // A quarter of the smaller side, not a half: that is how it has always
    // been drawn.
    const int radius = ((std::min(W, H) / 2) - (CircleWidth / 2)) / 2;
    context->circle(float(W) * 0.5f, float(H) * 0.5f, float(radius));
    context->stroke();
    context->begin_path();
    context->move_to(0.0f, 0.0f);
    context->line_to(float(W), float(H));
    context->stroke();
    context->begin_path();
    context->move_to(float(W), 0.0f);
    context->line_to(0.0f, float(H));
    context->stroke();
}

void boxes_layer::draw_dotted(nano2d::context* context) {
    OffscreenDraw draw(context, offscreen.get());
    const int W = get_width();
    const int H = get_height();
    context->stroke_color(CircleColor);
    context->stroke_width(float(CircleWidth));
    context->begin_path();
    const float y = float(H / 2);
    for (long long i = 0; i < (long long)W + 5; i += 10) {
        context->move_to(float(i), y);
        context->line_to(float(i + 5), y);
    }
    context->stroke();
    context->begin_path();
    const float x = float(W / 2);
    for (long long i = 0; i < (long long)H + 5; i += 10) {
        context->move_to(x, float(i));
        context->line_to(x, float(i + 5));
    }
    context->stroke();
}

void boxes_layer::draw_boxes_names(nano2d::context* context) {
    OffscreenDraw draw(context, offscreen.get());
    context->begin_path();
    context->fill_color(BoxesNamesColor);
    context->font_size(float(BoxesNamesFontSize.get()));
    context->font_face("sans");
    context->text_align(centred);
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    string name;
    for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
            const int k = BoxesNamesReverse ? row : column;
            const int m = BoxesNamesReverse ? column : row;
            // A to Z, then AA, BB .. ZZ, then AAA.
            name.assign(std::size_t(k / 26 + 1), alphabet[k % 26]);
            name += std::to_string(m + 1);
            context->begin_path();
            context->text(name, (x1 - x0) * 0.5f + x0, (y1 - y0) * 0.5f + y0);
            return false;
        },
        false);
    context->fill();
}

} // namespace Vantora_TesserinePro
