#pragma once
// The style's drawing of push buttons, check boxes and scroll bars, kept as
// pictures: the right panel is painted whole at each expose, and drawing
// its buttons, boxes and scroll bars anew (gradients, shaped captions) cost
// more than all the rest of it when nothing had changed.

class QStyle;
class QWidget;

namespace Vantora_TesserinePro {

// The application's style, drawing these three controls from pictures of
// earlier drawings with the same options.
QStyle* cached_style();

// Gives w the cached style.
void use_cached_style(QWidget* w);

} // namespace Vantora_TesserinePro
