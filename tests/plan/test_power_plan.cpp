// The power plan: circuits chained by the data path's own engine, their
// capacity, phases and failures, and the power path on the map.

#include "plan/power_plan.h"
#include "support/recording_context.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <random>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

// A plan in one line: the capacity, each circuit's cabinets, watts and
// phase, and the amperes of each phase; or the failure.
std::string summary(const boxes_layer& layer) {
    const plan::power_plan p = plan::plan_power(layer);
    if (p.failed) return p.message;
    std::string s = std::to_string(p.capacity_watts) + " W:";
    for (const plan::circuit& c : p.circuits)
        s += " " + std::to_string(c.cabinets) + "x" + plan::watts_text(c.quarter_watts) + "W " +
             plan::phase_name(c.phase);
    char amperes[64];
    std::snprintf(amperes, sizeof amperes, " | %.2f %.2f %.2f", p.phase_amperes[0],
                  p.phase_amperes[1], p.phase_amperes[2]);
    return s + amperes;
}

} // namespace

// With watts equal to a cabinet's pixels and a capacity equal to the pixel
// limit, every pattern chains cabinets onto circuits exactly as "Other Type"
// chains them onto ports: turns at line ends, halves and exclusions included.
TEST_F(wall_test, CircuitsFollowTheDataPathEngineInEveryPattern) {
    std::mt19937 random(7);
    const auto pick = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    for (int round = 0; round < 400; ++round) {
        set_grid(*layer, pick(1, 7), pick(1, 6), 10, 10);
        layer->HalfColumns = std::bitset<4>(unsigned(pick(0, 15)));
        layer->ExcludeBoxes.clear();
        for (int k = pick(0, 4); k > 0; --k)
            layer->ExcludeBoxes.add(box_id(pick(0, 6), pick(0, 5)));
        layer->SkipBlankBoxes = pick(0, 1);
        layer->DataDiagramType = 1;
        layer->SnakeMode = pick(0, 7);
        layer->SnakeLimit = pick(100, 1500);
        layer->PowerWatts = 100;
        layer->CircuitAmps = layer->SnakeLimit, layer->CircuitDerate = 100, layer->PowerVolts = 1;
        const std::string data = Snake::route_text(Snake::make_route(*layer));
        ASSERT_EQ(Snake::route_text(Snake::power_route(*layer, layer->SnakeMode,
                                                       std::uint64_t(layer->SnakeLimit) * 4)),
                  data);
        const Snake::layer_loads ports = Snake::port_loads(*layer);
        const plan::power_plan power = plan::plan_power(*layer);
        ASSERT_EQ(power.circuits.size(), ports.ports.size()) << data;
        for (std::size_t k = 0; k < ports.ports.size(); ++k) {
            const plan::circuit& c = power.circuits[k];
            const Snake::port_load& p = ports.ports[k];
            EXPECT_EQ(std::tie(c.first_column, c.first_row, c.last_column, c.last_row, c.cabinets),
                      std::tie(p.first_column, p.first_row, p.last_column, p.last_row, p.cabinets));
            EXPECT_EQ(c.quarter_watts, p.pixels * 4) << data;
        }
    }
    // The power pattern is its own once set; unset, it is the data path's.
    layer->SnakeMode = 5;
    EXPECT_EQ(layer->power_pattern(), 5);
    layer->PowerPattern = 0;
    EXPECT_EQ(layer->power_pattern(), 0);
}

TEST_F(wall_test, CapacityPhasesHalvesAndFailures) {
    const struct {
        const char *settings, *plan;
    } cases[] = {
        // 12 cabinets of 200 W under 16 A x 80 % x 110 V = 1408 W.
        {"", "1408 W: 7x1400W L1 5x1000W L2 | 12.73 9.09 0.00"},
        {"CircuitAmps:13\nCircuitDerate:100\nPowerVolts:230", "2990 W: 12x2400W L1 | 10.43 0.00 0.00"},
        // 7 x 33 % x 101 V = 233.31 W, rounded down: a cabinet a circuit,
        // the phases in turn; with one phase all on L1, with two on L1, L2.
        {"CircuitAmps:7\nCircuitDerate:33\nPowerVolts:101\nColumns:2\nRows:2",
         "233 W: 1x200W L1 1x200W L2 1x200W L3 1x200W L1 | 3.96 1.98 1.98"},
        {"CircuitAmps:7\nCircuitDerate:33\nPowerVolts:101\nColumns:2\nRows:2\nPowerPhases:1",
         "233 W: 1x200W L1 1x200W L1 1x200W L1 1x200W L1 | 7.92 0.00 0.00"},
        {"CircuitAmps:7\nCircuitDerate:33\nPowerVolts:101\nColumns:3\nRows:1\nPowerPhases:2",
         "233 W: 1x200W L1 1x200W L2 1x200W L1 | 3.96 1.98 0.00"},
        // Half a cabinet draws half, a corner halved both ways a quarter;
        // an excluded cabinet nothing, whether skipped or not.
        {"PowerWatts:101\nHalfColumns:1001\nExcludeBoxes:65537\nSkipBlankBoxes:0",
         "1408 W: 11x782.75W L1 | 7.12 0.00 0.00"},
        {"PowerWatts:1408\nCircuitDerate:100\nCircuitAmps:1\nPowerVolts:1408\nColumns:1\nRows:2",
         "1408 W: 1x1408W L1 1x1408W L2 | 1.00 1.00 0.00"},
        // What cannot be planned is named, with the value.
        {"CircuitAmps:0", "\"Screen1\": the circuit rating is 0 A; it must be above 0."},
        {"PowerVolts:-5", "\"Screen1\": the line voltage is -5 V; it must be above 0."},
        {"CircuitDerate:0", "\"Screen1\": the derate is 0 %; it must be 1 to 100."},
        {"CircuitDerate:101", "\"Screen1\": the derate is 101 %; it must be 1 to 100."},
        {"PowerWatts:-1", "\"Screen1\": a cabinet draws -1 W; it cannot be below 0."},
        {"PowerWatts:1409", "\"Screen1\": a cabinet draws 1409 W, more than one circuit carries "
                            "(16 A x 80 % x 110 V = 1408 W)."},
        // No rating a file can hold overflows the capacity.
        {"CircuitAmps:2147483647\nCircuitDerate:100\nPowerVolts:2147483647\nColumns:1\nRows:1",
         "2305843009213693951 W: 1x200W L1 | 0.00 0.00 0.00"},
    };
    for (const auto& c : cases) {
        auto wall = screen_layer(global);
        set_grid(*wall, 4, 3, 10, 10);
        wall->apply_layer_info(c.settings);
        EXPECT_EQ(summary(*wall), c.plan) << c.settings;
    }
}

// The dashed path through each circuit, offset from the data path, and its
// labels, kept inside the layer; nothing when the plan fails.
TEST_F(wall_test, PowerPathDrawing) {
    recording_context rec;
    layer->apply_layer_info("DrawBoxes:0\nDrawSnake:0\nDrawScreenSize:0\nDrawLayerName:0\n"
                            "DrawInfoLine:0\nCornersMode:0\nDrawPowerPath:1\nPowerWatts:500\n"
                            "SnakeMode:0\nHalfColumns:0001\nExcludeBoxes:65536");
    layer->build_frame(&rec, {});
    std::string log = rec.text();
    rec.clear();
    layer->PowerWatts = 2000;
    layer->build_frame(&rec, {});
    EXPECT_EQ(rec.index_of("stroke_dash 12 8"), -1);
    EXPECT_TRUE(matches_golden(log, "power_path.log"));
}
