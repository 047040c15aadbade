#include "cli/cli.h"

#include "core/atomic_file.h"
#include "core/string_format.h"
#include "datapath/snake.h"
#include "document/global.h"
#include "persistence/file_format.h"
#include "persistence/read_report.h"
#include "render/draw2d_context.h"
#include "render/image_writers.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iostream>

namespace Vantora_TesserinePro::cli {

namespace {

struct command_help {
    const char* word;
    const char* synopsis;
    const char* text;
};

// What every command takes and does; the README and the manual page say
// the same.
const command_help commands_help[] = {
    {"new", "new -o FILE",
     "Writes the workspace that \"New\" makes (one screen layer, and the saved\n"
     "logo if there is one) as a project file.\n"},
    {"info", "info FILE",
     "Loads FILE as opening it would and prints one JSON object: raster,\n"
     "current layer, raster label and every layer with its parameters.\n"},
    {"presets", "presets [FILE]",
     "The preset list as the program has it at start, or the presets a\n"
     "preset FILE reads as: INDEX<TAB>NAME<TAB>WxH<TAB>COLUMNSxROWS.\n"},
    {"route", "route FILE [--layer N] [--json]",
     "The data path of every screen layer, or of layer N, cabinet by cabinet,\n"
     "with each chain's unit and port where a processor is chosen; with\n"
     "--json, the port loads of every screen layer as one JSON document.\n"},
    {"power", "power FILE [--layer N] [--json]",
     "The power plan of every screen layer, or of layer N: each circuit with\n"
     "its phase, first and last cabinet, cabinets, watts, amperes and share of\n"
     "the breaker rating, then the amperes of each phase and the totals.\n"},
    {"processors", "processors FILE [--json]",
     "The processors of the whole wall: every unit in use with its model and\n"
     "its ports for main chains, for backups and free, and the layers on it;\n"
     "then the conflicts (a port taken twice, ports beyond the model's count,\n"
     "a chain over its limit); then the units of each model.\n"},
    {"bom", "bom FILE [--json | --csv]",
     "The bill of materials of the visible screen layers: cabinets by kind\n"
     "(full, half and spare), processors, data cables and jumpers, power feeds\n"
     "and jumpers, weights, and the totals; --csv as RFC 4180 with the header\n"
     "item,kind,count,unit_weight_kg,weight_kg,notes.\n"},
    {"render",
     "render FILE... -o OUT [--format EXT] [--transparent] [--only-current] [--rear]\n"
     "                        [--color-by chequer|port|circuit] [--pattern NAME]\n"
     "                        [--identify KIND[:N]]",
     "Renders the frame; the extension of OUT picks PNG, TGA, BMP, JPG or a\n"
     "layered PSD. With --format, or with several FILEs, OUT is a folder\n"
     "that gets one NAME.EXT for each FILE. --rear draws the wall as seen\n"
     "from behind (mirrored, texts readable); --color-by colours each cabinet\n"
     "by its data port or power circuit instead of what the project says.\n"
     "--pattern bars|grey|crosshatch|red|green|blue|white|black writes that\n"
     "test pattern on the screens' cabinets instead of the map; --identify\n"
     "ports|circuits|cabinets[:N] writes what the live output shows to\n"
     "identify port or circuit N.\n"},
    {"export-resolume", "export-resolume FILE -o OUT",
     "Writes the Resolume Arena screen setup (OUT with its extensions\n"
     "replaced by .xml) and prints the path written.\n"},
    {"report", "report FILE -o OUT.pdf [--page a4|letter]",
     "Writes the show report as a PDF: the frame, a page per screen layer\n"
     "with its figures and port loads followed by its rear map (the screen\n"
     "as seen from behind), and the totals of the project.\n"},
    {"pack", "pack FILE -o OUT [--gap N]",
     "Places every visible screen layer on the raster without overlap, in the\n"
     "order of the layer list (top first), in rows from the top left corner\n"
     "with N pixels between them (0 unless given), and writes the project to\n"
     "OUT; FILE stays as it is. Screens that do not fit change nothing.\n"},
};

const command_help* find_help(const std::string& command) {
    for (const auto& help : commands_help)
        if (command == help.word) return &help;
    return nullptr;
}

} // namespace

std::string usage_text() {
    std::string text;
    for (const auto& help : commands_help)
        text += (text.empty() ? "usage: tesserine " : "       tesserine ") +
                std::string(help.synopsis) + "\n";
    return text + "       tesserine COMMAND --help\n"
                  "       tesserine --version\n"
                  "       tesserine [FILE.tsrx]\n";
}

std::string command_usage_text(const std::string& command) {
    const command_help* help = find_help(command);
    return help ? "usage: tesserine " + std::string(help->synopsis) + "\n" : usage_text();
}

std::string version_text() {
    return "tesserine " TESSERINE_VERSION "\n";
}

int usage_error(const std::string& problem, const std::string& command) {
    std::cerr << "tesserine: " << problem << "\n"
              << (command.empty() ? usage_text() : command_usage_text(command));
    return exit_bad_input;
}

int file_error(const std::string& file, const std::string& problem, int status) {
    std::cerr << "tesserine: " << file << ": " << problem << std::endl;
    return status;
}

namespace {
bool g_damage_reported = false;
}

void report_damage(const std::string& file, const read_report& report) {
    g_damage_reported = true;
    for (const std::string& line : report.lines())
        std::cerr << "tesserine: " << file << ": damaged: " << line << '\n';
    std::cerr << "tesserine: " << file << ": damaged: " << report.counts() << std::endl;
}

int report_refusal(const std::string& file, const read_report& report) {
    std::string problem;
    for (const std::string& line : report.lines())
        problem += (problem.empty() ? "" : "; ") + line;
    return file_error(file, problem);
}

bool damage_reported() {
    return g_damage_reported;
}

int load_for_request(Global& global, const std::string& file) {
    const read_report report = global.load_project_from_file(file);
    if (report.refused()) return report_refusal(file, report);
    if (report.damaged()) report_damage(file, report);
    if (global.get_layers_count() > 0) global.host().set_current_layer_to(global, 0, true);
    return exit_ok;
}

parsed_args parse_args(const std::string& command, const args& a,
                       const std::vector<std::string>& known_flags, bool takes_output,
                       bool takes_layer, bool takes_format) {
    parsed_args p;
    QCommandLineParser parser;
    // "-transparent" is an unknown option, not seven short ones.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help(QStringList{"h", "help"}),
        output(QStringList{"o", "output"}, {}, "OUT"), layer("layer", {}, "N"),
        format("format", {}, "EXT");
    parser.addOption(help);
    if (takes_output) parser.addOption(output);
    if (takes_layer) parser.addOption(layer);
    if (takes_format) parser.addOption(format);
    for (const auto& flag : known_flags)
        parser.addOption(QCommandLineOption(QString::fromStdString(flag).mid(2)));
    QStringList words{"tesserine"};
    for (const auto& word : a)
        words << QString::fromLocal8Bit(word.c_str());

    const auto fail = [&](const std::string& problem) {
        p.done = usage_error(problem, command);
        return p;
    };
    if (!parser.parse(words)) {
        const QStringList unknown = parser.unknownOptionNames();
        if (!unknown.isEmpty()) {
            // Named as it was written.
            for (const auto& word : a)
                if (word.size() > 1 && word[0] == '-' &&
                    QString::fromLocal8Bit(word.c_str())
                            .section('=', 0, 0)
                            .remove(QRegularExpression("^--?")) == unknown.first())
                    return fail("unknown option " + word);
            return fail("unknown option " + unknown.first().toStdString());
        }
        // A value option last, without its value; an empty --layer is the
        // command's to judge.
        const std::string& last = a.back();
        if (last == "--layer") return fail("--layer needs an index");
        if (last == "--format") return fail("--format needs an extension");
        if (last == "-o" || last == "--output") return fail("-o needs a file name");
        return fail(parser.errorText().toStdString());
    }
    if (parser.isSet(help)) {
        const command_help* text = find_help(command);
        std::cout << command_usage_text(command) << (text ? text->text : "");
        p.done = exit_ok;
        return p;
    }
    const auto single = [&](const QCommandLineOption& option, const char* name, const char* needs,
                            std::string& value, bool& has) {
        const QStringList values = parser.values(option);
        if (values.size() > 1) return std::string(name) + " given twice";
        if (values.size() == 1) {
            if (needs && values.first().isEmpty()) return std::string(name) + " needs " + needs;
            value = values.first().toLocal8Bit().toStdString();
            has = true;
        }
        return std::string();
    };
    for (const auto& problem :
         {takes_output ? single(output, "-o", "a file name", p.output, p.has_output) : "",
          takes_layer ? single(layer, "--layer", nullptr, p.layer, p.has_layer) : "",
          takes_format ? single(format, "--format", "an extension", p.format, p.has_format) : ""})
        if (!problem.empty()) return fail(problem);
    for (const auto& flag : known_flags)
        if (parser.isSet(QString::fromStdString(flag).mid(2))) p.flags.push_back(flag);
    for (const auto& word : parser.positionalArguments())
        p.positional.push_back(word.toLocal8Bit().toStdString());
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
    // One frame is made: each layer's frame goes once it is in the composite.
    global.keep_layer_frames = false;
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

namespace Vantora_TesserinePro::cli {

int report_layers(const args& a, const std::string& command,
                  const std::function<layer_part(const Global&, bool json)>& parts) {
    parsed_args p = parse_args(command, a, {"--json"}, false, true);
    if (p.done) return *p.done;
    const bool json = !p.flags.empty();
    if (p.positional.size() != 1) return usage_error(command + " takes one FILE", command);
    long long only = -1;
    if (p.has_layer) {
        const char* last = p.layer.data() + p.layer.size();
        auto [end, ec] = std::from_chars(p.layer.data(), last, only);
        if (p.layer.empty() || ec != std::errc() || end != last || only < 0)
            return usage_error(
                "--layer needs a layer index (0 is the bottom of the stack), not \"" + p.layer +
                    "\"",
                command);
    }
    const std::string& file = p.positional[0];
    Global global;
    if (int status = load_for_request(global, file)) return status;
    if (only >= 0) {
        const auto layer = only < global.get_layers_count() ? global.get_layer(only) : nullptr;
        if (!layer)
            return file_error(file, "has no layer " + std::to_string(only) + " (it has " +
                                        std::to_string(global.get_layers_count()) + ")");
        if (layer->get_layer_type() != e_layer_boxes)
            return file_error(file, "layer " + std::to_string(only) + " is not a screen layer");
    }

    const layer_part part = parts(global, json);
    if (json) std::cout << "{\"layers\": [";
    bool first = true;
    for (long long i = 0; i < global.get_layers_count(); ++i) {
        const auto layer = global.get_layer(i);
        if ((only >= 0 && i != only) || !layer || layer->get_layer_type() != e_layer_boxes)
            continue;
        if (json) std::cout << (first ? "\n  " : ",\n  ");
        std::cout << part(static_cast<const boxes_layer&>(*layer), i);
        first = false;
    }
    if (json) std::cout << "\n]}\n";
    std::cout << std::flush;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
