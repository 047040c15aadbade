#include "canvas/main_impact.h"

#include "canvas/live_output.h"
#include "canvas/live_show.h"
#include "canvas/view_fit.h"
#include "core/diagnostics.h"
#include "core/keys.h"
#include "document/arrange.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"
#include "panels/look.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Vantora_TesserinePro {

long long g_iMainImpactRedraw = 0;

namespace {

// Float canvas arithmetic back to ints without undefined conversions, for
// offsets typed near the 32-bit limit: NaN gives 0, and values are held
// within limit. Rectangles are held to 2^29, so that left plus width still
// fits an int; offsets take the whole range.
constexpr double rectangle_limit = 536870912.0, offset_limit = 2147483647.0;
int held_int(double v, double limit = rectangle_limit) {
    return std::isnan(v) ? 0 : int(std::clamp(v, -limit, limit));
}

// Mark colours, as packed words with red in the low byte.
constexpr std::uint32_t raster_outline_word = 0xffb6b6b6;
constexpr std::uint32_t hover_box_word = 0x7fffcc99;
constexpr std::uint32_t path_start_word = 0xff00ff00;
constexpr std::uint32_t outline_word = 0xffccff7f;

color::color word(std::uint32_t w) {
    return color::color::from_word(w);
}

// Opens the build of a frame to the host for as long as it lives: what the
// build asks of the window waits until the paint is over.
class frame_build_scope {
  public:
    explicit frame_build_scope(workspace_host& host) : m_host(host) { m_host.frame_build_begins(); }
    ~frame_build_scope() { m_host.frame_build_ends(); }
    frame_build_scope(const frame_build_scope&) = delete;
    frame_build_scope& operator=(const frame_build_scope&) = delete;

  private:
    workspace_host& m_host;
};

} // namespace

MainImpact::MainImpact(Global* workspace_, QWidget* parent)
    : QWidget(parent), workspace(workspace_) {
    setObjectName("MainImpact");
    setMouseTracking(true);
    // The paint covers every pixel itself.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::ClickFocus);
}

MainImpact::~MainImpact() = default;

QSize MainImpact::sizeHint() const {
    return QSize(workspace->get_paper_width(), workspace->get_paper_height());
}

void MainImpact::set_zoom(float value) {
    zoom = value;
    update();
}

float MainImpact::fit_zoom() const {
    // A margin all round, so that the outline shows.
    constexpr int margin = 10;
    const double w = workspace->get_paper_width(), h = workspace->get_paper_height();
    const double room_w = width() - lists_width - 2 * margin, room_h = height() - 2 * margin;
    if (w <= 0 || h <= 0 || room_w <= 0 || room_h <= 0) return 1.0f;
    return float(std::min({1.0, room_w / w, room_h / h}));
}

float MainImpact::clamped_zoom(float value) const {
    return std::clamp(value, std::min({0.25f, fit_zoom(), m_fit_zoom}), 1.0f);
}

void MainImpact::fit_raster() {
    if (live_output) return;
    fit_view();
    update();
}

std::vector<QRect> MainImpact::covered_parts() const {
    std::vector<QRect> covered;
    QWidget* parent = parentWidget();
    if (!parent) return covered;
    for (QWidget* w : parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (w == this || w->isWindow() || !w->isVisibleTo(parent)) continue;
        const QRect part = w->geometry().translated(-pos()) & rect();
        if (!part.isEmpty()) covered.push_back(part);
    }
    return covered;
}

void MainImpact::fit_view() {
    const QSize raster(workspace->get_paper_width(), workspace->get_paper_height());
    QRect room = view_fit::largest_free_part(rect(), covered_parts(), raster);
    // No room between the palettes: the canvas beside the lists.
    if (room.isEmpty()) room = QRect(0, 0, width() - lists_width, height());
    const view_fit::view fitted = view_fit::fitted(room, raster);
    zoom = effective_zoom = m_fit_zoom = fitted.zoom;
    pan = fitted.pan;
    m_fitted = true;
    m_fitted_opens = workspace->documents_opened;
}

void MainImpact::actual_size() {
    zoom = effective_zoom = m_fit_zoom = 1.0f;
    pan = QPoint(280, 0);
    m_fitted = false;
    m_fitted_opens = workspace->documents_opened;
    update();
}

// ---------------------------------------------------------------- painting

void MainImpact::set_frame_held(bool held) {
    m_frame_held = held;
    update();
}

