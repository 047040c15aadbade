#pragma once
// The processors of a whole wall: which unit and port feeds each chain of
// every screen layer, where each backup cable goes, how many ports each
// unit has left and what does not fit. One computation that the route and
// processors commands, the map's port labels, the Data-Flow palette and the
// report all read.

#include "core/types.h"
#include "datapath/snake.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class Global;
class app_layer;
struct BoxesLayerDescription;
struct processor_model;
class processor_library;

namespace plan {

// Where one cable plugs in: a unit and a port on it, both from 1.
struct port_ref {
    int unit = 0;
    int port = 0;
    bool operator==(const port_ref&) const = default;
};

// One chain of a layer: its load and the ports it is cabled to.
struct chain_plan {
    Snake::port_load load;          // measured against the effective limit
    std::optional<port_ref> main;   // the chain's first cabinet; none without a processor
    std::optional<port_ref> backup; // the chain's last cabinet; none without a backup
};

// One screen layer's part of the plan.
struct layer_plan {
    long long index = 0; // in the stack, 0 at the bottom
    std::string name;
    const char* type = "novastar"; // as Snake::layer_loads
    std::int64_t limit = 0;        // SnakeLimit as typed
    // What one port carries at the layer's depth and rate: the route is made
    // under it. Equals SnakeLimit with the default keys.
    std::int64_t effective_limit = 0;
    bool processor_keys = false; // any processor key differs from its default
    std::string model;           // empty when no processor is chosen
    int backup_mode = 0;         // the layer's Backup
    // The router's failure, or the layer's conflict when a processor is
    // chosen; a failed layer takes no port of any unit.
    bool failed = false;
    std::string message;
    bool routed = true; // false when the router failed: message is its failure
    std::vector<chain_plan> chains;
    Snake::route route; // as drawn; kept only when asked for

    // The chain with the largest load, or null when there is none.
    const chain_plan* fullest() const;
};

// One processor in use.
struct unit_plan {
    std::string model;
    int unit = 0;  // its number; backup units (Backup 2) come after every main unit
    int ports = 0; // the model's port count
    // Ports that feed a chain's first cabinet.
    int main_ports = 0;
    // Ports that take a chain's return cable: loop-back ports (Backup 1)
    // on a main unit, mirrored ports on a backup unit.
    int backup_ports = 0;
    int free_ports = 0;              // ports - main_ports - backup_ports
    int mirrors = 0;                 // for a backup unit, the main unit it mirrors; else 0
    std::vector<std::string> layers; // names, in stack order
};

struct conflict {
    long long layer = 0; // index in the stack
    std::string name;
    std::string message;
};

// The plan of a workspace. For a bill of materials: units holds every
// processor to buy, backup units included, in order of number; models
// counts them by model; a unit's main_ports and backup_ports count the
// ports in use, and main_ports() and backup_ports() sum them over all
// units. A layer's main ports are its chains with a main port, its backup
// ports its chains with a backup port.
struct processor_plan {
    std::vector<layer_plan> layers; // every screen layer, bottom first
    std::vector<unit_plan> units;
    std::vector<conflict> conflicts; // in stack order, one per failed layer
    std::map<std::string, int> models;

    int main_ports() const;
    int backup_ports() const;
    // The layer at stack index, or null when it is no screen layer.
    const layer_plan* layer(long long index) const;
    // Whether any layer has a processor chosen.
    bool any_processor() const;
};

// The pixels one port carries for a layer: the model's figure at the
// layer's depth (12-bit as 10-bit), or without a model SnakeLimit (halved
// above 8-bit), times 60 / FrameRate, rounded down. A negative SnakeLimit
// (no limit) stays as it is; a rate of 0 or less leaves the figure at 60 Hz.
std::int64_t effective_limit(const BoxesLayerDescription& layer, const processor_model* model);

// The plan of these layers (screen layers are planned, others skipped).
processor_plan plan_processors(const pointer_array<app_layer>& layers,
                               const processor_library& library, bool keep_routes = false);
// The plan of the workspace's project, with its library.
processor_plan plan_processors(const Global& global, bool keep_routes = false);

// "1:3", and "B1:5" for a backup port.
std::string port_label(const port_ref& p);
std::string backup_label(const port_ref& p);
// The palette's line for one layer: "Unit 1 · ports 1–3 of 16 · backup 4–6 ·
// fullest 92 %", or its failure; without a processor the ports and the
// fullest one.
std::string processor_line(const processor_plan& plan, long long index);

} // namespace plan
} // namespace Vantora_TesserinePro
