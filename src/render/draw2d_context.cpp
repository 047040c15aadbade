#include "render/draw2d_context.h"

#include <QImage>
#include <QString>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Vantora_TesserinePro {
namespace nano2d {

namespace {

QColor to_qcolor(color::color c) {
    return QColor(c.red, c.green, c.blue, c.alpha);
}

int bytes_per_line(int width, QImage::Format format) {
    const int depth = QImage::toPixelFormat(format).bitsPerPixel();
    return int(((long long)width * depth + 31) / 32 * 4);
}

// Strokes at least this wide have their outline clipped to the target.
constexpr float clip_wide_strokes_from = 256.0f;

bool lines_only(const QPainterPath& path) {
    for (int i = 0; i < path.elementCount(); ++i)
        if (path.elementAt(i).type == QPainterPath::CurveToElement) return false;
    return true;
}

// Sutherland-Hodgman against one side of a rectangle; inside(p) tells the
// kept side, cut(a, b) where an edge crosses it. Points inside the kept
// side keep their winding, so a winding fill is unchanged there.
template <class Inside, class Cut>
QPolygonF clip_side(const QPolygonF& in, Inside inside, Cut cut) {
    QPolygonF out;
    const qsizetype n = in.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QPointF& a = in[(i + n - 1) % n];
        const QPointF& b = in[i];
        if (inside(b)) {
            if (!inside(a)) out << cut(a, b);
            out << b;
        } else if (inside(a)) {
            out << cut(a, b);
        }
    }
    return out;
}

QPolygonF clip_polygon(QPolygonF poly, const QRectF& r) {
    const auto at_x = [](const QPointF& a, const QPointF& b, qreal x) {
        return QPointF(x, a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x()));
    };
    const auto at_y = [](const QPointF& a, const QPointF& b, qreal y) {
        return QPointF(a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()), y);
    };
    const qreal l = r.left(), t = r.top(), rt = r.right(), b = r.bottom();
    poly = clip_side(
        poly, [&](const QPointF& p) { return p.x() >= l; },
        [&](const QPointF& p, const QPointF& q) { return at_x(p, q, l); });
    poly = clip_side(
        poly, [&](const QPointF& p) { return p.x() <= rt; },
        [&](const QPointF& p, const QPointF& q) { return at_x(p, q, rt); });
    poly = clip_side(
        poly, [&](const QPointF& p) { return p.y() >= t; },
        [&](const QPointF& p, const QPointF& q) { return at_y(p, q, t); });
    poly = clip_side(
        poly, [&](const QPointF& p) { return p.y() <= b; },
        [&](const QPointF& p, const QPointF& q) { return at_y(p, q, b); });
    return poly;
}

// The outline cut to the target with a margin, so that the new edges lie
// off the target and its pixels come out as without the cut.
QPainterPath clip_outline(const QPainterPath& outline, const QRectF& area) {
    const QRectF keep = area.adjusted(-4, -4, 4, 4);
    QPainterPath clipped;
    clipped.setFillRule(Qt::WindingFill);
    for (const QPolygonF& poly : outline.toSubpathPolygons()) {
        const QPolygonF cut = clip_polygon(poly, keep);
        if (cut.size() < 3) continue;
        clipped.addPolygon(cut);
        clipped.closeSubpath();
    }
    return clipped;
}

} // namespace

float bounded_stroke_width(const QPainterPath& path, const QRectF& area, float width) {
    // Twice the greatest distance between a point of the path and a point
    // of the target: a stroke that wide already reaches every pixel that a
    // wider one would, caps and joins included.
    const QRectF all = area.isEmpty() ? path.boundingRect() : (path.boundingRect() | area);
    const double bound = 2.0 * std::hypot(all.width(), all.height()) + 2.0;
    return width > bound ? float(bound) : width;
}