void MainImpact::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    if (m_frame_held) return painter.fillRect(event->rect(), look::screen_background);
    m_paint_rect = event->rect();
    // The live output draws in the monitor's own pixels, whatever the
    // display scale: one raster pixel on one device pixel.
    m_units = live_output ? devicePixelRatioF() : 1.0;
    if (m_units != 1.0) {
        painter.scale(1.0 / m_units, 1.0 / m_units);
        m_paint_rect =
            QRectF(QPointF(m_paint_rect.topLeft()) * m_units, QSizeF(m_paint_rect.size()) * m_units)
                .toAlignedRect();
    }
    m_context.set_graphics(painter);
    draw(&m_context);
    m_context.set_graphics(nullptr);
}

void MainImpact::draw(nano2d::context* context) {
    ++g_iMainImpactRedraw;
    output_debug_string("MainImpact::draw");
    context->save();
    draw_second(context);
    context->restore();
}

void MainImpact::on_draw_step(nano2d::context* context) {
    if (!context) return;
    std::lock_guard<std::recursive_mutex> lock(workspace->frame_mutex);
    frame_build_scope scope(workspace->host());
    workspace->defer_build_frame(true, context);
}

void MainImpact::draw_second(nano2d::context* context) {
    on_draw_step(context);
    // A project opened (or the window's first paint): the view shows it whole.
    if (!live_output && m_fitted_opens != workspace->documents_opened) fit_view();
    if (!live_output) context->translate(float(pan.x()), float(pan.y()));
    QPainter* painter = context == &m_context ? m_context.painter() : nullptr;
    {
        const Global::frame_view frame = workspace->read_frame();
        const image* composite = shows_rear() && frame.rear() ? frame.rear() : frame.composite();
        std::uint64_t generation = frame.generation();
        // A pattern or identify frame stands in for the map on the wall.
        const image* shown_instead =
            live_output && m_show && composite ? m_show->frame(generation, generation) : nullptr;
        if (shown_instead) composite = shown_instead;
        if (composite) {
            // Zoom only ever shrinks the drawing: at most one raster pixel
            // to one screen pixel, at least a quarter.
            zoom = clamped_zoom(zoom);
            effective_zoom = live_output ? 1.0f : zoom;
            if (painter) {
                update_view(*composite, generation);
                // The view's place in the painter's units; its pixels are
                // device pixels, so at a display scale it may start between
                // two units. The background goes where the frame is not.
                const qreal r = m_view.devicePixelRatio();
                const QRectF shown(QPointF(m_view_at) / r, QSizeF(m_view.size()) / r);
                const QRect inside(
                    QPoint(int(std::ceil(shown.left())), int(std::ceil(shown.top()))),
                    QPoint(int(std::floor(shown.right())) - 1,
                           int(std::floor(shown.bottom())) - 1));
                for (const QRect& rect : QRegion(m_paint_rect).subtracted(QRegion(inside)))
                    painter->fillRect(rect, look::screen_background);
                const QRect part =
                    QRect(m_view_at, m_view.size()) &
                    QRectF(QPointF(m_paint_rect.topLeft()) * r, QSizeF(m_paint_rect.size()) * r)
                        .toAlignedRect();
                if (!part.isEmpty())
                    painter->drawImage(QPointF(part.topLeft()) / r, m_view,
                                       part.translated(-m_view_at));
            }
            if (!live_output) {
                context->begin_path();
                context->stroke_color(word(raster_outline_word));
                context->stroke_width(1.0f);
                context->rectangle(0.5f, 0.5f,
                                   float(workspace->get_paper_width()) * effective_zoom - 1.0f,
                                   float(workspace->get_paper_height()) * effective_zoom - 1.0f);
                context->stroke();
            }
        } else if (painter) {
            painter->fillRect(m_paint_rect, look::screen_background);
        }
    }
    if (painter && shows_rear()) {
        // The marks go where the mirror puts what they mark.
        painter->save();
        painter->translate(2.0 * pan.x() + workspace->get_paper_width() * double(effective_zoom),
                           0.0);
        painter->scale(-1.0, 1.0);
        draw_marks(context);
        painter->restore();
        draw_rear_mark(*painter);
    } else if (!(live_output && m_show && m_show->is_active())) {
        draw_marks(context);
    }
}

bool MainImpact::shows_rear() const {
    return workspace->rear_view && !live_output;
}

QPoint MainImpact::as_seen(const QPoint& p) const {
    if (!shows_rear()) return p;
    const int mirror_line =
        2 * pan.x() + int(std::lround(workspace->get_paper_width() * double(effective_zoom)));
    return QPoint(mirror_line - p.x() - 1, p.y());
}

