#pragma once
// The headless command-line front end: one function per command word.

#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/workspace_host.h"
#include <optional>

#include <functional>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {
class read_report;
}

namespace Vantora_TesserinePro::cli {

using args = std::vector<std::string>;

int cmd_new(const args& a);
int cmd_info(const args& a);
int cmd_presets(const args& a);
int cmd_route(const args& a);
int cmd_power(const args& a);
int cmd_processors(const args& a);
int cmd_bom(const args& a);
int cmd_render(const args& a);
int cmd_export_resolume(const args& a);
int cmd_report(const args& a);
int cmd_pack(const args& a);

// Exit statuses.
constexpr int exit_ok = 0;
constexpr int exit_failure = 1;   // an output could not be written, a build failed
constexpr int exit_bad_input = 2; // bad arguments or a bad input file, refused
constexpr int exit_damaged = 3;   // an input read with damage; the output is what it gave

// Prints "tesserine: PROBLEM" and the usage of COMMAND (of every command
// when empty) on standard error; returns 2.
int usage_error(const std::string& problem, const std::string& command = {});
// Prints "tesserine: FILE: PROBLEM" on standard error; returns status.
int file_error(const std::string& file, const std::string& problem, int status = exit_bad_input);
// The usage of every command, or of one: its synopsis and what it does.
std::string usage_text();
std::string command_usage_text(const std::string& command);
// The version CMake sets, as --version prints it.
std::string version_text();

// Loads FILE as a file request does (the project is loaded, then index 0 is
// selected when there are layers). A refused file (missing, unreadable,
// special, too large, foreign) is reported and gives a non-zero status. A
// damaged one is reported too and gives 0, so that the command still shows
// what was read; the program then ends with exit_damaged.
int load_for_request(Global& global, const std::string& file);
// "tesserine: FILE: damaged: ..." on standard error, a line for each
// problem and one for the counts; marks the run as damaged.
void report_damage(const std::string& file, const read_report& report);
// A refused file: "tesserine: FILE: PROBLEM..." and exit_bad_input.
int report_refusal(const std::string& file, const read_report& report);
// Whether report_damage was called in this run.
bool damage_reported();

// The words of COMMAND parsed by QCommandLineParser: "-o OUT" (also
// "--output"), "--layer N", "--format EXT" and the known flags, leaving the
// positional words. "--help" prints the command's usage.
struct parsed_args {
    std::vector<std::string> positional;
    std::vector<std::string> flags; // "--x" words without a value
    std::string output;             // value of -o
    bool has_output = false;
    std::string layer; // value of --layer
    bool has_layer = false;
    std::string format; // value of --format
    bool has_format = false;
    // Set when the command ends here: the help was printed (0) or the words
    // do not parse and the problem was reported (2).
    std::optional<int> done;
};
parsed_args parse_args(const std::string& command, const args& a,
                       const std::vector<std::string>& known_flags, bool takes_output,
                       bool takes_layer, bool takes_format = false);

// A command that reports on screen layers (route, power): one FILE, an
// optional --layer N (a bad index is a usage error, one that names no
// screen layer of the file a file error) and --json. parts is given the
// loaded workspace and whether JSON is asked for, and gives what prints
// for one screen layer: the text parts one after another, the JSON ones
// as {"layers": [...]}.
using layer_part = std::function<std::string(const boxes_layer& screen, long long index)>;
int report_layers(const args& a, const std::string& command,
                  const std::function<layer_part(const Global&, bool json)>& parts);

// Stands in for the window during a paint: answers "Draw Current Only" and
// keeps the messages a paint would show.
class render_host : public workspace_host {
  public:
    bool is_only_current() const override { return only_current; }
    void show_error(const std::string& message) override { errors.push_back(message); }

    bool only_current = false;
    std::vector<std::string> errors;
};

// One paint of the workspace, as the canvas does it: a raster too large to
// draw is refused, and a layer whose data path does not fit its ports has
// the path switched off and the paint tried again. 0 on success.
int build_frame(Global& global, render_host& host, const std::string& file);

// Text as a JSON string literal.
std::string json_string(const std::string& text);

} // namespace Vantora_TesserinePro::cli
