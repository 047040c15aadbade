// The Tab chain over shown and hidden palettes.

#include "panels/settings_boxes.h"
#include "panels/settings_labels.h"
#include "window/window_fixture.h"

#include <QLineEdit>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {
struct widgets : window_test {
    void SetUp() override {
        window_test::SetUp();
        start();
    }
};
} // namespace

TEST_F(widgets, TabWalksTheFieldsOfShownPalettesInOrder) {
    // Two fields in each of two palettes, chained in construction order.
    auto field = [&](QWidget* palette, const char* text) {
        auto* edit = new QLineEdit(text, static_cast<SettingsBaseWindow*>(palette)->body());
        edit->move(5, 5 + 25 * int(screen->tab_order().size() % 2));
        edit->show();
        SettingsFromLayer::add_to_tab_order(edit);
        return edit;
    };
    const std::size_t before = screen->tab_order().size();
    QLineEdit* a1 = field(screen->settings_boxes(), "a1");
    QLineEdit* a2 = field(screen->settings_boxes(), "a2");
    QLineEdit* b1 = field(screen->settings_labels(), "b1");
    ASSERT_EQ(screen->tab_order().size(), before + 3);
    auto tab = [&](bool back = false) {
        QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : screen;
        QTest::keyClick(target, back ? Qt::Key_Backtab : Qt::Key_Tab,
                        back ? Qt::ShiftModifier : Qt::NoModifier);
        return QApplication::focusWidget();
    };
    screen->settings_labels()->show(); // the test's small window starts it hidden
    screen->set_focus_to(a1);
    ASSERT_TRUE(wait_until([&] { return a1->hasFocus(); }));
    EXPECT_EQ(tab(), a2);
    EXPECT_EQ(a2->selectedText(), "a2"); // the whole text is selected
    EXPECT_EQ(tab(), b1);
    // The Labels palette hidden: from a2 the walk skips b1 and wraps to
    // the first field of the chain; Shift+Tab walks back.
    screen->set_focus_to(a2);
    screen->settings_labels()->hide();
    EXPECT_EQ(tab(), screen->tab_order().front());
    EXPECT_EQ(tab(true), a2);
    EXPECT_EQ(tab(true), a1);
    // With no field focused, Tab starts at the first and Shift+Tab at the last.
    screen->settings_labels()->show();
    a1->clearFocus();
    EXPECT_EQ(tab(true), b1);
}
