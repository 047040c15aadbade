#include "core/string_format.h"

#include <cstdio>

namespace Vantora_TesserinePro {

std::string string_vformat(const char* format, va_list args) {
    va_list copy;
    va_copy(copy, args);
    const int n = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (n <= 0) return {};
    std::string text(std::size_t(n), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, args);
    return text;
}

std::string string_format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = string_vformat(format, args);
    va_end(args);
    return text;
}

} // namespace Vantora_TesserinePro
