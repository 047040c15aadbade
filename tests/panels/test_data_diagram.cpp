// The "Data-Flow Diagram" palette: radio-like pattern boxes with their
// pictures, the path's switches and the Novastar/Other Type pair.

#include "palette_fixture.h"
#include "panels/settings_data_diagram.h"

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
