// The "Data-Flow Diagram" palette: radio-like pattern boxes with their
// pictures, the path's switches and the Novastar/Other Type pair.

#include "palette_fixture.h"
#include "panels/processors_dialog.h"
#include "panels/settings_data_diagram.h"
#include "persistence/processor_library.h"
#include "support/test_support.h"

#include <QTableWidget>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {
struct data_diagram : palette_test {
    SettingsDataDiagram::W_SnakeChoicer* choicer() const {
        return screen->settings_data_diagram()->choicer();
    }
    SettingsDataDiagram::W_SnakeSecondParams* second() const {
        return screen->settings_data_diagram()->second_params();
    }
};
const color::color red(200, 10, 20, 255);
} // namespace

TEST_F(data_diagram, EachControlWritesItsFieldAndNothingElse) {
    auto* c = choicer();
    auto* s = second();
    std::vector<edit> edits;
    for (int i = 0; i < 8; ++i)
        edits.push_back({"pattern", [c, i] { click(c->boxes[std::size_t(i)]); },
                         [i](boxes_layer& l) { l.SnakeMode = i; }});
    const std::vector<edit> rest = {
        {"Random Colors", [&] { click(s->random_colors); },
         [](boxes_layer& l) { l.UseRandomSnakeColor = !l.UseRandomSnakeColor; }},
        {"Color", [&] { s->color->choose(red); }, [](boxes_layer& l) { l.SnakeColor = red; }},
        {"Visible", [&] { space(s->visible); }, [](boxes_layer& l) { l.DrawSnake = !l.DrawSnake; }},
        {"Line Width", [&] { type(s->line_width, 12); }, [](boxes_layer& l) { l.SnakeWidth = 12; }},
        {"Custom Path", [&] { click(s->custom_path); },
         [](boxes_layer& l) { l.CustomDataPath = !l.CustomDataPath; }},
        {"Skip Blank", [&] { click(s->skip_blank); },
         [](boxes_layer& l) { l.SkipBlankBoxes = !l.SkipBlankBoxes; }},
        // Either box of the pair flips the type.
        {"Novastar", [&] { click(s->novastar); },
         [](boxes_layer& l) { l.DataDiagramType = l.DataDiagramType == 0; }},
        {"Other Type", [&] { click(s->other_type); },
         [](boxes_layer& l) { l.DataDiagramType = l.DataDiagramType == 0; }},
        {"Pixel Limit", [&] { type(s->pixel_limit, 4096); },
         [](boxes_layer& l) { l.SnakeLimit = 4096; }},
    };
    edits.insert(edits.end(), rest.begin(), rest.end());
    check_edits(screen->settings_data_diagram(), edits);
}

TEST_F(data_diagram, PatternBoxesActAsRadioButtonsWithTheRoutersPictures) {
    auto* c = choicer();
    click(c->boxes[2]);
    click(c->boxes[2]); // the chosen box stays chosen
    EXPECT_EQ(layer()->SnakeMode, 2);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(c->boxes[std::size_t(i)]->isChecked(), i == 2) << i;
    // Each picture is drawn, and no two patterns look alike.
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(c->images[std::size_t(i)]->image().size(), QSize(25, 25));
        for (int j = 0; j < i; ++j)
            EXPECT_NE(c->images[std::size_t(i)]->image(), c->images[std::size_t(j)]->image());
    }
}

