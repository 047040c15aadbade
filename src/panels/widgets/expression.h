#pragma once
// Numeric text fields take arithmetic: "1920/2", "128*15", "(3+4)*2".

#include <string>

namespace Vantora_TesserinePro {

// The value of an expression; not-a-number (and any text that is no
// expression) gives 0.
double calc_expression(const std::string& text);
// Truncated to an unsigned integer: negatives and not-a-number give 0.
unsigned int calc_dimension(const std::string& text);
// As a float, for millimetres and the like; negatives give 0.
float calc_float_dimension(const std::string& text);

} // namespace Vantora_TesserinePro
