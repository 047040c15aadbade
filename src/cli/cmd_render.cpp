// tesserine render FILE... -o OUT [--format EXT] [--transparent]
// [--only-current] [--rear] [--color-by MODE] [--pattern NAME]
// [--identify KIND[:N]]: one paint of each workspace, as the canvas would do
// it, writing the frame to OUT, or into the folder OUT; or a test pattern or
// an identification frame instead.

#include "cli/cli.h"

#include "core/string_format.h"
#include "datapath/snake.h"
#include "document/global.h"
#include "document/workspace_host.h"
#include "plan/cabinet_chains.h"
#include "render/draw2d_context.h"
#include "render/image_writers.h"
#include "render/test_patterns.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <optional>

namespace Vantora_TesserinePro::cli {

namespace {

// What goes on the wall instead of the map: a pattern, or an identify step.
struct wall_frame {
    std::optional<test_pattern> pattern;
    std::optional<identify_kind> identify;
    int step = 0;
    bool any() const { return pattern || identify; }
};

// Takes "--NAME VALUE" (or "--NAME=VALUE") out of the words: the value, or
// an error message in `problem`.
std::optional<std::string> take_value(args& words, const std::string& name, std::string& problem) {
    std::optional<std::string> value;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool joined = words[i].rfind(name + "=", 0) == 0;
        if (words[i] != name && !joined) continue;
        if (value) problem = name + " given twice";
        if (joined) {
            value = words[i].substr(name.size() + 1);
        } else if (i + 1 < words.size()) {
            value = words[i + 1];
            words.erase(words.begin() + std::ptrdiff_t(i) + 1);
        } else {
            problem = name + " needs a value";
            value = "";
        }
        words.erase(words.begin() + std::ptrdiff_t(i--));
    }
    return value;
}

// "--pattern NAME" and "--identify ports|circuits|cabinets[:N]", taken out
// of the words; a bad one is told once the rest parsed (--help goes first).
std::string parse_wall_frame(args& words, wall_frame& frame) {
    std::string problem;
    const auto pattern = take_value(words, "--pattern", problem);
    const auto identify = take_value(words, "--identify", problem);
    if (!problem.empty()) return problem;
    if (pattern) {
        frame.pattern = test_pattern_named(*pattern);
        if (!frame.pattern)
            return "--pattern takes bars, grey, crosshatch, red, green, blue, white or black, "
                   "not \"" +
                   *pattern + "\"";
    }
    if (identify) {
        const std::string kind = identify->substr(0, identify->find(':'));
        const std::string number =
            kind.size() < identify->size() ? identify->substr(kind.size() + 1) : "1";
        static const std::pair<const char*, identify_kind> kinds[] = {
            {"ports", identify_kind::ports},
            {"circuits", identify_kind::circuits},
            {"cabinets", identify_kind::cabinets}};
        for (const auto& [word, k] : kinds)
            if (kind == word) frame.identify = k;
        const bool digits = !number.empty() && number.size() < 6 &&
                            std::all_of(number.begin(), number.end(),
                                        [](unsigned char c) { return std::isdigit(c); });
        if (!frame.identify || !digits || std::stoi(number) < 1)
            return "--identify takes ports, circuits or cabinets, with :N for port or circuit "
                   "N (from 1), not \"" +
                   *identify + "\"";
        frame.step = std::stoi(number) - 1;
    }
    if (pattern && identify) return "--pattern and --identify exclude each other";
    return {};
}

// The pattern or identify frame of the loaded workspace, written to OUTPUT.
int write_wall_frame(const Global& global, const wall_frame& frame, const std::string& input,
                     const std::string& output, frame_file_kind kind, bool transparent) {
    const int W = global.get_paper_width(), H = global.get_paper_height();
    if (!image_size_allowed((unsigned long long)W, (unsigned long long)H))
        return file_error(input, "the raster is larger than the drawable limit", exit_failure);
    const image picture = frame.pattern ? pattern_frame(global, *frame.pattern, 0, transparent)
                                        : identify_frame(global, *frame.identify, frame.step);
    std::string error;
    if (!write_frame_image(picture, kind, !transparent, output, &error))
        return file_error(output, "cannot be written: " + error, exit_failure);
    return exit_ok;
}

struct render_options {
    bool transparent = false, only_current = false, rear = false;
    std::optional<color_by_mode> color_by;
    wall_frame frame;
};

// Renders INPUT into OUTPUT, whose extension decides the writer.
int render_one(const std::string& input, const std::string& output, const render_options& o) {
    const wall_frame& frame = o.frame;
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
    if (frame.any() && frame_file_kind_for(extension) == frame_file_kind::psd)
        return file_error(output,
                          "a pattern or identify frame is one picture: use .png, .tga, "
                          ".bmp or .jpg",
                          exit_bad_input);

    render_host host;
    host.only_current = o.only_current;
    Global global(&host);
    if (int status = load_for_request(global, input); status != exit_ok) return status;
    global.black_background = !o.transparent;
    global.rear_view = o.rear;
    if (o.color_by) global.color_by = *o.color_by;
    if (frame.any())
        return write_wall_frame(global, frame, input, output, frame_file_kind_for(extension),
                                o.transparent);
    global.request_save_to_file(out);

    if (int status = build_frame(global, host, input); status != exit_ok) return status;
    if (!global.last_save_succeeded())
        return file_error(output, "cannot be written: " + global.last_write_error(), exit_failure);
    return exit_ok;
}

} // namespace

int cmd_render(const args& a) {
    args words = a;
    render_options o;
    std::string problem = parse_wall_frame(words, o.frame);
    // --color-by takes a word, which the common parser does not know.
    std::string color_problem;
    if (const auto color = take_value(words, "--color-by", color_problem)) {
        color_by_mode mode{};
        if (!color_problem.empty() || !plan::color_by_from_name(*color, mode))
            color_problem = "--color-by takes chequer, port or circuit" +
                            (color->empty() ? std::string() : ", not \"" + *color + "\"");
        o.color_by = mode;
    }
    if (problem.empty()) problem = color_problem;
    parsed_args p = parse_args("render", words, {"--transparent", "--only-current", "--rear"},
                               true, false, true);
    if (p.done) return *p.done;
    if (!problem.empty()) return usage_error(problem, "render");
    if (p.positional.empty() || !p.has_output)
        return usage_error("render takes FILE... -o OUT [--format EXT] [--transparent] "
                           "[--only-current] [--rear] [--color-by chequer|port|circuit] "
                           "[--pattern NAME] [--identify KIND[:N]]",
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
