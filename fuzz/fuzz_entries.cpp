#include "fuzz_entries.h"

#include "core/diagnostics.h"
#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"

#include <sstream>
#include <stdexcept>

namespace Vantora_TesserinePro::fuzzing {

namespace {

// Diagnostics and "Parse error:" lines are expected on bad input; keep them
// out of the fuzzer's output.
struct quiet {
    std::ostringstream sink;
    quiet() {
        set_diagnostics_out(&sink);
        set_parse_error_out(&sink);
    }
    ~quiet() {
        set_diagnostics_out(nullptr);
        set_parse_error_out(nullptr);
    }
};

// A host that answers nothing and shows nothing.
struct silent_host : workspace_host {
    void show_error(const std::string&) override {}
};

std::string text_of(const std::uint8_t* data, std::size_t size) {
    return std::string(reinterpret_cast<const char*>(data), size);
}

// Routing is linear in the cabinets; keep inputs that ask for billions of
// them from turning into a timeout rather than a finding.
constexpr long long route_cabinet_budget = 200000;

void exercise_layer(const pointer<app_layer>& layer) {
    (void)layer->get_layer_info();
    (void)layer->get_full_width();
    (void)layer->get_full_height();
    if (auto boxes = std::dynamic_pointer_cast<boxes_layer>(layer)) {
        (void)boxes->calculate_power();
        const long long cabinets = (long long)boxes->Columns * (long long)boxes->Rows;
        long long custom = 0;
        for (const auto& run : boxes->CustomPath)
            custom += (long long)run.size();
        if (cabinets <= route_cabinet_budget && custom <= route_cabinet_budget) {
            try {
                (void)Snake::make_route(*boxes);
            } catch (const std::runtime_error&) {
                // the port limit failure is an answer, not a fault
            }
        }
    }
}

} // namespace

void project_file(const std::uint8_t* data, std::size_t size) {
    quiet q;
    silent_host host;
    Global global(&host);
    const std::string text = text_of(data, size);
    try {
        global.load_project_from_string(text);
    } catch (const std::exception&) {
        // a colour the layer reader refuses ends the load by design
    }
    for (long long i = 0; i < global.get_layers_count(); ++i)
        exercise_layer(global.get_layer(i));
    // A refused file leaves the workspace as it was: here, with no project.
    if (global.current_project())
        (void)global.project_or_presets_text(global.current_project()->get_layers(),
                                             "TESSERINE_LED_PROJECT", "Width:1\nHeight:1", true);
    try {
        global.load_presets_from_string(text);
    } catch (const std::exception&) {
    }
    for (const auto& preset : global.get_presets())
        exercise_layer(preset);
}

void layer_record(const std::uint8_t* data, std::size_t size) {
    quiet q;
    silent_host host;
    Global global(&host);
    global.m_project = std::make_shared<project>();
    const std::string text = text_of(data, size);
    for (enum_layer type : {e_layer_boxes, e_layer_image}) {
        pointer<app_layer> layer = global.create_layer(type);
        layer->apply_defaults();
        try {
            layer->apply_layer_info(text);
        } catch (const std::exception&) {
        }
        exercise_layer(layer);
        // What was written reads back without fault.
        pointer<app_layer> again = global.create_layer(type);
        try {
            again->apply_layer_info(layer->get_layer_info());
        } catch (const std::exception&) {
        }
    }
}

void custom_path(const std::uint8_t* data, std::size_t size) {
    quiet q;
    Global global;
    global.m_project = std::make_shared<project>();
    auto layer = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
    layer->set_custom_path_string(text_of(data, size));
    // A trailing empty run may be dropped once; after that the text is stable.
    layer->set_custom_path_string(layer->get_custom_path_string());
    const std::string written = layer->get_custom_path_string();
    layer->set_custom_path_string(written);
    if (layer->get_custom_path_string() != written)
        throw std::logic_error("custom path text does not read back");
    layer->CustomDataPath = 1;
    long long ids = 0;
    for (const auto& run : layer->CustomPath)
        ids += (long long)run.size();
    if (ids <= route_cabinet_budget) (void)Snake::make_route(*layer);
}

void raster_label(const std::uint8_t* data, std::size_t size) {
    quiet q;
    Global global;
    global.load_raster_label_info(text_of(data, size));
    string_array lines;
    global.get_raster_label_lines(lines);
    const std::string saved = global.get_raster_label_info();
    const string_array before = global.raster_label_lines;
    global.load_raster_label_info(saved);
    if (global.raster_label_lines.size() != before.size())
        throw std::logic_error("raster label lines do not read back");
}

void image_data(const std::uint8_t* data, std::size_t size) {
    quiet q;
    Global global;
    global.m_project = std::make_shared<project>();
    auto layer = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    static const char digits[] = "0123456789ABCDEF";
    std::string hex;
    hex.reserve(size * 2);
    for (std::size_t i = 0; i < size; ++i) {
        hex += digits[data[i] >> 4];
        hex += digits[data[i] & 15];
    }
    layer->load_from_hex_data(hex);
    const std::string again = layer->getImageAsHex();
    auto copy = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    copy->load_from_hex_data(again);
}

const std::vector<target>& targets() {
    static const std::vector<target> all = {
        {"project_file", &project_file}, {"layer_record", &layer_record},
        {"custom_path", &custom_path},   {"raster_label", &raster_label},
        {"image_data", &image_data},
    };
    return all;
}

} // namespace Vantora_TesserinePro::fuzzing
