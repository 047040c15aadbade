// Editing on the canvas with real mouse and key events: pan, the raster
// label, moves with snapping, picture handles, the exclude rectangle and the
// custom data path.

#include "app/undo_controller.h"
#include "core/data_folder.h"
#include "datapath/snake.h"
#include "support/test_support.h"
#include "window/window_fixture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QWheelEvent>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct editing : window_test {
    void SetUp() override {
        window_test::SetUp();
        start();
        window->resize(1400, 900);
        canvas->actual_size(); // points below are at zoom 1 and the starting pan
        screen_layer = global->current_boxes_layer();
        canvas->repaint();
    }
    // A raster point on the canvas at the current pan and zoom.
    QPoint at(double x, double y) const {
        const float z = canvas->get_effective_zoom();
        return canvas->get_pan() + QPoint(int(x * z), int(y * z));
    }
    // A drag as a hand makes it: press, a few moves, a paint between moves
    // (the previews are drawn), release.
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers held = Qt::NoModifier,
              Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(canvas, button, held, from);
        for (int step = 1; step <= 4; ++step) {
            move_holding(canvas, from + (to - from) * step / 4, held, button);
            canvas->repaint();
        }
        QTest::mouseRelease(canvas, button, held, to);
    }
    void click(QPoint p, Qt::KeyboardModifiers held = Qt::NoModifier,
               Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(canvas, button, held, p);
    }
    void set_zoom(float z) {
        canvas->set_zoom(z);
        canvas->repaint();
    }
    pointer<image_layer> picture(int x, int y, int w, int h) {
        auto p = global->new_image_layer();
        p->setMaintainAspectRatio(false);
        p->set_width(w);
        p->set_height(h);
        p->set_offset_x(x);
        p->set_offset_y(y);
        global->move_layer_to_visual(global->get_layers_count() - 1, 0); // on top
        return p;
    }
    pointer<boxes_layer> screen_layer;
};

} // namespace

TEST_F(editing, ADragPansOnEmptyCanvasAndMovesTheRasterLabelOnIt) {
    drag(QPoint(100, 700), QPoint(150, 730));
    EXPECT_EQ(canvas->get_pan(), QPoint(330, 30));
    EXPECT_EQ(screen_layer->get_offset_x(), 0); // nothing else moved

    global->raster_label_enabled = true;
    global->raster_label_x = 1200;
    global->raster_label_y = 700;
    global->raster_label_width = 100;
    global->raster_label_height = 60;
    set_zoom(0.5f);
    drag(at(1220, 720), at(1220, 720) + QPoint(40, 20));
    EXPECT_EQ(global->raster_label_x, 1280); // screen pixels count double at 0.5
    EXPECT_EQ(global->raster_label_y, 740);
    EXPECT_EQ(canvas->get_pan(), QPoint(330, 30));
}

TEST_F(editing, ShiftMovesAScreenLayerAndSnapsStrictlyAt20) {
    screen_layer->set_offset_x(300);
    screen_layer->set_offset_y(300);
    const document_history& history = screen->undo_controller()->history();
    const std::size_t steps = history.steps();
    drag(at(500, 400), at(500, 400) + QPoint(100, 50), Qt::ShiftModifier);
    EXPECT_EQ(screen_layer->get_offset_x(), 400);
    EXPECT_EQ(screen_layer->get_offset_y(), 350);
    // The press, four moves and the release are one step.
    EXPECT_TRUE(wait_until([&] { return history.steps() == steps + 1; }));
    EXPECT_EQ(history.undo_name(), "Move Screen1");

    // At half zoom a screen pixel is two raster pixels; the threshold stays
    // 20 raster pixels: 19 from the left edge snaps, 20 does not.
    set_zoom(0.5f);
    drag(at(600, 400), at(600, 400) - QPoint(190, 0), Qt::ShiftModifier); // to x 20
    EXPECT_EQ(screen_layer->get_offset_x(), 20);
    drag(at(600, 400), at(600, 400) - QPoint(1, 0), Qt::ShiftModifier); // to x 18
    EXPECT_EQ(screen_layer->get_offset_x(), 0);
    // The right raster edge: 1920 - 1024 = 896.
    drag(at(600, 400), at(600, 400) + QPoint(444, 0), Qt::ShiftModifier); // to 888
    EXPECT_EQ(screen_layer->get_offset_x(), 896);
    // The bottom edge: 1080 - 640 = 440, from 436.
    drag(at(1000, 400), at(1000, 400) + QPoint(0, 43), Qt::ShiftModifier);
    EXPECT_EQ(screen_layer->get_offset_y(), 440);
}

