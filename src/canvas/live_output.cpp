#include "canvas/live_output.h"

#include "app/application.h"
#include "canvas/live_show.h"
#include "canvas/main_impact.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

namespace Vantora_TesserinePro {

LiveOutputScreen::LiveOutputScreen(QWidget* window, Global* workspace)
    : QWidget(window), m_workspace(workspace) {
    setObjectName("LiveOutputScreen");
    m_canvas = new MainImpact(workspace, this);
    m_canvas->set_live_output(true);
    m_canvas->setGeometry(rect());
    setVisible(true);
}

void LiveOutputScreen::resizeEvent(QResizeEvent*) {
    m_canvas->setGeometry(0, 0, width(), height());
}

live_output_window::live_output_window(Global* workspace)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint), m_workspace(workspace) {
    setWindowTitle("Tesserine LED Pro Live Output");
    m_screen = new LiveOutputScreen(this, workspace);
}

MainImpact* live_output_window::canvas() const {
    return m_screen->canvas();
}

void live_output_window::place_on(const QRect& monitor) {
    setGeometry(monitor);
    m_screen->setGeometry(0, 0, monitor.width(), monitor.height());
    show();
    // Some window managers place a new window by their own rules: insist.
    if (geometry() != monitor) setGeometry(monitor);
    raise();
}

void live_output_window::closeEvent(QCloseEvent* event) {
    event->ignore();
}

void live_output_window::keyPressEvent(QKeyEvent* event) {
    live_show* shown = canvas()->shown();
    if (shown && live_show_key(*shown, event->key())) return;
    QWidget::keyPressEvent(event);
}

void live_output_window::resizeEvent(QResizeEvent*) {
    m_screen->setGeometry(0, 0, width(), height());
}

std::vector<int> get_live_output_monitors(const QWidget* main_window) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    // The monitor that best holds the main window: the largest overlap.
    int best = -1;
    long long best_area = -1;
    if (main_window) {
        const QRect frame = main_window->frameGeometry();
        for (int i = 0; i < screens.size(); ++i) {
            const QRect overlap = frame & screens[i]->geometry();
            const long long area =
                overlap.isEmpty() ? 0 : (long long)overlap.width() * overlap.height();
            if (area > best_area) {
                best_area = area;
                best = i;
            }
        }
    }
    std::vector<int> monitors;
    for (int i = 0; i < screens.size(); ++i)
        if (i != best) monitors.push_back(i);
    return monitors;
}

void show_live_output(Global& workspace, nano2d::draw2d_context& main_context, long long monitor,
                      live_show* shown) {
    application* app = application::instance();
    if (!app) return;
    live_output_window* window = app->live_output_window_pointer.get();
    if (monitor < 0) {
        if (!window) return;
        window->hide();
        return;
    }
    const QList<QScreen*> screens = QGuiApplication::screens();
    if (monitor >= screens.size()) return;
    QScreen* screen = screens[int(monitor)];
    if (!window) {
        app->live_output_window_pointer = std::make_unique<live_output_window>(&workspace);
        window = app->live_output_window_pointer.get();
        // One set of image handles for both canvases.
        window->canvas()->drawing_context().set_font_sink(main_context.get_font_sink());
        window->winId();
    }
    window->canvas()->set_show(shown);
    if (QWindow* handle = window->windowHandle()) handle->setScreen(screen);
    window->place_on(screen->geometry());
    window->canvas()->update();
}

} // namespace Vantora_TesserinePro
