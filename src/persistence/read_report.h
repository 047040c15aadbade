#pragma once
// What reading a project, preset or logo file met. The reader is lenient
// and takes what it can; the report says where the file was damaged, in
// sentences a user understands, so that nothing damaged is taken as whole.

#include <cstddef>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

enum class file_kind { project, presets, logo };

struct file_problem {
    enum class kind {
        // Refusals: nothing is taken from the file.
        unreadable,         // missing, a folder, not a regular file, too large
        header_refused,     // not a file of this kind
        count_out_of_range, // the header's layer count
        layer_refused,      // a record the layer reader refuses outright
        // Damage: the file is read as far as it goes.
        nul_byte,
        record_cut_short,
        bad_record_head,
        length_out_of_range,
        unknown_record_type,
        bad_value,
        fewer_records,
        record_read_twice,
    };
    kind what;
    std::size_t line = 0;   // from 1; 0 when the problem has no place in the text
    std::size_t offset = 0; // bytes from the start of the text
    std::string sentence;
};

class read_report {
  public:
    explicit read_report(file_kind kind = file_kind::project) : m_kind(kind) {}

    file_kind kind() const { return m_kind; }
    // Nothing was taken from the file; what the user had stays as it was.
    bool refused() const;
    // The file was read, but not whole or not as written.
    bool damaged() const { return !refused() && !m_problems.empty(); }
    bool clean() const { return m_problems.empty(); }
    const std::vector<file_problem>& problems() const { return m_problems; }
    bool has(file_problem::kind what) const;

    void add(file_problem::kind what, std::size_t line, std::size_t offset, std::string sentence);
    void refuse(file_problem::kind what, std::string sentence) { add(what, 0, 0, std::move(sentence)); }

    // Layers (or presets) the reader gave, and how many the header announces.
    std::size_t layers_read = 0;
    std::size_t layers_declared = 0;

    // One line for each problem: "line 3, byte 40: SENTENCE" (or the bare
    // sentence of a problem without a place), and a last one when more
    // problems were met than are kept.
    std::vector<std::string> lines() const;
    // "1 layer read, the file announces 2" (presets for a preset file).
    std::string counts() const;
    // The lines and the counts as one text, a line each.
    std::string text() const;

  private:
    // A damaged file can hold a bad value in every line; the first ones
    // tell the story.
    static constexpr std::size_t kept_problems = 20;
    file_kind m_kind;
    std::vector<file_problem> m_problems;
    std::size_t m_more = 0;
};

} // namespace Vantora_TesserinePro
