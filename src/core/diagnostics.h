#pragma once
// Where loader diagnostics go. They keep their exact words; by default they
// go to standard output, and the command-line front end moves them to
// standard error so that its own output stays clean.

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

// Trace lines of no consequence ("has changed", "excluded"); dropped unless
// a sink is set.
void output_debug_string(const std::string& text);
void set_debug_out(std::ostream* stream);

} // namespace Vantora_TesserinePro
