// Many screens at once: align and distribute on a table of layouts, Pack's
// invariants on random layouts, the block snap, the first free place, the
// clipboard text and deleting several.

#include "document/arrange.h"
#include "support/workspace_fixtures.h"

#include <climits>
#include <random>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

using places = std::vector<std::pair<int, int>>;
using rect = raster_rect;

// A workspace of its own for each case.
struct desk {
    recording_host host;
    Global global{&host};
    desk() { global.m_project = std::make_shared<project>(); }
    // Screens of w by h one-pixel cabinets, bottom of the stack first.
    std::vector<long long> lay_out(const std::vector<rect>& rects) {
        std::vector<long long> all;
        for (const rect& r : rects) {
            add_screen(global, "Wall" + std::to_string(all.size()), int(r.x), int(r.y), int(r.w),
                       int(r.h), 1);
            all.push_back((long long)all.size());
        }
        return all;
    }
    places offsets() const {
        places out;
        for (const auto& l : global.current_project_pointer()->layers)
            out.emplace_back(l->get_offset_x(), l->get_offset_y());
        return out;
    }
};

const std::vector<rect> three = {{10, 20, 40, 20}, {100, 50, 20, 40}, {52, 5, 30, 10}};
const std::vector<rect> one = {{300, 200, 100, 50}};
const std::vector<rect> too_wide = {{5, 5, 1925, 1081}}; // centres round down, below 0

} // namespace

TEST(arranging, AlignAndDistributeOnATableOfLayouts) {
    using a = alignment;
    const struct {
        const std::vector<rect>* layout;
        int how; // an alignment, or 6 and 7: distribute horizontally, vertically
        places expected;
    } table[] = {
        {&three, int(a::left), {{10, 20}, {10, 50}, {10, 5}}},
        {&three, int(a::right), {{80, 20}, {100, 50}, {90, 5}}},
        {&three, int(a::top), {{10, 5}, {100, 5}, {52, 5}}},
        {&three, int(a::bottom), {{10, 70}, {100, 50}, {52, 80}}},
        {&three, int(a::horizontal_centres), {{45, 20}, {55, 50}, {50, 5}}},
        {&three, int(a::vertical_centres), {{10, 37}, {100, 27}, {52, 42}}},
        {&three, 6, {{10, 20}, {100, 50}, {60, 5}}},
        {&three, 7, {{10, 22}, {100, 50}, {52, 5}}},
        {&one, int(a::right), {{1820, 200}}}, // one screen: on the raster
        {&one, int(a::bottom), {{300, 1030}}},
        {&one, int(a::horizontal_centres), {{910, 200}}},
        {&one, int(a::vertical_centres), {{300, 515}}},
        {&one, 6, {{300, 200}}}, // fewer than three: nothing
        {&too_wide, int(a::horizontal_centres), {{-3, 5}}},
        {&too_wide, int(a::vertical_centres), {{5, -1}}},
    };
    for (const auto& row : table) {
        desk fresh;
        const std::vector<long long> all = fresh.lay_out(*row.layout);
        const places before = fresh.offsets();
        const bool moved = row.how < 6 ? align_layers(fresh.global, all, alignment(row.how))
                                       : distribute_layers(fresh.global, all, row.how == 6);
        EXPECT_EQ(fresh.offsets(), row.expected) << "row " << (&row - table);
        EXPECT_EQ(moved, before != row.expected) << "row " << (&row - table);
    }
}

