#pragma once
// The line rule of every reader of the program's text formats: LF, CR and
// CR LF each end a line (LF CR ends two); a last line without terminator is
// a line.

#include <string>
#include <string_view>
#include <vector>

namespace Vantora_TesserinePro {

class line_reader {
  public:
    explicit line_reader(std::string_view text) : m_text(text) {}

    // Takes the next line. At the end it reports false and leaves line alone.
    bool get_line(std::string& line);
    std::size_t position() const { return m_pos; }
    void skip(std::size_t count) { m_pos += count; }
    std::size_t remaining() const { return m_pos < m_text.size() ? m_text.size() - m_pos : 0; }
    std::string_view rest() const {
        return m_pos < m_text.size() ? m_text.substr(m_pos) : std::string_view();
    }

  private:
    std::string_view m_text;
    std::size_t m_pos = 0;
};

// All lines of text by the same rule.
std::vector<std::string> split_lines(std::string_view text);

// A text file as the readers take it: a UTF-8 byte-order mark at the start
// is dropped, and when every line ends in CR LF (another system's editor, a
// mail program, a version control setting) the ends become LF, so that the
// byte lengths the writer counted with LF ends hold again. A text that also
// has bare LF ends is left as it is: its CRs are not line ends of such a
// conversion.
void normalise_text_file(std::string& text);

} // namespace Vantora_TesserinePro
