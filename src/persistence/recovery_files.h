#pragma once
// Recovery files. While the document has unsaved changes the window hands
// it over now and then, and a thread of its own writes it as a project to
// the folder "recovery" of the data folder, so that a crash, a kill or a
// power cut loses little. Each running program writes files of its own
// ("session-PID-TIME.tsrx", the document's file names beside it in
// ".json"), holds a lock ("... .lock") while it runs and removes them all
// when it ends normally. Files whose lock is stale were left by a program
// that did not.

#include "core/file_path.h"
#include "core/serial_worker.h"
#include "document/history.h"

#include <QDateTime>
#include <QLockFile>

#include <memory>
#include <vector>

namespace Vantora_TesserinePro {

// What a program that is gone left behind.
struct left_recovery {
    file::path data;      // the project
    QDateTime written;    // when it was written last
    file::path file;      // the document's own file; empty for "Untitled"
    file::path suggested; // where a save of it was to go
    // Held while this program decides, so that no other one takes it.
    std::shared_ptr<QLockFile> claim;
};

// The bytes a save of the document that state holds writes.
string project_file_text(const document_state& state);

class recovery_store {
  public:
    explicit recovery_store(const file::path& folder);
    // Ends the writes handed over, removes this program's files and lets
    // go of its lock: a normal end leaves nothing to recover.
    ~recovery_store();
    recovery_store(const recovery_store&) = delete;
    recovery_store& operator=(const recovery_store&) = delete;

    // Takes this program's lock; false when the folder or the lock cannot
    // be made (then nothing is written).
    bool open();
    bool is_open() const { return m_lock && m_lock->isLocked(); }
    // The window thread's share of a write: the state is handed to the
    // worker, which makes the text and writes the files atomically.
    void write(document_state state, const file::path& file, const file::path& suggested);
    // This program's files go, after every write handed over before.
    void remove();
    // A write or removal is handed over and not yet done.
    bool busy() const { return m_worker.pending() > 0; }
    // Until the worker has done all it was given.
    void wait() { m_worker.wait_idle(); }
    file::path data_path() const;

    // The recoveries of programs that are gone, newest first, each claimed.
    // Stale locks without a document are cleaned away.
    std::vector<left_recovery> left_behind();
    // A left recovery becomes this program's own (renamed), so that it is
    // kept until this program writes or removes its own.
    bool adopt(left_recovery& left);
    static void discard(left_recovery& left);
    // Renamed "damaged-..." beside it, never deleted; the new name, or
    // empty when it could not be renamed.
    static file::path set_aside(left_recovery& left);

  private:
    file::path side_path() const;

    file::path m_folder;
    QString m_id;
    std::unique_ptr<QLockFile> m_lock;
    // Last: it ends (running what it was given) before the lock goes.
    serial_worker m_worker;
};

} // namespace Vantora_TesserinePro
