#pragma once
// A running window as the program starts it: the application, its main
// window with the main screen and a new workspace, in a data folder of the
// test program's own that every test starts empty.

#include "app/application.h"
#include "app/main_screen.h"
#include "app/main_window.h"
#include "app/start_steps.h"
#include "canvas/main_impact.h"
#include "core/data_folder.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace Vantora_TesserinePro::testing {

inline void empty_data_folder() {
    QDir(QString::fromStdString(folder_to_save_data().string())).removeRecursively();
    ensure_data_folder();
}

// Lets the event loop run until ready() holds or the deadline passes.
inline bool wait_until(const std::function<bool()>& ready, int deadline_ms = 5000) {
    QElapsedTimer timer;
    timer.start();
    while (!ready()) {
        if (timer.elapsed() > deadline_ms) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QTest::qWait(5);
    }
    return true;
}

// The open message box of that name among all windows, or null.
inline QMessageBox* open_box(const char* name) {
    for (QWidget* w : QApplication::topLevelWidgets())
        for (QMessageBox* box : w->findChildren<QMessageBox*>(name))
            if (box->isVisible()) return box;
    return nullptr;
}
// Clicks the button of that caption in a message box.
inline void answer(QMessageBox* box, const char* caption) {
    for (QAbstractButton* b : box->buttons())
        if (b->text() == caption) QTest::mouseClick(b, Qt::LeftButton);
}

// A move of the mouse with a button held (QTest's own move holds none).
inline void move_holding(QWidget* w, QPoint at, Qt::KeyboardModifiers held = Qt::NoModifier,
                         Qt::MouseButton button = Qt::LeftButton) {
    QMouseEvent e(QEvent::MouseMove, QPointF(at), w->mapToGlobal(QPointF(at)), Qt::NoButton,
                  button, held);
    QCoreApplication::sendEvent(w, &e);
}

struct window_test : ::testing::Test {
    std::unique_ptr<application> app;
    main_window* window = nullptr;
    MainScreen* screen = nullptr;
    Global* global = nullptr;
    MainImpact* canvas = nullptr;

    // Starts the program as with no file; a test may set up the data
    // folder first and call it itself.
    void start(const std::string& file = {}) {
        app = std::make_unique<application>();
        app->init_instance();
        app->on_request(file);
        window = app->get_main_window();
        screen = window->main_screen();
        global = &screen->global();
        canvas = screen->main_impact();
        screen->set_quit_handler([this] { ++quits; });
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
        // And what the window does once it shows (the lists, the menu).
        ASSERT_TRUE(wait_until([this] { return !start_steps::waiting(window); }));
    }
    void SetUp() override { empty_data_folder(); }
    void TearDown() override {
        app.reset();
        QCoreApplication::processEvents();
    }
    // The canvas as it shows now (a paint of it).
    QImage canvas_pixels() { return canvas->grab().toImage(); }

    int quits = 0;
};

} // namespace Vantora_TesserinePro::testing
