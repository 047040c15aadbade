#include "core/atomic_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Vantora_TesserinePro {

bool write_file_atomically(const std::string& path, std::string_view data, std::string* error) {
    const QString name = QString::fromStdString(path);
    if (QFileInfo(name).isDir()) {
        if (error) *error = "is a folder";
        return false;
    }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error) *error = file.errorString().toStdString();
        return false;
    }
    qint64 written = data.empty() ? 0 : file.write(data.data(), qint64(data.size()));
    if (written != qint64(data.size())) {
        if (error) *error = file.errorString().toStdString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        if (error) *error = file.errorString().toStdString();
        return false;
    }
    return true;
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
