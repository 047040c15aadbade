#pragma once
// The top-level window: holds the main screen, asks before it closes and
// remembers its place.

#include <QRectF>
#include <QWidget>

namespace Vantora_TesserinePro {

class application;
class MainScreen;

class main_window : public QWidget {
  public:
    explicit main_window(application* app);
    ~main_window() override;

    MainScreen* main_screen() const { return m_main_screen; }
    // Builds the widget tree and places the window at its first rectangle
    // (it shows with the first file request).
    void create_main_window();
    // The rectangle of m_rectangleInitialRateOrSize on the primary screen.
    QRect initial_geometry() const;

    // Left, top, right, bottom: parts of the screen when all lie within 0
    // to 1, pixels otherwise.
    QRectF m_rectangleInitialRateOrSize{QPointF(0.05, 0.05), QPointF(0.89, 0.89)};
    // True once the widget tree stands; until then a move or resize saves
    // nothing.
    bool created = false;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    application* m_app;
    MainScreen* m_main_screen;
};

} // namespace Vantora_TesserinePro
