#include "panels/processors_dialog.h"

#include "document/global.h"
#include "panels/look.h"
#include "persistence/processor_library.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

namespace Vantora_TesserinePro {

namespace {

QSpinBox* number_box(QWidget* parent, int maximum, const char* object_name) {
    auto* box = new QSpinBox(parent);
    box->setRange(1, maximum);
    box->setGroupSeparatorShown(true);
    box->setObjectName(object_name);
    return box;
}

} // namespace

ProcessorsDialog::ProcessorsDialog(QWidget* parent, Global* global, std::function<void()> changed)
    : QDialog(parent), m_global(global), m_changed(std::move(changed)) {
    setWindowTitle("Processors");
    setObjectName("ProcessorsDialog");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 12, 12, 12);
    column->setSpacing(8);
    table = new QTableWidget(0, 4, this);
    table->setObjectName("ProcessorModels");
    table->setHorizontalHeaderLabels({"Model", "Ports", "Pixels 8-bit", "Pixels 10-bit"});
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->setMinimumSize(460, 180);
    column->addWidget(table);

    auto* form = new QFormLayout();
    name = new QLineEdit(this);
    name->setObjectName("ModelName");
    name->setMaxLength(int(max_model_name));
    ports = number_box(this, max_model_ports, "ModelPorts");
    pixels_8bit = number_box(this, int(max_port_pixels), "ModelPixels8");
    pixels_10bit = number_box(this, int(max_port_pixels), "ModelPixels10");
    pixels_8bit->setValue(655360);
    pixels_10bit->setValue(327680);
    ports->setValue(4);
    form->addRow("Name", name);
    form->addRow("Ports", ports);
    form->addRow("Pixels a port, 8-bit, 60 Hz", pixels_8bit);
    form->addRow("Pixels a port, 10-bit, 60 Hz", pixels_10bit);
    column->addLayout(form);

    auto* buttons = new QHBoxLayout();
    add = new QPushButton("Add", this);
    replace = new QPushButton("Change", this);
    remove = new QPushButton("Remove", this);
    auto* close = new QPushButton("Close", this);
    add->setObjectName("AddModel");
    replace->setObjectName("ChangeModel");
    remove->setObjectName("RemoveModel");
    for (QPushButton* b : {add, replace, remove})
        buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(close);
    column->addLayout(buttons);
    status = new QLabel(this);
    status->setObjectName("ModelStatus");
    status->setWordWrap(true);
    column->addWidget(status);

    connect(add, &QPushButton::clicked, this, [this] { add_model(); });
    connect(replace, &QPushButton::clicked, this, [this] { replace_model(); });
    connect(remove, &QPushButton::clicked, this, [this] { remove_model(); });
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    connect(table, &QTableWidget::itemSelectionChanged, this, [this] { show_selected(); });
    refill();
}

void ProcessorsDialog::refill(const QString& keep) {
    const processor_library& library = m_global->processor_models();
    const QSignalBlocker quiet(table);
    table->setRowCount(int(library.models().size()));
    int row = 0, selected = -1;
    for (const processor_model& m : library.models()) {
        const QString model = QString::fromStdString(m.name);
        const QStringList cells = {model, QString::number(m.ports),
                                   QLocale(QLocale::English).toString(qlonglong(m.pixels_8bit)),
                                   QLocale(QLocale::English).toString(qlonglong(m.pixels_10bit))};
        for (int c = 0; c < cells.size(); ++c) {
            auto* item = new QTableWidgetItem(cells[c]);
            // Built-in models are shown, never changed.
            if (library.is_builtin(m.name)) {
                item->setForeground(look::muted_text);
                QFont italic = item->font();
                italic.setItalic(true);
                item->setFont(italic);
                item->setToolTip("Built in: it can be copied under a new name, not changed");
            }
            table->setItem(row, c, item);
        }
        if (model == keep) selected = row;
        ++row;
    }
    table->clearSelection();
    if (selected >= 0) table->selectRow(selected);
    show_selected();
}

QString ProcessorsDialog::selected_name() const {
    const auto rows = table->selectionModel()->selectedRows();
    if (rows.isEmpty()) return {};
    return table->item(rows.first().row(), 0)->text();
}

void ProcessorsDialog::show_selected() {
    const QString chosen = selected_name();
    const processor_library& library = m_global->processor_models();
    const bool own = !chosen.isEmpty() && !library.is_builtin(chosen.toStdString());
    replace->setEnabled(own);
    remove->setEnabled(own);
    if (const processor_model* m = library.find(chosen.toStdString())) {
        name->setText(chosen);
        ports->setValue(m->ports);
        pixels_8bit->setValue(int(m->pixels_8bit));
        pixels_10bit->setValue(int(m->pixels_10bit));
    }
}

processor_model ProcessorsDialog::typed() const {
    return {name->text().trimmed().toStdString(), ports->value(), pixels_8bit->value(),
            pixels_10bit->value()};
}

void ProcessorsDialog::put(const QString& replacing) {
    processor_library& library = m_global->edit_processor_models();
    const processor_model model = typed();
    const std::string why = library.refusal(model, replacing.toStdString());
    if (!why.empty()) {
        status->setText(QString::fromStdString(why));
        return;
    }
    library.put(model, replacing.toStdString());
    saved(QString::fromStdString(model.name));
}

void ProcessorsDialog::add_model() {
    put({});
}

void ProcessorsDialog::replace_model() {
    const QString chosen = selected_name();
    if (chosen.isEmpty()) return;
    put(chosen);
}

void ProcessorsDialog::remove_model() {
    const QString chosen = selected_name();
    if (chosen.isEmpty() || !m_global->edit_processor_models().remove(chosen.toStdString())) return;
    saved({});
}

void ProcessorsDialog::saved(const QString& model) {
    status->setText(m_global->save_processor_models() ? QString() : "The library was not saved.");
    refill(model);
    // Layers that name a model see its new figures at the next frame.
    m_global->set_changed();
    if (m_changed) m_changed();
}

} // namespace Vantora_TesserinePro
