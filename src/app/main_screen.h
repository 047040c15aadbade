#pragma once
// The root widget of the main window: it makes the workspace and every
// panel, places them, keeps the palettes' places between runs, routes the
// keyboard, and is the one place from which all panels re-read the
// document. It is the window's side of the workspace's host seam.

#include "core/types.h"
#include "document/workspace_host.h"

#include <QPoint>
#include <QWidget>

#include <array>
#include <atomic>
#include <functional>
#include <vector>

class QKeyEvent;
class QMessageBox;

namespace Vantora_TesserinePro {

class Global;
class MainImpact;
class SettingsBaseWindow;
class SettingsBoxes;
class SettingsBoxesColors;
class SettingsDataDiagram;
class SettingsPower;
class SettingsLabels;
class SettingsRasterLabel;
class About;
class RightPanel;
class TopMenu;
class TopPanel;
class AddLayerContextMenu;
class UndoController;
class RecoveryController;

class MainScreen : public QWidget, public workspace_host {
  public:
    explicit MainScreen(QWidget* parent);
    ~MainScreen() override;
    // The main screen a widget belongs to, or null.
    static MainScreen* of(QWidget* widget);
    // The maker's page, where the menu's three links lead.
    static constexpr const char* web_address = "https://tesserine.app";

    void create_main_screen();
    Global& global() const { return *workspace; }
    pointer<Global> get_workspace() const { return workspace; }

    // --- the palette layout file
    file::path settings_layout_get_default_path() const;
    bool settings_load_layout();
    bool settings_load_layout(const char* path);
    void settings_save_layout();
    void settings_save_layout(const char* path);
    void settings_reset_layout();
    // Moves a palette, if need be, so that its title bar can be taken.
    void keep_within_reach(QWidget* palette);

    // --- refreshing the panels
    void reload_all(bool reload);
    void update_settings_visibility();
    void setCurrentLayerTo(long long index, bool full);
    // Places the strips, the right panel and the canvas for a window size;
    // a widget already in place is left alone.
    void resize_elements_to_window_size(int width, int height);
    // Syncs the two lists when they were marked; once per frame at most.
    void perform_layout();
    bool isOnlyCurrent() const;

    // --- keys and focus
    // One key event of the window; true when it was used up here.
    bool keyboard_event(QKeyEvent* event);
    // The key string the last key press gave the menu ("CONTROL+D").
    const std::string& last_key_string() const { return m_last_key_string; }
    // The chain that Tab walks: the text fields and check boxes of the
    // panels, in the order the panels were built. It lives here and not in
    // the workspace, which knows no widgets.
    void add_to_tab_order(QWidget* widget) { m_tab_order.push_back(widget); }
    const std::vector<QWidget*>& tab_order() const { return m_tab_order; }
    // Tab and Shift+Tab (group A held): the next or previous field of the
    // shown palettes, wrapping; true when a field had the focus.
    bool on_skip_focus(std::uint64_t modifiers);
    // Gives the focus; a text field gets its whole text selected.
    void set_focus_to(QWidget* widget);
    // While something clickable is pressed the palettes step aside.
    void set_palettes_shown(bool shown);

    // --- commands
    // A press anywhere folds an open menu, unless it is in a drop-down.
    void on_mouse_down(QWidget* widget);
    void foldTopMenu();
    void on_close();
    void showScreenInfo();
    void showLabelsInfo();
    void showDataTools();
    void showPowerTools();
    void showBoxesColors();
    void showRasterLabelTool();
    void showAbout();
    void openUpdateLink();
    void openTutorialsLink();
    void openHelpLink();
    void showAddLayerContextMenu();
    // What "Yes" to the quit question does; ends the program by default.
    void set_quit_handler(std::function<void()> handler) { m_quit = std::move(handler); }

