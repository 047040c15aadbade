// The main screen: where its widgets stand, the palette layout file,
// palettes by layer type and the keys; the recent projects, file drops and
// the folders the dialogs remember.

#include "app/control_map.h"
#include "app/recent_files.h"
#include "app/settings_file.h"
#include "core/keys.h"
#include "panels/about.h"
#include "panels/look.h"
#include "panels/right_panel.h"
#include "panels/settings_base_window.h"
#include "panels/settings_boxes.h"
#include "panels/settings_power.h"
#include "panels/settings_raster_label.h"
#include "panels/top_panel.h"
#include "support/test_support.h"
#include "window/window_fixture.h"

#include <QDir>
#include <QFileDialog>
#include <QJsonObject>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct screen_test : window_test {
    file::path layout() const { return folder_to_save_data() / "settings_layout.network_payload"; }
    std::vector<QString> titles_shown() const {
        std::vector<QString> shown;
        for (SettingsBaseWindow* p : screen->palettes())
            if (p->isVisible()) shown.push_back(p->title());
        return shown;
    }
};

} // namespace

TEST_F(screen_test, PaletteLayoutFile) {
    start();
    // Keys that are missing give 0 (then below the strips) and hidden.
    ASSERT_TRUE(write_settings_object(layout(), QJsonObject{{"boxes_x", 33},
                                                            {"boxes_y", 144},
                                                            {"boxes_visible", true},
                                                            {"power_visible", true}}));
    ASSERT_TRUE(screen->settings_load_layout());
    screen->update_settings_visibility();
    EXPECT_EQ(screen->settings_boxes()->pos(), QPoint(33, 144));
    EXPECT_EQ(screen->settings_raster_label()->pos(), QPoint(0, 60));
    EXPECT_EQ(titles_shown(), (std::vector<QString>{"Screen Info", "Power"}));

    // Saving writes each palette's place and visibility.
    screen->settings_boxes()->move(5, 6);
    screen->settings_save_layout();
    QJsonObject saved;
    ASSERT_TRUE(read_settings_object(layout(), saved));
    EXPECT_EQ(saved.value("boxes_x").toInt(), 5);
    EXPECT_EQ(saved.value("boxes_y").toInt(), 6);
    EXPECT_TRUE(saved.value("power_visible").toBool());
    EXPECT_FALSE(saved.value("snake_visible").toBool());

    // A show command flips the stored flag and saves the file.
    screen->showDataTools();
    ASSERT_TRUE(read_settings_object(layout(), saved));
    EXPECT_TRUE(saved.value("snake_visible").toBool());
    EXPECT_EQ(titles_shown().size(), 3u);
}

TEST_F(screen_test, FirstStartPalettesLieApartBesideTheCanvasAndTheCountsFit) {
    // The window of a first start on a full HD and on a laptop screen.
    for (const QSize s : {QSize(1920, 1080), QSize(1366, 768)}) {
        SCOPED_TRACE(s.width());
        ASSERT_TRUE(
            write_settings_object(folder_to_save_data() / "settings.network_payload",
                                  QJsonObject{{"main_window_left", s.width() / 20},
                                              {"main_window_top", s.height() / 20},
                                              {"main_window_right", int(s.width() * 0.89)},
                                              {"main_window_bottom", int(s.height() * 0.89)}}));
        start();
        const QRect room(0, 60, screen->width() - 280, screen->height() - 60);
        std::vector<QRect> shown;
        for (SettingsBaseWindow* p : screen->palettes()) {
            // The hidden ones too: they show whole when asked for.
            EXPECT_TRUE(p == screen->about() || room.contains(QRect(p->pos(), p->sizeHint())))
                << p->title().toStdString();
            if (!p->isVisible()) continue;
            for (const QRect& other : shown)
                EXPECT_FALSE(other.intersects(p->geometry())) << p->title().toStdString();
            shown.push_back(p->geometry());
        }
        // Every palette on full HD; on a laptop Power waits in the menu.
        EXPECT_EQ(shown.size(), s.width() == 1920 ? 6u : 3u);
        screen->top_panel()->layout()->activate();
        const QLabel* counts = screen->top_panel()->counts();
        EXPECT_LT(counts->geometry().right(), screen->width());
        EXPECT_GE(counts->width(), counts->sizeHint().width());
        app.reset();
        empty_data_folder();
    }
}

