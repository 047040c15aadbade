// Placeholders until the exports land; delete as implemented.
#include "document/boxes_layer.h"
#include "document/global.h"
#include "export/psd_saver.h"

namespace Vantora_TesserinePro {
void PSDSaver::layinfo_desc_t::resize(std::size_t) {}
void PSDSaver::layinfo_desc_t::addRGBA(const unsigned char*, std::size_t) {}
void PSDSaver::add_layer(const pointer<app_layer>&) {}
void PSDSaver::add_layer(unsigned, unsigned, unsigned, unsigned, const unsigned char*, int, const string&) {}
bool PSDSaver::savePSD(const unsigned char*, int, int, int, const file::path&) { return false; }
void boxes_layer::add_layer_to_xml(pugi::xml_node&) const {}
void Global::save_image_button() {}
void Global::save_png_button() {}
void Global::save_psd_button() {}
void Global::layers_to_xml() {}
file::path Global::layers_to_xml_at(const file::path&) { return {}; }
string Global::layers_xml_text(long long) const { return {}; }
} // namespace Vantora_TesserinePro