    // --- the panels
    MainImpact* main_impact() const { return m_main_impact; }
    const std::vector<SettingsBaseWindow*>& palettes() const { return m_palettes; }
    SettingsBoxes* settings_boxes() const { return m_settings_boxes; }
    SettingsBoxesColors* settings_boxes_colors() const { return m_settings_boxes_colors; }
    SettingsDataDiagram* settings_data_diagram() const { return m_settings_data_diagram; }
    SettingsPower* settings_power() const { return m_settings_power; }
    SettingsLabels* settings_labels() const { return m_settings_labels; }
    SettingsRasterLabel* settings_raster_label() const { return m_settings_raster_label; }
    About* about() const { return m_about; }
    RightPanel* right_panel() const { return m_right_panel; }
    TopMenu* top_menu() const { return m_top_menu; }
    TopPanel* top_panel() const { return m_top_panel; }
    AddLayerContextMenu* add_layer_context_menu() const { return m_add_layer_context_menu; }
    UndoController* undo_controller() const { return m_undo; }
    RecoveryController* recovery() const { return m_recovery; }
    QPoint last_click() const { return m_last_click; }

    // --- the workspace's host
    void set_current_layer_to(Global& global, long long index, bool update_settings) override;
    void reload_all(Global& global, bool reload) override;
    bool is_only_current() const override { return isOnlyCurrent(); }
    void update_amperes() override;
    void raster_label_settings_from_raster(Global& global) override;
    void raster_label_settings_to_palette(Global& global) override;
    bool layer_list_built() const override { return m_right_panel != nullptr; }
    void layer_row_changed(const app_layer& layer) override;
    void post_canvas_redraw() override;
    void post_live_output_redraw() override;
    void post_main_window_redraw() override;
    void post_main_screen_layout() override;
    void frame_build_begins() override;
    void frame_build_ends() override;
    void show_error(const std::string& message) override;
    void show_warning(const std::string& title, const std::string& message) override;
    void document_saved(Global& global) override;
    void pick_single_file(const std::vector<file::file_dialog_filter>& filters,
                          const pick_callback& callback, bool save,
                          const file::path& suggested = {}) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // The palettes of the layout file, in its order.
    std::array<SettingsBaseWindow*, 6> layout_palettes() const;
    // Runs f now, or after the paint when a frame build is under way.
    void outside_paint(std::function<void()> f);
    // Asks for perform_layout at the next turn of the event loop.
    void post_layout();
    // Repaints the panels (not the canvas, which repaints on changes).
    void redraw_panels();

    pointer<Global> workspace;
    MainImpact* m_main_impact = nullptr;
    SettingsBoxes* m_settings_boxes = nullptr;
    SettingsBoxesColors* m_settings_boxes_colors = nullptr;
    SettingsDataDiagram* m_settings_data_diagram = nullptr;
    SettingsPower* m_settings_power = nullptr;
    RightPanel* m_right_panel = nullptr;
    About* m_about = nullptr;
    SettingsLabels* m_settings_labels = nullptr;
    SettingsRasterLabel* m_settings_raster_label = nullptr;
    TopMenu* m_top_menu = nullptr;
    TopPanel* m_top_panel = nullptr;
    AddLayerContextMenu* m_add_layer_context_menu = nullptr;
    UndoController* m_undo = nullptr;
    RecoveryController* m_recovery = nullptr;
    // About, SettingsBoxes, SettingsLabels, SettingsPower,
    // SettingsDataDiagram, SettingsRasterLabel, SettingsBoxesColors.
    std::vector<SettingsBaseWindow*> m_palettes;

    QPoint m_last_click;
    std::atomic<bool> lists_need_sync{true};
    // The preset list fills after the window's first paint.
    bool m_presets_shown = false;
    bool in_layout = false;
    bool in_reload = false;
    bool m_layout_posted = false;
    int m_building = 0;
    std::vector<std::function<void()>> m_after_paint;
    bool m_after_paint_posted = false;
    std::string m_last_key_string;
    std::vector<QWidget*> m_tab_order;
    // The palettes that the last set_palettes_shown(false) hid.
    std::vector<SettingsBaseWindow*> m_stepped_aside;
    QMessageBox* m_quit_box = nullptr;
    std::function<void()> m_quit;
};

} // namespace Vantora_TesserinePro
