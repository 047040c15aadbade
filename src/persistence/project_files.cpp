// Project and preset files: a header line, then per layer a record head
// ("type length") and exactly that many bytes of key:value lines.

#include "core/atomic_file.h"
#include "core/diagnostics.h"
#include "core/line_reader.h"
#include "document/app_layer.h"
#include "document/global.h"
#include "persistence/file_format.h"
#include "persistence/read_report.h"
#include "plan/cabinet_chains.h"

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

string layers_file_text(const pointer_array<app_layer>& layers, const string& magic,
                        const string& extra, const string* raster_label_body,
                        const string& settings_body) {
    std::size_t count = 0;
    for (const auto& layer : layers)
        count += layer ? 1 : 0;
    // A file without a raster label record would have its last record read
    // again by the reader's one pass more: its count is one lower than its
    // records, so that this reader and every older one take each record
    // once. An empty list keeps 0.
    const std::size_t header_count = raster_label_body || count == 0 ? count : count - 1;
    std::string text = header_text(magic, header_count, extra.size());
    if (!extra.empty()) {
        text += extra;
        text += '\n';
    }
    for (const auto& layer : layers) {
        if (!layer) continue;
        append_record(text, layer->get_layer_type(), layer->get_layer_info());
    }
    if (raster_label_body) append_record(text, raster_label_record_type, *raster_label_body);
    if (raster_label_body && !settings_body.empty())
        append_record(text, drawing_settings_record_type, settings_body);
    return text;
}

string drawing_settings_record(color_by_mode color_by) {
    if (color_by == color_by_mode::chequer) return {};
    return string("ColorBy:") + plan::color_by_name(color_by) + "\n";
}

void Global::apply_drawing_settings(const string& body) {
    line_reader lines(body);
    std::string line;
    while (lines.get_line(line))
        if (line.rfind("ColorBy:", 0) == 0) plan::color_by_from_name(line.substr(8), color_by);
}

string project_extra_block(int paper_width, int paper_height) {
    char extra[64];
    std::snprintf(extra, sizeof extra, "Width:%d\nHeight:%d", paper_width, paper_height);
    return extra;
}

string Global::project_or_presets_text(const pointer_array<app_layer>& layers, const string& magic,
                                       const string& extra, bool with_raster_label) const {
    const string label = with_raster_label ? get_raster_label_info() : string();
    return layers_file_text(layers, magic, extra, with_raster_label ? &label : nullptr,
                            drawing_settings_record(color_by));
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
    static const pointer_array<app_layer> none;
    if (!save_project_or_presets_to_file(
            path, m_project ? m_project->get_layers() : none, project_magic,
            project_extra_block(get_paper_width(), get_paper_height()), true))
        return false;
    set_document_file(path, false);
    return true;
}

bool Global::save_presets_to_file(const file::path& path) {
    if (path.empty()) {
        m_last_write_error = "no file name";
        return false;
    }
    return save_project_or_presets_to_file(path, presets, presets_magic, "", false);
}

// ---------------------------------------------------------------- readers

namespace {

// A file's text as the readers take it: up to its first NUL, with a
// byte-order mark and CR LF ends of a converted file undone. A file that
// cannot be read leaves its reason in report and gives false.
bool read_text_file(const file::path& path, std::string& text, read_report& report,
                    bool* cut_at_nul = nullptr) {
    std::string problem = "no file name";
    if (path.empty() || !read_whole_file(path.string(), text, &problem)) {
        report.refuse(file_problem::kind::unreadable, problem);
        return false;
    }
    const std::size_t nul = text.find('\0');
    if (nul != std::string::npos) text.resize(nul);
    if (cut_at_nul) *cut_at_nul = nul != std::string::npos;
    normalise_text_file(text);
    return true;
}

} // namespace

string Global::read_full_file_as_text(const file::path& path) const {
    std::string text;
    read_report unused;
    if (!read_text_file(path, text, unused)) return {};
    return text;
}

