#include "panels/settings_labels.h"

#include "document/global.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/small_widgets.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace Vantora_TesserinePro {

namespace {

constexpr Qt::Alignment cell = Qt::AlignLeft | Qt::AlignVCenter;

QGridLayout* grid_layout(QWidget* w) {
    auto* grid = new QGridLayout(w);
    grid->setContentsMargins(5, 5, 5, 5);
    grid->setSpacing(5);
    return grid;
}

} // namespace

SettingsLabels::SettingsLabels(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Labels") {
    auto* column = new QVBoxLayout(body());
    column->setContentsMargins(3, 3, 3, 3);
    column->setSpacing(3);
    auto* first = new W_Grid(body());
    auto* second = new W_Grid(body());
    column->addWidget(first, 0, Qt::AlignHCenter);
    column->addWidget(second, 0, Qt::AlignHCenter);

    // The corner boxes and the word between them draw a small screen.
    QGridLayout* grid = grid_layout(first);
    int row = 0;
    for (int i = 0; i < 4; ++i) {
        corners[i] = new CheckboxWithFocus(first);
        const Qt::Alignment side = (i % 2 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
        grid->addWidget(corners[i], i < 2 ? 0 : 2, i % 2, side);
        if (i == 1) {
            grid->addWidget(make_caption(first, "          OFFSETS"), 1, 0, cell);
            grid->addWidget(make_caption(first, ""), 1, 1, cell);
        }
    }
    row = 3;
    const auto add = [&](const char* caption, auto* control) {
        grid->addWidget(make_caption(first, caption), row, 0, cell);
        grid->addWidget(control, row, 1, cell);
        ++row;
        return control;
    };
    layer_name = add("Layer Name", new CheckboxWithFocus(first));
    size_px = add("Layer Size (px)", new CheckboxWithFocus(first));
    size_m = add("Layer Size (m)", new CheckboxWithFocus(first));
    size_ft = add("Layer Size (ft)", new CheckboxWithFocus(first));
    power = add("Power", new CheckboxWithFocus(first));
    info = add("Info", new CheckboxWithFocus(first));
    labels_color = add("Labels Color", new ColorPicker(first));
    labels_font_size = add("Labels Fontsize", new IntBox(first));
    name_font_size = add("Name Fontsize", new IntBox(first));

    QGridLayout* name_grid = grid_layout(second);
    name_grid->addWidget(make_caption(second, "Layer Name:"), 0, 0, cell);
    name = make_text_box(second);
    name->setFixedSize(100, 22);
    name_grid->addWidget(name, 0, 1, cell);

    for (int i = 0; i < 4; ++i)
        corners[i]->set_callback(
            [this, i](bool value) { setBitForCurrentLayer(Corner(i), value); });
    layer_name->set_callback(writes([](boxes_layer& l, bool v) { l.DrawLayerName = v; }));
    size_px->set_callback(writes([](boxes_layer& l, bool v) { l.DrawScreenSize = v; }));
    size_m->set_callback(writes([](boxes_layer& l, bool v) { l.ShowMM = v; }));
    size_ft->set_callback(writes([](boxes_layer& l, bool v) { l.ShowFT = v; }));
    power->set_callback(writes([](boxes_layer& l, bool v) { l.DrawPower = v; }));
    info->set_callback(writes([](boxes_layer& l, bool v) { l.DrawInfoLine = v; }));
    labels_color->set_callback(
        writes([](boxes_layer& l, const color::color& c) { l.LabelFontColor = c; }));
    labels_font_size->set_callback(writes(
        [](boxes_layer& l, int v) { l.LabelFontSize = BoxesLayerDescription::FontSize(v); }));
    name_font_size->set_callback(writes(
        [](boxes_layer& l, int v) { l.LayerNameFontSize = BoxesLayerDescription::FontSize(v); }));
    // The name goes to the current layer of whatever kind; the list row
    // shows it at its next repaint.
    connect(name, &QLineEdit::editingFinished, this, [this] {
        if (const pointer<boxes_layer> layer = current_boxes_layer())
            m_global->host().layer_row_changed(*layer);
        if (const pointer<app_layer> layer = m_global->current_layer())
            layer->set_name(name->text().toStdString());
    });

    add_children_to_tab_order<W_Grid>(body());
    setTextBoxesFixedSize(QSize(60, 22));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void SettingsLabels::setBitForCurrentLayer(Corner corner, bool value) {
    if (const pointer<boxes_layer> layer = current_boxes_layer())
        layer->switch_corner_label(corner, value);
}

void SettingsLabels::get_settings_from_layer(const pointer<boxes_layer>& layer) {
    if (!layer) return;
    info->set_checked(layer->DrawInfoLine != 0);
    power->set_checked(layer->DrawPower != 0);
    for (int i = 0; i < 4; ++i)
        corners[i]->set_checked(layer->is_corner_label_on(Corner(i)));
    size_px->set_checked(layer->DrawScreenSize != 0);
    size_m->set_checked(layer->ShowMM != 0);
    size_ft->set_checked(layer->ShowFT != 0);
    layer_name->set_checked(layer->DrawLayerName != 0);
    labels_font_size->set_value(layer->LabelFontSize.get());
    name_font_size->set_value(layer->LayerNameFontSize.get());
    labels_color->set_color(layer->LabelFontColor);
    set_text_quietly(name, QString::fromStdString(layer->get_name()));
}

} // namespace Vantora_TesserinePro
