// The power figure of a screen layer: amperes from watts per cabinet, line
// voltage and phases.

#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct power : screen_test {
    // As the Power palette shows it.
    std::string shown() {
        char text[64];
        std::snprintf(text, sizeof text, "Total Power %.2f A", double(layer->calculate_power()));
        return text;
    }
};

} // namespace

TEST_F(power, DefaultsAndOnePhase) {
    EXPECT_EQ(layer->Columns * layer->Rows, 40);
    EXPECT_FLOAT_EQ(layer->calculate_power(), 8000.0f / (std::sqrt(3.0f) * 110.0f));
    EXPECT_EQ(shown(), "Total Power 41.99 A");
    layer->PowerWatts = 100;
    layer->PowerPhases = 1;
    EXPECT_EQ(shown(), "Total Power 36.36 A");
}

TEST_F(power, ExcludedCabinetsCountOnlyWhenSkippedAndHalvesCountWhole) {
    layer->PowerWatts = 100;
    layer->PowerPhases = 1;
    layer->PowerVolts = 100;
    layer->HalfColumns = std::bitset<4>(0b1111);
    EXPECT_FLOAT_EQ(layer->calculate_power(), 40.0f);
    layer->ExcludeBoxes.add(box_id(2, 3));
    layer->SkipBlankBoxes = 1;
    EXPECT_FLOAT_EQ(layer->calculate_power(), 39.0f);
    layer->SkipBlankBoxes = 0;
    EXPECT_FLOAT_EQ(layer->calculate_power(), 40.0f);
    // The member count is taken as it is, even for ids off the grid.
    layer->SkipBlankBoxes = 1;
    layer->ExcludeBoxes.add(box_id(30, 30));
    EXPECT_FLOAT_EQ(layer->calculate_power(), 38.0f);
}

TEST_F(power, ZeroVoltsOrPhasesGiveInfinityWithoutFailure) {
    layer->PowerVolts = 0;
    EXPECT_TRUE(std::isinf(layer->calculate_power()));
    EXPECT_EQ(shown(), "Total Power inf A");
    layer->PowerVolts = 110;
    layer->PowerPhases = 0;
    EXPECT_TRUE(std::isinf(layer->calculate_power()));
    // Nothing to draw and nothing to divide: not a number, still no failure.
    layer->PowerWatts = 0;
    EXPECT_TRUE(std::isnan(layer->calculate_power()));
}
