#include "document/boxes_layer.h"

#include "core/number_reader.h"
#include "document/global.h"

#include <algorithm>
#include <climits>
#include <stdexcept>

namespace Vantora_TesserinePro {

pointer<app_layer> boxes_layer::clone() const {
    auto copy = std::make_shared<boxes_layer>();
    copy->set_references(global, get_project());
    static_cast<BoxesLayerDescription&>(*copy) = static_cast<const BoxesLayerDescription&>(*this);
    copy->name = name;
    copy->empty_marker = empty_marker;
    return copy;
}

void boxes_layer::default_colors() {
    BoxColors = {color::color::from_word(0xFF7F7F3F)};
    set_changed();
    BoxTintColors = {color::color::from_word(0xFFB8B895)};
    set_changed();
}

void boxes_layer::apply_defaults() {
    DrawGrid = 1;
    set_changed();
    GridWidth = 2;
    set_changed();
    DrawCircle = 1;
    set_changed();
    CircleWidth = 2;
    set_changed();
    DrawBoxesNames = 0;
    set_changed();
    CornersMode |= 1;
    set_changed();
    DrawLayerName = 1;
    set_changed();
    DrawScreenSize = 1;
    set_changed();
    DrawPower = 0;
    set_changed();
    DrawInfoLine = 1;
    set_changed();
    DrawSnake = 0;
    set_changed();
}

float boxes_layer::get_full_columns() const {
    return float(Columns) - ((HalfColumns[0] || HalfColumns[1]) ? 0.5f : 0.0f);
}

float boxes_layer::get_full_rows() const {
    return float(Rows) - ((HalfColumns[2] || HalfColumns[3]) ? 0.5f : 0.0f);
}

namespace {
// ceil in single precision, then truncated; a negative or absurd size is
// held inside what an int can say.
int full_extent(float lines, std::int32_t step) {
    const float v = std::ceil(lines * float(step));
    if (!(v > 0.0f)) return 0;
    if (v >= float(INT_MAX)) return INT_MAX;
    return int(v);
}
} // namespace

int boxes_layer::get_full_width() const {
    return full_extent(get_full_columns(), Width);
}
int boxes_layer::get_full_height() const {
    return full_extent(get_full_rows(), Height);
}

std::vector<std::uint32_t> boxes_layer::hit_test(int left, int top, int right, int bottom) const {
    std::vector<std::uint32_t> ids;
    for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
            if (right > int(x0) && left < int(x1) && bottom > int(y0) && top < int(y1))
                ids.push_back(box_id(column, row));
            return false;
        },
        false);
    return ids;
}

bool boxes_layer::box_at(float x, float y, std::uint32_t& id) const {
    return for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
            if (x0 < x && x < x1 && y0 < y && y < y1) {
                id = box_id(column, row);
                return true;
            }
            return false;
        },
        false);
}

bool boxes_layer::trigger_for_exclude_boxes(float x, float y) {
    std::uint32_t id = 0;
    if (!box_at(x, y, id)) return false;
    if (!ExcludeBoxes.remove(id)) ExcludeBoxes.add(id);
    set_changed();
    return !ExcludeBoxes.contains(id);
}

void boxes_layer::switch_all_exclude_boxes() {
    const long long before = (long long)ExcludeBoxes.size();
    const long long cabinets = (long long)Rows * (long long)Columns;
    ExcludeBoxes.clear();
    // A mistyped grid of billions of cabinets is not excluded one by one:
    // that would exhaust memory. It is left with none excluded.
    if (before < cabinets && (unsigned long long)cabinets <= Snake::max_route_cabinets) {
        for (long long c = 0; c < Columns; ++c)
            for (long long r = 0; r < Rows; ++r)
                ExcludeBoxes.add(box_id(std::uint32_t(c), std::uint32_t(r)));
    }
    set_changed();
}

void boxes_layer::set_half_pair(unsigned long set_bit, unsigned long clear_bit, bool value) {
    if (clear_bit >= 4) throw std::out_of_range("bitset reset argument out of range");
    HalfColumns.reset(clear_bit);
    if (set_bit >= 4) throw std::out_of_range("bitset test argument out of range");
    HalfColumns.set(set_bit, value);
    set_changed();
}

void boxes_layer::set_box_color_with_id(int id, const string& hex) {
    if (hex.size() != 6 || id < 0) return;
    const std::uint8_t red = consume_hex_pair(hex[0], hex[1]);
    const std::uint8_t green = consume_hex_pair(hex[2], hex[3]);
    const std::uint8_t blue = consume_hex_pair(hex[4], hex[5]);
    const std::size_t need = std::size_t(id) + 1;
    if (BoxColors.size() < need) BoxColors.resize(need, color::opaque_white);
    if (BoxTintColors.size() < need) BoxTintColors.resize(need, color::opaque_white);
    const color::color main(red, green, blue, 255);
    BoxColors[std::size_t(id)] = main;
    auto tint = [](std::uint8_t channel) {
        const float c = float(channel) / 255.0f;
        const float t = std::min((1.0f - c) * 0.45f + c, 1.0f);
        return std::uint8_t(t * 255.0f);
    };
    BoxTintColors[std::size_t(id)] = color::color(tint(red), tint(green), tint(blue), main.alpha);
}

void boxes_layer::switch_corner_label(Corner corner, bool on) {
    if (on)
        CornersMode |= (1 << int(corner));
    else
        CornersMode &= ~(1 << int(corner));
    set_changed();
}

void boxes_layer::toggle_corner_label(Corner corner) {
    CornersMode ^= (1 << int(corner));
    set_changed();
}

bool boxes_layer::is_corner_label_on(Corner corner) const {
    return (CornersMode >> int(corner)) & 1;
}

long long boxes_layer::cabinet_count() const {
    return (long long)Rows * (long long)Columns - (long long)ExcludeBoxes.size();
}

} // namespace Vantora_TesserinePro
