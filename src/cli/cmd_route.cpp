#include "cli/cli.h"

namespace Vantora_TesserinePro::cli {
// Placeholder until the data path engine lands.
int cmd_route(const args&) { return usage_error("route is not available yet"); }
} // namespace Vantora_TesserinePro::cli