TEST_F(editing, TheRasterWinsAnAxisANeighbourTheOtherHiddenOnesCount) {
    auto other = global->new_boxes_layer(); // index 0; ours moves to 1
    other->set_offset_x(1024);
    other->set_offset_y(300);
    other->set_hidden(true);
    global->set_current_layer_index(1);
    screen_layer->set_offset_x(600);
    screen_layer->set_offset_y(600);
    // To (10, 310): x is near the raster's left edge and near nothing else,
    // y near the hidden neighbour's top.
    drag(at(700, 700), at(700, 700) - QPoint(590, 290), Qt::ShiftModifier);
    EXPECT_EQ(screen_layer->get_offset_x(), 0);
    EXPECT_EQ(screen_layer->get_offset_y(), 300);
    // To x 15: near the raster's left edge and 9 from the neighbour's right
    // edge (at 24).
    other->set_offset_x(-1000);
    drag(at(100, 400), at(100, 400) + QPoint(15, 0), Qt::ShiftModifier);
    EXPECT_EQ(screen_layer->get_offset_x(), 0); // the raster before the neighbour
    // Right edge on the neighbour's left edge: to 480, 4 short of 1500.
    other->set_offset_x(1500);
    drag(at(100, 400), at(100, 400) + QPoint(480, 0), Qt::ShiftModifier);
    EXPECT_EQ(screen_layer->get_offset_x(), 476);
}

TEST_F(editing, TheGroupsApplyPerLayerType) {
    auto p = picture(100, 100, 200, 100);
    EXPECT_EQ(global->current_image_layer(), p);
    // Shift on a picture: nothing, not even a pan.
    drag(at(150, 150), at(150, 150) + QPoint(50, 50), Qt::ShiftModifier);
    EXPECT_EQ(p->get_offset_x(), 100);
    EXPECT_EQ(canvas->get_pan(), QPoint(280, 0));
    // Control moves it.
    drag(at(150, 150), at(150, 150) + QPoint(50, 50), Qt::ControlModifier);
    EXPECT_EQ(p->get_offset_x(), 150);
    EXPECT_EQ(p->get_offset_y(), 150);
    EXPECT_FALSE(
        QFile::exists(QString::fromStdString((folder_to_save_data() / "logo.data").string())));
}

TEST_F(editing, HandlesCatchWithinFourScreenPixels) {
    auto p = picture(100, 100, 200, 100);
    set_zoom(0.5f);
    // The right handle at half zoom: 6 raster pixels off (3 on screen)
    // still catches.
    drag(at(100 + 200 - 6, 150), at(100 + 200 - 6, 150) + QPoint(20, 0), Qt::ControlModifier);
    EXPECT_EQ(p->get_width(), 240);
    EXPECT_EQ(p->get_height(), 100);
    EXPECT_EQ(p->get_offset_x(), 100);
    // The top handle moves the top edge.
    drag(at(100 + 120, 100 + 1), at(100 + 120, 100 + 1) - QPoint(0, 10), Qt::ControlModifier);
    EXPECT_EQ(p->get_offset_y(), 80);
    EXPECT_EQ(p->get_height(), 120);
    // 8 raster pixels off is inside the picture: a move, not a resize.
    drag(at(100 + 240 - 8, 140), at(100 + 240 - 8, 140) + QPoint(5, 0), Qt::ControlModifier);
    EXPECT_EQ(p->get_width(), 240);
    EXPECT_EQ(p->get_offset_x(), 110);
    // With the aspect kept, the bottom handle sets the height and the
    // picture derives its width.
    p->setMaintainAspectRatio(true);
    drag(at(110 + 120, 80 + 120), at(110 + 120, 80 + 120) + QPoint(0, 30), Qt::ControlModifier);
    EXPECT_EQ(p->get_height(), 180);
}

