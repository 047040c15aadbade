#pragma once
// A start of the window in two parts: what the first picture needs, and
// what can wait until the window shows (the recovery question, the preset
// list and its pictures, the recent files). With TESSERINE_START_TRACE set,
// each step of a start is written to standard error as
// "start-trace STEP NANOSECONDS" (the realtime clock), which
// bench/start_time.py compares with a bare Qt window measured alike.

#include <functional>

class QWidget;

namespace Vantora_TesserinePro::start_steps {

// A step of the start reached: traced when asked.
void trace(const char* step);

// Runs work after window's first paint, each piece at its own turn of the
// event loop so that the window answers between them; once the window has
// painted, at the next turn. The last piece done is traced as "settled".
void after_first_paint(QWidget* window, std::function<void()> work);
// Whether work for after window's first paint is still waiting.
bool waiting(QWidget* window);

} // namespace Vantora_TesserinePro::start_steps
