// The bill of materials: cabinets by kind with halves, exclusions, spares
// and weights, hidden layers left out, and every count the same as the data
// path's and the power plan's.

#include "plan/bom.h"
#include "plan/power_plan.h"
#include "plan/processors.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct bom_test : workspace_test {
    bom_test() {
        global.m_project = std::make_shared<project>();
        // Two layers of one kind (one with halves and an exclusion), a
        // picture between, a second kind without a weight, a hidden layer.
        add_screen(global, "Left", 0, 0, 4, 3, 10)
            ->apply_layer_info("HalfColumns:1001\nExcludeBoxes:65537\nCabinetWeight:7.5\n"
                               "SparePercent:10\nPhysW:500\nPhysH:500\nPowerWatts:200");
        add_picture(global, "Picture", 0, 0, 10, 10);
        add_screen(global, "Right", 100, 0, 2, 2, 10)
            ->apply_layer_info("CabinetWeight:7.5\nSparePercent:10\nPhysW:500\nPhysH:500\n"
                               "DataDiagramType:1\nSnakeLimit:250");
        add_screen(global, "Floor", 0, 100, 3, 1, 20)
            ->apply_layer_info("PhysW:250\nPhysH:250\nPowerPhases:1");
        add_screen(global, "Spare", 0, 200, 5, 5, 10)->set_hidden(true);
    }
};

} // namespace

TEST_F(bom_test, RowsAndTotals) {
    const plan::bill_of_materials bom = plan::make_bom(global);
    // Left: 12 cells, (1,1) excluded; column 0 and row 2 halved: 6 halves
    // of which (0,2) is a corner; 5 full. Right: 4 full. Spares: 10 % of 15,
    // rounded up. Weight: 9 x 7.5 + 5 halves x 3.75 + a corner 1.875. Data:
    // Left one port, Right two of two, Floor one. Power: Left's 1550 W on
    // two 1408 W circuits, one each for Right and Floor.
    EXPECT_EQ(plan::bom_csv(bom),
              "item,kind,count,unit_weight_kg,weight_kg,notes\r\n"
              "cabinet,\"10 x 10 px, 500 x 500 mm, pitch 50.00 mm\",9,7.5,67.5,\r\n"
              "half cabinet,\"10 x 10 px, 500 x 500 mm, pitch 50.00 mm\",6,3.75,20.625,"
              "\"1 halved both ways, a quarter each\"\r\n"
              "spare cabinet,\"10 x 10 px, 500 x 500 mm, pitch 50.00 mm\",2,7.5,15,"
              "not in the hung weight\r\n"
              "cabinet,\"20 x 20 px, 250 x 250 mm, pitch 12.50 mm\",3,,,weight not given\r\n"
              "data cable,main port,4,,,one a port\r\n"
              "data jumper,cabinet to cabinet,14,,,within a chain\r\n"
              "power feed,circuit,4,,,one a circuit\r\n"
              "power jumper,cabinet to cabinet,14,,,within a circuit\r\n"
              "left out,Spare,25,,,hidden screen layer\r\n");
    const plan::bom_totals& t = bom.totals;
    EXPECT_EQ(std::tie(t.cabinets, t.half_cabinets, t.spares, t.unknown_weight_cabinets),
              std::make_tuple(18, 6, 2, 3));
    EXPECT_DOUBLE_EQ(t.weight_kg, 88.125);
    EXPECT_EQ(plan::bom_line(bom), "18 cabinets \u00b7 88 kg + 3 unweighed \u00b7 4 ports \u00b7 "
                                   "4 circuits");

    // The same counts as the data path and the power plan give.
    std::int64_t ports = 0, data_jumpers = 0, circuits = 0, power_jumpers = 0, pixels = 0;
    double watts = 0, amperes[3] = {0, 0, 0};
    for (long long i = 0; i < global.get_layers_count(); ++i) {
        const auto layer = std::dynamic_pointer_cast<boxes_layer>(global.get_layer(i));
        if (!layer || layer->is_hidden()) continue;
        for (const Snake::port_load& p : Snake::port_loads(*layer).ports)
            ++ports, data_jumpers += p.cabinets - 1;
        const plan::power_plan power = plan::plan_power(*layer);
        for (const plan::circuit& c : power.circuits)
            ++circuits, power_jumpers += c.cabinets - 1;
        watts += power.watts();
        for (int k = 0; k < 3; ++k)
            amperes[k] += power.phase_amperes[k];
        pixels += std::int64_t(layer->get_width()) * layer->get_height();
    }
    EXPECT_EQ(std::tie(t.ports, t.data_jumpers, t.circuits, t.power_jumpers, t.pixels),
              std::tie(ports, data_jumpers, circuits, power_jumpers, pixels));
    EXPECT_EQ(t.watts, watts);
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(t.amperes[k], amperes[k]);
}

