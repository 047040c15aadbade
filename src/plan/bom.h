#pragma once
// The bill of materials: what goes on the truck for the whole project and
// what the rigging holds. Every count is taken from the same plans that
// `route`, `power` and the report show, so that no two of them disagree.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class Global;

namespace plan {

struct bom_row {
    std::string item; // "cabinet", "half cabinet", "data cable", ...
    std::string kind; // what tells the row's things apart
    std::int64_t count = 0;
    std::optional<double> unit_weight_kg; // none: not known
    std::optional<double> weight_kg;
    std::string notes;
};

struct bom_totals {
    std::int64_t cabinets = 0;      // full and half, each once; spares not in it
    std::int64_t half_cabinets = 0; // halved one way or both
    std::int64_t spares = 0;
    std::int64_t ports = 0;        // main data ports, one cable each
    std::int64_t backup_ports = 0; // backup data ports, one cable each
    std::int64_t data_jumpers = 0; // between consecutive cabinets of a chain
    std::int64_t circuits = 0;     // one power feed each
    std::int64_t power_jumpers = 0;
    double weight_kg = 0; // what hangs: the cabinets, not the spares
    std::int64_t unknown_weight_cabinets = 0;
    std::int64_t pixels = 0;
    double watts = 0;
    double amperes[3] = {0, 0, 0}; // L1, L2, L3
};

struct bill_of_materials {
    std::vector<bom_row> rows;
    bom_totals totals;
};

// The list of the visible screen layers; a hidden layer, or a plan that
// fails, is left out and said so in a row of its own.
bill_of_materials make_bom(const Global& global);

// RFC 4180: a header row "item,kind,count,unit_weight_kg,weight_kg,notes",
// CR LF line ends, fields quoted where they hold a comma, quote or line end.
std::string bom_csv(const bill_of_materials& bom);
// A weight in kg as few digits as it needs, to the gram; empty when unknown.
std::string kg_text(const std::optional<double>& kg);
// "1,920 cabinets · 3,840 kg · 48 ports · 24 circuits" for the Power palette.
std::string bom_line(const bill_of_materials& bom);

} // namespace plan
} // namespace Vantora_TesserinePro
