#pragma once
// The canvas: the frame at its pan and zoom, with the editing marks over it.
// The same widget, in live-output mode, shows the frame at full size on
// another monitor.

#include "canvas/selection.h"
#include "core/types.h"
#include "render/draw2d_context.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QWidget>

#include <climits>
#include <cstdint>
#include <memory>
#include <vector>

namespace Vantora_TesserinePro {

class Global;
class app_layer;
class boxes_layer;
class live_show;

// Paints of any canvas so far.
extern long long g_iMainImpactRedraw;

// The modifier groups (Shift, Control or Command, Alt) of Qt's modifiers.
std::uint64_t modifier_groups(Qt::KeyboardModifiers modifiers);

class MainImpact : public QWidget {
  public:
    MainImpact(Global* workspace, QWidget* parent);
    ~MainImpact() override;

    // The point meaning that no drag runs, and whether a point is another.
    static QPoint invalidPos() { return QPoint(-10000, -10000); }
    static bool isPosValid(const QPoint& p) { return p != invalidPos(); }

    // --- painting
    // One paint: builds the frame when it changed, then shows it and the
    // marks. context draws on this widget.
    void draw(nano2d::context* context);
    void on_draw_step(nano2d::context* context);
    void draw_second(nano2d::context* context);
    QSize sizeHint() const override;

    // --- view
    float get_zoom() const { return zoom; }
    float get_effective_zoom() const { return effective_zoom; }
    QPoint get_pan() const { return pan; }
    void set_zoom(float value);
    // "Fit Raster": the whole raster centred in the largest part of the
    // canvas that no shown palette (nor the lists) covers, the whole canvas
    // beside the lists when none is left, at most at zoom 1. The view does
    // the same at its first paint and after a project opens; a pan or zoom
    // of the user's stays until then. "Actual Size": zoom 1 at the starting
    // pan.
    void fit_raster();
    void actual_size();
    // The zoom at which the raster fits beside the lists, at most 1.
    float fit_zoom() const;
    // The wheel's range: 0.25 to 1, or down to the fit zoom (or the zoom the
    // last fit gave) when the raster does not fit at 0.25.
    float clamped_zoom(float value) const;
    // Width the lists take on the right of the canvas.
    static constexpr int lists_width = 280;
    // While held, a paint shows the background only: at a start the
    // window shows first, and its frame a turn of the event loop later.
    void set_frame_held(bool held);
    bool is_live_output() const { return live_output; }
    void set_live_output(bool value) { live_output = value; }

    // --- hit tests, in widget coordinates
    QPointF screenToLayer(const QPoint& p, const app_layer& layer) const;
    long long hit_test_layer(const QPointF& p) const;
    bool hit_test_raster_label(int x, int y) const;
    // The label's box on the widget: left, top, right, bottom.
    QRectF raster_label_zoomed_rectangle() const;

    // --- keys and the live output
    void on_space_key();
    // Shows the frame full size on monitor (an index into the screens), or
    // hides the live output for a negative one.
    void set_live_output_to_monitor(long long monitor);
    // What the live output shows instead of the map (patterns, identify):
    // the main canvas holds it, and the live output's canvas shows it.
    live_show& show();
    void set_show(live_show* shown) { m_show = shown; }
    live_show* shown() const { return m_show; }
    // Drops a move or resize in progress (the modifier was released).
    void cancel_drag();
    // Where a move of layer in progress puts it, before snapping.
    QPoint move_target(const app_layer& layer) const;
    // The screens selected, and what the mouse and keys do with them.
    selection_tool& selection() { return m_selection; }
    // Where a layer moved to x, y would land after snapping to the raster
    // and the other layers: each axis snaps at most once, to the first
    // edge closer than 20 raster pixels, the raster first.
    QPoint snap(const app_layer& layer, QPoint p) const;
    void snap(int& x, int& y) const;
    void snap_paper(int& x, int& y, bool& done_x, bool& done_y) const;
    void snap_others(int& x, int& y, bool& done_x, bool& done_y) const;
    void snap_other(int& x, int& y, bool& done_x, bool& done_y,
                    const pointer<app_layer>& other) const;

    // The drawing context of this widget, kept for its life so that image
    // handles stay valid from paint to paint.
    nano2d::draw2d_context& drawing_context() { return m_context; }

