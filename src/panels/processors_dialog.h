#pragma once
// The processor library's editor: the models in a table, the built-in ones
// read-only, and fields that add, change or remove one of the user's own.
// Every change is saved to the data folder at once.

#include <QDialog>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTableWidget;

namespace Vantora_TesserinePro {

class Global;
struct processor_model;

class ProcessorsDialog : public QDialog {
  public:
    // changed runs after each saved change of the library.
    ProcessorsDialog(QWidget* parent, Global* global, std::function<void()> changed = {});

    // Fills the table from the library, keeping the row of name selected.
    void refill(const QString& name = {});
    // The three buttons' work; each says in the status line what failed.
    void add_model();
    void replace_model();
    void remove_model();

    QTableWidget* table = nullptr;
    QLineEdit* name = nullptr;
    QSpinBox* ports = nullptr;
    QSpinBox* pixels_8bit = nullptr;
    QSpinBox* pixels_10bit = nullptr;
    QPushButton* add = nullptr;
    QPushButton* replace = nullptr;
    QPushButton* remove = nullptr;
    QLabel* status = nullptr;

  private:
    processor_model typed() const;
    QString selected_name() const;
    void show_selected();
    // Puts model in place of `replacing` (a new one when empty) and saves.
    void put(const QString& replacing);
    void saved(const QString& name);

    Global* m_global;
    std::function<void()> m_changed;
};

} // namespace Vantora_TesserinePro
