// The screen layer's key:value text: the writer gives every key on every
// save; the reader also takes the older lines of the built-in catalogue.

#include "core/color.h"
#include "core/diagnostics.h"
#include "core/number_reader.h"
#include "document/boxes_layer.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace Vantora_TesserinePro {

namespace {

// Pieces of text between separators. An empty piece at the very end is not
// reported, so "" gives nothing and "a|" gives only "a".
std::vector<std::string> tokens_of(const std::string& text, char separator) {
    std::vector<std::string> out;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find(separator, start);
        if (end == std::string::npos) end = text.size();
        out.emplace_back(text, start, end - start);
        start = end + 1;
    }
    return out;
}

std::string real_text(float value) {
    char buffer[512];
    std::snprintf(buffer, sizeof buffer, "%f", double(value));
    return buffer;
}

std::string color_list_text(const std::vector<color::color>& colors) {
    std::string out;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        if (i) out += '|';
        out += color_to_text(colors[i]);
    }
    return out;
}

void append_colors(std::vector<color::color>& colors, const std::string& value) {
    // One at a time: a bad token leaves the good ones before it appended.
    for (const std::string& token : tokens_of(value, '|'))
        colors.push_back(as_color(token));
}

void read_color(color::color& field, const std::string& value) {
    field = as_color(value); // as_color throws before the field is touched
}

void read_id_list(exclude_boxes_set& set, const std::string& value) {
    for (const std::string& token : tokens_of(value, '|')) {
        std::int32_t id = 0;
        from_string_int(token, id);
        set.add(std::uint32_t(id));
    }
}

void read_bits(std::bitset<4>& field, const std::string& value) {
    // std::bitset checks every character of the text, not only the four it
    // keeps; say so in words the user can act on.
    for (char c : value)
        if (c != '0' && c != '1')
            throw std::invalid_argument("bitset string ctor has invalid argument");
    field = std::bitset<4>(value);
}

void read_font_size(BoxesLayerDescription::FontSize& field, const std::string& value) {
    std::int32_t read = 0;
    consume_int(value, read);
    field.value = read;
}

// Readers by kind, one instance per field.
template <auto Field> void read_integer(BoxesLayerDescription& record, const std::string& value) {
    from_string_int(value, record.*Field); // partial digits stay on failure
}
template <auto Field> void read_real(BoxesLayerDescription& record, const std::string& value) {
    record.*Field = float(std::strtod(value.c_str(), nullptr));
}
template <auto Field> void read_colour(BoxesLayerDescription& record, const std::string& value) {
    read_color(record.*Field, value);
}
template <auto Field> void read_ids(BoxesLayerDescription& record, const std::string& value) {
    read_id_list(record.*Field, value);
}
template <auto Field>
void read_bit_string(BoxesLayerDescription& record, const std::string& value) {
    read_bits(record.*Field, value);
}
template <auto Field> void read_size(BoxesLayerDescription& record, const std::string& value) {
    read_font_size(record.*Field, value);
}

struct key_reader {
    const char* key;
    void (*read)(BoxesLayerDescription&, const std::string&);
};

using D = BoxesLayerDescription;

