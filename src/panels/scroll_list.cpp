#include "panels/scroll_list.h"

#include "app/main_screen.h"
#include "canvas/main_impact.h"
#include "core/keys.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"
#include "panels/look.h"
#include "panels/widgets/cached_style.h"
#include "panels/widgets/small_widgets.h"
#include "render/draw2d_context.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStaticText>
#include <QVBoxLayout>

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace Vantora_TesserinePro {

namespace {

const QColor row_normal(0x1d, 0x1d, 0x1d), row_hover(0x33, 0x33, 0x33),
    row_selected(0x7f, 0x7f, 0x7f);

// The arrows of a row, drawn once: a light triangle pointing up or down.
QIcon arrow_icon(bool up) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    if (up) {
        path.moveTo(8, 3);
        path.lineTo(14, 12);
        path.lineTo(2, 12);
    } else {
        path.moveTo(2, 4);
        path.lineTo(14, 4);
        path.lineTo(8, 13);
    }
    path.closeSubpath();
    p.fillPath(path, look::text);
    return QIcon(pixmap);
}

// Each list is its own drag group: rows swap within their list only.
int next_drag_group() {
    static int group = 1000;
    return ++group;
}

// The part of a row left of its picture. It paints the captions and the
// values itself: a list shows dozens of them, and a widget each costs a
// paint event each at every paint of the panel. The labels stay, hidden
// but keeping their room, so that the grid lays the row out as before and
// their texts can be read; each text is laid out once, when it changes.
class row_body : public ClickableWidget {
  public:
    row_body(QWidget* parent, Global* global) : ClickableWidget(parent, global) {}

    QLabel* add_label(const QString& text) {
        auto* label = new QLabel(text, this);
        QSizePolicy policy = label->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        label->setSizePolicy(policy);
        label->hide();
        m_texts.push_back({label, {}});
        m_texts.back().text.setPerformanceHint(QStaticText::AggressiveCaching);
        return label;
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter p(this);
        p.setFont(font());
        p.setPen(palette().color(QPalette::WindowText));
        const int line = fontMetrics().height();
        for (shown_text& t : m_texts) {
            const QRect r = t.label->geometry();
            if (!event->rect().intersects(r)) continue;
            if (t.text.text() != t.label->text()) t.text.setText(t.label->text());
            const QPoint at(r.x(), r.y() + (r.height() - line) / 2);
            // A text larger than its cell is cut at the cell, as its label
            // would cut it.
            const bool cut = line > r.height() || t.text.size().width() > r.width();
            if (cut) {
                p.save();
                p.setClipRect(r, Qt::IntersectClip);
            }
            p.drawStaticText(at, t.text);
            if (cut) p.restore();
        }
    }

  private:
    struct shown_text {
        QLabel* label;
        QStaticText text;
    };
    std::vector<shown_text> m_texts;
};

void set_text_if_changed(QLabel* label, const QString& text) {
    if (label->text() == text) return;
    label->setText(text);
    // The label is hidden: the row that paints its text repaints it.
    if (QWidget* body = label->parentWidget()) body->update(label->geometry());
}

} // namespace

// ---------------------------------------------------------------- picture

