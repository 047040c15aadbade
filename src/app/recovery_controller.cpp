#include "app/recovery_controller.h"

#include "app/main_screen.h"
#include "app/undo_controller.h"
#include "document/global.h"
#include "panels/widgets/small_widgets.h"

#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

namespace Vantora_TesserinePro {

RecoveryController::RecoveryController(MainScreen* screen, Global& global, UndoController& undo)
    : QObject(screen), m_screen(screen), m_global(global), m_undo(undo),
      m_store(global.getFolderToSaveData() / "recovery") {
    if (!m_store.open()) return;
    m_timer.setInterval(interval_ms());
    connect(&m_timer, &QTimer::timeout, this, [this] { autosave(); });
    m_timer.start();
}

RecoveryController::~RecoveryController() {
    m_timer.stop();
}

int RecoveryController::interval_ms() {
    bool ok = false;
    const double seconds = qEnvironmentVariable("TESSERINE_AUTOSAVE_SECONDS").toDouble(&ok);
    return ok && seconds > 0 ? std::max(1, int(seconds * 1000)) : 30000;
}

void RecoveryController::autosave() {
    // A write still under way (a slow disk): the next turn writes.
    if (!m_store.is_open() || m_store.busy()) return;
    document_state now = m_undo.history().snapshot(m_global);
    const bool unsaved = m_undo.is_modified() || !now.same_document(m_undo.history().current());
    if (!unsaved) {
        if (m_has_file) discard();
        return;
    }
    if (m_has_file && now.same_document(m_written) && m_written_file == m_global.document_file)
        return;
    m_written = now;
    m_written_file = m_global.document_file;
    m_store.write(std::move(now), m_global.document_file, m_global.suggested_save_path());
    m_has_file = true;
}

void RecoveryController::discard() {
    m_store.remove();
    m_has_file = false;
    m_written = {};
}

void RecoveryController::offer_left_behind() {
    if (!m_store.is_open() || m_question) return;
    for (left_recovery& left : m_store.left_behind()) {
        // Only a recovery that reads whole is offered.
        read_report report;
        try {
            Global probe;
            report = probe.load_project_from_file(left.data);
        } catch (const std::exception& e) {
            report.refuse(file_problem::kind::layer_refused, e.what());
        }
        if (report.clean()) return ask(left);
        const std::string when =
            QLocale().toString(left.written, QLocale::ShortFormat).toStdString();
        const file::path aside = recovery_store::set_aside(left);
        m_global.host().show_warning(
            "Recovery", "The unsaved work from " + when + " cannot be recovered: its file is " +
                            "damaged (" + report.text() + ").\n\n" +
                            (aside.empty() ? "It stays at " + left.data.string() + "."
                                           : "It was set aside as " + aside.string() + "."));
    }
}

void RecoveryController::ask(left_recovery left) {
    QMessageBox* box = window_modal_box(
        QMessageBox::Question, "Recover Unsaved Work",
        "Recover the unsaved work from " + QLocale().toString(left.written, QLocale::ShortFormat) +
            "?",
        m_screen, "recover");
    QPushButton* recover = box->addButton("Recover", QMessageBox::AcceptRole);
    QPushButton* discard = box->addButton("Discard", QMessageBox::DestructiveRole);
    box->setDefaultButton(recover);
    connect(box, &QMessageBox::finished, this, [this, box, recover, discard, left]() mutable {
        m_question = nullptr;
        if (box->clickedButton() == recover) restore(left);
        if (box->clickedButton() == discard) recovery_store::discard(left);
        // Neither: it waits for the next start.
    });
    m_question = box;
    box->open();
}

void RecoveryController::restore(left_recovery& left) {
    const read_report report =
        m_global.load_recovered_project(left.data, left.file, left.suggested);
    if (report.refused()) {
        m_global.show_error("The unsaved work cannot be recovered: " + report.text());
        return;
    }
    // Its file is this program's now, until the document is saved.
    m_store.adopt(left);
    m_has_file = true;
    m_written = {};
    m_undo.start_fresh();
    m_screen->update_settings_visibility();
}

} // namespace Vantora_TesserinePro
