// The top menu: every shortcut reaching its command wherever the focus is
// (the Xvfb run types each on a real keyboard), the drop-downs opening and folding, "Add Image
// Layer", and undo and redo with the unsaved question.

#include "app/undo_controller.h"
#include "core/data_folder.h"
#include "core/keys.h"
#include "panels/settings_data_diagram.h"
#include "panels/top_menu.h"
#include "panels/top_panel.h"
#include "support/test_support.h"
#include "window/window_fixture.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct menu_test : window_test {
    void SetUp() override {
        window_test::SetUp();
        start();
        window->resize(1400, 900);
        menu = screen->top_menu();
        layer = global->current_boxes_layer();
    }
    // Presses a shortcut as a hand does: QTest presses the modifiers
    // before the key and lets them go after it. Key codes of digits,
    // letters and "-" are their characters; "+" is on the "=" key.
    void press(const std::string& key_string) {
        const keys::chord c = keys::parse_key_string(key_string);
        Qt::KeyboardModifiers held;
        if (c.groups & keys::group_a) held |= Qt::ShiftModifier;
        if (c.groups & keys::group_b) held |= Qt::ControlModifier;
        if (c.groups & keys::group_c) held |= Qt::AltModifier;
        QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : canvas;
        QTest::sendKeyEvent(QTest::Click, target, Qt::Key(c.name == "+" ? '=' : c.name[0]),
                            QString(), held);
    }
    TopMenu* menu = nullptr;
    pointer<boxes_layer> layer;
};

} // namespace

TEST_F(menu_test, EveryShortcutReachesItsCommandAlsoFromATextField) {
    // The focus in a text field: shortcuts still go to the menu.
    QLineEdit* field = screen->top_panel()->raster_width();
    field->setFocus();
    ASSERT_TRUE(wait_until([&] { return field->hasFocus(); }));
    // Those that change the workspace, one after the other.
    const auto count = [&] { return global->get_layers_count(); };
    long long n = count();
    press("CONTROL++");
    EXPECT_EQ(count(), n + 1);
    press("CONTROL+D");
    EXPECT_EQ(count(), n + 2);
    press("CONTROL+-");
    EXPECT_EQ(count(), n + 1);
    global->set_current_layer_index(global->get_layers_count() - 1);
    layer = global->current_boxes_layer();
    ASSERT_TRUE(layer);
    const std::vector<std::pair<const char*, std::int32_t BoxesLayerDescription::*>> toggles = {
        {"CONTROL+SHIFT+O", &BoxesLayerDescription::DrawGrid},
        {"CONTROL+SHIFT+C", &BoxesLayerDescription::DrawCircle},
        {"CONTROL+SHIFT+S", &BoxesLayerDescription::DrawScreenSize},
        {"CONTROL+SHIFT+L", &BoxesLayerDescription::DrawBoxesNames},
        {"CONTROL+SHIFT+P", &BoxesLayerDescription::DrawPower},
        {"CONTROL+SHIFT+D", &BoxesLayerDescription::DrawSnake},
    };
    for (const auto& [key, flag] : toggles) {
        const bool before = (*layer).*flag != 0;
        press(key);
        EXPECT_NE((*layer).*flag != 0, before) << key;
    }
    press("CONTROL+SHIFT+B");
    EXPECT_EQ(layer->ExcludeBoxes.size(), 40u);
    press("CONTROL+SHIFT+X");
    EXPECT_FALSE(layer->is_corner_label_on(corner_top_left));
    for (int k = 1; k <= 8; ++k) {
        press("CONTROL+" + std::to_string(k));
        EXPECT_EQ(layer->SnakeMode, k - 1);
    }
    const bool data_tools = screen->settings_data_diagram()->stored_visible();
    press("CONTROL+SHIFT+6");
    EXPECT_NE(screen->settings_data_diagram()->stored_visible(), data_tools);
    press("CONTROL+N");
    // With unsaved changes New asks first.
    ASSERT_TRUE(screen->undo_controller()->question());
    answer(screen->undo_controller()->question(), "Don't Save");
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(field->text(), "1920"); // the field got none of the keys
}

