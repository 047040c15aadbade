#pragma once
// Streams a file that appears whole or not at all: the bytes
// go to a temporary file beside the target, which replaces the target only
// when everything was written.

#include <QSaveFile>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class save_stream {
  public:
    explicit save_stream(const std::string& path);
    ~save_stream(); // without commit the temporary file is removed
    save_stream(const save_stream&) = delete;
    save_stream& operator=(const save_stream&) = delete;

    // False once anything failed; later writes do nothing.
    bool good() const { return m_good; }
    void write(const void* data, std::size_t size);
    void put_u8(unsigned value);
    void put_u16(unsigned value);      // big-endian
    void put_u32(std::uint32_t value); // big-endian
    void put_bytes(const char* text, std::size_t size) { write(text, size); }
    // Bytes written so far, in file order.
    std::uint64_t position() const { return m_position; }
    // Writes at an earlier or later place of the file (a gap left behind
    // must be filled before commit); the next plain write goes on there.
    void write_at(std::uint64_t offset, const void* data, std::size_t size);
    // Flushes and renames over the target. False, and no file, on failure.
    bool commit();
    const std::string& error() const { return m_error; }

  private:
    void write_through(const void* data, std::size_t size);
    void flush_buffer();
    void fail(const std::string& why);

    QSaveFile m_file;
    std::vector<unsigned char> m_buffer;
    std::size_t m_used = 0;
    std::uint64_t m_position = 0;
    bool m_good = false;
    std::string m_error;
};

} // namespace Vantora_TesserinePro
