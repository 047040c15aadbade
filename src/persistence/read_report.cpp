#include "persistence/read_report.h"

#include <algorithm>

namespace Vantora_TesserinePro {

bool read_report::refused() const {
    using k = file_problem::kind;
    return std::any_of(m_problems.begin(), m_problems.end(), [](const file_problem& p) {
        return p.what == k::unreadable || p.what == k::header_refused ||
               p.what == k::count_out_of_range || p.what == k::layer_refused;
    });
}

bool read_report::has(file_problem::kind what) const {
    return std::any_of(m_problems.begin(), m_problems.end(),
                       [what](const file_problem& p) { return p.what == what; });
}

void read_report::add(file_problem::kind what, std::size_t line, std::size_t offset,
                      std::string sentence) {
    if (m_problems.size() >= kept_problems) {
        ++m_more;
        return;
    }
    m_problems.push_back({what, line, offset, std::move(sentence)});
}

std::vector<std::string> read_report::lines() const {
    std::vector<std::string> out;
    for (const file_problem& p : m_problems)
        out.push_back(p.line ? "line " + std::to_string(p.line) + ", byte " +
                                   std::to_string(p.offset) + ": " + p.sentence
                             : p.sentence);
    if (m_more) out.push_back("and " + std::to_string(m_more) + " more problems");
    return out;
}

std::string read_report::counts() const {
    const std::string what = m_kind == file_kind::presets ? " preset" : " layer";
    return std::to_string(layers_read) + what + (layers_read == 1 ? "" : "s") +
           " read, the file announces " + std::to_string(layers_declared);
}

std::string read_report::text() const {
    std::string out;
    for (const std::string& line : lines())
        out += line + '\n';
    return out + counts() + '\n';
}

} // namespace Vantora_TesserinePro
