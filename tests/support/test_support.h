#pragma once
// Helpers shared by the test programs.

#include "core/data_folder.h"
#include "core/diagnostics.h"
#include "document/global.h"
#include "document/workspace_host.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace Vantora_TesserinePro::testing {

// A host that records what the workspace asks of the window and answers
// file dialogs with a path chosen by the test.
class recording_host : public workspace_host {
  public:
    struct pick_request {
        std::vector<file::file_dialog_filter> filters;
        bool save = false;
        file::path suggested;
    };

    void set_current_layer_to(Global& global, long long index, bool update) override {
        selections.push_back(index);
        workspace_host::set_current_layer_to(global, index, update);
    }
    void reload_all(Global&, bool) override { ++reloads; }
    bool is_only_current() const override { return only_current; }
    void update_amperes() override { ++amperes_updates; }
    void raster_label_settings_from_raster(Global&) override { ++label_from_raster; }
    void raster_label_settings_to_palette(Global&) override { ++label_to_palette; }
    bool layer_list_built() const override { return list_built; }
    void post_canvas_redraw() override { ++canvas_redraws; }
    void post_main_window_redraw() override { ++window_redraws; }
    void show_error(const std::string& message) override { errors.push_back(message); }
    void show_warning(const std::string& title, const std::string& message) override {
        warnings.push_back(title + ": " + message);
    }
    void pick_single_file(const std::vector<file::file_dialog_filter>& filters,
                          const pick_callback& callback, bool save,
                          const file::path& suggested) override {
        picks.push_back({filters, save, suggested});
        callback(file::path(answer));
    }

    std::vector<long long> selections;
    int reloads = 0;
    int amperes_updates = 0;
    int label_from_raster = 0;
    int label_to_palette = 0;
    int canvas_redraws = 0;
    int window_redraws = 0;
    bool only_current = false;
    bool list_built = true;
    std::vector<std::string> errors, warnings;
    std::vector<pick_request> picks;
    std::string answer; // what the file dialog answers; empty = cancelled
};

// Empties the data folder (the test program's own, under a temporary
// XDG_DATA_HOME) and makes sure it exists.
inline void clear_data_folder() {
    QDir dir(QString::fromStdString(folder_to_save_data().string()));
    dir.removeRecursively();
    ensure_data_folder();
}

// Writes bytes to a file, for fixtures.
bool write_file(const std::string& path, const std::string& bytes);
std::string read_file(const std::string& path);

// The bytes of a golden file under tests/data.
std::string golden(const std::string& name);
// Bytes compared with a golden file; a difference leaves what was got in
// NAME.actual in the working folder, to look at or to take over.
::testing::AssertionResult matches_golden(const std::string& got, const std::string& name);

// One length-framed record of a project or preset file: "TYPE LENGTH" on a
// line, then the body.
inline std::string record(int type, const std::string& body) {
    return std::to_string(type) + " " + std::to_string(body.size()) + "\n" + body;
}

// Captures what the code under test writes to the diagnostics stream.
class capture_diagnostics {
  public:
    capture_diagnostics() { set_diagnostics_out(&m_stream); }
    ~capture_diagnostics() { set_diagnostics_out(nullptr); }
    std::string text() const { return m_stream.str(); }

  private:
    std::ostringstream m_stream;
};

} // namespace Vantora_TesserinePro::testing
