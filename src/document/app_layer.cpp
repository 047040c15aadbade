#include "document/app_layer.h"

#include "core/large_allocator.h"
#include "core/line_reader.h"
#include "document/global.h"

#include <cstdlib>

namespace Vantora_TesserinePro {

app_layer::~app_layer() {
    image_wrap.releaseImage();
    offscreen.reset();
}

void app_layer::add_layer_to_xml(pugi::xml_node&) const {}

void app_layer::set_changed() {
    changed = true;
    if (global) global->set_changed();
}

void app_layer::set_hidden(bool value) {
    if (hidden == value) return;
    hidden = value;
    set_changed();
}

void app_layer::set_offset_x(int value) {
    offset_x = value;
    set_changed();
}

void app_layer::set_offset_y(int value) {
    offset_y = value;
    set_changed();
}

void app_layer::set_name(const string& value) {
    name = value;
    set_changed();
}

property_set app_layer::get_base_layer_info() const {
    property_set set;
    set.set("OffsetX", offset_x);
    set.set("OffsetY", offset_y);
    set.set("Name", get_name());
    set.set("Hidden", hidden ? "1" : "0");
    set.set("CustomPath", get_custom_path_string());
    return set;
}

string app_layer::get_layer_info() const {
    property_set set = get_base_layer_info();
    set.merge(get_all_parameters());
    return set.as_string(":", "\n");
}

void app_layer::apply_layer_info(const string& text) {
    line_reader reader(text);
    string line;
    while (reader.get_line(line)) {
        const std::size_t colon = line.find(':');
        if (colon == string::npos) continue;
        const string key = line.substr(0, colon);
        const string value = line.substr(colon + 1);
        if (key == "CustomPath") {
            set_custom_path_string(value);
        } else if (key == "OffsetX") {
            offset_x = std::atoi(value.c_str());
            set_changed();
        } else if (key == "OffsetY") {
            offset_y = std::atoi(value.c_str());
            set_changed();
        } else if (key == "Name") {
            set_name(value);
        } else if (key == "Hidden") {
            const bool h = std::atoi(value.c_str()) != 0;
            if (h != hidden) {
                hidden = h;
                set_changed();
            }
        } else {
            apply_parameter_by_name(key, value);
        }
    }
    set_changed();
}

pointer<image> app_layer::request_offscreen(unsigned long width, unsigned long height) {
    if (!offscreen || (unsigned long)offscreen->width() != width ||
        (unsigned long)offscreen->height() != height) {
        offscreen.reset();
        if (!image_size_allowed(width, height)) return nullptr;
        auto img = std::make_shared<image>(new_drawing_target(int(width), int(height)));
        if (img->isNull()) return nullptr;
        offscreen = img;
    }
    offscreen->fill(Qt::transparent);
    return offscreen;
}

} // namespace Vantora_TesserinePro