void MainImpact::draw_rear_mark(QPainter& painter) {
    // Nobody should take the mirrored wall for the front.
    painter.save();
    painter.resetTransform();
    painter.setFont(look::sans(16));
    const QString text = "Rear View";
    const QRect box = painter.fontMetrics()
                          .boundingRect(text)
                          .adjusted(-10, -4, 10, 4)
                          .translated(-painter.fontMetrics().boundingRect(text).topLeft());
    // Where it is seen: above the raster, else on its top edge, else at the
    // top of the largest part that no palette covers, else the canvas top.
    const std::vector<QRect> covered = covered_parts();
    const auto seen = [&](const QRect& r) {
        return rect().contains(r) && std::none_of(covered.begin(), covered.end(),
                                                  [&](const QRect& c) { return c.intersects(r); });
    };
    const QRect raster(pan,
                       QSize(int(std::lround(workspace->get_paper_width() * effective_zoom)),
                             int(std::lround(workspace->get_paper_height() * effective_zoom))));
    const QRect room = view_fit::largest_free_part(rect(), covered, box.size());
    const QPoint places[] = {
        {raster.center().x() - box.width() / 2, raster.top() - box.height() - 6},
        {raster.center().x() - box.width() / 2, raster.top() + 8},
        {room.center().x() - box.width() / 2, room.top() + 8},
    };
    QRect at = box.translated((width() - box.width()) / 2, 8);
    for (const QPoint& p : places)
        if (seen(box.translated(p))) {
            at = box.translated(p);
            break;
        }
    painter.fillRect(at, QColor(0xd0, 0x30, 0x30));
    painter.setPen(Qt::white);
    painter.drawText(at, Qt::AlignCenter, text);
    painter.restore();
}

