#include "core/file_path.h"

#include <algorithm>
#include <cctype>

namespace Vantora_TesserinePro::file {

namespace {
std::size_t name_start(const std::string& s) {
    std::size_t slash = s.find_last_of("/\\");
    return slash == std::string::npos ? 0 : slash + 1;
}
// First dot of the name that starts an extension; a leading dot does not.
std::size_t extension_start(const std::string& s) {
    std::size_t start = name_start(s);
    if (start >= s.size()) return std::string::npos;
    std::size_t dot = s.find('.', start + 1);
    return dot;
}
} // namespace

path path::operator/(const std::string& name) const {
    if (m_text.empty()) return path(name);
    if (m_text.back() == '/') return path(m_text + name);
    return path(m_text + "/" + name);
}

std::string path::name() const {
    return m_text.substr(name_start(m_text));
}

bool path::has_extension() const {
    return extension_start(m_text) != std::string::npos;
}

path path::with_extension_if_no_extension(const std::string& extension) const {
    if (has_extension()) return *this;
    return path(m_text + extension);
}

path path::with_all_extensions(const std::string& extension) const {
    std::size_t dot = extension_start(m_text);
    return path((dot == std::string::npos ? m_text : m_text.substr(0, dot)) + extension);
}

std::string path::final_extension_lower() const {
    std::string name = m_text.substr(name_start(m_text));
    std::size_t dot = name.rfind('.');
    if (dot == std::string::npos) return {};
    std::string ext = name.substr(dot + 1);
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return ext;
}

} // namespace Vantora_TesserinePro::file
