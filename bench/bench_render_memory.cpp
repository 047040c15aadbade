// Peak memory of `tesserine render` against the bytes of the frame it
// writes. The real program runs in a child process, and the kernel's account
// of that child's largest resident set is the peak: everything the render
// holds at once (Qt, fonts, the frame, layer frames, encoder buffers).

#include "bench_workspaces.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

using namespace Vantora_TesserinePro;

namespace {

// Peak resident bytes of `tesserine render FILE -o OUT`; 0 when it failed.
double render_peak_bytes(const std::string& file, const std::string& out) {
    const pid_t child = fork();
    if (child == 0) {
        execl(TESSERINE_BINARY, "tesserine", "render", file.c_str(), "-o", out.c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    if (child < 0) return 0;
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return 0;
    return double(usage.ru_maxrss) * 1024.0; // Linux counts kilobytes
}

void render_peak(benchmark::State& state, void (*make)(Global&), const char* extension) {
    QTemporaryDir dir;
    const std::string file = dir.path().toStdString() + "/wall.tsrx";
    const std::string out = dir.path().toStdString() + "/frame." + extension;
    Global global;
    make(global);
    if (!global.save_project_to_file(file)) return state.SkipWithError("project not written");
    const double frame = 4.0 * double(global.get_paper_width()) * double(global.get_paper_height());
    double peak = 0;
    for (auto _ : state)
        peak = render_peak_bytes(file, out);
    if (peak <= 0) return state.SkipWithError("tesserine render failed");
    state.counters["peak_MB"] = peak / 1e6;
    state.counters["frame_MB"] = frame / 1e6;
    state.counters["peak_per_frame"] = peak / frame;
}

void render_peak_8k_16layers_png(benchmark::State& state) {
    render_peak(state, &bench::make_8k_workspace, "png");
}
BENCHMARK(render_peak_8k_16layers_png)->Iterations(1)->Unit(benchmark::kMillisecond);

void render_peak_8k_16layers_psd(benchmark::State& state) {
    render_peak(state, &bench::make_8k_workspace, "psd");
}
BENCHMARK(render_peak_8k_16layers_psd)->Iterations(1)->Unit(benchmark::kMillisecond);

void render_peak_15k_32layers_png(benchmark::State& state) {
    render_peak(state, &bench::make_15k_workspace, "png");
}
BENCHMARK(render_peak_15k_32layers_png)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
