#pragma once
// The processor library: the models a screen layer's Processor key names,
// with their ports and what one port carries. Four generic models are built
// in; the user's own are kept in the data folder as "processors.json",
// written whole or not at all, and a damaged file is copied aside before
// anything can overwrite it.

#include "core/file_path.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

struct processor_model {
    std::string name;
    int ports = 0;
    // What one port carries at 60 Hz, at 8-bit and at 10-bit colour.
    std::int64_t pixels_8bit = 0;
    std::int64_t pixels_10bit = 0;

    bool operator==(const processor_model&) const = default;
};

// Bounds of a model the library takes; what lies outside is refused.
inline constexpr int max_model_ports = 1024;
inline constexpr std::int64_t max_port_pixels = 1'000'000'000;
inline constexpr std::size_t max_model_name = 80;

class processor_library {
  public:
    // The built-in models only.
    processor_library();

    // The generic models every library starts with; never saved nor edited.
    static const std::vector<processor_model>& builtin();
    static file::path default_file(); // the data folder / "processors.json"

    // Built-in models first, then the user's in their order.
    const std::vector<processor_model>& models() const { return m_models; }
    const processor_model* find(const std::string& name) const;
    bool is_builtin(const std::string& name) const;

    // Why a model cannot join the library (a bad name or figure, a name
    // taken by another model than `replacing`); empty when it can.
    std::string refusal(const processor_model& model, const std::string& replacing = {}) const;
    // Adds or replaces (by the name `replacing`) one of the user's models;
    // false, with nothing changed, when refusal() names a reason.
    bool put(const processor_model& model, const std::string& replacing = {});
    bool remove(const std::string& name); // the user's models only

    // The user's models as the file holds them.
    std::string to_json() const;

    // Reads the user's models from path: no file is an empty list. A model
    // that cannot be taken is left out and named in problems; a file that
    // does not parse gives no model. When protect is set and there is a
    // problem, the file is first copied to "processors.json.damaged-STAMP"
    // (set_aside then names the copy), so that the next save loses nothing.
    bool load(const file::path& path, bool protect = false);
    // Writes the user's models to path atomically; false leaves the old
    // file. A damaged file read before is copied aside first.
    bool save(const file::path& path, std::string* error = nullptr);

    const std::vector<std::string>& problems() const { return m_problems; }
    const std::string& set_aside() const { return m_set_aside; }

  private:
    void keep_aside(const file::path& path);

    std::vector<processor_model> m_models;
    std::vector<std::string> m_problems;
    std::string m_set_aside;
    bool m_unreadable = false;
};

} // namespace Vantora_TesserinePro
