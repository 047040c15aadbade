// tesserine render FILE... -o OUT [--format EXT] [--transparent]
// [--only-current]: one paint of each workspace, as the canvas would do it,
// writing the frame to OUT, or into the folder OUT.

#include "cli/cli.h"

#include "core/string_format.h"
#include "datapath/snake.h"
#include "document/global.h"
#include "document/workspace_host.h"
#include "render/draw2d_context.h"
#include "render/image_writers.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
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

// Renders INPUT into OUTPUT, whose extension decides the writer.
int render_one(const std::string& input, const std::string& output, bool transparent,
               bool only_current) {
    // The extension decides the writer; one that writes nothing is refused
    // before any work is done.
    const file::path out(output);
    const std::string extension = out.final_extension_lower();
    if (frame_file_kind_for(extension) == frame_file_kind::none)
        return file_error(output,
                          (extension.empty()
                               ? std::string("has no image extension")
                               : "cannot write images of type \"" + extension + "\"") +
                              " (use .png, .tga, .bmp, .jpg or .psd)",
                          exit_bad_input);

    render_host host;
    host.only_current = only_current;
    Global global(&host);
    if (int status = load_for_request(global, input); status != exit_ok) return status;
    const int W = global.get_paper_width(), H = global.get_paper_height();
    if (!image_size_allowed((unsigned long long)W, (unsigned long long)H))
        return file_error(input,
                          string_format("the raster of %d by %d pixels is larger than the "
                                        "drawable limit (at most %d pixels a side and %llu "
                                        "pixels in all)",
                                        W, H, max_image_side, max_image_pixels),
                          exit_failure);
    global.black_background = !transparent;
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
                if (message != Snake::limit_failure_text) file_error(input, message, exit_failure);
            return exit_failure;
        }
        if (attempt >= retries)
            return file_error(input, "the frame could not be built", exit_failure);
        for (const auto& message : host.errors)
            std::cerr << "tesserine: " << input << ": " << message
                      << " (the data path of that layer is switched off)" << std::endl;
    }
    if (!global.last_save_succeeded())
        return file_error(output, "cannot be written: " + global.last_write_error(), exit_failure);
    return exit_ok;
}

} // namespace

int cmd_render(const args& a) {
    parsed_args p = parse_args("render", a, {"--transparent", "--only-current"}, true, false, true);
    if (p.done) return *p.done;
    if (p.positional.empty() || !p.has_output)
        return usage_error("render takes FILE... -o OUT [--format EXT] [--transparent] "
                           "[--only-current]",
                           "render");
    const auto has_flag = [&](const char* flag) {
        return std::find(p.flags.begin(), p.flags.end(), flag) != p.flags.end();
    };
    const bool transparent = has_flag("--transparent"), only_current = has_flag("--only-current");
    if (p.positional.size() == 1 && !p.has_format)
        return render_one(p.positional[0], p.output, transparent, only_current);

    // Several projects, or a format: OUT is a folder that gets NAME.EXT for
    // each, checked before any work so that no file overwrites another.
    if (!p.has_format)
        return usage_error("render of several FILEs takes --format EXT, and -o names a folder",
                           "render");
    std::string extension = p.format;
    if (extension[0] == '.') extension.erase(0, 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    if (frame_file_kind_for(extension) == frame_file_kind::none)
        return usage_error("--format takes png, tga, bmp, jpg or psd, not \"" + p.format + "\"",
                           "render");
    const std::filesystem::path folder(p.output);
    std::vector<std::string> outputs;
    for (const auto& input : p.positional) {
        const std::string output =
            (folder / std::filesystem::path(input).stem()).string() + "." + extension;
        if (std::find(outputs.begin(), outputs.end(), output) != outputs.end())
            return usage_error("two FILEs would be rendered to " + output, "render");
        outputs.push_back(output);
    }
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!std::filesystem::is_directory(folder))
        return file_error(p.output, "is not a folder that can be made", exit_failure);
    // One bad project does not stop the show: the worst status is returned.
    int status = exit_ok;
    for (std::size_t i = 0; i < outputs.size(); ++i)
        status =
            std::max(status, render_one(p.positional[i], outputs[i], transparent, only_current));
    return status;
}

} // namespace Vantora_TesserinePro::cli