TEST_F(editing, ControlTogglesACabinetThenTheRectangleGoesTheSameWay) {
    // Press on (1, 1): it is excluded at once; dragging to (3, 2) excludes
    // the rectangle.
    QTest::mousePress(canvas, Qt::LeftButton, Qt::ControlModifier, at(200, 200));
    EXPECT_TRUE(screen_layer->ExcludeBoxes.contains(box_id(1, 1)));
    move_holding(canvas, at(450, 300), Qt::ControlModifier);
    QTest::mouseRelease(canvas, Qt::LeftButton, Qt::ControlModifier, at(450, 300));
    for (int c = 1; c <= 3; ++c)
        for (int r = 1; r <= 2; ++r)
            EXPECT_TRUE(screen_layer->ExcludeBoxes.contains(box_id(c, r))) << c << "," << r;
    EXPECT_EQ(screen_layer->ExcludeBoxes.size(), 6u);

    // A press on an excluded cabinet brings it back, and the rectangle
    // includes: (2, 1) and (3, 1) return with it.
    drag(at(200, 200), at(450, 200), Qt::ControlModifier);
    EXPECT_EQ(screen_layer->ExcludeBoxes.size(), 3u);
    EXPECT_FALSE(screen_layer->ExcludeBoxes.contains(box_id(3, 1)));

    // A click without moving: the toggle, then the one-point rectangle
    // applies the same direction once more, which changes nothing.
    click(at(700, 500), Qt::ControlModifier);
    EXPECT_TRUE(screen_layer->ExcludeBoxes.contains(box_id(5, 3)));
    EXPECT_EQ(canvas->get_pan(), QPoint(280, 0));
}

TEST_F(editing, ACustomPathByClicksAndSpaces) {
    screen_layer->CustomDataPath = 1;
    screen_layer->Columns = 3;
    screen_layer->Rows = 2;
    screen_layer->set_changed();
    // (0,0) (1,0) (2,0), space, (2,1) (1,1); a right click takes (1,0) out,
    // and a cabinet clicked twice stands once.
    for (QPoint cabinet : {QPoint(0, 0), QPoint(1, 0), QPoint(2, 0), QPoint(2, 0)})
        click(at(cabinet.x() * 128 + 64, cabinet.y() * 128 + 64));
    QTest::keyClick(canvas, Qt::Key_Space);
    for (QPoint cabinet : {QPoint(2, 1), QPoint(1, 1)})
        click(at(cabinet.x() * 128 + 64, cabinet.y() * 128 + 64));
    click(at(128 + 64, 64), Qt::NoModifier, Qt::RightButton);
    EXPECT_EQ(screen_layer->get_custom_path_string(), "0,131072|131073,65537");
    EXPECT_EQ(Snake::route_text(Snake::make_route(*screen_layer)), "(0,0)S (2,0)E (2,1)S (1,1)E");
    // An empty run, or a run of one cabinet, is not closed by space.
    click(at(64, 128 + 64));
    QTest::keyClick(canvas, Qt::Key_Space);
    QTest::keyClick(canvas, Qt::Key_Space);
    click(at(128 + 64, 64));
    QTest::keyClick(canvas, Qt::Key_Space);
    EXPECT_EQ(screen_layer->get_custom_path_string(), "0,131072|131073,65537,1|65536");
}

TEST_F(editing, MovingTheLogoSavesIt) {
    auto logo = global->get_logo_layer();
    logo->setMaintainAspectRatio(false);
    logo->set_width(100);
    logo->set_height(50);
    logo->set_offset_x(500);
    global->move_layer_to_visual(global->get_layers_count() - 1, 0);
    global->set_current_layer_index(global->get_layers_count() - 1);
    const QString file = QString::fromStdString((folder_to_save_data() / "logo.data").string());
    QFile::remove(file);
    drag(at(520, 20), at(520, 20) + QPoint(30, 40), Qt::ControlModifier);
    EXPECT_EQ(logo->get_offset_x(), 530);
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_TRUE(read_file(file.toStdString()).find("OffsetX:530") != std::string::npos);
}