void MainImpact::update_view(const image& composite, std::uint64_t generation) {
    // Raster pixels to device pixels: the live output shows them one to one
    // (its painter works in device pixels); the canvas at the zoom times the
    // display scale, so that a scaled display shows the frame sharper, never
    // from a copy of lower resolution.
    const qreal dpr = live_output ? 1.0 : devicePixelRatioF();
    const float z = live_output ? 1.0f : float(effective_zoom * dpr);
    const QPoint origin =
        live_output ? QPoint(0, 0) : QPoint(qRound(pan.x() * dpr), qRound(pan.y() * dpr));
    const QSize size_now = (QSizeF(size()) * (live_output ? m_units : dpr)).toSize();
    if (m_has_view && m_view_generation == generation && m_view_zoom == z && m_view_pan == origin &&
        m_view_size == size_now)
        return;
    const image* shown = &composite;
    QSize shown_size = composite.size();
    if (z < 1.0f) {
        if (m_scaled.isNull() || m_scaled_generation != generation || m_scaled_zoom != z) {
            const int w = std::max(1, int(std::lround(composite.width() * z)));
            const int h = std::max(1, int(std::lround(composite.height() * z)));
            m_scaled = composite.scaled(w, h, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            m_scaled_generation = generation;
            m_scaled_zoom = z;
        }
        shown = &m_scaled;
        shown_size = m_scaled.size();
    } else {
        m_scaled = QImage();
        if (z > 1.0f)
            shown_size = QSize(int(std::lround(composite.width() * z)),
                               int(std::lround(composite.height() * z)));
    }
    // Only what the widget shows, made opaque once: an unchanged paint is a
    // plain copy of it.
    const QRect visible = QRect(origin, shown_size) & QRect(QPoint(0, 0), size_now);
    m_view_at = visible.topLeft();
    m_view = QImage(visible.size(), QImage::Format_RGB32);
    if (!visible.isEmpty()) {
        m_view.fill(look::screen_background);
        QPainter p(&m_view);
        if (z > 1.0f) {
            // Each raster pixel a block of device pixels, edges kept sharp.
            const QRect source =
                QRectF(QPointF(visible.topLeft() - origin) / z, QSizeF(visible.size()) / z)
                    .toAlignedRect() &
                composite.rect();
            p.translate(QPointF(origin - visible.topLeft()));
            p.drawImage(QRectF(QPointF(source.topLeft()) * z, QSizeF(source.size()) * z), composite,
                        source);
        } else {
            p.drawImage(QPoint(0, 0), *shown, visible.translated(-origin));
        }
    }
    m_view.setDevicePixelRatio(live_output ? 1.0 : dpr);
    m_view_generation = generation;
    m_view_zoom = z;
    m_view_pan = origin;
    m_view_size = size_now;
    m_has_view = true;
}

QRectF MainImpact::zoomed_box(const boxes_layer& layer, std::uint32_t id) const {
    const float z = effective_zoom;
    const std::uint32_t column = id >> 16, row = id & 0xFFFF;
    const float W = float(layer.Width), H = float(layer.Height);
    const bool half_first_column = layer.HalfColumns[0], half_first_row = layer.HalfColumns[2];
    const float w = ((half_first_column && column == 0) ||
                     (layer.HalfColumns[1] && (long long)column == (long long)layer.Columns - 1))
                        ? W * 0.5f
                        : W;
    const float h = ((half_first_row && row == 0) ||
                     (layer.HalfColumns[3] && (long long)row == (long long)layer.Rows - 1))
                        ? H * 0.5f
                        : H;
    const float x0 = W * float(column) - (half_first_column && column != 0 ? W * 0.5f : 0.0f);
    const float y0 = H * float(row) - (half_first_row && row != 0 ? H * 0.5f : 0.0f);
    return QRectF((x0 + float(layer.get_offset_x())) * z, (y0 + float(layer.get_offset_y())) * z,
                  w * z, h * z);
}

void MainImpact::draw_custom_path_marks(nano2d::context* context, const boxes_layer& layer) {
    const float z = effective_zoom;
    if (pointer_inside()) {
        const QPointF rel = QPointF(pointer_position - pan) * m_units -
                            QPointF(layer.get_offset_x(), layer.get_offset_y()) * z;
        std::uint32_t hit = 0;
        const bool found = layer.for_each_box(
            [&](float x0, float y0, float x1, float y1, unsigned short column, unsigned short row) {
                if (x0 * z < rel.x() && rel.x() < x1 * z && y0 * z < rel.y() && rel.y() < y1 * z) {
                    hit = box_id(column, row);
                    return true;
                }
                return false;
            },
            false);
        if (found) {
            const QRectF r = zoomed_box(layer, hit);
            context->begin_path();
            context->fill_color(word(hover_box_word));
            context->stroke_color(word(hover_box_word));
            context->stroke_width(8.0f);
            context->rectangle(float(r.x()), float(r.y()), float(r.width()), float(r.height()));
            context->close_path();
            context->stroke();
        }
    }
    // Where a run just begun starts.
    if (!layer.CustomPath.empty() && layer.CustomPath.back().size() == 1 &&
        std::int32_t(layer.CustomPath.back().front()) >= 0) {
        const std::uint32_t id = layer.CustomPath.back().front();
        const QRectF r = zoomed_box(layer, id);
        Snake::box b;
        b.column = id >> 16;
        b.row = id & 0xFFFF;
        b.x0 = float(r.left());
        b.y0 = float(r.top());
        b.x1 = float(r.right());
        b.y1 = float(r.bottom());
        context->save();
        context->begin_path();
        context->fill_color(word(path_start_word));
        context->stroke_color(word(path_start_word));
        const_cast<boxes_layer&>(layer).draw_triangle(context, float(r.center().x()),
                                                      float(r.center().y()), b, b, false, false);
        context->close_path();
        context->stroke();
        context->restore();
    }
}

void MainImpact::draw_marks(nano2d::context* context) {
    const pointer<app_layer> current = workspace->current_layer();
    if (auto screen = std::dynamic_pointer_cast<boxes_layer>(current);
        screen && screen->CustomDataPath) {
        zoom = clamped_zoom(zoom);
        effective_zoom = live_output ? 1.0f : zoom;
        draw_custom_path_marks(context, *screen);
    }
    if (!live_output) m_selection.draw(context);
    const bool label_marked = hover_raster_label || isPosValid(label_drag_start);
    if (!label_marked && current) {
        const float z = effective_zoom;
        if (selecting) {
            const QRect& s = selection_rectangle;
            const float ox = float(current->get_offset_x()), oy = float(current->get_offset_y());
            const int l = held_int((float(std::min(s.left(), s.right())) + ox) * z);
            const int t = held_int((float(std::min(s.top(), s.bottom())) + oy) * z);
            const int r = held_int((float(std::max(s.left(), s.right())) + ox) * z);
            const int b = held_int((float(std::max(s.top(), s.bottom())) + oy) * z);
            context->begin_path();
            context->fill_color(word(outline_word));
            context->stroke_color(word(outline_word));
            context->stroke_width(1.0f);
            context->rectangle(float(l), float(t), float(r - l), float(b - t));
            context->close_path();
            context->stroke();
        } else {
            const std::uint64_t held = workspace->get_keyboard_modifiers();
            const enum_layer type = current->get_layer_type();
            const bool applies = ((held & keys::group_b) && type == e_layer_image) ||
                                 ((held & keys::group_a) && type == e_layer_boxes);
            if (applies) draw_layer_outline(context, *current);
        }
    }
    if (label_marked) {
        const QRectF r = raster_label_zoomed_rectangle();
        context->begin_path();
        context->fill_color(word(outline_word));
        context->stroke_color(word(outline_word));
        context->stroke_width(1.0f);
        context->rectangle(float(r.left()), float(r.top()), float(r.width()), float(r.height()));
        context->close_path();
        context->stroke();
    }
}

void MainImpact::draw_layer_outline(nano2d::context* context, const app_layer& layer) {
    const float z = effective_zoom;
    const float ox = float(layer.get_offset_x()), oy = float(layer.get_offset_y());
    float X = ox * z, Y = oy * z;
    float W = float(layer.get_width()) * z, H = float(layer.get_height()) * z;
    // The selection's marks show where a block move goes.
    if (isPosValid(move_delta) && m_selection.moves_with(layer)) return;
    if (isPosValid(move_delta)) {
        const QPoint to = snap(layer, move_target(layer));
        X -= float(held_int(z * (ox - float(to.x()))));
        Y -= float(held_int(z * (oy - float(to.y()))));
    } else if (resize_handle >= 0 && isPosValid(resize_delta)) {
        const float dx = float(resize_delta.x()), dy = float(resize_delta.y());
        switch (resize_handle) {
        case 0:
            Y -= dy;
            H += dy;
            break;
        case 1:
            H -= dy;
            break;
        case 2:
            X -= dx;
            W += dx;
            break;
        case 3:
            W -= dx;
            break;
        }
    }
    preview_rectangle = QRect(held_int(X), held_int(Y), held_int(W), held_int(H));
    context->begin_path();
    context->fill_color(word(outline_word));
    context->stroke_color(word(outline_word));
    context->stroke_width(1.0f);
    context->rectangle(X, Y, W, H);
    context->close_path();
    context->stroke();
    if (layer.get_layer_type() == e_layer_image) {
        // The top and bottom handles start at the middle rather than
        // centring on it: that is how they have always looked.
        context->begin_path();
        context->rectangle(X + W / 2, Y - 2, 4, 4);
        context->rectangle(X + W / 2, Y + H - 2, 4, 4);
        context->rectangle(X - 2, Y + H / 2, 4, 4);
        context->rectangle(X + W - 2, Y + H / 2, 4, 4);
        context->fill();
    }
}

QPoint MainImpact::snap(const app_layer&, QPoint p) const {
    int x = p.x(), y = p.y();
    snap(x, y);
    return QPoint(x, y);
}

void MainImpact::snap(int& x, int& y) const {
    bool done_x = false, done_y = false;
    snap_paper(x, y, done_x, done_y);
    snap_others(x, y, done_x, done_y);
}

void MainImpact::snap_paper(int& x, int& y, bool& done_x, bool& done_y) const {
    if (done_x && done_y) return;
    const pointer<app_layer> layer = workspace->current_layer();
    if (!layer) return;
    if (!done_x) done_x = snap_to_raster(x, layer->get_width(), workspace->get_paper_width());
    if (!done_y) done_y = snap_to_raster(y, layer->get_height(), workspace->get_paper_height());
}

void MainImpact::snap_others(int& x, int& y, bool& done_x, bool& done_y) const {
    const pointer<app_layer> current = workspace->current_layer();
    for (long long i = 0; i < workspace->get_layers_count(); ++i) {
        if (done_x && done_y) return;
        // Hidden layers too: a wall may be lined up with one that is off.
        const pointer<app_layer> other = workspace->get_layer(i);
        if (!other) continue;
        if (other == current) {
            output_debug_string("ignored itself");
            continue;
        }
        snap_other(x, y, done_x, done_y, other);
    }
}

void MainImpact::snap_other(int& x, int& y, bool& done_x, bool& done_y,
                            const pointer<app_layer>& other) const {
    if (done_x && done_y) return;
    const pointer<app_layer> layer = workspace->current_layer();
    if (!layer) return;
    if (!done_x)
        done_x = snap_axis(x, layer->get_width(), other->get_offset_x(), other->get_width());
    if (!done_y)
        done_y = snap_axis(y, layer->get_height(), other->get_offset_y(), other->get_height());
}

// ---------------------------------------------------------------- hit tests

QPointF MainImpact::screenToLayer(const QPoint& p, const app_layer& layer) const {
    return QPointF((float(p.x() - pan.x()) / effective_zoom) - float(layer.get_offset_x()),
                   (float(p.y() - pan.y()) / effective_zoom) - float(layer.get_offset_y()));
}

long long MainImpact::hit_test_layer(const QPointF& p) const {
    std::lock_guard<std::recursive_mutex> lock(workspace->frame_mutex);
    const QPoint q(int(p.x()), int(p.y()));
    for (long long i = workspace->get_layers_count() - 1; i >= 0; --i) {
        const pointer<app_layer> layer = workspace->get_layer(i);
        if (!layer || layer->is_hidden()) continue;
        const QPointF l = screenToLayer(q, *layer);
        if (l.x() >= 0 && l.x() <= layer->get_full_width() && l.y() >= 0 &&
            l.y() <= layer->get_full_height())
            return i;
    }
    return -1;
}

QRectF MainImpact::raster_label_zoomed_rectangle() const {
    const double z = effective_zoom;
    const double left = workspace->raster_label_x * z, top = workspace->raster_label_y * z;
    return QRectF(QPointF(left, top), QPointF(left + workspace->raster_label_width * z,
                                              top + workspace->raster_label_height * z));
}

bool MainImpact::hit_test_raster_label(int x, int y) const {
    if (!workspace->raster_label_enabled) return false;
    const double px = x - pan.x(), py = y - pan.y();
    const QRectF r = raster_label_zoomed_rectangle();
    return px >= r.left() && px <= r.right() && py >= r.top() && py <= r.bottom();
}

// ---------------------------------------------------------------- input

void MainImpact::wheelEvent(QWheelEvent* event) {
    // One notch is 15 degrees: a step of 0.15 around the top left corner,
    // wherever the pointer is.
    const float step = float(event->angleDelta().y()) / 8.0f / 100.0f;
    const float before = clamped_zoom(zoom), after = clamped_zoom(zoom + step);
    if (!live_output && (m_fitted || before < 0.25f || after < 0.25f)) {
        // Below the quarter, or after Fit, the wall is too large to find
        // again from its corner: the point under the pointer stays put.
        const QPointF at = event->position();
        const QPointF raster = (at - QPointF(pan)) / double(before);
        pan = (at - raster * double(after)).toPoint();
        zoom = after;
    } else {
        zoom += step;
    }
    update();
    event->accept();
}

void MainImpact::leaveEvent(QEvent*) {
    pointer_position = QPoint(INT_MIN, INT_MIN);
    update();
}

std::uint64_t modifier_groups(Qt::KeyboardModifiers m) {
    std::uint64_t groups = 0;
    if (m & Qt::ShiftModifier) groups |= keys::group_a;
        // Qt reports Command as Control on macOS, and Control as Meta there.
#ifdef Q_OS_MACOS
    if (m & (Qt::ControlModifier | Qt::MetaModifier)) groups |= keys::group_b;
#else
    if (m & Qt::ControlModifier) groups |= keys::group_b;
#endif
    if (m & Qt::AltModifier) groups |= keys::group_c;
    return groups;
}

std::uint64_t MainImpact::groups_of(const QMouseEvent& event) {
    const std::uint64_t groups = modifier_groups(event.modifiers());
    workspace->set_keyboard_modifiers(groups);
    return groups;
}

void MainImpact::redraw() {
    update();
    workspace->host().post_live_output_redraw();
}

void MainImpact::mousePressEvent(QMouseEvent* event) {
    const QPoint raw = event->position().toPoint();
    const QPoint p = as_seen(raw);
    m_last_mouse = p;
    mouse_button_event(p, event->button(), true, groups_of(*event));
    // The view pans with the hand, not with the mirror.
    if (isPosValid(pan_drag_start)) m_last_mouse = pan_drag_start = raw;
}

void MainImpact::mouseMoveEvent(QMouseEvent* event) {
    const QPoint raw = event->position().toPoint();
    const QPoint p = isPosValid(pan_drag_start) ? raw : as_seen(raw);
    const QPoint delta = p - m_last_mouse;
    m_last_mouse = p;
    mouse_motion_event(p, delta, groups_of(*event));
}

void MainImpact::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint raw = event->position().toPoint();
    const QPoint p = isPosValid(pan_drag_start) ? raw : as_seen(raw);
    m_last_mouse = p;
    mouse_button_event(p, event->button(), false, groups_of(*event));
}

