#pragma once
// The window's side of crash recovery: every so often (30 seconds, or
// TESSERINE_AUTOSAVE_SECONDS) the document, when it has unsaved changes, is
// handed to the recovery files, and a save or a discard on purpose removes
// them; at start it offers what a program that did not end normally left.

#include "document/history.h"
#include "persistence/recovery_files.h"

#include <QObject>
#include <QTimer>

class QMessageBox;

namespace Vantora_TesserinePro {

class Global;
class MainScreen;
class UndoController;

class RecoveryController : public QObject {
  public:
    RecoveryController(MainScreen* screen, Global& global, UndoController& undo);
    ~RecoveryController() override;

    static int interval_ms();
    // The timer's work: unsaved changes not written yet are handed over to
    // be written; with none left, the file goes.
    void autosave();
    // Saved, or thrown away on purpose: nothing is left to recover.
    void discard();
    // At start: a damaged recovery is set aside with a message; the newest
    // whole one brings the question "Recover the unsaved work from ...?".
    void offer_left_behind();
    QMessageBox* question() const { return m_question; }
    recovery_store& store() { return m_store; }

  private:
    void ask(left_recovery left);
    void restore(left_recovery& left);

    MainScreen* m_screen;
    Global& m_global;
    UndoController& m_undo;
    recovery_store m_store;
    QTimer m_timer;
    // What the file holds, when there is one.
    bool m_has_file = false;
    document_state m_written;
    file::path m_written_file;
    QMessageBox* m_question = nullptr;
};

} // namespace Vantora_TesserinePro
