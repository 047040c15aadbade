#pragma once
// The window's controls as seen from outside, for driving the real program
// on an X server (the Xvfb tests, which can see no widget of their own):
// when TESSERINE_CONTROL_MAP names a file, the program writes there, each
// time the file is missing, every control a click reaches now, one a line:
//   PLACE<TAB>KIND<TAB>X<TAB>Y<TAB>NAME
// PLACE is "top", "menu", "submenu", "list", "palette:TITLE" or "other";
// KIND is "button", "check", "field", "combo" or "entry"; X and Y are a point of
// the screen, in the screen's own pixels at any display scale, where a
// click lands on the control. A last line "modal<TAB>
// TITLE" tells an open dialog or popup. Writing the file also shows that
// the event loop still answers.

#include <QPoint>

class QObject;

namespace Vantora_TesserinePro {

void start_control_map(QObject* owner);

// The pixel of the screen that a logical point of it lands on at a display
// scale: the middle one of those its logical pixel covers. A screen's top
// left corner is the same in both.
QPoint screen_pixel(QPoint logical, QPoint screen_origin, qreal scale);

} // namespace Vantora_TesserinePro
