#pragma once
// The strip under the menu: the three file buttons, the raster size, the
// three switches and the counts.

#include "panels/settings_base_window.h"

#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

namespace Vantora_TesserinePro {

class CheckboxWithFocus;

class TopPanel : public QWidget, public SettingsFromLayer {
  public:
    TopPanel(QWidget* parent, Global* global);

    // Takes nothing from the layer.
    void get_settings_from_layer(const pointer<boxes_layer>&) override {}
    // "Layers Added: %ld, Presets Loaded: %ld".
    void updateCounts(long layers, long presets);
    // The raster fields follow the workspace.
    void updatePaperNumbersVisual();
    // The aspect box shows for image layers only.
    void showHideAspectRatio(bool show);

    QLineEdit* raster_width() const { return m_width; }
    QLineEdit* raster_height() const { return m_height; }
    CheckboxWithFocus* aspect_box() const { return m_aspect; }
    CheckboxWithFocus* black_box() const { return m_black; }
    CheckboxWithFocus* auto_select_box() const { return m_auto; }
    QLabel* counts() const { return m_counts; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    // The raster width or height typed: stored, and the raster label kept
    // at the right or bottom edge.
    void on_raster_width();
    void on_raster_height();
    // The counts on one line, or on two where one would not fit.
    void fit_counts();

    QLineEdit* m_width;
    QLineEdit* m_height;
    QLabel* m_aspect_label;
    CheckboxWithFocus* m_aspect;
    CheckboxWithFocus* m_black;
    CheckboxWithFocus* m_auto;
    QLabel* m_counts;
    QString m_counts_line;
    // The blanks beside the aspect box go and come with it.
    QWidget* m_aspect_blanks[2];
};

} // namespace Vantora_TesserinePro