void paint_layer_preview(QImage& target, const app_layer& layer) {
    target.fill(Qt::transparent);
    nano2d::draw2d_context context(&target);
    nano2d::context& c = context;
    const float w = float(target.width()), h = float(target.height());
    const auto* boxes = dynamic_cast<const boxes_layer*>(&layer);
    const auto* picture = dynamic_cast<const image_layer*>(&layer);
    if (boxes && boxes->Columns >= 1 && boxes->Rows >= 1) {
        const float cell_w = std::ceil(w / float(boxes->Columns));
        const float cell_h = std::ceil(h / float(boxes->Rows));
        std::vector<color::color> colors;
        for (std::size_t i = 0; i < boxes->BoxColors.size(); ++i) {
            colors.push_back(boxes->BoxColors[i]);
            if (i < boxes->BoxTintColors.size()) colors.push_back(boxes->BoxTintColors[i]);
        }
        c.stroke_width(1.0f);
        c.stroke_color(boxes->BoxBorderColor);
        // Only the cells that fall in the picture: a wall of thousands of
        // cabinets still paints at most one cell per pixel.
        const int columns = std::min<int>(boxes->Columns, int(std::ceil(w / cell_w)));
        const int rows = std::min<int>(boxes->Rows, int(std::ceil(h / cell_h)));
        for (int r = 0; r < rows; ++r) {
            // Starting each row one colour on gives a chequer.
            std::size_t k = std::size_t(r);
            for (int col = 0; col < columns; ++col, ++k) {
                const float x = float(col) * cell_w, y = float(r) * cell_h;
                if (!colors.empty()) {
                    c.begin_path();
                    c.rectangle(x, y, cell_w, cell_h);
                    c.fill_color(colors[k % colors.size()]);
                    c.fill();
                }
                if (boxes->DrawGrid) {
                    c.begin_path();
                    c.rectangle(x, y, cell_w, cell_h);
                    c.stroke();
                }
            }
        }
    } else if (picture && picture->get_image() && !picture->get_image()->isNull() && w >= 1 &&
               h >= 1) {
        const image& source = *picture->get_image();
        const int handle = c.create_image(source.width(), source.height(),
                                          nano2d::image_flags_for(source.format()),
                                          source.constBits(), int(source.bytesPerLine()));
        if (handle >= 1) {
            c.begin_path();
            c.rectangle(0, 0, w, h);
            c.fill_paint(c.image_pattern(handle, 0, 0, w, h, 0, 1.0f));
            c.fill();
            c.delete_image(handle);
        }
    }
    c.begin_path();
    c.rectangle(0, 0, w, 20);
    c.fill_color(color::color(0, 0, 0, 0x7f));
    c.fill();

    const string name = layer.get_name();
    c.font_face("sans");
    c.font_size(14);
    c.text_align(nano2d::align_left | nano2d::align_top);
    float bounds[4];
    c.text_bounds(name, 0, 0, bounds);
    // Centred on the banner; a long name runs past both edges.
    const float x = (w - (bounds[2] - bounds[0])) / 2 - bounds[0];
    const float y = 10 - (bounds[3] - bounds[1]) / 2 - bounds[1];
    c.fill_color(color::opaque_white);
    c.text(name, x, y);
}

