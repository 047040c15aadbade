// The layer list and the preset list: rows top-down, arrows and drags,
// the labels, visibility, the presets' buttons, the add menu and reused
// rows.

#include "panels/add_layer_context_menu.h"
#include "panels/right_panel.h"
#include "panels/scroll_list.h"
#include "panels/settings_boxes.h"
#include "panels/widgets/small_widgets.h"
#include "window/window_fixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTemporaryDir>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct lists : window_test {
    void SetUp() override {
        window_test::SetUp();
        start();
        panel = screen->right_panel();
        rows = panel->layer_list()->list();
        presets = panel->preset_list()->list();
        sync();
    }
    // Lets the posted sync run.
    void sync() {
        screen->reload_all(true);
        const int before = panel->sync_count();
        ASSERT_TRUE(wait_until([&] { return panel->sync_count() > before; }));
        QCoreApplication::processEvents(); // the layouts settle
    }
    // A project of screen layers with these names, element 0 first.
    void make_layers(const std::vector<std::string>& names) {
        global->load_default_layers();
        while (global->get_layers_count() < (long long)names.size())
            global->new_boxes_layer();
        for (std::size_t i = 0; i < names.size(); ++i)
            global->get_layer((long long)i)->set_name(names[i]);
        sync();
    }
    // The names of the rows as shown, top first.
    std::vector<std::string> shown(ScrollList* list) {
        std::vector<std::string> names;
        for (ScrollList::list_item* item : list->shown_items())
            if (item->row->isVisible()) names.push_back(item->picture->layer()->get_name());
        return names;
    }
    std::vector<std::string> stack() {
        std::vector<std::string> names;
        for (long long i = 0; i < global->get_layers_count(); ++i)
            names.push_back(global->get_layer(i)->get_name());
        return names;
    }
    ScrollList::list_item* row_of(long long index) {
        return rows->item_of(global->get_layer(index).get());
    }
    QPushButton* bottom_button(RightPanelList* list, const QString& caption) {
        for (QPushButton* b : list->bottom()->findChildren<QPushButton*>())
            if (b->text() == caption) return b;
        return nullptr;
    }

    RightPanel* panel = nullptr;
    ScrollList* rows = nullptr;
    ScrollList* presets = nullptr;
};

using names = std::vector<std::string>;

} // namespace