// One paint device with its painter, drawing state and current path. All
// contexts drawing on the same device share it, as they would share the
// device's graphics object.
struct font_sink::surface {
    struct state {
        QColor fill = Qt::white;
        QColor stroke = Qt::black;
        paint fill_paint;
        bool fill_is_paint = false;
        float stroke_width = 1.0f;
        float dash_on = 0.0f, dash_off = 0.0f;
        float font_size = 16.0f;
        std::string face = "sans";
        int align = align_left;
        // Only translation exists, so the transform is an offset; it is
        // applied when a command is given, as the path is built.
        float tx = 0.0f, ty = 0.0f;
    };

    QPaintDevice* device = nullptr;
    std::unique_ptr<QPainter> own;
    QPainter* painter = nullptr; // null: draws nothing

    state st;
    std::vector<state> stack;

    QPainterPath path;
    // The path is exactly one rectangle: fills take the fast rectangle road.
    bool single_rect = false;
    bool last_was_rect = false;
    int commands = 0;
    QRectF rect;

    surface() { path.setFillRule(Qt::WindingFill); }
    ~surface() {
        if (own && own->isActive()) own->end();
    }

    void note_command(bool is_rect) {
        single_rect = is_rect && commands == 0;
        last_was_rect = is_rect;
        ++commands;
    }
};

const font_sink::font_entry& font_sink::font(const std::string& face, int pixel_size) {
    // Fonts are the same for every context of the program, and making one
    // costs a font lookup: one cache serves them all (they are only used
    // on the thread that paints).
    static std::map<std::pair<std::string, int>, std::unique_ptr<font_entry>> fonts;
    pixel_size = std::max(pixel_size, 1);
    auto key = std::make_pair(face, pixel_size);
    auto it = fonts.find(key);
    if (it != fonts.end()) return *it->second;
    QFont f(QString::fromStdString(face));
    f.setPixelSize(pixel_size);
    // Hinting named, not left to the platform: a scaled display turns the
    // platform's default off, and the frame's text must come out the same
    // in the window, the live output and a headless render.
    f.setHintingPreference(QFont::PreferVerticalHinting);
    QFontMetricsF m(f);
    auto entry = std::make_unique<font_entry>(
        font_entry{f, m, float(m.ascent()), float(m.descent()), float(m.lineSpacing())});
    return *fonts.emplace(key, std::move(entry)).first->second;
}

font_sink::image_entry* font_sink::find_image(int handle) {
    auto it = m_images.find(handle);
    return it == m_images.end() ? nullptr : &it->second;
}

int font_sink::add_image(image_entry entry) {
    const int handle = m_next_handle++;
    m_images.emplace(handle, std::move(entry));
    return handle;
}

std::shared_ptr<font_sink::surface> font_sink::surface_for(QPaintDevice* device) {
    if (!device) return std::make_shared<surface>();
    for (auto it = m_surfaces.begin(); it != m_surfaces.end();) {
        if (it->second.expired())
            it = m_surfaces.erase(it);
        else
            ++it;
    }
    auto found = m_surfaces.find(device);
    if (found != m_surfaces.end())
        if (auto open = found->second.lock()) return open;
    auto s = std::make_shared<surface>();
    s->device = device;
    s->own = std::make_unique<QPainter>();
    if (s->own->begin(device)) {
        s->painter = s->own.get();
        s->painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                                   QPainter::SmoothPixmapTransform);
    }
    m_surfaces[device] = s;
    return s;
}

// ---------------------------------------------------------------- life

draw2d_context::draw2d_context()
    : m_sink(std::make_shared<font_sink>()), m_surface(m_sink->surface_for(nullptr)) {}

draw2d_context::draw2d_context(QPaintDevice* device)
    : m_sink(std::make_shared<font_sink>()), m_surface(m_sink->surface_for(device)) {}

draw2d_context::draw2d_context(QPainter& painter) : m_sink(std::make_shared<font_sink>()) {
    set_graphics(painter);
}

draw2d_context::draw2d_context(std::shared_ptr<font_sink> sink,
                               std::shared_ptr<font_sink::surface> surface)
    : m_sink(std::move(sink)), m_surface(std::move(surface)) {}

draw2d_context::~draw2d_context() = default;

void draw2d_context::set_graphics(QPaintDevice* device) {
    m_surface = m_sink->surface_for(device);
}

