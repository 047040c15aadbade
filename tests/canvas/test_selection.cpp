// The selection with real widgets: its mouse and key rules on the canvas
// and in the list, the Arrange menu's commands with their undo steps, the
// palette, the status line, delete and duplicate.

#include "app/undo_controller.h"
#include "document/arrange.h"
#include "panels/arrange_palette.h"
#include "panels/right_panel.h"
#include "panels/scroll_list.h"
#include "panels/top_menu.h"
#include "panels/top_panel.h"
#include "panels/widgets/fields.h"
#include "support/workspace_builders.h"
#include "window/window_fixture.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

using ids = std::vector<long long>;

struct selecting : window_test {
    void SetUp() override {
        window_test::SetUp();
        start();
        window->resize(1400, 900);
        global->delete_current_layer();
        add_screen(*global, "A", 100, 100, 10, 5, 10);
        add_screen(*global, "B", 320, 100, 10, 5, 10);
        add_screen(*global, "C", 500, 300, 5, 10, 10);
        add_screen(*global, "Hidden", 700, 100, 5, 5, 10)->set_hidden(true);
        add_picture(*global, "Picture", 0, 0, 50, 50);
        global->set_current_layer_index(0);
        screen->undo_controller()->start_fresh();
        canvas->repaint();
        canvas->actual_size(); // raster pixels are canvas pixels from (280, 0)
        canvas->repaint();
    }
    QPoint at(int x, int y) const { return canvas->get_pan() + QPoint(x, y); }
    ids selected() { return canvas->selection().screens().indices(); }
    void alt_click(int x, int y) {
        QTest::mouseClick(canvas, Qt::LeftButton, Qt::AltModifier, at(x, y));
    }
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers held) {
        QTest::mousePress(canvas, Qt::LeftButton, held, from);
        move_holding(canvas, (from + to) / 2, held);
        canvas->repaint(); // the preview
        move_holding(canvas, to, held);
        QTest::mouseRelease(canvas, Qt::LeftButton, held, to);
    }
    void key(Qt::Key k, Qt::KeyboardModifiers held = Qt::NoModifier) {
        canvas->setFocus();
        QTest::keyClick(canvas, k, held);
    }
    std::pair<int, int> offset(long long i) {
        return {global->get_layer(i)->get_offset_x(), global->get_layer(i)->get_offset_y()};
    }
    const document_history& history() { return screen->undo_controller()->history(); }
};

} // namespace

TEST_F(selecting, AltOnTheCanvasCtrlInTheListCtrlAAndEscape) {
    alt_click(150, 120);
    alt_click(350, 120);
    EXPECT_EQ(selected(), (ids{0, 1}));
    alt_click(150, 120); // out again
    // From empty raster a rectangle takes the screens it touches: C's corner.
    drag(at(450, 250), at(500, 300), Qt::AltModifier);
    EXPECT_EQ(selected(), (ids{1, 2}));
    EXPECT_EQ(canvas->get_pan(), QPoint(280, 0)); // no pan

    // Ctrl+click on A's row: in the selection, marked, and B stays current.
    global->set_current_layer_index(1);
    ScrollList* rows = screen->right_panel()->layer_list()->list();
    screen->reload_all(true);
    ASSERT_TRUE(wait_until([&] { return rows->item_of(global->get_layer(0).get()); }));
    ScrollList::list_item* a = rows->item_of(global->get_layer(0).get());
    QTest::mouseClick(a->clickable, Qt::LeftButton, Qt::ControlModifier, QPoint(5, 5));
    EXPECT_EQ(selected(), (ids{0, 1, 2}));
    EXPECT_TRUE(rows->is_item_marked(a->row));
    EXPECT_EQ(global->get_current_layer_id(), 1);

    key(Qt::Key_Escape);
    EXPECT_EQ(selected(), ids{});
    EXPECT_FALSE(rows->is_item_marked(a->row));
    key(Qt::Key_A, Qt::ControlModifier); // visible screens only
    EXPECT_EQ(selected(), (ids{0, 1, 2}));
    // A text field keeps its keys: Escape and the arrows there are its own.
    QLineEdit* field = screen->top_panel()->raster_width();
    field->setFocus();
    ASSERT_TRUE(wait_until([&] { return field->hasFocus(); }));
    QTest::keyClick(field, Qt::Key_Left);
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_EQ(selected(), (ids{0, 1, 2}));
    EXPECT_EQ(offset(0), std::make_pair(100, 100));
    EXPECT_EQ(history().steps(), 0u); // selecting is no step
}

