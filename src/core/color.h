#pragma once
// Colours: four bytes red, green, blue, alpha, also handled as one 32-bit
// word with red in the low byte and alpha in the top byte.

#include <cstdint>
#include <string>

namespace Vantora_TesserinePro {
namespace color {

struct color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;

    constexpr color() = default;
    constexpr color(std::uint8_t r, std::uint8_t g, std::uint8_t b, std::uint8_t a = 255)
        : red(r), green(g), blue(b), alpha(a) {}

    static constexpr color from_word(std::uint32_t w) {
        return color(std::uint8_t(w & 0xFF), std::uint8_t((w >> 8) & 0xFF),
                     std::uint8_t((w >> 16) & 0xFF), std::uint8_t(w >> 24));
    }
    constexpr std::uint32_t word() const {
        return std::uint32_t(red) | (std::uint32_t(green) << 8) | (std::uint32_t(blue) << 16) |
               (std::uint32_t(alpha) << 24);
    }
    constexpr bool operator==(const color&) const = default;
};

constexpr color opaque_white = color(255, 255, 255, 255);

} // namespace color

// A colour from text: "%f %f %f %f" (channels 0..1, red first) or six
// hexadecimal digits RRGGBB (an optional leading '#'). Throws
// std::invalid_argument on anything else.
color::color as_color(const std::string& text);

// The "%f %f %f %f" form that the parameter text writes.
std::string color_to_text(const color::color& c);

// "#" and red, green, blue as "%02x%02x%02x".
std::string _hex_color(const color::color& c);

} // namespace Vantora_TesserinePro
