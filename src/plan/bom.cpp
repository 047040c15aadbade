#include "plan/bom.h"

#include "core/string_format.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "plan/power_plan.h"
#include "plan/processors.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace Vantora_TesserinePro::plan {

namespace {

// Cabinets of one kind: the same pixels, the same physical size and the
// same weight (a kind weighed differently in two layers is two rows).
struct cabinet_kind {
    int width = 0, height = 0;
    float phys_w = 0, phys_h = 0;
    double weight = 0;
    std::int64_t full = 0, half = 0, corners = 0;
    std::int64_t spare_percents = 0; // sum of cabinets x per cent
    std::int64_t quarters = 0;       // full 4, half 2, corner 1

    auto key() const { return std::tie(width, height, phys_w, phys_h, weight); }
    std::string name() const {
        std::string text =
            string_format("%d x %d px, %g x %g mm", width, height, double(phys_w), double(phys_h));
        if (width > 0) text += string_format(", pitch %.2f mm", double(phys_w) / width);
        return text;
    }
};

// A layer's cabinets that are not excluded, by how they are cut.
struct cut_counts {
    std::int64_t cabinets = 0, half = 0, corners = 0, quarters = 0;
};

cut_counts count_cuts(const boxes_layer& layer) {
    cut_counts out;
    const std::int64_t columns = std::max(0, layer.Columns), rows = std::max(0, layer.Rows);
    std::int64_t excluded = 0;
    for (std::uint32_t id : layer.ExcludeBoxes)
        if (std::int64_t(id >> 16) < columns && std::int64_t(id & 0xFFFF) < rows) ++excluded;
    out.cabinets = columns * rows - excluded;
    const Snake::half_cuts cut(layer);
    // Only the cut lines are walked: a wall of a million cabinets has a few
    // thousand of them.
    const auto visit = [&](std::int64_t c, std::int64_t r) {
        if (layer.ExcludeBoxes.contains(box_id(std::uint32_t(c), std::uint32_t(r)))) return;
        const bool both = cut.column(c) && cut.row(r);
        ++out.half;
        out.corners += both;
        out.quarters += both ? 1 : 2;
    };
    for (std::int64_t c = 0; c < columns; ++c)
        if (cut.column(c))
            for (std::int64_t r = 0; r < rows; ++r)
                visit(c, r);
    for (std::int64_t r = 0; r < rows; ++r)
        if (cut.row(r))
            for (std::int64_t c = 0; c < columns; ++c)
                if (!cut.column(c)) visit(c, r);
    out.quarters += (out.cabinets - out.half) * 4;
    return out;
}

std::optional<double> known(double kg) {
    return kg > 0 ? std::optional<double>(kg) : std::nullopt;
}

} // namespace

