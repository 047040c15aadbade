// Project and preset file speed: writing and reading the 8K wall's project
// against merely splitting the same text into lines, the floor for any
// reader of a line format; and reading the built-in catalogue at start.

#include "bench_workspaces.h"

#include "core/line_reader.h"
#include "document/global.h"
#include "document/image_layer.h"

#include <benchmark/benchmark.h>

using namespace Vantora_TesserinePro;

namespace {

std::string project_text_8k(Global& global) {
    bench::make_8k_workspace(global);
    return global.project_or_presets_text(global.current_project()->get_layers(),
                                          "TESSERINE_LED_PROJECT", "Width:7680\nHeight:4320", true);
}

void project_write_8k_16layers(benchmark::State& state) {
    Global global;
    project_text_8k(global);
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::string text = global.project_or_presets_text(global.current_project()->get_layers(),
                                                          "TESSERINE_LED_PROJECT",
                                                          "Width:7680\nHeight:4320", true);
        bytes = text.size();
        benchmark::DoNotOptimize(text);
    }
    state.SetBytesProcessed(std::int64_t(state.iterations() * bytes));
}
BENCHMARK(project_write_8k_16layers);

void project_read_8k_16layers(benchmark::State& state) {
    Global global;
    const std::string text = project_text_8k(global);
    Global reader;
    for (auto _ : state) {
        reader.load_project_from_string(text);
        benchmark::DoNotOptimize(reader.get_layers_count());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations() * text.size()));
}
BENCHMARK(project_read_8k_16layers);

// The floor: every line of the same text taken once, nothing applied.
void split_lines_8k_16layers(benchmark::State& state) {
    Global global;
    const std::string text = project_text_8k(global);
    for (auto _ : state) {
        line_reader reader(text);
        std::string line;
        std::size_t n = 0;
        while (reader.get_line(line))
            n += line.size();
        benchmark::DoNotOptimize(n);
    }
    state.SetBytesProcessed(std::int64_t(state.iterations() * text.size()));
}
BENCHMARK(split_lines_8k_16layers);

void catalogue_load(benchmark::State& state) {
    Global global;
    const std::string text = getPresetsSource();
    for (auto _ : state) {
        global.load_presets_from_string(text);
        benchmark::DoNotOptimize(global.get_presets_count());
    }
}
BENCHMARK(catalogue_load);

// A project with one full-HD picture: the hexadecimal image dominates.
void image_project_round_trip(benchmark::State& state) {
    Global global;
    global.m_project = std::make_shared<project>();
    QImage img(1920, 1080, QImage::Format_ARGB32);
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            img.setPixel(x, y, qRgba(x, y, x ^ y, 255));
    auto layer = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    layer->set_image(std::make_shared<image>(img));
    global.current_project()->get_layers().push_back(layer);
    Global reader;
    for (auto _ : state) {
        const std::string text = global.project_or_presets_text(
            global.current_project()->get_layers(), "TESSERINE_LED_PROJECT",
            "Width:1920\nHeight:1080", true);
        reader.load_project_from_string(text);
        benchmark::DoNotOptimize(reader.get_layers_count());
    }
}
BENCHMARK(image_project_round_trip)->Unit(benchmark::kMillisecond);

} // namespace
