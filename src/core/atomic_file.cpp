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
    // Unbuffered, so a short write (disk full, a size limit) shows here and
    // not as a silently cut file after the commit.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        if (error) *error = file.errorString().toStdString();
        return false;
    }
    qint64 done = 0;
    while (done < qint64(data.size())) {
        const qint64 n = file.write(data.data() + done, qint64(data.size()) - done);
        if (n <= 0) break;
        done += n;
    }
    if (done != qint64(data.size())) {
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