    // Drag state (the mouse handlers of the editing fill it).
    long long resize_handle = -1;
    QPoint resize_delta = invalidPos();
    QRect preview_rectangle;
    QPoint move_delta = invalidPos();
    QRect selection_rectangle; // left, top, right, bottom in layer pixels
    bool selection_adds = false;
    bool selecting = false;
    bool hover_raster_label = false;
    QPoint label_drag_start = invalidPos();
    QPoint label_start_position;
    QPoint pan_drag_start = invalidPos();
    QPoint pan_start;
    // Where the pointer is; both parts INT_MIN once it has left.
    QPoint pointer_position{INT_MIN, INT_MIN};

    // Whether this canvas shows the wall from behind (the live output never
    // does).
    bool shows_rear() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    // Mouse input, as the editing steps take it: p in widget coordinates,
    // the modifier groups held (keys::group_*).
    void mouse_button_event(const QPoint& p, Qt::MouseButton button, bool down,
                            std::uint64_t modifiers);
    // Its steps: what a press starts, and how a release ends it.
    void press(const QPoint& p, Qt::MouseButton button, std::uint64_t modifiers);
    void start_pan_or_label_drag(const QPoint& p);
    void start_selection(boxes_layer& screen, const QPointF& q);
    void start_move_or_resize(const app_layer& layer, const QPointF& q);
    void release(const pointer<app_layer>& current);
    void end_selection(const pointer<app_layer>& current);
    void end_move(app_layer& layer);
    void end_resize(const pointer<app_layer>& current);
    void mouse_motion_event(const QPoint& p, const QPoint& delta, std::uint64_t modifiers);
    // The groups a mouse event says are held; the workspace learns them too.
    std::uint64_t groups_of(const QMouseEvent& event);
    // Repaints this canvas and a live output showing the same marks.
    void redraw();
    // Selects the layer under p when auto-select is on.
    void auto_select(const QPoint& p);
    QPoint m_last_mouse;

    // The part of the frame this widget shows, over the background, as it
    // stands on screen: kept until the frame, zoom, pan or size change.
    void update_view(const image& composite, std::uint64_t generation);
    // A point of the canvas where the front view has the same raster
    // point: the editing works on front points, so acting on what is seen.
    QPoint as_seen(const QPoint& p) const;
    void draw_rear_mark(QPainter& painter);
    void draw_marks(nano2d::context* context);
    // The outline (and for a picture the handles) of the layer a modifier
    // group applies to, at the place a move or resize would give it.
    void draw_layer_outline(nano2d::context* context, const app_layer& layer);
    void draw_custom_path_marks(nano2d::context* context, const boxes_layer& layer);
    // A cabinet's rectangle on the widget at the effective zoom, before the
    // pan (which the context carries).
    QRectF zoomed_box(const boxes_layer& layer, std::uint32_t id) const;
    bool pointer_inside() const { return pointer_position.x() != INT_MIN; }

    bool live_output = false;
    bool m_frame_held = false;
    Global* workspace;
    float zoom = 1.0f;
    float effective_zoom = 1.0f;
    QPoint pan{280, 0};
    // Since "Fit Raster" and until "Actual Size", the wheel zooms about the
    // pointer.
    bool m_fitted = false;
    // The fit: what covers the canvas, and the fit itself.
    std::vector<QRect> covered_parts() const;
    void fit_view();
    float m_fit_zoom = 1.0f;
    // The count of projects opened when the view last fitted itself (or the
    // user chose Actual Size); none before the first paint.
    std::uint64_t m_fitted_opens = ~std::uint64_t(0);

    nano2d::draw2d_context m_context;
    // Where the current paint draws: the paint event's region, in the
    // painter's units.
    QRect m_paint_rect;
    // The painter's units per logical pixel: the display scale in the live
    // output, which paints in device pixels, and 1 on the canvas.
    qreal m_units = 1.0;
    // The frame scaled to the zoom (below 1.0 only) and its key.
    QImage m_scaled;
    std::uint64_t m_scaled_generation = 0;
    float m_scaled_zoom = 0.0f;
    // The shown part, opaque, and its key.
    QImage m_view;
    QPoint m_view_at;
    std::uint64_t m_view_generation = 0;
    float m_view_zoom = 0.0f;
    QPoint m_view_pan;
    QSize m_view_size;
    bool m_has_view = false;

    selection_tool m_selection{*this, *workspace};
    std::unique_ptr<live_show> m_own_show;
    live_show* m_show = nullptr;
};

} // namespace Vantora_TesserinePro
