#include "panels/right_panel.h"

#include "app/main_screen.h"
#include "document/global.h"
#include "panels/look.h"
#include "panels/scroll_list.h"
#include "panels/widgets/cached_style.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QResizeEvent>
#include <QGuiApplication>
#include <QScrollArea>
#include <QTimer>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace Vantora_TesserinePro {

namespace {
void fill_with(QWidget* w, const QColor& color) {
    QPalette p = w->palette();
    p.setColor(QPalette::Window, color);
    w->setPalette(p);
    w->setAutoFillBackground(true);
}
} // namespace

// ---------------------------------------------------------------- one list

RightPanelList::RightPanelList(QWidget* parent, Global* global, bool isLayerList)
    : QWidget(parent), m_global(global) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    m_scroll = new QScrollArea(this);
    m_scroll->setObjectName(isLayerList ? "layer_scroll" : "preset_scroll");
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Room for the bar is kept whether it shows or not, so that rows do not
    // jump when the list grows past its height.
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_scroll->setWidgetResizable(true);
    m_scroll->verticalScrollBar()->setSingleStep(20);
    use_cached_style(m_scroll->verticalScrollBar());
    if (isLayerList)
        m_list = new W_LayerScrollList(m_scroll, global);
    else
        m_list = new W_PresetScrollList(m_scroll, global);
    fill_with(m_list, look::side_panel);
    m_scroll->setWidget(m_list);
    fill_with(m_scroll->viewport(), look::side_panel);
    layout->addWidget(m_scroll, 1);

    m_bottom = new QWidget(this);
    m_bottom_layout = new QHBoxLayout(m_bottom);
    m_bottom_layout->setContentsMargins(0, 0, 0, 0);
    m_bottom_layout->setSpacing(5);
    layout->addWidget(m_bottom, 0);
}

QPushButton* RightPanelList::add_button(const QString& caption, const QString& tooltip,
                                        int fixed_width) {
    auto* b = new QPushButton(caption, m_bottom);
    b->setFocusPolicy(Qt::NoFocus);
    use_cached_style(b);
    if (!tooltip.isEmpty()) b->setToolTip(tooltip);
    if (fixed_width > 0) {
        b->setFixedWidth(fixed_width);
        // The caption stays whole in the fixed width.
        b->setFont(look::fitted_sans(caption, fixed_width - 8));
    }
    m_bottom_layout->addWidget(b);
    return b;
}

void RightPanelList::syncFromGlobal() {
    if (!m_list) return;
    m_list->syncFromGlobal();
    // After a clone, an add or a click on the canvas, the current layer's
    // row shows, once its place in the laid-out list is known.
    QWidget* selected = m_list->selected_item();
    if (!selected || selected == m_scrolled_to) return;
    // Not under a hand dragging rows: its row is where the hand is.
    if (QGuiApplication::mouseButtons() != Qt::NoButton) return;
    m_scrolled_to = selected;
    QTimer::singleShot(0, this, [this] {
        if (QWidget* row = m_list->selected_item(); row && row->isVisible())
            m_scroll->ensureWidgetVisible(row, 0, 0);
    });
}

LayerList::LayerList(QWidget* parent, Global* global) : RightPanelList(parent, global, true) {
    setObjectName("LayerList");
    QPushButton* clone =
        add_button("Clone Current", "Duplicate currently selected layer and add it to top.", 80);
    QPushButton* plus = add_button("+", "Append completely new layer to top.", 24);
    QPushButton* minus = add_button("-", "Remove active layer.", 24);
    plus->setObjectName("add_layer");
    minus->setObjectName("remove_layer");
    connect(clone, &QPushButton::clicked, this, [this] { m_global->clone_current_layer(); });
    connect(plus, &QPushButton::clicked, this, [this] {
        if (MainScreen* screen = MainScreen::of(this)) {
            screen->showAddLayerContextMenu();
            screen->update();
        }
    });
    connect(minus, &QPushButton::clicked, this, [this] { m_global->delete_current_layer(); });
    const QString caption = "Draw Current Only";
    m_only_current = new QCheckBox(caption, m_bottom);
    m_only_current->setToolTip("Force all layers except current be transparent.");
    m_only_current->setFont(look::fitted_sans(caption, 110));
    m_only_current->setFocusPolicy(Qt::NoFocus);
    use_cached_style(m_only_current);
    m_bottom_layout->addWidget(m_only_current);
    m_bottom_layout->addStretch(1);
    // The box only refreshes: rendering asks it at each frame. The frame
    // is marked changed so that the next paint asks.
    connect(m_only_current, &QCheckBox::toggled, this, [this] { m_global->reload_all(); });
}

bool LayerList::isOnlyCurrentChecked() const {
    return m_only_current->isChecked();
}

PresetList::PresetList(QWidget* parent, Global* global) : RightPanelList(parent, global, false) {
    setObjectName("PresetList");
    connect(add_button("Load Presets", {}, 80), &QPushButton::clicked, this,
            [this] { m_global->open_presets_button(); });
    connect(add_button("Save Presets", {}, 80), &QPushButton::clicked, this,
            [this] { m_global->save_presets_button(); });
    connect(add_button("Add to Preset", {}, 80), &QPushButton::clicked, this, [this] {
        try {
            m_global->clone_current_layer_to_preset();
        } catch (const std::exception& e) {
            m_global->show_error(e.what());
        }
    });
    m_bottom_layout->addStretch(1);
}

// ---------------------------------------------------------------- the panel

RightPanel::RightPanel(QWidget* parent, Global* global) : QWidget(parent), m_global(global) {
    setObjectName("RightPanel");
    look::set_text_color(this, look::text);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    m_presets = new PresetList(this, global);
    m_layers = new LayerList(this, global);
    layout->addWidget(m_presets);
    layout->addWidget(m_layers);
    layout->addStretch(1);
}

void RightPanel::resizeEvent(QResizeEvent* event) {
    // The two lists share the height equally.
    const int w = event->size().width(), h = event->size().height();
    m_presets->setFixedSize(w, h / 2 - 5);
    m_layers->setFixedSize(w, h / 2 - 5);
    QWidget::resizeEvent(event);
}

void RightPanel::syncFromGlobalLayers() {
    if (m_in_layers_sync) return;
    m_in_layers_sync = true;
    ++m_syncs;
    m_layers->syncFromGlobal();
    m_in_layers_sync = false;
}

void RightPanel::syncFromGlobalPresets() {
    if (m_in_presets_sync) return;
    m_in_presets_sync = true;
    m_presets->syncFromGlobal();
    m_in_presets_sync = false;
}

bool RightPanel::isOnlyCurrentChecked() const {
    return m_layers && m_layers->isOnlyCurrentChecked();
}

void RightPanel::set_draw_current_only(bool value) {
    const QSignalBlocker quiet(m_layers->draw_current_only_box());
    m_layers->draw_current_only_box()->setChecked(value);
}

void RightPanel::layer_changed(const app_layer& layer) {
    m_layers->list()->layer_set_need_update_and_redraw(&layer);
    m_presets->list()->layer_set_need_update_and_redraw(&layer);
}

void RightPanel::paintEvent(QPaintEvent* event) {
    QPainter(this).fillRect(event->rect(), look::side_panel);
}

} // namespace Vantora_TesserinePro
