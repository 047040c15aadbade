#include "cli/cli.h"

#include "document/global.h"

#include <iostream>

namespace Vantora_TesserinePro::cli {

int cmd_new(const args& a) {
    parsed_args p = parse_args("new", a, {}, true, false);
    if (p.done) return *p.done;
    if (!p.has_output || !p.positional.empty())
        return usage_error("new takes -o FILE and nothing else", "new");
    Global global;
    global.load_default_layers();
    if (!global.save_project_to_file(p.output))
        return file_error(p.output, "cannot be written: " + global.last_write_error(),
                          exit_failure);
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