TEST_F(lists, RowsShowTopDownAndTheArrowsAndADragReorder) {
    make_layers({"A", "B", "C", "D"});
    EXPECT_EQ(shown(rows), (names{"D", "C", "B", "A"}));
    QTest::mouseClick(row_of(1)->up, Qt::LeftButton); // B up
    sync();
    EXPECT_EQ(stack(), (names{"A", "C", "B", "D"}));
    EXPECT_EQ(rows->selected_item(), row_of(2)->row);   // B, now current
    QTest::mouseClick(row_of(2)->down, Qt::LeftButton); // and back down
    sync();
    EXPECT_EQ(stack(), (names{"A", "B", "C", "D"}));
    // A click on a row selects its layer.
    QTest::mouseClick(row_of(0)->clickable, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(global->get_current_layer_id(), 0);
    QTest::mouseClick(row_of(3)->picture, Qt::LeftButton);
    EXPECT_EQ(global->get_current_layer_id(), 3);
    sync();
    // A drag down into C's row, then into B's: each entry reorders at once.
    LayerPreviewImage* dragged = row_of(3)->picture;
    const QPoint start(20, 40);
    QTest::mousePress(dragged, Qt::LeftButton, {}, start);
    std::vector<names> seen;
    for (const char* next : {"C", "B"}) {
        ScrollList::list_item* target = nullptr;
        for (ScrollList::list_item* item : rows->shown_items())
            if (item->picture->layer()->get_name() == next) target = item;
        // Just inside the row's top edge, which shows in the viewport.
        move_holding(dragged, dragged->mapFromGlobal(target->picture->mapToGlobal(QPoint(20, 10))));
        seen.push_back(stack());
        // The rows follow before the hand moves on.
        sync();
    }
    QTest::mouseRelease(dragged, Qt::LeftButton, {}, start);
    EXPECT_EQ(seen, (std::vector<names>{{"A", "B", "D", "C"}, {"A", "D", "B", "C"}}));
    EXPECT_EQ(shown(rows), (names{"C", "B", "D", "A"}));
}

TEST_F(lists, TheCurrentLayersRowIsScrolledIntoView) {
    make_layers({"A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L"});
    QScrollArea* scroll = panel->layer_list()->scroll_panel();
    const auto in_view = [&](long long index) {
        ScrollList::list_item* item = row_of(index);
        if (!item || !item->row->isVisible()) return false;
        QWidget* row = item->row;
        const int top = row->mapTo(scroll->viewport(), QPoint(0, 0)).y();
        return top >= 0 && top + row->height() <= scroll->viewport()->height();
    };
    for (long long index : {11, 0, 11}) { // the top row, the bottom, the top
        global->set_current_layer_index(index);
        global->host().post_main_screen_layout();
        EXPECT_TRUE(wait_until([&] { return in_view(index); })) << index;
    }
    // Clone Current selects the copy, at the bottom of the stack.
    QTest::mouseClick(bottom_button(panel->layer_list(), "Clone Current"), Qt::LeftButton);
    ASSERT_EQ(global->get_current_layer_id(), 0);
    EXPECT_TRUE(wait_until([&] { return in_view(0); }));
}

TEST_F(lists, RowsCountHalfCabinetsOnceAndShowPicturesAsNotApplicable) {
    make_layers({"A"});
    auto layer = global->current_boxes_layer();
    layer->Columns = 5, layer->Rows = 3;
    struct {
        unsigned long flags;
        const char *columns, *rows;
    } cases[] = {
        {0b0000, "5.00", "3.00"}, {0b0001, "4.50", "3.00"}, {0b0011, "4.50", "3.00"},
        {0b0100, "5.00", "2.50"}, {0b1110, "4.50", "2.50"},
    };
    for (const auto& c : cases) {
        layer->HalfColumns = std::bitset<4>(c.flags);
        sync();
        EXPECT_EQ(row_of(0)->columns->text(), c.columns) << c.flags;
        EXPECT_EQ(row_of(0)->rows->text(), c.rows) << c.flags;
    }
    // A picture has no cabinets: its row shows its size in pixels.
    auto picture = global->new_image_layer();
    picture->setMaintainAspectRatio(false);
    picture->set_height(360);
    sync();
    ScrollList::list_item* item = rows->item_of(picture.get());
    ASSERT_TRUE(item);
    EXPECT_EQ(item->columns->text(), "N/A");
    EXPECT_EQ(item->rows->text(), "N/A");
    EXPECT_EQ(item->height->text(), "360");
}

TEST_F(lists, TheRowFollowsTheScreenInfoEditsItShows) {
    make_layers({"A"});
    SettingsBoxes* info = screen->settings_boxes();
    info->columns->setText("3");
    QTest::keyClick(info->columns, Qt::Key_Return);
    info->cabinet_width->setText("100");
    QTest::keyClick(info->cabinet_width, Qt::Key_Return);
    ASSERT_TRUE(wait_until([&] { return row_of(0)->width->text() == "300"; }));
    EXPECT_EQ(row_of(0)->columns->text(), "3.00");
    QTest::mouseClick(info->half_first_column, Qt::LeftButton);
    QTest::mouseClick(info->half_last_row, Qt::LeftButton);
    EXPECT_TRUE(wait_until([&] { return row_of(0)->columns->text() == "2.50"; }));
    EXPECT_TRUE(wait_until([&] { return row_of(0)->rows->text() == "4.50"; }));
}

TEST_F(lists, AHiddenLayerStaysHiddenThroughSaveOpenAndRebuilds) {
    make_layers({"A", "B"});
    QTest::mouseClick(row_of(1)->visible, Qt::LeftButton);
    EXPECT_TRUE(global->get_layer(1)->is_hidden());
    sync();
    EXPECT_FALSE(row_of(1)->visible->isChecked());
    // Saved with B hidden and opened again: new layer objects, new rows.
    QTemporaryDir dir;
    const std::string path = dir.filePath("hidden.tsrx").toStdString();
    ASSERT_TRUE(global->save_project_to_file(file::path(path)));
    global->load_project_from_file(file::path(path));
    ASSERT_EQ(global->get_layers_count(), 2);
    ASSERT_TRUE(global->get_layer(1)->is_hidden()); // as loaded
    sync();
    EXPECT_TRUE(global->get_layer(1)->is_hidden());
    EXPECT_FALSE(row_of(1)->visible->isChecked());
    EXPECT_TRUE(row_of(0)->visible->isChecked());
    // New layers (maybe at the old ones' addresses) show.
    make_layers({"A", "B"});
    EXPECT_FALSE(global->get_layer(1)->is_hidden());
    EXPECT_TRUE(row_of(1)->visible->isChecked());
}

TEST_F(lists, PresetsCloneRemoveAndAddTheCurrentScreenLayerFirst) {
    EXPECT_EQ(shown(presets).size(), std::size_t(global->get_presets_count()));
    make_layers({"A"});
    const pointer<app_layer> third = global->get_presets()[2];
    const long long count = global->get_presets_count();
    QTest::mouseClick(presets->item_of(third.get())->clone, Qt::LeftButton);
    ASSERT_EQ(global->get_layers_count(), 2);
    EXPECT_EQ(global->get_presets_count(), count); // the preset stays
    auto copy = std::dynamic_pointer_cast<boxes_layer>(global->current_layer());
    auto original = std::dynamic_pointer_cast<boxes_layer>(third);
    ASSERT_TRUE(copy && original);
    EXPECT_NE(copy, original);
    EXPECT_EQ(std::tie(copy->Columns, copy->Rows, copy->Width, copy->Height),
              std::tie(original->Columns, original->Rows, original->Width, original->Height));
    QTest::mouseClick(presets->item_of(third.get())->up, Qt::LeftButton); // "-"
    EXPECT_EQ(global->get_presets_count(), count - 1);
    sync();
    EXPECT_FALSE(presets->item_of(third.get())->row->isVisible());
    EXPECT_EQ(shown(presets).size(), std::size_t(count - 1));
    // "Add to Preset": a copy of the current screen layer, first; a picture
    // cannot become a preset.
    copy->set_name("Wall");
    QPushButton* add = bottom_button(panel->preset_list(), "Add to Preset");
    QTest::mouseClick(add, Qt::LeftButton);
    sync();
    ASSERT_EQ(global->get_presets_count(), count);
    EXPECT_EQ(shown(presets).front(), "Wall");
    global->new_image_layer();
    QTest::mouseClick(add, Qt::LeftButton);
    EXPECT_EQ(global->get_presets_count(), count);
}

TEST_F(lists, TheAddMenuOpensAboveTheClickAndAddsOrCancels) {
    make_layers({"A"});
    QPushButton* plus = bottom_button(panel->layer_list(), "+");
    QTest::mouseClick(plus, Qt::LeftButton);
    AddLayerContextMenu* menu = screen->add_layer_context_menu();
    ASSERT_TRUE(menu->isVisible());
    const QPoint click = screen->mapFromGlobal(plus->mapToGlobal(plus->rect().center()));
    EXPECT_EQ(menu->geometry().bottomLeft(), click - QPoint(0, 1));
    QTest::mouseClick(menu->entries()[0], Qt::LeftButton); // "Led Screen"
    EXPECT_FALSE(menu->isVisible());
    EXPECT_EQ(global->get_layers_count(), 2);
    QTest::mouseClick(plus, Qt::LeftButton);
    QTest::mouseClick(menu->entries()[3], Qt::LeftButton); // "Cancel"
    EXPECT_FALSE(menu->isVisible());
    EXPECT_EQ(global->get_layers_count(), 2);
}

TEST_F(lists, ARowIsReusedWhenItsLayerComesBack) {
    make_layers({"A", "B"});
    const pointer<app_layer> b = global->get_layer(1);
    WidgetWithBackground* row = row_of(1)->row;
    const std::size_t made = rows->rows_made();
    global->set_current_layer_index(1);
    global->delete_current_layer();
    sync();
    EXPECT_FALSE(row->isVisible());
    EXPECT_TRUE(rows->item_of(b.get())->picture->image().isNull()); // gave its picture up
    b->set_hidden(true); // the kept row's box follows the layer
    global->insert_layer_at(b, -1);
    sync();
    EXPECT_EQ(rows->item_of(b.get())->row, row);
    EXPECT_TRUE(row->isVisible());
    EXPECT_FALSE(rows->item_of(b.get())->visible->isChecked());
    EXPECT_EQ(rows->rows_made(), made);
    EXPECT_FALSE(rows->item_of(b.get())->picture->image().isNull());
}
