#include "app/start_steps.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>
#include <deque>

namespace Vantora_TesserinePro::start_steps {

void trace(const char* step) {
    static const bool on = !qEnvironmentVariableIsEmpty("TESSERINE_START_TRACE");
    if (!on) return;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    std::fprintf(stderr, "start-trace %s %lld\n", step,
                 (long long)std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
    std::fflush(stderr);
}

namespace {

// Watches the paints of one window until its first, then hands out the
// waiting work a piece per turn of the event loop.
class first_paint : public QObject {
  public:
    static constexpr const char* name = "start_steps_first_paint";
    explicit first_paint(QWidget* window) : QObject(window), m_window(window) {
        setObjectName(name);
        qApp->installEventFilter(this);
    }
    bool waiting() const { return !m_waiting.empty(); }
    void add(std::function<void()> work) {
        m_waiting.push_back(std::move(work));
        if (m_painted && m_waiting.size() == 1) next();
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        // The paints of one pass reach every widget of the window before its
        // pixels go to the screen; the timer fires after that.
        auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Paint && !m_painted && widget &&
            widget->window() == m_window) {
            m_painted = true;
            qApp->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] {
                trace("first-paint");
                next();
            });
        }
        return false;
    }

  private:
    void next() {
        QTimer::singleShot(0, this, [this] {
            if (m_waiting.empty()) return;
            const std::function<void()> work = std::move(m_waiting.front());
            work();
            m_waiting.pop_front();
            if (m_waiting.empty())
                trace("settled");
            else
                next();
        });
    }

    QWidget* m_window;
    bool m_painted = false;
    std::deque<std::function<void()>> m_waiting;
};

} // namespace

namespace {
first_paint* watch_of(QWidget* window) {
    return static_cast<first_paint*>(
        window->findChild<QObject*>(first_paint::name, Qt::FindDirectChildrenOnly));
}
} // namespace

void after_first_paint(QWidget* window, std::function<void()> work) {
    first_paint* watch = watch_of(window);
    if (!watch) watch = new first_paint(window);
    watch->add(std::move(work));
}

bool waiting(QWidget* window) {
    const first_paint* watch = watch_of(window);
    return watch && watch->waiting();
}

} // namespace Vantora_TesserinePro::start_steps