void MainImpact::auto_select(const QPoint& p) {
    if (!workspace->auto_select) return;
    const long long index = hit_test_layer(QPointF(p));
    if (index >= 0 && index != workspace->get_current_layer_id())
        workspace->host().set_current_layer_to(*workspace, index, true);
}

void MainImpact::mouse_button_event(const QPoint& p, Qt::MouseButton button, bool down,
                                    std::uint64_t modifiers) {
    if (down)
        press(p, button, modifiers);
    else if (!m_selection.release())
        release(workspace->current_layer());
}

// A press selects (with auto-select) and then starts what the modifiers
// held ask for: no modifier pans or drags the raster label, Control
// selects cabinets, Shift on a screen or Control on a picture moves or
// resizes it.
void MainImpact::press(const QPoint& p, Qt::MouseButton button, std::uint64_t modifiers) {
    auto_select(p);
    const pointer<app_layer> current = workspace->current_layer();
    label_drag_start = invalidPos();
    pan_drag_start = invalidPos();
    if (m_selection.press(p, modifiers)) return; // Alt alone selects screens
    if (!current) return;
    auto* screen = dynamic_cast<boxes_layer*>(current.get());
    const QPointF q = screenToLayer(p, *current);
    if (!(modifiers & (keys::group_a | keys::group_b))) {
        start_pan_or_label_drag(p);
        if (screen && screen->CustomDataPath)
            screen->trigger_for_override_path(float(q.x()), float(q.y()),
                                              button == Qt::RightButton);
        return;
    }
    if ((modifiers & keys::group_b) && screen) {
        start_selection(*screen, q);
        return;
    }
    const enum_layer type = current->get_layer_type();
    if (((modifiers & keys::group_b) && type == e_layer_image) ||
        ((modifiers & keys::group_a) && type == e_layer_boxes))
        start_move_or_resize(*current, q);
}

