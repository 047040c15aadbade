#pragma once
// Files are written whole or not at all: a failed or interrupted write
// leaves the old file as it was. Files are read whole, and only when they
// can be: a regular file of a bounded size.

#include <string>
#include <string_view>

namespace Vantora_TesserinePro {

// Writes data to path through a temporary file and a rename. On failure it
// returns false, fills error (when given) and leaves any old file whole.
bool write_file_atomically(const std::string& path, std::string_view data,
                           std::string* error = nullptr);

// The largest file the program reads: 1 GiB. Far past any real project,
// and small enough that a wrong file (a disk image, a video) is refused at
// once instead of filling the memory.
inline constexpr unsigned long long max_read_file_bytes = 1ull << 30;

// Reads a whole file. Returns false (and fills error with a sentence for
// the user) when it is missing, a folder, not a regular file (a FIFO, a
// device, a socket: such files can be endless or block for ever, so they
// are never opened), larger than max_read_file_bytes, or unreadable.
bool read_whole_file(const std::string& path, std::string& data, std::string* error = nullptr);

} // namespace Vantora_TesserinePro
