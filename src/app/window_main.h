#pragma once
// Starts the window: the event loop of the program when no command word is
// given. file is the project to open, empty for a new workspace.

#include <string>

namespace Vantora_TesserinePro {

int run_window(int argc, char** argv, const std::string& file);
// Application-wide look: the style, the dark palette and the font.
void apply_window_look();

} // namespace Vantora_TesserinePro
