#include "document/exclude_boxes.h"

namespace Vantora_TesserinePro {

bool exclude_boxes_set::add(std::uint32_t id) {
    if (contains(id)) return false;
    m_members.push_front(id);
    m_index.emplace(id, m_members.begin());
    return true;
}

bool exclude_boxes_set::remove(std::uint32_t id) {
    auto it = m_index.find(id);
    if (it == m_index.end()) return false;
    m_members.erase(it->second);
    m_index.erase(it);
    return true;
}

exclude_boxes_set& exclude_boxes_set::operator=(const exclude_boxes_set& other) {
    if (this == &other) return *this;
    clear();
    // Re-adding from the oldest keeps the newest-first order.
    for (auto it = other.m_members.rbegin(); it != other.m_members.rend(); ++it)
        add(*it);
    return *this;
}

} // namespace Vantora_TesserinePro
