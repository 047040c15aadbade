#pragma once
// The screen layer: one LED wall, a grid of Columns by Rows cabinets of
// Width by Height pixels.

#include "core/color.h"
#include "datapath/snake.h"
#include "document/app_layer.h"
#include "document/exclude_boxes.h"

#include <bitset>
#include <cmath>
#include <cstdint>
#include <vector>

namespace Vantora_TesserinePro {

namespace plan {
struct cabinet_chains;
}

// A box id: column in the high 16 bits, row in the low 16 bits.
constexpr std::uint32_t box_id(std::uint32_t column, std::uint32_t row) {
    return (column << 16) | (row & 0xFFFF);
}

struct BoxesLayerDescription {
    // A stored size read through its normaliser.
    struct FontSize {
        using normaliser = int (*)(int);
        explicit FontSize(int v) : value(v), normalise(&identity) {}
        FontSize(int v, normaliser n) : value(v), normalise(n) {}
        FontSize& operator=(const FontSize& other) {
            value = other.value; // the normaliser stays
            return *this;
        }
        FontSize(const FontSize&) = default;
        int get() const { return normalise(value); }
        static int identity(int v) { return v; }

        std::int32_t value;
        normaliser normalise;
    };
    static int font1(int v) { return v < 6 ? 5 : v; }
    static int font2(int v) { return (v != 0 && v < 6) ? 5 : v; }

    std::int32_t Width = 128;
    std::int32_t Height = 128;
    std::int32_t Columns = 8;
    std::int32_t Rows = 5;
    float PhysW = 500.0f;
    float PhysH = 500.0f;
    std::int32_t ShowMM = 0;
    std::int32_t ShowFT = 0;
    color::color BoxBorderColor = color::opaque_white;
    color::color CircleColor = color::opaque_white;
    color::color SnakeColor = color::opaque_white;
    std::int32_t UseRandomSnakeColor = 0;
    std::int32_t SnakeWidth = 8;
    std::int32_t CircleWidth = 2;
    std::int32_t GridWidth = 2;
    std::int32_t SnakeLimit = 655360;
    std::int32_t SnakeMode = 6;
    color::color BoxesNamesColor = color::opaque_white;
    std::int32_t BoxesNamesReverse = 0;
    FontSize BoxesNamesFontSize{40, &font1};
    FontSize LabelFontSize{30, &font1};
    FontSize LayerNameFontSize{0, &font2};
    std::int32_t DataDiagramType = 0;
    std::int32_t DrawPower = 0;
    std::int32_t DrawSnake = 1;
    std::int32_t SkipBlankBoxes = 1;
    std::int32_t CustomDataPath = 0;
    std::int32_t DrawGrid = 0;
    std::int32_t DrawCircle = 0;
    std::int32_t DrawBoxes = 1;
    std::int32_t DrawBoxesNames = 0;
    std::int32_t PowerVolts = 110;
    std::int32_t PowerPhases = 3;
    std::int32_t PowerWatts = 200;
    std::int32_t CornersMode = 1;
    std::int32_t DrawScreenSize = 1;
    std::int32_t DrawLayerName = 1;
    std::int32_t DrawInfoLine = 1;
    color::color LabelFontColor = color::opaque_white;
    std::bitset<4> HalfColumns;
    std::vector<color::color> BoxColors;
    std::vector<color::color> BoxTintColors;
    exclude_boxes_set ExcludeBoxes;
    std::vector<std::vector<std::uint32_t>> CustomPath;

    // Keys beyond the design's, written after them and only where they
    // differ from these defaults, so that a file that never used them saves
    // as it always did.
    std::int32_t CircuitAmps = 16;   // breaker rating of one circuit
    std::int32_t CircuitDerate = 80; // per cent of the rating a circuit may carry
    std::int32_t PowerPattern = -1;  // 0-7 as SnakeMode; below 0: SnakeMode
    std::int32_t DrawPowerPath = 0;
    // The processor that feeds the layer, and the signal it carries.
    std::int32_t BitDepth = 8;   // bits a colour: 8, 10 or 12
    std::int32_t FrameRate = 60; // Hz
    string Processor;            // a model of the processor library; empty: none
    std::int32_t ProcessorUnit = 1;
    std::int32_t FirstPort = 1; // of the unit, for the layer's first chain
    std::int32_t Backup = 0;    // 0 none, 1 loop back to the same unit, 2 a backup unit
    double CabinetWeight = 0;       // kg a full cabinet; 0: not known
    std::int32_t SparePercent = 0;  // spare cabinets to bring, per cent

    // Whether any of the processor keys above differs from its default.
    bool uses_processor_keys() const {
        return BitDepth != 8 || FrameRate != 60 || !Processor.empty() || ProcessorUnit != 1 ||
               FirstPort != 1 || Backup != 0;
    }
    int power_pattern() const { return PowerPattern >= 0 ? PowerPattern : SnakeMode; }
};

// "%d' %.2f''" of a length in millimetres, as the size label writes it.
string feet_and_inches(float millimetres);

// Corner bit index into CornersMode.
enum Corner : int {
    corner_top_left = 0,
    corner_top_right = 1,
    corner_bottom_left = 2,
    corner_bottom_right = 3
};

class boxes_layer : public app_layer, public BoxesLayerDescription {
  public:
    // --- lifecycle and copying
    boxes_layer() = default;
    pointer<app_layer> clone() const override;
    void default_colors() override;
    void apply_defaults() override;

