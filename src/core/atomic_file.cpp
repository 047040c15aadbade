#include "core/atomic_file.h"

#include "core/save_stream.h"

#include <QFile>

#include <filesystem>

namespace Vantora_TesserinePro {

bool write_file_atomically(const std::string& path, std::string_view data, std::string* error) {
    save_stream out(path);
    out.write(data.data(), data.size());
    if (out.commit()) return true;
    if (error) *error = out.error();
    return false;
}

bool read_whole_file(const std::string& path, std::string& data, std::string* error) {
    const auto fail = [error](std::string problem) {
        if (error) *error = std::move(problem);
        return false;
    };
    // The kind and size are asked before the file is opened: opening a FIFO
    // waits for a writer, and a device never ends.
    std::error_code ec;
    const std::filesystem::path name(path);
    const auto status = std::filesystem::status(name, ec);
    if (!std::filesystem::exists(status)) return fail("no such file");
    if (std::filesystem::is_directory(status)) return fail("is a folder, not a file");
    if (!std::filesystem::is_regular_file(status))
        return fail("is not a regular file (a FIFO, a device or a socket), so it is not read");
    const auto size = std::filesystem::file_size(name, ec);
    if (!ec && size > max_read_file_bytes)
        return fail("is larger than 1 GiB (" + std::to_string(size) +
                    " bytes), the most a Tesserine file can be, so it is not read");

    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return fail("cannot be read: " + file.errorString().toStdString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return fail("cannot be read: " + file.errorString().toStdString());
    data.assign(bytes.constData(), std::size_t(bytes.size()));
    return true;
}

} // namespace Vantora_TesserinePro