void draw2d_context::set_graphics(QPainter& painter) {
    m_surface = std::make_shared<font_sink::surface>();
    m_surface->device = painter.device();
    if (!painter.isActive()) return;
    m_surface->painter = &painter;
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    if (m_surface->device) m_sink->m_surfaces[m_surface->device] = m_surface;
}

QPainter* draw2d_context::painter() const {
    return m_surface ? m_surface->painter : nullptr;
}

void draw2d_context::set_font_sink(std::shared_ptr<font_sink> sink) {
    if (sink) m_sink = std::move(sink);
}

std::unique_ptr<context> draw2d_context::make_offscreen(image* target) {
    QPaintDevice* device = (target && !target->isNull()) ? target : nullptr;
    return std::unique_ptr<context>(new draw2d_context(m_sink, m_sink->surface_for(device)));
}

// ---------------------------------------------------------------- state

void draw2d_context::save() {
    m_surface->stack.push_back(m_surface->st);
}

void draw2d_context::restore() {
    if (m_surface->stack.empty()) return;
    m_surface->st = std::move(m_surface->stack.back());
    m_surface->stack.pop_back();
}

void draw2d_context::translate(float x, float y) {
    m_surface->st.tx += x;
    m_surface->st.ty += y;
}

void draw2d_context::fill_color(color::color c) {
    m_surface->st.fill = to_qcolor(c);
    m_surface->st.fill_is_paint = false;
}

void draw2d_context::stroke_color(color::color c) {
    m_surface->st.stroke = to_qcolor(c);
}

void draw2d_context::fill_paint(const paint& p) {
    m_surface->st.fill_paint = p;
    // The paint lives in the coordinates of the moment it is set.
    m_surface->st.fill_paint.x += m_surface->st.tx;
    m_surface->st.fill_paint.y += m_surface->st.ty;
    m_surface->st.fill_is_paint = true;
}

void draw2d_context::stroke_dash(float on, float off) {
    m_surface->st.dash_on = on;
    m_surface->st.dash_off = off;
}

void draw2d_context::stroke_width(float width) {
    m_surface->st.stroke_width = width;
}
void draw2d_context::font_size(float size) {
    m_surface->st.font_size = size;
}
void draw2d_context::font_face(const std::string& face) {
    m_surface->st.face = face;
}
void draw2d_context::text_align(int align) {
    m_surface->st.align = align;
}

// ---------------------------------------------------------------- paths

void draw2d_context::begin_path() {
    auto& s = *m_surface;
    s.path.clear();
    s.path.setFillRule(Qt::WindingFill);
    s.commands = 0;
    s.single_rect = false;
    s.last_was_rect = false;
}

void draw2d_context::close_path() {
    auto& s = *m_surface;
    // A rectangle is closed already; closing it again changes nothing.
    if (s.last_was_rect) return;
    s.path.closeSubpath();
    s.note_command(false);
}

void draw2d_context::move_to(float x, float y) {
    auto& s = *m_surface;
    s.path.moveTo(x + s.st.tx, y + s.st.ty);
    s.note_command(false);
}

void draw2d_context::line_to(float x, float y) {
    auto& s = *m_surface;
    s.path.lineTo(x + s.st.tx, y + s.st.ty);
    s.note_command(false);
}

void draw2d_context::rectangle(float x, float y, float width, float height) {
    auto& s = *m_surface;
    const QRectF r(x + s.st.tx, y + s.st.ty, width, height);
    s.path.addRect(r);
    const bool first = s.commands == 0;
    s.note_command(true);
    if (first) s.rect = r.normalized();
}

void draw2d_context::circle(float cx, float cy, float radius) {
    auto& s = *m_surface;
    s.path.addEllipse(QPointF(cx + s.st.tx, cy + s.st.ty), radius, radius);
    s.note_command(false);
}

