#pragma once
// Which chain each cabinet of a screen is on, data port or power circuit,
// for colouring the map by chain and for its legend.

#include "core/types.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vantora_TesserinePro {

class boxes_layer;

namespace plan {

struct cabinet_chains {
    // Chain index (0 for the first port or circuit) by box id.
    std::unordered_map<std::uint32_t, std::size_t> chain_of;
    // The chains' names in order: "P1", "P2" … or "C1", "C2" …
    std::vector<std::string> names;
};

// The chains of mode (none for the chequer, or when the router or the power
// plan fails: the map then keeps its chequer).
cabinet_chains chains_of(const boxes_layer& layer, color_by_mode mode);

// "chequer", "port", "circuit"; and back, false for another word.
const char* color_by_name(color_by_mode mode);
bool color_by_from_name(const std::string& name, color_by_mode& mode);

} // namespace plan
} // namespace Vantora_TesserinePro