// In the order the reader tries them.
const key_reader long_list[] = {
    {"PowerVolts", &read_integer<&D::PowerVolts>},
    {"PowerPhases", &read_integer<&D::PowerPhases>},
    {"PowerWatts", &read_integer<&D::PowerWatts>},
    {"PhysW", &read_real<&D::PhysW>},
    {"PhysH", &read_real<&D::PhysH>},
    {"ShowMM", &read_integer<&D::ShowMM>},
    {"ShowFT", &read_integer<&D::ShowFT>},
    {"DrawBoxesNames", &read_integer<&D::DrawBoxesNames>},
    {"DrawPower", &read_integer<&D::DrawPower>},
    {"DrawSnake", &read_integer<&D::DrawSnake>},
    {"SkipBlankBoxes", &read_integer<&D::SkipBlankBoxes>},
    {"CustomDataPath", &read_integer<&D::CustomDataPath>},
    {"DataDiagramType", &read_integer<&D::DataDiagramType>},
    {"DrawGrid", &read_integer<&D::DrawGrid>},
    {"DrawCircle", &read_integer<&D::DrawCircle>},
    {"DrawInfoLine", &read_integer<&D::DrawInfoLine>},
    {"DrawBoxes", &read_integer<&D::DrawBoxes>},
    {"DrawScreenSize", &read_integer<&D::DrawScreenSize>},
    {"DrawLayerName", &read_integer<&D::DrawLayerName>},
    {"GridWidth", &read_integer<&D::GridWidth>},
    {"SnakeLimit", &read_integer<&D::SnakeLimit>},
    {"SnakeMode", &read_integer<&D::SnakeMode>},
    {"BoxesNamesColor", &read_colour<&D::BoxesNamesColor>},
    {"BoxesNamesReverse", &read_integer<&D::BoxesNamesReverse>},
    {"BoxBorderColor", &read_colour<&D::BoxBorderColor>},
    {"CircleColor", &read_colour<&D::CircleColor>},
    {"SnakeColor", &read_colour<&D::SnakeColor>},
    {"SnakeWidth", &read_integer<&D::SnakeWidth>},
    {"UseRandomSnakeColor", &read_integer<&D::UseRandomSnakeColor>},
    {"CircleWidth", &read_integer<&D::CircleWidth>},
    {"CornersMode", &read_integer<&D::CornersMode>},
    {"Width", &read_integer<&D::Width>},
    {"Height", &read_integer<&D::Height>},
    {"Columns", &read_integer<&D::Columns>},
    {"Rows", &read_integer<&D::Rows>},
    {"ExcludeBoxes", &read_ids<&D::ExcludeBoxes>},
    {"HalfColumns", &read_bit_string<&D::HalfColumns>},
    {"BoxesNamesFontSize", &read_size<&D::BoxesNamesFontSize>},
    {"LayerNameFontSize", &read_size<&D::LayerNameFontSize>},
    {"LabelFontColor", &read_colour<&D::LabelFontColor>},
    {"LabelFontSize", &read_size<&D::LabelFontSize>},
};

template <auto Field> std::string integer_text(const BoxesLayerDescription& record) {
    return std::to_string(record.*Field);
}
template <auto Field> void read_text(BoxesLayerDescription& record, const std::string& value) {
    record.*Field = value;
}
// A value is one line of the record: a line break would end it early.
template <auto Field> std::string text_text(const BoxesLayerDescription& record) {
    std::string text = record.*Field;
    std::erase_if(text, [](char c) { return c == '\n' || c == '\r'; });
    return text;
}
// A weight as typed: the shortest text that reads back as the same number.
template <auto Field> std::string decimal_text(const BoxesLayerDescription& record) {
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, record.*Field).ptr;
    return std::string(buffer, end);
}
// A weight is a finite number of 0 or more; anything else costs the key.
template <auto Field> void read_weight(BoxesLayerDescription& record, const std::string& value) {
    char* end = nullptr;
    const double read = std::strtod(value.c_str(), &end);
    if (end == value.c_str() || *end != '\0' || !std::isfinite(read) || read < 0)
        throw std::invalid_argument("not a weight of 0 or more");
    record.*Field = read;
}

// Keys beyond the design's: read like the others, written after them where
// they differ from the default.
struct extension_key {
    key_reader reader;
    std::string (*text)(const BoxesLayerDescription&);
};
const extension_key extension_keys[] = {
    {{"CircuitAmps", &read_integer<&D::CircuitAmps>}, &integer_text<&D::CircuitAmps>},
    {{"CircuitDerate", &read_integer<&D::CircuitDerate>}, &integer_text<&D::CircuitDerate>},
    {{"PowerPattern", &read_integer<&D::PowerPattern>}, &integer_text<&D::PowerPattern>},
    {{"DrawPowerPath", &read_integer<&D::DrawPowerPath>}, &integer_text<&D::DrawPowerPath>},
    {{"BitDepth", &read_integer<&D::BitDepth>}, &integer_text<&D::BitDepth>},
    {{"FrameRate", &read_integer<&D::FrameRate>}, &integer_text<&D::FrameRate>},
    {{"Processor", &read_text<&D::Processor>}, &text_text<&D::Processor>},
    {{"ProcessorUnit", &read_integer<&D::ProcessorUnit>}, &integer_text<&D::ProcessorUnit>},
    {{"FirstPort", &read_integer<&D::FirstPort>}, &integer_text<&D::FirstPort>},
    {{"Backup", &read_integer<&D::Backup>}, &integer_text<&D::Backup>},
    {{"CabinetWeight", &read_weight<&D::CabinetWeight>}, &decimal_text<&D::CabinetWeight>},
    {{"SparePercent", &read_integer<&D::SparePercent>}, &integer_text<&D::SparePercent>},
};

