#include "cli/cli.h"

#include "core/atomic_file.h"
#include "core/string_format.h"
#include "datapath/snake.h"
#include "document/global.h"
#include "persistence/file_format.h"
#include "render/draw2d_context.h"
#include "render/image_writers.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace Vantora_TesserinePro::cli {

std::string usage_text() {
    return "usage: tesserine new -o FILE\n"
           "       tesserine info FILE\n"
           "       tesserine presets [FILE]\n"
           "       tesserine route FILE [--layer N] [--json]\n"
           "       tesserine render FILE -o OUT [--transparent] [--only-current]\n"
           "       tesserine export-resolume FILE -o OUT\n"
           "       tesserine report FILE -o OUT.pdf [--page a4|letter]\n";
}

int usage_error(const std::string& problem) {
    std::cerr << "tesserine: " << problem << "\n" << usage_text();
    return exit_bad_input;
}

int file_error(const std::string& file, const std::string& problem, int status) {
    std::cerr << "tesserine: " << file << ": " << problem << std::endl;
    return status;
}

int load_for_request(Global& global, const std::string& file) {
    std::string text, problem;
    if (!read_whole_file(file, text, &problem)) return file_error(file, problem);
    unsigned long count = 0;
    switch (check_header(text, project_magic_and_version, count)) {
    case header_status::bad_header:
        return file_error(file, "not a Tesserine project (the header line is not \"" +
                                    std::string(project_magic_and_version) + " COUNT ...\")");
    case header_status::bad_count:
        return file_error(file, "the layer count of the header is out of range");
    case header_status::ok:
        break;
    }
    try {
        global.load_project_from_file(file);
    } catch (const std::exception& e) {
        // A record whose colour text the layer reader refuses stops the load.
        return file_error(file, std::string("cannot be read: ") + e.what());
    }
    if (global.get_layers_count() > 0) global.host().set_current_layer_to(global, 0, true);
    return exit_ok;
}

parsed_args parse_args(const args& a, const std::vector<std::string>& known_flags,
                       bool takes_output, bool takes_layer) {
    parsed_args p;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const std::string& w = a[i];
        if (takes_output && (w == "-o" || w == "--output")) {
            if (i + 1 >= a.size() || p.has_output || a[i + 1].empty()) {
                p.error = p.has_output ? "-o given twice" : "-o needs a file name";
                return p;
            }
            p.output = a[++i];
            p.has_output = true;
        } else if (takes_layer && w == "--layer") {
            if (i + 1 >= a.size() || p.has_layer) {
                p.error = p.has_layer ? "--layer given twice" : "--layer needs an index";
                return p;
            }
            p.layer = a[++i];
            p.has_layer = true;
        } else if (w.size() > 1 && w[0] == '-') {
            if (std::find(known_flags.begin(), known_flags.end(), w) == known_flags.end()) {
                p.error = "unknown option " + w;
                return p;
            }
            p.flags.push_back(w);
        } else {
            p.positional.push_back(w);
        }
    }
    return p;
}

std::string json_string(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        default:
            if (c < 0x20) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                out += buf;
            } else {
                out += char(c);
            }
        }
    }
    return out + "\"";
}

int build_frame(Global& global, render_host& host, const std::string& file) {
    const int W = global.get_paper_width(), H = global.get_paper_height();
    if (!image_size_allowed((unsigned long long)W, (unsigned long long)H))
        return file_error(file,
                          string_format("the raster of %d by %d pixels is larger than the "
                                        "drawable limit (at most %d pixels a side and %llu "
                                        "pixels in all)",
                                        W, H, max_image_side, max_image_pixels),
                          exit_failure);
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
                if (message != Snake::limit_failure_text) file_error(file, message, exit_failure);
            return exit_failure;
        }
        if (attempt >= retries)
            return file_error(file, "the frame could not be built", exit_failure);
        for (const auto& message : host.errors)
            std::cerr << "tesserine: " << file << ": " << message
                      << " (the data path of that layer is switched off)" << std::endl;
    }
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
