#pragma once
// printf-style formatting into a string of whatever length it needs.

#include <cstdarg>
#include <string>

namespace Vantora_TesserinePro {

std::string string_format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string string_vformat(const char* format, va_list args);

} // namespace Vantora_TesserinePro
