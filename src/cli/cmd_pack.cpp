// tesserine pack FILE -o OUT [--gap N]: Pack on every visible screen layer
// of a project, written to OUT; FILE itself is never written.

#include "cli/cli.h"

#include "document/arrange.h"
#include "document/global.h"

#include <QFileInfo>

#include <climits>

namespace Vantora_TesserinePro::cli {

namespace {
bool whole_number(const std::string& text, long long& value) {
    if (text.empty() || text.size() > 10 ||
        text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    value = std::stoll(text);
    return value <= INT_MAX;
}
} // namespace

int cmd_pack(const args& given) {
    // --gap takes a number, which the common parser does not know.
    args a;
    long long gap = 0;
    for (std::size_t i = 0; i < given.size(); ++i) {
        std::string value;
        if (given[i] == "--gap") {
            if (i + 1 >= given.size()) return usage_error("--gap needs a number of pixels", "pack");
            value = given[++i];
        } else if (given[i].rfind("--gap=", 0) == 0) {
            value = given[i].substr(6);
        } else {
            a.push_back(given[i]);
            continue;
        }
        if (!whole_number(value, gap))
            return usage_error("--gap takes a whole number of pixels, not \"" + value + "\"",
                               "pack");
    }
    parsed_args p = parse_args("pack", a, {}, true, false);
    if (p.done) return *p.done;
    if (p.positional.size() != 1 || !p.has_output)
        return usage_error("pack takes FILE -o OUT [--gap N]", "pack");
    const std::string& file = p.positional[0];
    const QFileInfo in(QString::fromLocal8Bit(file.c_str()));
    const QFileInfo out(QString::fromLocal8Bit(p.output.c_str()));
    if (in.exists() && out.exists() && in.canonicalFilePath() == out.canonicalFilePath())
        return file_error(p.output, "is the input: pack writes the packed project to another file");

    Global global;
    if (int status = load_for_request(global, file)) return status;
    const std::string refused =
        pack_layers(global, visible_screens_in_list_order(global), int(gap));
    if (!refused.empty()) return file_error(file, refused + "; nothing was written", exit_failure);
    if (!global.save_project_to_file(p.output))
        return file_error(p.output, "cannot be written: " + global.last_write_error(),
                          exit_failure);
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