LayerPreviewImage::LayerPreviewImage(QWidget* parent, Global* global)
    : ClickableWidget(parent, global) {
    setFixedSize(preview_width, preview_height);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

void LayerPreviewImage::setLayer(const pointer<app_layer>& layer) {
    if (m_layer != layer) m_need_update = true;
    m_layer = layer;
}

void LayerPreviewImage::update_image_cache() {
    if (!m_layer) return;
    const QSize size(preview_width, preview_height);
    if (m_image.size() != size) m_image = QImage(size, image_format);
    paint_layer_preview(m_image, *m_layer);
    m_need_update = false;
    ++m_repaints;
    update();
}

void LayerPreviewImage::cleanup() {
    m_image = QImage();
    m_layer.reset();
    m_need_update = true;
}

void LayerPreviewImage::paintEvent(QPaintEvent*) {
    if (m_need_update) update_image_cache();
    if (m_image.isNull()) return;
    QPainter(this).drawImage(0, 0, m_image);
}

// ---------------------------------------------------------------- a row

void ScrollList::list_item::updateFromLayer(const pointer<app_layer>& layer) {
    if (!layer) return;
    if (visible && visible->isChecked() == layer->is_hidden())
        visible->set_checked(!layer->is_hidden());
    QString columns_text = "N/A", rows_text = "N/A";
    if (auto boxes = std::dynamic_pointer_cast<boxes_layer>(layer)) {
        columns_text = QString::asprintf("%.2f", double(boxes->get_full_columns()));
        rows_text = QString::asprintf("%.2f", double(boxes->get_full_rows()));
    }
    set_text_if_changed(columns, columns_text);
    set_text_if_changed(rows, rows_text);
    set_text_if_changed(width, QString::number(layer->get_width()));
    set_text_if_changed(height, QString::number(layer->get_height()));
}

void ScrollList::list_item::set_visible(bool shown) {
    if (row) row->setVisible(shown);
    if (picture) {
        picture->setVisible(shown);
        if (!shown) picture->cleanup();
    }
}

// ---------------------------------------------------------------- the list

ScrollList::ScrollList(QWidget* parent, Global* global, bool isLayerList)
    : QWidget(parent), m_is_layer_list(isLayerList), m_global(global), m_up_icon(arrow_icon(true)),
      m_down_icon(arrow_icon(false)) {
    setObjectName(isLayerList ? "layer_rows" : "preset_rows");
    look::set_text_color(this, look::text);
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(5, 5, 0, 5);
    m_layout->setSpacing(0);
    m_layout->addStretch(1);
}

const pointer_array<app_layer>& ScrollList::layers() const {
    static const pointer_array<app_layer> none;
    if (!m_is_layer_list) return m_global->get_presets();
    project* p = m_global->current_project();
    return p ? p->layers : none;
}

long long ScrollList::get_layer_index(const app_layer* layer) const {
    if (!layer) return -1;
    const auto& array = layers();
    for (std::size_t i = 0; i < array.size(); ++i)
        if (array[i].get() == layer) return (long long)i;
    return -1;
}

long long ScrollList::child_layer_index(const QWidget* widget) const {
    for (const auto& [key, item] : m_items)
        if (widget && (widget == item->picture || widget == item->row || widget == item->clickable))
            return get_layer_index(key);
    return -1;
}

ScrollList::list_item* ScrollList::item_of(const app_layer* layer) const {
    const auto it = m_items.find(layer);
    if (it == m_items.end() || it->second->key.expired()) return nullptr;
    return it->second.get();
}

std::vector<ScrollList::list_item*> ScrollList::shown_items() const {
    std::vector<list_item*> shown;
    for (QWidget* row : m_order)
        for (const auto& [key, item] : m_items)
            if (item->row == row) shown.push_back(item.get());
    return shown;
}

ScrollList::list_item* ScrollList::get_contained_item(long long index) {
    const auto& array = layers();
    if (index < 0 || index >= (long long)array.size()) return nullptr;
    const pointer<app_layer>& layer = array[std::size_t(index)];
    item_pointer& slot = m_items[layer.get()];
    if (slot && slot->row && slot->key.lock() != layer) {
        // A new layer at the address of one that is gone: the row is taken
        // over, and is new to this layer.
        slot->key = layer;
    }
    if (!slot || !slot->row) {
        slot = std::make_shared<list_item>();
        list_item* item = slot.get();
        item->key = layer;
        item->row = new WidgetWithBackground(this, row_normal, row_hover, row_selected, m_global);
        // It fills all of itself: nothing under it needs painting.
        item->row->setAttribute(Qt::WA_OpaquePaintEvent);
        auto* row_layout = new QHBoxLayout(item->row);
        row_layout->setContentsMargins(0, 0, 0, 0);
        row_layout->setSpacing(0);
        auto* body = new row_body(item->row, m_global);
        item->clickable = body;
        auto* grid = new QGridLayout(item->clickable);
        grid->setContentsMargins(0, 0, 0, 0);
        grid->setSpacing(0);
        // A little air between a caption and its value.
        grid->setHorizontalSpacing(6);
        grid->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        QLabel** values[] = {&item->width, &item->height, &item->columns, &item->rows};
        const char* captions[] = {"Width", "Height", "Columns", "Rows"};
        for (int i = 0; i < 4; ++i) {
            grid->addWidget(body->add_label(captions[i]), i, 0);
            *values[i] = body->add_label(QString());
            grid->addWidget(*values[i], i, 1);
        }
        // It sets the width of the values' column.
        item->rows->setFixedSize(50, 16);
        finish_new(item, index);
        item->picture = new LayerPreviewImage(item->row, m_global);
        row_layout->addWidget(item->clickable, 1);
        row_layout->addWidget(item->picture, 0, Qt::AlignTop);
        on_init_contained_item(item, index);
    }
    update(slot.get(), index);
    return slot.get();
}

void ScrollList::update_children() {
    const long long n = (long long)layers().size();
    std::vector<QWidget*> order(std::size_t(n), nullptr);
    for (long long i = 0; i < n; ++i) {
        list_item* item = get_contained_item(i);
        // Cannot happen: every element has just been given its row.
        if (!item) throw std::logic_error("list row missing (-2)");
        order[std::size_t(m_is_layer_list ? n - 1 - i : i)] = item->row;
    }
    if (order == m_order) return;
    for (QWidget* row : m_order)
        m_layout->removeWidget(row);
    for (std::size_t i = 0; i < order.size(); ++i)
        m_layout->insertWidget(int(i), order[i]);
    m_order = std::move(order);
}

void ScrollList::syncFromGlobal() {
    const auto& array = layers();
    const long long n = (long long)array.size();
    // Rows whose layer left the array are hidden and give up their picture,
    // until the layer comes back.
    for (auto& [key, item] : m_items)
        if (item->row && get_layer_index(key) < 0) item->set_visible(false);
    update_children();
    const pointer<app_layer> current = m_global->current_layer();
    for (long long i = 0; i < n; ++i) {
        list_item* item = get_contained_item(i);
        const pointer<app_layer>& layer = array[std::size_t(i)];
        if (item->row->isHidden()) item->row->show();
        if (item->picture->isHidden()) item->picture->show();
        item->picture->setLayer(layer);
        item->updateFromLayer(layer);
        if (m_is_layer_list) item->row->QWidget::update();
    }
    // One picture per shown row, painted once per sync.
    for (auto& [key, item] : m_items)
        if (item->picture) item->picture->update_image_cache();
    m_last_selected = m_global->get_current_layer_id();
    updateGeometry();
    QWidget::update();
}

void ScrollList::removeAll() {
    for (auto& [key, item] : m_items)
        item->set_visible(false);
}

void ScrollList::layer_set_need_update_and_redraw(const app_layer* layer) {
    if (list_item* item = item_of(layer))
        if (item->picture && item->picture->layer() == layer) item->picture->set_need_update();
}

bool ScrollList::is_item_selected(const QWidget* item) const {
    return item && item == selected_item();
}

bool ScrollList::is_item_hover(const QWidget* item) const {
    return item && item == m_hover;
}

void ScrollList::on_item_hover(QWidget* item) {
    if (item == m_hover) return;
    if (m_hover) m_hover->update();
    m_hover = item;
    if (m_hover) m_hover->update();
}

void ScrollList::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    on_item_hover(nullptr);
}

