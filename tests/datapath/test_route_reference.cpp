// The routers against a plain, line-by-line rendering of their rules: runs
// as separate arrays, copies appended to the route, marks on the previous
// cabinet written wherever it lies. The engine routes in place and lays
// lines down ahead of time; on thousands of small random walls both must
// give the same route, box for box and mark for mark.

#include "datapath/snake.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>

using namespace Vantora_TesserinePro;

namespace {

using Snake::box;
using Snake::route;

int ref_pixels(const box& b) {
    return int(std::ceil((b.x1 - b.x0) * (b.y1 - b.y0)));
}

std::uint64_t ref_limit(const boxes_layer& l) {
    return std::uint64_t(std::int64_t(l.SnakeLimit));
}

// nullopt when the router fails.
std::optional<route> reference_route(const boxes_layer& l) {
    const unsigned mode = unsigned(l.SnakeMode) & 7;
    const bool t = mode & 4;
    const int initial = t ? (mode >> 1) & 1 : mode & 1;
    const bool backward = t ? mode & 1 : (mode >> 1) & 1;
    const bool novastar = l.DataDiagramType == 0;
    const std::uint64_t limit = ref_limit(l);

    std::vector<std::vector<box>> runs;
    long outer_index = -1;
    l.for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short c, unsigned short r) {
            const long outer = t ? c : r;
            if (outer != outer_index) {
                if (runs.empty() || !runs.back().empty()) runs.emplace_back();
                outer_index = outer;
            }
            box b;
            b.column = c;
            b.row = r;
            b.x0 = x0;
            b.y0 = y0;
            b.x1 = x1;
            b.y1 = y1;
            if (novastar ? l.should_skip_box(b) : l.ExcludeBoxes.contains(b.id())) return false;
            runs.back().push_back(b);
            return false;
        },
        t);

    route out;
    auto append = [&](const std::vector<box>& run, int direction) {
        if (direction == 0)
            out.insert(out.end(), run.begin(), run.end());
        else
            out.insert(out.end(), run.rbegin(), run.rend());
    };

    // "Novastar" state
    int minX = INT_MAX, minY = INT_MAX, maxX = INT_MIN, maxY = INT_MIN;
    std::int32_t area = 0;
    std::uint64_t n_used = 0;
    // "Other Type" state
    bool open = false, pending = true;
    std::uint64_t used = 0;
    box* previous = nullptr;
    int direction = initial;

    for (std::size_t k = 0; k < runs.size(); ++k) {
        auto& run = runs[backward ? runs.size() - 1 - k : k];
        if (run.empty()) continue; // an empty run adds nothing
        if (novastar) {
            std::uint64_t sum = 0;
            int rx0 = INT_MAX, ry0 = INT_MAX, rx1 = INT_MIN, ry1 = INT_MIN;
            for (const box& b : run) {
                sum += std::uint64_t(std::int64_t(ref_pixels(b)));
                rx0 = std::min(rx0, int(b.x0));
                ry0 = std::min(ry0, int(b.y0));
                rx1 = std::max(rx1, int(b.x1));
                ry1 = std::max(ry1, int(b.y1));
            }
            if (sum > limit) return std::nullopt;
            minX = std::min(minX, rx0);
            minY = std::min(minY, ry0);
            maxX = std::max(maxX, rx1);
            maxY = std::max(maxY, ry1);
            const std::int32_t merged =
                std::int32_t(std::int64_t(maxY - minY) * std::int64_t(maxX - minX));
            const bool fits = limit >= std::uint64_t(std::int64_t(merged));
            if (!fits && area == 0) return std::nullopt;
            if (out.empty() || n_used + sum > limit || !fits) {
                n_used = 0;
                area = 0;
                direction = initial;
                minX = rx0;
                minY = ry0;
                maxX = rx1;
                maxY = ry1;
                if (!out.empty()) out.back().ends_port = out.back().end_known = 1;
                box& first = direction == 1 ? run.back() : run.front();
                first.starts_port = first.start_known = 1;
            }
            append(run, direction);
            direction = 1 - direction;
            n_used += sum;
            area = merged;
        } else {
            if (!open && pending) direction = initial;
            std::uint64_t line = 0, size = 0;
            const std::size_t n = run.size();
            for (std::size_t v = 0; v <= n; ++v) {
                box* b = v < n ? &run[direction == 1 ? n - 1 - v : v] : nullptr;
                if (b) size = std::uint64_t(std::int64_t(ref_pixels(*b)));
                if (used != 0 && !open) {
                    if (b) line += size;
                } else if (size + line + used > limit) {
                    if (previous) {
                        previous->ends_port = 1;
                        previous->end_known = 1;
                        previous->starts_port = 0;
                        previous->start_known = 1;
                        open = false;
                        pending = true;
                    }
                    if (b) {
                        b->starts_port = b->start_known = b->end_known = 1;
                        b->ends_port = 0;
                        open = true;
                        pending = false;
                        used = 0;
                        line = size;
                    } else {
                        used = 0;
                        line = 0;
                    }
                } else if (b) {
                    if (used == 0 && line == 0) {
                        b->starts_port = b->start_known = b->end_known = 1;
                        b->ends_port = 0;
                        open = true;
                    } else {
                        b->start_known = b->end_known = 1;
                        b->starts_port = b->ends_port = 0;
                    }
                    line += size;
                }
                if (b) previous = b;
            }
            if (used + line > limit) {
                pending = true;
                used = 0;
            }
            if (!out.empty() && !out.back().end_known) {
                out.back().ends_port = pending;
                out.back().end_known = 1;
            }
            box& first = direction == 1 ? run.back() : run.front();
            if (!first.start_known) {
                first.starts_port = pending;
                first.start_known = 1;
                pending = false;
            }
            append(run, direction);
            direction = 1 - direction;
            used += line;
        }
    }
    if (!out.empty()) out.back().ends_port = out.back().end_known = 1;
    return out;
}

