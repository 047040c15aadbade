// The image export commands: each asks for a target and only stores it; the
// next paint composes the frame and writes the file, since only a paint has
// a drawing context.

#include "document/global.h"

namespace Vantora_TesserinePro {

void Global::save_image_button() {
    host().pick_single_file(
        {{"png", "PNG Image"},
         {"tga", "TGA Image"},
         {"jpg", "JPG Image"},
         {"bmp", "BMP Image"},
         {"psd", "Photoshop Image"}},
        [this](const file::path& chosen) {
            // Whatever extension the user typed stands.
            if (chosen.empty()) return;
            request_save_to_file(chosen.with_extension_if_no_extension(".png"));
        },
        true);
}

void Global::save_png_button() {
    host().pick_single_file(
        {{"png", "PNG Image"}},
        [this](const file::path& chosen) {
            if (chosen.empty()) return;
            request_save_to_file(chosen.with_all_extensions(".png"));
        },
        true);
}

void Global::save_psd_button() {
    host().pick_single_file(
        {{"psd", "PSD Document"}},
        [this](const file::path& chosen) {
            if (chosen.empty()) return;
            request_save_to_file(chosen.with_all_extensions(".psd"));
        },
        true);
}

} // namespace Vantora_TesserinePro
