#include "core/save_stream.h"

#include <QFileInfo>

#include <cstring>

namespace Vantora_TesserinePro {

namespace {
// Small writes gather here; large ones go straight through.
constexpr std::size_t buffer_size = std::size_t(1) << 20;
} // namespace

save_stream::save_stream(const std::string& path) : m_file(QString::fromStdString(path)) {
    const QString name = QString::fromStdString(path);
    if (path.empty()) {
        fail("no file name");
        return;
    }
    if (QFileInfo(name).isDir()) {
        fail("is a folder");
        return;
    }
    // Unbuffered: Qt's own buffer hides a short write (a full disk) from the
    // caller; ours passes every count on, so a short write is seen.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        fail(m_file.errorString().toStdString());
        return;
    }
    m_buffer.resize(buffer_size);
    m_good = true;
}

save_stream::~save_stream() {
    if (m_file.isOpen()) m_file.cancelWriting();
}

void save_stream::fail(const std::string& why) {
    if (m_error.empty()) m_error = why.empty() ? "write failed" : why;
    if (m_good && m_file.isOpen()) m_file.cancelWriting();
    m_good = false;
}

void save_stream::write_through(const void* data, std::size_t size) {
    const qint64 written = m_file.write(static_cast<const char*>(data), qint64(size));
    if (written == qint64(size)) return;
    // A short write sets no error text of its own.
    fail(written < 0 ? m_file.errorString().toStdString()
                     : "the disk took only part of the data (full, or over a size limit)");
}

void save_stream::flush_buffer() {
    if (!m_good || m_used == 0) return;
    write_through(m_buffer.data(), m_used);
    m_used = 0;
}

void save_stream::write(const void* data, std::size_t size) {
    if (!m_good || size == 0) return;
    m_position += size;
    if (m_used + size <= m_buffer.size()) {
        std::memcpy(m_buffer.data() + m_used, data, size);
        m_used += size;
        return;
    }
    flush_buffer();
    if (!m_good) return;
    if (size < m_buffer.size()) {
        std::memcpy(m_buffer.data(), data, size);
        m_used = size;
        return;
    }
    write_through(data, size);
}

void save_stream::put_u8(unsigned value) {
    const unsigned char b = static_cast<unsigned char>(value);
    write(&b, 1);
}

void save_stream::put_u16(unsigned value) {
    const unsigned char b[2] = {static_cast<unsigned char>(value >> 8),
                                static_cast<unsigned char>(value)};
    write(b, 2);
}

void save_stream::put_u32(std::uint32_t value) {
    const unsigned char b[4] = {
        static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
        static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
    write(b, 4);
}

void save_stream::write_at(std::uint64_t offset, const void* data, std::size_t size) {
    flush_buffer();
    if (!m_good) return;
    if (!m_file.seek(qint64(offset))) {
        fail(m_file.errorString().toStdString());
        return;
    }
    write_through(data, size);
    m_position = offset + size;
}

bool save_stream::commit() {
    flush_buffer();
    if (!m_good) return false;
    if (!m_file.commit()) {
        m_good = false;
        if (m_error.empty()) m_error = m_file.errorString().toStdString();
        if (m_error.empty()) m_error = "write failed";
        return false;
    }
    m_good = false; // nothing more goes to this file
    return true;
}

} // namespace Vantora_TesserinePro
