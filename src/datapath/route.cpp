// The three routers of the data path: "Novastar", "Other Type" and the
// hand-made custom path.
//
// The computed routers hold one array of the wall's cabinets, the route, and
// the walk writes each cabinet straight into it. Under forward order each
// outer line (a run) is routed in place as soon as the walk leaves it, while
// it is still in cache. Under backward order the runs are laid down in
// walking order first, then turned around in place. So there is never a
// second copy of the wall.

#include "datapath/snake.h"
#include "document/boxes_layer.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace Vantora_TesserinePro {

bool boxes_layer::should_skip_box(const Snake::box& b) const {
    return SkipBlankBoxes && ExcludeBoxes.contains(b.id());
}

namespace Snake {

const char* const limit_failure_text = "Some panels consume more pixels then limit used.";
const char* const too_many_cabinets_text = "The wall has too many cabinets for a data path.";

namespace {

// Float to 32-bit integer by truncation, held inside the type's range so that
// an absurd cabinet size cannot make the conversion undefined.
std::int32_t truncate_to_int(float v) {
    if (v >= 2147483648.0f) return INT32_MAX;
    if (v >= -2147483648.0f) return std::int32_t(v);
    return v < 0.0f ? INT32_MIN : 0;
}

// Pixel sums are compared with the limit as unsigned 64-bit numbers, so a
// negative limit never stops anything.
std::uint64_t limit_of(std::int64_t limit) {
    return std::uint64_t(limit);
}
bool above(std::int64_t pixels, std::uint64_t limit) {
    return std::uint64_t(pixels) > limit;
}

[[noreturn]] void fail() {
    throw std::runtime_error(limit_failure_text);
}

void mark_start(box& b, bool starts) {
    b.starts_port = starts;
    b.start_known = 1;
}
void mark_end(box& b, bool ends) {
    b.ends_port = ends;
    b.end_known = 1;
}

// Puts a run into route order: reversed when the direction of travel
// differs from how it lies in memory.
void orient(box* run, std::size_t n, bool reverse) {
    if (reverse) std::reverse(run, run + n);
}

// The pixel count, ceil of the area held inside the int range, kept inline
// for the routers' inner loops. Truncation already rounds a negative area up;
// a positive one with a fraction takes one more.
inline std::int32_t pixels_of(const box& b) {
    const float area = (b.x1 - b.x0) * (b.y1 - b.y0);
    if (__builtin_expect(area >= -2147483648.0f && area < 2147483648.0f, 1)) {
        const std::int32_t t = std::int32_t(area);
        return t + std::int32_t(float(t) < area);
    }
    return area > 0.0f ? INT32_MAX : area < 0.0f ? INT32_MIN : 0;
}

// What a cabinet weighs on its chain: its pixels on a data port. The
// cabinets of a line are mostly of one size, so the count of the one before
// is used again when the size repeats.
struct pixel_weight {
    float last_w = NAN, last_h = NAN;
    std::int64_t last = 0;
    std::int64_t operator()(const box& b) {
        const float w = b.x1 - b.x0, h = b.y1 - b.y0;
        if (w != last_w || h != last_h) {
            last_w = w;
            last_h = h;
            last = pixels_of(b);
        }
        return last;
    }
};

// Which cabinets leave the path. A bit per cell keeps the test cheap on large
// walls; the set itself answers for grids too big for that.
class excluded_cells {
  public:
    excluded_cells(const boxes_layer& layer, bool active) {
        if (!active || layer.ExcludeBoxes.empty()) return;
        set = &layer.ExcludeBoxes;
        // Walked indices are cut to 16 bits, so no cell lies beyond these.
        columns = std::uint32_t(std::clamp<std::int64_t>(layer.Columns, 0, 65536));
        rows = std::uint32_t(std::clamp<std::int64_t>(layer.Rows, 0, 65536));
        for (std::uint32_t id : layer.ExcludeBoxes)
            if ((id >> 16) < columns && (id & 0xFFFF) < rows) ++inside;
        const std::uint64_t cells = std::uint64_t(columns) * rows;
        if (cells > (std::uint64_t(1) << 27)) return;
        bits.assign(std::size_t((cells + 63) / 64), 0);
        for (std::uint32_t id : layer.ExcludeBoxes) {
            const std::uint32_t c = id >> 16, r = id & 0xFFFF;
            if (c < columns && r < rows) {
                const std::uint64_t k = std::uint64_t(r) * columns + c;
                bits[std::size_t(k / 64)] |= std::uint64_t(1) << (k % 64);
            }
        }
    }
    bool any() const { return set != nullptr; }
    bool contains(std::uint32_t c, std::uint32_t r) const {
        if (bits.empty()) return set->contains(box_id(c, r));
        const std::uint64_t k = std::uint64_t(r) * columns + c;
        return (bits[std::size_t(k / 64)] >> (k % 64)) & 1;
    }
    // Members that name a cell of the grid.
    std::uint64_t inside = 0;

