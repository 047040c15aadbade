#include "panels/top_panel.h"

#include "panels/widgets/fields.h"

#include "document/global.h"
#include "document/image_layer.h"
#include "panels/look.h"
#include "panels/widgets/expression.h"
#include "panels/widgets/small_widgets.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

#include <cstdio>

namespace Vantora_TesserinePro {

namespace {

QLineEdit* number_field(QWidget* parent) {
    QLineEdit* field = make_text_box(parent);
    field->setFixedSize(80, 22);
    return field;
}

} // namespace

TopPanel::TopPanel(QWidget* parent, Global* global) : QWidget(parent), SettingsFromLayer(global) {
    setObjectName("TopPanel");
    auto* row = new QHBoxLayout(this);
    // Blanks instead of one spacing: a caption stays close to its field,
    // groups stand apart, and the whole row fits a laptop's window.
    row->setContentsMargins(4, 0, 0, 0);
    row->setSpacing(0);
    const auto blank = [&](int w) {
        auto* b = new NOP(this, w, 0);
        row->addWidget(b);
        return b;
    };
    const auto button = [&](const char* text, void (Global::*command)()) {
        auto* b = new QPushButton(text, this);
        b->setFixedWidth(80);
        b->setFont(look::fitted_sans(text, 80 - 10));
        b->setFocusPolicy(Qt::NoFocus);
        // The workspace is taken into the slot by value: GCC 12's vptr check
        // of a call through a member-function pointer on a member reached
        // through a second base checks the wrong address (and reads a stray
        // register for it), and stops a sanitizer build at the first click.
        connect(b, &QPushButton::clicked, this,
                [global = m_global, command] { (global->*command)(); });
        row->addWidget(b);
    };
    constexpr int near = 6, apart = 14;
    button("Open Project", &Global::open_project_button);
    blank(near);
    button("Save Project", &Global::save_project_button);
    blank(near);
    button("Save Image", &Global::save_image_button);
    blank(apart);
    row->addWidget(make_caption(this, "Raster Width:"));
    blank(near);
    m_width = number_field(this);
    m_width->setObjectName("raster width");
    row->addWidget(m_width);
    blank(apart);
    row->addWidget(make_caption(this, "Raster Height:"));
    blank(near);
    m_height = number_field(this);
    m_height->setObjectName("raster height");
    row->addWidget(m_height);
    blank(apart);
    m_aspect_label = make_caption(this, "Aspect ratio:");
    row->addWidget(m_aspect_label);
    m_aspect_blanks[0] = blank(near);
    m_aspect = new CheckboxWithFocus(this);
    m_aspect->set_checked(true);
    row->addWidget(m_aspect);
    m_aspect_blanks[1] = blank(apart);
    row->addWidget(make_caption(this, "Black BG:"));
    blank(near);
    m_black = new CheckboxWithFocus(this);
    m_black->set_checked(global->black_background);
    row->addWidget(m_black);
    blank(apart);
    row->addWidget(make_caption(this, "Auto-Select:"));
    blank(near);
    m_auto = new CheckboxWithFocus(this);
    m_auto->set_checked(global->auto_select);
    row->addWidget(m_auto);
    blank(16);
    m_counts = make_caption(this, "");
    row->addWidget(m_counts);
    row->addStretch(1);

    connect(m_width, &QLineEdit::editingFinished, this, [this] { on_raster_width(); });
    connect(m_height, &QLineEdit::editingFinished, this, [this] { on_raster_height(); });
    m_aspect->set_callback([this](bool value) {
        // With no picture current the box keeps what the user set.
        if (auto picture = m_global->current_image_layer()) picture->setMaintainAspectRatio(value);
    });
    m_black->set_callback([this](bool value) { m_global->black_background = value; });
    m_auto->set_callback([this](bool value) { m_global->auto_select = value; });

    showHideAspectRatio(false);
    updatePaperNumbersVisual();
    add_children_to_tab_order<>(this);
}

void TopPanel::on_raster_width() {
    const unsigned v = calc_dimension(m_width->text().toStdString());
    set_text_quietly(m_width, QString::number(v));
    m_global->set_paper_width(int(v));
    // A raster of 0 or 1 reads as 1: then the label stays where it is.
    if (m_global->get_paper_width() == int(v)) {
        m_global->raster_label_x = m_global->get_paper_width() - m_global->raster_label_width;
        m_global->host().raster_label_settings_from_raster(*m_global);
    }
}

void TopPanel::on_raster_height() {
    const unsigned v = calc_dimension(m_height->text().toStdString());
    set_text_quietly(m_height, QString::number(v));
    m_global->set_paper_height(int(v));
    if (m_global->get_paper_height() == int(v)) {
        m_global->raster_label_y = m_global->get_paper_height() - m_global->raster_label_height;
        m_global->host().raster_label_settings_from_raster(*m_global);
    }
}

void TopPanel::updateCounts(long layers, long presets) {
    char text[128];
    std::snprintf(text, sizeof text, "Layers Added: %ld, Presets Loaded: %ld", layers, presets);
    m_counts_line = text;
    fit_counts();
}

void TopPanel::fit_counts() {
    // What the row needs without the counts, the same for either form.
    const int others = layout()->sizeHint().width() - m_counts->sizeHint().width();
    QString text = m_counts_line;
    // Where the line would run past the edge it breaks after the comma.
    if (others + m_counts->fontMetrics().horizontalAdvance(text) > width())
        text.replace(", ", ",\n");
    if (text != m_counts->text()) m_counts->setText(text);
}

void TopPanel::resizeEvent(QResizeEvent*) {
    fit_counts();
}

void TopPanel::updatePaperNumbersVisual() {
    set_text_quietly(m_width, QString::number(m_global->get_paper_width()));
    set_text_quietly(m_height, QString::number(m_global->get_paper_height()));
}

void TopPanel::showHideAspectRatio(bool show) {
    m_aspect_label->setVisible(show);
    m_aspect->setVisible(show);
    for (QWidget* blank : m_aspect_blanks)
        blank->setVisible(show);
    fit_counts();
}

void TopPanel::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor(0x3f, 0x3f, 0x3f));
}

} // namespace Vantora_TesserinePro
