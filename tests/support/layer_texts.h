#pragma once
// Layer records as project and preset files hold them, and the key:value
// text of a screen layer with its defaults.

#include <string>

namespace Vantora_TesserinePro::testing {

// One length-framed record: "TYPE LENGTH" on a line, then the body.
inline std::string record(int type, const std::string& body) {
    return std::to_string(type) + " " + std::to_string(body.size()) + "\n" + body;
}

// The parameters of a screen layer as created, in writer order.
inline const std::string created_screen_parameters =
    "BoxColors:\n"
    "BoxTintColors:\n"
    "PowerVolts:110\n"
    "PowerPhases:3\n"
    "PowerWatts:200\n"
    "PhysW:500.000000\n"
    "PhysH:500.000000\n"
    "ShowMM:0\n"
    "ShowFT:0\n"
    "DrawBoxesNames:0\n"
    "DrawPower:0\n"
    "DrawSnake:1\n"
    "SkipBlankBoxes:1\n"
    "CustomDataPath:0\n"
    "DataDiagramType:0\n"
    "DrawGrid:0\n"
    "DrawCircle:0\n"
    "DrawInfoLine:1\n"
    "DrawBoxes:1\n"
    "DrawScreenSize:1\n"
    "DrawLayerName:1\n"
    "GridWidth:2\n"
    "SnakeLimit:655360\n"
    "SnakeMode:6\n"
    "BoxesNamesColor:1.000000 1.000000 1.000000 1.000000\n"
    "BoxesNamesReverse:0\n"
    "BoxBorderColor:1.000000 1.000000 1.000000 1.000000\n"
    "CircleColor:1.000000 1.000000 1.000000 1.000000\n"
    "SnakeColor:1.000000 1.000000 1.000000 1.000000\n"
    "SnakeWidth:8\n"
    "UseRandomSnakeColor:0\n"
    "CircleWidth:2\n"
    "CornersMode:1\n"
    "Width:128\n"
    "Height:128\n"
    "Columns:8\n"
    "Rows:5\n"
    "ExcludeBoxes:\n"
    "HalfColumns:0000\n"
    "BoxesNamesFontSize:40\n"
    "LayerNameFontSize:0\n"
    "LabelFontColor:1.000000 1.000000 1.000000 1.000000\n"
    "LabelFontSize:30\n";

// Those of the "New" workspace's layer: default colours, grid and circle
// on, data path off.
inline std::string new_screen_parameters() {
    std::string text = created_screen_parameters;
    auto swap = [&](const std::string& from, const std::string& to) {
        text.replace(text.find(from), from.size(), to);
    };
    swap("BoxColors:\n", "BoxColors:0.247059 0.498039 0.498039 1.000000\n");
    swap("BoxTintColors:\n", "BoxTintColors:0.584314 0.721569 0.721569 1.000000\n");
    swap("DrawSnake:1\n", "DrawSnake:0\n");
    swap("DrawGrid:0\n", "DrawGrid:1\n");
    swap("DrawCircle:0\n", "DrawCircle:1\n");
    return text;
}

} // namespace Vantora_TesserinePro::testing
