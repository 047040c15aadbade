#pragma once
// Helpers of the export tests: PSD fields read back and a file size limit
// that makes writes fail part way. The workspaces come from the shared
// fixtures.

#include "export/psd_saver.h"
#include "support/workspace_fixtures.h"

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <cstdint>
#include <string>
#include <sys/resource.h>

namespace Vantora_TesserinePro::testing {

// A channel array as plain bytes, to compare.
inline std::vector<unsigned char> plain(const PSDSaver::channel& c) {
    return std::vector<unsigned char>(c.begin(), c.end());
}

// The layer count of a PSD file: a big-endian 16-bit field at byte 42.
inline int psd_layer_count(const std::string& file) {
    return (static_cast<unsigned char>(file.at(42)) << 8) | static_cast<unsigned char>(file.at(43));
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
