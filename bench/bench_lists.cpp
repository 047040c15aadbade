// The right panel: a sync of both lists with every picture repainted,
// against painting the same pictures with no widgets; and a paint of the
// panel when nothing changed, against the canvas floor.

#include "bench_workspaces.h"
#include "panels/right_panel.h"
#include "panels/scroll_list.h"

#include <QCoreApplication>
#include <QImage>

#include <benchmark/benchmark.h>

using namespace Vantora_TesserinePro;

namespace {

constexpr int preset_count = 100;

// The 8K wall's 16 screen layers and 100 presets of assorted sizes.
void make_lists_workspace(Global& global) {
    bench::make_8k_workspace(global);
    global.presets.clear();
    for (int i = 0; i < preset_count; ++i) {
        auto preset = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
        preset->default_colors();
        preset->apply_defaults();
        preset->Columns = 4 + i % 12;
        preset->Rows = 3 + i % 7;
        preset->DrawGrid = i % 2;
        preset->set_name("P " + std::to_string(i));
        global.presets.push_back(preset);
    }
}

// What a sync cannot undercut: the 116 pictures painted, no widgets.
void previews_floor_116(benchmark::State& state) {
    Global global;
    make_lists_workspace(global);
    std::vector<pointer<app_layer>> all(global.current_project()->layers.begin(),
                                        global.current_project()->layers.end());
    all.insert(all.end(), global.presets.begin(), global.presets.end());
    std::vector<QImage> pictures(
        all.size(),
        QImage(LayerPreviewImage::preview_width, LayerPreviewImage::preview_height, image_format));
    for (auto _ : state) {
        for (std::size_t i = 0; i < all.size(); ++i)
            paint_layer_preview(pictures[i], *all[i]);
        benchmark::DoNotOptimize(pictures.front().constBits());
    }
}
BENCHMARK(previews_floor_116)->Unit(benchmark::kMicrosecond);

// One sync of both lists: labels rewritten, every picture repainted. The
// rows exist already, as they do after the first sync.
void lists_sync_16_layers_100_presets(benchmark::State& state) {
    Global global;
    make_lists_workspace(global);
    RightPanel panel(nullptr, &global);
    panel.resize(280, 900);
    panel.syncFromGlobalLayers();
    panel.syncFromGlobalPresets();
    for (auto _ : state) {
        panel.syncFromGlobalLayers();
        panel.syncFromGlobalPresets();
    }
}
BENCHMARK(lists_sync_16_layers_100_presets)->Unit(benchmark::kMicrosecond);

// A paint of the whole panel with nothing changed: no picture is painted
// and no row is made. The time of the whole process is counted: Qt may
// hand large blends to worker threads, which the main thread's time
// alone would leave out.
void lists_paint_unchanged(benchmark::State& state) {
    Global global;
    make_lists_workspace(global);
    RightPanel panel(nullptr, &global);
    panel.resize(280, 900);
    panel.show();
    panel.syncFromGlobalLayers();
    panel.syncFromGlobalPresets();
    // The layouts settle, as they do in the event loop after a sync.
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    // Painted into the window's backing store, the road of a real paint.
    panel.repaint();
    for (auto _ : state)
        panel.repaint();
}
BENCHMARK(lists_paint_unchanged)->Unit(benchmark::kMicrosecond)->MeasureProcessCPUTime();

} // namespace
