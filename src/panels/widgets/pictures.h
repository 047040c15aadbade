#pragma once
// The palettes' small pictures, drawn by the program itself: the two
// cabinet ID orders, the eight data path patterns (traced by the router on
// a small grid, so they always show what the router does) and the logo.

#include <QImage>

namespace Vantora_TesserinePro {

// The cabinet ID icons: letters along the row (ordinary order) or down
// the column (reverse order).
QImage cabinet_ids_picture(bool reverse, int size = 24);

// The route of SnakeMode mode over a 4 by 4 grid, start dot and end arrow.
QImage snake_pattern_picture(int mode, int size = 25);

// The program's logo, width by height.
QImage logo_picture(int width = 456, int height = 256);

} // namespace Vantora_TesserinePro
