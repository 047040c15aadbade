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

namespace {

// Stands in for the window: answers "Draw Current Only" and keeps the
// messages a paint would show.
class render_host : public workspace_host {
  public:
    bool is_only_current() const override { return only_current; }
    void show_error(const std::string& message) override { errors.push_back(message); }

    bool only_current = false;
    std::vector<std::string> errors;
};

} // namespace

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
    const int W = global.get_paper_width(), H = global.get_paper_height();
    if (!image_size_allowed((unsigned long long)W, (unsigned long long)H))
        return file_error(p.positional[0],
                          string_format("the raster of %d by %d pixels is larger than the "
                                        "drawable limit (at most %d pixels a side and %llu "
                                        "pixels in all)",
                                        W, H, max_image_side, max_image_pixels),
                          exit_failure);
    global.black_background = !has_flag("--transparent");
    global.request_save_to_file(out);

    // A data path that does not fit its ports switches itself off and the
    // paint is tried again, as the canvas's next paint would; each retry
    // turns off at least one layer's path, so this ends.
    nano2d::draw2d_context context;
    const long long retries = global.get_layers_count() + 1;
    for (long long attempt = 0;; ++attempt) {
        host.errors.clear();
        global.defer_build_frame(true, &context);
        if (host.errors.empty()) break;
        const bool only_data_path =
            std::all_of(host.errors.begin(), host.errors.end(),
                        [](const std::string& m) { return m == Snake::limit_failure_text; });
        if (!only_data_path) {
            for (const auto& message : host.errors)
                if (message != Snake::limit_failure_text)
                    file_error(p.positional[0], message, exit_failure);
            return exit_failure;
        }
        if (attempt >= retries)
            return file_error(p.positional[0], "the frame could not be built", exit_failure);
        for (const auto& message : host.errors)
            std::cerr << "tesserine: " << p.positional[0] << ": " << message
                      << " (the data path of that layer is switched off)" << std::endl;
    }
    if (!global.last_save_succeeded())
        return file_error(p.output, "cannot be written: " + global.last_write_error(),
                          exit_failure);
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
