#include "cli/cli.h"

#include "persistence/processor_library.h"
#include "plan/processors.h"

#include <iostream>

namespace Vantora_TesserinePro::cli {

namespace {

std::string quoted_names(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "\"" : ", \"") + name + "\"";
    return text;
}

std::string plan_text(const plan::processor_plan& p) {
    std::string text;
    for (const plan::unit_plan& u : p.units)
        text += "unit " + std::to_string(u.unit) + " \"" + u.model + "\"" +
                (u.mirrors ? ", backup of unit " + std::to_string(u.mirrors) : "") + ": " +
                std::to_string(u.ports) + " ports, " + std::to_string(u.main_ports) + " main, " +
                std::to_string(u.backup_ports) + " backup, " + std::to_string(u.free_ports) +
                " free; layers " + quoted_names(u.layers) + "\n";
    if (p.units.empty()) text += "no processor unit is in use\n";
    for (const plan::conflict& c : p.conflicts)
        text += "conflict: layer " + std::to_string(c.layer) + " \"" + c.name + "\": " + c.message +
                "\n";
    for (const auto& [model, count] : p.models)
        text += std::to_string(count) + " x \"" + model + "\"\n";
    return text;
}

std::string plan_json(const plan::processor_plan& p) {
    std::string o = "{\"units\": [";
    for (const plan::unit_plan& u : p.units) {
        o += std::string(&u == &p.units.front() ? "\n  " : ",\n  ") +
             "{\"model\": " + json_string(u.model) + ", \"unit\": " + std::to_string(u.unit) +
             ", \"ports\": " + std::to_string(u.ports) +
             ", \"main_ports\": " + std::to_string(u.main_ports) +
             ", \"backup_ports\": " + std::to_string(u.backup_ports) +
             ", \"free_ports\": " + std::to_string(u.free_ports) + ", \"layers\": [";
        for (const std::string& name : u.layers)
            o += (&name == &u.layers.front() ? "" : ", ") + json_string(name);
        o += "]}";
    }
    o += "],\n \"conflicts\": [";
    for (const plan::conflict& c : p.conflicts)
        o += std::string(&c == &p.conflicts.front() ? "\n  " : ",\n  ") +
             "{\"layer\": " + json_string(c.name) + ", \"message\": " + json_string(c.message) +
             "}";
    o += "],\n \"models\": {";
    bool first = true;
    for (const auto& [model, count] : p.models) {
        o += (first ? "" : ", ") + json_string(model) + ": " + std::to_string(count);
        first = false;
    }
    return o + "}}\n";
}

} // namespace

int cmd_processors(const args& a) {
    parsed_args p = parse_args("processors", a, {"--json"}, false, false);
    if (p.done) return *p.done;
    if (p.positional.size() != 1) return usage_error("processors takes one FILE", "processors");
    const std::string& file = p.positional[0];
    Global global;
    if (int status = load_for_request(global, file)) return status;
    // The user's models are read as they are; a damaged library is said,
    // and the models that could be read serve.
    for (const std::string& problem : global.processor_models().problems())
        std::cerr << "tesserine: " << processor_library::default_file().string()
                  << ": damaged: " << problem << '\n';
    const plan::processor_plan plan = plan::plan_processors(global);
    std::cout << (p.flags.empty() ? plan_text(plan) : plan_json(plan)) << std::flush;
    return exit_ok;
}

} // namespace Vantora_TesserinePro::cli
