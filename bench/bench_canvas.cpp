// The window: a canvas paint of an unchanged 8K wall against copying the
// canvas's pixels, and the main window's first frame against a bare window.

#include "app/application.h"
#include "app/main_screen.h"
#include "app/main_window.h"
#include "bench_workspaces.h"
#include "canvas/main_impact.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <cstring>

using namespace Vantora_TesserinePro;

namespace {

constexpr int canvas_w = 1600, canvas_h = 900;

// What no paint of the canvas can undercut: its pixels copied once.
void canvas_floor_1600x900(benchmark::State& state) {
    QImage source(canvas_w, canvas_h, QImage::Format_RGB32);
    source.fill(Qt::darkCyan);
    QImage target(canvas_w, canvas_h, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        for (int y = 0; y < canvas_h; ++y)
            std::memcpy(target.scanLine(y), source.constScanLine(y), std::size_t(canvas_w) * 4);
        benchmark::DoNotOptimize(target.constBits());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(canvas_floor_1600x900)->Unit(benchmark::kMicrosecond);

// A paint of the canvas with nothing changed: the frame is built once
// before, then each paint only shows it.
void canvas_paint_8k_unchanged(benchmark::State& state, float zoom) {
    Global global;
    bench::make_8k_workspace(global);
    MainImpact canvas(&global, nullptr);
    canvas.resize(canvas_w, canvas_h);
    canvas.set_zoom(zoom);
    QImage target(canvas_w, canvas_h, QImage::Format_ARGB32_Premultiplied);
    canvas.render(&target);
    for (auto _ : state) {
        canvas.render(&target);
        benchmark::DoNotOptimize(target.constBits());
    }
}
void canvas_paint_8k_unchanged_z100(benchmark::State& state) {
    canvas_paint_8k_unchanged(state, 1.0f);
}
void canvas_paint_8k_unchanged_z025(benchmark::State& state) {
    canvas_paint_8k_unchanged(state, 0.25f);
}
BENCHMARK(canvas_paint_8k_unchanged_z100)->Unit(benchmark::kMicrosecond);
BENCHMARK(canvas_paint_8k_unchanged_z025)->Unit(benchmark::kMicrosecond);

// Runs the event loop until paints() has grown.
template <class Count> void until_painted(Count paints, long long before) {
    while (paints() == before)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
}

// From nothing to the first painted frame of the program's window.
void window_create_to_first_frame(benchmark::State& state) {
    for (auto _ : state) {
        const long long before = g_iMainImpactRedraw;
        {
            application app;
            app.on_request("");
            until_painted([] { return g_iMainImpactRedraw; }, before);
        }
        QCoreApplication::processEvents();
    }
}
BENCHMARK(window_create_to_first_frame)->Unit(benchmark::kMillisecond);

// The same for a plain widget of the same size that paints nothing.
class bare_widget : public QWidget {
  public:
    long long paints = 0;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), Qt::darkGray);
        ++paints;
    }
};

void bare_window_create_to_first_frame(benchmark::State& state) {
    for (auto _ : state) {
        {
            bare_widget w;
            w.resize(1344, 840);
            w.show();
            until_painted([&] { return w.paints; }, 0);
        }
        QCoreApplication::processEvents();
    }
}
BENCHMARK(bare_window_create_to_first_frame)->Unit(benchmark::kMillisecond);

} // namespace
