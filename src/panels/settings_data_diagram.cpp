#include "panels/settings_data_diagram.h"

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/processors_dialog.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/pictures.h"
#include "panels/widgets/small_widgets.h"
#include "persistence/processor_library.h"
#include "plan/processors.h"

#include "panels/look.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace Vantora_TesserinePro {

SettingsDataDiagram::W_SnakeChoicer::W_SnakeChoicer(QWidget* parent, Global* global,
                                                    const char* name, reader read, writer write)
    : QWidget(parent), SettingsFromLayer(global),
      m_read(read ? read : [](const boxes_layer& l) { return int(l.SnakeMode); }),
      m_write(write ? write : [](boxes_layer& l, int v) { l.SnakeMode = v; }) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(1);
    grid->setAlignment(Qt::AlignCenter);
    for (int i = 0; i < 8; ++i) {
        auto* box = new CheckboxWithFocus(this);
        box->setObjectName(QString::asprintf("%s%d", name, i));
        auto* picture = new W_Image(this, 25, 25);
        picture->set_image(snake_pattern_picture(i));
        // Four patterns a row: box, picture, box, picture...
        grid->addWidget(box, i / 4, (i % 4) * 2, Qt::AlignCenter);
        grid->addWidget(picture, i / 4, (i % 4) * 2 + 1, Qt::AlignCenter);
        // Clicking the chosen box leaves it chosen.
        box->set_callback([this, i](bool) {
            const pointer<boxes_layer> layer = current_boxes_layer();
            if (!layer) return;
            m_write(*layer, i);
            layer->set_changed();
            get_settings_from_layer(layer);
        });
        boxes.push_back(box);
        images.push_back(picture);
    }
}

void SettingsDataDiagram::W_SnakeChoicer::get_settings_from_layer(
    const pointer<boxes_layer>& layer) {
    if (!layer) return;
    for (int i = 0; i < int(boxes.size()); ++i)
        boxes[std::size_t(i)]->set_checked(i == m_read(*layer));
}

SettingsDataDiagram::W_SnakeSecondParams::W_SnakeSecondParams(QWidget* parent, Global* global)
    : QWidget(parent), SettingsFromLayer(global) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(2, 2, 2, 2);
    grid->setSpacing(2);
    grid->setHorizontalSpacing(6);
    int cell = 0;
    // Two caption and control pairs a row. The last pair is alone in its
    // row: its field may reach under the second caption, so that the first
    // column of controls is only as wide as a check box.
    const auto add = [&](const char* caption, QWidget* control) {
        grid->addWidget(make_caption(this, caption), cell / 2, (cell % 2) * 2,
                        Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(control, cell / 2, (cell % 2) * 2 + 1, 1, cell == 8 ? 3 : 1,
                        Qt::AlignLeft | Qt::AlignVCenter);
        ++cell;
    };
    const auto int_box = [&] {
        auto* box = new IntBox(this);
        box->setFixedSize(60, 22);
        return box;
    };
    add("Random Colors", random_colors = new CheckboxWithFocus(this));
    add("Color", color = new ColorPicker(this));
    add("Visible", visible = new CheckboxWithFocus(this));
    add("Line Width", line_width = int_box());
    add("Custom Path", custom_path = new CheckboxWithFocus(this));
    add("Skip Blank", skip_blank = new CheckboxWithFocus(this));
    add("Novastar", novastar = new CheckboxWithFocus(this));
    add("Other Type", other_type = new CheckboxWithFocus(this));
    add("Pixel Limit", pixel_limit = int_box());

    random_colors->set_callback(writes([](boxes_layer& l, bool v) { l.UseRandomSnakeColor = v; }));
    color->set_callback(writes([](boxes_layer& l, const color::color& c) { l.SnakeColor = c; }));
    visible->set_callback(writes([](boxes_layer& l, bool v) { l.DrawSnake = v; }));
    line_width->set_callback(writes([](boxes_layer& l, int v) { l.SnakeWidth = v; }));
    custom_path->set_callback(writes([](boxes_layer& l, bool v) { l.CustomDataPath = v; }));
    skip_blank->set_callback([this](bool v) {
        const pointer<boxes_layer> layer = current_boxes_layer();
        if (!layer) return;
        layer->SkipBlankBoxes = v;
        layer->set_changed();
        // Skipped cabinets draw no power.
        m_global->host().update_amperes();
    });
    // The two types are a pair: unchecking one checks the other.
    novastar->set_callback([this](bool v) {
        const pointer<boxes_layer> layer = current_boxes_layer();
        if (!layer) return;
        other_type->set_checked(!v);
        layer->DataDiagramType = v ? 0 : 1;
        layer->set_changed();
    });
    other_type->set_callback([this](bool v) {
        const pointer<boxes_layer> layer = current_boxes_layer();
        if (!layer) return;
        novastar->set_checked(!v);
        layer->DataDiagramType = v ? 1 : 0;
        layer->set_changed();
    });
    pixel_limit->set_callback(writes([](boxes_layer& l, int v) { l.SnakeLimit = v; }));
}

