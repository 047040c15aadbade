// tesserine render FILE... -o OUT [--format EXT] [--transparent]
// [--only-current] [--rear] [--color-by MODE]: one paint of each workspace, as the canvas would do
// it, writing the frame to OUT, or into the folder OUT.

#include "cli/cli.h"

#include "core/string_format.h"
#include "datapath/snake.h"
#include "document/global.h"
#include "document/workspace_host.h"
#include "plan/cabinet_chains.h"
#include "render/draw2d_context.h"
#include "render/image_writers.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <optional>

namespace Vantora_TesserinePro::cli {

namespace {

struct render_options {
    bool transparent = false, only_current = false, rear = false;
    std::optional<color_by_mode> color_by;
};

// Renders INPUT into OUTPUT, whose extension decides the writer.
int render_one(const std::string& input, const std::string& output, const render_options& o) {
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
    host.only_current = o.only_current;
    Global global(&host);
    if (int status = load_for_request(global, input); status != exit_ok) return status;
    global.black_background = !o.transparent;
    global.rear_view = o.rear;
    if (o.color_by) global.color_by = *o.color_by;
    global.request_save_to_file(out);

    if (int status = build_frame(global, host, input); status != exit_ok) return status;
    if (!global.last_save_succeeded())
        return file_error(output, "cannot be written: " + global.last_write_error(), exit_failure);
    return exit_ok;
}

} // namespace

int cmd_render(const args& given) {
    // --color-by takes a word, which the common parser does not know.
    args a;
    render_options o;
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (given[i] != "--color-by") {
            a.push_back(given[i]);
            continue;
        }
        color_by_mode mode{};
        if (i + 1 >= given.size() || !plan::color_by_from_name(given[i + 1], mode))
            return usage_error(
                "--color-by takes chequer, port or circuit" +
                    (i + 1 < given.size() ? ", not \"" + given[i + 1] + "\"" : std::string()),
                "render");
        o.color_by = mode;
        ++i;
    }
    parsed_args p =
        parse_args("render", a, {"--transparent", "--only-current", "--rear"}, true, false, true);
    if (p.done) return *p.done;
    if (p.positional.empty() || !p.has_output)
        return usage_error("render takes FILE... -o OUT [--format EXT] [--transparent] "
                           "[--only-current] [--rear] [--color-by chequer|port|circuit]",
                           "render");
    const auto has_flag = [&](const char* flag) {
        return std::find(p.flags.begin(), p.flags.end(), flag) != p.flags.end();
    };
    o.transparent = has_flag("--transparent");
    o.only_current = has_flag("--only-current");
    o.rear = has_flag("--rear");
    if (p.positional.size() == 1 && !p.has_format) return render_one(p.positional[0], p.output, o);

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
        status = std::max(status, render_one(p.positional[i], outputs[i], o));
    return status;
}

} // namespace Vantora_TesserinePro::cli
