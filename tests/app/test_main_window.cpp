// Start and stop of the program: the window's first rectangle, the settings
// file, the file request and the quit question.

#include "app/settings_file.h"
#include "support/test_support.h"
#include "window/window_fixture.h"

#include <QGuiApplication>
#include <QJsonObject>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct startup : window_test {
    file::path settings() const { return folder_to_save_data() / "settings.network_payload"; }
    void write_settings(double l, double t, double r, double b) {
        QJsonObject o;
        o["main_window_left"] = l;
        o["main_window_top"] = t;
        o["main_window_right"] = r;
        o["main_window_bottom"] = b;
        ASSERT_TRUE(write_settings_object(settings(), o));
    }
    // The rectangle of the first showing, as parts of the screen.
    QRectF first_rectangle() {
        application probe;
        main_window w(&probe);
        if (probe.load_settings()) w.m_rectangleInitialRateOrSize = probe.initial_rectangle;
        return w.m_rectangleInitialRateOrSize;
    }
    static QMessageBox* open_box(const char* name) {
        for (QWidget* w : QApplication::topLevelWidgets())
            for (QMessageBox* box : w->findChildren<QMessageBox*>(name))
                if (box->isVisible()) return box;
        return nullptr;
    }
    static void answer(QMessageBox* box, const char* caption) {
        for (QAbstractButton* b : box->buttons())
            if (b->text() == caption) QTest::mouseClick(b, Qt::LeftButton);
    }
};

} // namespace

TEST_F(startup, FirstStartTakesTheMiddleOfTheScreenAndANewWorkspace) {
    EXPECT_EQ(first_rectangle(), QRectF(QPointF(0.05, 0.05), QPointF(0.89, 0.89)));
    start();
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_NEAR(window->geometry().left(), area.width() * 0.05, 1.0);
    EXPECT_NEAR(window->geometry().right(), area.width() * 0.89, 1.0);
    EXPECT_EQ(global->get_layers_count(), 1);
    EXPECT_EQ(global->get_current_layer_id(), 0);
    EXPECT_EQ(global->get_presets_count(), 9); // the built-in catalogue
}

TEST_F(startup, SettingsRectangleRules) {
    struct row {
        double l, t, r, b;
        QRectF expected;
    };
    const QRectF small(QPointF(0.05, 0.05), QPointF(0.4, 0.4));
    const row rows[] = {
        {0.05, 0.05, 0, 0.89, small},                                     // right missing
        {0.05, 0.05, 0.14, 0.14, small},                                  // area 0.0081
        {0, 0, 0.2, 0.2, QRectF(QPointF(0, 0), QPointF(0.2, 0.2))},       // area 0.04 stays
        {100, 50, 900, 650, QRectF(QPointF(100, 50), QPointF(900, 650))}, // pixels
    };
    for (const row& r : rows) {
        write_settings(r.l, r.t, r.r, r.b);
        EXPECT_EQ(first_rectangle(), r.expected) << r.l << " " << r.t << " " << r.r << " " << r.b;
    }
    // Keys that are missing read as 0: the small rectangle.
    ASSERT_TRUE(write_settings_object(settings(), QJsonObject{{"main_window_left", 10}}));
    EXPECT_EQ(first_rectangle(), small);
    // A broken file is no file.
    ASSERT_TRUE(write_file(settings().string(), "{ not json"));
    EXPECT_EQ(first_rectangle(), QRectF(QPointF(0.05, 0.05), QPointF(0.89, 0.89)));

    write_settings(100, 50, 900, 650);
    start();
    EXPECT_EQ(window->geometry(), QRect(100, 50, 800, 600));
}

TEST_F(startup, FileRequestsOpenAProjectOrFallBackOnANewWorkspace) {
    // A project of two layers whose top one was current when it was saved.
    {
        Global g;
        g.load_default_layers();
        g.new_boxes_layer();
        g.set_current_layer_index(1);
        ASSERT_TRUE(g.save_project_to_file(folder_to_save_data() / "two.tsrx"));
    }
    const std::string two = (folder_to_save_data() / "two.tsrx").string();
    start(two);
    EXPECT_EQ(global->get_layers_count(), 2);
    EXPECT_EQ(global->get_current_layer_id(), 0); // the request selects the bottom

    global->new_boxes_layer();
    app->on_request((folder_to_save_data() / "missing.tsrx").string());
    EXPECT_EQ(global->get_layers_count(), 1); // a new workspace, without a word
    EXPECT_EQ(app->get_main_window(), window);

    // A broken project is said so, and a new workspace stands.
    ASSERT_TRUE(write_file((folder_to_save_data() / "bad.tsrx").string(),
                           "TESSERINE_LED_PROJECT v2 1 0\n1 20\nBoxColors:nonsense\n"));
    app->on_request((folder_to_save_data() / "bad.tsrx").string());
    EXPECT_EQ(global->get_layers_count(), 1);
    EXPECT_TRUE(wait_until([] { return open_box("error") != nullptr; }));
}

TEST_F(startup, ClosingAsksAndOnlyYesEndsTheProgram) {
    start();
    window->close();
    QMessageBox* box = nullptr;
    ASSERT_TRUE(wait_until([&] { return (box = open_box("quit")) != nullptr; }));
    EXPECT_EQ(box->windowTitle(), "Quit");
    EXPECT_EQ(box->text(), "Are you sure ?");
    EXPECT_TRUE(window->isVisible());
    answer(box, "No");
    ASSERT_TRUE(wait_until([] { return open_box("quit") == nullptr; }));
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(window->isVisible());

    screen->on_close();
    screen->on_close(); // one question at a time
    ASSERT_TRUE(wait_until([&] { return (box = open_box("quit")) != nullptr; }));
    answer(box, "Yes");
    EXPECT_TRUE(wait_until([&] { return quits == 1; }));
}
