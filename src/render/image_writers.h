#pragma once
// The image files a frame is written to. They reach the disk whole or not
// at all.

#include "core/types.h"

#include <string>

namespace Vantora_TesserinePro {

enum class frame_file_kind { none, png, tga, bmp, jpg, psd };

// By the lower-cased extension: "png", "tga", "bmp", "jpg", "psd"; anything
// else (jpeg, tif, none at all) writes nothing.
frame_file_kind frame_file_kind_for(const std::string& extension);

// The TGA 2.0 footer: no extension or developer area, then the signature.
// Qt's reader takes only files that end in it.
constexpr char tga_footer[26] = {0,   0,   0,   0,   0,   0,   0,   0,   'T', 'R', 'U', 'E', 'V',
                                 'I', 'S', 'I', 'O', 'N', '-', 'X', 'F', 'I', 'L', 'E', '.', 0};

// Writes img as kind (not psd) to path, atomically, encoding rows as they
// go to the disk: no second copy of the picture is made. TGA: uncompressed
// 32 bits with straight alpha, rows bottom first (the origin every reader
// knows), and the TGA 2.0 footer. PNG: keeping transparency, or over opaque
// black when black_background. BMP: 24 bits, as Qt writes it. JPG: at
// quality 90, by Qt. False, with error filled, when nothing could be written; any old
// file stays whole.
bool write_frame_image(const image& img, frame_file_kind kind, bool black_background,
                       const std::string& path, std::string* error);

} // namespace Vantora_TesserinePro
