#pragma once
// Failures of the preset list that are programming errors, not bad input.

#include <cstdint>
#include <stdexcept>
#include <string>

namespace Vantora_TesserinePro {

// Carries the status word the framework gave such failures.
class preset_error : public std::runtime_error {
  public:
    preset_error(const std::string& what, std::uint32_t status)
        : std::runtime_error(what), m_status(status) {}
    std::uint32_t status() const { return m_status; }

  private:
    std::uint32_t m_status;
};

// A preset index past the list, a null entry, or a copy that is no screen layer.
inline constexpr std::uint32_t preset_status_bad_argument = 0x800007E2u;
// A copy of a screen layer that came back as something else.
inline constexpr std::uint32_t preset_status_failure = 0x80000000u;

} // namespace Vantora_TesserinePro
