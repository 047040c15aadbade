// tesserine render FILE -o OUT [--transparent] [--only-current]: one paint
// of the workspace, as the canvas would do it, writing the frame to OUT.

#include "cli/cli.h"

#include "core/string_format.h"
#include "datapath/snake.h"
#include "document/global.h"
#include "document/workspace_host.h"
#include "render/draw2d_context.h"
#include "render/image_writers.h"

#include <algorithm>
#include <iostream>

namespace Vantora_TesserinePro::cli {

int cmd_render(const args& a) {
    parsed_args p = parse_args(a, {"--transparent", "--only-current"}, true, false);
    if (!p.error.empty()) return usage_error(p.error);
    if (p.positional.size() != 1 || !p.has_output)
        return usage_error("render takes FILE -o OUT [--transparent] [--only-current]");
    const auto has_flag = [&](const char* flag) {
        return std::find(p.flags.begin(), p.flags.end(), flag) != p.flags.end();
    };

    // The extension decides the writer; one that writes nothing is refused
    // before any work is done.
    const file::path out(p.output);
    const std::string extension = out.final_extension_lower();
    if (frame_file_kind_for(extension) == frame_file_kind::none)
        return file_error(p.output,
                          (extension.empty()
                               ? std::string("has no image extension")
                               : "cannot write images of type \"" + extension + "\"") +
                              " (use .png, .tga, .bmp, .jpg or .psd)",
                          exit_bad_input);

    render_host host;
    host.only_current = has_flag("--only-current");
    Global global(&host);
    if (int status = load_for_request(global, p.positional[0]); status != exit_ok) return status;
    global.black_background = !has_flag("--transparent");
    global.request_save_to_file(out);

    if (int status = build_frame(global, host, p.positional[0]); status != exit_ok) return status;
    if (!global.last_save_succeeded())
        return file_error(p.output, "cannot be written: " + global.last_write_error(),
                          exit_failure);
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
