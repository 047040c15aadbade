#include "plan/processors.h"

#include "core/string_format.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "persistence/processor_library.h"

#include <algorithm>

namespace Vantora_TesserinePro::plan {

const chain_plan* layer_plan::fullest() const {
    const auto it =
        std::max_element(chains.begin(), chains.end(),
                         [](const auto& a, const auto& b) { return a.load.load < b.load.load; });
    return it == chains.end() ? nullptr : &*it;
}

int processor_plan::main_ports() const {
    int n = 0;
    for (const unit_plan& u : units)
        n += u.main_ports;
    return n;
}

int processor_plan::backup_ports() const {
    int n = 0;
    for (const unit_plan& u : units)
        n += u.backup_ports;
    return n;
}

const layer_plan* processor_plan::layer(long long index) const {
    for (const layer_plan& l : layers)
        if (l.index == index) return &l;
    return nullptr;
}

bool processor_plan::any_processor() const {
    return std::any_of(layers.begin(), layers.end(),
                       [](const auto& l) { return !l.model.empty(); });
}

std::int64_t effective_limit(const BoxesLayerDescription& layer, const processor_model* model) {
    const bool deep = layer.BitDepth > 8; // 12-bit travels as 10-bit
    const std::int64_t rate = layer.FrameRate > 0 ? layer.FrameRate : 60;
    if (model) return (deep ? model->pixels_10bit : model->pixels_8bit) * 60 / rate;
    if (layer.SnakeLimit < 0) return layer.SnakeLimit; // no limit at any rate
    return std::int64_t(layer.SnakeLimit) * 60 / (deep ? 2 * rate : rate);
}

std::string port_label(const port_ref& p) {
    return std::to_string(p.unit) + ":" + std::to_string(p.port);
}

std::string backup_label(const port_ref& p) {
    return "B" + port_label(p);
}

namespace {

// Why the layer's processor keys cannot be planned; empty when they can.
std::string refusal(const boxes_layer& layer, const processor_model* model) {
    if (layer.BitDepth != 8 && layer.BitDepth != 10 && layer.BitDepth != 12)
        return string_format("the colour depth is %d bits; it must be 8, 10 or 12.",
                             layer.BitDepth);
    if (layer.FrameRate < 1)
        return string_format("the frame rate is %d Hz; it must be above 0.", layer.FrameRate);
    if (layer.Processor.empty()) return {};
    if (!model) return "the processor \"" + layer.Processor + "\" is not in the library.";
    if (layer.ProcessorUnit < 1)
        return string_format("the unit is %d; units count from 1.", layer.ProcessorUnit);
    if (layer.FirstPort < 1)
        return string_format("the first port is %d; ports count from 1.", layer.FirstPort);
    if (layer.Backup < 0 || layer.Backup > 2)
        return string_format("the backup is %d; it must be 0 (none), 1 (loop back) or 2 "
                             "(backup unit).",
                             layer.Backup);
    return {};
}

// A unit as the layers below have taken it.
struct unit_state {
    std::string model;
    int ports = 0;
    std::map<int, std::string> taken; // port -> the layer that has it
    int main_ports = 0, backup_ports = 0, mirrored = 0;
    std::vector<std::string> layers;
};

std::string overload(const layer_plan& out, std::int64_t limit) {
    for (const chain_plan& c : out.chains) {
        if (!c.load.over) continue;
        const std::string port = c.main ? port_label(*c.main) : std::to_string(c.load.port);
        return string_format("port %s carries %lld px, over the effective limit of %lld px.",
                             port.c_str(), (long long)c.load.load, (long long)limit);
    }
    return {};
}

// The first reason the layer's ports cannot go on its unit; empty when they can.
std::string port_conflict(const layer_plan& out, const boxes_layer& layer,
                          const processor_model& model, const std::map<int, unit_state>& units) {
    const int n = int(out.chains.size());
    const int last = layer.FirstPort + n * (layer.Backup == 1 ? 2 : 1) - 1;
    if (last > model.ports)
        return string_format("ports %d\u2013%d of unit %d are wanted; a \"%s\" has %d.",
                             layer.FirstPort, last, layer.ProcessorUnit, model.name.c_str(),
                             model.ports);
    const auto it = units.find(layer.ProcessorUnit);
    if (it == units.end()) return {};
    const unit_state& unit = it->second;
    if (unit.model != model.name)
        return string_format("unit %d is a \"%s\" (of \"%s\"), not a \"%s\".", layer.ProcessorUnit,
                             unit.model.c_str(), unit.layers.front().c_str(), model.name.c_str());
    for (int port = layer.FirstPort; port <= last; ++port)
        if (const auto t = unit.taken.find(port); t != unit.taken.end())
            return string_format("unit %d port %d is taken by \"%s\".", layer.ProcessorUnit, port,
                                 t->second.c_str());
    return {};
}

} // namespace

processor_plan plan_processors(const pointer_array<app_layer>& layers,
                               const processor_library& library, bool keep_routes) {
    processor_plan plan;
    std::map<int, unit_state> units;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const auto* layer = dynamic_cast<const boxes_layer*>(layers[i].get());
        if (!layer) continue;
        layer_plan out;
        out.index = (long long)i;
        out.name = layer->get_name();
        out.limit = layer->SnakeLimit;
        out.processor_keys = layer->uses_processor_keys();
        out.backup_mode = layer->Backup;
        const processor_model* model =
            layer->Processor.empty() ? nullptr : library.find(layer->Processor);
        out.effective_limit = effective_limit(*layer, model);
        Snake::layer_loads loads =
            Snake::port_loads(*layer, out.effective_limit, keep_routes ? &out.route : nullptr);
        out.type = loads.type;
        out.failed = loads.failed;
        out.routed = !loads.failed;
        out.message = loads.message;
        for (Snake::port_load& p : loads.ports)
            out.chains.push_back({std::move(p), std::nullopt, std::nullopt});

        const std::string refused = out.processor_keys ? refusal(*layer, model) : std::string();
        if (model && refused.empty()) {
            out.model = model->name;
            for (std::size_t k = 0; k < out.chains.size(); ++k) {
                const int port = layer->FirstPort + int(k);
                out.chains[k].main = port_ref{layer->ProcessorUnit, port};
                // Loop-back ports follow the layer's main ports; a backup
                // unit's number is known once every main unit is.
                if (layer->Backup == 1)
                    out.chains[k].backup =
                        port_ref{layer->ProcessorUnit, port + int(out.chains.size())};
            }
        }
        if (!out.failed && out.processor_keys) {
            std::string why = refused;
            if (why.empty()) why = overload(out, out.effective_limit);
            if (why.empty() && model) why = port_conflict(out, *layer, *model, units);
            if (!why.empty()) {
                out.failed = true;
                out.message = std::move(why);
            }
        }
        if (out.failed && out.processor_keys)
            plan.conflicts.push_back({out.index, out.name, out.message});
        if (!out.failed && model && !out.chains.empty()) {
            unit_state& unit = units[layer->ProcessorUnit];
            unit.model = model->name;
            unit.ports = model->ports;
            unit.layers.push_back(out.name);
            for (const chain_plan& c : out.chains) {
                unit.taken[c.main->port] = out.name;
                ++unit.main_ports;
                if (c.backup) {
                    unit.taken[c.backup->port] = out.name;
                    ++unit.backup_ports;
                }
            }
            if (layer->Backup == 2) unit.mirrored += int(out.chains.size());
        }
        plan.layers.push_back(std::move(out));
    }

