#pragma once
// The right-hand panel: the preset list above the layer list.

#include <QWidget>

namespace Vantora_TesserinePro {

class Global;
class app_layer;

class RightPanel : public QWidget {
  public:
    RightPanel(QWidget* parent, Global* global);

    // Rebuild the rows from the workspace: once per frame at most.
    void syncFromGlobalLayers();
    void syncFromGlobalPresets();
    int sync_count() const { return m_syncs; }
    // "Draw Current Only": rendering leaves out the cabinets of every
    // screen layer but the current one.
    bool draw_current_only() const { return m_draw_current_only; }
    void set_draw_current_only(bool value) { m_draw_current_only = value; }
    // One layer's row repaints its picture.
    void layer_changed(const app_layer& layer);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Global* m_global;
    int m_syncs = 0;
    bool m_draw_current_only = false;
};

} // namespace Vantora_TesserinePro
