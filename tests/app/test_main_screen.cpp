// The main screen: where its widgets stand, the palette layout file, the
// one refresh road of the panels, palettes by layer type and the keys.

#include "app/settings_file.h"
#include "core/diagnostics.h"
#include "core/keys.h"
#include "panels/about.h"
#include "panels/right_panel.h"
#include "panels/settings_base_window.h"
#include "panels/settings_boxes.h"
#include "panels/settings_raster_label.h"
#include "panels/top_menu.h"
#include "panels/top_panel.h"
#include "support/test_support.h"
#include "window/window_fixture.h"

#include <QFileDialog>
#include <QJsonObject>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <sstream>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct screen_test : window_test {
    file::path layout() const { return folder_to_save_data() / "settings_layout.network_payload"; }
    QRect place_of(QWidget* w) const { return w->geometry(); }
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
    // No file: the default places, every palette stored as shown.
    const std::vector<std::pair<QString, QPoint>> defaults = {
        {"Screen Info", {10, 70}},
        {"Data-Flow Diagram", {170, 610}},
        {"Colors        ", {170, 450}},
        {"Power", {295, 450}},
    };
    for (const auto& [title, place] : defaults)
        for (SettingsBaseWindow* p : screen->palettes())
            if (p->title() == title) {
                EXPECT_EQ(p->pos(), place) << title.toStdString();
            }
    EXPECT_EQ(titles_shown().size(), 6u); // all but About

    // Keys that are missing give 0 and hidden.
    ASSERT_TRUE(write_settings_object(layout(), QJsonObject{{"boxes_x", 33},
                                                            {"boxes_y", 44},
                                                            {"boxes_visible", true},
                                                            {"power_visible", true}}));
    ASSERT_TRUE(screen->settings_load_layout());
    screen->update_settings_visibility();
    EXPECT_EQ(screen->settings_boxes()->pos(), QPoint(33, 44));
    EXPECT_EQ(screen->settings_raster_label()->pos(), QPoint(0, 0));
    EXPECT_EQ(titles_shown(), (std::vector<QString>{"Screen Info", "Power"}));

    // Saving writes the eighteen values.
    screen->settings_boxes()->move(5, 6);
    screen->settings_save_layout();
    QJsonObject saved;
    ASSERT_TRUE(read_settings_object(layout(), saved));
    EXPECT_EQ(saved.size(), 18);
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

TEST_F(screen_test, PalettesFollowTheTypeOfTheCurrentLayer) {
    start();
    screen->showAbout();
    EXPECT_TRUE(screen->about()->isVisible());
    // A picture has no palettes: all go, About too.
    global->new_image_layer();
    EXPECT_TRUE(titles_shown().empty());
    // Back on the screen layer only the stored ones return; About stays
    // closed, its state being kept nowhere.
    screen->settings_boxes()->set_stored_visible(false);
    screen->setCurrentLayerTo(1, true);
    EXPECT_EQ(titles_shown().size(), 5u);
    EXPECT_FALSE(screen->about()->isVisible());
    // The "x" hides and keeps the stored flag.
    SettingsBaseWindow* power = nullptr;
    for (SettingsBaseWindow* p : screen->palettes())
        if (p->title() == "Power") power = p;
    QTest::mouseClick(power->findChild<QPushButton*>("close"), Qt::LeftButton);
    EXPECT_FALSE(power->isVisible());
    EXPECT_TRUE(power->stored_visible());
    screen->update_settings_visibility();
    EXPECT_TRUE(power->isVisible());
}