namespace {

file_kind kind_of(const string& magic_and_version) {
    return magic_and_version == presets_magic_and_version ? file_kind::presets : file_kind::project;
}

// Line numbers of offsets in a text, for the damage report. Asked in
// increasing order almost always, so it walks on from where it stood.
class line_numbers {
  public:
    explicit line_numbers(std::string_view text) : m_text(text) {}
    std::size_t at(std::size_t offset) {
        offset = std::min(offset, m_text.size());
        if (offset < m_offset) m_offset = 0, m_line = 1;
        for (; m_offset < offset; ++m_offset) {
            const char c = m_text[m_offset];
            // The line rule: LF, CR and CR LF each end one line.
            if (c == '\n' || (c == '\r' && (m_offset + 1 >= m_text.size() ||
                                             m_text[m_offset + 1] != '\n')))
                ++m_line;
        }
        return m_line;
    }

  private:
    std::string_view m_text;
    std::size_t m_offset = 0;
    std::size_t m_line = 1;
};

std::string what_record(int type, std::size_t layer_index) {
    if (type == raster_label_record_type) return "the raster label record";
    if (type != e_layer_boxes && type != e_layer_image)
        return "a record of type " + std::to_string(type);
    return "layer " + std::to_string(layer_index) +
           (type == e_layer_image ? " (an image layer)" : " (a screen layer)");
}

// A line of the file in a sentence: short, and without control bytes.
std::string quoted(const std::string& line) {
    std::string out;
    for (unsigned char c : line.substr(0, 40))
        out += (c < 0x20 || c == 0x7F) ? '?' : char(c);
    return "\"" + out + (line.size() > 40 ? "...\"" : "\"");
}

} // namespace

