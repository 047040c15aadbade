#pragma once
// Workspaces and layers built by hand. The benchmarks use these too, so
// nothing here depends on the test framework.

#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"

#include <QRgb>

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace Vantora_TesserinePro::testing {

// A screen layer of the workspace, outside its stack, as create_layer
// makes it.
inline pointer<boxes_layer> screen_layer(Global& global) {
    return std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
}

inline void set_grid(boxes_layer& layer, int columns, int rows, int width, int height) {
    layer.Columns = columns;
    layer.Rows = rows;
    layer.Width = width;
    layer.Height = height;
}

// Leaves a screen layer drawing its cabinets and nothing else on them.
inline void show_only_cabinets(boxes_layer& layer) {
    layer.DrawGrid = layer.DrawCircle = layer.DrawLayerName = layer.DrawScreenSize = 0;
    layer.DrawInfoLine = layer.CornersMode = 0;
}

// A screen layer of columns by rows cabinets of cabinet by cabinet pixels,
// named and placed, on top of the stack.
inline pointer<boxes_layer> add_screen(Global& global, const std::string& name, int x, int y,
                                       int columns, int rows, int cabinet = 2) {
    auto layer = screen_layer(global);
    layer->set_name(name);
    set_grid(*layer, columns, rows, cabinet, cabinet);
    layer->set_offset_x(x);
    layer->set_offset_y(y);
    global.insert_layer_at(layer, -1);
    return layer;
}

// An image layer of width by height, named and placed, on top of the stack.
inline pointer<image_layer> add_picture(Global& global, const std::string& name, int x, int y,
                                        int width, int height) {
    auto layer = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    layer->set_name(name);
    layer->width = width;
    layer->height = height;
    layer->set_offset_x(x);
    layer->set_offset_y(y);
    global.insert_layer_at(layer, -1);
    return layer;
}

// Gives the layer an offscreen image of its full size where pixel (x, y)
// holds pixel(x, y), a premultiplied ARGB value.
template <class F> void paint_offscreen(app_layer& layer, F&& pixel) {
    pointer<image> img = layer.request_offscreen(unsigned(layer.get_full_width()),
                                                 unsigned(layer.get_full_height()));
    for (int y = 0; y < img->height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img->scanLine(y));
        for (int x = 0; x < img->width(); ++x)
            line[x] = pixel(x, y);
    }
}

// The rectangle (x0, y0, x1, y1) of every cabinet of a layer's walk, by id.
using cabinet_rect = std::tuple<float, float, float, float>;
inline std::map<std::uint32_t, cabinet_rect> cabinet_rects(const boxes_layer& layer) {
    std::map<std::uint32_t, cabinet_rect> out;
    layer.for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short c, unsigned short r) {
            out[box_id(c, r)] = cabinet_rect{x0, y0, x1, y1};
            return false;
        },
        false);
    return out;
}

// The workspace in one line, to compare: the raster, the stack bottom first
// (pictures marked), the selected index, and the raster label when on.
inline std::string describe(Global& global) {
    std::string out =
        std::to_string(global.get_paper_width()) + "x" + std::to_string(global.get_paper_height());
    for (const auto& l : global.current_project()->get_layers())
        out += " " + l->get_name() + (l->get_layer_type() == e_layer_image ? " (picture)" : "");
    out += "; current " + std::to_string(global.get_current_layer_id());
    if (!global.raster_label_enabled) return out;
    out += "; label at " + std::to_string(global.raster_label_x) + "," +
           std::to_string(global.raster_label_y) + " size " +
           std::to_string(global.raster_label_font_size);
    for (const auto& line : global.raster_label_lines)
        out += " [" + line + "]";
    return out;
}

// The names of the stack, bottom first.
inline std::vector<std::string> layer_names(Global& global) {
    std::vector<std::string> names;
    for (const auto& l : global.current_project()->get_layers())
        names.push_back(l->get_name());
    return names;
}

} // namespace Vantora_TesserinePro::testing