void MainImpact::start_pan_or_label_drag(const QPoint& p) {
    if (hit_test_raster_label(p.x(), p.y())) {
        label_drag_start = p;
        label_start_position = QPoint(workspace->raster_label_x, workspace->raster_label_y);
    } else {
        pan_drag_start = p;
        pan_start = pan;
    }
}

void MainImpact::start_selection(boxes_layer& screen, const QPointF& q) {
    // The cabinet under the press sets the direction of the whole
    // rectangle: one that left the exclusions makes it include.
    selection_adds = !screen.trigger_for_exclude_boxes(float(q.x()), float(q.y()));
    const QPoint at(held_int(q.x()), held_int(q.y()));
    selection_rectangle = QRect(at, at);
    selecting = true;
    workspace->host().update_amperes();
    redraw();
}

void MainImpact::start_move_or_resize(const app_layer& layer, const QPointF& q) {
    const double w = layer.get_full_width(), h = layer.get_full_height();
    // Handles keep their size on screen.
    const double T = 4.0 / effective_zoom;
    const double x = q.x(), y = q.y();
    if (layer.get_layer_type() == e_layer_image) {
        const auto near = [T](double a, double b) { return std::abs(a - b) < T; };
        if (near(x, 0) && near(y, h / 2)) resize_handle = 2;
        if (near(x, w / 2) && near(y, 0)) resize_handle = 0;
        if (near(x, w) && near(y, h / 2)) resize_handle = 3;
        if (near(x, w / 2) && near(y, h)) resize_handle = 1;
    }
    if (resize_handle >= 0) {
        resize_delta = QPoint(0, 0);
        return;
    }
    if (0 < x && x < w && 0 < y && y < h) move_delta = QPoint(0, 0);
}