TEST_F(screen_test, TitleBarsStayWithinReach) {
    // Power far outside and Screen Info above the window, as a layout from
    // a larger screen may have them.
    ASSERT_TRUE(write_settings_object(layout(), QJsonObject{{"power_x", 5000},
                                                            {"power_y", 4000},
                                                            {"power_visible", true},
                                                            {"boxes_x", -2000},
                                                            {"boxes_y", -50},
                                                            {"boxes_visible", true}}));
    start();
    const auto reachable = [&](const char* when) {
        const QRect room(0, 60, screen->width() - 280, screen->height() - 60);
        for (SettingsBaseWindow* p : screen->palettes()) {
            const QRect bar = QRect(p->pos(), QSize(p->width(), look::title_bar_height)) & room;
            EXPECT_TRUE(bar.height() == look::title_bar_height && bar.width() >= 40)
                << when << ": " << p->title().toStdString();
        }
    };
    reachable("loaded");
    window->resize(520, 400);
    ASSERT_TRUE(wait_until([&] { return screen->width() == 520; }));
    reachable("shrunk");
    // A drag by the title bar that ends below the window.
    SettingsBaseWindow* power = screen->settings_power();
    QTest::mousePress(power, Qt::LeftButton, {}, QPoint(10, 10));
    move_holding(power, QPoint(10, 900));
    QTest::mouseRelease(power, Qt::LeftButton, {}, QPoint(10, 10));
    reachable("dragged");
    QJsonObject saved;
    ASSERT_TRUE(read_settings_object(layout(), saved));
    EXPECT_EQ(saved.value("power_y").toInt(), power->y());
}

TEST_F(screen_test, PalettesFollowTheTypeOfTheCurrentLayer) {
    start();
    // The test's small window starts some hidden.
    for (SettingsBaseWindow* p : screen->palettes())
        p->set_stored_visible(p != screen->about());
    screen->showAbout();
    EXPECT_TRUE(screen->rect().contains(screen->about()->geometry())); // whole, not past the bottom
    // A picture has no palettes: all go, About too.
    global->new_image_layer();
    EXPECT_TRUE(titles_shown().empty());
    // Back on the screen layer only the stored ones return; About stays
    // closed, its state being kept nowhere.
    screen->settings_boxes()->set_stored_visible(false);
    screen->setCurrentLayerTo(1, true);
    EXPECT_EQ(titles_shown().size(), 5u);
    // The "x" hides and keeps the stored flag.
    SettingsBaseWindow* power = screen->settings_power();
    QTest::mouseClick(power->findChild<QPushButton*>("close"), Qt::LeftButton);
    EXPECT_FALSE(power->isVisible());
    EXPECT_TRUE(power->stored_visible());
}

TEST_F(screen_test, KeysReachTheMenuWhereverTheFocusIs) {
    start();
    QLineEdit field(screen->top_panel());
    field.show();
    field.setFocus();
    ASSERT_TRUE(wait_until([&] { return field.hasFocus(); }));
    // Keys name the key they are on, whatever Shift and the layout type on
    // it (the scan code is the key's place: X's and Wayland's codes).
    struct row {
        int key;
        Qt::KeyboardModifiers held;
        const char* text;
        quint32 code;
        const char* key_string;
    } rows[] = {
        {Qt::Key_D, Qt::ControlModifier, "\x04", 0, "CONTROL+D"},
        {Qt::Key_S, Qt::AltModifier, "s", 0, "ALT+S"},
        {Qt::Key_S, Qt::ControlModifier | Qt::AltModifier, "", 0, "CONTROL+ALT+S"},
        {Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier, "", 0, "CONTROL+SHIFT+B"},
        {Qt::Key_3, Qt::ControlModifier, "", 0, "CONTROL+3"},
        {Qt::Key_Equal, Qt::ControlModifier, "", 0, "CONTROL++"},
        {Qt::Key_Minus, Qt::ControlModifier, "", 0, "CONTROL+-"},
        {Qt::Key_Plus, Qt::NoModifier, "+", 0, "+"},
        {Qt::Key_Dollar, Qt::ControlModifier | Qt::ShiftModifier, "$", 13, "CONTROL+SHIFT+4"},
        {Qt::Key_Ampersand, Qt::ControlModifier, "&", 10, "CONTROL+1"}, // French
        {Qt::Key_Minus, Qt::ControlModifier, "-", 15, "CONTROL+6"},     // French
        {0x0421, Qt::ControlModifier, "", 39, "CONTROL+S"},             // Russian
        {Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier, "+", 21, "CONTROL++"},
        {Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier, "+", 86, "CONTROL++"},
        {Qt::Key_Underscore, Qt::ControlModifier | Qt::ShiftModifier, "_", 20, "CONTROL+SHIFT+-"},
    };
    const std::pair<Qt::KeyboardModifier, Qt::Key> modifier_keys[] = {
        {Qt::ControlModifier, Qt::Key_Control},
        {Qt::ShiftModifier, Qt::Key_Shift},
        {Qt::AltModifier, Qt::Key_Alt}};
    for (const row& r : rows) {
        for (const auto& [m, k] : modifier_keys)
            if (r.held & m) QTest::keyPress(&field, k, r.held);
        for (QEvent::Type t : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent e(t, r.key, r.held, r.code, 0, 0, QString::fromLatin1(r.text));
            QApplication::sendEvent(&field, &e);
        }
        for (const auto& [m, k] : modifier_keys)
            if (r.held & m) QTest::keyRelease(&field, k, Qt::NoModifier);
        EXPECT_EQ(screen->last_key_string(), r.key_string);
        EXPECT_EQ(global->get_keyboard_modifiers(), 0u) << r.key_string;
    }
}

