#pragma once
// Test fixtures of a workspace: an empty project behind a host that records
// what the workspace asks of the window, and one with a screen layer.

#include "support/test_support.h"
#include "support/workspace_builders.h"

#include <gtest/gtest.h>

namespace Vantora_TesserinePro::testing {

struct workspace_test : ::testing::Test {
    recording_host host;
    Global global{&host};
    workspace_test() { global.m_project = std::make_shared<project>(); }
};

// A screen layer outside the stack, with its defaults (8 by 5 of 128).
struct screen_test : workspace_test {
    pointer<boxes_layer> layer = screen_layer(global);
    void forget_changes() {
        layer->clear_changed();
        global.changed = 0;
    }
};

// The wall of the data path examples: 4 by 3 cabinets of 10 by 10, 100
// pixels each.
struct wall_test : screen_test {
    wall_test() { set_grid(*layer, 4, 3, 10, 10); }
};

} // namespace Vantora_TesserinePro::testing
