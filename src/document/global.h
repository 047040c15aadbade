#pragma once
// The workspace controller: owns the current project and its layer stack,
// the presets, the raster size and label, the composite frame and the flag
// that says the frame must be rebuilt.

#include "core/file_path.h"
#include "core/types.h"
#include "document/project.h"
#include "document/workspace_host.h"
#include "persistence/read_report.h"
#include "render/image_wrap.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace Vantora_TesserinePro {

class app_layer;
class boxes_layer;
class image_layer;
class PSDSaver;
class processor_library;
enum class frame_file_kind;
namespace nano2d {
class context;
}

class Global {
  public:
    // --- lifecycle
    // host may be null: the headless defaults then serve.
    explicit Global(workspace_host* host = nullptr);
    virtual ~Global();
    Global(const Global&) = delete;
    Global& operator=(const Global&) = delete;
    virtual void initialize_main();
    virtual void finalize_main();
    workspace_host& host() const { return *m_host; }
    void set_host(workspace_host* host);

    // --- document access
    project* current_project() { return m_project.get(); }
    pointer<project> current_project_pointer() const { return m_project; }
    pointer_array<app_layer>& get_presets() { return presets; }
    long long get_presets_count() const { return (long long)presets.size(); }
    pointer<app_layer> get_layer(long long index) const;
    long long get_layers_count() const;
    long long get_current_layer_id() const { return current_layer_index; }
    pointer<app_layer> current_layer() const { return get_layer(current_layer_index); }
    pointer<boxes_layer> current_boxes_layer() const;
    pointer<image_layer> current_image_layer() const;
    void set_current_layer_index(long long index);
    // The raster side a stored one stands for: below 2 it is 1.
    static int paper_side(int stored) { return stored < 2 ? 1 : stored; }
    int get_paper_width() const { return paper_side(paper_width); }
    int get_paper_height() const { return paper_side(paper_height); }
    void set_paper_width(int value);
    void set_paper_height(int value);
    void set_is_retina(bool value);
    bool is_retina() const { return m_is_retina; }
    file::path getFolderToSaveData() const;
    string getAppNameForStorage() const;
    nano2d::context* getContext() const { return nullptr; }
    // The text of the top menu, the one place a different text could be given.
    string get_menu_string() const;

    // --- creating, moving and removing layers
    pointer<app_layer> create_layer(enum_layer type);
    pointer<app_layer> create_layer_from_parameters(enum_layer type, const string& parameters);
    pointer<boxes_layer> new_boxes_layer();
    pointer<image_layer> new_image_layer();
    void insert_layer_at(const pointer<app_layer>& layer, long long index);
    pointer<app_layer> clone_current_layer();
    void move_layer_to_visual_top_by_1(long long index);
    void move_layer_to_visual_bottom_by_1(long long index);
    bool move_layer_to_visual(long long to, long long from);
    void delete_current_layer();
    void reload_all();
    void show_error(const string& message) const;

    // --- change flag
    void set_changed();
    // Reads the flag without consuming it (for tests and the canvas).
    bool is_changed() const { return changed.load() != 0; }

    // --- logo layer
    pointer<image_layer> get_logo_layer();
    void setLogoLayer();
    // The steps of setLogoLayer on a chosen path.
    void set_logo_from_path(const file::path& path);
    bool save_logo_layer();
    pointer<image>* get_logo_source() { return &logo_source; }

    // --- raster label
    string get_raster_label_info() const;
    void load_raster_label_info(const string& text);
    void get_raster_label_lines(string_array& lines) const;
    // Takes what a drawing settings record says; other lines are passed over.
    void apply_drawing_settings(const string& body);

