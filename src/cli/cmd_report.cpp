// tesserine report FILE -o OUT.pdf [--page a4|letter]: the show report of a
// project, with the frame as render draws it.

#include "cli/cli.h"

#include "core/file_path.h"
#include "document/global.h"
#include "export/report.h"

#include <QFileInfo>

namespace Vantora_TesserinePro::cli {

int cmd_report(const args& given) {
    // --page takes a word, which the common parser does not know.
    args a;
    std::string page = "a4";
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (given[i] != "--page") {
            a.push_back(given[i]);
            continue;
        }
        if (i + 1 >= given.size()) return usage_error("--page needs a4 or letter", "report");
        page = given[++i];
        if (page != "a4" && page != "letter")
            return usage_error("--page takes a4 or letter, not \"" + page + "\"", "report");
    }
    parsed_args p = parse_args("report", a, {}, true, false);
    if (p.done) return *p.done;
    if (p.positional.size() != 1 || !p.has_output)
        return usage_error("report takes FILE -o OUT.pdf [--page a4|letter]", "report");
    const file::path out(p.output);
    if (out.final_extension_lower() != "pdf")
        return file_error(p.output, "is not a .pdf file name", exit_bad_input);

    const std::string& file = p.positional[0];
    render_host host;
    Global global(&host);
    if (int status = load_for_request(global, file); status != exit_ok) return status;
    global.black_background = true;
    if (int status = build_frame(global, host, file); status != exit_ok) return status;

    report_options options;
    options.letter = page == "letter";
    options.name = QFileInfo(QString::fromStdString(file)).completeBaseName().toStdString();
    const Global::frame_view view = global.read_frame();
    const image* frame = view.composite();
    const std::string error = write_report(global, frame ? *frame : image(), out, options);
    if (!error.empty()) return file_error(p.output, "cannot be written: " + error, exit_failure);
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
