// Export speed: the layered PSD of an 8K wall against writing the same
// number of bytes in one go, which is as fast as the disk path gets; and
// the show report of the same wall against the PSD.

#include "bench_workspaces.h"
#include "document/global.h"
#include "export/psd_saver.h"
#include "export/report.h"
#include "render/draw2d_context.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <malloc.h>
#include <string>
#include <unistd.h>

using namespace Vantora_TesserinePro;

namespace {

// The 8K wall of the rendering benchmark with its frame already built: the
// layers' offscreen images as drawn, and the composite as straight RGBA, the
// way frame composition hands it over.
struct export_wall {
    nano2d::draw2d_context context; // outlives the layers' image handles
    Global global;
    QImage composite;
    QTemporaryDir dir;

    export_wall() {
        bench::make_8k_workspace(global);
        global.defer_build_frame(true, &context);
        composite = global.get_composite_image()->convertToFormat(QImage::Format_RGBA8888);
    }

    std::string path(const char* name) const { return (dir.path() + "/" + name).toStdString(); }

    bool write_psd(const std::string& target) {
        PSDSaver saver;
        for (const auto& layer : global.current_project()->get_layers())
            saver.add_layer(layer);
        return saver.savePSD(composite.constBits(), composite.width(), composite.height(),
                             int(composite.bytesPerLine()), target);
    }
};

export_wall& wall() {
    static export_wall w;
    return w;
}

// Resident and peak resident memory of this process, in bytes.
long long status_field(const char* key) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(key, 0) == 0) return std::stoll(line.substr(std::strlen(key))) * 1024;
    return -1;
}

void psd_8k_16layers(benchmark::State& state) {
    export_wall& w = wall();
    const std::string target = w.path("wall.psd");

    // Peak memory of one save above what the frame already holds. Freed
    // memory goes back to the system first, or a reused heap would hide the
    // copies; resetting the peak needs Linux's clear_refs.
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    const long long before = status_field("VmRSS:");
    if (!w.write_psd(target)) state.SkipWithError("the PSD could not be written");
    const long long peak = status_field("VmHWM:") - before;
    // One copy of each layer plus the three planes of the merged image.
    const double estimate = 16.0 * (1920 * 1024 * 4 + 8) + 3.0 * 7680 * 4320;

    for (auto _ : state)
        if (!w.write_psd(target)) state.SkipWithError("the PSD could not be written");

    const auto size = QFile(QString::fromStdString(target)).size();
    state.SetBytesProcessed(state.iterations() * size);
    state.counters["file_MB"] = double(size) / 1e6;
    if (before > 0 && peak > 0) {
        state.counters["peak_MB"] = double(peak) / 1e6;
        state.counters["peak_vs_estimate"] = double(peak) / estimate;
    }
}
BENCHMARK(psd_8k_16layers)->Unit(benchmark::kMillisecond)->UseRealTime();

// The PSD's size: header and lengths, 16 records and layer channels, the
// merged image.
constexpr std::size_t psd_8k_size = 34 + 10 + 16 * (91 + 1920 * 1024 * 4) + 4 + 2 + 3 * 7680 * 4320;

void write_in_one_go(benchmark::State& state, bool sync) {
    export_wall& w = wall();
    std::vector<unsigned char> bytes(psd_8k_size, 0x5A);
    const std::string target = w.path("plain.bin");
    for (auto _ : state) {
        std::FILE* f = std::fopen(target.c_str(), "wb");
        if (!f || std::fwrite(bytes.data(), 1, bytes.size(), f) != bytes.size())
            state.SkipWithError("fwrite");
        if (f && sync && (std::fflush(f) != 0 || fdatasync(fileno(f)) != 0))
            state.SkipWithError("fdatasync");
        if (f) std::fclose(f);
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(bytes.size()));
    state.counters["file_MB"] = double(bytes.size()) / 1e6;
}

void fwrite_8k_16layers(benchmark::State& state) {
    write_in_one_go(state, false);
}
BENCHMARK(fwrite_8k_16layers)->Unit(benchmark::kMillisecond)->UseRealTime();

// The PSD is saved whole or not at all, and the save waits until the data
// is on the disk before it replaces the old file; this is the least such a
// save can cost.
void fwrite_fdatasync_8k_16layers(benchmark::State& state) {
    write_in_one_go(state, true);
}
BENCHMARK(fwrite_fdatasync_8k_16layers)->Unit(benchmark::kMillisecond)->UseRealTime();

// The show report of the wall: the frame embedded losslessly at full size,
// a page per screen layer with its port loads, the totals.
void report_8k_16layers(benchmark::State& state) {
    export_wall& w = wall();
    const file::path target(w.path("wall.pdf"));
    const report_options options{false, "wall", "2026-01-01"};
    for (auto _ : state)
        if (!write_report(w.global, *w.global.get_composite_image(), target, options).empty())
            state.SkipWithError("the report could not be written");
    state.counters["file_MB"] = double(QFile(QString::fromStdString(target.string())).size()) / 1e6;
}
BENCHMARK(report_8k_16layers)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