    // --- project and preset files
    bool save_project_or_presets_to_file(const file::path& path,
                                         const pointer_array<app_layer>& layers,
                                         const string& magic, const string& extra,
                                         bool with_raster_label);
    string project_or_presets_text(const pointer_array<app_layer>& layers, const string& magic,
                                   const string& extra, bool with_raster_label) const;
    bool save_project_to_file(const file::path& path);
    // Why the last failed file write of this workspace failed.
    const string& last_write_error() const { return m_last_write_error; }
    bool save_presets_to_file(const file::path& path);
    // The text of a file as the readers take it (empty when it cannot be
    // read): up to its first NUL, with CR LF ends and a byte-order mark undone.
    string read_full_file_as_text(const file::path& path) const;
    // The lenient reader. When report is given it also says what damage the
    // text holds (its kind tells a logo file from a project).
    pointer_array<app_layer> create_layers_from_string(const string& text,
                                                       const string& magic_and_version,
                                                       read_report* report = nullptr);
    void load_project_from_string(const string& text, read_report* report = nullptr);
    // Opens a project file. One that cannot be taken as a project (missing,
    // a folder, not a regular file, too large, not a project, a record the
    // layer reader refuses) is refused: the document stays exactly as it
    // was. Otherwise the document becomes what the reader takes from the
    // file, and the report lists the damage met on the way.
    read_report load_project_from_file(const file::path& path);
    void load_presets_from_string(const string& text);
    // The presets a preset file holds, and what reading it met; the list
    // is not touched.
    pointer_array<app_layer> read_presets_file(const file::path& path, read_report& report);
    // Load Presets: a file that is refused, or holds no preset, changes
    // neither the list nor the saved file.
    read_report load_presets_from_file(const file::path& path);
    // Open as the user asks for it: load_project_from_file, and a message
    // when the file is refused or damaged.
    read_report open_project_file(const file::path& path);
    // Load Presets likewise: load_presets_from_file and its messages.
    read_report open_presets_file(const file::path& path);
    void open_project_button();
    void save_project_button();
    // The user saved the document to path: it is the document's file now,
    // and the window hears of it.
    void note_document_saved(const file::path& path);
    // Opens a recovery file as the unsaved document it was: its own file
    // name, and where a save goes.
    read_report load_recovered_project(const file::path& data, const file::path& file,
                                       const file::path& suggested);
    // The project file last opened or saved by the user, empty for a new
    // document; the counters rise with each open and each save, so that a
    // window can follow them.
    file::path document_file;
    std::uint64_t documents_opened = 0;
    std::uint64_t documents_saved = 0;
    void open_presets_button();
    void save_presets_button();

    // --- presets and default layers
    file::path auto_save_preset_file_name() const;
    bool auto_save_presets();
    // The saved list, else the built-in one. A saved file that is damaged
    // is first copied aside (when protect_damaged) and the user is told;
    // the report says what reading it met.
    read_report load_default_presets(bool protect_damaged = true);
    // Where a damaged saved preset file was copied at start; empty if none.
    const file::path& damaged_presets_copy() const { return m_damaged_presets_copy; }
    void load_default_layers();
    void clone_preset_to_layers(long long index);
    void clone_current_layer_to_preset();
    void delete_preset(long long index);

    // --- the processor library: the built-in models and the user's, read
    // from the data folder when first asked for. A damaged file is copied
    // aside (when protect_damaged) and the user is told.
    const processor_library& processor_models() const;
    processor_library& edit_processor_models() {
        return const_cast<processor_library&>(processor_models());
    }
    void load_processor_models(bool protect_damaged = true);
    // Saves the user's models; false, and the user told why, when it fails.
    bool save_processor_models();

    // --- the document's file
    // The project file opened or saved last; empty for a new workspace.
    const file::path& document_path() const { return m_document_path; }
    // Where the next save of the project is offered: the document's own
    // file, but "NAME (repaired).tsrx" beside a damaged one, so that the
    // damaged file is never saved over unasked.
    const file::path& suggested_save_path() const { return m_suggested_save_path; }
    // Unsaved changes. Opening a damaged project sets it; a save, New and
    // opening a whole project clear it.
    bool document_modified() const { return m_document_modified; }
    void set_document_modified(bool value) { m_document_modified = value; }

    // --- frame composition
    bool defer_build_frame(bool main, nano2d::context* context);
    void request_save_to_file(const file::path& path);
    file::path get_save_to_file_requested_info() const { return save_request_path; }
    pointer<image> get_composite_image() const { return composite_image; }
    // Set by the last image file write of a frame build: false when the
    // writer failed (the build itself reports nothing).
    bool last_save_succeeded() const { return m_last_save_ok; }

    // The composite under frame_mutex, for a window that shows it: no build
    // can replace the pixels while the view lives.
    class frame_view {
      public:
        explicit frame_view(const Global& global) : m_lock(global.frame_mutex), m_global(global) {}
        // Null before the first frame was composed.
        const image* composite() const {
            const image* c = m_global.composite_image.get();
            return (c && !c->isNull() && m_global.m_frame_generation > 0) ? c : nullptr;
        }
        // Rises by one with every composition: a window keeps what it made
        // of the pixels until this changes.
        std::uint64_t generation() const { return m_global.m_frame_generation; }
        // The rear frame beside it while the rear view is on, else null.
        const image* rear() const {
            const image* c = m_global.rear_composite_image.get();
            return (c && !c->isNull() && composite()) ? c : nullptr;
        }

      private:
        std::unique_lock<std::recursive_mutex> m_lock;
        const Global& m_global;
    };
    frame_view read_frame() const { return frame_view(*this); }

    // --- keyboard
    // The modifier keys held, as the window last saw them (keys::group_*).
    std::uint64_t get_keyboard_modifiers() const { return keyboard_modifiers; }
    void set_keyboard_modifiers(std::uint64_t value) { keyboard_modifiers = value; }