    // --- geometry
    int get_width() const override { return get_full_width(); }
    int get_height() const override { return get_full_height(); }
    int get_full_width() const override;
    int get_full_height() const override;
    float get_full_columns() const;
    float get_full_rows() const;
    enum_layer get_layer_type() const override { return e_layer_boxes; }

    // Calls callback(x0, y0, x1, y1, column, row) for every cabinet, row by
    // row (or column by column when transposed); stops when it returns true.
    template <class Callback> bool for_each_box(Callback&& callback, bool transposed) const;

    // The cabinet strictly inside whose edges a point lies (a point on a
    // shared edge hits none); false when there is none.
    bool box_at(float x, float y, std::uint32_t& id) const;
    // Ids of all cabinets a rectangle (left, top, right, bottom) touches.
    std::vector<std::uint32_t> hit_test(int left, int top, int right, int bottom) const;
    // Toggles the exclusion of the cabinet under a point. True when it is
    // now not excluded; false when it now is or nothing was hit.
    bool trigger_for_exclude_boxes(float x, float y);
    void switch_all_exclude_boxes();
    void set_half_pair(unsigned long set_bit, unsigned long clear_bit, bool value);
    void set_box_color_with_id(int id, const string& hex);
    void switch_corner_label(Corner corner, bool on);
    void toggle_corner_label(Corner corner);
    bool is_corner_label_on(Corner corner) const;
    // Rows * Columns less the excluded cabinets, as the info line counts.
    long long cabinet_count() const;

    // --- parameter text
    void apply_parameter_by_name(const string& key, const string& value) override;
    property_set get_all_parameters() const override;

    // --- data path and power
    bool should_skip_box(const Snake::box& b) const;
    void trigger_for_override_path(float x, float y, bool remove);
    // The space key on the canvas: a new run after a run of at least two ids.
    void on_space_key();
    string get_custom_path_string() const override;
    void set_custom_path_string(const string& text) override;
    float calculate_power() const;
    // The cabinets that draw power: all, less the excluded ones when they
    // are skipped.
    long long powered_cabinets() const;

    // --- drawing
    void build_frame(nano2d::context* context, error_callback on_error) override;
    // With chains, each cabinet takes its chain's colour (in a chequer of
    // light and dark), or the colour list's where it is on none.
    void draw_boxes(nano2d::context* context, const plan::cabinet_chains* chains = nullptr);
    void draw_boxes_grid(nano2d::context* context);
    void draw_boxes_names(nano2d::context* context);
    void draw_circle(nano2d::context* context);
    void draw_dotted(nano2d::context* context);
    void draw_snake(nano2d::context* context);
    // The power path of the layer's power plan; nothing when the plan fails.
    void draw_power_path(nano2d::context* context);
    void draw_label(nano2d::context* context, int x, int y, const string& text,
                    color::color text_color, color::color background_color, const string& face,
                    int size, int align);
    // The info line at the bottom, followed by a legend of chain colours.
    void draw_info_line(nano2d::context* context, const string& info,
                        const std::vector<std::string>& legend);
    // label, when given, replaces the "P1" or "R1" text.
    void draw_triangle(nano2d::context* context, float x, float y, const Snake::box& box,
                       const Snake::box& other, bool port_start, bool port_end,
                       const char* label = nullptr);
    void draw_triangle_right(nano2d::context* context, float x, float y);
    void draw_triangle_left(nano2d::context* context, float x, float y);
    void draw_triangle_up(nano2d::context* context, float x, float y);
    void draw_triangle_down(nano2d::context* context, float x, float y);
    void resetProjectEndsCounter();

    // --- export
    void add_layer_to_xml(pugi::xml_node& layers) const override;

    std::int64_t empty_marker = 0;
    std::int32_t arrow_half_size = 3;
};

template <class Callback>
bool boxes_layer::for_each_box(Callback&& callback, bool transposed) const {
    const float halfW = float(Width) * 0.5f;
    const float halfH = float(Height) * 0.5f;
    struct axis {
        float step, half, first_half;
        bool last_half;
        long long count;
        float start(long long i) const { return float(i) * step - (i != 0 ? first_half : 0.0f); }
        float size(long long i) const {
            return ((first_half > 0.0f && i == 0) || (last_half && i == count - 1)) ? half : step;
        }
    };
    const axis ax{float(Width), halfW, HalfColumns[0] ? halfW : 0.0f, HalfColumns[1], Columns};
    const axis ay{float(Height), halfH, HalfColumns[2] ? halfH : 0.0f, HalfColumns[3], Rows};
    const axis& outer = transposed ? ax : ay;
    const axis& inner = transposed ? ay : ax;
    if (outer.count == 0) return false;
    for (long long o = 0; o < outer.count; ++o) {
        const float o0 = outer.start(o);
        const float o1 = o0 + outer.size(o);
        for (long long i = 0; i < inner.count; ++i) {
            const float i0 = inner.start(i);
            const float i1 = i0 + inner.size(i);
            const bool stop = transposed
                                  ? callback(o0, i0, o1, i1, (unsigned short)o, (unsigned short)i)
                                  : callback(i0, o0, i1, o1, (unsigned short)i, (unsigned short)o);
            if (stop) return true;
        }
    }
    return false;
}

} // namespace Vantora_TesserinePro
