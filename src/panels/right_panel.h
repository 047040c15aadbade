#pragma once
// The right-hand panel: the preset list above the layer list, sharing its
// height equally, each a scrolling list of rows over a row of buttons.

#include <QWidget>

class QCheckBox;
class QHBoxLayout;
class QPushButton;
class QScrollArea;

namespace Vantora_TesserinePro {

class Global;
class app_layer;
class ScrollList;

class RightPanelList : public QWidget {
  public:
    RightPanelList(QWidget* parent, Global* global, bool isLayerList);

    void syncFromGlobal();
    ScrollList* list() const { return m_list; }
    QScrollArea* scroll_panel() const { return m_scroll; }
    QWidget* bottom() const { return m_bottom; }

  protected:
    // A button of the bottom row.
    QPushButton* add_button(const QString& caption, const QString& tooltip, int fixed_width = 0);

    Global* m_global;
    // The selected row the list last scrolled to; a new one is brought
    // into view.
    const QWidget* m_scrolled_to = nullptr;
    QScrollArea* m_scroll;
    ScrollList* m_list;
    QWidget* m_bottom;
    QHBoxLayout* m_bottom_layout;
};

class LayerList : public RightPanelList {
  public:
    LayerList(QWidget* parent, Global* global);
    bool isOnlyCurrentChecked() const;
    QCheckBox* draw_current_only_box() const { return m_only_current; }

  private:
    QCheckBox* m_only_current;
};

class PresetList : public RightPanelList {
  public:
    PresetList(QWidget* parent, Global* global);
};

class RightPanel : public QWidget {
  public:
    RightPanel(QWidget* parent, Global* global);

    // Rebuild the rows from the workspace: once per frame at most.
    void syncFromGlobalLayers();
    void syncFromGlobalPresets();
    // How many syncs of the layer list ran.
    int sync_count() const { return m_syncs; }
    // "Draw Current Only": rendering leaves out the cabinets of every
    // screen layer but the current one.
    bool isOnlyCurrentChecked() const;
    bool draw_current_only() const { return isOnlyCurrentChecked(); }
    // Sets the box as the program does: no callback runs.
    void set_draw_current_only(bool value);
    // One layer's row repaints its picture.
    void layer_changed(const app_layer& layer);

    LayerList* layer_list() const { return m_layers; }
    PresetList* preset_list() const { return m_presets; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    Global* m_global;
    PresetList* m_presets;
    LayerList* m_layers;
    int m_syncs = 0;
    // A sync that is running does not start itself again.
    bool m_in_layers_sync = false;
    bool m_in_presets_sync = false;
};

} // namespace Vantora_TesserinePro
