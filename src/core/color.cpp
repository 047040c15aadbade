#include "core/color.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace Vantora_TesserinePro {

namespace {

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::uint8_t channel_from_unit(float f) {
    if (!(f > 0.0f)) return 0; // also NaN
    if (f >= 1.0f) return 255;
    return std::uint8_t(std::lround(f * 255.0f));
}

} // namespace

color::color as_color(const std::string& text) {
    std::string t = text;
    if (!t.empty() && t[0] == '#') t.erase(0, 1);
    if (t.size() == 6) {
        int v[6];
        bool ok = true;
        for (int i = 0; i < 6; ++i)
            ok = ok && (v[i] = hex_value(t[i])) >= 0;
        if (ok)
            return color::color(std::uint8_t(v[0] * 16 + v[1]), std::uint8_t(v[2] * 16 + v[3]),
                                std::uint8_t(v[4] * 16 + v[5]), 255);
    }
    float r, g, b, a;
    int consumed = 0;
    if (std::sscanf(text.c_str(), " %f %f %f %f%n", &r, &g, &b, &a, &consumed) == 4) {
        // Only trailing white space may follow the four numbers.
        std::size_t i = std::size_t(consumed);
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
            ++i;
        if (i == text.size())
            return color::color(channel_from_unit(r), channel_from_unit(g), channel_from_unit(b),
                                channel_from_unit(a));
    }
    throw std::invalid_argument("invalid color text \"" + text + "\"");
}

std::string color_to_text(const color::color& c) {
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, "%f %f %f %f", double(float(c.red) / 255.0f),
                  double(float(c.green) / 255.0f), double(float(c.blue) / 255.0f),
                  double(float(c.alpha) / 255.0f));
    return buffer;
}

std::string _hex_color(const color::color& c) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", c.red, c.green, c.blue);
    return buffer;
}

} // namespace Vantora_TesserinePro
