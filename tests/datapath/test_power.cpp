// The power figure of a screen layer: amperes from watts per cabinet, line
// voltage and phases, as the Power palette shows them.

#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

TEST_F(screen_test, PowerFigures) {
    // Settings over the defaults (40 cabinets of 200 W on 3 phases of 110 V),
    // and the figure shown.
    const struct {
        const char *settings, *shown;
    } cases[] = {
        {"", "41.99"}, // 8000 / (sqrt(3) * 110)
        {"PowerWatts:100\nPowerPhases:1", "36.36"},
        // Half cabinets count whole; excluded ones only when skipped, and
        // the member count is taken as it is, even for ids off the grid.
        {"PowerWatts:100\nPowerPhases:1\nPowerVolts:100\nHalfColumns:1111", "40.00"},
        {"PowerWatts:100\nPowerPhases:1\nPowerVolts:100\nExcludeBoxes:131075\nSkipBlankBoxes:1",
         "39.00"},
        {"PowerWatts:100\nPowerPhases:1\nPowerVolts:100\nExcludeBoxes:131075\nSkipBlankBoxes:0",
         "40.00"},
        {"PowerWatts:100\nPowerPhases:1\nPowerVolts:100\nExcludeBoxes:131075|1966110\n"
         "SkipBlankBoxes:1",
         "38.00"},
        // No volts or no phases: infinity, and nothing to divide is not a
        // number; neither fails.
        {"PowerVolts:0", "inf"},
        {"PowerPhases:0", "inf"},
        {"PowerPhases:0\nPowerWatts:0", "nan"},
    };
    for (const auto& c : cases) {
        auto wall = screen_layer(global);
        wall->apply_layer_info(c.settings);
        const float amperes = wall->calculate_power();
        char shown[32];
        std::snprintf(shown, sizeof shown, "%.2f", double(amperes));
        // The sign of a NaN differs between processors.
        EXPECT_EQ(std::isnan(amperes) ? "nan" : std::string(shown), c.shown) << c.settings;
    }
}
