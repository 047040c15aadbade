#pragma once
// Keys as the workspace knows them: modifier bits in one 64-bit set, the
// three modifier groups that commands test, and key strings such as
// "CONTROL+SHIFT+B" as the menu spells its shortcuts.

#include <cstdint>
#include <string>

namespace Vantora_TesserinePro::keys {

// Modifier keys, one bit each (left and right apart).
constexpr std::uint64_t shift_left = 0x100000000ull;
constexpr std::uint64_t shift_right = 0x200000000ull;
constexpr std::uint64_t control_left = 0x400000000ull;
constexpr std::uint64_t control_right = 0x800000000ull;
constexpr std::uint64_t alt_left = 0x1000000000ull;
constexpr std::uint64_t alt_right = 0x2000000000ull;
constexpr std::uint64_t command = 0x4000000000ull;

// The groups: A is Shift, B is Control with Command folded in, C is Alt.
constexpr std::uint64_t group_a = shift_left | shift_right;
constexpr std::uint64_t group_b = control_left | control_right;
constexpr std::uint64_t group_c = alt_left | alt_right;

// The group mask of a modifier key bit; 0 for anything else.
constexpr std::uint64_t group_of(std::uint64_t key) {
    if (key == shift_left || key == shift_right) return group_a;
    if (key == control_left || key == control_right || key == command) return group_b;
    if (key == alt_left || key == alt_right) return group_c;
    return 0;
}

// A shortcut: which groups are held, and the key's name ("B", "+", "F1").
struct chord {
    std::uint64_t groups = 0;
    std::string name;
};

// Reads "CONTROL+SHIFT+B" (COMMAND counts as CONTROL; "CONTROL++" is the
// plus key). An empty text gives an empty chord.
chord parse_key_string(const std::string& text);
// The key string of a key name with the modifiers held, in the menu's
// spelling: CONTROL, SHIFT, ALT, then the name.
std::string string_key(const std::string& name, std::uint64_t modifiers);
// Whether two key strings name the same key with the same groups held;
// letters compare without regard to case.
bool is_equivalent_using_modifiers_groups(const std::string& a, const std::string& b);

} // namespace Vantora_TesserinePro::keys