// ---------------------------------------------------------------- layers

QWidget* W_LayerScrollList::selected_item() const {
    const pointer<app_layer> current = m_global->current_layer();
    list_item* item = current ? item_of(current.get()) : nullptr;
    return item ? item->row : nullptr;
}

namespace {
// The selection of the canvas beside the list, if there is one.
selection_tool* selection_of(const QWidget* list) {
    MainScreen* screen = MainScreen::of(const_cast<QWidget*>(list));
    return screen && screen->main_impact() ? &screen->main_impact()->selection() : nullptr;
}
} // namespace

bool W_LayerScrollList::is_item_marked(const QWidget* item) const {
    const selection_tool* tool = selection_of(this);
    const long long index = tool ? child_layer_index(item) : -1;
    return index >= 0 && tool->screens().contains(index);
}

bool W_LayerScrollList::select(long long index) {
    // Ctrl+click adds the screen to the selection or takes it out; the
    // current layer stays.
    selection_tool* tool = selection_of(this);
    if (tool && (modifier_groups(QGuiApplication::keyboardModifiers()) & keys::group_b))
        tool->toggle(index);
    else
        m_global->host().set_current_layer_to(*m_global, index, true);
    return false;
}

void W_LayerScrollList::finish_new(list_item* item, long long index) {
    auto* grid = static_cast<QGridLayout*>(item->clickable->layout());
    item->visible = new CheckboxWithFocus(item->clickable, "Visible");
    // A hidden layer stays hidden in its new row (an opened project's).
    const pointer<app_layer> layer = m_global->get_layer(index);
    item->visible->setChecked(!layer || !layer->is_hidden());
    use_cached_style(item->visible);
    item->visible->set_callback([this, item](bool checked) {
        if (pointer<app_layer> layer = m_global->get_layer(item->index))
            layer->set_hidden(!checked);
    });
    grid->addWidget(item->visible, 4, 0);
    // A blank that only keeps its room: hidden, it costs no paint.
    auto* blank = new NOP(item->clickable, 20, 20);
    QSizePolicy policy = blank->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    blank->setSizePolicy(policy);
    blank->hide();
    grid->addWidget(blank, 4, 1);
    item->up = new QPushButton(item->clickable);
    item->down = new QPushButton(item->clickable);
    item->up->setObjectName("up");
    item->down->setObjectName("down");
    item->up->setIcon(m_up_icon);
    item->down->setIcon(m_down_icon);
    for (QPushButton* b : {item->up, item->down}) {
        b->setFixedSize(28, 20);
        b->setFocusPolicy(Qt::NoFocus);
        use_cached_style(b);
    }
    grid->addWidget(item->up, 5, 0, Qt::AlignLeft);
    grid->addWidget(item->down, 5, 1, Qt::AlignLeft);
    // The index is read when the button is pressed: the row follows its
    // layer wherever the stack has moved it.
    connect(item->up, &QPushButton::clicked, this,
            [this, item] { m_global->move_layer_to_visual_top_by_1(item->index); });
    connect(item->down, &QPushButton::clicked, this,
            [this, item] { m_global->move_layer_to_visual_bottom_by_1(item->index); });
    item->clickable->set_callback([this, item] { return select(item->index); });
}