bill_of_materials make_bom(const Global& global) {
    bill_of_materials bom;
    bom_totals& t = bom.totals;
    std::vector<cabinet_kind> kinds;
    std::vector<bom_row> left_out;
    std::int64_t data_cables = 0;
    // Processors are planned over the visible screens only: a unit that
    // only a hidden layer uses stays off the truck, and a hidden layer's
    // ports cannot clash with a cabled one. Hidden layers keep their place
    // so that indices match the stack.
    const pointer<project> current = global.current_project_pointer();
    pointer_array<app_layer> visible = current ? current->layers : pointer_array<app_layer>();
    for (pointer<app_layer>& l : visible)
        if (l && l->is_hidden()) l = nullptr;
    const processor_plan processors = plan_processors(visible, global.processor_models());
    for (long long i = 0; i < global.get_layers_count(); ++i) {
        const pointer<app_layer> base = global.get_layer(i);
        if (!base || base->get_layer_type() != e_layer_boxes) continue;
        const auto& layer = static_cast<const boxes_layer&>(*base);
        if (layer.is_hidden()) {
            left_out.push_back({"left out",
                                layer.get_name(),
                                layer.cabinet_count(),
                                {},
                                {},
                                "hidden screen layer"});
            continue;
        }
        const cut_counts cuts = count_cuts(layer);
        cabinet_kind here;
        here.width = layer.Width, here.height = layer.Height;
        here.phys_w = layer.PhysW, here.phys_h = layer.PhysH;
        here.weight = std::max(0.0, layer.CabinetWeight);
        auto kind = std::find_if(kinds.begin(), kinds.end(),
                                 [&](const cabinet_kind& k) { return k.key() == here.key(); });
        if (kind == kinds.end()) kind = kinds.insert(kinds.end(), here);
        kind->full += cuts.cabinets - cuts.half;
        kind->half += cuts.half;
        kind->corners += cuts.corners;
        kind->quarters += cuts.quarters;
        kind->spare_percents += cuts.cabinets * std::clamp(layer.SparePercent, 0, 1000);
        t.cabinets += cuts.cabinets;
        t.half_cabinets += cuts.half;
        t.pixels += std::int64_t(layer.get_width()) * layer.get_height();

        // The chains and their ports as route and processors give them; a
        // layer that failed or conflicts takes no port, so no cable either.
        const layer_plan* data = processors.layer(i);
        if (data && data->failed)
            left_out.push_back({"no data path", layer.get_name(), 0, {}, {}, data->message});
        const bool cabled = data && !data->failed;
        for (const chain_plan& chain : cabled ? data->chains : std::vector<chain_plan>{}) {
            ++data_cables;
            t.backup_ports += chain.backup.has_value();
            t.data_jumpers += std::max<std::int64_t>(0, chain.load.cabinets - 1);
        }
        const power_plan power = plan_power(layer);
        if (power.failed)
            left_out.push_back({"no power plan", layer.get_name(), 0, {}, {}, power.message});
        for (const circuit& c : power.circuits) {
            ++t.circuits;
            t.power_jumpers += std::max<std::int64_t>(0, c.cabinets - 1);
        }
        t.watts += power.watts();
        for (int k = 0; k < 3; ++k)
            t.amperes[k] += power.phase_amperes[k];
    }
    t.ports = data_cables;

    for (const cabinet_kind& k : kinds) {
        const std::string name = k.name();
        const std::optional<double> unit = known(k.weight);
        const auto weigh = [&](double cabinets) {
            return unit ? std::optional<double>(*unit * cabinets) : std::nullopt;
        };
        const std::int64_t spares = (k.spare_percents + 99) / 100;
        const std::int64_t half_quarters = k.quarters - k.full * 4;
        bom.rows.push_back(
            {"cabinet", name, k.full, unit, weigh(double(k.full)), unit ? "" : "weight not given"});
        if (k.half)
            bom.rows.push_back(
                {"half cabinet", name, k.half, weigh(0.5), weigh(double(half_quarters) / 4),
                 k.corners
                     ? string_format("%lld halved both ways, a quarter each", (long long)k.corners)
                     : ""});
        if (spares)
            bom.rows.push_back({"spare cabinet", name, spares, unit, weigh(double(spares)),
                                "not in the hung weight"});
        t.spares += spares;
        if (unit)
            t.weight_kg += *unit * double(k.quarters) / 4;
        else
            t.unknown_weight_cabinets += k.full + k.half;
    }
    for (const auto& by_model : processors.models) {
        // Plain names: clang 14 cannot capture structured bindings in a lambda.
        const std::string& model = by_model.first;
        const int units = by_model.second;
        const auto spare =
            std::count_if(processors.units.begin(), processors.units.end(),
                          [&](const unit_plan& u) { return u.model == model && u.mirrors != 0; });
        bom.rows.push_back({"processor",
                            model,
                            units,
                            {},
                            {},
                            spare == 0   ? ""
                            : spare == 1 ? "1 of them a backup unit"
                                         : string_format("%d of them backup units", int(spare))});
    }
    bom.rows.push_back({"data cable", "main port", t.ports, {}, {}, "one a port"});
    if (t.backup_ports)
        bom.rows.push_back({"data cable", "backup port", t.backup_ports, {}, {}, "one a port"});
    bom.rows.push_back(
        {"data jumper", "cabinet to cabinet", t.data_jumpers, {}, {}, "within a chain"});
    bom.rows.push_back({"power feed", "circuit", t.circuits, {}, {}, "one a circuit"});
    bom.rows.push_back(
        {"power jumper", "cabinet to cabinet", t.power_jumpers, {}, {}, "within a circuit"});
    bom.rows.insert(bom.rows.end(), left_out.begin(), left_out.end());
    return bom;
}

std::string kg_text(const std::optional<double>& kg) {
    if (!kg) return {};
    std::string text = string_format("%.3f", std::round(*kg * 1000) / 1000);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

namespace {

std::string csv_field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string out = "\"";
    for (char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + "\"";
}

// 1920 as "1,920".
std::string grouped(std::int64_t n) {
    std::string digits = std::to_string(n < 0 ? -n : n), out;
    for (std::size_t k = 0; k < digits.size(); ++k) {
        if (k && (digits.size() - k) % 3 == 0) out += ',';
        out += digits[k];
    }
    return (n < 0 ? "-" : "") + out;
}

} // namespace

std::string bom_csv(const bill_of_materials& bom) {
    std::string out = "item,kind,count,unit_weight_kg,weight_kg,notes\r\n";
    for (const bom_row& r : bom.rows)
        out += csv_field(r.item) + "," + csv_field(r.kind) + "," + std::to_string(r.count) + "," +
               kg_text(r.unit_weight_kg) + "," + kg_text(r.weight_kg) + "," + csv_field(r.notes) +
               "\r\n";
    return out;
}

std::string bom_line(const bill_of_materials& bom) {
    const bom_totals& t = bom.totals;
    std::string weight;
    if (t.unknown_weight_cabinets == t.cabinets)
        weight = "weight not given";
    else
        weight =
            grouped(std::llround(t.weight_kg)) + " kg" +
            (t.unknown_weight_cabinets ? " + " + grouped(t.unknown_weight_cabinets) + " unweighed"
                                       : "");
    const auto counted = [](std::int64_t n, const char* thing) {
        return grouped(n) + " " + thing + (n == 1 ? "" : "s");
    };
    return counted(t.cabinets, "cabinet") + " \u00b7 " + weight + " \u00b7 " +
           counted(t.ports, "port") +
           (t.backup_ports ? " + " + grouped(t.backup_ports) + " backup" : "") + " \u00b7 " +
           counted(t.circuits, "circuit");
}

} // namespace Vantora_TesserinePro::plan
