#include "cli/cli.h"

#include "core/string_format.h"
#include "plan/bom.h"
#include "plan/power_plan.h"

#include <algorithm>
#include <iostream>

namespace Vantora_TesserinePro::cli {

namespace {

// Characters, not bytes: layer names may be any UTF-8.
std::size_t utf8_length(const std::string& text) {
    return std::size_t(std::count_if(text.begin(), text.end(),
                                      [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string json_kg(const std::optional<double>& kg) {
    return kg ? plan::kg_text(kg) : "null";
}

std::string bom_json(const plan::bill_of_materials& bom) {
    std::string o = "{\"rows\": [";
    for (std::size_t k = 0; k < bom.rows.size(); ++k) {
        const plan::bom_row& r = bom.rows[k];
        o += (k ? ",\n  " : "\n  ") + std::string("{\"item\": ") + json_string(r.item) +
             ", \"kind\": " + json_string(r.kind) + ", \"count\": " + std::to_string(r.count) +
             ", \"unit_weight_kg\": " + json_kg(r.unit_weight_kg) +
             ", \"weight_kg\": " + json_kg(r.weight_kg) + ", \"notes\": " + json_string(r.notes) +
             "}";
    }
    const plan::bom_totals& t = bom.totals;
    o += string_format(
        "\n], \"totals\": {\"cabinets\": %lld, \"half_cabinets\": %lld, \"spares\": %lld, "
        "\"ports\": %lld, \"backup_ports\": %lld, \"data_jumpers\": %lld, \"circuits\": %lld, "
        "\"power_jumpers\": %lld, \"weight_kg\": %s, \"unknown_weight_cabinets\": %lld, "
        "\"pixels\": %lld, \"watts\": %s, \"amperes\": {\"L1\": %.2f, \"L2\": %.2f, "
        "\"L3\": %.2f}}}\n",
        (long long)t.cabinets, (long long)t.half_cabinets, (long long)t.spares,
        (long long)t.ports, (long long)t.backup_ports, (long long)t.data_jumpers,
        (long long)t.circuits, (long long)t.power_jumpers, plan::kg_text(t.weight_kg).c_str(),
        (long long)t.unknown_weight_cabinets, (long long)t.pixels,
        plan::watts_text(std::llround(t.watts * 4)).c_str(), t.amperes[0], t.amperes[1],
        t.amperes[2]);
    return o;
}

// Columns padded to their widest cell; counts and weights to the right.
std::string bom_text(const plan::bill_of_materials& bom) {
    std::vector<std::vector<std::string>> cells = {
        {"Item", "Kind", "Count", "Unit kg", "kg", "Notes"}};
    for (const plan::bom_row& r : bom.rows)
        cells.push_back({r.item, r.kind, std::to_string(r.count), plan::kg_text(r.unit_weight_kg),
                         plan::kg_text(r.weight_kg), r.notes});
    std::size_t width[6] = {};
    for (const auto& row : cells)
        for (std::size_t c = 0; c < 6; ++c) width[c] = std::max(width[c], utf8_length(row[c]));
    std::string out;
    for (const auto& row : cells) {
        std::string line;
        for (std::size_t c = 0; c < 6; ++c) {
            const std::string pad(width[c] - utf8_length(row[c]), ' ');
            const bool right = c >= 2 && c <= 4;
            line += (c ? "  " : "") + (right ? pad + row[c] : row[c] + (c < 5 ? pad : ""));
        }
        out += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    const plan::bom_totals& t = bom.totals;
    out += string_format(
        "\ncabinets %lld (%lld half) + %lld spare, %lld pixels\n"
        "data %lld ports + %lld backup, %lld jumpers\n"
        "power %lld circuits, %lld jumpers, %s W, L1 %.2f A, L2 %.2f A, L3 %.2f A\n"
        "weight %s kg",
        (long long)t.cabinets, (long long)t.half_cabinets, (long long)t.spares,
        (long long)t.pixels, (long long)t.ports, (long long)t.backup_ports,
        (long long)t.data_jumpers, (long long)t.circuits, (long long)t.power_jumpers,
        plan::watts_text(std::llround(t.watts * 4)).c_str(), t.amperes[0], t.amperes[1],
        t.amperes[2], plan::kg_text(t.weight_kg).c_str());
    if (t.unknown_weight_cabinets)
        out += string_format(", %lld cabinets without a weight", (long long)t.unknown_weight_cabinets);
    return out + "\n";
}

} // namespace

int cmd_bom(const args& a) {
    parsed_args p = parse_args("bom", a, {"--json", "--csv"}, false, false);
    if (p.done) return *p.done;
    if (p.positional.size() != 1) return usage_error("bom takes one FILE", "bom");
    if (p.flags.size() > 1) return usage_error("bom takes --json or --csv, not both", "bom");
    Global global;
    if (int status = load_for_request(global, p.positional[0])) return status;
    const plan::bill_of_materials bom = plan::make_bom(global);
    const std::string form = p.flags.empty() ? "" : p.flags[0];
    std::cout << (form == "--json"  ? bom_json(bom)
                  : form == "--csv" ? plan::bom_csv(bom)
                                    : bom_text(bom))
              << std::flush;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
