#include "document/global.h"

#include "core/data_folder.h"
#include "core/diagnostics.h"
#include "core/line_reader.h"
#include "document/boxes_layer.h"
#include "document/image_layer.h"
#include "document/names.h"

#include <QString>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Vantora_TesserinePro {

Global::Global(workspace_host* host) : m_host(host ? host : &workspace_host::headless()) {
    ensure_data_folder();
}

Global::~Global() = default;

void Global::set_host(workspace_host* host) {
    m_host = host ? host : &workspace_host::headless();
}

void Global::initialize_main() {
    if (logo_source) return;
    // The resource logo is the window's; headless there is none to load.
    auto img = std::make_shared<image>(QString(":/res/logo.png"));
    if (img->isNull()) return;
    logo_source = img;
    logo_source_width = img->width();
    logo_source_height = img->height();
}

void Global::finalize_main() {
    frame_image_wrap.releaseImage();
    logo_image_wrap.releaseImage();
}

// ---------------------------------------------------------------- access

pointer<app_layer> Global::get_layer(long long index) const {
    if (!m_project || index < 0 || index >= m_project->get_layers_count()) return nullptr;
    return m_project->layers[std::size_t(index)];
}

long long Global::get_layers_count() const {
    return m_project ? m_project->get_layers_count() : 0;
}

pointer<boxes_layer> Global::current_boxes_layer() const {
    return std::dynamic_pointer_cast<boxes_layer>(current_layer());
}

pointer<image_layer> Global::current_image_layer() const {
    return std::dynamic_pointer_cast<image_layer>(current_layer());
}

void Global::set_current_layer_index(long long index) {
    if (index < 0) index = -1;
    if (index < get_layers_count()) {
        current_layer_index = index;
        set_changed();
    }
}

void Global::set_paper_width(int value) {
    paper_width = value;
    set_changed();
}

void Global::set_paper_height(int value) {
    paper_height = value;
    set_changed();
}

void Global::set_is_retina(bool value) {
    m_is_retina = value;
    set_changed();
}

file::path Global::getFolderToSaveData() const {
    return folder_to_save_data();
}
string Global::getAppNameForStorage() const {
    return app_name_for_storage();
}

// ---------------------------------------------------------------- layers

pointer<app_layer> Global::create_layer(enum_layer type) {
    pointer<app_layer> layer;
    if (type == e_layer_boxes)
        layer = std::make_shared<boxes_layer>();
    else if (type == e_layer_image)
        layer = std::make_shared<image_layer>();
    else
        return nullptr;
    layer->set_references(this, m_project);
    return layer;
}

pointer<app_layer> Global::create_layer_from_parameters(enum_layer type, const string& parameters) {
    pointer<app_layer> layer = create_layer(type);
    if (!layer) {
        diagnostics_line("create_layer_from_parameters: layer is nullptr");
        return nullptr;
    }
    layer->apply_layer_info(parameters);
    return layer;
}

pointer<boxes_layer> Global::new_boxes_layer() {
    auto layer = std::static_pointer_cast<boxes_layer>(create_layer(e_layer_boxes));
    layer->default_colors();
    layer->apply_defaults();
    insert_layer_at(layer, 0);
    return layer;
}

pointer<image_layer> Global::new_image_layer() {
    auto layer = std::static_pointer_cast<image_layer>(create_layer(e_layer_image));
    insert_layer_at(layer, 0);
    return layer;
}

void Global::insert_layer_at(const pointer<app_layer>& layer, long long index) {
    if (!layer || !m_project) return;
    auto& layers = m_project->layers;
    if (index < 0 || index > (long long)layers.size()) index = (long long)layers.size();
    layers.insert(layers.begin() + index, layer);
    m_host->set_current_layer_to(*this, index, true);
    set_changed();
    m_host->post_main_screen_layout();
}

pointer<app_layer> Global::clone_current_layer() {
    pointer<app_layer> current = current_layer();
    if (!current) return nullptr;
    pointer<app_layer> copy = current->clone();
    if (copy->get_layer_type() == e_layer_boxes && std::dynamic_pointer_cast<boxes_layer>(copy)) {
        string_array names;
        for (const auto& layer : m_project->layers)
            names.push_back(layer->get_name());
        copy->set_name(_001IncrementName(copy->get_name(), "Screen", names));
    }
    insert_layer_at(copy, 0);
    return copy;
}

void Global::move_layer_to_visual_top_by_1(long long index) {
    const long long count = get_layers_count();
    if (index < 0 || index >= count - 1) return;
    std::swap(m_project->layers[std::size_t(index)], m_project->layers[std::size_t(index + 1)]);
    m_host->set_current_layer_to(*this, index + 1, true);
}

void Global::move_layer_to_visual_bottom_by_1(long long index) {
    const long long count = get_layers_count();
    if (index < 1 || index >= count) return;
    std::swap(m_project->layers[std::size_t(index)], m_project->layers[std::size_t(index - 1)]);
    m_host->set_current_layer_to(*this, index - 1, true);
}

bool Global::move_layer_to_visual(long long to, long long from) {
    const long long count = get_layers_count();
    if (to == from || to < 0 || from < 0 || !m_host->layer_list_built()) return false;
    if (from >= count || to >= count) return false;
    auto& layers = m_project->layers;
    pointer<app_layer> moved = layers[std::size_t(from)];
    layers.erase(layers.begin() + from);
    layers.insert(layers.begin() + to, moved);
    m_host->set_current_layer_to(*this, to, true);
    return true;
}

