#pragma once
// The show report: a PDF to hand to the crew. A first page with the frame,
// then a page per screen layer with its figures and port loads, each
// followed by the screen's rear map, then the totals of the project.

#include "core/file_path.h"
#include "core/types.h"

#include <string>

namespace Vantora_TesserinePro {

class Global;

struct report_options {
    bool letter = false; // Letter instead of A4, landscape either way
    std::string name;    // the project's name on the first page
    std::string date;    // as printed; report_date() when empty
};

// Today as YYYY-MM-DD, or the day of SOURCE_DATE_EPOCH when that is set, so
// that a report can be made again the same.
std::string report_date();

// Frames wider than this are scaled down to it in the report.
constexpr int report_frame_width_limit = 7680;

// Writes the report of global's layers, with frame (the composite as
// rendered) on the first page, to out. Reads the workspace only. Returns
// an empty string on success, else why it failed; a failed write leaves the
// file that was there.
std::string write_report(const Global& global, const image& frame, const file::path& out,
                         const report_options& options);

} // namespace Vantora_TesserinePro
