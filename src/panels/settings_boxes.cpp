#include "panels/settings_boxes.h"

#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/look.h"
#include "panels/widgets/expression.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/pictures.h"
#include "panels/widgets/small_widgets.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>

#include <algorithm>
#include <climits>
#include <cstdio>

namespace Vantora_TesserinePro {

namespace {

constexpr Qt::Alignment cell = Qt::AlignLeft | Qt::AlignVCenter;

// The expression's unsigned result in an int field of the layer.
int as_int(unsigned v) {
    return int(std::min<unsigned>(v, INT_MAX));
}

QString millimetres(float v) {
    char text[64];
    std::snprintf(text, sizeof text, "%0.1f", double(v));
    return text;
}

void grid_changed(boxes_layer& l) {
    l.set_changed();
    if (Global* g = l.get_global()) {
        g->host().update_amperes();
        g->host().post_main_screen_layout();
        g->host().post_main_window_redraw();
    }
}

} // namespace

SettingsBoxes::MyBoxWidget::MyBoxWidget(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
}

template <class Box> Box* SettingsBoxes::addTextBox(const QString& caption, bool grouped) {
    auto* grid = static_cast<QGridLayout*>(body()->layout());
    grid->addWidget(make_caption(body(), caption), m_row, 0, cell);
    QWidget* parent = body();
    if (grouped) {
        m_last_group = new MyBoxWidget(body());
        grid->addWidget(m_last_group, m_row, 1, cell);
        parent = m_last_group;
    }
    Box* box = nullptr;
    if constexpr (std::is_same_v<Box, QLineEdit>)
        box = make_text_box(parent);
    else
        box = new Box(parent);
    if (grouped)
        parent->layout()->addWidget(box);
    else
        grid->addWidget(box, m_row, 1, cell);
    ++m_row;
    return box;
}

SettingsBoxes::SettingsBoxes(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Screen Info") {
    auto* grid = new QGridLayout(body());
    grid->setContentsMargins(5, 5, 5, 5);
    grid->setSpacing(2);

    offset_x = addTextBox<QLineEdit>("Offset X", false);
    offset_y = addTextBox<QLineEdit>("Offset Y", false);
    cabinet_width = addTextBox<QLineEdit>("Cabinet Width", false);
    cabinet_height = addTextBox<QLineEdit>("Cabinet Height", false);
    columns = addTextBox<QLineEdit>("Screen Columns", false);
    rows = addTextBox<QLineEdit>("Screen Rows", false);
    panel_width = addTextBox<QLineEdit>("Panel Width  (mm)", false);
    panel_height = addTextBox<QLineEdit>("Panel Height (mm)", false);

    const auto box_pair = [&](const char* left, const char* right) {
        auto* a = new CheckboxWithFocus(body(), left);
        auto* b = new CheckboxWithFocus(body(), right);
        a->setFont(look::sans(14));
        b->setFont(look::sans(14));
        grid->addWidget(a, m_row, 0, cell);
        grid->addWidget(b, m_row, 1, cell);
        ++m_row;
        return std::pair{a, b};
    };
    std::tie(half_first_column, half_last_column) =
        box_pair("Half First Column", "Half Last Column");
    std::tie(half_first_row, half_last_row) = box_pair("Half First Row", "Half Last Row");

    grid_width = addTextBox<IntBox>("Border", true);
    draw_grid = new CheckboxWithFocus(m_last_group);
    border_color = new ColorPicker(m_last_group);
    m_last_group->layout()->addWidget(draw_grid);
    m_last_group->layout()->addWidget(border_color);

    circle_width = addTextBox<IntBox>("Circle with X", true);
    draw_circle = new CheckboxWithFocus(m_last_group);
    m_last_group->layout()->addWidget(draw_circle);

    names_font_size = addTextBox<IntBox>("Cabinet ID", true);
    names_color = new ColorPicker(m_last_group);
    m_last_group->layout()->addWidget(names_color);

    grid->addWidget(new NOP(body(), 5, 5), m_row, 0, cell);
    auto* ids = new MyBoxWidget(body());
    grid->addWidget(ids, m_row, 1, cell);
    names_ordinary = new CheckboxWithFocus(ids);
    auto* ordinary_icon = new W_Image(ids, 24, 24);
    ordinary_icon->set_image(cabinet_ids_picture(false));
    names_reverse = new CheckboxWithFocus(ids);
    auto* reverse_icon = new W_Image(ids, 24, 24);
    reverse_icon->set_image(cabinet_ids_picture(true));
    for (QWidget* w : {(QWidget*)names_ordinary, (QWidget*)ordinary_icon, (QWidget*)names_reverse,
                       (QWidget*)reverse_icon})
        ids->layout()->addWidget(w);
    ++m_row;

    install_callbacks_handlers();
    add_children_to_tab_order<MyBoxWidget>(body());
    setTextBoxesFixedSize(QSize(40, 22));
    panel_width->setFixedWidth(50);
    panel_height->setFixedWidth(50);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void SettingsBoxes::on_dimension(QLineEdit* field, void (*store)(boxes_layer&, int)) {
    const unsigned v = calc_dimension(field->text().toStdString());
    set_text_quietly(field, QString::number(v));
    if (const pointer<boxes_layer> layer = current_boxes_layer()) store(*layer, as_int(v));
}

void SettingsBoxes::on_millimetres(QLineEdit* field, float BoxesLayerDescription::*member) {
    const float v = calc_float_dimension(field->text().toStdString());
    set_text_quietly(field, millimetres(v));
    if (const pointer<boxes_layer> layer = current_boxes_layer()) {
        (*layer).*member = v;
        layer->set_changed();
    }
}

void SettingsBoxes::install_callbacks_handlers() {
    const auto on_commit = [this](QLineEdit* field, auto f) {
        connect(field, &QLineEdit::editingFinished, this, f);
    };
    on_commit(offset_x,
              [this] { on_dimension(offset_x, [](boxes_layer& l, int v) { l.set_offset_x(v); }); });
    on_commit(offset_y,
              [this] { on_dimension(offset_y, [](boxes_layer& l, int v) { l.set_offset_y(v); }); });
    on_commit(cabinet_width, [this] {
        on_dimension(cabinet_width, [](boxes_layer& l, int v) {
            l.Width = v;
            grid_changed(l);
        });
    });
    on_commit(cabinet_height, [this] {
        on_dimension(cabinet_height, [](boxes_layer& l, int v) {
            l.Height = v;
            grid_changed(l);
        });
    });
    // The grid size changes the cabinet count, and so the amperes.
    on_commit(columns, [this] {
        on_dimension(columns, [](boxes_layer& l, int v) {
            l.Columns = v;
            grid_changed(l);
        });
    });
    on_commit(rows, [this] {
        on_dimension(rows, [](boxes_layer& l, int v) {
            l.Rows = v;
            grid_changed(l);
        });
    });
    on_commit(panel_width, [this] { on_millimetres(panel_width, &BoxesLayerDescription::PhysW); });
    on_commit(panel_height,
              [this] { on_millimetres(panel_height, &BoxesLayerDescription::PhysH); });

    const auto half = [this](CheckboxWithFocus* box, unsigned long set_bit,
                             unsigned long clear_bit) {
        box->set_callback([this, set_bit, clear_bit](bool value) {
            const pointer<boxes_layer> layer = current_boxes_layer();
            if (!layer) return;
            layer->set_half_pair(set_bit, clear_bit, value);
            update_half_checkboxes(layer);
            grid_changed(*layer); // the rows show the columns and rows
        });
    };
    half(half_first_column, 0, 1);
    half(half_last_column, 1, 0);
    half(half_first_row, 2, 3);
    half(half_last_row, 3, 2);

    // A control that writes one field of the layer and marks it.
    grid_width->set_callback(writes([](boxes_layer& l, int v) { l.GridWidth = v; }));
    draw_grid->set_callback(writes([](boxes_layer& l, bool v) { l.DrawGrid = v; }));
    border_color->set_callback(
        writes([](boxes_layer& l, const color::color& c) { l.BoxBorderColor = c; }));
    circle_width->set_callback(writes([](boxes_layer& l, int v) { l.CircleWidth = v; }));
    draw_circle->set_callback(writes([](boxes_layer& l, bool v) { l.DrawCircle = v; }));
    names_font_size->set_callback(writes(
        [](boxes_layer& l, int v) { l.BoxesNamesFontSize = BoxesLayerDescription::FontSize(v); }));
    names_color->set_callback(
        writes([](boxes_layer& l, const color::color& c) { l.BoxesNamesColor = c; }));

    // The two ID boxes are radio buttons that can both be off.
    names_ordinary->set_callback([this](bool value) {
        const pointer<boxes_layer> layer = current_boxes_layer();
        if (!layer) return;
        layer->DrawBoxesNames = value;
        layer->set_changed();
        layer->BoxesNamesReverse = false;
        layer->set_changed();
        names_reverse->set_checked(false);
    });
    names_reverse->set_callback([this](bool value) {
        const pointer<boxes_layer> layer = current_boxes_layer();
        if (!layer) return;
        layer->DrawBoxesNames = value;
        layer->set_changed();
        layer->BoxesNamesReverse = value;
        layer->set_changed();
        names_ordinary->set_checked(false);
    });
}

void SettingsBoxes::get_settings_from_layer(const pointer<boxes_layer>& layer) {
    if (!layer) return;
    set_text_quietly(offset_x, QString::number(layer->get_offset_x()));
    set_text_quietly(offset_y, QString::number(layer->get_offset_y()));
    set_text_quietly(cabinet_width, QString::number(layer->Width));
    set_text_quietly(cabinet_height, QString::number(layer->Height));
    set_text_quietly(columns, QString::number(layer->Columns));
    set_text_quietly(rows, QString::number(layer->Rows));
    border_color->set_color(layer->BoxBorderColor);
    grid_width->set_value(layer->GridWidth);
    draw_grid->set_checked(layer->DrawGrid != 0);
    draw_circle->set_checked(layer->DrawCircle != 0);
    circle_width->set_value(layer->CircleWidth);
    names_ordinary->set_checked(layer->DrawBoxesNames && !layer->BoxesNamesReverse);
    names_reverse->set_checked(layer->DrawBoxesNames && layer->BoxesNamesReverse);
    names_color->set_color(layer->BoxesNamesColor);
    names_font_size->set_value(layer->BoxesNamesFontSize.get());
    set_text_quietly(panel_width, millimetres(layer->PhysW));
    set_text_quietly(panel_height, millimetres(layer->PhysH));
    update_half_checkboxes(layer);
}

void SettingsBoxes::update_half_checkboxes(const pointer<boxes_layer>& layer) {
    if (!layer) return;
    half_first_column->set_checked(layer->HalfColumns[0]);
    half_last_column->set_checked(layer->HalfColumns[1]);
    half_first_row->set_checked(layer->HalfColumns[2]);
    half_last_row->set_checked(layer->HalfColumns[3]);
}

} // namespace Vantora_TesserinePro
