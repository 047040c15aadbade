// Frame building: the "New" workspace, a full 8K wall of 16 screens, and
// the floor of what any 8K frame of 16 layers costs in memory traffic.

#include "bench_workspaces.h"
#include "document/history.h"
#include "persistence/recovery_files.h"
#include "render/draw2d_context.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

using namespace Vantora_TesserinePro;

namespace {

// A full rebuild and composition each time, as after any edit.
void rebuild(benchmark::State& state, void (*make)(Global&)) {
    Global global;
    make(global);
    nano2d::draw2d_context context;
    global.defer_build_frame(true, &context);
    for (auto _ : state) {
        global.set_changed();
        benchmark::DoNotOptimize(global.defer_build_frame(true, &context));
    }
    state.SetItemsProcessed(state.iterations());
}

void frame_default(benchmark::State& state) {
    rebuild(state, &bench::make_default_workspace);
}
BENCHMARK(frame_default)->Unit(benchmark::kMillisecond);

void frame_8k_16layers(benchmark::State& state) {
    rebuild(state, &bench::make_8k_workspace);
}
BENCHMARK(frame_8k_16layers)->Unit(benchmark::kMillisecond);

// One palette edit of the 8K wall recorded as an undo step.
void record_step_8k_16layers(benchmark::State& state) {
    Global global;
    bench::make_8k_workspace(global);
    document_history history;
    history.reset(global);
    auto layer = std::dynamic_pointer_cast<boxes_layer>(global.get_layer(0));
    for (auto _ : state) {
        layer->GridWidth = layer->GridWidth == 2 ? 3 : 2;
        benchmark::DoNotOptimize(history.record(global));
    }
}
BENCHMARK(record_step_8k_16layers)->Unit(benchmark::kMillisecond);

// Undo (and redo, alternately) of one palette edit, to the frame rebuilt.
void undo_8k_16layers(benchmark::State& state) {
    Global global;
    bench::make_8k_workspace(global);
    nano2d::draw2d_context context;
    global.defer_build_frame(true, &context);
    document_history history;
    history.reset(global);
    auto layer = std::dynamic_pointer_cast<boxes_layer>(global.get_layer(0));
    layer->GridWidth += 1;
    history.record(global);
    for (auto _ : state) {
        if (!history.undo(global)) history.redo(global);
        benchmark::DoNotOptimize(global.defer_build_frame(true, &context));
    }
}
BENCHMARK(undo_8k_16layers)->Unit(benchmark::kMillisecond);

// The window thread's share of an autosave after one palette edit of the
// 8K wall: the snapshot, the unsaved test and the hand-over to the writer
// thread, whose text and disk work are not counted.
void autosave_snapshot_8k_16layers(benchmark::State& state) {
    Global global;
    bench::make_8k_workspace(global);
    document_history history;
    history.reset(global);
    QTemporaryDir folder;
    recovery_store store(file::path(folder.path().toStdString()));
    store.open();
    auto layer = std::dynamic_pointer_cast<boxes_layer>(global.get_layer(0));
    document_state written;
    for (auto _ : state) {
        layer->GridWidth = layer->GridWidth == 2 ? 3 : 2;
        document_state now = history.snapshot(global);
        if (!now.same_document(history.current()) && !now.same_document(written)) {
            written = now;
            store.write(std::move(now), {}, {});
        }
        state.PauseTiming();
        store.wait();
        state.ResumeTiming();
    }
}
BENCHMARK(autosave_snapshot_8k_16layers)->Unit(benchmark::kMillisecond);

// A paint with nothing changed: it must not draw.
void frame_8k_unchanged(benchmark::State& state) {
    Global global;
    bench::make_8k_workspace(global);
    nano2d::draw2d_context context;
    global.defer_build_frame(true, &context);
    for (auto _ : state)
        benchmark::DoNotOptimize(global.defer_build_frame(true, &context));
}
BENCHMARK(frame_8k_unchanged)->Unit(benchmark::kMicrosecond);

// A wide wall of tiny cabinets (8000 columns, 8 rows of 1 x 1) with its
// data path on: the arrows and the line at an ordinary width, and at a width
// of 65535, which is bounded to what can still change a pixel. The two
// should cost about the same.
void make_wide_wall(Global& global, int snake_width) {
    global.m_project = std::make_shared<project>();
    global.set_paper_width(8000);
    global.set_paper_height(1080);
    auto layer = global.new_boxes_layer();
    layer->Columns = 8000;
    layer->Rows = 8;
    layer->Width = layer->Height = 1;
    layer->DrawSnake = 1;
    layer->SnakeWidth = snake_width;
}

void wide_wall_snake_8(benchmark::State& state) {
    rebuild(state, [](Global& g) { make_wide_wall(g, 8); });
}
BENCHMARK(wide_wall_snake_8)->Unit(benchmark::kMillisecond);

void wide_wall_snake_65535(benchmark::State& state) {
    rebuild(state, [](Global& g) { make_wide_wall(g, 65535); });
}
BENCHMARK(wide_wall_snake_65535)->Unit(benchmark::kMillisecond);

// Clearing 16 layer images and the raster, then copying each layer into the
// raster once, with plain memory operations: no frame can cost less.
void floor_8k_16layers(benchmark::State& state) {
    const int layer_w = 1920, layer_h = 1024, raster_w = 7680, raster_h = 4320;
    std::vector<image> layers;
    for (int i = 0; i < 16; ++i)
        layers.emplace_back(layer_w, layer_h, image_format);
    image raster(raster_w, raster_h, image_format);
    for (auto _ : state) {
        for (auto& layer : layers)
            std::memset(layer.bits(), 0, std::size_t(layer.sizeInBytes()));
        std::memset(raster.bits(), 0, std::size_t(raster.sizeInBytes()));
        for (int i = 0; i < 16; ++i) {
            const int ox = (i % 4) * layer_w, oy = (i / 4) * layer_h;
            const image& layer = layers[std::size_t(i)];
            for (int y = 0; y < layer_h; ++y)
                std::memcpy(raster.scanLine(oy + y) + std::size_t(ox) * 4, layer.constScanLine(y),
                            std::size_t(layer_w) * 4);
        }
        benchmark::DoNotOptimize(raster.constBits());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(floor_8k_16layers)->Unit(benchmark::kMillisecond);

} // namespace
