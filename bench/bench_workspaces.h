#pragma once
// Workspaces the benchmarks build, shared by the render and export benches.

#include "document/boxes_layer.h"
#include "document/global.h"

#include <string>

namespace Vantora_TesserinePro::bench {

// The "New" workspace. While load_default_layers gives no layer (the
// persistence code not being in), the same screen layer is made by hand.
inline void make_default_workspace(Global& global) {
    global.load_default_layers();
    if (global.get_layers_count() > 0) return;
    global.m_project = std::make_shared<project>();
    global.set_paper_width(1920);
    global.set_paper_height(1080);
    global.raster_label_x = 1920;
    global.raster_label_y = 1080;
    global.raster_label_width = global.raster_label_height = 0;
    global.new_boxes_layer();
}

// A wall of screen layers of 15 columns of 128 x 128 cabinets (1920 pixels
// wide) and `rows` rows, `across` by `down` of them edge to edge on a
// raster of width x height, with grid, circle, cabinet names, data path and
// every label on.
inline void make_wall(Global& global, int width, int height, int across, int down, int rows) {
    global.m_project = std::make_shared<project>();
    global.set_paper_width(width);
    global.set_paper_height(height);
    for (int row = 0; row < down; ++row)
        for (int column = 0; column < across; ++column) {
            auto layer = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
            layer->default_colors();
            layer->apply_defaults();
            layer->Columns = 15;
            layer->Rows = rows;
            layer->Width = layer->Height = 128;
            layer->DrawGrid = layer->DrawCircle = layer->DrawBoxesNames = 1;
            layer->DrawSnake = 1;
            layer->DrawScreenSize = layer->ShowMM = layer->ShowFT = 1;
            layer->DrawLayerName = layer->DrawPower = layer->DrawInfoLine = 1;
            layer->CornersMode = 0xF;
            layer->offset_x = column * 1920;
            layer->offset_y = row * rows * 128;
            layer->set_name("Screen" + std::to_string(row * across + column + 1));
            global.insert_layer_at(layer, -1);
        }
}

// A 7680 x 4320 raster with 16 screen layers of 15 x 8 cabinets (1920 x
// 1024 each), four across and four down.
inline void make_8k_workspace(Global& global) {
    make_wall(global, 7680, 4320, 4, 4, 8);
}

// A 15360 x 8192 raster with 32 screen layers of 15 x 16 cabinets (1920 x
// 2048 each), eight across and four down.
inline void make_15k_workspace(Global& global) {
    make_wall(global, 15360, 8192, 8, 4, 16);
}

} // namespace Vantora_TesserinePro::bench
