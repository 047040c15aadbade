// Start and stop of the program: the window's first rectangle, the settings
// file, the file request, the quit question and crash recovery.

#include "app/recovery_controller.h"
#include "app/settings_file.h"
#include "support/test_support.h"
#include "window/window_fixture.h"

#include <QFileDialog>
#include <QJsonObject>
#include <QLockFile>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct startup : window_test {
    file::path settings() const { return folder_to_save_data() / "settings.network_payload"; }
    void write_settings(double l, double t, double r, double b) {
        ASSERT_TRUE(write_settings_object(settings(), QJsonObject{{"main_window_left", l},
                                                                  {"main_window_top", t},
                                                                  {"main_window_right", r},
                                                                  {"main_window_bottom", b}}));
    }
    // The rectangle of the first showing, as parts of the screen.
    QRectF first_rectangle() {
        application probe;
        main_window w(&probe);
        if (probe.load_settings()) w.m_rectangleInitialRateOrSize = probe.initial_rectangle;
        return w.m_rectangleInitialRateOrSize;
    }
};

} // namespace

TEST_F(startup, TheWindowOpensWhereItWasOrInTheMiddleOfTheScreen) {
    // No settings file: the middle of the screen (where the first-start
    // places of the palettes are tested).
    EXPECT_EQ(first_rectangle(), QRectF(QPointF(0.05, 0.05), QPointF(0.89, 0.89)));
    // Too small a rectangle gives a small one; a broken file is no file.
    write_settings(0.05, 0.05, 0.14, 0.14);
    EXPECT_EQ(first_rectangle(), QRectF(QPointF(0.05, 0.05), QPointF(0.4, 0.4)));
    ASSERT_TRUE(write_file(settings().string(), "{ not json"));
    EXPECT_EQ(first_rectangle(), QRectF(QPointF(0.05, 0.05), QPointF(0.89, 0.89)));
    // A rectangle in pixels is taken as it is.
    write_settings(100, 50, 1500, 950);
    start();
    EXPECT_EQ(window->geometry(), QRect(100, 50, 1400, 900));
    // The first view shows the whole raster, clear of the lists and of
    // every palette shown.
    const QRect raster(canvas->get_pan(), QSize(1920, 1080) * canvas->get_effective_zoom());
    EXPECT_TRUE(canvas->rect().contains(raster));
    for (const QWidget* over : screen->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        EXPECT_FALSE(over != canvas && over->isVisible() &&
                     over->geometry().translated(-canvas->pos()).intersects(raster))
            << over->objectName().toStdString();
}

TEST_F(startup, FileRequestsOpenAProjectOrFallBackOnANewWorkspace) {
    start();
    // A project of two layers whose top one was current when it was saved.
    global->new_boxes_layer();
    global->set_current_layer_index(1);
    const std::string two = (folder_to_save_data() / "two.tsrx").string();
    ASSERT_TRUE(global->save_project_to_file(two));
    app->on_request(two);
    EXPECT_EQ(global->get_layers_count(), 2);
    EXPECT_EQ(global->get_current_layer_id(), 0); // the request selects the bottom
    app->on_request((folder_to_save_data() / "missing.tsrx").string());
    EXPECT_EQ(global->get_layers_count(), 1); // a new workspace, without a word
    EXPECT_EQ(app->get_main_window(), window);
}

TEST_F(startup, ClosingAsksAndOnlyYesEndsTheProgram) {
    start();
    window->close();
    screen->on_close(); // one question at a time
    QMessageBox* box = nullptr;
    ASSERT_TRUE(wait_until([&] { return (box = open_box("quit")) != nullptr; }));
    EXPECT_EQ(box->text(), "Are you sure ?");
    answer(box, "No");
    ASSERT_TRUE(wait_until([] { return open_box("quit") == nullptr; }));
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(window->isVisible());
    screen->on_close();
    ASSERT_TRUE(wait_until([&] { return (box = open_box("quit")) != nullptr; }));
    answer(box, "Yes");
    EXPECT_TRUE(wait_until([&] { return quits == 1; }));
}

TEST_F(startup, AutosaveWritesUnsavedWorkUntilSaved) {
    qputenv("TESSERINE_AUTOSAVE_SECONDS", "0.05");
    start();
    qunsetenv("TESSERINE_AUTOSAVE_SECONDS");
    recovery_store& store = screen->recovery()->store();
    const QString data = QString::fromStdString(store.data_path().string());
    const std::string saved = (folder_to_save_data() / "saved.tsrx").string();
    global->current_boxes_layer()->set_offset_x(77);
    ASSERT_TRUE(wait_until([&] { return QFile::exists(data); }));
    store.wait();
    ASSERT_TRUE(global->save_project_to_file(saved + ".bytes"));
    EXPECT_EQ(read_file(data.toStdString()), read_file(saved + ".bytes"));
    // Saved: it goes.
    global->save_project_button();
    auto* dialog = screen->findChild<QFileDialog*>("save_dialog");
    ASSERT_TRUE(dialog);
    dialog->selectFile(QString::fromStdString(saved));
    QMetaObject::invokeMethod(dialog, "accept");
    store.wait();
    EXPECT_FALSE(QFile::exists(data)); // at once, not at the next turn
    // Thrown away on closing, it goes too: the Xvfb run answers "Don't Save".
}

TEST_F(startup, LeftWorkIsOfferedDamagedWorkSetAsideAndARunningProgramsLeftAlone) {
    const QString dir = QString::fromStdString((folder_to_save_data() / "recovery").string());
    const std::string show = (folder_to_save_data() / "show.tsrx").string();
    QDir().mkpath(dir);
    const auto leave = [&](const QString& id, int offset) {
        Global g;
        g.load_default_layers();
        g.current_boxes_layer()->offset_x = offset;
        EXPECT_TRUE(g.save_project_to_file((dir + "/" + id + ".tsrx").toStdString()));
        EXPECT_TRUE(write_file((dir + "/" + id + ".json").toStdString(),
                               "{\"file\": \"" + show + "\", \"suggested\": \"" + show + "\"}"));
        return dir + "/" + id + ".tsrx";
    };
    // One of a program that is gone (no lock), a newer one of a program that runs.
    leave("session-1-1", 77);
    const QString live_data = leave("session-2-2", 55);
    QFile(live_data).setFileTime(QDateTime::currentDateTime().addSecs(60),
                                 QFileDevice::FileModificationTime);
    QLockFile live(dir + "/session-2-2.lock");
    live.setStaleLockTime(0);
    ASSERT_TRUE(live.tryLock(0));
    start();
    QMessageBox* box = nullptr;
    ASSERT_TRUE(wait_until([&] { return (box = open_box("recover")) != nullptr; }));
    EXPECT_TRUE(box->text().startsWith("Recover the unsaved work from "));
    QTest::keyClick(box, Qt::Key_Return);
    ASSERT_TRUE(wait_until([] { return open_box("recover") == nullptr; }));
    EXPECT_EQ(global->current_boxes_layer()->get_offset_x(), 77);
    EXPECT_EQ(window->windowTitle(), "show.tsrx[*] - Tesserine Pro");
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(global->suggested_save_path().string(), show);
    EXPECT_TRUE(QFile::exists(live_data));

    // Cut short: set aside with a message, never offered.
    app.reset();
    const std::string whole = read_file(live_data.toStdString());
    ASSERT_TRUE(write_file((dir + "/session-3-3.tsrx").toStdString(), whole.substr(0, 300)));
    start();
    ASSERT_TRUE(wait_until([] { return open_box("warning") != nullptr; }));
    EXPECT_TRUE(open_box("warning")->text().contains("cannot be recovered"));
    EXPECT_TRUE(QFile::exists(dir + "/damaged-session-3-3.tsrx"));
    EXPECT_EQ(open_box("recover"), nullptr);
    EXPECT_TRUE(QFile::exists(live_data));
}