TEST_F(selecting, EveryArrangeEntryIsOneStepThatUndoes) {
    TopMenuSubmenu* arrange = screen->top_menu()->submenu(3);
    ASSERT_EQ(arrange->captions().front(), "Align Left");
    key(Qt::Key_A, Qt::ControlModifier);
    const auto all = [&] { return std::vector{offset(0), offset(1), offset(2)}; };
    const auto before = all();
    for (unsigned long id = 0; id < 9; ++id) {
        arrange->clicked_to(id);
        EXPECT_EQ(history().steps(), 1u) << arrange->captions()[id]; // one step, redo cleared
        EXPECT_EQ(history().undo_name(), arrange->captions()[id]);
        EXPECT_NE(all(), before) << arrange->captions()[id];
        screen->undo_controller()->undo();
        EXPECT_EQ(all(), before) << arrange->captions()[id];
        EXPECT_EQ(selected(), (ids{0, 1, 2})); // undo keeps the selection
    }
    // The palette's Pack, with its gap; a gap too large is refused, said so
    // in the status line, and moves nothing.
    arrange->clicked_to(9);
    ArrangePalette* palette = arrange_palette_of(*screen);
    ASSERT_TRUE(palette && palette->isVisible());
    EXPECT_EQ(palette->count->text(), "3 screens selected");
    palette->gap->setValue(2000);
    QTest::mouseClick(palette->findChild<QPushButton*>("Pack"), Qt::LeftButton);
    EXPECT_EQ(all(), before);
    EXPECT_EQ(canvas->selection().status_line()->text(),
              "Pack: the 3 screens do not fit the raster of 1920 by 1080 pixels with a gap of "
              "2000; nothing was moved.");
    palette->gap->setValue(7);
    QTest::mouseClick(palette->findChild<QPushButton*>("Pack"), Qt::LeftButton);
    EXPECT_EQ(all(), (std::vector<std::pair<int, int>>{{164, 0}, {57, 0}, {0, 0}}));
}

TEST_F(selecting, NudgeDeleteDuplicateAndForeignText) {
    key(Qt::Key_Right); // nothing selected: the arrows do nothing
    EXPECT_EQ(offset(0), std::make_pair(100, 100));
    alt_click(150, 120);
    alt_click(350, 120);
    // A Shift drag of B moves A too: the block's left edge comes 15 from the
    // raster's, its top 15 below the hidden screen's bottom; both snap.
    drag(at(350, 120), at(265, 155), Qt::ShiftModifier);
    EXPECT_EQ(offset(0), std::make_pair(0, 150));
    EXPECT_EQ(offset(1), std::make_pair(220, 150));
    key(Qt::Key_Right, Qt::AltModifier); // one cabinet
    key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(offset(0), std::make_pair(10, 140));
    EXPECT_EQ(history().undo_name(), "Move 2 Screens");
    global->rear_view = true; // from behind, Right moves them right as seen
    key(Qt::Key_Right);
    global->rear_view = false;
    EXPECT_EQ(offset(0), std::make_pair(9, 140));

    QGuiApplication::clipboard()->setText("Screen1 at 0, 0");
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(canvas->selection().status_line()->text(),
              "The clipboard holds no Tesserine screens: nothing was pasted.");
    EXPECT_EQ(global->get_layers_count(), 5);

    key(Qt::Key_D, Qt::ControlModifier); // beside the block of A and B
    ASSERT_EQ(global->get_layers_count(), 7);
    EXPECT_EQ(global->get_layer(5)->get_name(), "A1"); // A is taken
    EXPECT_EQ(offset(5), std::make_pair(329, 140));
    EXPECT_EQ(selected(), (ids{5, 6}));
    key(Qt::Key_Delete);
    EXPECT_EQ(global->get_layers_count(), 5);
    EXPECT_EQ(history().undo_name(), "Delete 2 Screens");
    screen->undo_controller()->undo();
    EXPECT_EQ(global->get_layers_count(), 7);

    canvas->selection().clear(); // no selection: Ctrl+D clones the current layer
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(global->get_layers_count(), 8);
}