  private:
    const exclude_boxes_set* set = nullptr;
    std::uint32_t columns = 0, rows = 0;
    std::vector<std::uint64_t> bits;
};

// Pixel sum and surrounding rectangle of one run.
struct run_summary {
    std::int64_t sum = 0;
    float x0 = INFINITY, y0 = INFINITY, x1 = -INFINITY, y1 = -INFINITY;

    void add(const run_summary& other) {
        sum += other.sum;
        x0 = std::min(x0, other.x0);
        y0 = std::min(y0, other.y0);
        x1 = std::max(x1, other.x1);
        y1 = std::max(y1, other.y1);
    }
    // Two halves summed side by side, so that the chains of additions and
    // comparisons overlap. The cabinets of a line are mostly of one size, so
    // the pixel count of the one before is used again when the size repeats.
    static run_summary of(const box* run, std::size_t n) {
        run_summary half[2];
        float last_w = NAN, last_h = NAN;
        std::int32_t last_pixels = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const box& b = run[i];
            run_summary& s = half[i & 1];
            const float w = b.x1 - b.x0, h = b.y1 - b.y0;
            if (w != last_w || h != last_h) {
                last_w = w;
                last_h = h;
                last_pixels = pixels_of(b);
            }
            s.sum += last_pixels;
            s.x0 = std::min(s.x0, b.x0);
            s.y0 = std::min(s.y0, b.y0);
            s.x1 = std::max(s.x1, b.x1);
            s.y1 = std::max(s.y1, b.y1);
        }
        half[0].add(half[1]);
        return half[0];
    }
};

// "Novastar": a port takes whole lines, limited by pixel sum and by the area
// of the rectangle around its cabinets.
class novastar_router {
  public:
    novastar_router(std::uint64_t limit, int initial) : limit(limit), initial(initial) {
        direction = initial;
    }

    // Routes one run of n > 0 boxes and leaves it in route order. flipped:
    // the run lies in memory against its walking order. last: the route's
    // last box so far, null while the route is empty.
    void take(box* run, std::size_t n, bool flipped, box* last) {
        const run_summary summary = run_summary::of(run, n);
        const std::int64_t sum = summary.sum;
        // Truncation keeps order, so the rectangle is truncated once at the end.
        const std::int32_t rx0 = truncate_to_int(summary.x0), ry0 = truncate_to_int(summary.y0);
        const std::int32_t rx1 = truncate_to_int(summary.x1), ry1 = truncate_to_int(summary.y1);
        if (above(sum, limit)) fail();

        minX = std::min(minX, rx0);
        minY = std::min(minY, ry0);
        maxX = std::max(maxX, rx1);
        maxY = std::max(maxY, ry1);
        // A 32-bit product, wrapping as it always has on large walls.
        const std::uint32_t h = std::uint32_t(maxY) - std::uint32_t(minY);
        const std::uint32_t w = std::uint32_t(maxX) - std::uint32_t(minX);
        const std::int32_t merged = std::int32_t(h * w);
        const bool fits = limit >= std::uint64_t(std::int64_t(merged));
        if (!fits && area == 0) fail();

        const bool new_port = !last || above(used + sum, limit) || !fits;
        if (new_port) {
            used = 0;
            area = 0;
            direction = initial;
            minX = rx0;
            minY = ry0;
            maxX = rx1;
            maxY = ry1;
            if (last) mark_end(*last, true);
        }
        orient(run, n, (direction != 0) != flipped);
        if (new_port) mark_start(run[0], true);

        direction = 1 - direction;
        used += sum;
        area = merged;
        last_started_port = new_port;
    }

