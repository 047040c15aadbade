#include "cli/cli.h"

namespace Vantora_TesserinePro::cli {
// Placeholder until the exports land.
int cmd_export_resolume(const args&) { return usage_error("export-resolume is not available yet"); }
} // namespace Vantora_TesserinePro::cli
