#pragma once
// Ordered map from key to text value; keeps the order in which keys were
// first set, and writes itself as "key<sep>value<line_end>" lines.

#include <string>
#include <utility>
#include <vector>

namespace Vantora_TesserinePro {

class property_set {
  public:
    using entry = std::pair<std::string, std::string>;

    void set(const std::string& key, const std::string& value);
    void set(const std::string& key, long long value);
    // Value of key, or nullptr when absent.
    const std::string* find(const std::string& key) const;
    bool has(const std::string& key) const { return find(key) != nullptr; }
    std::string get(const std::string& key) const;
    // Adds or overwrites the keys of other, in other's order.
    void merge(const property_set& other);
    std::string as_string(const std::string& separator, const std::string& line_end) const;

    const std::vector<entry>& entries() const { return m_entries; }
    std::size_t size() const { return m_entries.size(); }

  private:
    std::vector<entry> m_entries;
};

} // namespace Vantora_TesserinePro
