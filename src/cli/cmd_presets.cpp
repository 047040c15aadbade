#include "cli/cli.h"

#include "document/boxes_layer.h"
#include "document/global.h"
#include "persistence/read_report.h"

#include <iostream>
#include <sstream>

namespace Vantora_TesserinePro::cli {

int cmd_presets(const args& a) {
    parsed_args p = parse_args("presets", a, {}, false, false);
    if (p.done) return *p.done;
    if (p.positional.size() > 1) return usage_error("presets takes at most one FILE", "presets");
    Global global;
    if (p.positional.empty()) {
        // The list as a start gives it; listing never copies or writes a file.
        const read_report report = global.load_default_presets(false);
        if (!report.clean())
            report_damage(global.auto_save_preset_file_name().string(), report);
    } else {
        const std::string& file = p.positional[0];
        read_report report(file_kind::presets);
        global.get_presets() = global.read_presets_file(file, report);
        if (report.refused()) return report_refusal(file, report);
        if (report.damaged()) report_damage(file, report);
    }
    std::ostringstream o;
    for (long long i = 0; i < global.get_presets_count(); ++i) {
        const auto& preset = global.get_presets()[std::size_t(i)];
        o << i << '\t' << preset->get_name() << '\t';
        if (auto boxes = std::dynamic_pointer_cast<boxes_layer>(preset))
            o << boxes->Width << 'x' << boxes->Height << '\t' << boxes->Columns << 'x'
              << boxes->Rows;
        else
            o << preset->get_width() << 'x' << preset->get_height() << "\t-";
        o << '\n';
    }
    std::cout << o.str() << std::flush;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