TEST_F(screen_test, ManyRefillsBetweenTwoFramesSyncTheListsOnce) {
    start();
    ASSERT_TRUE(wait_until([&] { return screen->right_panel()->sync_count() > 0; }));
    QCoreApplication::processEvents();
    const int before = screen->right_panel()->sync_count();
    for (int i = 0; i < 50; ++i)
        global->reload_all();
    EXPECT_EQ(screen->right_panel()->sync_count(), before);
    ASSERT_TRUE(wait_until([&] { return screen->right_panel()->sync_count() == before + 1; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(screen->right_panel()->sync_count(), before + 1);
}

TEST_F(screen_test, KeysReachTheMenuWhereverTheFocusIs) {
    start();
    QLineEdit field(screen->top_panel());
    field.show();
    field.setFocus();
    ASSERT_TRUE(wait_until([&] { return field.hasFocus(); }));
    struct row {
        Qt::Key key;
        Qt::KeyboardModifiers held;
        const char* text;
        const char* key_string;
    } rows[] = {
        {Qt::Key_D, Qt::ControlModifier, "\x04", "CONTROL+D"},
        {Qt::Key_S, Qt::AltModifier, "s", "ALT+S"},
        {Qt::Key_S, Qt::ControlModifier | Qt::AltModifier, "", "CONTROL+ALT+S"},
        {Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier, "", "CONTROL+SHIFT+B"},
        {Qt::Key_3, Qt::ControlModifier, "", "CONTROL+3"},
        {Qt::Key_Equal, Qt::ControlModifier, "", "CONTROL++"},
        {Qt::Key_Minus, Qt::ControlModifier, "", "CONTROL+-"},
        {Qt::Key_Plus, Qt::NoModifier, "+", "+"},
    };
    const std::pair<Qt::KeyboardModifier, Qt::Key> modifier_keys[] = {
        {Qt::ControlModifier, Qt::Key_Control},
        {Qt::ShiftModifier, Qt::Key_Shift},
        {Qt::AltModifier, Qt::Key_Alt}};
    for (const row& r : rows) {
        for (const auto& [m, k] : modifier_keys)
            if (r.held & m) QTest::keyPress(&field, k, r.held);
        QTest::sendKeyEvent(QTest::Press, &field, r.key, QString::fromLatin1(r.text), r.held);
        QTest::sendKeyEvent(QTest::Release, &field, r.key, QString::fromLatin1(r.text), r.held);
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

    // Space starts the next run of a custom path, also from a text field,
    // which still gets its space.
    auto layer = global->current_boxes_layer();
    layer->CustomDataPath = 1;
    layer->set_custom_path_string("0,65536");
    QLineEdit field(screen->top_panel());
    field.show();
    field.setFocus();
    ASSERT_TRUE(wait_until([&] { return field.hasFocus(); }));
    QTest::keyClick(&field, Qt::Key_Space);
    EXPECT_EQ(layer->CustomPath.size(), 2u);
    EXPECT_EQ(field.text(), " ");
}

TEST_F(screen_test, AProjectTheReaderRefusesIsReportedAndTheDocumentStays) {
    start();
    const std::string dir = folder_to_save_data().string();
    ASSERT_TRUE(global->save_project_to_file(file::path(dir + "/good.tsrx")));
    std::string text = read_file(dir + "/good.tsrx");
    const std::size_t at = text.find("BoxColors:");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, text.find('\n', at) - at, "BoxColors:nonsense");
    ASSERT_TRUE(write_file(dir + "/bad.tsrx", text));
    global->current_boxes_layer()->set_offset_x(77);
    const long long layers = global->get_layers_count();

    global->open_project_button();
    QFileDialog* d = screen->findChild<QFileDialog*>("open_dialog");
    ASSERT_TRUE(d);
    d->selectFile(QString::fromStdString(dir + "/bad.tsrx"));
    QMetaObject::invokeMethod(d, "accept");
    QMessageBox* box = nullptr;
    ASSERT_TRUE(wait_until([&] { return (box = screen->findChild<QMessageBox*>("error")); }));
    EXPECT_EQ(box->text().toStdString().rfind("The file " + dir + "/bad.tsrx cannot be used: ", 0),
              0u);
    ASSERT_EQ(global->get_layers_count(), layers);
    EXPECT_EQ(global->current_boxes_layer()->get_offset_x(), 77);
}
