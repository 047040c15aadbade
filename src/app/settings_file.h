#pragma once
// The settings texts of the data folder: one JSON object of names to numbers
// and booleans, written whole.

#include "core/file_path.h"

#include <QJsonObject>

namespace Vantora_TesserinePro {

// The object a settings file holds. False when the file is missing, empty
// after trimming, or not an object (a broken file is reported once on the
// diagnostics stream and then treated as missing).
bool read_settings_object(const file::path& path, QJsonObject& object);
// Replaces the file with the object's text; false when it cannot be written
// (any old file stays whole).
bool write_settings_object(const file::path& path, const QJsonObject& object);

} // namespace Vantora_TesserinePro
