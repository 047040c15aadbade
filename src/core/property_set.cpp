#include "core/property_set.h"

namespace Vantora_TesserinePro {

void property_set::set(const std::string& key, const std::string& value) {
    for (auto& e : m_entries)
        if (e.first == key) {
            e.second = value;
            return;
        }
    m_entries.emplace_back(key, value);
}

void property_set::set(const std::string& key, long long value) {
    set(key, std::to_string(value));
}

const std::string* property_set::find(const std::string& key) const {
    for (const auto& e : m_entries)
        if (e.first == key) return &e.second;
    return nullptr;
}

std::string property_set::get(const std::string& key) const {
    const std::string* v = find(key);
    return v ? *v : std::string();
}

void property_set::merge(const property_set& other) {
    for (const auto& e : other.m_entries)
        set(e.first, e.second);
}

std::string property_set::as_string(const std::string& separator,
                                    const std::string& line_end) const {
    std::string out;
    for (const auto& e : m_entries) {
        out += e.first;
        out += separator;
        out += e.second;
        out += line_end;
    }
    return out;
}

} // namespace Vantora_TesserinePro
