#pragma once
// Files are written whole or not at all: a failed or interrupted write
// leaves the old file as it was.

#include <string>
#include <string_view>

namespace Vantora_TesserinePro {

// Writes data to path through a temporary file and a rename. On failure it
// returns false, fills error (when given) and leaves any old file whole.
bool write_file_atomically(const std::string& path, std::string_view data,
                           std::string* error = nullptr);

// Reads a whole file. Returns false (and fills error) when it is missing,
// a folder or unreadable.
bool read_whole_file(const std::string& path, std::string& data, std::string* error = nullptr);

} // namespace Vantora_TesserinePro
