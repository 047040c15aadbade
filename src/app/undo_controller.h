#pragma once
// The window's side of undo and redo: it records one step after each user
// action (a click, a key, a whole drag, a committed field), runs Undo and
// Redo, keeps the Edit menu's captions, the title and its unsaved mark up
// to date, and asks before unsaved work is thrown away.

#include "document/history.h"

#include <QObject>

#include <functional>

class QMessageBox;

namespace Vantora_TesserinePro {

class Global;
class MainScreen;

class UndoController : public QObject {
  public:
    UndoController(MainScreen* screen, Global& global);
    ~UndoController() override;

    document_history& history() { return m_history; }
    // Records what the last action changed, as one step; the name is made
    // from the change unless name_next gave one.
    void record();
    void name_next(const std::string& name) { m_next_name = name; }
    // Ctrl+Z: a text field holding an uncommitted edit undoes its typing;
    // otherwise the document's last step.
    void undo();
    void redo();
    // A new history from the document as it is (opened, or at start).
    void start_fresh();
    // A damaged project opens as changed: its first save must not go
    // silently over the file.
    bool is_modified() const;
    // "Untitled" before the first save.
    std::string document_name() const;
    // Runs then at once without unsaved changes; otherwise asks to save
    // them first, and runs then after Save (when the save succeeds) or
    // Don't Save. Cancel, Escape, a cancelled dialog: nothing happens.
    void ask_before_discarding(std::function<void()> then);
    QMessageBox* question() const { return m_question; }
    // The Edit menu's captions and the window title follow the history.
    void update_window();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void post_record();
    void save_then(std::function<void()> then);

    MainScreen* m_screen;
    Global& m_global;
    document_history m_history;
    std::string m_next_name;
    bool m_posted = false;
    std::uint64_t m_seen_opened = 0;
    std::uint64_t m_seen_saved = 0;
    QMessageBox* m_question = nullptr;
};

} // namespace Vantora_TesserinePro