// The button goes up: the first state that runs ends.
void MainImpact::release(const pointer<app_layer>& current) {
    if (selecting) {
        end_selection(current);
    } else if (isPosValid(pan_drag_start)) {
        pan_drag_start = invalidPos();
    } else if (isPosValid(label_drag_start)) {
        label_drag_start = invalidPos();
        workspace->host().reload_all(*workspace, true);
        redraw();
    } else if (isPosValid(move_delta)) {
        if (current) end_move(*current);
        move_delta = invalidPos();
        resize_delta = invalidPos();
    } else if (resize_handle >= 0) {
        end_resize(current);
    }
}

void MainImpact::end_selection(const pointer<app_layer>& current) {
    if (auto screen = std::dynamic_pointer_cast<boxes_layer>(current)) {
        const QRect& s = selection_rectangle;
        const int left = std::min(s.left(), s.right()), right = std::max(s.left(), s.right());
        const int top = std::min(s.top(), s.bottom()), bottom = std::max(s.top(), s.bottom());
        for (std::uint32_t id : screen->hit_test(left, top, right, bottom)) {
            if (selection_adds)
                screen->ExcludeBoxes.add(id);
            else
                screen->ExcludeBoxes.remove(id);
        }
        screen->set_changed();
        workspace->host().update_amperes();
    }
    selecting = false;
    redraw();
}

