// The image export commands: each asks for a target and only stores it; the
// next paint composes the frame and writes the file, since only a paint has
// a drawing context.

#include "document/global.h"
#include "core/atomic_file.h"
#include "export/report.h"
#include "plan/bom.h"

namespace Vantora_TesserinePro {

void Global::save_image_button() {
    const std::vector<file::file_dialog_filter> filters = {{"png", "PNG Image"},
                                                           {"tga", "TGA Image"},
                                                           {"jpg", "JPG Image"},
                                                           {"bmp", "BMP Image"},
                                                           {"psd", "Photoshop Image"}};
    // Whatever extension the user typed stands.
    ask_for_path(filters, true, [this](const file::path& chosen) {
        request_save_to_file(chosen.with_extension_if_no_extension(".png"));
    });
}

void Global::save_png_button() {
    ask_for_path({{"png", "PNG Image"}}, true, [this](const file::path& chosen) {
        request_save_to_file(chosen.with_all_extensions(".png"));
    });
}

void Global::save_psd_button() {
    ask_for_path({{"psd", "PSD Document"}}, true, [this](const file::path& chosen) {
        request_save_to_file(chosen.with_all_extensions(".psd"));
    });
}

void Global::save_report_button() {
    ask_for_path({{"pdf", "PDF Report"}}, true, [this](const file::path& chosen) {
        const file::path out = chosen.with_all_extensions(".pdf");
        report_options options;
        // The project has no name of its own: the report is named by its file.
        options.name = out.name().substr(0, out.name().find('.'));
        std::string error;
        {
            const frame_view frame = read_frame();
            error =
                write_report(*this, frame.composite() ? *frame.composite() : image(), out, options);
        }
        if (!error.empty()) show_error("The report could not be written: " + error);
    });
}

void Global::save_bom_button() {
    ask_for_path({{"csv", "CSV Table"}}, true, [this](const file::path& chosen) {
        std::string error;
        if (!write_file_atomically(chosen.with_all_extensions(".csv").string(),
                                   plan::bom_csv(plan::make_bom(*this)), &error))
            show_error("The bill of materials could not be written: " + error);
    });
}

} // namespace Vantora_TesserinePro
