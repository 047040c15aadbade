#pragma once
// The program's object: its identity, where user files live, the one main
// window made on the first request, and every request that names a file.

#include "core/file_path.h"

#include <QIcon>
#include <QJsonObject>
#include <QObject>
#include <QRectF>

#include <memory>
#include <string>

namespace Vantora_TesserinePro {

class main_window;
class live_output_window;

class application : public QObject {
  public:
    static constexpr const char* application_id = "Vantora/TesserinePro";
    static constexpr const char* application_title = "Tesserine Pro";
    static constexpr const char* library_name = "Vantora_TesserinePro";
    // The name of the desktop entry, which desktops match windows with.
    static constexpr const char* desktop_file_name = "app.tesserine.Tesserine";

    // The program's icon at every size it is drawn at, from the resources.
    static QIcon icon();

    application();
    ~application() override;
    application(const application&) = delete;
    application& operator=(const application&) = delete;
    // The running application; null when none is.
    static application* instance();

    // --- start and stop
    void init_instance();
    void term_application() {}
    // A request to open path (empty: none). The first one makes the window.
    void on_request(const std::string& path);
    // Loads path when it names a file, else starts a new workspace; then
    // selects the bottom layer and brings the window to the front.
    void on_file_request(const std::string& path);
    void set_file_association();

    // --- files
    std::string app_name_for_storage() const;
    file::path folder_to_save_data() const;
    file::path settings_file_path() const;
    // Reads the window rectangle into initial_rectangle; false when there
    // is no settings file (or nothing in it).
    bool load_settings();
    // Writes the main window's rectangle (unless the file holds it already).
    void save_settings();
    // save_settings at the next turn of the event loop: a window that moves
    // sends many messages, and one write serves them all.
    void request_save_settings();

    main_window* get_main_window() const { return main_window_pointer.get(); }

    // The live output goes before the main window: it draws the main
    // window's workspace.
    std::unique_ptr<main_window> main_window_pointer;
    std::unique_ptr<live_output_window> live_output_window_pointer;
    // Left, top, right and bottom, as parts of the screen or as pixels.
    QRectF initial_rectangle;

  private:
    // What the settings file holds, as far as this run knows.
    QJsonObject m_saved_settings;
    bool m_save_posted = false;

  protected:
    // Files handed over by the system (macOS opens documents this way).
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace Vantora_TesserinePro