TEST_F(screen_test, ModifierGroupsAndSpace) {
    start();
    // QTest presses and releases the modifiers it is given as well: none
    // are given here, each key stands alone.
    QTest::keyPress(canvas, Qt::Key_Shift);
    EXPECT_EQ(global->get_keyboard_modifiers(), keys::group_a);
    QTest::keyPress(canvas, Qt::Key_Control);
    EXPECT_EQ(global->get_keyboard_modifiers(), keys::group_a | keys::group_b);
    QTest::keyPress(canvas, Qt::Key_Alt);
    EXPECT_EQ(global->get_keyboard_modifiers(), keys::group_a | keys::group_b | keys::group_c);
    // Releasing Shift drops a move of a screen layer; Control does not.
    canvas->move_delta = QPoint(5, 5);
    QTest::keyRelease(canvas, Qt::Key_Control);
    EXPECT_TRUE(MainImpact::isPosValid(canvas->move_delta));
    QTest::keyRelease(canvas, Qt::Key_Shift);
    EXPECT_FALSE(MainImpact::isPosValid(canvas->move_delta));
    QTest::keyRelease(canvas, Qt::Key_Alt);
    EXPECT_EQ(global->get_keyboard_modifiers(), 0u);

    // Space starts the next run of a custom path; typed into a text field
    // it is only text.
    auto layer = global->current_boxes_layer();
    layer->CustomDataPath = 1;
    layer->set_custom_path_string("0,65536");
    QLineEdit field(screen->top_panel());
    field.show();
    field.setFocus();
    ASSERT_TRUE(wait_until([&] { return field.hasFocus(); }));
    QTest::keyClick(&field, Qt::Key_Space);
    EXPECT_EQ(layer->CustomPath.size(), 1u);
    EXPECT_EQ(field.text(), " ");
    canvas->setFocus();
    ASSERT_TRUE(wait_until([&] { return canvas->hasFocus(); }));
    QTest::keyClick(canvas, Qt::Key_Space);
    EXPECT_EQ(layer->CustomPath.size(), 2u);
}

TEST_F(screen_test, AProjectTheReaderRefusesIsReportedAndTheDocumentStays) {
    start();
    const std::string bad = folder_to_save_data().string() + "/bad.tsrx";
    ASSERT_TRUE(write_file(bad, "TESSERINE_LED_PROJECT v2 1 0\n1 20\nBoxColors:nonsense\n"));
    global->current_boxes_layer()->set_offset_x(77);
    const long long layers = global->get_layers_count();
    global->open_project_button();
    QFileDialog* d = screen->findChild<QFileDialog*>("open_dialog");
    ASSERT_TRUE(d);
    d->selectFile(QString::fromStdString(bad));
    QMetaObject::invokeMethod(d, "accept");
    QMessageBox* box = nullptr;
    ASSERT_TRUE(wait_until([&] { return (box = open_box("error")); }));
    EXPECT_EQ(box->text().toStdString().rfind("The file " + bad + " cannot be used: ", 0), 0u);
    ASSERT_EQ(global->get_layers_count(), layers);
    EXPECT_EQ(global->current_boxes_layer()->get_offset_x(), 77);
}