void SettingsDataDiagram::W_SnakeSecondParams::get_settings_from_layer(
    const pointer<boxes_layer>& layer) {
    if (!layer) return;
    line_width->set_value(layer->SnakeWidth);
    color->set_color(layer->SnakeColor);
    random_colors->set_checked(layer->UseRandomSnakeColor != 0);
    visible->set_checked(layer->DrawSnake != 0);
    skip_blank->set_checked(layer->SkipBlankBoxes != 0);
    custom_path->set_checked(layer->CustomDataPath != 0);
    novastar->set_checked(layer->DataDiagramType == 0);
    other_type->set_checked(layer->DataDiagramType != 0);
    pixel_limit->set_value(layer->SnakeLimit);
}

namespace {

QComboBox* combo(QWidget* parent, const char* name, const QStringList& items, int width) {
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->addItems(items);
    box->setFixedSize(width, 22);
    box->setFont(look::sans(13));
    box->setFocusPolicy(Qt::NoFocus);
    return box;
}

constexpr int bit_depths[] = {8, 10, 12};

} // namespace

SettingsDataDiagram::W_Processor::W_Processor(QWidget* parent, Global* global)
    : QWidget(parent), SettingsFromLayer(global) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(2, 2, 2, 2);
    grid->setSpacing(2);
    grid->setHorizontalSpacing(6);
    const auto caption = [&](const char* text, int row, int column) {
        grid->addWidget(make_caption(this, text), row, column, Qt::AlignRight | Qt::AlignVCenter);
    };
    const auto int_box = [&](const char* name) {
        auto* box = new IntBox(this);
        box->setObjectName(name);
        box->setFixedSize(60, 22);
        return box;
    };
    constexpr Qt::Alignment left = Qt::AlignLeft | Qt::AlignVCenter;
    processor = combo(this, "Processor", {"None"}, 190);
    caption("Processor", 0, 0);
    grid->addWidget(processor, 0, 1, 1, 3, left);
    caption("Unit", 1, 0);
    grid->addWidget(unit = int_box("ProcessorUnit"), 1, 1, left);
    caption("First Port", 1, 2);
    grid->addWidget(first_port = int_box("FirstPort"), 1, 3, left);
    caption("Depth", 2, 0);
    grid->addWidget(bit_depth = combo(this, "BitDepth", {"8-bit", "10-bit", "12-bit"}, 70), 2, 1,
                    left);
    caption("Rate (Hz)", 2, 2);
    grid->addWidget(frame_rate = int_box("FrameRate"), 2, 3, left);
    caption("Backup", 3, 0);
    grid->addWidget(backup = combo(this, "Backup", {"None", "Loop Back", "Backup Unit"}, 100), 3, 1,
                    1, 2, left);
    library = new QPushButton("Library\u2026", this);
    library->setObjectName("ProcessorLibrary");
    library->setFont(look::sans(13));
    library->setFixedHeight(22);
    grid->addWidget(library, 3, 3, left);

    connect(processor, &QComboBox::activated, this, [this](int i) {
        const std::string model = i <= 0 ? std::string() : processor->itemText(i).toStdString();
        writes([model](boxes_layer& l, int) { l.Processor = model; })(0);
    });
    connect(bit_depth, &QComboBox::activated, this, [this](int i) {
        writes([](boxes_layer& l, int v) { l.BitDepth = v; })(bit_depths[std::clamp(i, 0, 2)]);
    });
    connect(backup, &QComboBox::activated, this,
            [this](int i) { writes([](boxes_layer& l, int v) { l.Backup = v; })(i); });
    unit->set_callback(writes([](boxes_layer& l, int v) { l.ProcessorUnit = v; }));
    first_port->set_callback(writes([](boxes_layer& l, int v) { l.FirstPort = v; }));
    frame_rate->set_callback(writes([](boxes_layer& l, int v) { l.FrameRate = v; }));
    connect(library, &QPushButton::clicked, this, [this] { open_library(); });
}

