#include "cli/cli.h"

namespace Vantora_TesserinePro::cli {
// Placeholder until rendering lands.
int cmd_render(const args&) { return usage_error("render is not available yet"); }
} // namespace Vantora_TesserinePro::cli
