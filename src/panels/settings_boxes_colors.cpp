#include "panels/settings_boxes_colors.h"

#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/look.h"
#include "panels/widgets/fields.h"

#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Vantora_TesserinePro {

const color::color g_colortablea[6] = {
    {0x40, 0x80, 0x80, 0xFF}, {0xD7, 0x01, 0x01, 0xFF}, {0xA0, 0xA0, 0x30, 0xFF},
    {0x40, 0x80, 0x40, 0xFF}, {0x80, 0x20, 0x80, 0xFF}, {0x20, 0x20, 0x80, 0xFF},
};

namespace {

// The colour moved 45 per cent of the way to white.
color::color tint_of(const color::color& c) {
    const auto channel = [](std::uint8_t byte) {
        const float x = float(byte) / 255.0f;
        const float t = std::min(std::fma(1.0f - x, 0.45f, x), 1.0f);
        return std::uint8_t(t * 255.0f);
    };
    return color::color(channel(c.red), channel(c.green), channel(c.blue), c.alpha);
}

} // namespace

SettingsBoxesColors::ControlBox::ControlBox(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    column->setAlignment(Qt::AlignHCenter);
    const auto button = [&](const char* text) {
        auto* b = new QPushButton(text, this);
        b->setFixedSize(getButtonSize());
        b->setFont(look::fitted_sans(text, getButtonSize().width() - 8));
        b->setFocusPolicy(Qt::NoFocus);
        column->addWidget(b);
        return b;
    };
    add = button("Add");
    remove = button("Delete");
}

SettingsBoxesColors::ColorGrid::ColorGrid(QWidget* parent) : QWidget(parent) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
}

SettingsBoxesColors::SettingsBoxesColors(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Colors        ") {
    auto* column = new QVBoxLayout(body());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(5);
    m_control = new ControlBox(body());
    m_grid = new ColorGrid(body());
    column->addWidget(m_control, 0, Qt::AlignHCenter);
    column->addWidget(m_grid, 0, Qt::AlignHCenter);
    // Some room under the last pair.
    column->addSpacing(3);
    connect(m_control->add, &QPushButton::clicked, this, [this] { on_add(); });
    connect(m_control->remove, &QPushButton::clicked, this, [this] { on_delete(); });
    m_control->remove->setEnabled(false);
    // The window follows the grid as pairs come and go.
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

std::pair<ColorPicker*, ColorPicker*> SettingsBoxesColors::color_picker_pair(int index) {
    auto* grid = static_cast<QGridLayout*>(m_grid->layout());
    for (int i = int(m_grid->pairs.size()); i <= index; ++i) {
        const color::color c = g_colortablea[i % 6];
        auto* first = new ColorPicker(m_grid, c);
        first->hide();
        first->setFixedSize(getButtonSize());
        first->set_callback([this, i](const color::color& v) { syncColorsToLayer(i, v); });
        auto* second = new ColorPicker(m_grid, tint_of(c));
        second->hide();
        second->setFixedSize(getButtonSize());
        second->set_callback([this, i](const color::color& v) { syncTintColorsToLayer(i, v); });
        grid->addWidget(first, i, 0);
        grid->addWidget(second, i, 1);
        m_grid->pairs.emplace_back(first, second);
    }
    if (index < 0 || index >= m_in_use) return {nullptr, nullptr};
    return m_grid->pairs[std::size_t(index)];
}

void SettingsBoxesColors::syncColorsToLayer(int index, const color::color& colour) {
    sync_column_to_layer(false, index, colour);
}

void SettingsBoxesColors::syncTintColorsToLayer(int index, const color::color& colour) {
    sync_column_to_layer(true, index, colour);
}

void SettingsBoxesColors::sync_column_to_layer(bool tints, int index, const color::color& colour) {
    const pointer<boxes_layer> layer = current_boxes_layer();
    if (!layer) return;
    std::vector<color::color> colors;
    colors.reserve(std::size_t(m_in_use));
    for (int i = 0; i < m_in_use; ++i) {
        const auto pair = color_picker_pair(i);
        colors.push_back(i == index ? colour : (tints ? pair.second : pair.first)->get_color());
    }
    (tints ? layer->BoxTintColors : layer->BoxColors) = std::move(colors);
    layer->set_changed();
    if (m_global) m_global->host().layer_row_changed(*layer);
    update();
}

void SettingsBoxesColors::update_visibility() {
    syncColorsToLayer(-1, {});
    syncTintColorsToLayer(-1, {});
    // Pairs in use exist now even without a layer to write to.
    color_picker_pair(m_in_use - 1);
    for (std::size_t i = 0; i < m_grid->pairs.size(); ++i) {
        m_grid->pairs[i].first->setVisible(int(i) < m_in_use);
        m_grid->pairs[i].second->setVisible(int(i) < m_in_use);
    }
    m_control->remove->setEnabled(m_in_use >= 1);
    update();
}

void SettingsBoxesColors::on_add() {
    ++m_in_use;
    update_visibility();
}

void SettingsBoxesColors::on_delete() {
    if (m_in_use < 1) return;
    --m_in_use;
    update_visibility();
}

void SettingsBoxesColors::get_settings_from_layer(const pointer<boxes_layer>& layer) {
    if (!layer) return;
    m_in_use = int(layer->BoxColors.size());
    for (auto& [first, second] : m_grid->pairs) {
        first->hide();
        second->hide();
    }
    for (int i = 0; i < m_in_use; ++i) {
        auto [first, second] = color_picker_pair(i);
        first->set_color(layer->BoxColors[std::size_t(i)]);
        first->show();
        // A file may hold fewer tints than colours: the pair keeps its own.
        if (std::size_t(i) < layer->BoxTintColors.size())
            second->set_color(layer->BoxTintColors[std::size_t(i)]);
        second->show();
    }
    update_visibility();
}

} // namespace Vantora_TesserinePro
