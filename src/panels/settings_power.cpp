#include "panels/settings_power.h"

#include "document/boxes_layer.h"
#include "panels/look.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/small_widgets.h"
#include "plan/bom.h"
#include "plan/power_plan.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace Vantora_TesserinePro {

namespace {

// The voltages of the box's first five entries.
constexpr int standard_volts[] = {110, 208, 220, 230, 240};

constexpr Qt::Alignment cell = Qt::AlignLeft | Qt::AlignVCenter;

QComboBox* combo(QWidget* parent, const QStringList& items) {
    auto* box = new QComboBox(parent);
    box->addItems(items);
    box->setFixedSize(70, 22);
    // The longest entry whole beside the arrow, in "sans" 14 if it fits.
    QString longest;
    for (const QString& item : items)
        if (item.size() > longest.size()) longest = item;
    box->setFont(look::fitted_sans(longest, 70 - 26));
    box->setFocusPolicy(Qt::NoFocus);
    return box;
}

void select_quietly(QComboBox* box, int index) {
    const QSignalBlocker quiet(box);
    box->setCurrentIndex(index);
}

} // namespace

SettingsPower::SettingsPower(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Power") {
    auto* column = new QVBoxLayout(body());
    column->setContentsMargins(3, 3, 3, 3);
    column->setSpacing(3);
    auto* grid_widget = new W_Grid(body());
    auto* grid = new QGridLayout(grid_widget);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(4);
    int row = 0;
    const auto add = [&](QLabel* caption, QWidget* control) {
        grid->addWidget(caption, row, 0, cell);
        grid->addWidget(control, row, 1, cell);
        ++row;
    };
    volts = combo(grid_widget, {"110V", "208V", "220V", "230V", "240V", "Custom"});
    add(make_caption(grid_widget, "Volts (Line to Ground)"), volts);
    custom_caption = make_caption(grid_widget, "(Custom)");
    custom_volts = make_text_box(grid_widget);
    custom_volts->setFixedSize(70, 22);
    add(custom_caption, custom_volts);
    phases = combo(grid_widget, {"1 Phase", "3 Phases"});
    add(make_caption(grid_widget, "Phases"), phases);
    watts = new IntBox(grid_widget);
    watts->setFixedSize(70, 22);
    add(make_caption(grid_widget, "Watts"), watts);
    show_custom(false);
    // The plan's own inputs beside the design's, so that the palette stays
    // short enough to stand under Screen Info on a laptop's screen; the row
    // of custom volts (1) stays the left column's alone and folds away.
    const auto put = [&](const char* caption, QWidget* control, const char* name, int at,
                         int side) {
        control->setObjectName(name);
        if (control != power_path) control->setFixedSize(70, 22);
        QLabel* label = make_caption(grid_widget, caption);
        if (side) label->setContentsMargins(10, 0, 0, 0); // apart from the first column
        grid->addWidget(label, at, side * 2, cell);
        grid->addWidget(control, at, side * 2 + 1, cell);
    };
    circuit_amps = new IntBox(grid_widget);
    put("Circuit Rating (A)", circuit_amps, "CircuitAmps", 0, 1);
    derate = new IntBox(grid_widget);
    put("Derate (%)", derate, "CircuitDerate", 2, 1);
    cabinet_weight = make_text_box(grid_widget);
    put("Cabinet Weight (kg)", cabinet_weight, "CabinetWeight", 3, 1);
    power_path = new CheckboxWithFocus(grid_widget);
    put("Power Path", power_path, "PowerPath", 4, 0);
    spares = new IntBox(grid_widget);
    put("Spares (%)", spares, "SparePercent", 4, 1);

    total = make_caption(body(), "Total Power: 0 Amp");
    pattern = new SettingsDataDiagram::W_SnakeChoicer(
        body(), global, "PowerPatternCheckbox",
        [](const boxes_layer& l) { return l.power_pattern(); },
        [](boxes_layer& l, int v) { l.PowerPattern = v; });
    circuits = make_caption(body(), "");
    circuits->setObjectName("Circuits");
    circuits->setWordWrap(true);
    circuits->setAlignment(Qt::AlignCenter);
    materials = make_caption(body(), "");
    materials->setObjectName("Materials");
    materials->setWordWrap(true);
    materials->setAlignment(Qt::AlignCenter);
    column->addWidget(grid_widget, 0, Qt::AlignHCenter);
    column->addWidget(total, 0, Qt::AlignHCenter);
    column->addSpacing(4);
    column->addWidget(pattern, 0, Qt::AlignHCenter);
    column->addWidget(circuits, 0, Qt::AlignHCenter);
    column->addWidget(materials, 0, Qt::AlignHCenter);
    const int line_width = std::max(grid_widget->sizeHint().width(), pattern->sizeHint().width());
    circuits->setFixedWidth(line_width);
    materials->setFixedWidth(line_width);

    connect(volts, &QComboBox::currentIndexChanged, this, [this](int i) { on_volts(i); });
    connect(custom_volts, &QLineEdit::editingFinished, this, [this] { on_custom_volts(); });
    connect(phases, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (const pointer<boxes_layer> layer = current_boxes_layer()) {
            layer->PowerPhases = i != 0 ? 3 : 1;
            layer->set_changed();
        }
        update_amperes();
    });
    watts->set_callback([this](int v) {
        if (const pointer<boxes_layer> layer = current_boxes_layer()) {
            layer->PowerWatts = v;
            layer->set_changed();
        }
        update_amperes();
    });
    circuit_amps->set_callback(writes([](boxes_layer& l, int v) { l.CircuitAmps = v; }));
    derate->set_callback(writes([](boxes_layer& l, int v) { l.CircuitDerate = v; }));
    power_path->set_callback(writes([](boxes_layer& l, bool v) { l.DrawPowerPath = v; }));
    spares->set_callback(writes([](boxes_layer& l, int v) { l.SparePercent = std::max(0, v); }));
    connect(cabinet_weight, &QLineEdit::editingFinished, this, [this] { on_weight(); });
    // The palette's text is fixed in size by its fields; the total line
    // may grow.
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void SettingsPower::show_custom(bool shown) {
    custom_caption->setVisible(shown);
    custom_volts->setVisible(shown);
}

