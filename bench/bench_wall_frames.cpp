// What the live output shows on the 8K wall of 16 screens instead of the
// map: a test pattern, an identify step and every cabinet's ID, each made
// whole, to compare with frame_8k_16layers (a full map rebuild).

#include "bench_workspaces.h"
#include "render/test_patterns.h"

#include <benchmark/benchmark.h>

using namespace Vantora_TesserinePro;

namespace {

template <class Make> void wall_frame(benchmark::State& state, Make make) {
    Global global;
    bench::make_8k_workspace(global);
    for (auto _ : state)
        benchmark::DoNotOptimize(make(global).constBits());
}

void pattern_bars_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](Global& g) { return pattern_frame(g, test_pattern::bars); });
}
BENCHMARK(pattern_bars_8k_16layers)->Unit(benchmark::kMillisecond);

void pattern_crosshatch_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](Global& g) { return pattern_frame(g, test_pattern::crosshatch); });
}
BENCHMARK(pattern_crosshatch_8k_16layers)->Unit(benchmark::kMillisecond);

void identify_port_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](Global& g) { return identify_frame(g, identify_kind::ports, 0); });
}
BENCHMARK(identify_port_8k_16layers)->Unit(benchmark::kMillisecond);

void identify_cabinets_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](Global& g) { return identify_frame(g, identify_kind::cabinets, 0); });
}
BENCHMARK(identify_cabinets_8k_16layers)->Unit(benchmark::kMillisecond);

// One tick of the moving line: the old line put out, the new one drawn.
void moving_line_step_8k_16layers(benchmark::State& state) {
    Global global;
    bench::make_8k_workspace(global);
    image frame = pattern_frame(global, test_pattern::moving_line, 0);
    const std::vector<wall_cabinet> cabinets = wall_cabinets(global);
    long long step = 0;
    for (auto _ : state) {
        draw_moving_line(frame, cabinets, step, 0xff000000);
        draw_moving_line(frame, cabinets, ++step, 0xffffffff);
        benchmark::DoNotOptimize(frame.constBits());
    }
}
BENCHMARK(moving_line_step_8k_16layers)->Unit(benchmark::kMillisecond);

} // namespace
