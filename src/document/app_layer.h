#pragma once
// What every layer of the stack has in common: position, name, visibility,
// the changed mark, the offscreen image it draws into, and the key:value
// record by which it is saved, loaded and copied.

#include "core/property_set.h"
#include "core/types.h"
#include "render/image_wrap.h"

#include <functional>

namespace pugi {
class xml_node;
}

namespace Vantora_TesserinePro {

class Global;
class project;
namespace nano2d {
class context;
}

class app_layer {
  public:
    // --- lifecycle and copying
    app_layer() = default;
    virtual ~app_layer();
    app_layer(const app_layer&) = delete;
    app_layer& operator=(const app_layer&) = delete;

    virtual pointer<app_layer> clone() const = 0;
    virtual void default_colors() {}
    virtual void apply_defaults() {}

    // --- content
    virtual string get_custom_path_string() const { return {}; }
    virtual void set_custom_path_string(const string&) {}
    virtual int get_width() const { return 0; }
    virtual int get_height() const { return 0; }
    virtual int get_full_width() const = 0;
    virtual int get_full_height() const = 0;
    virtual enum_layer get_layer_type() const = 0;

    // --- parameter text
    // One key that the base does not know; no set_changed.
    virtual void apply_parameter_by_name(const string& key, const string& value) = 0;
    virtual property_set get_all_parameters() const = 0;
    property_set get_base_layer_info() const;
    string get_layer_info() const;
    void apply_layer_info(const string& text);

    // --- drawing and export
    using error_callback = std::function<void(const string&)>;
    virtual void build_frame(nano2d::context* context, error_callback on_error) = 0;
    virtual void add_layer_to_xml(pugi::xml_node& layers) const;

    pointer<image> request_offscreen(unsigned long width, unsigned long height);
    pointer<image> get_offscreen() const { return offscreen; }
    void resetOffscreen() { offscreen.reset(); }
    // Lets the frame go, and the drawing library's handle on its pixels.
    void release_frame() {
        image_wrap.releaseImage();
        offscreen.reset();
    }
    ImageWrap* get_nano2d_image(nano2d::context* context);

    // --- change marks
    void set_changed();
    // Returns the mark and clears it: reading consumes it.
    bool has_changed() {
        bool was = changed;
        changed = false;
        return was;
    }
    void clear_changed() { changed = false; }

    // --- plain fields
    bool is_hidden() const { return hidden; }
    void set_hidden(bool value);
    int get_offset_x() const { return offset_x; }
    int get_offset_y() const { return offset_y; }
    void set_offset_x(int value);
    void set_offset_y(int value);
    // "Logo" for the logo layer, whatever name holds.
    string get_name() const { return is_logo ? string("Logo") : name; }
    const string& get_stored_name() const { return name; }
    void set_name(const string& value);

    // --- back references (not owning)
    Global* get_global() const { return global; }
    pointer<project> get_project() const { return m_project.lock(); }
    void set_references(Global* g, const pointer<project>& p) {
        global = g;
        m_project = p;
    }
    void set_project(const pointer<project>& p) { m_project = p; }

    bool hidden = false;
    bool changed = false;
    bool is_logo = false;
    ImageWrap image_wrap;
    pointer<image> offscreen;
    int offset_x = 0;
    int offset_y = 0;

  protected:
    Global* global = nullptr;
    std::weak_ptr<project> m_project;
    string name = "Screen1";
};

} // namespace Vantora_TesserinePro
