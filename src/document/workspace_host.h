#pragma once
// The one seam through which the workspace reaches upward to a window.
// Every call has a default that makes sense with no window at all, so the
// document runs headless; the window overrides what it shows.

#include "core/file_path.h"

#include <functional>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class Global;
class app_layer;

class workspace_host {
  public:
    virtual ~workspace_host() = default;

    // MainScreen::setCurrentLayerTo: selects and refreshes. The default
    // still selects, through Global::set_current_layer_index.
    virtual void set_current_layer_to(Global& global, long long index, bool update_settings);
    // MainScreen::reload_all: refills the palettes from the current layer.
    virtual void reload_all(Global&, bool) {}
    // The "Draw Current Only" checkbox of the layer list.
    virtual bool is_only_current() const { return false; }
    // SettingsPower::update_amperes.
    virtual void update_amperes() {}
    // SettingsRasterLabel::get_settings_from_raster: copies the palette's
    // values into the raster label fields of global.
    virtual void raster_label_settings_from_raster(Global&) {}
    // SettingsRasterLabel::get_settings_from_layer: the palette follows the fields.
    virtual void raster_label_settings_to_palette(Global&) {}
    // Whether the layer list has been built (a drag-and-drop needs it).
    virtual bool layer_list_built() const { return true; }
    // The layer list redraws one row.
    virtual void layer_row_changed(const app_layer&) {}
    // Repaint requests: the canvas and a visible live output, the whole
    // main window, the main screen's layout.
    virtual void post_canvas_redraw() {}
    virtual void post_live_output_redraw() {}
    virtual void post_main_window_redraw() {}
    virtual void post_main_screen_layout() {}
    // A window's paint builds the frame between these two calls. What the
    // build asks of the window meanwhile (messages, refills, redraws) must
    // not run inside the paint: a window defers it to after the paint and
    // drops the redraw requests, so that a paint never starts another.
    virtual void frame_build_begins() {}
    virtual void frame_build_ends() {}
    // Global::show_error: a message for the user. Headless, it is printed
    // on standard error.
    virtual void show_error(const std::string& message);
    // A warning for the user under a title (a damaged file was read).
    // Headless, it is printed on standard error.
    virtual void show_warning(const std::string& title, const std::string& message);
    // pick_single_file: a file dialog, starting from suggested when one is
    // given. The callback gets the chosen path, empty when cancelled.
    // Headless there is nobody to ask: cancelled.
    using pick_callback = std::function<void(const file::path&)>;
    virtual void pick_single_file(const std::vector<file::file_dialog_filter>& filters,
                                  const pick_callback& callback, bool save,
                                  const file::path& suggested = {});

    // The user saved the document: a window drops what it kept of it
    // against a crash.
    virtual void document_saved(Global&) {}

    // The host used when none is given.
    static workspace_host& headless();
};

} // namespace Vantora_TesserinePro