pointer_array<app_layer> Global::create_layers_from_string(const string& text,
                                                           const string& magic_and_version,
                                                           read_report* report) {
    using problem = file_problem::kind;
    read_report unused(kind_of(magic_and_version));
    read_report& r = report ? *report : unused;
    line_numbers lines(text);
    const auto note = [&](problem what, std::size_t offset, std::string sentence) {
        r.add(what, lines.at(offset), offset, std::move(sentence));
    };

    pointer_array<app_layer> result;
    line_reader reader(text);
    std::string line;
    reader.get_line(line);

    const std::string noun = r.kind() == file_kind::presets ? "preset file" : "project";
    unsigned long count = 0;
    switch (check_header(line, magic_and_version, count)) {
    case header_status::bad_header:
        diagnostics_line("create_layers_from_string::header check err");
        r.refuse(problem::header_refused, "not a Tesserine " + noun + ": the first line is not \"" +
                                              magic_and_version + " COUNT ...\"");
        return result;
    case header_status::bad_count:
        diagnostics_line("layers_count can't be <0 or >1024");
        r.refuse(problem::count_out_of_range,
                 "the layer count in the first line is out of range (at most 1024 layers)");
        return result;
    case header_status::ok:
        break;
    }
    // A project's count leaves out its raster label record, which the one
    // pass more reads; a preset or logo file has none, and its records are
    // read by all count + 1 passes.
    r.layers_declared = r.kind() == file_kind::project ? count : count + 1;

    // Values the layer reader cannot take are damage of the record at hand.
    std::string_view body_text;
    std::size_t body_offset = 0, search_from = 0, record_index = 0;
    int record_type = 0;
    parse_error_listener listener([&](const std::string& key, const std::string& value) {
        const std::string wanted = key + ":" + value;
        std::size_t at = body_offset;
        line_reader body(body_text);
        body.skip(search_from);
        std::string body_line;
        for (std::size_t from = body.position(); body.get_line(body_line); from = body.position())
            if (body_line == wanted) {
                at = body_offset + from;
                search_from = body.position();
                break;
            }
        note(problem::bad_value, at,
             "the value of " + key + " in " + what_record(record_type, record_index) + ", " +
                 quoted(value) + ", does not parse; it is read as far as it goes");
    });

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
    bool label_read = false;
    for (unsigned long i = 0; i <= count; ++i) {
        std::size_t head_at = reader.position();
        // Whether line holds an old line because the text ran out.
        bool stale = !reader.get_line(line);
        if (stale) {
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
            if (!reader.get_line(line)) stale = true;
            if (std::sscanf(line.c_str(), "Height:%d", &height) != 1) height = 0;
            head_at = reader.position();
            if (!reader.get_line(line)) stale = true;
            if (width >= 1 && height >= 1) {
                set_paper_width(width);
                set_paper_height(height);
                if (wrapping_sum(raster_label_x, raster_label_width) == get_paper_width() ||
                    wrapping_sum(raster_label_y, raster_label_height) == get_paper_height())
                    host().raster_label_settings_from_raster(*this);
            }
        }

        // The text ends where a record head is due. A preset or logo file
        // of the older framing (its count is its number of records) ends so
        // at the last pass and gets its last record twice, as it always
        // did; anywhere else records are missing.
        const bool missing = stale && (i < count || r.kind() == file_kind::project);
        if (missing)
            note(problem::fewer_records, head_at,
                 r.kind() == file_kind::project && i == count
                     ? std::string("the file ends before the raster label record")
                     : "the file ends after " + std::to_string(result.size()) + " of " +
                           std::to_string(r.layers_declared) + " layers");

        int type = 0;
        int declared = 0;
        if (std::sscanf(line.c_str(), "%d %d", &type, &declared) != 2) {
            diagnostics_printf("create_layers_from_string::HDR::step2 error [std:%s]\n",
                               line.c_str());
            if (!stale)
                note(problem::bad_record_head, head_at,
                     "a record head (\"TYPE LENGTH\") is due here, but the line reads " +
                         quoted(line) + " (a record before it may be shorter than it says); "
                                        "reading stops");
            break;
        }
        const std::uint32_t length = std::uint32_t(declared);
        if (length == 0 || length > max_record_length) {
            diagnostics_printf("create_layers_from_string::data len too large [%d]\n", declared);
            note(problem::length_out_of_range, head_at,
                 "a record declares a length of " + std::to_string(declared) +
                     " bytes, where 1 to 16777216 can be read; reading stops");
            break;
        }

        const std::size_t body_at = reader.position();
        buffer.resize(std::size_t(length) + 1);
        const std::size_t available = std::min<std::size_t>(length, reader.remaining());
        if (available) std::memcpy(buffer.data(), reader.rest().data(), available);
        reader.skip(available);
        buffer[length] = '\0';
        const std::size_t layer_index = type == raster_label_record_type ? 0 : result.size();
        if (stale && missing)
            note(problem::record_read_twice, head_at,
                 "so the last record, " + what_record(type, layer_index ? layer_index - 1 : 0) +
                     ", is read a second time");
        else if (!stale && available < length)
            note(problem::record_cut_short, head_at,
                 what_record(type, layer_index) + " is cut short by the end of the file: " +
                     std::to_string(length) + " bytes declared, " + std::to_string(available) +
                     " there");

        if (type == e_layer_boxes || type == e_layer_image) {
            pointer<app_layer> layer = create_layer(enum_layer(type));
            if (!layer) {
                diagnostics_line(
                    "create_layers_from_string::create_layer_from_parameters::RETURN_NULL");
                break;
            }
            layer->apply_defaults();
            const std::string body = up_to_nul(buffer);
            body_text = body;
            body_offset = stale ? head_at : body_at;
            search_from = 0;
            record_index = layer_index;
            record_type = type;
            layer->apply_layer_info(body);
            body_text = {};
            result.push_back(layer);
        } else if (type == raster_label_record_type) {
            load_raster_label_info(up_to_nul(buffer));
            label_read = !stale && available == length;
        } else {
            diagnostics_printf("create_layers_from_string::ROW layer type incorrect [%d]\n", type);
            note(problem::unknown_record_type, head_at,
                 "a record of unknown type " + std::to_string(type) + "; reading stops");
            break;
        }
    }
    // Records after the raster label's, which older readers never reach:
    // the drawing settings, and whatever a later version adds, passed over.
    while (label_read && r.kind() == file_kind::project && reader.get_line(line)) {
        int type = 0, declared = 0;
        if (std::sscanf(line.c_str(), "%d %d", &type, &declared) != 2 || declared <= 0 ||
            std::uint32_t(declared) > max_record_length)
            break;
        const std::size_t available =
            std::min<std::size_t>(std::size_t(declared), reader.remaining());
        const std::string body(reader.rest().substr(0, available));
        reader.skip(available);
        if (type == drawing_settings_record_type) apply_drawing_settings(body);
    }
    r.layers_read = result.size();
    return result;
}

