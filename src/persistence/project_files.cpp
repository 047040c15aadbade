// Project and preset files: a header line, then per layer a record head
// ("type length") and exactly that many bytes of key:value lines.

#include "core/atomic_file.h"
#include "core/diagnostics.h"
#include "core/line_reader.h"
#include "document/app_layer.h"
#include "document/global.h"
#include "persistence/file_format.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace Vantora_TesserinePro {

namespace {

std::string header_text(const string& magic, std::size_t count, std::size_t extra_length) {
    char buffer[1024];
    std::snprintf(buffer, sizeof buffer, "%s v2 %lu %lu\n", magic.c_str(), (unsigned long)count,
                  (unsigned long)extra_length);
    return buffer;
}

void append_record(std::string& text, int type, const std::string& body) {
    char head[64];
    std::snprintf(head, sizeof head, "%d %lu\n", type, (unsigned long)body.size());
    text += head;
    text += body;
}

// The text of a buffer up to its first NUL, as a C string would read it.
std::string up_to_nul(const std::string& buffer) {
    return std::string(buffer.c_str());
}

} // namespace

// ---------------------------------------------------------------- writers

string Global::project_or_presets_text(const pointer_array<app_layer>& layers, const string& magic,
                                       const string& extra, bool with_raster_label) const {
    std::size_t count = 0;
    for (const auto& layer : layers)
        count += layer ? 1 : 0;
    std::string text = header_text(magic, count, extra.size());
    if (!extra.empty()) {
        text += extra;
        text += '\n';
    }
    for (const auto& layer : layers) {
        if (!layer) continue;
        append_record(text, layer->get_layer_type(), layer->get_layer_info());
    }
    if (with_raster_label) append_record(text, raster_label_record_type, get_raster_label_info());
    return text;
}

bool Global::save_project_or_presets_to_file(const file::path& path,
                                             const pointer_array<app_layer>& layers,
                                             const string& magic, const string& extra,
                                             bool with_raster_label) {
    const std::string text = project_or_presets_text(layers, magic, extra, with_raster_label);
    std::string problem;
    if (!write_file_atomically(path.string(), text, &problem)) {
        m_last_write_error = problem.empty() ? std::string("write failed") : problem;
        return false;
    }
    return true;
}

bool Global::save_project_to_file(const file::path& path) {
    if (path.empty()) {
        m_last_write_error = "no file name";
        return false;
    }
    char extra[64];
    std::snprintf(extra, sizeof extra, "Width:%d\nHeight:%d", get_paper_width(),
                  get_paper_height());
    static const pointer_array<app_layer> none;
    return save_project_or_presets_to_file(path, m_project ? m_project->get_layers() : none,
                                           project_magic, extra, true);
}

bool Global::save_presets_to_file(const file::path& path) {
    if (path.empty()) {
        m_last_write_error = "no file name";
        return false;
    }
    return save_project_or_presets_to_file(path, presets, presets_magic, "", false);
}

// ---------------------------------------------------------------- readers

string Global::read_full_file_as_text(const file::path& path) const {
    std::string data;
    if (!read_whole_file(path.string(), data)) return {};
    const std::size_t nul = data.find('\0');
    if (nul != std::string::npos) data.resize(nul);
    return data;
}

pointer_array<app_layer> Global::create_layers_from_string(const string& text,
                                                           const string& magic_and_version) {
    pointer_array<app_layer> result;
    line_reader reader(text);
    std::string line;
    reader.get_line(line);

    unsigned long count = 0;
    switch (check_header(line, magic_and_version, count)) {
    case header_status::bad_header:
        diagnostics_line("create_layers_from_string::header check err");
        return result;
    case header_status::bad_count:
        diagnostics_line("layers_count can't be <0 or >1024");
        return result;
    case header_status::ok:
        break;
    }

    // One buffer for all records: a body cut short by the end of the text
    // keeps what the previous record left behind it.
    std::string buffer;
    // count + 1 passes: the one more reads the raster label record of a
    // project. In a file without one it finds the end of the text, the
    // previous head stays in line and the buffer still holds the last body,
    // so the last record is read a second time; preset and logo files rely
    // on that. A count further past the records would only pile up more
    // copies of that record (a damaged header can ask for a thousand copies
    // of a 16 MiB picture), so a second pass past the end stops the reading.
    bool past_end = false;
    for (unsigned long i = 0; i <= count; ++i) {
        if (!reader.get_line(line)) {
            if (past_end) {
                diagnostics_printf("create_layers_from_string::layers_count %lu runs past the "
                                   "end of the text, stopped after %lu passes\n",
                                   count, i);
                break;
            }
            past_end = true;
        }

        if (line.find("Width") != std::string::npos) {
            int width = 0;
            int height = 0;
            if (std::sscanf(line.c_str(), "Width:%d", &width) != 1) width = 0;
            reader.get_line(line);
            if (std::sscanf(line.c_str(), "Height:%d", &height) != 1) height = 0;
            reader.get_line(line);
            if (width >= 1 && height >= 1) {
                set_paper_width(width);
                set_paper_height(height);
                if (raster_label_x + raster_label_width == get_paper_width() ||
                    raster_label_y + raster_label_height == get_paper_height())
                    host().raster_label_settings_from_raster(*this);
            }
        }

        int type = 0;
        int declared = 0;
        if (std::sscanf(line.c_str(), "%d %d", &type, &declared) != 2) {
            diagnostics_printf("create_layers_from_string::HDR::step2 error [std:%s]\n",
                               line.c_str());
            break;
        }
        const std::uint32_t length = std::uint32_t(declared);
        if (length == 0 || length > max_record_length) {
            diagnostics_printf("create_layers_from_string::data len too large [%d]\n", declared);
            break;
        }

        buffer.resize(std::size_t(length) + 1);
        const std::size_t available = std::min<std::size_t>(length, reader.remaining());
        if (available) std::memcpy(buffer.data(), reader.rest().data(), available);
        reader.skip(available);
        buffer[length] = '\0';

        if (type == e_layer_boxes || type == e_layer_image) {
            pointer<app_layer> layer = create_layer(enum_layer(type));
            if (!layer) {
                diagnostics_line(
                    "create_layers_from_string::create_layer_from_parameters::RETURN_NULL");
                break;
            }
            layer->apply_defaults();
            layer->apply_layer_info(up_to_nul(buffer));
            result.push_back(layer);
        } else if (type == raster_label_record_type) {
            load_raster_label_info(up_to_nul(buffer));
        } else {
            diagnostics_printf("create_layers_from_string::ROW layer type incorrect [%d]\n", type);
            break;
        }
    }
    return result;
}