TEST(arranging, PackKeepsItsInvariantsOnRandomLayouts) {
    std::mt19937 random(35);
    auto pick = [&](int low, int high) {
        return std::uniform_int_distribution<>(low, high)(random);
    };
    int packed = 0, refused = 0;
    for (int trial = 0; trial < 300; ++trial) {
        desk t;
        t.global.set_paper_width(pick(400, 1600));
        t.global.set_paper_height(pick(300, 900));
        const int W = t.global.get_paper_width(), H = t.global.get_paper_height();
        std::vector<rect> rects;
        for (int n = pick(1, 12); n > 0; --n)
            rects.push_back({pick(-500, 2000), pick(-500, 2000), pick(1, 500), pick(1, 300)});
        t.lay_out(rects);
        t.global.get_layer(0)->set_hidden(pick(0, 1) == 1); // hidden ones stay where they are
        add_picture(t.global, "picture", 7, 9, 50, 50);
        const int gap = pick(0, 30);
        const places before = t.offsets();
        const std::vector<long long> order = visible_screens_in_list_order(t.global);
        if (!pack_layers(t.global, order, gap).empty()) {
            ++refused;
            EXPECT_EQ(t.offsets(), before); // nothing moved
            continue;
        }
        ++packed;
        const places after = t.offsets();
        EXPECT_EQ(after.back(), before.back());
        if (t.global.get_layer(0)->is_hidden()) {
            EXPECT_EQ(after[0], before[0]);
        }
        for (std::size_t k = 0; k < order.size(); ++k) {
            const rect& r = rects[std::size_t(order[k])];
            const auto [x, y] = after[std::size_t(order[k])];
            EXPECT_TRUE(x >= 0 && y >= 0 && x + r.w <= W && y + r.h <= H); // inside
            int tallest = 0; // of the row before this screen's
            for (std::size_t j = 0; j < k; ++j) {
                const rect& o = rects[std::size_t(order[j])];
                const auto [ox, oy] = after[std::size_t(order[j])];
                // Apart by the gap on one axis at least, and in list order.
                EXPECT_TRUE(ox + o.w + gap <= x || x + r.w + gap <= ox || oy + o.h + gap <= y ||
                            y + r.h + gap <= oy);
                EXPECT_TRUE(oy < y || (oy == y && ox < x));
                if (j + 1 < k && oy == after[std::size_t(order[k - 1])].second)
                    tallest = std::max(tallest, int(o.h));
                if (j + 1 < k) continue;
                // Right after the one before, or a new row below the tallest of its row.
                tallest = std::max(tallest, int(o.h));
                EXPECT_TRUE((y == oy && x == ox + o.w + gap) ||
                            (x == 0 && y == oy + tallest + gap));
            }
        }
    }
    EXPECT_GT(packed, 50);
    EXPECT_GT(refused, 50);
}

TEST(arranging, PackRowsFitExactlyAndARowEndsBelowItsTallest) {
    desk d;
    d.global.set_paper_width(210);
    d.global.set_paper_height(100);
    d.lay_out({{500, 0, 100, 60}, {0, 500, 100, 30}, {9, 9, 100, 30}});
    // List order is the top of the stack first: S2, S1, S0.
    EXPECT_EQ(pack_layers(d.global, visible_screens_in_list_order(d.global), 10), "");
    EXPECT_EQ(d.offsets(), (places{{0, 40}, {110, 0}, {0, 0}}));
    d.global.set_paper_height(99);
    EXPECT_EQ(pack_layers(d.global, {0, 1, 2}, 10),
              "the 3 screens do not fit the raster of 210 by 99 pixels with a gap of 10");
    EXPECT_EQ(pack_layers(d.global, {2, 1}, 11), ""); // 100 + 11 + 100 > 210: a second row
    EXPECT_EQ(d.offsets(), (places{{0, 40}, {0, 41}, {0, 0}}));
}

TEST(arranging, ABlockSnapsAsOneAndOffsetsStayHeld) {
    desk d;
    d.lay_out({{200, 200, 100, 100}, {330, 200, 100, 100}, {600, 415, 50, 50}});
    // The block of the first two, moved to x 15 (near the raster's edge)
    // and y 300: its bottom is 15 above the third's top, unless it skips it.
    EXPECT_EQ(snap_block(d.global, {15, 300, 230, 100}, {0, 1}), QPoint(0, 315));
    EXPECT_EQ(snap_block(d.global, {15, 300, 230, 100}, {0, 1, 2}), QPoint(0, 300));
    EXPECT_TRUE(move_layers(d.global, {2}, LLONG_MAX / 2, -LLONG_MAX / 2));
    EXPECT_EQ(d.offsets()[2], std::make_pair(INT_MAX, -INT_MAX));
    EXPECT_FALSE(move_layers(d.global, {2}, 1, -1)); // held: nothing moves
}