void W_LayerScrollList::update(list_item* item, long long index) {
    item->index = index;
}

void W_LayerScrollList::on_init_contained_item(list_item* item, long long) {
    static const int group = next_drag_group();
    const ClickableWidget::handler swap = [this](ClickableWidget* entered,
                                                 ClickableWidget* dragged) {
        const long long at = child_layer_index(entered), from = child_layer_index(dragged);
        if (at < 0 || from < 0) return false;
        if (!m_global->move_layer_to_visual(from, at)) return false;
        updateGeometry();
        QWidget::update();
        return true;
    };
    item->picture->set_callback([this, item] { return select(item->index); });
    for (ClickableWidget* w :
         {(ClickableWidget*)item->picture, item->clickable, (ClickableWidget*)item->row}) {
        w->set_drag_group(group);
        w->set_swap_handler(swap);
    }
}

// ---------------------------------------------------------------- presets

void W_PresetScrollList::finish_new(list_item* item, long long) {
    auto* grid = static_cast<QGridLayout*>(item->clickable->layout());
    item->clone = new QPushButton("Clone", item->clickable);
    item->up = new QPushButton("-", item->clickable);
    item->up->setToolTip("Delete this preset.");
    for (QPushButton* b : {item->clone, item->up}) {
        b->setFixedSize(50, 22);
        b->setFocusPolicy(Qt::NoFocus);
        use_cached_style(b);
    }
    grid->addWidget(item->clone, 4, 0, Qt::AlignLeft);
    grid->addWidget(item->up, 4, 1, Qt::AlignLeft);
    connect(item->clone, &QPushButton::clicked, this, [this, item] {
        try {
            m_global->clone_preset_to_layers(item->index);
        } catch (const std::exception& e) {
            // A preset that cannot become a layer leaves the project as it was.
            m_global->show_error(e.what());
        }
    });
    connect(item->up, &QPushButton::clicked, this,
            [this, item] { m_global->delete_preset(item->index); });
}

void W_PresetScrollList::update(list_item* item, long long index) {
    item->index = index;
}

} // namespace Vantora_TesserinePro
