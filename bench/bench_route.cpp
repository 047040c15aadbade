// Data path speed: the whole route of a wall of a million cabinets against a
// plain walk over the same cabinets, the least any router has to do.

#include "datapath/snake.h"
#include "persistence/processor_library.h"
#include "plan/power_plan.h"
#include "plan/processors.h"
#include "support/workspace_builders.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

using namespace Vantora_TesserinePro;

namespace {

// 1000 by 1000 cabinets of 10 by 10 in mode 6 (columns from the bottom left).
// A limit of one column, 100000 pixels, gives a thousand ports.
struct million_wall {
    Global global;
    pointer<boxes_layer> layer;
    million_wall() {
        global.m_project = std::make_shared<project>();
        layer = testing::screen_layer(global);
        testing::set_grid(*layer, 1000, 1000, 10, 10);
        layer->SnakeMode = 6;
        layer->SnakeLimit = 100000;
    }
};

million_wall& wall() {
    static million_wall w;
    return w;
}

void walk_1M(benchmark::State& state) {
    const boxes_layer& layer = *wall().layer;
    for (auto _ : state) {
        float extent = 0;
        unsigned cells = 0;
        layer.for_each_box(
            [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
                extent += (x1 - x0) + (y1 - y0);
                cells += column ^ row;
                return false;
            },
            true);
        benchmark::DoNotOptimize(extent);
        benchmark::DoNotOptimize(cells);
    }
    state.SetItemsProcessed(state.iterations() * 1000000);
}

void count_ports(benchmark::State& state, const Snake::route& r) {
    long long ports = 0;
    for (const auto& b : r)
        ports += b.is_port_start();
    state.counters["ports"] = double(ports);
    state.counters["boxes"] = double(r.size());
    // What the route holds on to: the only array of cabinets the routers make.
    state.counters["route_MB"] = double(r.capacity() * sizeof(Snake::box)) / 1e6;
}

void route_of(benchmark::State& state, int type) {
    boxes_layer& layer = *wall().layer;
    layer.DataDiagramType = type;
    for (auto _ : state) {
        Snake::route r = Snake::make_route(layer);
        benchmark::DoNotOptimize(r.data());
        benchmark::ClobberMemory();
    }
    count_ports(state, Snake::make_route(layer));
    state.SetItemsProcessed(state.iterations() * 1000000);
}

void route_novastar_1M(benchmark::State& state) {
    route_of(state, 0);
}
void route_other_1M(benchmark::State& state) {
    route_of(state, 1);
}

// The power plan of the same wall, against route_other_1M: the same engine
// chains the cabinets onto circuits (200 W under 16 A x 80 % x 110 V gives
// 7 cabinets a circuit), then the circuits are summed.
void power_plan_1M(benchmark::State& state) {
    const boxes_layer& layer = *wall().layer;
    std::size_t circuits = 0;
    for (auto _ : state) {
        const plan::power_plan p = plan::plan_power(layer);
        circuits = p.circuits.size();
        benchmark::DoNotOptimize(p.phase_amperes);
    }
    state.counters["circuits"] = double(circuits);
    state.SetItemsProcessed(state.iterations() * 1000000);
}

// The processors of the same wall, against route_novastar_1M: a model of
// 1024 ports of one column each gives the same thousand chains, then each
// goes on its unit and port.
void processors_plan_1M(benchmark::State& state) {
    million_wall w;
    w.layer->Processor = "Bench 1024";
    w.global.m_project->layers.push_back(w.layer);
    processor_library library;
    library.put({"Bench 1024", 1024, 100000, 50000});
    int ports = 0;
    for (auto _ : state) {
        const plan::processor_plan p = plan::plan_processors(w.global.m_project->layers, library);
        ports = p.main_ports() + p.backup_ports();
        benchmark::DoNotOptimize(p.units.data());
    }
    state.counters["ports"] = double(ports);
    state.SetItemsProcessed(state.iterations() * 1000000);
}

// The same wall with every tenth cabinet excluded, skipped by both routers.
void route_novastar_1M_excluded(benchmark::State& state) {
    million_wall w;
    for (std::uint32_t c = 0; c < 1000; ++c)
        for (std::uint32_t r = c % 10; r < 1000; r += 10)
            w.layer->ExcludeBoxes.add(box_id(c, r));
    for (auto _ : state) {
        Snake::route r = Snake::make_route(*w.layer);
        benchmark::DoNotOptimize(r.data());
        benchmark::ClobberMemory();
    }
    count_ports(state, Snake::make_route(*w.layer));
    state.SetItemsProcessed(state.iterations() * 1000000);
}

} // namespace

namespace {
// The fastest of the repetitions: on a shared machine it is the steadiest
// figure to take ratios from.
double fastest(const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
}
} // namespace

BENCHMARK(walk_1M)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(route_novastar_1M)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(route_other_1M)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(power_plan_1M)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(processors_plan_1M)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(route_novastar_1M_excluded)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