TEST_F(menu_test, DropDownsOpenByClickFollowTheHoverAndFold) {
    const auto& titles = menu->main_row()->items();
    QTest::mouseMove(titles[1], QPoint(5, 5));
    EXPECT_FALSE(menu->is_showing_any_submenu()); // hovering opens nothing
    QTest::mouseClick(titles[0], Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    TopMenuSubmenu* file = menu->submenu(0);
    ASSERT_TRUE(file->isVisible());
    EXPECT_EQ(file->pos(), QPoint(screen->mapFromGlobal(QCursor::pos()).x(), 20)); // at the pointer
    // Each entry shows its caption and its shortcut.
    const auto labels = file->entries()[0]->findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(labels[1]->text(), " [CONTROL+N]");

    // With one open, hovering another title opens that one.
    QEnterEvent enter(QPointF(3, 3), QPointF(3, 3), titles[2]->mapToGlobal(QPointF(3, 3)));
    QCoreApplication::sendEvent(titles[2], &enter);
    EXPECT_FALSE(file->isVisible());
    EXPECT_TRUE(menu->submenu(2)->isVisible());

    // A click elsewhere folds it; so does Escape; so does an entry.
    QTest::mouseClick(canvas, Qt::LeftButton, Qt::NoModifier, QPoint(100, 600));
    EXPECT_FALSE(menu->is_showing_any_submenu());
    menu->setSubmenu(1);
    QTest::keyClick(canvas, Qt::Key_Escape);
    EXPECT_FALSE(menu->is_showing_any_submenu());
    menu->setSubmenu(2);
    const long long n = global->get_layers_count();
    QTest::mouseClick(menu->submenu(2)->entries()[0], Qt::LeftButton); // "Add Screen Layer"
    EXPECT_FALSE(menu->is_showing_any_submenu());
    EXPECT_EQ(global->get_layers_count(), n + 1);
}

TEST_F(menu_test, AddImageLayerTakesAPictureOrSaysItCannot) {
    const std::string dir = folder_to_save_data().string();
    QImage picture(40, 10, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(QString::fromStdString(dir + "/wide.png")));
    ASSERT_TRUE(write_file(dir + "/broken.png", "not a picture"));
    auto choose = [&](const std::string& path) {
        TopMenuSubmenu::addImageLayer(global);
        QFileDialog* d = screen->findChild<QFileDialog*>("open_dialog");
        ASSERT_TRUE(d);
        d->selectFile(QString::fromStdString(path));
        QMetaObject::invokeMethod(d, "accept");
        QCoreApplication::processEvents();
    };
    const long long n = global->get_layers_count();
    choose(dir + "/wide.png");
    ASSERT_EQ(global->get_layers_count(), n + 1);
    auto added = global->current_image_layer();
    ASSERT_TRUE(added);
    // The sides are set in turn on a layer whose ratio is still 1: a square
    // of the picture's height, whose true ratio then serves resizing.
    EXPECT_EQ(added->get_width(), 10);
    EXPECT_EQ(added->get_height(), 10);
    EXPECT_EQ(added->get_real_width(), 40);

    choose(dir + "/broken.png");
    EXPECT_EQ(global->get_layers_count(), n + 1);
    QMessageBox* box = nullptr;
    ASSERT_TRUE(wait_until([&] { return (box = screen->findChild<QMessageBox*>("error")); }));
    EXPECT_EQ(box->text(), "Error loading image.");
}

TEST_F(menu_test, UndoRedoKeysTheEditSectionAndTheUnsavedQuestion) {
    UndoController* undo = screen->undo_controller();
    QTemporaryDir dir;
    auto bytes = [&] {
        const std::string path = dir.filePath("p.tsrx").toStdString();
        EXPECT_TRUE(global->save_project_to_file(path));
        return read_file(path);
    };
    auto edit_entry = [&](int i) {
        QWidget* entry = menu->submenu(1)->entries()[std::size_t(i)];
        return std::make_pair(entry->isEnabled(), entry->findChild<QLabel*>()->text());
    };
    const std::string before = bytes();
    EXPECT_EQ(edit_entry(0), std::make_pair(false, QString("Undo")));

    // Each row: the keys of one action, the step it makes.
    struct row {
        const char* keys;
        const char* step;
    };
    for (const row& r : {row{"CONTROL+-", "Delete Screen1"}, row{"CONTROL+SHIFT+D", "Data Path"},
                         row{"CONTROL+3", "Path Pattern"}, row{"CONTROL+D", "Add Screen2"}}) {
        SCOPED_TRACE(r.keys);
        press(r.keys);
        ASSERT_TRUE(wait_until([&] { return window->isWindowModified(); }));
        const std::string edited = bytes();
        EXPECT_EQ(edit_entry(0), std::make_pair(true, QString("Undo ") + r.step));
        press("CONTROL+Z");
        EXPECT_EQ(bytes(), before);
        EXPECT_EQ(edit_entry(1), std::make_pair(true, QString("Redo ") + r.step));
        EXPECT_FALSE(window->isWindowModified());
        press("CONTROL+SHIFT+Z");
        EXPECT_EQ(bytes(), edited);
        press("CONTROL+Z");
        QTest::keyClick(canvas, Qt::Key_Y, Qt::ControlModifier);
        EXPECT_EQ(bytes(), edited);
        press("CONTROL+Z");
        ASSERT_TRUE(wait_until([&] { return !window->isWindowModified(); }));
    }

    // Typing not yet committed: Ctrl+Z takes back the typing only.
    QLineEdit* field = screen->top_panel()->raster_width();
    field->setFocus();
    ASSERT_TRUE(wait_until([&] { return field->hasFocus(); }));
    const QString shown = field->text();
    QTest::keyClicks(field, "7");
    press("CONTROL+Z");
    EXPECT_EQ(field->text(), shown);
    EXPECT_EQ(bytes(), before);
    canvas->setFocus();

    // Unsaved work: closing asks; Cancel keeps the window, Don't Save ends it.
    press("CONTROL+-");
    ASSERT_TRUE(wait_until([&] { return window->isWindowModified(); }));
    for (const char* caption : {"Cancel", "Don't Save"}) {
        window->close();
        QMessageBox* box = undo->question();
        ASSERT_TRUE(box);
        EXPECT_EQ(box->text(), "Save the changes to Untitled?");
        answer(box, caption);
        EXPECT_TRUE(wait_until([&] { return !undo->question(); }));
    }
    EXPECT_EQ(quits, 1);
}
