#pragma once
// The set of excluded cabinets: box ids, iterated newest member first (the
// order the parameter text writes them in).

#include <cstdint>
#include <list>
#include <unordered_map>

namespace Vantora_TesserinePro {

class exclude_boxes_set {
  public:
    using list_type = std::list<std::uint32_t>;

    bool contains(std::uint32_t id) const { return m_index.count(id) != 0; }
    // Adds id as the newest member; false when it was already there.
    bool add(std::uint32_t id);
    bool remove(std::uint32_t id);
    void clear() {
        m_members.clear();
        m_index.clear();
    }
    std::size_t size() const { return m_members.size(); }
    bool empty() const { return m_members.empty(); }
    list_type::const_iterator begin() const { return m_members.begin(); }
    list_type::const_iterator end() const { return m_members.end(); }

    exclude_boxes_set() = default;
    exclude_boxes_set(const exclude_boxes_set& other) { *this = other; }
    exclude_boxes_set& operator=(const exclude_boxes_set& other);

  private:
    list_type m_members; // newest first
    std::unordered_map<std::uint32_t, list_type::iterator> m_index;
};

} // namespace Vantora_TesserinePro
