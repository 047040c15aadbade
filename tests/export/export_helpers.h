#pragma once
// Helpers of the export tests: byte strings built field by field and a
// file size limit that makes writes fail part way. The workspaces come from
// the shared fixtures.

#include "export/psd_saver.h"
#include "support/workspace_fixtures.h"

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <sys/resource.h>

namespace Vantora_TesserinePro::testing {

// Big-endian fields appended one after the other.
struct bytes {
    std::string s;
    bytes& u8(unsigned v) {
        s += char(v & 0xFF);
        return *this;
    }
    bytes& u16(unsigned v) { return u8(v >> 8).u8(v); }
    bytes& u32(std::uint32_t v) { return u16(v >> 16).u16(v & 0xFFFF); }
    bytes& text(const std::string& t) {
        s += t;
        return *this;
    }
    bytes& list(std::initializer_list<unsigned> values) {
        for (unsigned v : values)
            u8(v);
        return *this;
    }
    bytes& repeat(unsigned v, std::size_t n) {
        s.append(n, char(v));
        return *this;
    }
};

// A channel array as plain bytes, to compare.
inline std::vector<unsigned char> plain(const PSDSaver::channel& c) {
    return std::vector<unsigned char>(c.begin(), c.end());
}

// The 34 bytes before the layer section of a PSD of width by height.
inline std::string psd_head(std::uint32_t width, std::uint32_t height) {
    return bytes{}
        .text("8BPS")
        .u16(1)
        .repeat(0, 6)
        .u16(3)
        .u32(height)
        .u32(width)
        .u16(8)
        .u16(3)
        .u32(0)
        .u32(0)
        .s;
}

// While alive, files of this process cannot grow beyond limit bytes: a
// write past it fails instead of raising SIGXFSZ.
class file_size_limit {
  public:
    explicit file_size_limit(rlim_t limit) {
        m_old_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit now = m_old;
        now.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~file_size_limit() {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_old_handler);
    }
    file_size_limit(const file_size_limit&) = delete;
    file_size_limit& operator=(const file_size_limit&) = delete;

  private:
    rlimit m_old{};
    void (*m_old_handler)(int) = nullptr;
};

// Names of the files in a folder, to see that nothing was left behind.
inline QStringList files_in(const QTemporaryDir& dir) {
    return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace Vantora_TesserinePro::testing