TEST(arranging, TheFirstFreePlaceSkipsScreensOnly) {
    desk d;
    d.global.set_paper_width(300);
    d.global.set_paper_height(200);
    d.lay_out({{0, 0, 100, 50}, {150, 0, 100, 100}, {0, 120, 300, 80}});
    d.global.get_layer(2)->set_hidden(true);
    add_picture(d.global, "backdrop", 0, 0, 300, 200);
    EXPECT_EQ(first_free_place(d.global, 50, 50), QPoint(100, 0));
    EXPECT_EQ(first_free_place(d.global, 60, 50), QPoint(0, 50));
    EXPECT_EQ(first_free_place(d.global, 300, 100), QPoint(0, 100));
    EXPECT_EQ(first_free_place(d.global, 301, 10), std::nullopt);
}

TEST(arranging, ScreensGoThroughTheClipboardTextAndNothingElseDoes) {
    desk d;
    d.global.set_paper_width(800);
    d.global.raster_label_x = 5;
    d.lay_out({{10, 20, 4, 3}, {30, 40, 5, 2}});
    add_picture(d.global, "picture", 0, 0, 8, 8);
    const string text = screens_text(d.global, {1, 2});
    EXPECT_EQ(text.rfind("TESSERINE_LED_PROJECT v2 2 ", 0), 0u);

    desk other;
    other.global.raster_label_x = 9;
    add_screen(other.global, "Wall1", 0, 0, 1, 1);
    const pointer_array<app_layer> screens = screens_from_text(text);
    ASSERT_EQ(screens.size(), 1u);                   // the picture stays behind
    EXPECT_EQ(other.global.get_paper_width(), 1920); // the reader left the document alone
    EXPECT_EQ(other.global.raster_label_x, 9);
    EXPECT_EQ(add_screens(other.global, screens, 5, -5), std::vector<long long>{1});
    EXPECT_EQ(other.global.get_layer(1)->get_name(), "Wall2"); // Wall1 was taken
    EXPECT_EQ(other.offsets()[1], std::make_pair(35, 35));
    EXPECT_EQ(other.global.get_current_layer_id(), 1);

    for (const string& foreign : {string("hello"), string(), text.substr(0, text.size() - 20),
                                  string("TESSERINE_LED_PRESETS v2 0 0\n")})
        EXPECT_TRUE(screens_from_text(foreign).empty());
    while (other.global.get_layers_count() < max_layers)
        add_screen(other.global, "S", 0, 0, 1, 1);
    EXPECT_TRUE(add_screens(other.global, screens_from_text(text), 0, 0).empty());
    EXPECT_EQ(other.global.get_layers_count(), max_layers);
}

TEST(arranging, DeletingSeveralKeepsTheRuleOfDeletingOne) {
    const struct {
        long long current;
        std::vector<long long> doomed;
        long long after;
    } table[] = {{3, {1, 3}, 2}, {3, {0, 1}, 1}, {4, {3, 4}, 2}, {0, {0, 1, 2, 3, 4}, -1}};
    for (const auto& row : table) {
        desk t;
        t.lay_out({{0, 0, 1, 1}, {0, 0, 1, 1}, {0, 0, 1, 1}, {0, 0, 1, 1}, {0, 0, 1, 1}});
        t.global.set_current_layer_index(row.current);
        delete_layers(t.global, row.doomed);
        EXPECT_EQ(t.global.get_layers_count(), 5 - (long long)row.doomed.size());
        EXPECT_EQ(t.global.get_current_layer_id(), row.after);
    }
}
