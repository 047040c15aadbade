#include "app/settings_file.h"

#include "core/atomic_file.h"
#include "core/diagnostics.h"
#include "core/line_reader.h"

#include <QJsonDocument>

namespace Vantora_TesserinePro {

bool read_settings_object(const file::path& path, QJsonObject& object) {
    std::string text;
    if (!read_whole_file(path.string(), text)) return false;
    normalise_text_file(text); // a byte-order mark would stop the JSON reader
    const QByteArray bytes = QByteArray::fromStdString(text).trimmed();
    if (bytes.isEmpty()) return false;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (!document.isObject()) {
        diagnostics_line("settings file " + path.string() +
                         " cannot be read; defaults are used instead");
        return false;
    }
    object = document.object();
    return true;
}

bool write_settings_object(const file::path& path, const QJsonObject& object) {
    return write_file_atomically(
        path.string(), QJsonDocument(object).toJson(QJsonDocument::Indented).toStdString());
}

} // namespace Vantora_TesserinePro