void draw2d_context::rectangle_outline(int x, int y, int width, int height, color::color c,
                                       int line_width) {
    auto& s = *m_surface;
    if (!s.painter || line_width <= 0 || width < 0 || height < 0) return;
    // The outline stays inside its pixels, so neighbouring cabinets never
    // paint over each other.
    const double ox = x + s.st.tx, oy = y + s.st.ty;
    const double w = double(width) + 1, h = double(height) + 1, lw = line_width;
    const QColor q = to_qcolor(c);
    if (2 * lw >= w || 2 * lw >= h) {
        s.painter->fillRect(QRectF(ox, oy, w, h), q);
        return;
    }
    s.painter->fillRect(QRectF(ox, oy, w, lw), q);
    s.painter->fillRect(QRectF(ox, oy + h - lw, w, lw), q);
    s.painter->fillRect(QRectF(ox, oy + lw, lw, h - 2 * lw), q);
    s.painter->fillRect(QRectF(ox + w - lw, oy + lw, lw, h - 2 * lw), q);
}

void draw2d_context::fill() {
    auto& s = *m_surface;
    if (!s.painter || s.commands == 0) return;
    if (!s.st.fill_is_paint) {
        if (s.single_rect)
            s.painter->fillRect(s.rect, s.st.fill);
        else
            s.painter->fillPath(s.path, s.st.fill);
        return;
    }
    const paint& p = s.st.fill_paint;
    font_sink::image_entry* e = m_sink->find_image(p.image);
    if (!e || e->image.isNull() || !(p.width > 0) || !(p.height > 0) || !(p.alpha > 0)) return;
    const QImage& img = e->image;
    const QRectF placed(p.x, p.y, p.width, p.height);
    const double old_opacity = s.painter->opacity();
    if (p.alpha < 1.0f) s.painter->setOpacity(old_opacity * p.alpha);
    if (p.angle == 0.0f && s.single_rect) {
        // The usual case (stacking layers, stretching a picture): draw the
        // part of the image under the rectangle, a plain blit when unscaled.
        const QRectF target = s.rect & placed;
        if (!target.isEmpty()) {
            const double sx = img.width() / placed.width(), sy = img.height() / placed.height();
            const QRectF source((target.x() - placed.x()) * sx, (target.y() - placed.y()) * sy,
                                target.width() * sx, target.height() * sy);
            s.painter->drawImage(target, img, source);
        }
    } else {
        s.painter->save();
        s.painter->setClipPath(s.path, Qt::IntersectClip);
        s.painter->translate(placed.x(), placed.y());
        if (p.angle != 0.0f) s.painter->rotate(double(p.angle) * 180.0 / std::numbers::pi);
        s.painter->drawImage(QRectF(0, 0, placed.width(), placed.height()), img);
        s.painter->restore();
    }
    if (p.alpha < 1.0f) s.painter->setOpacity(old_opacity);
}

