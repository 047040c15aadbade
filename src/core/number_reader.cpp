#include "core/number_reader.h"

#include <QByteArray>

namespace Vantora_TesserinePro {

int defer_consume_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a';
    if (c >= 'A' && c <= 'F') return c - 'A';
    return -1;
}

void consume_int(const std::string& text, std::int32_t& field) {
    field = 0;
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && text[i] == '-') {
        negative = true;
        ++i;
    }
    // Ten decimal digits hold any 32-bit value; accumulate wide and wrap like
    // the field itself would.
    std::uint32_t value = 0;
    for (int digits = 0; i < text.size() && digits < 10; ++i, ++digits) {
        const char c = text[i];
        if (c < '0' || c > '9') {
            field = std::int32_t(value);
            throw parse_failure(std::string("invalid digit '") + c + "' in \"" + text + "\"");
        }
        value = value * 10u + std::uint32_t(c - '0');
    }
    field = std::int32_t(negative ? 0u - value : value);
}

void from_string_int(const std::string& text, std::int32_t& field) {
    const QByteArray upper = QByteArray::fromStdString(text).toUpper();
    if (upper == "FALSE" || upper == "OFF" || upper == "NO") {
        field = 0;
        return;
    }
    if (upper == "TRUE" || upper == "ON" || upper == "YES") {
        field = 1;
        return;
    }
    consume_int(text, field);
}

std::uint8_t consume_hex_pair(char first, char second) {
    const int a = defer_consume_digit(first);
    const int b = defer_consume_digit(second);
    if (a < 0 || b < 0)
        throw parse_failure(std::string("invalid hexadecimal digit in \"") + first + second + "\"");
    return std::uint8_t(a * 16 + b);
}

} // namespace Vantora_TesserinePro