std::optional<route> engine_route(const boxes_layer& l) {
    try {
        return Snake::make_route(l);
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), Snake::limit_failure_text);
        return std::nullopt;
    }
}

std::string describe(const boxes_layer& l) {
    std::ostringstream o;
    o << "type " << l.DataDiagramType << " mode " << l.SnakeMode << " limit " << l.SnakeLimit << " "
      << l.Columns << "x" << l.Rows << " of " << l.Width << "x" << l.Height << " half "
      << l.HalfColumns << " skip " << l.SkipBlankBoxes << " excluded";
    for (std::uint32_t id : l.ExcludeBoxes)
        o << " (" << (id >> 16) << "," << (id & 0xFFFF) << ")";
    return o.str();
}

// The marks that count: a flag only where it is known.
bool same_box(const box& a, const box& b) {
    return a.column == b.column && a.row == b.row && a.x0 == b.x0 && a.y0 == b.y0 && a.x1 == b.x1 &&
           a.y1 == b.y1 && a.start_known == b.start_known && a.end_known == b.end_known &&
           a.is_port_start() == b.is_port_start() && a.is_port_end() == b.is_port_end();
}

struct reference_check : Vantora_TesserinePro::testing::screen_test {
    void expect_same() {
        const auto expected = reference_route(*layer);
        const auto got = engine_route(*layer);
        ASSERT_EQ(expected.has_value(), got.has_value()) << describe(*layer);
        if (!expected) return;
        ASSERT_EQ(expected->size(), got->size()) << describe(*layer);
        for (std::size_t k = 0; k < got->size(); ++k)
            ASSERT_TRUE(same_box((*expected)[k], (*got)[k]))
                << describe(*layer) << "\nat " << k << "\nwanted " << Snake::route_text(*expected)
                << "\ngot    " << Snake::route_text(*got);
    }
};

} // namespace