void SettingsDataDiagram::W_Processor::fill_models(const std::string& chosen) {
    const QSignalBlocker quiet(processor);
    processor->clear();
    processor->addItem("None");
    int at = 0;
    for (const processor_model& m : m_global->processor_models().models()) {
        processor->addItem(QString::fromStdString(m.name));
        if (m.name == chosen) at = processor->count() - 1;
    }
    // A model the library lacks (a project from elsewhere) still shows.
    if (!chosen.empty() && at == 0) {
        processor->addItem(QString::fromStdString(chosen));
        at = processor->count() - 1;
    }
    processor->setCurrentIndex(at);
}

void SettingsDataDiagram::W_Processor::get_settings_from_layer(const pointer<boxes_layer>& layer) {
    if (!layer) return;
    fill_models(layer->Processor);
    unit->set_value(layer->ProcessorUnit);
    first_port->set_value(layer->FirstPort);
    frame_rate->set_value(layer->FrameRate);
    const QSignalBlocker quiet_depth(bit_depth), quiet_backup(backup);
    bit_depth->setCurrentIndex(layer->BitDepth == 12 ? 2 : layer->BitDepth == 10 ? 1 : 0);
    backup->setCurrentIndex(layer->Backup >= 0 && layer->Backup <= 2 ? layer->Backup : -1);
}

void SettingsDataDiagram::W_Processor::open_library() {
    if (!dialog)
        // The models' names and figures may have changed: every palette
        // reads the layer again.
        dialog = new ProcessorsDialog(window(), m_global,
                                      [this] { m_global->host().reload_all(*m_global, true); });
    dialog->refill();
    dialog->open();
}

SettingsDataDiagram::SettingsDataDiagram(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Data-Flow Diagram") {
    auto* column = new QVBoxLayout(body());
    column->setContentsMargins(10, 10, 10, 10);
    column->setSpacing(1);
    m_choicer = new W_SnakeChoicer(body(), global);
    m_second = new W_SnakeSecondParams(body(), global);
    column->addWidget(m_choicer, 0, Qt::AlignHCenter);
    column->addSpacing(6);
    column->addWidget(m_second, 0, Qt::AlignHCenter);
    m_processor = new W_Processor(body(), global);
    column->addSpacing(4);
    column->addWidget(m_processor, 0, Qt::AlignHCenter);
    m_port_line = new QLabel(body());
    m_port_line->setObjectName("PortLoads");
    m_port_line->setFont(look::sans(14));
    m_port_line->setWordWrap(true);
    // As wide as the fields above; a longer line wraps.
    m_port_line->setFixedWidth(m_second->sizeHint().width());
    m_port_line->setAlignment(Qt::AlignCenter);
    column->addSpacing(4);
    column->addWidget(m_port_line, 0, Qt::AlignHCenter);
    add_children_to_tab_order<W_SnakeSecondParams, W_SnakeChoicer, W_Processor>(body());
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void SettingsDataDiagram::get_settings_from_layer(const pointer<boxes_layer>& layer) {
    m_choicer->get_settings_from_layer(layer);
    m_second->get_settings_from_layer(layer);
    m_processor->get_settings_from_layer(layer);
    follow_up_now();
}

void SettingsDataDiagram::update_port_line() {
    const pointer<boxes_layer> layer = current_boxes_layer();
    QString text;
    bool warn = false;
    if (layer) {
        const plan::processor_plan plan = plan::plan_processors(*m_global);
        const long long index = m_global->get_current_layer_id();
        const plan::layer_plan* loads = plan.layer(index);
        const QLocale english(QLocale::English);
        if (!loads) {
        } else if (!loads->model.empty() || (loads->failed && loads->routed)) {
            // A processor is chosen, or the processor keys do not fit.
            text = QString::fromStdString(plan::processor_line(plan, index));
            warn = loads->failed;
        } else {
            text = QString("Ports: %1").arg(loads->chains.size());
            if (loads->failed) {
                text += QString(" \u00b7 ") + QString::fromStdString(loads->message);
                warn = true;
            } else if (const plan::chain_plan* c = loads->fullest()) {
                const Snake::port_load* p = &c->load;
                text += " \u00b7 fullest ";
                if (p->percent) text += QString::number(*p->percent, 'f', 1) + "% (";
                text += english.toString(qlonglong(p->load)) + " px";
                if (p->percent) text += ")";
                warn = p->over;
            }
        }
    }
    if (text != m_port_line->text()) m_port_line->setText(text);
    static const QColor warning(0xff, 0x70, 0x50);
    look::set_text_color(m_port_line, warn ? warning : look::text);
}

} // namespace Vantora_TesserinePro
