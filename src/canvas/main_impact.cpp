#include "canvas/main_impact.h"

#include "canvas/live_output.h"
#include "core/diagnostics.h"
#include "core/keys.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/look.h"

#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Vantora_TesserinePro {

long long g_iMainImpactRedraw = 0;

namespace {

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

// ---------------------------------------------------------------- painting

void MainImpact::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    m_paint_rect = event->rect();
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
    if (!live_output) context->translate(float(pan.x()), float(pan.y()));
    QPainter* painter = context == &m_context ? m_context.painter() : nullptr;
    {
        const Global::frame_view frame = workspace->read_frame();
        if (const image* composite = frame.composite()) {
            // Zoom only ever shrinks the drawing: at most one raster pixel
            // to one screen pixel, at least a quarter.
            zoom = std::clamp(zoom, 0.25f, 1.0f);
            effective_zoom = live_output ? 1.0f : zoom;
            if (painter) {
                update_view(*composite, frame.generation());
                const QRect shown(m_view_at, m_view.size());
                // The background where the frame is not, then the frame.
                for (const QRect& r : QRegion(m_paint_rect).subtracted(QRegion(shown)))
                    painter->fillRect(r, look::screen_background);
                const QRect part = shown & m_paint_rect;
                if (!part.isEmpty())
                    painter->drawImage(part.topLeft(), m_view, part.translated(-m_view_at));
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
    draw_marks(context);
}

void MainImpact::update_view(const image& composite, std::uint64_t generation) {
    const float z = effective_zoom;
    const image* shown = &composite;
    if (z < 1.0f) {
        if (m_scaled.isNull() || m_scaled_generation != generation || m_scaled_zoom != z) {
            const int w = std::max(1, int(std::lround(composite.width() * z)));
            const int h = std::max(1, int(std::lround(composite.height() * z)));
            m_scaled = composite.scaled(w, h, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            m_scaled_generation = generation;
            m_scaled_zoom = z;
        }
        shown = &m_scaled;
    } else {
        m_scaled = QImage();
    }
    const QPoint origin = live_output ? QPoint(0, 0) : pan;
    if (m_has_view && m_view_generation == generation && m_view_zoom == z && m_view_pan == origin &&
        m_view_size == size())
        return;
    // Only what the widget shows, made opaque once: an unchanged paint is a
    // plain copy of it.
    const QRect visible = QRect(origin, shown->size()) & rect();
    m_view_at = visible.topLeft();
    m_view = QImage(visible.size(), QImage::Format_RGB32);
    if (!visible.isEmpty()) {
        m_view.fill(look::screen_background);
        QPainter p(&m_view);
        p.drawImage(QPoint(0, 0), *shown, visible.translated(-origin));
    }
    m_view_generation = generation;
    m_view_zoom = z;
    m_view_pan = origin;
    m_view_size = size();
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
        const QPointF rel = QPointF(pointer_position - pan) -
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
        zoom = std::clamp(zoom, 0.25f, 1.0f);
        effective_zoom = live_output ? 1.0f : zoom;
        draw_custom_path_marks(context, *screen);
    }
    const bool label_marked = hover_raster_label || isPosValid(label_drag_start);
    if (!label_marked && current) {
        const float z = effective_zoom;
        if (selecting) {
            const QRect& s = selection_rectangle;
            const float ox = float(current->get_offset_x()), oy = float(current->get_offset_y());
            const int l = int((float(std::min(s.left(), s.right())) + ox) * z);
            const int t = int((float(std::min(s.top(), s.bottom())) + oy) * z);
            const int r = int((float(std::max(s.left(), s.right())) + ox) * z);
            const int b = int((float(std::max(s.top(), s.bottom())) + oy) * z);
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
    if (isPosValid(move_delta)) {
        const QPoint to = snap(layer, QPoint(int(ox - float(move_delta.x()) / z),
                                             int(oy - float(move_delta.y()) / z)));
        X -= float(int(z * (ox - float(to.x()))));
        Y -= float(int(z * (oy - float(to.y()))));
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
    preview_rectangle = QRect(int(X), int(Y), int(W), int(H));
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
    return p;
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
    zoom += float(event->angleDelta().y()) / 8.0f / 100.0f;
    update();
    event->accept();
}

void MainImpact::leaveEvent(QEvent*) {
    pointer_position = QPoint(INT_MIN, INT_MIN);
    update();
}

void MainImpact::mousePressEvent(QMouseEvent*) {}

void MainImpact::mouseMoveEvent(QMouseEvent* event) {
    pointer_position = event->position().toPoint();
    // The hover mark of a custom path follows the pointer.
    if (auto screen = workspace->current_boxes_layer(); screen && screen->CustomDataPath) update();
}

void MainImpact::mouseReleaseEvent(QMouseEvent*) {}

void MainImpact::on_space_key() {
    if (auto screen = workspace->current_boxes_layer()) screen->on_space_key();
}

void MainImpact::cancel_drag() {
    resize_handle = -1;
    resize_delta = invalidPos();
    move_delta = invalidPos();
}

void MainImpact::set_live_output_to_monitor(long long monitor) {
    show_live_output(*workspace, m_context, monitor);
}

} // namespace Vantora_TesserinePro
