#include "document/arrange.h"

#include "document/app_layer.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/names.h"
#include "persistence/file_format.h"

#include <QString>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace Vantora_TesserinePro {

namespace {

// Division rounding towards minus infinity: a centre left of the raster's
// still rounds the same way as one right of it.
long long floor_div(long long a, long long b) {
    const long long q = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

bool set_offsets(app_layer& layer, long long x, long long y) {
    const int nx = held_offset(x), ny = held_offset(y);
    if (nx == layer.get_offset_x() && ny == layer.get_offset_y()) return false;
    layer.set_offset_x(nx);
    layer.set_offset_y(ny);
    return true;
}

pointer_array<app_layer> layers_at(const Global& global, const std::vector<long long>& indices) {
    pointer_array<app_layer> layers;
    for (long long i : indices)
        if (pointer<app_layer> layer = global.get_layer(i)) layers.push_back(layer);
    return layers;
}

bool name_taken(const string_array& names, const string& name) {
    const QString wanted = QString::fromStdString(name);
    return std::any_of(names.begin(), names.end(), [&](const string& n) {
        return QString::fromStdString(n).compare(wanted, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

raster_rect rect_of(const app_layer& layer) {
    return {layer.get_offset_x(), layer.get_offset_y(), layer.get_width(), layer.get_height()};
}

raster_rect bounds_of(const pointer_array<app_layer>& layers) {
    raster_rect r;
    bool first = true;
    for (const auto& layer : layers) {
        const raster_rect l = rect_of(*layer);
        if (first) {
            r = l;
            first = false;
            continue;
        }
        const long long right = std::max(r.right(), l.right());
        const long long bottom = std::max(r.bottom(), l.bottom());
        r.x = std::min(r.x, l.x);
        r.y = std::min(r.y, l.y);
        r.w = right - r.x;
        r.h = bottom - r.y;
    }
    return r;
}

raster_rect bounds_of(const Global& global, const std::vector<long long>& indices) {
    return bounds_of(layers_at(global, indices));
}

int held_offset(long long value) {
    return int(std::clamp<long long>(value, -INT_MAX, INT_MAX));
}

std::vector<long long> visible_screens_in_list_order(const Global& global) {
    std::vector<long long> order;
    for (long long i = global.get_layers_count() - 1; i >= 0; --i) {
        const pointer<app_layer> layer = global.get_layer(i);
        if (layer && !layer->is_hidden() && layer->get_layer_type() == e_layer_boxes)
            order.push_back(i);
    }
    return order;
}

// ---------------------------------------------------------------- arranging

bool align_layers(Global& global, const std::vector<long long>& indices, alignment how) {
    const auto layers = layers_at(global, indices);
    if (layers.empty()) return false;
    const raster_rect ref =
        layers.size() == 1 ? raster_rect{0, 0, global.get_paper_width(), global.get_paper_height()}
                           : bounds_of(global, indices);
    bool moved = false;
    for (const auto& layer : layers) {
        const raster_rect r = rect_of(*layer);
        long long x = r.x, y = r.y;
        switch (how) {
        case alignment::left:
            x = ref.x;
            break;
        case alignment::right:
            x = ref.right() - r.w;
            break;
        case alignment::top:
            y = ref.y;
            break;
        case alignment::bottom:
            y = ref.bottom() - r.h;
            break;
        case alignment::horizontal_centres:
            x = ref.x + floor_div(ref.w - r.w, 2);
            break;
        case alignment::vertical_centres:
            y = ref.y + floor_div(ref.h - r.h, 2);
            break;
        }
        moved |= set_offsets(*layer, x, y);
    }
    return moved;
}

bool distribute_layers(Global& global, const std::vector<long long>& indices, bool horizontally) {
    auto layers = layers_at(global, indices);
    if (layers.size() < 3) return false;
    const auto start = [horizontally](const app_layer& l) {
        return horizontally ? (long long)l.get_offset_x() : (long long)l.get_offset_y();
    };
    const auto size = [horizontally](const app_layer& l) {
        return horizontally ? (long long)l.get_width() : (long long)l.get_height();
    };
    // Equal starts keep the order they were given in.
    std::stable_sort(layers.begin(), layers.end(),
                     [&](const auto& a, const auto& b) { return start(*a) < start(*b); });
    long long low = start(*layers.front()), high = low, sizes = 0;
    for (const auto& l : layers) {
        high = std::max(high, start(*l) + size(*l));
        sizes += size(*l);
    }
    // The room left over, shared out; the first gaps take the remainder's
    // rounding, so that the last ends exactly at the far edge.
    const long long room = high - low - sizes, gaps = (long long)layers.size() - 1;
    bool moved = false;
    long long before = 0;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const long long at = low + before + floor_div(room * (long long)i, gaps);
        app_layer& l = *layers[i];
        moved |= horizontally ? set_offsets(l, at, l.get_offset_y())
                              : set_offsets(l, l.get_offset_x(), at);
        before += size(l);
    }
    return moved;
}

std::optional<std::vector<QPoint>> pack_places(const std::vector<raster_rect>& sizes,
                                               long long raster_width, long long raster_height,
                                               long long gap) {
    std::vector<QPoint> places;
    long long x = 0, y = 0, row_height = 0;
    bool row_empty = true;
    for (const raster_rect& s : sizes) {
        if (!row_empty && x + s.w > raster_width) {
            y += row_height + gap;
            x = 0;
            row_height = 0;
            row_empty = true;
        }
        if (s.w > raster_width || y + s.h > raster_height) return std::nullopt;
        places.emplace_back(int(x), int(y));
        x += s.w + gap;
        row_height = std::max(row_height, s.h);
        row_empty = false;
    }
    return places;
}

string pack_layers(Global& global, const std::vector<long long>& order, int gap) {
    const auto layers = layers_at(global, order);
    std::vector<raster_rect> sizes;
    for (const auto& layer : layers)
        sizes.push_back(rect_of(*layer));
    const int W = global.get_paper_width(), H = global.get_paper_height();
    const auto places = pack_places(sizes, W, H, gap);
    if (!places)
        return "the " + std::to_string(layers.size()) + " screens do not fit the raster of " +
               std::to_string(W) + " by " + std::to_string(H) + " pixels with a gap of " +
               std::to_string(gap);
    for (std::size_t i = 0; i < layers.size(); ++i)
        set_offsets(*layers[i], (*places)[i].x(), (*places)[i].y());
    return {};
}

bool move_layers(Global& global, const std::vector<long long>& indices, long long dx,
                 long long dy) {
    bool moved = false;
    for (const auto& layer : layers_at(global, indices))
        moved |=
            set_offsets(*layer, (long long)layer->get_offset_x() + dx, layer->get_offset_y() + dy);
    return moved;
}

// ---------------------------------------------------------------- snapping

bool snap_to_raster(int& v, long long size, long long side) {
    const long long at = v;
    if (std::llabs(at) < snap_threshold) {
        v = 0;
        return true;
    }
    if (std::llabs(at + size - side) < snap_threshold) {
        v = int(side - size);
        return true;
    }
    return false;
}

bool snap_axis(int& v, long long size, long long other, long long other_size) {
    const long long a = v;
    const long long candidates[4][2] = {
        {a - other, other},
        {a - (other + other_size), other + other_size},
        {a + size - other, other - size},
        {a + size - (other + other_size), other + other_size - size}};
    for (const auto& c : candidates)
        if (c[0] > -snap_threshold && c[0] < snap_threshold) {
            v = int(c[1]); // wraps, as a 32-bit sum did
            return true;
        }
    return false;
}

QPoint snap_block(const Global& global, const raster_rect& block,
                  const std::vector<long long>& skip) {
    int x = held_offset(block.x), y = held_offset(block.y);
    bool done_x = snap_to_raster(x, block.w, global.get_paper_width());
    bool done_y = snap_to_raster(y, block.h, global.get_paper_height());
    for (long long i = 0; i < global.get_layers_count() && !(done_x && done_y); ++i) {
        const pointer<app_layer> other = global.get_layer(i);
        if (!other || std::find(skip.begin(), skip.end(), i) != skip.end()) continue;
        if (!done_x) done_x = snap_axis(x, block.w, other->get_offset_x(), other->get_width());
        if (!done_y) done_y = snap_axis(y, block.h, other->get_offset_y(), other->get_height());
    }
    return QPoint(x, y);
}

// ---------------------------------------------------------------- clipboard

string screens_text(const Global& global, const std::vector<long long>& indices) {
    return global.project_or_presets_text(
        layers_at(global, indices), project_magic,
        project_extra_block(global.get_paper_width(), global.get_paper_height()), true);
}

pointer_array<app_layer> screens_from_text(const string& text) {
    // A workspace of its own: reading a project sets the raster and its
    // label, which must not touch the document pasted into.
    Global scratch;
    read_report report(file_kind::project);
    pointer_array<app_layer> layers;
    try {
        layers = scratch.create_layers_from_string(text, project_magic_and_version, &report);
    } catch (const std::exception&) {
        return {};
    }
    pointer_array<app_layer> screens;
    if (!report.clean()) return screens;
    for (auto& layer : layers)
        if (layer->get_layer_type() == e_layer_boxes) {
            layer->set_references(nullptr, nullptr);
            screens.push_back(layer);
        }
    return screens;
}

std::vector<long long> add_screens(Global& global, const pointer_array<app_layer>& screens,
                                   long long dx, long long dy) {
    project* p = global.current_project();
    if (!p || screens.empty() || p->get_layers_count() + (long long)screens.size() > max_layers)
        return {};
    string_array names;
    for (const auto& layer : p->layers)
        names.push_back(layer->get_name());
    std::vector<long long> added;
    for (const auto& screen : screens) {
        screen->set_references(&global, global.current_project_pointer());
        if (name_taken(names, screen->get_name()))
            screen->set_name(_001IncrementName(screen->get_name(), "Screen", names));
        names.push_back(screen->get_name());
        set_offsets(*screen, (long long)screen->get_offset_x() + dx, screen->get_offset_y() + dy);
        screen->set_changed();
        added.push_back(p->get_layers_count());
        p->layers.push_back(screen);
    }
    global.host().set_current_layer_to(global, added.back(), true);
    global.set_changed();
    global.host().post_main_screen_layout();
    return added;
}

std::optional<QPoint> first_free_place(const Global& global, long long width, long long height) {
    const long long W = global.get_paper_width(), H = global.get_paper_height();
    std::vector<raster_rect> taken;
    std::vector<long long> xs{0}, ys{0};
    for (long long i : visible_screens_in_list_order(global)) {
        const raster_rect r = rect_of(*global.get_layer(i));
        taken.push_back(r);
        xs.push_back(r.right());
        ys.push_back(r.bottom());
    }
    for (auto* v : {&xs, &ys}) {
        std::sort(v->begin(), v->end());
        v->erase(std::unique(v->begin(), v->end()), v->end());
    }
    // A free place has its left edge on the raster's or a screen's right
    // edge, and its top on the raster's or a screen's bottom.
    for (long long y : ys) {
        if (y < 0 || y + height > H) continue;
        long long past = LLONG_MIN;
        for (long long x : xs) {
            if (x < 0 || x < past || x + width > W) continue;
            const raster_rect block{x, y, width, height};
            const auto hit = std::find_if(taken.begin(), taken.end(),
                                          [&](const raster_rect& r) { return r.overlaps(block); });
            if (hit == taken.end()) return QPoint(int(x), int(y));
            // No place starts left of the screen in the way.
            past = hit->right();
        }
    }
    return std::nullopt;
}

void delete_layers(Global& global, const std::vector<long long>& indices) {
    project* p = global.current_project();
    if (!p) return;
    std::vector<long long> doomed;
    for (long long i : indices)
        if (i >= 0 && i < p->get_layers_count()) doomed.push_back(i);
    std::sort(doomed.begin(), doomed.end());
    doomed.erase(std::unique(doomed.begin(), doomed.end()), doomed.end());
    if (doomed.empty()) return;
    const long long current = global.get_current_layer_id();
    const long long below =
        std::lower_bound(doomed.begin(), doomed.end(), current) - doomed.begin();
    for (auto it = doomed.rbegin(); it != doomed.rend(); ++it)
        p->layers.erase(p->layers.begin() + *it);
    global.host().set_current_layer_to(global, std::min(p->get_layers_count() - 1, current - below),
                                       true);
    global.set_changed();
    global.host().post_main_screen_layout();
    global.host().post_main_window_redraw();
}

} // namespace Vantora_TesserinePro
