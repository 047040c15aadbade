#pragma once
// A file path as UTF-8 text with the few operations the program needs.

#include <string>

namespace Vantora_TesserinePro {
namespace file {

class path {
  public:
    path() = default;
    path(std::string text) : m_text(std::move(text)) {}
    path(const char* text) : m_text(text ? text : "") {}

    const std::string& string() const { return m_text; }
    const char* c_str() const { return m_text.c_str(); }
    bool empty() const { return m_text.empty(); }
    bool operator==(const path&) const = default;

    // Joins with one '/'.
    path operator/(const std::string& name) const;
    // The last component.
    std::string name() const;
    // True when the last component has an extension (a dot after its first character).
    bool has_extension() const;
    // Appends extension (given with its dot) when the name has none.
    path with_extension_if_no_extension(const std::string& extension) const;
    // Replaces all extensions of the name ("a.b.jpg" -> "a" + extension).
    path with_all_extensions(const std::string& extension) const;
    // The text behind the last '\\' or '/', then behind its last '.', lower-cased;
    // empty when there is no dot.
    std::string final_extension_lower() const;

  private:
    std::string m_text;
};

// One entry of a file dialog's filter list: two strings whose meaning
// depends on the dialog (extension and caption, or title and pattern).
struct file_dialog_filter {
    std::string first;
    std::string second;
    bool operator==(const file_dialog_filter&) const = default;
};

} // namespace file
} // namespace Vantora_TesserinePro