// A plan that fails is said so, and the list still counts what it can; a
// weight and a spare share that a file cannot mean cost only their key.
TEST_F(bom_test, FailuresAndBadValues) {
    const auto left = std::static_pointer_cast<boxes_layer>(global.get_layer(0));
    left->apply_layer_info("PowerWatts:5000\nSnakeLimit:50\nCabinetWeight:-3\nSparePercent:-20");
    EXPECT_EQ(left->CabinetWeight, 7.5);
    left->SparePercent = -20;
    const plan::bill_of_materials bom = plan::make_bom(global);
    const std::string csv = plan::bom_csv(bom);
    EXPECT_NE(csv.find("no data path,Left,0,,,Some panels consume more pixels then limit used."),
              std::string::npos)
        << csv;
    EXPECT_NE(csv.find("no power plan,Left,0,,,\"\"\"Left\"\": a cabinet draws 5000 W"),
              std::string::npos)
        << csv;
    EXPECT_EQ(bom.totals.spares, 1); // Right's 10 % of 4, rounded up
    EXPECT_EQ(bom.totals.cabinets, 18);
}

// Processors by model with their backup units, and backup cables, as the
// processor plan gives them; a hidden layer's unit is not bought and a
// layer in conflict is cabled to nothing.
TEST_F(bom_test, ProcessorsAndBackups) {
    const auto layer = [&](int i) {
        return std::static_pointer_cast<boxes_layer>(global.get_layer(i));
    };
    layer(0)->apply_layer_info("Processor:Generic 4 x 1G\nProcessorUnit:1\nBackup:1");
    layer(2)->apply_layer_info("Processor:Generic 4 x 1G\nProcessorUnit:2\nBackup:2");
    layer(3)->apply_layer_info("Processor:Generic 16 x 1G\nProcessorUnit:3");
    const plan::processor_plan plan = plan::plan_processors(global);
    const auto rows = [&] {
        std::string out;
        for (const plan::bom_row& r : plan::make_bom(global).rows)
            if (r.item == "processor" || r.item == "data cable" || r.item == "no data path")
                out += r.item + "|" + r.kind + "|" + std::to_string(r.count) + "|" + r.notes + "\n";
        return out;
    };
    // Unit 1 (Left, a loop back), unit 2 (Right, one chain under the model's
    // limit) mirrored by backup unit 4, unit 3 (Floor).
    EXPECT_EQ(plan.models,
              (std::map<std::string, int>{{"Generic 16 x 1G", 1}, {"Generic 4 x 1G", 3}}));
    const std::string expected = "processor|Generic 16 x 1G|1|\n"
                                 "processor|Generic 4 x 1G|3|1 of them a backup unit\n"
                                 "data cable|main port|3|one a port\n"
                                 "data cable|backup port|2|one a port\n";
    EXPECT_EQ(rows(), expected);
    const plan::bom_totals t = plan::make_bom(global).totals;
    EXPECT_NE(plan::bom_line(plan::make_bom(global)).find("3 ports + 2 backup \u00b7 "),
              std::string::npos);
    EXPECT_EQ(std::tie(t.ports, t.backup_ports),
              std::make_tuple(std::int64_t(plan.main_ports()), std::int64_t(plan.backup_ports())));

    // The hidden layer on a unit of its own, with a backup unit, changes nothing.
    layer(4)->apply_layer_info("Processor:Generic 4 x 10G\nProcessorUnit:5\nBackup:2");
    EXPECT_EQ(rows(), expected);

    // Floor on Left's unit and port: in conflict, so no cable and no unit.
    layer(3)->apply_layer_info("Processor:Generic 4 x 1G\nProcessorUnit:1");
    EXPECT_EQ(rows(), "processor|Generic 4 x 1G|3|1 of them a backup unit\n"
                      "data cable|main port|2|one a port\n"
                      "data cable|backup port|2|one a port\n"
                      "no data path|Floor|0|" +
                          plan::plan_processors(global).conflicts.front().message + "\n");
}