QPoint MainImpact::move_target(const app_layer& layer) const {
    const float dx = float(move_delta.x()) / effective_zoom;
    const float dy = float(move_delta.y()) / effective_zoom;
    return QPoint(held_int(float(layer.get_offset_x()) - dx, offset_limit),
                  held_int(float(layer.get_offset_y()) - dy, offset_limit));
}

void MainImpact::end_move(app_layer& layer) {
    if (m_selection.moves_with(layer)) return m_selection.end_block_move(layer, move_target(layer));
    int nx = move_target(layer).x(), ny = move_target(layer).y();
    snap(nx, ny);
    layer.set_offset_x(nx);
    layer.set_offset_y(ny);
    if (layer.is_logo) workspace->save_logo_layer();
    workspace->host().reload_all(*workspace, true);
}

void MainImpact::end_resize(const pointer<app_layer>& current) {
    resize_delta = invalidPos();
    const QRect& r = preview_rectangle;
    auto picture = std::dynamic_pointer_cast<image_layer>(current);
    const bool nothing = r.x() == 0 && r.y() == 0 && r.width() == 0 && r.height() == 0;
    if (picture && !nothing) {
        const float z = effective_zoom;
        picture->set_offset_x(held_int(float(r.x()) / z, offset_limit));
        picture->set_offset_y(held_int(float(r.y()) / z, offset_limit));
        const int width = held_int(float(r.width()) / z, offset_limit);
        const int height = held_int(float(r.height()) / z, offset_limit);
        if (picture->getMaintainAspectRatio()) {
            // The picture derives the other side.
            if (resize_handle == 0 || resize_handle == 1)
                picture->set_height(height);
            else
                picture->set_width(width);
        } else {
            picture->set_width(width);
            picture->set_height(height);
        }
        if (picture->is_logo) workspace->save_logo_layer();
    }
    preview_rectangle = QRect(0, 1, 2, 3);
    resize_handle = -1;
    redraw();
}

void MainImpact::mouse_motion_event(const QPoint& p, const QPoint& delta, std::uint64_t modifiers) {
    pointer_position = p;
    m_selection.motion(p);
    const bool over_label = hit_test_raster_label(p.x(), p.y());
    if (over_label != hover_raster_label) {
        hover_raster_label = over_label;
        redraw();
    }
    pointer<app_layer> current = workspace->current_layer();
    if (selecting && current) {
        const QPointF q = screenToLayer(p, *current);
        selection_rectangle.setRight(int(q.x()));
        selection_rectangle.setBottom(int(q.y()));
        redraw();
    }
    // With Shift held the current layer follows the pointer before a press.
    if ((modifiers & keys::group_a) && !isPosValid(move_delta)) {
        auto_select(p);
        current = workspace->current_layer();
    }
    if (auto screen = std::dynamic_pointer_cast<boxes_layer>(current);
        screen && screen->CustomDataPath)
        redraw();
    if (isPosValid(move_delta)) {
        move_delta -= delta;
        redraw();
    } else if (resize_handle >= 0) {
        if (isPosValid(resize_delta)) resize_delta -= delta;
        redraw();
    } else if (isPosValid(label_drag_start)) {
        const QPoint back = label_drag_start - p;
        workspace->raster_label_x =
            wrapping_sum(label_start_position.x(), -int(float(back.x()) / effective_zoom));
        workspace->raster_label_y =
            wrapping_sum(label_start_position.y(), -int(float(back.y()) / effective_zoom));
        // The label is drawn into the frame: it moves live.
        workspace->set_changed();
        redraw();
    } else if (isPosValid(pan_drag_start)) {
        pan = pan_start + (p - pan_drag_start);
        redraw();
    }
}

void MainImpact::on_space_key() {
    if (auto screen = workspace->current_boxes_layer()) screen->on_space_key();
}

void MainImpact::cancel_drag() {
    resize_handle = -1;
    resize_delta = invalidPos();
    move_delta = invalidPos();
}

void MainImpact::set_live_output_to_monitor(long long monitor) {
    show_live_output(*workspace, m_context, monitor, &show());
}

live_show& MainImpact::show() {
    if (!m_own_show) {
        m_own_show = std::make_unique<live_show>(*workspace);
        Global* g = workspace;
        m_own_show->on_change = [g] { g->host().post_live_output_redraw(); };
        m_own_show->on_status = [this](const std::string& text) {
            m_selection.say(QString::fromStdString(text.empty() ? "Map" : text));
        };
    }
    return *m_own_show;
}

} // namespace Vantora_TesserinePro
