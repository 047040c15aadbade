#include "core/diagnostics.h"

#include "core/string_format.h"

#include <cstdarg>
#include <iostream>

namespace Vantora_TesserinePro {

namespace {
std::ostream* g_diagnostics = &std::cout;
std::ostream* g_parse_errors = &std::cerr;
std::ostream* g_debug = nullptr;
thread_local parse_error_listener* g_listener = nullptr;
} // namespace

std::ostream& diagnostics_out() {
    return *g_diagnostics;
}
void diagnostics_line(const std::string& text) {
    *g_diagnostics << text << std::endl;
}

void diagnostics_printf(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const std::string text = string_vformat(format, args);
    va_end(args);
    *g_diagnostics << text << std::flush;
}

void set_diagnostics_out(std::ostream* stream) {
    g_diagnostics = stream ? stream : &std::cout;
}
std::ostream& parse_error_out() {
    return *g_parse_errors;
}
void set_parse_error_out(std::ostream* stream) {
    g_parse_errors = stream ? stream : &std::cerr;
}

void report_parse_error(const std::string& what, const std::string& key, const std::string& value) {
    *g_parse_errors << "Parse error: " << what << '\n' << key << " : " << value << std::endl;
    if (g_listener) g_listener->m_on_error(key, value);
}

parse_error_listener::parse_error_listener(callback on_error)
    : m_on_error(std::move(on_error)), m_outer(g_listener) {
    g_listener = this;
}
parse_error_listener::~parse_error_listener() {
    g_listener = m_outer;
}

void output_debug_string(const std::string& text) {
    if (g_debug) *g_debug << text << '\n';
}
void set_debug_out(std::ostream* stream) {
    g_debug = stream;
}

} // namespace Vantora_TesserinePro
