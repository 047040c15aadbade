#pragma once
// The data folder: the generic data location / "Tesserine" (XDG_DATA_HOME
// on Linux, so tests point that at a temporary folder).

#include "core/file_path.h"

namespace Vantora_TesserinePro {

std::string app_name_for_storage(); // "Tesserine"
file::path folder_to_save_data();
// Creates the folder when missing; false when that fails.
bool ensure_data_folder();

} // namespace Vantora_TesserinePro
