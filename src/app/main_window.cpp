#include "app/main_window.h"

#include "app/application.h"
#include "app/main_screen.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>

namespace Vantora_TesserinePro {

main_window::main_window(application* app) : QWidget(nullptr), m_app(app) {
    setWindowTitle("Tesserine Pro");
    setMinimumSize(400, 300);
    m_main_screen = new MainScreen(this);
}

main_window::~main_window() = default;

QRect main_window::initial_geometry() const {
    const QRectF& r = m_rectangleInitialRateOrSize;
    const bool rates = r.left() >= 0 && r.top() >= 0 && r.right() <= 1 && r.bottom() <= 1;
    QScreen* screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    if (rates)
        return QRect(QPoint(area.x() + int(r.left() * area.width()),
                            area.y() + int(r.top() * area.height())),
                     QPoint(area.x() + int(r.right() * area.width()) - 1,
                            area.y() + int(r.bottom() * area.height()) - 1));
    const QRect pixels = QRectF(r.left(), r.top(), r.width(), r.height()).toRect();
    // A place saved on a monitor that is gone would hide the window.
    for (QScreen* s : QGuiApplication::screens())
        if (s->availableGeometry().intersects(pixels)) return pixels;
    return QRect(QPoint(area.x() + area.width() / 20, area.y() + area.height() / 20),
                 QSize(pixels.width(), pixels.height()).boundedTo(area.size()));
}

void main_window::create_main_window() {
    setGeometry(initial_geometry());
    m_main_screen->setGeometry(rect());
    m_main_screen->create_main_screen();
    created = true;
}

void main_window::closeEvent(QCloseEvent* event) {
    // Closing asks first; "Yes" ends the program.
    event->ignore();
    m_main_screen->on_close();
}

void main_window::moveEvent(QMoveEvent*) {
    if (created && m_app) m_app->request_save_settings();
}

void main_window::resizeEvent(QResizeEvent*) {
    m_main_screen->setGeometry(rect());
    if (created && m_app) m_app->request_save_settings();
}

} // namespace Vantora_TesserinePro
