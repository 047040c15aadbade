#pragma once
// Basic vocabulary shared by the whole core.

#include <QImage>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

template <class T> using pointer = std::shared_ptr<T>;
template <class T> using pointer_array = std::vector<std::shared_ptr<T>>;
using string = std::string;
using string_array = std::vector<std::string>;

// Drawing targets are premultiplied ARGB32, QPainter's fast path.
using image = QImage;
constexpr QImage::Format image_format = QImage::Format_ARGB32_Premultiplied;

// Largest drawing target the program allocates: beyond this a raster or
// layer of absurd size is refused instead of exhausting memory. 32768 is
// QImage's own side limit; 2^28 pixels is 1 GiB of ARGB.
constexpr int max_image_side = 32767;
constexpr unsigned long long max_image_pixels = 1ull << 28;

// Whether a drawing target of this size may be allocated at all.
constexpr bool image_size_allowed(unsigned long long width, unsigned long long height) {
    return width > 0 && height > 0 && width <= (unsigned long long)max_image_side &&
           height <= (unsigned long long)max_image_side && width * height <= max_image_pixels;
}

// Sums of offsets and sizes as 32-bit numbers that wrap, as they always
// have: a typed offset near the limit must not make the sum undefined.
constexpr int wrapping_sum(int a, int b, int c = 0) {
    return int(std::uint32_t(a) + std::uint32_t(b) + std::uint32_t(c));
}

// Layer type as stored in files.
enum enum_layer : int {
    e_layer_boxes = 1,
    e_layer_image = 2,
};

// Record type of the raster label in project files; not a layer type.
constexpr int raster_label_record_type = 100;
// Record type of the project's drawing settings, after the raster label
// record, where readers of the older files never look.
constexpr int drawing_settings_record_type = 101;

// How a screen's cabinets are coloured: the chequer of its colour list, or
// by the data port or power circuit each is on.
enum class color_by_mode : int { chequer, port, circuit };

} // namespace Vantora_TesserinePro
