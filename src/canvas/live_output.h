#pragma once
// The live output: the frame at one screen pixel to one raster pixel on
// another monitor, in a frameless window that covers it.

#include <QWidget>

#include <vector>

namespace Vantora_TesserinePro {

class Global;
class MainImpact;
class live_show;
namespace nano2d {
class draw2d_context;
}

class LiveOutputScreen : public QWidget {
  public:
    LiveOutputScreen(QWidget* window, Global* workspace);
    MainImpact* canvas() const { return m_canvas; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    Global* m_workspace;
    MainImpact* m_canvas;
};

class live_output_window : public QWidget {
  public:
    explicit live_output_window(Global* workspace);
    LiveOutputScreen* screen_widget() const { return m_screen; }
    MainImpact* canvas() const;
    // Covers monitor's whole area and shows.
    void place_on(const QRect& monitor);

  protected:
    // Left and Right step an identify, Escape ends a pattern or identify.
    void keyPressEvent(QKeyEvent* event) override;
    // A close request does not close it: "No Live Output" hides it.
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    Global* m_workspace;
    LiveOutputScreen* m_screen;
};

// The monitors a live output can go to: every index of the screens but the
// one that holds most of main_window.
std::vector<int> get_live_output_monitors(const QWidget* main_window);

// Shows the frame of workspace on monitor, or hides it for a negative
// monitor. The live output's canvas shares the image handles of
// main_context, the main canvas's, and shows what `shown` chooses (patterns,
// identify) instead of the map.
void show_live_output(Global& workspace, nano2d::draw2d_context& main_context, long long monitor,
                      live_show* shown = nullptr);

} // namespace Vantora_TesserinePro
