#include "core/atomic_file.h"

#include "core/save_stream.h"

#include <QFile>
#include <QFileInfo>

namespace Vantora_TesserinePro {

bool write_file_atomically(const std::string& path, std::string_view data, std::string* error) {
    save_stream out(path);
    out.write(data.data(), data.size());
    if (out.commit()) return true;
    if (error) *error = out.error();
    return false;
}

bool read_whole_file(const std::string& path, std::string& data, std::string* error) {
    const QString name = QString::fromStdString(path);
    QFileInfo info(name);
    if (!info.exists()) {
        if (error) *error = "no such file";
        return false;
    }
    if (info.isDir()) {
        if (error) *error = "is a folder, not a file";
        return false;
    }
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) *error = "cannot be read: " + file.errorString().toStdString();
        return false;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (error) *error = "cannot be read: " + file.errorString().toStdString();
        return false;
    }
    data.assign(bytes.constData(), std::size_t(bytes.size()));
    return true;
}

} // namespace Vantora_TesserinePro
