// What the live output shows on the 8K wall of 16 screens instead of the
// map: a test pattern, an identify step and every cabinet's ID, each made
// whole into the frame the live output keeps, to compare with
// frame_8k_16layers (a full map rebuild into the kept composite).

#include "bench_workspaces.h"
#include "render/test_patterns.h"

#include <benchmark/benchmark.h>

using namespace Vantora_TesserinePro;

namespace {

template <class Draw> void wall_frame(benchmark::State& state, Draw draw) {
    Global global;
    bench::make_8k_workspace(global);
    const std::vector<wall_cabinet> cabinets = wall_cabinets(global);
    image frame;
    draw(frame, global, cabinets);
    for (auto _ : state) {
        draw(frame, global, cabinets);
        benchmark::DoNotOptimize(frame.constBits());
    }
}
using cabinet_list = const std::vector<wall_cabinet>;

void pattern_bars_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](image& f, Global& g, cabinet_list& c) {
        draw_pattern_frame(f, g, c, test_pattern::bars);
    });
}
BENCHMARK(pattern_bars_8k_16layers)->Unit(benchmark::kMillisecond);

void pattern_crosshatch_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](image& f, Global& g, cabinet_list& c) {
        draw_pattern_frame(f, g, c, test_pattern::crosshatch);
    });
}
BENCHMARK(pattern_crosshatch_8k_16layers)->Unit(benchmark::kMillisecond);

void identify_port_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](image& f, Global& g, cabinet_list& c) {
        draw_identify_frame(f, g, c, identify_kind::ports, 0);
    });
}
BENCHMARK(identify_port_8k_16layers)->Unit(benchmark::kMillisecond);

void identify_cabinets_8k_16layers(benchmark::State& state) {
    wall_frame(state, [](image& f, Global& g, cabinet_list& c) {
        draw_identify_frame(f, g, c, identify_kind::cabinets, 0);
    });
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