TEST_F(data_diagram, PortLineFollowsEveryEdit) {
    auto* palette = screen->settings_data_diagram();
    palette->show();
    const pointer<boxes_layer> l = layer();
    l->Columns = 4, l->Rows = 3, l->Width = 10, l->Height = 10, l->SnakeMode = 0;
    l->DataDiagramType = 0;
    const auto line = [&](int limit) {
        type(second()->pixel_limit, limit);
        QCoreApplication::processEvents();
        return palette->port_line()->text();
    };
    const QString dot = QString::fromUtf8(" \u00b7 ");
    const QColor normal = palette->port_line()->palette().color(QPalette::WindowText);
    EXPECT_EQ(line(800), "Ports: 2" + dot + "fullest 100.0% (800 px)");
    EXPECT_EQ(line(700), "Ports: 3" + dot + "fullest 57.1% (400 px)");
    EXPECT_EQ(palette->port_line()->palette().color(QPalette::WindowText), normal);
    EXPECT_EQ(line(300), "Ports: 0" + dot + "Some panels consume more pixels then limit used.");
    EXPECT_NE(palette->port_line()->palette().color(QPalette::WindowText), normal);
    EXPECT_EQ(line(-1), "Ports: 1" + dot + "fullest 1,200 px");
    // A custom path is not held to the limit: over it, the line warns.
    l->CustomPath = {{box_id(0, 0), box_id(1, 0), box_id(2, 0)}};
    click(second()->custom_path);
    EXPECT_EQ(line(250), "Ports: 1" + dot + "fullest 120.0% (300 px)");
    EXPECT_NE(palette->port_line()->palette().color(QPalette::WindowText), normal);
}

// The processor: each control writes its key; the line shows the unit and
// ports; the library's editor adds, changes and removes the user's models,
// saved at once, and keeps the built-in ones.
TEST_F(data_diagram, ProcessorControlsAndLibraryEditor) {
    auto* p = screen->settings_data_diagram()->processor();
    const auto pick = [](QComboBox* box, int i) {
        box->setCurrentIndex(i);
        emit box->activated(i);
    };
    check_edits(
        screen->settings_data_diagram(),
        {{"Processor", [&] { pick(p->processor, 3); },
          [](boxes_layer& l) { l.Processor = "Generic 16 x 1G"; }},
         {"Unit", [&] { type(p->unit, 2); }, [](boxes_layer& l) { l.ProcessorUnit = 2; }},
         {"First Port", [&] { type(p->first_port, 5); }, [](boxes_layer& l) { l.FirstPort = 5; }},
         {"Depth", [&] { pick(p->bit_depth, 2); }, [](boxes_layer& l) { l.BitDepth = 12; }},
         {"Rate", [&] { type(p->frame_rate, 30); }, [](boxes_layer& l) { l.FrameRate = 30; }},
         {"Backup", [&] { pick(p->backup, 1); }, [](boxes_layer& l) { l.Backup = 1; }}});
    QCoreApplication::processEvents();
    const QString dot = QString::fromUtf8(" \u00b7 ");
    EXPECT_EQ(screen->settings_data_diagram()->port_line()->text(),
              "Unit 2" + dot + "port 5 of 16" + dot + "backup 6" + dot + "fullest 100 %");

    clear_data_folder();
    p->library->click();
    ProcessorsDialog* d = p->dialog;
    ASSERT_TRUE(d && d->isVisible());
    EXPECT_EQ(d->table->rowCount(), 4);
    d->name->setText("House");
    d->ports->setValue(2);
    d->pixels_8bit->setValue(1000);
    d->add->click();
    EXPECT_EQ(d->table->rowCount(), 5);
    EXPECT_NE(p->processor->findText("House"), -1);
    const std::string file = processor_library::default_file().string();
    EXPECT_NE(read_file(file).find("\"pixels_8bit\": 1000"), std::string::npos);
    d->add->click(); // the same name again
    EXPECT_EQ(d->status->text(), "There is a model named \"House\" already.");
    d->ports->setValue(3);
    d->replace->click();
    EXPECT_EQ(global->processor_models().find("House")->ports, 3);
    d->table->selectRow(0); // built in: shown, never changed
    EXPECT_FALSE(d->replace->isEnabled() || d->remove->isEnabled());
    d->table->selectRow(4);
    d->remove->click();
    EXPECT_EQ(global->processor_models().models().size(), 4u);
    EXPECT_EQ(read_file(file).find("House"), std::string::npos);
    d->reject();
}
