#pragma once
// The rows of the right panel's two lists: one row per layer (or preset)
// with its live picture, its size and its controls. Rows are keyed by the
// layer object, so a row stays with its layer when the stack moves, and
// are made once, hidden and reused, never destroyed while the list lives.

#include "core/types.h"
#include "panels/widgets/clickable_widget.h"

#include <QIcon>
#include <QImage>
#include <QWidget>

#include <map>
#include <memory>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Vantora_TesserinePro {

class Global;
class app_layer;
class CheckboxWithFocus;

// Paints a layer's small picture into target: its cells, the grid or its
// image, then the banner with the centred name.
void paint_layer_preview(QImage& target, const app_layer& layer);

// A layer's 140 by 85 picture. It paints into its own image, and only
// when the list syncs or its layer asks for it; a paint of the widget
// only shows that image.
class LayerPreviewImage : public ClickableWidget {
  public:
    static constexpr int preview_width = 140, preview_height = 85;

    LayerPreviewImage(QWidget* parent, Global* global);

    void setLayer(const pointer<app_layer>& layer);
    const app_layer* layer() const { return m_layer.get(); }
    void update_image_cache();
    // Lets go of the picture and of the layer.
    void cleanup();
    // The layer asked for a new picture: painted at the next paint.
    void set_need_update() {
        m_need_update = true;
        update();
    }
    const QImage& image() const { return m_image; }
    // How many times the picture was painted (for tests and benchmarks).
    long long repaints() const { return m_repaints; }
    QSize sizeHint() const override { return {preview_width, preview_height}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QImage m_image;
    pointer<app_layer> m_layer;
    bool m_need_update = true;
    long long m_repaints = 0;
};

class ScrollList : public QWidget, public item_container {
  public:
    // One row. Fields are rewritten at each sync from the layer.
    struct list_item {
        long long index = -1;
        QLabel* width = nullptr;
        QLabel* height = nullptr;
        QLabel* rows = nullptr;
        QLabel* columns = nullptr;
        CheckboxWithFocus* visible = nullptr;
        // In a preset row, up holds its "-" and down is null.
        QPushButton* up = nullptr;
        QPushButton* down = nullptr;
        QPushButton* clone = nullptr;
        ClickableWidget* clickable = nullptr;
        WidgetWithBackground* row = nullptr;
        LayerPreviewImage* picture = nullptr;
        // The object the key stood for: a new layer may later come to the
        // same address.
        std::weak_ptr<app_layer> key;

        void updateFromLayer(const pointer<app_layer>& layer);
        void set_visible(bool visible);
    };
    using item_pointer = std::shared_ptr<list_item>;

    ScrollList(QWidget* parent, Global* global, bool isLayerList);
    using QWidget::update;

    void syncFromGlobal();
    void update_children();
    list_item* get_contained_item(long long index);
    void removeAll();
    long long get_layer_index(const app_layer* layer) const;
    long long child_layer_index(const QWidget* widget) const;
    // The layer wants its picture painted anew.
    void layer_set_need_update_and_redraw(const app_layer* layer);

    bool is_layer_list() const { return m_is_layer_list; }
    // The row of a layer, made or not; null when it has none.
    list_item* item_of(const app_layer* layer) const;
    // The rows in the order shown, top first.
    std::vector<list_item*> shown_items() const;
    std::size_t rows_made() const { return m_items.size(); }

    // --- item container
    virtual QWidget* selected_item() const { return nullptr; }
    QWidget* hover_item() const { return m_hover; }
    bool is_item_selected(const QWidget* item) const override;
    bool is_item_hover(const QWidget* item) const override;
    void on_item_hover(QWidget* item) override;

  protected:
    virtual void on_init_contained_item(list_item*, long long) {}
    virtual void finish_new(list_item*, long long) {}
    virtual void update(list_item*, long long) {}
    void leaveEvent(QEvent* event) override;

    const pointer_array<app_layer>& layers() const;

    bool m_is_layer_list;
    Global* m_global;
    QWidget* m_hover = nullptr;
    long long m_last_selected = -1;
    std::map<const app_layer*, item_pointer> m_items;
    QIcon m_up_icon, m_down_icon;

  private:
    QVBoxLayout* m_layout;
    // The rows in the layout now, top first, to leave it alone when the
    // order did not change.
    std::vector<QWidget*> m_order;
};

class W_LayerScrollList : public ScrollList {
  public:
    W_LayerScrollList(QWidget* parent, Global* global) : ScrollList(parent, global, true) {}
    QWidget* selected_item() const override;
    bool is_item_marked(const QWidget* item) const override;

  protected:
    // A click on a row: it becomes current, or with Ctrl joins or leaves
    // the selection.
    bool select(long long index);
    void on_init_contained_item(list_item* item, long long index) override;
    void finish_new(list_item* item, long long index) override;
    void update(list_item* item, long long index) override;
};

class W_PresetScrollList : public ScrollList {
  public:
    W_PresetScrollList(QWidget* parent, Global* global) : ScrollList(parent, global, false) {}

  protected:
    void finish_new(list_item* item, long long index) override;
    void update(list_item* item, long long index) override;
};

} // namespace Vantora_TesserinePro
