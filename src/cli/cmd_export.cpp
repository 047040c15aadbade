#include "cli/cli.h"

#include "document/global.h"

#include <iostream>

namespace Vantora_TesserinePro::cli {

// export-resolume FILE -o OUT: the Resolume Arena export as the menu runs it
// for a chosen OUT, so every extension of OUT gives way to ".xml".
int cmd_export_resolume(const args& a) {
    parsed_args p = parse_args("export-resolume", a, {}, true, false);
    if (p.done) return *p.done;
    if (p.positional.size() != 1 || !p.has_output)
        return usage_error("export-resolume takes FILE -o OUT", "export-resolume");
    Global global;
    if (int status = load_for_request(global, p.positional[0])) return status;
    const file::path target = file::path(p.output).with_all_extensions(".xml");
    const file::path written = global.layers_to_xml_at(p.output);
    if (written.empty())
        return file_error(target.string(), "cannot be written: " + global.last_write_error(),
                          exit_failure);
    std::cout << written.string() << std::endl;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
