#include "panels/settings_raster_label.h"

#include "document/global.h"
#include "panels/widgets/expression.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/small_widgets.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include <climits>
#include <cstdlib>

namespace Vantora_TesserinePro {

SettingsRasterLabel::SettingsRasterLabel(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Raster Label") {
    auto* column = new QVBoxLayout(body());
    column->setContentsMargins(3, 3, 3, 3);
    column->setSpacing(3);
    auto* holder = new W_Grid(body());
    column->addWidget(holder, 0, Qt::AlignHCenter);
    auto* grid = new QGridLayout(holder);
    grid->setContentsMargins(5, 5, 5, 5);
    grid->setSpacing(5);
    int row = 0;
    const auto add = [&](const char* caption, auto* control) {
        grid->addWidget(make_caption(holder, caption), row, 0, Qt::AlignLeft | Qt::AlignVCenter);
        grid->addWidget(control, row, 1, Qt::AlignLeft | Qt::AlignVCenter);
        ++row;
        return control;
    };
    const auto text_box = [&] {
        QLineEdit* box = make_text_box(holder);
        box->setFixedSize(150, 22);
        return box;
    };
    enabled = add("Raster Label", new CheckboxWithFocus(holder));
    offset_x = add("Offset X", text_box());
    offset_y = add("Offset Y", text_box());
    font_size = add("Font Size", new IntBox(holder));
    font_size->setFixedSize(150, 22);
    const char* captions[4] = {"Line 1:", "Line 2:", "Line 3:", "Line 4:"};
    for (int i = 0; i < 4; ++i)
        lines[i] = add(captions[i], text_box());

    enabled->set_callback([this](bool v) {
        m_global->raster_label_enabled = v;
        layout_and_redraw();
    });
    const auto position = [this](QLineEdit* field, int Global::*member) {
        connect(field, &QLineEdit::editingFinished, this, [this, field, member] {
            const unsigned v = calc_dimension(field->text().toStdString());
            set_text_quietly(field, QString::number(v));
            m_global->*member = int(std::min<unsigned>(v, INT_MAX));
            layout_and_redraw();
        });
    };
    position(offset_x, &Global::raster_label_x);
    position(offset_y, &Global::raster_label_y);
    font_size->set_callback([this](int v) {
        m_global->raster_label_font_size = v;
        layout_and_redraw();
    });
    for (int i = 0; i < 4; ++i)
        connect(lines[i], &QLineEdit::editingFinished, this, [this, i] {
            set_line(i, lines[i]->text());
            layout_and_redraw();
        });

    add_children_to_tab_order<>(holder);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void SettingsRasterLabel::set_line(int index, const QString& text) {
    auto& stored = m_global->raster_label_lines;
    if (int(stored.size()) <= index) stored.resize(std::size_t(index) + 1);
    stored[std::size_t(index)] = text.toStdString();
}

void SettingsRasterLabel::layout_and_redraw() {
    // Straight into the flag: the next paint composes the frame anew, and
    // no layer is marked.
    m_global->changed = 1;
    m_global->host().post_main_screen_layout();
    m_global->host().post_main_window_redraw();
}

void SettingsRasterLabel::get_settings_from_layer(const pointer<boxes_layer>&) {
    enabled->set_checked(m_global->raster_label_enabled);
    set_text_quietly(offset_x, QString::number(m_global->raster_label_x));
    set_text_quietly(offset_y, QString::number(m_global->raster_label_y));
    font_size->set_value(m_global->raster_label_font_size);
    const auto& stored = m_global->raster_label_lines;
    for (int i = 0; i < 4; ++i)
        set_text_quietly(lines[i], i < int(stored.size())
                                       ? QString::fromStdString(stored[std::size_t(i)])
                                       : QString());
}

void SettingsRasterLabel::get_settings_from_raster() {
    m_global->raster_label_enabled = enabled->isChecked();
    m_global->raster_label_x = std::atoi(offset_x->text().toUtf8().constData());
    m_global->raster_label_y = std::atoi(offset_y->text().toUtf8().constData());
    m_global->raster_label_font_size = font_size->value();
    for (int i = 0; i < 4; ++i)
        set_line(i, lines[i]->text());
}

} // namespace Vantora_TesserinePro
