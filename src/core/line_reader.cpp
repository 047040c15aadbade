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

void normalise_text_file(std::string& text) {
    if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
    std::size_t pairs = 0;
    for (std::size_t lf = text.find('\n'); lf != std::string::npos; lf = text.find('\n', lf + 1)) {
        if (lf == 0 || text[lf - 1] != '\r') return; // a bare LF
        ++pairs;
    }
    if (pairs == 0) return;
    std::size_t out = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!(text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')) text[out++] = text[i];
    text.resize(out);
}

} // namespace Vantora_TesserinePro
