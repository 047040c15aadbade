#pragma once
// Names and checks of the length-framed project and preset file format.

#include "core/types.h"

#include <string>
#include <string_view>

namespace Vantora_TesserinePro {

inline constexpr const char* project_magic = "TESSERINE_LED_PROJECT";
inline constexpr const char* presets_magic = "TESSERINE_LED_PRESETS";
inline constexpr const char* project_magic_and_version = "TESSERINE_LED_PROJECT v2";
inline constexpr const char* presets_magic_and_version = "TESSERINE_LED_PRESETS v2";
// Largest record body the reader takes.
inline constexpr unsigned long max_record_length = 0x1000000;
// Layer counts must be below this.
inline constexpr unsigned long max_layer_count_bound = 1025;

enum class header_status { ok, bad_header, bad_count };

// Scans the first line of text as the reader does: "<magic_and_version> %d".
// On ok, count holds the layer count.
header_status check_header(std::string_view text, const std::string& magic_and_version,
                           unsigned long& count);

class app_layer;

// The whole text of a project or preset file: the header, the extra block
// (none when empty), a record per layer and, when a body is given, the
// raster label record and, after it, the drawing settings record unless
// its body is empty.
string layers_file_text(const pointer_array<app_layer>& layers, const string& magic,
                        const string& extra, const string* raster_label_body,
                        const string& settings_body = {});
// The body of the drawing settings record: empty for the default drawing,
// so that a project that does not use it saves as before.
string drawing_settings_record(color_by_mode color_by);
// A project's extra block: "Width:W\nHeight:H".
string project_extra_block(int paper_width, int paper_height);

} // namespace Vantora_TesserinePro