void draw2d_context::stroke() {
    auto& s = *m_surface;
    if (!s.painter || s.commands == 0 || !(s.st.stroke_width > 0)) return;
    // The target's pixels in path coordinates.
    QRectF area;
    if (s.device && s.painter->transform().isInvertible())
        area = s.painter->transform().inverted().mapRect(
            QRectF(0, 0, s.device->width(), s.device->height()));
    const float width = bounded_stroke_width(s.path, area, s.st.stroke_width);
    QPen pen(QBrush(s.st.stroke), width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    // Qt measures dashes in line widths.
    if (s.st.dash_on > 0 && width > 0)
        pen.setDashPattern({s.st.dash_on / width, std::max(s.st.dash_off, 0.0f) / width});
    // A line far wider than the target costs the rasterizer in proportion
    // to its outline's length, almost all of it off the target: clip the
    // outline to the target first.
    if (width > clip_wide_strokes_from && !area.isEmpty() && lines_only(s.path) &&
        s.painter->transform().isIdentity()) {
        QPainterPathStroker stroker(pen);
        s.painter->fillPath(clip_outline(stroker.createStroke(s.path), area), pen.brush());
        return;
    }
    s.painter->strokePath(s.path, pen);
}

// ---------------------------------------------------------------- text

const font_sink::font_entry& draw2d_context::current_font() {
    const auto& st = m_surface->st;
    return m_sink->font(st.face, int(std::lround(st.font_size)));
}

void draw2d_context::place_text(const font_sink::font_entry& f, float advance, float x, float y,
                                float& left, float& baseline) const {
    const int a = m_surface->st.align;
    if (a & align_left)
        left = x;
    else if (a & align_right)
        left = x - advance;
    else if (a & align_center)
        left = x - advance * 0.5f;
    else
        left = x;
    if (a & align_top)
        baseline = y + f.ascent;
    else if (a & align_middle)
        baseline = y + (f.ascent - f.descent) * 0.5f;
    else if (a & align_bottom)
        baseline = y - f.descent;
    else
        baseline = y;
}

void draw2d_context::text(const std::string& text, float x, float y) {
    auto& s = *m_surface;
    if (!s.painter || text.empty()) return;
    const auto& f = current_font();
    const QString q = QString::fromUtf8(text.data(), qsizetype(text.size()));
    const float advance = float(f.metrics.horizontalAdvance(q));
    float left, baseline;
    place_text(f, advance, x + s.st.tx, y + s.st.ty, left, baseline);
    s.painter->setFont(f.font);
    s.painter->setPen(s.st.fill);
    s.painter->drawText(QPointF(left, baseline), q);
}

float draw2d_context::text_bounds(const std::string& text, float x, float y, float bounds[4]) {
    const auto& f = current_font();
    const float advance =
        float(f.metrics.horizontalAdvance(QString::fromUtf8(text.data(), qsizetype(text.size()))));
    float left, baseline;
    place_text(f, advance, x, y, left, baseline);
    bounds[0] = left;
    bounds[1] = baseline - f.ascent;
    bounds[2] = left + advance;
    bounds[3] = baseline + f.descent;
    return advance;
}

void draw2d_context::measure_lines(const std::vector<std::string>& lines, float& widest,
                                   float& line_height) {
    const auto& f = current_font();
    widest = 0.0f;
    for (const auto& line : lines)
        widest = std::max(widest, float(f.metrics.horizontalAdvance(
                                      QString::fromUtf8(line.data(), qsizetype(line.size())))));
    line_height = f.line_height;
}

// ---------------------------------------------------------------- images

paint draw2d_context::image_pattern(int handle, float x, float y, float width, float height,
                                    float angle, float alpha) {
    return paint{handle, x, y, width, height, angle, alpha};
}

int draw2d_context::load_image(const std::string& file_name, int) {
    QImage img(QString::fromStdString(file_name));
    if (img.isNull()) return 0;
    font_sink::image_entry e;
    e.image = img.convertToFormat(image_format);
    e.stride = int(e.image.bytesPerLine());
    e.format = image_format;
    return m_sink->add_image(std::move(e));
}

int draw2d_context::create_image(int width, int height, int flags, const void* pixels, int stride) {
    if (width <= 0 || height <= 0 || !pixels) return 0;
    font_sink::image_entry e;
    e.format = image_format_of(flags);
    e.stride = stride > 0 ? stride : bytes_per_line(width, e.format);
    // Wrapped, not copied: the owner keeps the pixels alive and hands them
    // over again with update_image.
    e.image = QImage(static_cast<const uchar*>(pixels), width, height, e.stride, e.format);
    if (e.image.isNull()) return 0;
    return m_sink->add_image(std::move(e));
}

bool draw2d_context::read_image_size(int handle, int& width, int& height) {
    font_sink::image_entry* e = m_sink->find_image(handle);
    if (!e) return false;
    width = e->image.width();
    height = e->image.height();
    return true;
}

void draw2d_context::update_image(int handle, const void* pixels) {
    font_sink::image_entry* e = m_sink->find_image(handle);
    if (!e || !pixels) return;
    if (e->image.constBits() == pixels) return;
    e->image = QImage(static_cast<const uchar*>(pixels), e->image.width(), e->image.height(),
                      e->stride, e->format);
}

void draw2d_context::delete_image(int handle) {
    m_sink->remove_image(handle);
}

} // namespace nano2d
} // namespace Vantora_TesserinePro
