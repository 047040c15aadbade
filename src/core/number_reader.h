#pragma once
// The number and word readers of the layer parameter text.

#include <cstdint>
#include <stdexcept>
#include <string>

namespace Vantora_TesserinePro {

// What the readers raise on a character that is not a digit.
struct parse_failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The deliberately simple digit rule of the old colour keys: '0'..'9' have
// their value, a letter 'a'..'f' or 'A'..'F' its distance from 'a' (so 0..5);
// anything else is -1.
int defer_consume_digit(char c);

// Reads a decimal integer into field: a leading '-' is allowed, field is set
// to 0 and each digit is added, up to ten digits (what lies behind them is
// not looked at). A non-digit throws parse_failure and leaves field with the
// digits read so far, without the sign. Empty text gives 0.
void consume_int(const std::string& text, std::int32_t& field);

// As consume_int, but the words FALSE, OFF, NO give 0 and TRUE, ON, YES give
// 1, in any case.
void from_string_int(const std::string& text, std::int32_t& field);

// Two characters by the digit rule, first * 16 + second. Throws parse_failure.
std::uint8_t consume_hex_pair(char first, char second);

} // namespace Vantora_TesserinePro
