#include "app/undo_controller.h"

#include "app/main_screen.h"
#include "document/global.h"
#include "panels/look.h"
#include "panels/top_menu.h"
#include "panels/widgets/small_widgets.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace Vantora_TesserinePro {

UndoController::UndoController(MainScreen* screen, Global& global)
    : QObject(screen), m_screen(screen), m_global(global) {
    qApp->installEventFilter(this);
}

UndoController::~UndoController() {
    qApp->removeEventFilter(this);
}

bool UndoController::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || widget->window() != m_screen->window()) return false;
    switch (event->type()) {
    case QEvent::KeyPress: {
        // Ctrl+Y redoes as well as the menu's Ctrl+Shift+Z.
        auto* key = static_cast<QKeyEvent*>(event);
        const auto mods = key->modifiers() & ~Qt::KeypadModifier;
        if (key->key() == Qt::Key_Y && mods == Qt::ControlModifier &&
            widget == (QApplication::focusWidget() ? QApplication::focusWidget() : widget)) {
            redo();
            return true;
        }
        return false;
    }
    // The ends of user actions: a drag ends with its release, a field's
    // value is committed by Return or by leaving it.
    case QEvent::MouseButtonRelease:
    case QEvent::KeyRelease:
    case QEvent::Drop:
    case QEvent::FocusOut:
        post_record();
        return false;
    default:
        return false;
    }
}

void UndoController::post_record() {
    if (m_posted) return;
    m_posted = true;
    QTimer::singleShot(0, this, [this] {
        m_posted = false;
        // A drag still under way is not a step yet.
        if (QGuiApplication::mouseButtons() == Qt::NoButton) record();
    });
}

void UndoController::record() {
    if (m_global.documents_opened != m_seen_opened) {
        start_fresh();
        return;
    }
    m_history.record(m_global, m_next_name);
    m_next_name.clear();
    if (m_global.documents_saved != m_seen_saved) {
        m_seen_saved = m_global.documents_saved;
        m_history.mark_saved();
    }
    update_window();
}

void UndoController::undo() {
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    if (field && field->isModified() && field->isUndoAvailable()) {
        field->undo();
        return;
    }
    record();
    if (m_history.undo(m_global)) m_screen->reload_all(true);
    update_window();
}

void UndoController::redo() {
    record();
    if (m_history.redo(m_global)) m_screen->reload_all(true);
    update_window();
}

void UndoController::start_fresh() {
    m_seen_opened = m_global.documents_opened;
    m_seen_saved = m_global.documents_saved;
    m_next_name.clear();
    m_history.reset(m_global);
    update_window();
}

std::string UndoController::document_name() const {
    if (m_global.document_file.empty()) return "Untitled";
    return QFileInfo(QString::fromStdString(m_global.document_file.string()))
        .fileName()
        .toStdString();
}

void UndoController::update_window() {
    QWidget* window = m_screen->window();
    window->setWindowTitle(QString::fromStdString(document_name()) + "[*] - Tesserine Pro");
    window->setWindowModified(is_modified());
    TopMenu* menu = m_screen->top_menu();
    if (!menu) return;
    const auto& titles = menu->main_row()->items();
    for (std::size_t i = 0; i < titles.size(); ++i) {
        if (titles[i]->objectName() != "Edit") continue;
        TopMenuSubmenu* edit = menu->submenu((long long)i);
        if (!edit || edit->entries().size() < 2) return;
        const std::pair<bool, std::string> states[2] = {
            {m_history.can_undo(), "Undo " + m_history.undo_name()},
            {m_history.can_redo(), "Redo " + m_history.redo_name()}};
        for (int e = 0; e < 2; ++e) {
            QWidget* entry = edit->entries()[std::size_t(e)];
            entry->setEnabled(states[e].first);
            if (QLabel* label = entry->findChild<QLabel*>()) {
                label->setText(QString::fromStdString(states[e].second).trimmed());
                look::set_text_color(label, states[e].first ? look::text : look::disabled_text);
            }
        }
        edit->adjustSize();
        return;
    }
}

bool UndoController::is_modified() const {
    return m_history.is_modified() || m_global.document_modified();
}

void UndoController::ask_before_discarding(std::function<void()> then) {
    record();
    if (!is_modified()) {
        then();
        return;
    }
    if (m_question) return;
    QMessageBox* box = window_modal_box(
        QMessageBox::Warning, "Unsaved Changes",
        QString("Save the changes to %1?").arg(QString::fromStdString(document_name())), m_screen,
        "unsaved");
    QPushButton* save = box->addButton("Save", QMessageBox::AcceptRole);
    QPushButton* discard = box->addButton("Don't Save", QMessageBox::DestructiveRole);
    discard->setShortcut(QKeySequence(Qt::ALT | Qt::Key_D));
    QPushButton* cancel = box->addButton("Cancel", QMessageBox::RejectRole);
    box->setDefaultButton(save);
    box->setEscapeButton(cancel);
    connect(box, &QMessageBox::finished, this, [this, box, save, discard, then] {
        m_question = nullptr;
        if (box->clickedButton() == save) save_then(then);
        if (box->clickedButton() == discard) then();
    });
    m_question = box;
    box->open();
}

void UndoController::save_then(std::function<void()> then) {
    auto save_to = [this, then](const file::path& path) {
        if (!m_global.save_project_to_file(path)) {
            m_global.show_error("The project cannot be saved to " + path.string() + ": " +
                                m_global.last_write_error());
            return;
        }
        m_global.note_document_saved(path);
        record();
        then();
    };
    if (!m_global.document_file.empty()) return save_to(m_global.document_file);
    // No file yet: the save dialog; cancelled, nothing happens.
    m_screen->pick_single_file(
        {{"tsrx", "tsrx file"}},
        [save_to](const file::path& chosen) {
            if (!chosen.empty()) save_to(chosen.with_extension_if_no_extension(".tsrx"));
        },
        true);
}

} // namespace Vantora_TesserinePro