void Global::load_project_from_string(const string& text, read_report* report) {
    // A file the reader refuses leaves the document as it was: the old
    // project, its current layer, the raster and the raster label.
    struct kept_state {
        pointer<project> old_project;
        long long current;
        int width, height;
        bool label_enabled;
        string_array label_lines;
        int label_x, label_y, label_width, label_height, label_font_size;
        color_by_mode color_by;
    } const kept{m_project,           current_layer_index,    paper_width,
                 paper_height,        raster_label_enabled,   raster_label_lines,
                 raster_label_x,      raster_label_y,         raster_label_width,
                 raster_label_height, raster_label_font_size, color_by};
    m_project = std::make_shared<project>();
    // A file without the settings record draws as the design does.
    color_by = color_by_mode::chequer;
    set_current_layer_index(-1);
    pointer_array<app_layer> layers;
    try {
        layers = create_layers_from_string(text, project_magic_and_version, report);
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
        color_by = kept.color_by;
        set_changed();
        throw;
    }
    auto& stack = m_project->get_layers();
    stack.insert(stack.end(), layers.begin(), layers.end());
    set_current_layer_index(get_layers_count() - 1);
    host().reload_all(*this, true);
    set_changed();
}

read_report Global::load_project_from_file(const file::path& path) {
    read_report report(file_kind::project);
    std::string text;
    bool cut_at_nul = false;
    if (!read_text_file(path, text, report, &cut_at_nul)) return report;
    unsigned long count = 0;
    if (check_header(text, project_magic_and_version, count) != header_status::ok) {
        // Not a project at all: only the refusal is taken from the reader.
        create_layers_from_string(text, project_magic_and_version, &report);
        return report;
    }
    try {
        load_project_from_string(text, &report);
    } catch (const std::exception& e) {
        // The document was put back as it was.
        report = read_report(file_kind::project);
        report.refuse(file_problem::kind::layer_refused,
                      std::string("a layer record cannot be read: ") + e.what());
        return report;
    }
    if (cut_at_nul)
        report.add(file_problem::kind::nul_byte, line_numbers(text).at(text.size()), text.size(),
                   "a NUL byte ends the text here; what follows it is not read");
    host().reload_all(*this, true);
    set_changed();
    set_document_file(path, !report.clean());
    document_file = path;
    ++documents_opened;
    return report;
}

void Global::note_document_saved(const file::path& path) {
    document_file = path;
    ++documents_saved;
    host().document_saved(*this);
}

read_report Global::load_recovered_project(const file::path& data, const file::path& file,
                                           const file::path& suggested) {
    read_report report = load_project_from_file(data);
    if (report.refused()) return report;
    document_file = file;
    m_document_path = file;
    m_suggested_save_path = suggested;
    m_document_modified = true;
    return report;
}

void Global::set_document_file(const file::path& path, bool damaged) {
    m_document_path = path;
    m_document_modified = damaged;
    m_suggested_save_path = path;
    if (!damaged || path.empty()) return;
    std::string name = path.name();
    if (file::path(name).final_extension_lower() == "tsrx") name.resize(name.size() - 5);
    const std::string& whole = path.string();
    m_suggested_save_path = whole.substr(0, whole.size() - path.name().size()) + name +
                            " (repaired).tsrx";
}

void Global::load_presets_from_string(const string& text) {
    // Read first: a file the reader refuses leaves the list as it was.
    pointer_array<app_layer> layers = create_layers_from_string(text, presets_magic_and_version);
    presets.clear();
    presets.insert(presets.end(), layers.begin(), layers.end());
}