void SettingsPower::on_volts(int index) {
    const pointer<boxes_layer> layer = current_boxes_layer();
    if (index >= 0 && index < 5) {
        if (layer) {
            layer->PowerVolts = standard_volts[index];
            layer->set_changed();
        }
        show_custom(false);
    } else if (index == 5) {
        // "Custom" starts at 120 V, before anything is typed.
        if (layer) {
            layer->PowerVolts = 120;
            layer->set_changed();
        }
        set_text_quietly(custom_volts, "120");
        show_custom(true);
    }
    update_amperes();
}

void SettingsPower::on_custom_volts() {
    const int n = std::atoi(custom_volts->text().toUtf8().constData());
    // A standard voltage typed here leaves custom mode.
    for (int i = 0; i < 5; ++i)
        if (n == standard_volts[i]) {
            select_quietly(volts, i);
            show_custom(false);
        }
    if (const pointer<boxes_layer> layer = current_boxes_layer()) {
        layer->PowerVolts = n;
        layer->set_changed();
    }
    update_amperes();
}

// A weight as typed, in kg with a point or a comma; what is not a weight of
// 0 or more shows the layer's own again.
void SettingsPower::on_weight() {
    const pointer<boxes_layer> layer = current_boxes_layer();
    if (!layer) return;
    bool ok = false;
    const double kg = cabinet_weight->text().trimmed().replace(',', '.').toDouble(&ok);
    if (ok && std::isfinite(kg) && kg >= 0 && kg != layer->CabinetWeight) {
        layer->CabinetWeight = kg;
        mark_changed(*layer);
    }
    set_text_quietly(cabinet_weight, QString::fromStdString(plan::kg_text(layer->CabinetWeight)));
}

void SettingsPower::get_settings_from_layer(const pointer<boxes_layer>& layer) {
    if (!layer) return;
    // Any voltage but 110 shows as the second entry; the layer keeps its
    // own, which the total uses.
    select_quietly(volts, layer->PowerVolts == 110 ? 0 : 1);
    select_quietly(phases, layer->PowerPhases == 1 ? 0 : 1);
    watts->set_value(layer->PowerWatts);
    circuit_amps->set_value(layer->CircuitAmps);
    derate->set_value(layer->CircuitDerate);
    power_path->set_checked(layer->DrawPowerPath != 0);
    set_text_quietly(cabinet_weight, QString::fromStdString(plan::kg_text(layer->CabinetWeight)));
    spares->set_value(layer->SparePercent);
    pattern->get_settings_from_layer(layer);
    update_amperes();
    follow_up_now();
}

float SettingsPower::getAmp() const {
    const pointer<boxes_layer> layer = current_boxes_layer();
    return layer ? layer->calculate_power() : 0.0f;
}

void SettingsPower::update_amperes() {
    char text[64];
    std::snprintf(text, sizeof text, "Total Power %.2f A", double(getAmp()));
    total->setText(text);
}

void SettingsPower::update_circuits_line() {
    const pointer<boxes_layer> layer = current_boxes_layer();
    QString text;
    bool warn = false;
    if (layer) {
        const plan::power_plan power = plan::plan_power(*layer);
        text = QString::fromStdString(plan::circuits_line(power));
        warn = power.failed;
    }
    if (text != circuits->text()) circuits->setText(text);
    static const QColor warning(0xff, 0x70, 0x50);
    look::set_text_color(circuits, warn ? warning : look::text);
    // The whole project's, as the bill of materials counts it.
    const QString whole =
        m_global ? QString::fromStdString(plan::bom_line(plan::make_bom(*m_global))) : QString();
    if (whole != materials->text()) materials->setText(whole);
}

} // namespace Vantora_TesserinePro