void Global::load_project_from_string(const string& text) {
    // A file the reader refuses leaves the document as it was: the old
    // project, its current layer, the raster and the raster label.
    struct kept_state {
        pointer<project> old_project;
        long long current;
        int width, height;
        bool label_enabled;
        string_array label_lines;
        int label_x, label_y, label_width, label_height, label_font_size;
    } const kept{m_project,           current_layer_index,   paper_width,
                 paper_height,        raster_label_enabled,  raster_label_lines,
                 raster_label_x,      raster_label_y,        raster_label_width,
                 raster_label_height, raster_label_font_size};
    m_project = std::make_shared<project>();
    set_current_layer_index(-1);
    pointer_array<app_layer> layers;
    try {
        layers = create_layers_from_string(text, project_magic_and_version);
    } catch (...) {
        m_project = kept.old_project;
        current_layer_index = kept.current;
        paper_width = kept.width;
        paper_height = kept.height;
        raster_label_enabled = kept.label_enabled;
        raster_label_lines = kept.label_lines;
        raster_label_x = kept.label_x;
        raster_label_y = kept.label_y;
        raster_label_width = kept.label_width;
        raster_label_height = kept.label_height;
        raster_label_font_size = kept.label_font_size;
        set_changed();
        throw;
    }
    auto& stack = m_project->get_layers();
    stack.insert(stack.end(), layers.begin(), layers.end());
    set_current_layer_index(get_layers_count() - 1);
    host().reload_all(*this, true);
    set_changed();
}

void Global::load_project_from_file(const file::path& path) {
    if (path.empty()) return;
    load_project_from_string(read_full_file_as_text(path));
    document_file = path;
    ++documents_opened;
    host().reload_all(*this, true);
    set_changed();
}

void Global::load_presets_from_string(const string& text) {
    // Read first: a file the reader refuses leaves the list as it was.
    pointer_array<app_layer> layers = create_layers_from_string(text, presets_magic_and_version);
    presets.clear();
    presets.insert(presets.end(), layers.begin(), layers.end());
}

void Global::load_presets_from_file(const file::path& path) {
    if (path.empty()) return;
    load_presets_from_string(read_full_file_as_text(path));
    host().reload_all(*this, true);
    set_changed();
    // A list the user opens replaces the saved one at once.
    if (path.string() != auto_save_preset_file_name().string()) auto_save_presets();
}

// ---------------------------------------------------------------- commands

// A cancelled dialog does nothing: it must not turn into ".tsrx" and
// replace the document with an empty one.

void Global::open_project_button() {
    ask_for_path({{"tsrx Project File", "*.tsrx"}}, false, [this](const file::path& path) {
        load_project_from_file(path.with_extension_if_no_extension(".tsrx"));
    });
}

void Global::save_project_button() {
    ask_for_path({{"tsrx", "tsrx file"}}, true, [this](const file::path& path) {
        const file::path file = path.with_extension_if_no_extension(".tsrx");
        if (!save_project_to_file(file)) return;
        document_file = file;
        ++documents_saved;
    });
}

void Global::open_presets_button() {
    ask_for_path({{"Tsrx Presets File", "*.tsrx_presets"}}, false, [this](const file::path& path) {
        load_presets_from_file(path.with_extension_if_no_extension(".tsrx_presets"));
    });
}

void Global::save_presets_button() {
    ask_for_path({{"Tsrx Presets File", "*.tsrx_presets"}}, true, [this](const file::path& path) {
        save_presets_to_file(path.with_extension_if_no_extension(".tsrx_presets"));
    });
}

} // namespace Vantora_TesserinePro