pointer_array<app_layer> Global::read_presets_file(const file::path& path, read_report& report) {
    std::string text;
    bool cut_at_nul = false;
    if (!read_text_file(path, text, report, &cut_at_nul)) return {};
    pointer_array<app_layer> layers;
    try {
        layers = create_layers_from_string(text, presets_magic_and_version, &report);
    } catch (const std::exception& e) {
        report = read_report(file_kind::presets);
        report.refuse(file_problem::kind::layer_refused,
                      std::string("a preset record cannot be read: ") + e.what());
        return {};
    }
    if (cut_at_nul)
        report.add(file_problem::kind::nul_byte, line_numbers(text).at(text.size()), text.size(),
                   "a NUL byte ends the text here; what follows it is not read");
    return layers;
}

read_report Global::load_presets_from_file(const file::path& path) {
    read_report report(file_kind::presets);
    pointer_array<app_layer> layers = read_presets_file(path, report);
    if (layers.empty()) return report;
    presets = std::move(layers);
    host().reload_all(*this, true);
    set_changed();
    // A list the user opens replaces the saved one at once.
    if (path.string() != auto_save_preset_file_name().string()) auto_save_presets();
    return report;
}

// ---------------------------------------------------------------- commands

// A cancelled dialog does nothing: it must not turn into ".tsrx" and
// replace the document with an empty one.

namespace {
std::string bulleted(const read_report& report) {
    std::string out;
    for (const std::string& line : report.lines())
        out += "\u2022 " + line + "\n";
    return out;
}
std::string joined(const read_report& report) {
    std::string out;
    for (const std::string& line : report.lines())
        out += (out.empty() ? "" : "; ") + line;
    return out;
}
} // namespace

read_report Global::open_project_file(const file::path& path) {
    read_report report = load_project_from_file(path);
    if (report.refused())
        show_error("The file " + path.string() + " cannot be used: " + joined(report) +
                   ". The document is left as it was.");
    else if (report.damaged())
        host().show_warning(
            "Damaged Project",
            "The project " + path.string() + " is damaged. It opens as far as it could be read (" +
                report.counts() + "):\n\n" + bulleted(report) +
                "\nCheck it before you use it. It has unsaved changes, and saving offers a new "
                "name, so that the damaged file stays as it is.");
    return report;
}

read_report Global::open_presets_file(const file::path& path) {
    read_report report = load_presets_from_file(path);
    if (report.refused())
        show_error("The file " + path.string() + " cannot be used as presets: " + joined(report) +
                   ". The preset list is left as it was.");
    else if (report.layers_read == 0)
        show_error("The file " + path.string() +
                   " holds no presets. The preset list is left as it was.");
    else if (report.damaged())
        host().show_warning("Damaged Preset File",
                            "The preset file " + path.string() + " is damaged (" +
                                report.counts() + "). What could be read is the list now.\n\n" +
                                bulleted(report));
    return report;
}

void Global::open_project_button() {
    ask_for_path({{"tsrx Project File", "*.tsrx"}}, false, [this](const file::path& path) {
        open_project_file(path.with_extension_if_no_extension(".tsrx"));
    });
}

void Global::save_project_button() {
    ask_for_path(
        {{"tsrx", "tsrx file"}}, true,
        [this](const file::path& path) {
            const file::path file = path.with_extension_if_no_extension(".tsrx");
            if (save_project_to_file(file)) note_document_saved(file);
        },
        m_suggested_save_path);
}

void Global::open_presets_button() {
    ask_for_path({{"Tsrx Presets File", "*.tsrx_presets"}}, false, [this](const file::path& path) {
        open_presets_file(path.with_extension_if_no_extension(".tsrx_presets"));
    });
}

void Global::save_presets_button() {
    ask_for_path({{"Tsrx Presets File", "*.tsrx_presets"}}, true, [this](const file::path& path) {
        save_presets_to_file(path.with_extension_if_no_extension(".tsrx_presets"));
    });
}

} // namespace Vantora_TesserinePro
