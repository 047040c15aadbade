#include "persistence/file_format.h"

#include "core/line_reader.h"

#include <cstdio>

namespace Vantora_TesserinePro {

header_status check_header(std::string_view text, const std::string& magic_and_version,
                           unsigned long& count) {
    line_reader reader(text);
    std::string line;
    reader.get_line(line);
    char format[1024];
    std::snprintf(format, sizeof format, "%s %%d", magic_and_version.c_str());
    int value = 0;
    if (std::sscanf(line.c_str(), format, &value) != 1) return header_status::bad_header;
    count = (unsigned long)(unsigned int)value;
    if (count >= max_layer_count_bound) return header_status::bad_count;
    return header_status::ok;
}

} // namespace Vantora_TesserinePro
