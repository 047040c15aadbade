#include "core/data_folder.h"

#include <QDir>
#include <QStandardPaths>

namespace Vantora_TesserinePro {

std::string app_name_for_storage() {
    return "Tesserine";
}

file::path folder_to_save_data() {
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return file::path(base.toStdString()) / app_name_for_storage();
}

bool ensure_data_folder() {
    return QDir().mkpath(QString::fromStdString(folder_to_save_data().string()));
}

} // namespace Vantora_TesserinePro
