// The Resolume Arena screen setup: one virtual output screen of the raster's
// size and one slice for each screen layer. Every constant here is read by
// the media server, so names, order and values stay exactly as they are.

#include "document/boxes_layer.h"
#include "document/global.h"
#include "core/save_stream.h"

#include <pugixml.hpp>

#include <chrono>

namespace Vantora_TesserinePro {

namespace {

// Positions are summed in single-precision floats and written truncated
// toward zero.
long long truncated(float value) {
    return static_cast<long long>(value);
}

void append_vertex(pugi::xml_node parent, float x, float y) {
    pugi::xml_node v = parent.append_child("v");
    v.append_attribute("x") = truncated(x);
    v.append_attribute("y") = truncated(y);
}

void append_rect(pugi::xml_node slice, const char* element, float x, float y, float w, float h) {
    pugi::xml_node rect = slice.append_child(element);
    rect.append_attribute("orientation") = 0;
    append_vertex(rect, x, y);
    append_vertex(rect, x + w, y);
    append_vertex(rect, x + w, y + h);
    append_vertex(rect, x, y + h);
}

void build_document(pugi::xml_document& doc, const Global& global, long long unique_id) {
    const std::string width = std::to_string(global.get_paper_width());
    const std::string height = std::to_string(global.get_paper_height());

    pugi::xml_node state = doc.append_child("XmlState");
    state.append_attribute("name") = "Test";

    pugi::xml_node version = state.append_child("versionInfo");
    version.append_attribute("name") = "Resolume Arena";
    version.append_attribute("majorVersion") = 6;
    version.append_attribute("minorVersion") = 1;
    version.append_attribute("microVersion") = 0;
    version.append_attribute("revision") = "61231";

    pugi::xml_node setup = state.append_child("ScreenSetup");
    setup.append_attribute("name") = "ScreenSetup";
    setup.append_child("Params").append_attribute("name") = "ScreenSetupParams";

    pugi::xml_node screen = setup.append_child("screens").append_child("Screen");
    screen.append_attribute("name") = "Screen 1";
    screen.append_attribute("uniqueId") = std::to_string(unique_id).c_str();

    // Every layer is asked, hidden ones too; only screen layers answer.
    pugi::xml_node layers = screen.append_child("layers");
    if (const pointer<project> p = global.current_project_pointer())
        for (const auto& layer : p->get_layers())
            if (layer) layer->add_layer_to_xml(layers);

    pugi::xml_node device = screen.append_child("OutputDevice").append_child("OutputDeviceVirtual");
    device.append_attribute("name") = "Screen 1";
    device.append_attribute("deviceId") = "VirtualScreen 1";
    device.append_attribute("idHash") = "10094742552620344504";
    device.append_attribute("width") = width.c_str();
    device.append_attribute("height") = height.c_str();

    pugi::xml_node params = device.append_child("Params");
    params.append_attribute("name") = "Params";
    for (const auto& [name, value] : {std::pair{"Width", &width}, std::pair{"Height", &height}}) {
        pugi::xml_node range = params.append_child("ParamRange");
        range.append_attribute("name") = name;
        range.append_attribute("default") = value->c_str();
        range.append_attribute("value") = value->c_str();
    }
    pugi::xml_node range = params.append_child("ValueRange");
    range.append_attribute("name") = "defaultRange";
    range.append_attribute("min") = "1";
    range.append_attribute("max") = "16384";
}

// The settings under which the document is saved: a tab as indent,
// format_indent, encoding_auto.
constexpr const char* xml_indent = "\t";
constexpr unsigned xml_flags = pugi::format_indent;
constexpr pugi::xml_encoding xml_encoding = pugi::encoding_auto;

struct string_writer : pugi::xml_writer {
    string text;
    void write(const void* data, size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
};

struct stream_writer : pugi::xml_writer {
    explicit stream_writer(save_stream& s) : out(s) {}
    void write(const void* data, size_t size) override { out.write(data, size); }
    save_stream& out;
};

} // namespace

void boxes_layer::add_layer_to_xml(pugi::xml_node& layers) const {
    const float x = float(get_offset_x());
    const float y = float(get_offset_y());
    const float w = float(get_full_width());
    const float h = float(get_full_height());

    pugi::xml_node slice = layers.append_child("Slice");
    pugi::xml_node param = slice.append_child("Params");
    param.append_attribute("name") = "Common";
    param = param.append_child("Param");
    param.append_attribute("name") = "Name";
    param.append_attribute("default") = "Layer";
    param.append_attribute("value") = get_name().c_str();

    // Input and output are the same: the slice takes just the pixels it
    // shows, unwarped and unscaled.
    append_rect(slice, "InputRect", x, y, w, h);
    append_rect(slice, "OutputRect", x, y, w, h);

    pugi::xml_node warper = slice.append_child("Warper");
    pugi::xml_node warper_params = warper.append_child("Params");
    pugi::xml_node choice = warper_params.append_child("ParamChoice");
    choice.append_attribute("name") = "Point Mode";
    choice.append_attribute("default") = "PM_LINEAR";
    choice.append_attribute("value") = "PM_LINEAR";
    choice.append_attribute("storeChoices") = 0;
    pugi::xml_node flip = warper_params.append_child("Param");
    flip.append_attribute("name") = "Flip";
    flip.append_attribute("default") = 0;
    flip.append_attribute("value") = 0;

    pugi::xml_node bezier = warper.append_child("BezierWarper");
    bezier.append_attribute("controlWidth") = 4;
    bezier.append_attribute("controlHeight") = 4;
    pugi::xml_node vertices = bezier.append_child("vertices");
    // An even 4 by 4 grid over the slice, row by row.
    const float columns[4] = {0.0f, w / 3.0f, (w + w) / 3.0f, w};
    const float rows[4] = {0.0f, h / 3.0f, (h + h) / 3.0f, h};
    for (float row : rows)
        for (float column : columns)
            append_vertex(vertices, column + x, row + y);
}

string Global::layers_xml_text(long long unique_id) const {
    pugi::xml_document doc;
    build_document(doc, *this, unique_id);
    string_writer writer;
    doc.save(writer, xml_indent, xml_flags, xml_encoding);
    return writer.text;
}

file::path Global::layers_to_xml_at(const file::path& chosen) {
    if (chosen.empty()) return {};
    const file::path target = chosen.with_all_extensions(".xml");
    const long long unique_id = std::chrono::duration_cast<std::chrono::milliseconds>(
                                    std::chrono::system_clock::now().time_since_epoch())
                                    .count();
    pugi::xml_document doc;
    build_document(doc, *this, unique_id);
    save_stream out(target.string());
    stream_writer writer(out);
    if (out.good()) doc.save(writer, xml_indent, xml_flags, xml_encoding);
    if (!out.commit()) {
        m_last_write_error = out.error();
        return {};
    }
    return target;
}

void Global::layers_to_xml() {
    ask_for_path({{"xml", "Resolute Arena XML Document"}}, true,
                 [this](const file::path& chosen) { layers_to_xml_at(chosen); });
}

} // namespace Vantora_TesserinePro
