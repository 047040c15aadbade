#include "core/keys.h"

#include <cctype>

namespace Vantora_TesserinePro::keys {

namespace {

std::string upper(std::string s) {
    for (char& c : s)
        c = char(std::toupper((unsigned char)c));
    return s;
}

} // namespace

chord parse_key_string(const std::string& text) {
    chord c;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t plus = text.find('+', start);
        // A "+" right after a separator (or at the end) is the key itself.
        if (plus == start) plus = text.find('+', start + 1);
        const bool last = plus == std::string::npos;
        const std::string word = upper(text.substr(start, last ? std::string::npos : plus - start));
        if (!last && word == "SHIFT")
            c.groups |= group_a;
        else if (!last && (word == "CONTROL" || word == "COMMAND" || word == "CTRL"))
            c.groups |= group_b;
        else if (!last && word == "ALT")
            c.groups |= group_c;
        else {
            c.name = text.substr(start);
            break;
        }
        start = plus + 1;
    }
    c.name = upper(c.name);
    return c;
}

std::string string_key(const std::string& name, std::uint64_t modifiers) {
    std::string s;
    if (modifiers & group_b) s += "CONTROL+";
    if (modifiers & group_a) s += "SHIFT+";
    if (modifiers & group_c) s += "ALT+";
    return s + name;
}

bool is_equivalent_using_modifiers_groups(const std::string& a, const std::string& b) {
    const chord x = parse_key_string(a), y = parse_key_string(b);
    return !x.name.empty() && x.groups == y.groups && x.name == y.name;
}

} // namespace Vantora_TesserinePro::keys
