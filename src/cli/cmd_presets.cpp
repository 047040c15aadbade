#include "cli/cli.h"

#include "core/atomic_file.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "persistence/file_format.h"

#include <iostream>
#include <sstream>

namespace Vantora_TesserinePro::cli {

int cmd_presets(const args& a) {
    parsed_args p = parse_args("presets", a, {}, false, false);
    if (p.done) return *p.done;
    if (p.positional.size() > 1) return usage_error("presets takes at most one FILE", "presets");
    Global global;
    if (p.positional.empty()) {
        global.load_default_presets();
    } else {
        const std::string& file = p.positional[0];
        std::string text, problem;
        if (!read_whole_file(file, text, &problem)) return file_error(file, problem);
        unsigned long count = 0;
        switch (check_header(text, presets_magic_and_version, count)) {
        case header_status::bad_header:
            return file_error(file, "not a Tesserine preset file (the header line is not \"" +
                                        std::string(presets_magic_and_version) + " COUNT ...\")");
        case header_status::bad_count:
            return file_error(file, "the preset count of the header is out of range");
        case header_status::ok:
            break;
        }
        // The reader's text only: listing never writes the autosave file.
        global.load_presets_from_string(global.read_full_file_as_text(file));
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
