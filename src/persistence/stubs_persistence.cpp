// Placeholders until persistence lands; delete as implemented.
#include "document/boxes_layer.h"
#include "document/global.h"

namespace Vantora_TesserinePro {
void boxes_layer::apply_parameter_by_name(const string&, const string&) {}
property_set boxes_layer::get_all_parameters() const { return {}; }
bool Global::save_project_or_presets_to_file(const file::path&, const pointer_array<app_layer>&, const string&, const string&, bool) { return false; }
string Global::project_or_presets_text(const pointer_array<app_layer>&, const string&, const string&, bool) const { return {}; }
bool Global::save_project_to_file(const file::path&) { return false; }
bool Global::save_presets_to_file(const file::path&) { return false; }
string Global::read_full_file_as_text(const file::path&) const { return {}; }
pointer_array<app_layer> Global::create_layers_from_string(const string&, const string&) { return {}; }
void Global::load_project_from_string(const string&) {}
void Global::load_project_from_file(const file::path&) {}
void Global::load_presets_from_string(const string&) {}
void Global::load_presets_from_file(const file::path&) {}
void Global::open_project_button() {}
void Global::save_project_button() {}
void Global::open_presets_button() {}
void Global::save_presets_button() {}
file::path Global::auto_save_preset_file_name() const { return {}; }
bool Global::auto_save_presets() { return false; }
void Global::load_default_presets() {}
void Global::load_default_layers() {}
void Global::clone_preset_to_layers(long long) {}
void Global::clone_current_layer_to_preset() {}
void Global::delete_preset(long long) {}
string getPresetsSource() { return {}; }
} // namespace Vantora_TesserinePro
