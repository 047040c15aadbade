// Placeholders until the data path engine lands; delete as implemented.
#include "document/boxes_layer.h"

namespace Vantora_TesserinePro {
namespace Snake {
const char* const limit_failure_text = "Some panels consume more pixels then limit used.";
int pixel_count(const box&) { return 0; }
route make_route(const boxes_layer&) { return {}; }
} // namespace Snake
bool boxes_layer::should_skip_box(const Snake::box&) const { return false; }
void boxes_layer::trigger_for_override_path(float, float, bool) {}
void boxes_layer::on_space_key() {}
string boxes_layer::get_custom_path_string() const { return {}; }
void boxes_layer::set_custom_path_string(const string&) {}
} // namespace Vantora_TesserinePro