bool apply_reader(BoxesLayerDescription& record, const key_reader& reader, const string& key,
                  const string& value) {
    if (key != reader.key) return false;
    try {
        reader.read(record, value);
    } catch (const std::exception& failure) {
        // One bad value costs one key; the rest of the record still reads.
        report_parse_error(failure.what(), key, value);
    }
    return true;
}

} // namespace

void boxes_layer::apply_parameter_by_name(const string& key, const string& value) {
    // The old one-colour form and the colour lists are not guarded: their
    // failures go up to whoever applies the record.
    if (key == "BoxColors_1") {
        set_box_color_with_id(0, value);
        return;
    }
    if (key == "BoxColors") {
        append_colors(BoxColors, value);
        return;
    }
    if (key == "BoxTintColors") {
        append_colors(BoxTintColors, value);
        return;
    }
    for (const key_reader& reader : long_list)
        if (apply_reader(*this, reader, key, value)) return;
    for (const extension_key& extension : extension_keys)
        if (apply_reader(*this, extension.reader, key, value)) return;
}

property_set boxes_layer::get_all_parameters() const {
    property_set set;
    set.set("BoxColors", color_list_text(BoxColors));
    set.set("BoxTintColors", color_list_text(BoxTintColors));
    set.set("PowerVolts", PowerVolts);
    set.set("PowerPhases", PowerPhases);
    set.set("PowerWatts", PowerWatts);
    set.set("PhysW", real_text(PhysW));
    set.set("PhysH", real_text(PhysH));
    set.set("ShowMM", ShowMM);
    set.set("ShowFT", ShowFT);
    set.set("DrawBoxesNames", DrawBoxesNames);
    set.set("DrawPower", DrawPower);
    set.set("DrawSnake", DrawSnake);
    set.set("SkipBlankBoxes", SkipBlankBoxes);
    set.set("CustomDataPath", CustomDataPath);
    set.set("DataDiagramType", DataDiagramType);
    set.set("DrawGrid", DrawGrid);
    set.set("DrawCircle", DrawCircle);
    set.set("DrawInfoLine", DrawInfoLine);
    set.set("DrawBoxes", DrawBoxes);
    set.set("DrawScreenSize", DrawScreenSize);
    set.set("DrawLayerName", DrawLayerName);
    set.set("GridWidth", GridWidth);
    set.set("SnakeLimit", SnakeLimit);
    set.set("SnakeMode", SnakeMode);
    set.set("BoxesNamesColor", color_to_text(BoxesNamesColor));
    set.set("BoxesNamesReverse", BoxesNamesReverse);
    set.set("BoxBorderColor", color_to_text(BoxBorderColor));
    set.set("CircleColor", color_to_text(CircleColor));
    set.set("SnakeColor", color_to_text(SnakeColor));
    set.set("SnakeWidth", SnakeWidth);
    set.set("UseRandomSnakeColor", UseRandomSnakeColor);
    set.set("CircleWidth", CircleWidth);
    set.set("CornersMode", CornersMode);
    set.set("Width", Width);
    set.set("Height", Height);
    set.set("Columns", Columns);
    set.set("Rows", Rows);
    string ids;
    for (std::uint32_t id : ExcludeBoxes) { // newest first
        if (!ids.empty()) ids += '|';
        ids += std::to_string(std::int32_t(id));
    }
    set.set("ExcludeBoxes", ids);
    set.set("HalfColumns", HalfColumns.to_string()); // bit 3 first
    set.set("BoxesNamesFontSize", BoxesNamesFontSize.get());
    set.set("LayerNameFontSize", LayerNameFontSize.get());
    set.set("LabelFontColor", color_to_text(LabelFontColor));
    set.set("LabelFontSize", LabelFontSize.get());
    static const BoxesLayerDescription defaults{};
    for (const extension_key& extension : extension_keys) {
        const std::string text = extension.text(*this);
        if (text != extension.text(defaults)) set.set(extension.reader.key, text);
    }
    return set;
}

} // namespace Vantora_TesserinePro
