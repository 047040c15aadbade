#pragma once
// Where loader diagnostics go. They keep their exact words; by default they
// go to standard output, and the command-line front end moves them to
// standard error so that its own output stays clean.

#include <functional>
#include <ostream>
#include <string>

namespace Vantora_TesserinePro {

std::ostream& diagnostics_out();
// One diagnostic line (text and a line end), flushed.
void diagnostics_line(const std::string& text);
// A printf-style diagnostic, written as formatted (the format gives any line end).
void diagnostics_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));
void set_diagnostics_out(std::ostream* stream);

// "Parse error: " lines of the layer text reader always go to standard error.
std::ostream& parse_error_out();
void set_parse_error_out(std::ostream* stream);
// A value the layer text reader could not take: its two lines ("Parse
// error: WHAT", then "KEY : VALUE") on that stream, and a word to the
// file reader that listens.
void report_parse_error(const std::string& what, const std::string& key, const std::string& value);
// While one lives (on this thread), report_parse_error also tells it.
class parse_error_listener {
  public:
    using callback = std::function<void(const std::string& key, const std::string& value)>;
    explicit parse_error_listener(callback on_error);
    ~parse_error_listener();
    parse_error_listener(const parse_error_listener&) = delete;
    parse_error_listener& operator=(const parse_error_listener&) = delete;

  private:
    friend void report_parse_error(const std::string&, const std::string&, const std::string&);
    callback m_on_error;
    parse_error_listener* m_outer;
};

// Trace lines of no consequence ("has changed", "excluded"); dropped unless
// a sink is set.
void output_debug_string(const std::string& text);
void set_debug_out(std::ostream* stream);

} // namespace Vantora_TesserinePro
