#include "document/history.h"

#include "core/line_reader.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <set>
#include <unordered_map>

namespace Vantora_TesserinePro {

namespace {

using pairs = std::vector<std::pair<string, string>>;

pairs key_values(const string& print) {
    pairs result;
    line_reader reader(print);
    string line;
    while (reader.get_line(line)) {
        const std::size_t colon = line.find(':');
        if (colon != string::npos)
            result.emplace_back(line.substr(0, colon), line.substr(colon + 1));
    }
    return result;
}

string value_of(const string& print, const string& key) {
    for (const auto& [k, v] : key_values(print))
        if (k == key) return v;
    return {};
}

// "DrawGrid" -> "Draw Grid", unless the palette calls it otherwise.
string key_caption(const string& key) {
    static const std::map<string, string> captions = {
        {"Width", "Cabinet Width"},
        {"Height", "Cabinet Height"},
        {"SnakeMode", "Path Pattern"},
        {"DrawGrid", "Outline"},
        {"DrawCircle", "Centering Circle"},
        {"DrawBoxesNames", "Cabinet ID"},
        {"DrawPower", "Power Label"},
        {"DrawSnake", "Data Path"},
        {"DrawScreenSize", "Screen Size Label"},
        {"ExcludeBoxes", "Exclude Cabinets"},
        {"CustomPath", "Custom Path"},
        {"PhysW", "Physical Width"},
        {"PhysH", "Physical Height"},
        {"CircuitAmps", "Circuit Rating"},
        {"CircuitDerate", "Derate"},
        {"DrawPowerPath", "Power Path"},
        {"BitDepth", "Colour Depth"},
        {"FirstPort", "First Port"},
        {"ProcessorUnit", "Unit"},
        {"CabinetWeight", "Cabinet Weight"},
        {"SparePercent", "Spare Cabinets"},
    };
    if (auto it = captions.find(key); it != captions.end()) return it->second;
    string text;
    for (std::size_t i = 0; i < key.size(); ++i) {
        if (i > 0 && std::isupper((unsigned char)key[i]) &&
            !std::isupper((unsigned char)key[i - 1]))
            text += ' ';
        text += key[i];
    }
    return text;
}

std::size_t picture_bytes(const app_layer& layer) {
    if (auto* img = dynamic_cast<const image_layer*>(&layer))
        if (img->picture) return std::size_t(img->picture->sizeInBytes());
    return 0;
}

} // namespace

pointer<app_layer> copy_layer(const app_layer& layer) {
    pointer<app_layer> copy;
    if (auto* boxes = dynamic_cast<const boxes_layer*>(&layer)) {
        auto c = std::make_shared<boxes_layer>();
        static_cast<BoxesLayerDescription&>(*c) = static_cast<const BoxesLayerDescription&>(*boxes);
        c->empty_marker = boxes->empty_marker;
        c->arrow_half_size = boxes->arrow_half_size;
        copy = c;
    } else if (auto* img = dynamic_cast<const image_layer*>(&layer)) {
        auto c = std::make_shared<image_layer>();
        c->picture = img->picture; // shared: pictures are never changed in place
        c->width = img->width;
        c->height = img->height;
        c->real_width = img->real_width;
        c->real_height = img->real_height;
        c->aspect_ratio = img->aspect_ratio;
        c->maintain_aspect_ratio = img->maintain_aspect_ratio;
        copy = c;
    } else {
        return nullptr;
    }
    copy->set_name(layer.get_stored_name());
    copy->hidden = layer.hidden;
    copy->is_logo = layer.is_logo;
    copy->offset_x = layer.offset_x;
    copy->offset_y = layer.offset_y;
    copy->clear_changed();
    return copy;
}

string layer_print(const app_layer& layer) {
    string text = std::to_string(int(layer.get_layer_type())) + (layer.is_logo ? " logo\n" : "\n");
    if (auto* img = dynamic_cast<const image_layer*>(&layer)) {
        property_set set = img->get_base_layer_info();
        set.set("Width", img->get_width());
        set.set("Height", img->get_height());
        set.set("AspectRatio", img->maintain_aspect_ratio ? "1" : "0");
        char address[32];
        std::snprintf(address, sizeof address, "%p", (const void*)img->picture.get());
        set.set("Data", address);
        return text + set.as_string(":", "\n");
    }
    return text + layer.get_layer_info();
}

bool document_state::same_document(const document_state& o) const {
    return prints == o.prints && paper_width == o.paper_width && paper_height == o.paper_height &&
           label_enabled == o.label_enabled && label_lines == o.label_lines &&
           label_x == o.label_x && label_y == o.label_y && label_width == o.label_width &&
           label_height == o.label_height && label_font_size == o.label_font_size &&
           color_by == o.color_by;
}

// ---------------------------------------------------------------- states

document_state document_history::capture(const Global& global) const {
    document_state s;
    // A layer that saves as it did in the last state keeps that state's copy.
    std::unordered_map<string, pointer<app_layer>> known;
    for (std::size_t i = 0; i < m_current.prints.size(); ++i)
        known.emplace(m_current.prints[i], m_current.layers[i]);
    if (const pointer<project> p = global.current_project_pointer())
        for (const auto& layer : p->layers) {
            if (!layer) continue;
            string print = layer_print(*layer);
            auto it = known.find(print);
            pointer<app_layer> copy = it != known.end() ? it->second : copy_layer(*layer);
            if (it == known.end()) s.bytes += sizeof(boxes_layer) + 2 * print.size();
            s.layers.push_back(copy);
            s.prints.push_back(std::move(print));
        }
    s.current_layer = global.get_current_layer_id();
    s.paper_width = global.paper_width;
    s.paper_height = global.paper_height;
    s.label_enabled = global.raster_label_enabled;
    s.label_lines = global.raster_label_lines;
    s.label_x = global.raster_label_x;
    s.label_y = global.raster_label_y;
    s.label_width = global.raster_label_width;
    s.label_height = global.raster_label_height;
    s.label_font_size = global.raster_label_font_size;
    s.color_by = global.color_by;
    return s;
}

void document_history::apply(Global& global, const document_state& s, long long touched) {
    if (!global.m_project) global.m_project = std::make_shared<project>();
    auto& live = global.m_project->layers;
    pointer_array<app_layer> layers;
    for (std::size_t i = 0; i < s.layers.size(); ++i) {
        // An unchanged layer stays, with its drawing.
        if (i < live.size() && live[i] && layer_print(*live[i]) == s.prints[i]) {
            layers.push_back(live[i]);
            continue;
        }
        // The state's copy stays untouched for the next undo or redo.
        pointer<app_layer> copy = copy_layer(*s.layers[i]);
        copy->set_references(&global, global.m_project);
        copy->changed = true;
        layers.push_back(copy);
    }
    live = std::move(layers);
    global.paper_width = s.paper_width;
    global.paper_height = s.paper_height;
    global.raster_label_enabled = s.label_enabled;
    global.raster_label_lines = s.label_lines;
    global.raster_label_x = s.label_x;
    global.raster_label_y = s.label_y;
    global.raster_label_width = s.label_width;
    global.raster_label_height = s.label_height;
    global.raster_label_font_size = s.label_font_size;
    global.color_by = s.color_by;
    const long long count = (long long)live.size();
    long long select = touched >= 0 && touched < count ? touched : s.current_layer;
    if (select >= count) select = count - 1;
    global.current_layer_index = select;
    workspace_host& host = global.host();
    host.raster_label_settings_to_palette(global);
    host.set_current_layer_to(global, select, true);
    host.reload_all(global, true);
    global.set_changed();
    host.post_main_screen_layout();
    host.post_main_window_redraw();
    m_current.current_layer = select;
}

// ---------------------------------------------------------------- steps

void document_history::reset(const Global& global) {
    m_undo.clear();
    m_redo.clear();
    m_current = document_state{};
    m_current = capture(global);
    m_current.id = m_next_id++;
    m_saved_id = m_current.id;
}

bool document_history::record(const Global& global, const string& name) {
    document_state now = capture(global);
    if (now.same_document(m_current)) {
        m_current.current_layer = now.current_layer;
        return false;
    }
    long long touched_before = m_current.current_layer;
    long long touched_after = now.current_layer;
    string caption = step_name(m_current, now, touched_before, touched_after);
    if (!name.empty()) caption = name;
    now.id = m_next_id++;
    m_undo.push_back({caption, std::move(m_current), touched_before, touched_after});
    m_current = std::move(now);
    m_redo.clear();
    trim();
    return true;
}

bool document_history::undo(Global& global) {
    if (m_undo.empty()) return false;
    step s = std::move(m_undo.back());
    m_undo.pop_back();
    m_redo.push_back({s.name, std::move(m_current), s.select_other, s.select_here});
    m_current = std::move(s.state);
    apply(global, m_current, s.select_here);
    return true;
}

bool document_history::redo(Global& global) {
    if (m_redo.empty()) return false;
    step s = std::move(m_redo.back());
    m_redo.pop_back();
    m_undo.push_back({s.name, std::move(m_current), s.select_other, s.select_here});
    m_current = std::move(s.state);
    apply(global, m_current, s.select_here);
    return true;
}

const string& document_history::undo_name() const {
    static const string none;
    return m_undo.empty() ? none : m_undo.back().name;
}

const string& document_history::redo_name() const {
    static const string none;
    return m_redo.empty() ? none : m_redo.back().name;
}

std::size_t document_history::bytes() const {
    // Pictures count once however many states share them.
    std::set<const void*> pictures;
    std::size_t total = m_current.bytes;
    auto count = [&](const document_state& s) {
        for (const auto& layer : s.layers)
            if (std::size_t b = picture_bytes(*layer);
                b && pictures.insert(static_cast<const image_layer&>(*layer).picture.get()).second)
                total += b;
    };
    count(m_current);
    for (const auto* list : {&m_undo, &m_redo})
        for (const step& s : *list) {
            total += s.state.bytes;
            count(s.state);
        }
    return total;
}

void document_history::trim() {
    while (!m_undo.empty() && (m_undo.size() + m_redo.size() > max_steps || bytes() > max_bytes))
        m_undo.pop_front();
}

string document_history::step_name(const document_state& before, const document_state& after,
                                   long long& touched_before, long long& touched_after) {
    if (before.paper_width != after.paper_width || before.paper_height != after.paper_height)
        return "Raster Size";
    if (before.color_by != after.color_by) return "Colour Cabinets By";
    const std::size_t nb = before.prints.size();
    const std::size_t na = after.prints.size();
    const std::size_t common = std::min(nb, na);
    std::size_t first = 0;
    while (first < common && before.prints[first] == after.prints[first])
        ++first;
    auto name_in = [](const document_state& s, std::size_t i) { return s.layers[i]->get_name(); };
    if (na == nb + 1 && std::equal(before.prints.begin() + long(first), before.prints.end(),
                                   after.prints.begin() + long(first) + 1)) {
        touched_after = (long long)first;
        return "Add " + name_in(after, first);
    }
    if (nb == na + 1 && std::equal(after.prints.begin() + long(first), after.prints.end(),
                                   before.prints.begin() + long(first) + 1)) {
        touched_before = (long long)first;
        touched_after = std::min<long long>((long long)first, (long long)na - 1);
        return "Delete " + name_in(before, first);
    }
    if (na != nb) return "Change Layers";
    if (first == na) return "Raster Label";
    std::size_t last = na - 1;
    while (before.prints[last] == after.prints[last])
        --last;
    if (first != last) {
        if (std::is_permutation(before.prints.begin(), before.prints.end(), after.prints.begin())) {
            // The moved layer is the one selected after the move.
            if (touched_after >= 0 && std::size_t(touched_after) < na) {
                const string& moved = after.prints[std::size_t(touched_after)];
                for (std::size_t i = 0; i < nb; ++i)
                    if (before.prints[i] == moved) touched_before = (long long)i;
                return "Move " + name_in(after, std::size_t(touched_after)) + " in the List";
            }
            return "Reorder Layers";
        }
        return "Change Layers";
    }
    touched_before = touched_after = (long long)first;
    const pairs old_values = key_values(before.prints[first]);
    const pairs new_values = key_values(after.prints[first]);
    std::vector<string> keys;
    for (const auto& kv : new_values) {
        auto it = std::find_if(old_values.begin(), old_values.end(),
                               [&](const auto& e) { return e.first == kv.first; });
        if (it == old_values.end() || it->second != kv.second) keys.push_back(kv.first);
    }
    const string layer = name_in(after, first);
    auto only = [&](std::initializer_list<const char*> allowed) {
        for (const string& k : keys)
            if (std::none_of(allowed.begin(), allowed.end(), [&](const char* a) { return k == a; }))
                return false;
        return !keys.empty();
    };
    if (only({"OffsetX", "OffsetY"})) return "Move " + layer;
    if (only({"Name"})) return "Rename " + name_in(before, first);
    if (only({"Hidden"}))
        return (value_of(after.prints[first], "Hidden") == "1" ? "Hide " : "Show ") + layer;
    const bool picture = after.layers[first]->get_layer_type() == e_layer_image;
    if (picture && only({"OffsetX", "OffsetY", "Width", "Height"})) return "Resize " + layer;
    if (keys.size() == 1) return key_caption(keys.front());
    return "Change " + layer;
}

} // namespace Vantora_TesserinePro