    // Whether the next run will most likely go against its walking order.
    // A port of one line is usually followed by another, a longer port by
    // more of its own lines.
    bool expects_reverse() const { return (last_started_port ? initial : direction) != 0; }

  private:
    bool last_started_port = true;
    std::uint64_t limit;
    int initial;
    int direction;
    std::int32_t minX = INT32_MAX, minY = INT32_MAX, maxX = INT32_MIN, maxY = INT32_MIN;
    std::int32_t area = 0;
    std::int64_t used = 0;
};

// "Other Type": a port may end in the middle of a line, limited by its sum
// only, with a look-ahead of one cabinet at the end of each line. The sum is
// of what Weight gives each cabinet: pixels for a data port, power for a
// circuit.
template <class Weight> class other_type_router {
  public:
    other_type_router(std::uint64_t limit, int initial, Weight weight = {})
        : limit(limit), initial(initial), weigh(weight) {
        direction = initial;
    }

    // The direction of the next run is known before it is walked.
    bool expects_reverse() const { return ((!open && pending) ? initial : direction) != 0; }

    void take(box* run, std::size_t n, bool flipped, box* last) {
        if (!open && pending) direction = initial;
        // From here on the run lies in its direction of travel.
        orient(run, n, (direction != 0) != flipped);

        // A previous cabinet of an earlier run is already on the route; a
        // mark written on it reached only that run's own copy.
        box* previous_here = nullptr;
        std::int64_t line = 0, size = 0;
        // One visit per cabinet, then one with no cabinet that still has the
        // size of the last.
        for (std::size_t i = 0; i <= n; ++i) {
            box* b = i < n ? &run[i] : nullptr;
            if (b) size = weigh(*b);
            if (used != 0 && !open) {
                if (b) line += size;
            } else if (above(size + line + used, limit)) {
                if (has_previous) {
                    if (previous_here) {
                        mark_end(*previous_here, true);
                        mark_start(*previous_here, false);
                    }
                    open = false;
                    pending = true;
                }
                if (b) {
                    mark_start(*b, true);
                    mark_end(*b, false);
                    open = true;
                    pending = false;
                    used = 0;
                    line = size;
                } else {
                    used = 0;
                    line = 0;
                }
            } else if (b) {
                const bool first = used == 0 && line == 0;
                mark_start(*b, first);
                mark_end(*b, false);
                if (first) open = true;
                line += size;
            }
            if (b) {
                previous_here = b;
                has_previous = true;
            }
        }
        if (above(used + line, limit)) {
            pending = true;
            used = 0;
        }
        if (last && !last->end_known) mark_end(*last, pending);
        if (!run[0].start_known) {
            mark_start(run[0], pending);
            pending = false;
        }
        direction = 1 - direction;
        used += line;
    }

  private:
    std::uint64_t limit;
    int initial;
    int direction;
    bool open = false;
    bool pending = true;
    std::int64_t used = 0;
    bool has_previous = false;
    Weight weigh;
};

// Walks the layer into runs and hands each to the router in the order the
// route takes them. An empty run adds nothing.
template <class Router>
route computed_route(const boxes_layer& layer, Router& router, bool transposed, bool backward,
                     const excluded_cells& excluded) {
    const std::uint64_t grid =
        std::uint64_t(std::max(layer.Columns, 0)) * std::uint64_t(std::max(layer.Rows, 0));
    if (grid == 0) return {};
    // A wall of this many cabinets is no wall: refuse it rather than walk
    // it for minutes and exhaust memory on the way.
    if (grid > max_route_cabinets) throw std::runtime_error(too_many_cabinets_text);
    // Room for the cabinets that stay on the path, plus one line, is set
    // aside up front; the walk stores each cabinet straight into the route.
    const std::uint64_t expected = grid - std::min(grid, excluded.inside);
    const std::size_t line = std::size_t(std::max(transposed ? layer.Rows : layer.Columns, 0));
    route r;
    r.reserve(std::size_t(expected) + line);

    // Each line is written into a slot of `line` boxes. Under forward order it
    // is laid down the way the router expects to take it, back to front when
    // the run will go against the walk, so that it rarely has to be turned.
    box* out = r.data();
    std::size_t count = 0;             // boxes of closed runs
    box* slot = out;                   // where the open line's slot begins
    box* write = out;                  // where its next box goes
    std::ptrdiff_t step = 1;           // or -1, filling the slot from its end
    std::vector<std::size_t> run_ends; // where each run ends, under backward order only

    // Both kept inline so that the walk's pointers never leave registers.
    auto close_run = [&]() __attribute__((always_inline)) {
        const std::size_t n = std::size_t(step > 0 ? write - slot : (slot + line - 1) - write);
        if (n == 0) return;
        if (step < 0 && n < line) std::memmove(slot, write + 1, n * sizeof(box));
        box* const last = count == 0 ? nullptr : slot - 1;
        if (backward)
            run_ends.push_back(count + n);
        else // routed at once, while the line is still in cache
            router.take(slot, n, step < 0, last);
        count += n;
    };
    auto open_line = [&]() __attribute__((always_inline)) {
        // The route grows by a line at a time, so that its fresh boxes are
        // still in cache when the walk writes over them. The room set aside
        // holds unless 16-bit wrapped indices let one excluded id take
        // several cabinets.
        r.resize(count + line);
        out = r.data();
        slot = out + count;
        step = !backward && router.expects_reverse() ? -1 : 1;
        write = step > 0 ? slot : slot + line - 1;
    };

    long outer_index = -1;
    const bool skipping = excluded.any();
    // Kept inline in the walk's loop: a call per cabinet would cost more than
    // the work it does.
    layer.for_each_box(
        [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row)
            __attribute__((always_inline)) {
                const long outer = transposed ? column : row;
                if (outer != outer_index) {
                    if (outer_index >= 0) close_run();
                    open_line();
                    outer_index = outer;
                }
                if (skipping && excluded.contains(column, row)) return false;
                box& b = *write;
                write += step;
                b.column = column;
                b.row = row;
                b.x0 = x0;
                b.y0 = y0;
                b.x1 = x1;
                b.y1 = y1;
                return false;
            },
        transposed);
    if (outer_index >= 0) close_run();
    r.resize(count);

    if (backward) {
        // Reversing the whole array puts the runs last to first, each lying
        // against its walking order; each is then routed where it lies.
        std::reverse(r.begin(), r.end());
        for (std::size_t k = run_ends.size(); k-- > 0;) {
            const std::size_t start = k == 0 ? 0 : run_ends[k - 1];
            const std::size_t begin = count - run_ends[k];
            router.take(r.data() + begin, run_ends[k] - start, true,
                        begin == 0 ? nullptr : &r[begin - 1]);
        }
        run_ends = {};
    }
    if (!r.empty()) mark_end(r.back(), true);
    return r;
}

route custom_route(const boxes_layer& layer) {
    std::size_t total = 0;
    for (const auto& ids : layer.CustomPath)
        total += ids.size();
    route r;
    r.reserve(total);
    const float width = float(layer.Width), height = float(layer.Height);
    const float half_w = width * 0.5f, half_h = height * 0.5f;
    const auto& half = layer.HalfColumns;
    for (const auto& ids : layer.CustomPath) {
        for (std::size_t k = 0; k < ids.size(); ++k) {
            const std::uint32_t column = ids[k] >> 16, row = ids[k] & 0xFFFF;
            // The same rectangle as the walk gives; ids off the grid still
            // make a box where they would lie.
            const bool half_column =
                (half[0] && column == 0) ||
                (half[1] && std::int64_t(column) == std::int64_t(layer.Columns) - 1);
            const bool half_row = (half[2] && row == 0) ||
                                  (half[3] && std::int64_t(row) == std::int64_t(layer.Rows) - 1);
            box b;
            b.column = column;
            b.row = row;
            b.x0 = float(column) * width - ((half[0] && column != 0) ? half_w : 0.0f);
            b.y0 = float(row) * height - ((half[2] && row != 0) ? half_h : 0.0f);
            b.x1 = b.x0 + (half_column ? half_w : width);
            b.y1 = b.y0 + (half_row ? half_h : height);
            mark_start(b, k == 0);
            // A run of one box has no end: the line goes on into the next.
            if (k != 0 && k + 1 == ids.size()) mark_end(b, true);
            r.push_back(b);
        }
    }
    return r;
}

// A pattern (SnakeMode) as three bits: bit 2 columns, bit 0 right-hand
// start, bit 1 bottom start.
struct pattern_bits {
    bool transposed;
    int initial;
    bool backward;
    explicit pattern_bits(int pattern) {
        const unsigned mode = unsigned(pattern);
        transposed = (mode & 4) != 0;
        initial = int(transposed ? (mode >> 1) & 1 : mode & 1);
        backward = (transposed ? mode & 1 : (mode >> 1) & 1) != 0;
    }
};

// "Other Type" chains under a capacity; it never routes through an excluded
// cabinet.
template <class Weight>
route chains_under(const boxes_layer& layer, int pattern, std::uint64_t capacity, Weight weight) {
    const pattern_bits p(pattern);
    const excluded_cells excluded(layer, true);
    other_type_router<Weight> router(capacity, p.initial, weight);
    return computed_route(layer, router, p.transposed, p.backward, excluded);
}

} // namespace

