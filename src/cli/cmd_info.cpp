#include "cli/cli.h"

#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"

#include <charconv>
#include <cmath>
#include <iostream>
#include <sstream>

namespace Vantora_TesserinePro::cli {

namespace {

std::string json_number(float value) {
    // JSON has no infinity: a string that a script can tell apart.
    if (std::isnan(value)) return "\"nan\"";
    if (std::isinf(value)) return value > 0 ? "\"inf\"" : "\"-inf\"";
    char buf[64];
    auto result = std::to_chars(buf, buf + sizeof buf, value);
    return std::string(buf, result.ptr);
}

std::string layer_json(const app_layer& layer, long long index) {
    std::ostringstream o;
    const bool screen = layer.get_layer_type() == e_layer_boxes;
    o << "{\"index\": " << index << ", \"type\": \"" << (screen ? "screen" : "image") << "\""
      << ", \"name\": " << json_string(layer.get_name())
      << ", \"hidden\": " << (layer.is_hidden() ? "true" : "false")
      << ", \"offset_x\": " << layer.get_offset_x() << ", \"offset_y\": " << layer.get_offset_y()
      << ", \"width\": " << layer.get_width() << ", \"height\": " << layer.get_height();
    property_set parameters = layer.get_base_layer_info();
    parameters.merge(layer.get_all_parameters());
    o << ", \"parameters\": {";
    bool first = true;
    std::size_t data_bytes = 0;
    for (const auto& [key, value] : parameters.entries()) {
        if (!screen && key == "Data") {
            data_bytes = value.size();
            continue;
        }
        o << (first ? "" : ", ") << json_string(key) << ": " << json_string(value);
        first = false;
    }
    o << "}";
    if (screen) {
        const auto& boxes = static_cast<const boxes_layer&>(layer);
        o << ", \"columns\": " << boxes.Columns << ", \"rows\": " << boxes.Rows
          << ", \"cabinets\": " << boxes.cabinet_count()
          << ", \"amperes\": " << json_number(boxes.calculate_power());
    } else {
        o << ", \"data_bytes\": " << data_bytes;
    }
    o << "}";
    return o.str();
}

} // namespace

int cmd_info(const args& a) {
    parsed_args p = parse_args("info", a, {}, false, false);
    if (p.done) return *p.done;
    if (p.positional.size() != 1) return usage_error("info takes one FILE", "info");
    Global global;
    if (int status = load_for_request(global, p.positional[0])) return status;

    std::ostringstream o;
    o << "{\"raster\": {\"width\": " << global.get_paper_width()
      << ", \"height\": " << global.get_paper_height() << "}"
      << ", \"current_layer\": " << global.get_current_layer_id()
      << ", \"raster_label\": {\"enabled\": " << (global.raster_label_enabled ? "true" : "false")
      << ", \"x\": " << global.raster_label_x << ", \"y\": " << global.raster_label_y
      << ", \"font_size\": " << global.raster_label_font_size << ", \"lines\": [";
    for (std::size_t i = 0; i < global.raster_label_lines.size(); ++i)
        o << (i ? ", " : "") << json_string(global.raster_label_lines[i]);
    o << "]}, \"layers\": [";
    for (long long i = 0; i < global.get_layers_count(); ++i)
        o << (i ? ", " : "") << layer_json(*global.get_layer(i), i);
    o << "]}\n";
    std::cout << o.str() << std::flush;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
