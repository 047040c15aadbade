#include "document/workspace_host.h"

#include "document/global.h"

#include <iostream>

namespace Vantora_TesserinePro {

void workspace_host::set_current_layer_to(Global& global, long long index, bool) {
    global.set_current_layer_index(index);
}

void workspace_host::show_error(const std::string& message) {
    std::cerr << "Error: " << message << std::endl;
}

void workspace_host::show_warning(const std::string& title, const std::string& message) {
    std::cerr << "Warning: " << title << ": " << message << std::endl;
}

void workspace_host::pick_single_file(const std::vector<file::file_dialog_filter>&,
                                      const pick_callback& callback, bool, const file::path&) {
    callback(file::path());
}

workspace_host& workspace_host::headless() {
    static workspace_host host;
    return host;
}

} // namespace Vantora_TesserinePro
