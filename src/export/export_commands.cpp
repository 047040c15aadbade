// The image export commands: each asks for a target and only stores it; the
// next paint composes the frame and writes the file, since only a paint has
// a drawing context.

#include "document/global.h"

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

} // namespace Vantora_TesserinePro