TEST_F(editing, FitShowsAn8kRasterCentredAndEditsLandAsAtActualSize) {
    window->resize(1600, 900);
    QCoreApplication::processEvents();
    global->set_paper_width(7680);
    global->set_paper_height(4320);
    screen_layer->set_offset_x(300);
    screen_layer->set_offset_y(300);
    // A Shift drag towards the right edge of the raster, where it snaps.
    const auto move_to_edge = [&] {
        drag(at(800, 600), at(800 + 6650 - 300, 600), Qt::ShiftModifier);
        return QPoint(screen_layer->get_offset_x(), screen_layer->get_offset_y());
    };
    QTest::keyClick(canvas, Qt::Key_0, Qt::ControlModifier);
    canvas->repaint();
    const float z = canvas->get_effective_zoom();
    ASSERT_LT(z, 0.25f);
    // Clear of the lists and of every palette shown.
    const QRect shown(canvas->get_pan(), at(7680, 4320) - canvas->get_pan());
    for (QWidget* over : canvas->parentWidget()->findChildren<QWidget*>()) {
        const bool covers = over->parentWidget() == screen && over != canvas && over->isVisible();
        EXPECT_FALSE(covers && over->geometry().translated(-canvas->pos()).intersects(shown))
            << over->objectName().toStdString();
    }

    const QPoint fitted = move_to_edge();
    EXPECT_EQ(fitted, QPoint(7680 - 1024, 300));
    // The wheel keeps the raster point under the pointer after Fit.
    const QPoint under = at(5000, 2000);
    QWheelEvent e(QPointF(under), canvas->mapToGlobal(QPointF(under)), QPoint(), QPoint(0, 120),
                  Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(canvas, &e);
    canvas->repaint();
    EXPECT_FLOAT_EQ(canvas->get_effective_zoom(), z + 0.15f);
    EXPECT_LE((at(5000, 2000) - under).manhattanLength(), 2);

    QTest::keyClick(canvas, Qt::Key_0, Qt::ControlModifier | Qt::ShiftModifier);
    canvas->repaint();
    EXPECT_FLOAT_EQ(canvas->get_effective_zoom(), 1.0f);
    EXPECT_EQ(canvas->get_pan(), QPoint(280, 0));
    screen_layer->set_offset_x(300);
    EXPECT_EQ(move_to_edge(), fitted);

    // The user's view stays until a project opens, which is fitted again.
    QTemporaryDir dir;
    const std::string wall = dir.filePath("wall.tsrx").toStdString();
    ASSERT_TRUE(global->save_project_to_file(wall));
    drag(QPoint(1300, 800), QPoint(1250, 780));
    canvas->repaint();
    EXPECT_EQ(canvas->get_pan(), QPoint(230, -20));
    global->open_project_file(wall);
    canvas->repaint();
    EXPECT_EQ(canvas->get_effective_zoom(), z);
}

// From behind, a click acts on the cabinet seen under the pointer, a drag
// moves a screen the way the hand goes, undo takes it back, and the live
// output keeps the front.
TEST_F(editing, TheRearViewEditsWhatIsSeen) {
    global->rear_view = true;
    global->set_changed();
    canvas->repaint();
    {
        const Global::frame_view frame = global->read_frame();
        ASSERT_TRUE(frame.rear());
        EXPECT_EQ(frame.rear()->pixel(1919 - 140, 140), frame.composite()->pixel(140, 140));
        EXPECT_NE(frame.rear()->pixel(140, 140), frame.composite()->pixel(140, 140));
    }
    // The red mark says so where no palette hides it: here a palette lies
    // over the canvas's top and the raster's top edge.
    QWidget cover(canvas->parentWidget());
    cover.setGeometry(QRect(canvas->pos(), QSize(canvas->width(), 60)));
    cover.show();
    canvas->repaint();
    const QImage shot = canvas->grab().toImage();
    QRect mark;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (shot.pixel(x, y) == qRgb(0xd0, 0x30, 0x30)) mark |= QRect(x, y, 1, 1);
    ASSERT_GT(mark.width(), 40);
    const qreal dpr = shot.devicePixelRatio(); // to the palettes' units
    mark = QRectF(mark.x() / dpr, mark.y() / dpr, mark.width() / dpr, mark.height() / dpr)
               .toAlignedRect();
    for (QWidget* w :
         canvas->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (w == canvas || !w->isVisible()) continue;
        EXPECT_FALSE(w->geometry().translated(-canvas->pos()).intersects(mark))
            << w->objectName().toStdString();
    }
    // Cabinet (0, 0) is seen at the raster's right end.
    click(at(1920 - 64, 64), Qt::ControlModifier);
    EXPECT_TRUE(screen_layer->ExcludeBoxes.contains(box_id(0, 0)));
    EXPECT_EQ(screen_layer->ExcludeBoxes.size(), 1u);
    screen_layer->set_offset_x(300);
    screen->undo_controller()->record();
    canvas->repaint();
    const document_history& history = screen->undo_controller()->history();
    const std::size_t steps = history.steps();
    drag(at(1920 - 500, 400), at(1920 - 500, 400) + QPoint(100, 0), Qt::ShiftModifier);
    EXPECT_EQ(screen_layer->get_offset_x(), 200);
    EXPECT_TRUE(wait_until([&] { return history.steps() == steps + 1; }));
    screen->undo_controller()->undo();
    EXPECT_EQ(global->current_boxes_layer()->get_offset_x(), 300);
}
