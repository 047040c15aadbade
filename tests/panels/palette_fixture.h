#pragma once
// The palettes under test: the running window, user actions on their
// controls, and a check that an edit writes exactly the fields it should
// and shows what a fill from the layer shows.

#include "panels/settings_base_window.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/small_widgets.h"
#include "window/window_fixture.h"

#include <QComboBox>
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

// What a palette's controls show, in order; a hidden control only as hidden
// (its stale value does not count).
inline std::string shown(QWidget* palette) {
    QStringList all;
    for (QWidget* w : palette->findChildren<QWidget*>()) {
        if (!w->isVisibleTo(palette))
            all << "hidden";
        else if (auto* c = dynamic_cast<ColorPicker*>(w))
            all << QString::number(c->get_color().word(), 16);
        else if (auto* b = qobject_cast<QAbstractButton*>(w))
            all << QString::number(b->isChecked());
        else if (auto* e = qobject_cast<QLineEdit*>(w))
            all << e->text();
        else if (auto* box = qobject_cast<QComboBox*>(w))
            all << box->currentText();
        else if (auto* l = qobject_cast<QLabel*>(w))
            all << l->text();
    }
    return all.join(" | ").toStdString();
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
    // A keyboard user's click: Space on the focused box.
    static void space(CheckboxWithFocus* box) {
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Space);
    }

    // One control's edit and what it must do to the layer.
    struct edit {
        const char* name;
        std::function<void()> act;
        std::function<void(boxes_layer&)> expect;
        // Whether a fill from the edited layer shows what the edit left
        // shown (not where a fill rounds the value, or writes the layer).
        bool refills = true;
    };
    // Each edit changes exactly its fields on the current screen layer and
    // shows what a fill from the layer shows; a fill runs no callback; with
    // no current layer no edit changes anything.
    void check_edits(SettingsBaseWindow* palette, const std::vector<edit>& edits) {
        palette->show(); // a hidden palette's lines wait until it shows
        for (const edit& e : edits) {
            SCOPED_TRACE(e.name);
            screen->reload_all(true);
            const pointer<boxes_layer> current = layer();
            auto twin = std::static_pointer_cast<boxes_layer>(current->clone());
            twin->offset_x = current->offset_x;
            twin->offset_y = current->offset_y;
            const auto unedited = std::static_pointer_cast<boxes_layer>(current->clone());
            e.expect(*twin);
            e.act();
            EXPECT_EQ(saved(*current), saved(*twin));
            if (!e.refills) continue;
            QCoreApplication::processEvents(); // what the palette posted to itself
            const std::string after = shown(palette);
            current->changed = false;
            palette->get_settings_from_layer(unedited);
            palette->get_settings_from_layer(current);
            EXPECT_EQ(shown(palette), after);
            EXPECT_FALSE(current->changed);
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