TEST_F(reference_check, RandomWalls) {
    std::mt19937 random(20240611);
    auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(random); };
    for (int round = 0; round < 20000; ++round) {
        layer->Columns = pick(0, 7);
        layer->Rows = pick(0, 7);
        layer->Width = pick(1, 21);
        layer->Height = pick(1, 21);
        layer->HalfColumns = std::bitset<4>(unsigned(pick(0, 15)));
        layer->SnakeMode = pick(0, 9) == 0 ? pick(-20, 20) : pick(0, 7);
        layer->DataDiagramType = pick(0, 1);
        layer->SkipBlankBoxes = pick(0, 1);
        layer->ExcludeBoxes.clear();
        const int exclusion = pick(0, 3); // in quarters of a chance per cabinet
        for (int c = 0; c < layer->Columns; ++c)
            for (int r = 0; r < layer->Rows; ++r)
                if (pick(0, 7) < exclusion) layer->ExcludeBoxes.add(box_id(c, r));
        if (pick(0, 9) == 0) layer->ExcludeBoxes.add(box_id(40, 1)); // off the grid
        // Limits around a few cabinets' and a few lines' worth, and the edges.
        const int cabinet = layer->Width * layer->Height;
        switch (pick(0, 5)) {
        case 0:
            layer->SnakeLimit = pick(-2, 0);
            break;
        case 1:
            layer->SnakeLimit = cabinet * pick(1, 4) + pick(-cabinet / 2, cabinet / 2);
            break;
        case 2:
            layer->SnakeLimit = cabinet * std::max(layer->Columns, layer->Rows) * pick(1, 3);
            break;
        case 3:
            layer->SnakeLimit = pick(1, 3000);
            break;
        case 4:
            layer->SnakeLimit = INT32_MAX;
            break;
        default:
            layer->SnakeLimit = cabinet * pick(1, 30) + pick(0, 2);
            break;
        }
        expect_same();
        if (HasFatalFailure()) return;
    }
}

TEST_F(reference_check, LongLinesWithGaps) {
    // Lines longer than the walk's buffer would hold at once in cache, with
    // gaps, both orders, and ports that alternate between one line and more.
    std::mt19937 random(7);
    Vantora_TesserinePro::testing::set_grid(*layer, 300, 40, 10, 10);
    for (int round = 0; round < 200; ++round) {
        layer->HalfColumns = std::bitset<4>(unsigned(round % 16));
        layer->SnakeMode = round % 8;
        layer->DataDiagramType = (round / 8) % 2;
        layer->SkipBlankBoxes = 1;
        layer->ExcludeBoxes.clear();
        for (int k = 0; k < round * 20; ++k)
            layer->ExcludeBoxes.add(
                box_id(std::uint32_t(random() % 300), std::uint32_t(random() % 40)));
        layer->SnakeLimit = int(random() % 120000) + 4000;
        expect_same();
        if (HasFatalFailure()) return;
    }
}

TEST_F(reference_check, ComputedRouteKeepsItsMemoryToThePath) {
    Vantora_TesserinePro::testing::set_grid(*layer, 200, 100, 10, 10);
    layer->SnakeLimit = -1;
    for (int c = 0; c < 200; c += 3)
        layer->ExcludeBoxes.add(box_id(c, 7));
    for (int mode = 0; mode < 8; ++mode) {
        layer->SnakeMode = mode;
        const route r = Snake::make_route(*layer);
        EXPECT_EQ(r.size(), 20000u - 67u);
        // At most one line of room beyond the route itself.
        EXPECT_LE(r.capacity(), r.size() + (mode & 4 ? 100u : 200u));
    }
}

TEST_F(reference_check, AbsurdWallIsRefusedNotWalked) {
    layer->Columns = 65535;
    layer->Rows = 65535;
    for (int type : {0, 1}) {
        layer->DataDiagramType = type;
        try {
            (void)Snake::make_route(*layer);
            ADD_FAILURE() << "no failure";
        } catch (const std::runtime_error& e) {
            EXPECT_EQ(std::string(e.what()), Snake::too_many_cabinets_text);
        }
    }
    // The custom path knows no grid.
    layer->CustomDataPath = 1;
    layer->CustomPath = {{box_id(0, 0)}};
    EXPECT_EQ(Snake::make_route(*layer).size(), 1u);
}
