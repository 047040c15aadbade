#pragma once
// The projects opened or saved last and the folder last used for each kind
// of file, kept in the data folder so that they outlive the program; and
// the window's ways to open a project by its path.

#include "core/file_path.h"

#include <QJsonObject>
#include <QPoint>
#include <QString>
#include <QStringList>

namespace Vantora_TesserinePro {

class MainScreen;

class recent_files {
  public:
    static constexpr int limit = 10;
    // STORAGE is the file in the data folder; every call reads or writes it
    // whole, so two windows see each other's changes.
    explicit recent_files(file::path storage) : m_storage(std::move(storage)) {}
    // The data folder's file of the screen's workspace.
    static recent_files of(const MainScreen& screen);

    // Newest first, without the files that no longer exist (which are
    // dropped from the file too).
    QStringList projects() const;
    // PATH goes to the top; the oldest beyond the limit go.
    void add_project(const QString& path) const;
    void clear_projects() const;

    // The folder last used for KIND (a dialog's filters), empty at first.
    QString folder_for(const QString& kind) const;
    void set_folder_for(const QString& kind, const QString& folder) const;

  private:
    QJsonObject read() const;
    void write(const QJsonObject& object) const;
    file::path m_storage;
};

// Opens the project at PATH in the screen's workspace and puts it on top of
// the recent list; a file that is gone or cannot be read is reported and
// the workspace stays as it was. Open Recent and a drop call it.
bool open_project_path(MainScreen& screen, const QString& path);
// File > Open Recent: the list under the pointer, with "Clear List".
void show_open_recent(MainScreen& screen);
// Files dropped on the screen: a project opens, a picture dropped on the
// canvas becomes an image layer there, anything else is refused with a
// message.
void accept_file_drops(MainScreen& screen);
// What a drop of PATH at POINT (in the canvas, or outside it when null)
// does; false when it changed nothing.
bool drop_file(MainScreen& screen, const QString& path, const QPoint* canvas_point);

} // namespace Vantora_TesserinePro