void Global::delete_current_layer() {
    const long long i = current_layer_index;
    if (m_project && i >= 0 && i < get_layers_count())
        m_project->layers.erase(m_project->layers.begin() + i);
    m_host->set_current_layer_to(*this, std::min(get_layers_count() - 1, i), true);
    set_changed();
    m_host->post_main_screen_layout();
    m_host->post_main_window_redraw();
}

void Global::reload_all() {
    m_host->reload_all(*this, true);
    set_changed();
}

void Global::show_error(const string& message) const {
    m_host->show_error(message);
}

void Global::ask_for_path(const std::vector<file::file_dialog_filter>& filters, bool save,
                          const std::function<void(const file::path&)>& on_chosen,
                          const file::path& suggested) {
    m_host->pick_single_file(
        filters,
        // By value: a real dialog may answer after this call has returned.
        [on_chosen](const file::path& chosen) {
            if (!chosen.empty()) on_chosen(chosen);
        },
        save, suggested);
}

void Global::set_changed() {
    {
        std::lock_guard<std::mutex> lock(m_object_lock);
        changed.store(1);
    }
    m_host->post_canvas_redraw();
    m_host->post_live_output_redraw();
}

// ---------------------------------------------------------------- logo

pointer<image_layer> Global::get_logo_layer() {
    if (m_project)
        for (const auto& layer : m_project->layers)
            if (layer->is_logo) return std::dynamic_pointer_cast<image_layer>(layer);
    auto layer = std::static_pointer_cast<image_layer>(create_layer(e_layer_image));
    layer->is_logo = true;
    insert_layer_at(layer, 0);
    return layer;
}

void Global::setLogoLayer() {
    ask_for_path(file_dialog_filters(), false,
                 [this](const file::path& path) { set_logo_from_path(path); });
}

void Global::set_logo_from_path(const file::path& path) {
    if (path.empty()) return;
    pointer<image> picture = load_image_file(path.string());
    if (!picture) {
        show_error("Error loading image.");
        return;
    }
    pointer<image_layer> layer = get_logo_layer();
    if (!layer) return;
    layer->set_width(picture->width());
    layer->set_height(picture->height());
    layer->set_image(picture);
    m_host->layer_row_changed(*layer);
    save_logo_layer();
}

bool Global::save_logo_layer() {
    pointer<image_layer> layer = get_logo_layer();
    if (!layer) return false;
    char extra[64];
    std::snprintf(extra, sizeof extra, "Width:%d\nHeight:%d", 0, 0);
    return save_project_or_presets_to_file(getFolderToSaveData() / "logo.data", {layer},
                                           "TESSERINE_LED_PROJECT", extra, false);
}

// ---------------------------------------------------------------- raster label

string raster_label_record(int x, int y, int font_size, const string_array& lines) {
    string text = "Raster Label:1\n";
    text += "X:" + std::to_string(x) + "\n";
    text += "Y:" + std::to_string(y) + "\n";
    text += "FontSize:" + std::to_string(font_size) + "\n";
    for (const auto& line : lines)
        text += "Label:" + line + "\n";
    return text;
}

string Global::get_raster_label_info() const {
    return raster_label_record(raster_label_x, raster_label_y, raster_label_font_size,
                               raster_label_lines);
}

void Global::load_raster_label_info(const string& text) {
    raster_label_lines.clear();
    auto rest_of = [](const string& line, std::size_t prefix) { return line.c_str() + prefix; };
    for (const string& line : split_lines(text)) {
        auto starts = [&](const char* prefix) { return line.rfind(prefix, 0) == 0; };
        if (starts("Raster Label:"))
            raster_label_enabled = std::atoi(rest_of(line, 13)) != 0;
        else if (starts("X:"))
            raster_label_x = std::atoi(rest_of(line, 2));
        else if (starts("Y:"))
            raster_label_y = std::atoi(rest_of(line, 2));
        else if (starts("FontSize:"))
            raster_label_font_size = std::atoi(rest_of(line, 9));
        else if (starts("Label:"))
            raster_label_lines.push_back(line.substr(6));
    }
}

void Global::get_raster_label_lines(string_array& lines) const {
    const std::size_t n = std::min<std::size_t>(4, raster_label_lines.size());
    for (std::size_t i = 0; i < n; ++i) {
        const string& s = raster_label_lines[i];
        const char* space = " \t\r\n\f\v";
        const std::size_t b = s.find_first_not_of(space);
        if (b == string::npos) continue;
        const std::size_t e = s.find_last_not_of(space);
        lines.push_back(s.substr(b, e - b + 1));
    }
    char size[64];
    std::snprintf(size, sizeof size, "%dx%d", get_paper_width(), get_paper_height());
    lines.push_back(size);
}

std::vector<file::file_dialog_filter> file_dialog_filters() {
    static const std::vector<file::file_dialog_filter> filters = {
        {"PNG image", "*.png"},
        {"JPG image", "*.jpg"},
        {"BMP image", "*.bmp"},
        {"TGA image", "*.tga"},
    };
    return filters;
}

} // namespace Vantora_TesserinePro
