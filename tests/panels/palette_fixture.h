#pragma once
// The palettes under test: the running window, user actions on their
// controls, and a check that an edit writes exactly the fields it should.

#include "panels/widgets/fields.h"
#include "panels/widgets/small_widgets.h"
#include "window/window_fixture.h"

#include <QLineEdit>

#include <map>
#include <string>

namespace Vantora_TesserinePro::testing {

// Everything a screen layer saves, key by key.
inline std::map<std::string, std::string> saved(const boxes_layer& layer) {
    property_set all = layer.get_base_layer_info();
    all.merge(layer.get_all_parameters());
    return {all.entries().begin(), all.entries().end()};
}

struct palette_test : window_test {
    void SetUp() override {
        window_test::SetUp();
        start();
        screen->reload_all(true);
    }
    pointer<boxes_layer> layer() const { return global->current_boxes_layer(); }

    // What the user does: type and press Return, click, pick a colour.
    static void type(QLineEdit* field, const QString& text) {
        field->setText(text);
        QTest::keyClick(field, Qt::Key_Return);
    }
    static void type(IntBox* box, int value) {
        box->selectAll();
        QTest::keyClicks(box, QString::number(value));
        QTest::keyClick(box, Qt::Key_Return);
    }
    static void click(CheckboxWithFocus* box) { box->click(); }

    // One control's edit and what it must do to the layer.
    struct edit {
        const char* name;
        std::function<void()> act;
        std::function<void(boxes_layer&)> expect;
    };
    // Each edit changes exactly its fields on the current screen layer, and
    // with no current layer none changes anything.
    void check_edits(const std::vector<edit>& edits) {
        for (const edit& e : edits) {
            SCOPED_TRACE(e.name);
            screen->reload_all(true);
            const pointer<boxes_layer> current = layer();
            auto twin = std::static_pointer_cast<boxes_layer>(current->clone());
            twin->offset_x = current->offset_x;
            twin->offset_y = current->offset_y;
            e.expect(*twin);
            e.act();
            EXPECT_EQ(saved(*current), saved(*twin));
        }
        const pointer<boxes_layer> current = layer();
        const auto before = saved(*current);
        global->set_current_layer_index(-1);
        ASSERT_EQ(layer(), nullptr);
        for (const edit& e : edits) {
            SCOPED_TRACE(e.name);
            e.act();
            EXPECT_EQ(saved(*current), before);
        }
        global->set_current_layer_index(0);
    }
};

} // namespace Vantora_TesserinePro::testing