    // --- export
    void save_image_button();
    void save_png_button();
    void save_psd_button();
    // "Export Report...": the show report of the frame as it stands, written
    // at once; the workspace is only read.
    void save_report_button();
    // "Export Bill of Materials...": the bill of materials as CSV, at once.
    void save_bom_button();
    void layers_to_xml();
    // The callback of layers_to_xml for a chosen path; returns the path
    // written, empty when nothing was (cancelled or failed).
    file::path layers_to_xml_at(const file::path& chosen);
    string layers_xml_text(long long unique_id) const;

    // --- fields
    mutable std::recursive_mutex frame_mutex;
    pointer<project> m_project;
    pointer_array<app_layer> presets;
    mutable std::shared_ptr<processor_library> m_processor_models;
    bool m_is_retina = false;
    long long current_layer_index = 0;
    int paper_width = 1920;
    int paper_height = 1080;
    file::path save_request_path;
    std::atomic<std::uint8_t> changed{0};
    std::uint64_t keyboard_modifiers = 0;
    bool black_background = true;
    bool auto_select = true;
    bool raster_label_enabled = false;
    string_array raster_label_lines;
    int raster_label_x = 0;
    int raster_label_y = 0;
    int raster_label_width = 0;
    int raster_label_height = 0;
    // The raster the label was last drawn on: a label docked to its edges
    // stays docked when the raster size changes.
    int raster_label_drawn_width = 0;
    int raster_label_drawn_height = 0;
    bool palettes_shown = true;
    int raster_label_font_size = 20;
    pointer<image> composite_image;
    // Ways of drawing the same frame. The cabinets' colours are saved with
    // the project; the rear view is composed beside the front frame (the
    // live output keeps showing the front), and a frame file holds it.
    color_by_mode color_by = color_by_mode::chequer;
    bool rear_view = false;
    pointer<image> rear_composite_image;
    // Whether layers keep their frames between builds, so that an edit
    // redraws into memory already there (the window). A one-off render lets
    // each go once it is stacked: the frame's peak is then the composite and
    // one layer.
    bool keep_layer_frames = true;
    int logo_source_width = 0;
    int logo_source_height = 0;
    pointer<image> logo_source;
    ImageWrap logo_image_wrap;
    ImageWrap frame_image_wrap;

  private:
    // Opens the host's file dialog and runs on_chosen with the path, unless
    // the dialog was cancelled (an empty path).
    void ask_for_path(const std::vector<file::file_dialog_filter>& filters, bool save,
                      const std::function<void(const file::path&)>& on_chosen,
                      const file::path& suggested = {});
    // Keeps the state of the document's file after a load or a save.
    void set_document_file(const file::path& path, bool damaged);
    // Copies a damaged saved preset file aside and tells the user.
    void keep_damaged_presets_file(const file::path& saved, const read_report& report);

    // The steps of a frame build, in the order defer_build_frame takes them.
    bool take_changes(const pointer_array<app_layer>& layers);
    bool rebuild_shown_layers(const pointer_array<app_layer>& layers, nano2d::context* context);
    void begin_layer_builds();
    // Builds one shown layer's frame; false when it failed (and was shown).
    bool build_layer_frame(const pointer<app_layer>& layer, nano2d::context* context,
                           bool rear = false);
    bool stop_after_failed_build();
    bool fit_to_raster(pointer<image>& composite);
    // The rear frame: every shown layer built from behind and stacked at
    // its mirrored place, beside the layers' kept front frames.
    bool compose_rear(nano2d::context* context, PSDSaver* psd);
    // With build_each, each layer is built just before it is stacked and its
    // frame let go just after; false when a build failed.
    bool stack_layers_into_composite(nano2d::context* frame, PSDSaver* psd, bool build_each);
    void stack_layer(nano2d::context* frame, const pointer<app_layer>& layer, PSDSaver* psd,
                     bool rear);
    void draw_raster_label(nano2d::context* frame, bool rear);
    void write_frame_file(const file::path& request, frame_file_kind kind, PSDSaver* psd);

    std::mutex m_object_lock;
    workspace_host* m_host;
    bool m_last_save_ok = true;
    std::uint64_t m_frame_generation = 0;
    file::path m_document_path;
    file::path m_suggested_save_path;
    bool m_document_modified = false;
    file::path m_damaged_presets_copy;

  protected:
    string m_last_write_error;
};

// The body of a raster label record.
string raster_label_record(int x, int y, int font_size, const string_array& lines);

// The top menu's text: sections and their entries.
const string& gettopMenuString();

// The built-in catalogue of LED panel types, in the preset file format.
string getPresetsSource();

// The image types that can be opened (caption, pattern).
std::vector<file::file_dialog_filter> file_dialog_filters();

} // namespace Vantora_TesserinePro
