// The floor of a start, for bench/start_time.py: a bare Qt Widgets program
// that shows one window of tesserine's first size, painting one widget, and
// tells when that first paint is done as tesserine does
// ("start-trace first-paint NANOSECONDS" on standard error), then ends.

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>

namespace {

void trace(const char* step) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    std::fprintf(stderr, "start-trace %s %lld\n", step,
                 (long long)std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

class painted : public QWidget {
  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), QColor(0x30, 0x30, 0x34));
        if (m_told) return;
        m_told = true;
        QTimer::singleShot(0, qApp, [] {
            trace("first-paint");
            QCoreApplication::quit();
        });
    }

  private:
    bool m_told = false;
};

} // namespace

int main(int argc, char** argv) {
    trace("main");
    QApplication app(argc, argv);
    trace("qt");
    painted window;
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    window.setGeometry(QRect(
        QPoint(area.x() + area.width() / 20, area.y() + area.height() / 20),
        QPoint(area.x() + int(area.width() * 0.89) - 1, area.y() + int(area.height() * 0.89) - 1)));
    window.show();
    return app.exec();
}
