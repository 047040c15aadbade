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

// A 7680 x 4320 raster with 16 screen layers of 15 x 8 cabinets of
// 128 x 128 (1920 x 1024 each), four across and four down, edge to edge,
// with grid, circle, cabinet names, data path and every label on.
inline void make_8k_workspace(Global& global) {
    global.m_project = std::make_shared<project>();
    global.set_paper_width(7680);
    global.set_paper_height(4320);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) {
            auto layer = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
            layer->default_colors();
            layer->apply_defaults();
            layer->Columns = 15;
            layer->Rows = 8;
            layer->Width = layer->Height = 128;
            layer->DrawGrid = layer->DrawCircle = layer->DrawBoxesNames = 1;
            layer->DrawSnake = 1;
            layer->DrawScreenSize = layer->ShowMM = layer->ShowFT = 1;
            layer->DrawLayerName = layer->DrawPower = layer->DrawInfoLine = 1;
            layer->CornersMode = 0xF;
            layer->offset_x = column * 1920;
            layer->offset_y = row * 1024;
            layer->set_name("Screen" + std::to_string(row * 4 + column + 1));
            global.insert_layer_at(layer, -1);
        }
}

} // namespace Vantora_TesserinePro::bench