TEST_F(screen_test, RecentProjectsDropsAndLastFolders) {
    start();
    const QString dir = QString::fromStdString(folder_to_save_data().string());
    const auto project = [&](const QString& name) {
        EXPECT_TRUE(global->save_project_to_file(file::path((dir + "/" + name).toStdString())));
        return dir + "/" + name;
    };
    // Newest first, ten at most, one place each; a new object is a restart.
    const recent_files recent = recent_files::of(*screen);
    for (int i = 0; i < 12; ++i)
        recent.add_project(project(QString("p%1.tsrx").arg(i)));
    recent.add_project(dir + "/p3.tsrx");
    const recent_files again(folder_to_save_data() / "recent_files.json");
    EXPECT_EQ(again.projects().size(), recent_files::limit);
    QFile::remove(dir + "/p11.tsrx"); // gone files leave the list
    EXPECT_EQ(again.projects().mid(0, 3),
              (QStringList{dir + "/p3.tsrx", dir + "/p10.tsrx", dir + "/p9.tsrx"}));

    // Opening over unsaved work asks first; "Don't Save" goes on.
    const auto dont_save = [&] {
        auto* question = screen->findChild<QMessageBox*>("unsaved");
        ASSERT_TRUE(question);
        answer(question, "Don't Save");
    };
    // The menu: names with the path as tooltip, then "Clear List".
    global->new_boxes_layer();
    show_open_recent(*screen);
    auto* menu = screen->findChild<QMenu*>("open_recent");
    ASSERT_TRUE(menu);
    const QList<QAction*> actions = menu->actions();
    ASSERT_EQ(actions.size(), 11); // nine projects, the separator, Clear List
    EXPECT_EQ(actions[1]->text(), "p10.tsrx");
    EXPECT_EQ(actions[1]->toolTip(), dir + "/p10.tsrx");
    actions[1]->trigger();
    dont_save();
    EXPECT_EQ(global->get_layers_count(), 1);
    EXPECT_EQ(again.projects().first(), dir + "/p10.tsrx");
    actions.last()->trigger();
    EXPECT_TRUE(again.projects().isEmpty());
    menu->close();

    // Drops: a project opens (here as the window's own drag events), a
    // picture on the canvas becomes a layer at the point, anything else
    // changes nothing and says so.
    const QString wall = project("wall.tsrx");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(wall)});
    QDragEnterEvent enter(QPoint(10, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(screen, &enter);
    EXPECT_TRUE(enter.isAccepted());
    global->new_boxes_layer();
    QDropEvent drop(QPointF(10, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(screen, &drop);
    dont_save();
    EXPECT_EQ(global->get_layers_count(), 1);
    QImage picture(40, 30, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(dir + "/red.webp") || picture.save(dir + "/red.png"));
    const QString red = QFile::exists(dir + "/red.webp") ? dir + "/red.webp" : dir + "/red.png";
    canvas->actual_size(); // a point of the canvas is then one of the raster
    const QPoint at = canvas->get_pan() + QPoint(100, 60);
    EXPECT_FALSE(drop_file(*screen, red, nullptr));
    EXPECT_TRUE(drop_file(*screen, red, &at));
    ASSERT_EQ(global->get_layers_count(), 2);
    EXPECT_EQ(global->current_layer()->get_offset_x(), 100);
    EXPECT_EQ(global->current_layer()->get_offset_y(), 60);
    ASSERT_TRUE(write_file((dir + "/notes.txt").toStdString(), "hello"));
    EXPECT_FALSE(drop_file(*screen, dir + "/notes.txt", &at));
    EXPECT_EQ(global->get_layers_count(), 2);

    // The open dialog comes back in the folder it was last used in.
    QDir(dir).mkdir("show");
    const QString in_show = dir + "/show/act.tsrx";
    QFile::copy(wall, in_show);
    for (int round = 0; round < 2; ++round) {
        global->open_project_button();
        QFileDialog* d = screen->findChild<QFileDialog*>("open_dialog");
        ASSERT_TRUE(d);
        EXPECT_TRUE(round == 0 || d->directory().absolutePath() == dir + "/show");
        d->selectFile(in_show);
        QMetaObject::invokeMethod(d, "accept");
        ASSERT_TRUE(wait_until([&] { return !screen->findChild<QFileDialog*>("open_dialog"); }));
    }
    EXPECT_EQ(again.projects().first(), in_show);
}

TEST(control_map, PointsAreInTheScreensOwnPixels) {
    // The middle pixel of those a logical pixel covers, from the screen's
    // corner, which both share.
    EXPECT_EQ(screen_pixel({10, 20}, {0, 0}, 1.0), QPoint(10, 20));
    EXPECT_EQ(screen_pixel({10, 20}, {0, 0}, 2.0), QPoint(21, 41));
    EXPECT_EQ(screen_pixel({11, 20}, {0, 0}, 1.5), QPoint(17, 30));
    EXPECT_EQ(screen_pixel({1930, 20}, {1920, 0}, 2.0), QPoint(1941, 41));
}
