#include "core/line_reader.h"

#include <vector>

namespace Vantora_TesserinePro {

bool line_reader::get_line(std::string& line) {
    if (m_pos >= m_text.size()) return false;
    std::size_t cr = m_text.find('\r', m_pos);
    std::size_t lf = m_text.find('\n', m_pos);
    std::size_t end;
    std::size_t next;
    if (cr == std::string_view::npos && lf == std::string_view::npos) {
        end = m_text.size();
        next = end;
    } else if (cr != std::string_view::npos && (lf == std::string_view::npos || cr < lf)) {
        end = cr;
        next = (lf == cr + 1) ? lf + 1 : cr + 1;
    } else {
        end = lf;
        next = lf + 1;
    }
    line.assign(m_text.data() + m_pos, end - m_pos);
    m_pos = next;
    return true;
}

std::vector<std::string> split_lines(std::string_view text) {
    std::vector<std::string> lines;
    line_reader reader(text);
    std::string line;
    while (reader.get_line(line))
        lines.push_back(line);
    return lines;
}

} // namespace Vantora_TesserinePro
