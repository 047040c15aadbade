// The hand-made data path: editing it on the canvas and its text form.

#include "document/boxes_layer.h"

#include <algorithm>
#include <cstdlib>

namespace Vantora_TesserinePro {

void boxes_layer::trigger_for_override_path(float x, float y, bool remove) {
    std::uint32_t id = 0;
    // The cabinet under the point, strictly inside as for exclusions.
    if (!box_at(x, y, id)) return;

    if (CustomPath.empty()) {
        if (remove) return;
        CustomPath.emplace_back();
    } else {
        for (auto run = CustomPath.begin(); run != CustomPath.end(); ++run) {
            auto entry = std::find(run->begin(), run->end(), id);
            if (entry == run->end()) continue;
            // A cabinet stands only once on the whole path.
            if (!remove) return;
            run->erase(entry);
            if (run->empty()) CustomPath.erase(run);
            set_changed();
            return;
        }
        if (remove) return;
    }
    CustomPath.back().push_back(id);
    set_changed();
}

void boxes_layer::on_space_key() {
    // A run of one id cannot be closed: it would have no end of its own.
    if (CustomDataPath && !CustomPath.empty() && CustomPath.back().size() >= 2)
        CustomPath.emplace_back();
}

string boxes_layer::get_custom_path_string() const {
    string text;
    for (const auto& run : CustomPath) {
        if (!text.empty()) text += '|';
        for (std::size_t k = 0; k < run.size(); ++k) {
            if (k != 0) text += ',';
            text += std::to_string(std::int32_t(run[k]));
        }
    }
    return text;
}

namespace {

// One id as atoi reads it: leading blanks, a sign, digits, anything after
// ignored. False for a token with no digits, which gives no id at all.
bool read_id(const string& token, std::uint32_t& id) {
    const char* start = token.c_str();
    char* stop = nullptr;
    const long long value = std::strtoll(start, &stop, 10);
    if (stop == start) return false;
    // Out of range saturates; the id keeps the low 32 bits as atoi's does.
    id = std::uint32_t(static_cast<unsigned long long>(value));
    return true;
}

} // namespace

void boxes_layer::set_custom_path_string(const string& text) {
    CustomPath.clear();
    if (text.empty()) return;
    // Every piece between "|" is a run, an empty one too, so the open run
    // that the space key leaves at the end survives a save and a load.
    std::size_t piece_start = 0;
    while (true) {
        const std::size_t bar = text.find('|', piece_start);
        const std::size_t piece_end = bar == string::npos ? text.size() : bar;
        std::vector<std::uint32_t> run;
        std::size_t token_start = piece_start;
        while (token_start <= piece_end) {
            std::size_t comma = text.find(',', token_start);
            if (comma == string::npos || comma > piece_end) comma = piece_end;
            std::uint32_t id = 0;
            if (read_id(text.substr(token_start, comma - token_start), id)) run.push_back(id);
            token_start = comma + 1;
        }
        CustomPath.push_back(std::move(run));
        if (bar == string::npos) break;
        piece_start = bar + 1;
    }
}

} // namespace Vantora_TesserinePro