int pixel_count(const box& b) {
    return pixels_of(b);
}

route make_route(const boxes_layer& layer) {
    return make_route(layer, layer.SnakeLimit);
}

route make_route(const boxes_layer& layer, std::int64_t pixel_limit) {
    if (layer.CustomDataPath) return custom_route(layer);
    const std::uint64_t limit = limit_of(pixel_limit);
    if (layer.DataDiagramType != 0)
        return chains_under(layer, layer.SnakeMode, limit, pixel_weight{});
    // "Novastar" routes through excluded cabinets unless told to skip them.
    const pattern_bits p(layer.SnakeMode);
    const excluded_cells excluded(layer, layer.SkipBlankBoxes != 0);
    novastar_router router(limit, p.initial);
    return computed_route(layer, router, p.transposed, p.backward, excluded);
}

route power_route(const boxes_layer& layer, int pattern, std::uint64_t capacity) {
    return chains_under(layer, pattern, capacity, quarter_watts(layer));
}

std::string route_text(const route& r) {
    std::string text;
    text.reserve(r.size() * 10);
    for (const box& b : r) {
        if (!text.empty()) text += ' ';
        text += '(';
        text += std::to_string(b.column);
        text += ',';
        text += std::to_string(b.row);
        text += ')';
        if (b.is_port_start()) text += 'S';
        if (b.is_port_end()) text += 'E';
    }
    return text;
}

} // namespace Snake
} // namespace Vantora_TesserinePro