    // Backup units mirror their main unit port for port, numbered after
    // every main unit in the order of the units they mirror.
    const int last_main = units.empty() ? 0 : units.rbegin()->first;
    std::map<int, int> backup_unit_of;
    for (const auto& [number, unit] : units) {
        plan.units.push_back({unit.model, number, unit.ports, unit.main_ports, unit.backup_ports,
                              unit.ports - unit.main_ports - unit.backup_ports, 0, unit.layers});
        ++plan.models[unit.model];
    }
    for (const auto& [number, unit] : units) {
        if (unit.mirrored == 0) continue;
        const int backup = last_main + int(backup_unit_of.size()) + 1;
        backup_unit_of[number] = backup;
        std::vector<std::string> names;
        for (const layer_plan& l : plan.layers)
            if (!l.failed && l.backup_mode == 2 && !l.chains.empty() && l.chains[0].main &&
                l.chains[0].main->unit == number)
                names.push_back(l.name);
        plan.units.push_back({unit.model, backup, unit.ports, 0, unit.mirrored,
                              unit.ports - unit.mirrored, number, names});
        ++plan.models[unit.model];
    }
    for (layer_plan& l : plan.layers) {
        if (l.backup_mode != 2) continue;
        for (chain_plan& c : l.chains)
            if (c.main)
                if (const auto b = backup_unit_of.find(c.main->unit); b != backup_unit_of.end())
                    c.backup = port_ref{b->second, c.main->port};
    }
    return plan;
}

processor_plan plan_processors(const Global& global, bool keep_routes) {
    const pointer<project> p = global.current_project_pointer();
    return plan_processors(p ? p->layers : pointer_array<app_layer>(), global.processor_models(),
                           keep_routes);
}

namespace {

// "4" or "4–6".
std::string span(int first, int count) {
    return count == 1 ? std::to_string(first)
                      : string_format("%d\u2013%d", first, first + count - 1);
}

} // namespace

std::string processor_line(const processor_plan& plan, long long index) {
    const layer_plan* l = plan.layer(index);
    if (!l) return {};
    if (l->failed) return l->message;
    if (l->model.empty()) return {};
    if (l->chains.empty() || !l->chains[0].main)
        return "\"" + l->model + "\" \u00b7 no cabinet is on the data path";
    const port_ref first = *l->chains[0].main;
    const int n = int(l->chains.size());
    int ports = 0;
    for (const unit_plan& u : plan.units)
        if (u.unit == first.unit) ports = u.ports;
    std::string line = string_format("Unit %d \u00b7 %s %s of %d", first.unit,
                                     n == 1 ? "port" : "ports", span(first.port, n).c_str(), ports);
    if (const auto& b = l->chains[0].backup) {
        line += " \u00b7 backup ";
        if (b->unit != first.unit)
            line += string_format("unit %d %s ", b->unit, n == 1 ? "port" : "ports");
        line += span(b->port, n);
    }
    const chain_plan* f = l->fullest();
    if (f && f->load.percent) line += string_format(" \u00b7 fullest %.0f %%", *f->load.percent);
    return line;
}

} // namespace Vantora_TesserinePro::plan
