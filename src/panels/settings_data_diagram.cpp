#include "panels/settings_data_diagram.h"

#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/pictures.h"
#include "panels/widgets/small_widgets.h"

#include "panels/look.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
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
    m_port_line = new QLabel(body());
    m_port_line->setObjectName("PortLoads");
    m_port_line->setFont(look::sans(14));
    m_port_line->setWordWrap(true);
    // As wide as the fields above; a longer line wraps.
    m_port_line->setFixedWidth(m_second->sizeHint().width());
    m_port_line->setAlignment(Qt::AlignCenter);
    column->addSpacing(4);
    column->addWidget(m_port_line, 0, Qt::AlignHCenter);
    add_children_to_tab_order<W_SnakeSecondParams, W_SnakeChoicer>(body());
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void SettingsDataDiagram::get_settings_from_layer(const pointer<boxes_layer>& layer) {
    m_choicer->get_settings_from_layer(layer);
    m_second->get_settings_from_layer(layer);
    update_port_line();
}

void SettingsDataDiagram::post_port_line() {
    if (m_port_line_posted) return;
    m_port_line_posted = true;
    QMetaObject::invokeMethod(
        this, [this] { update_port_line(); }, Qt::QueuedConnection);
}

void SettingsDataDiagram::update_port_line() {
    m_port_line_posted = false;
    const pointer<boxes_layer> layer = current_boxes_layer();
    QString text;
    bool warn = false;
    if (layer) {
        const Snake::layer_loads loads = Snake::port_loads(*layer);
        const QLocale english(QLocale::English);
        text = QString("Ports: %1").arg(loads.ports.size());
        if (loads.failed) {
            text += QString(" \u00b7 ") + QString::fromStdString(loads.message);
            warn = true;
        } else if (const Snake::port_load* p = loads.fullest()) {
            text += " \u00b7 fullest ";
            if (p->percent) text += QString::number(*p->percent, 'f', 1) + "% (";
            text += english.toString(qlonglong(p->load)) + " px";
            if (p->percent) text += ")";
            warn = p->over;
        }
    }
    if (text != m_port_line->text()) m_port_line->setText(text);
    static const QColor warning(0xff, 0x70, 0x50);
    look::set_text_color(m_port_line, warn ? warning : look::text);
}

} // namespace Vantora_TesserinePro
