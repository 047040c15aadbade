#include "canvas/selection.h"

#include "app/main_screen.h"
#include "app/undo_controller.h"
#include "canvas/main_impact.h"
#include "core/keys.h"
#include "document/arrange.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/look.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QTimer>

#include <algorithm>
#include <unordered_map>

namespace Vantora_TesserinePro {

namespace {

const color::color mark_color(look::selection.red(), look::selection.green(),
                              look::selection.blue(), 0xff);
const color::color rectangle_fill(look::selection.red(), look::selection.green(),
                                  look::selection.blue(), 0x30);
constexpr float handle_size = 6.0f;

bool is_screen(const pointer<app_layer>& layer) {
    return layer && layer->get_layer_type() == e_layer_boxes;
}

long long index_of(const Global& global, const app_layer& layer) {
    for (long long i = 0; i < global.get_layers_count(); ++i)
        if (global.get_layer(i).get() == &layer) return i;
    return -1;
}

} // namespace

const char* arrange_caption(arrange_command command) {
    static const char* const captions[] = {"Align Left",
                                           "Align Right",
                                           "Align Top",
                                           "Align Bottom",
                                           "Align Horizontal Centres",
                                           "Align Vertical Centres",
                                           "Distribute Horizontally",
                                           "Distribute Vertically",
                                           "Pack"};
    return captions[int(command)];
}

// ---------------------------------------------------------------- the set

void screen_selection::resolve() const {
    const pointer<project> now = m_global.current_project_pointer();
    const long long count = m_global.get_layers_count();
    // Another document (New, Open): nothing of the old one is selected. An
    // empty selection (each row of the list asks at each paint) costs nothing.
    if (now != m_project.lock() || m_entries.empty()) {
        m_entries.clear();
        m_project = now;
        m_count = count;
        return;
    }
    std::unordered_map<const app_layer*, long long> where;
    for (long long i = 0; i < count; ++i)
        where.emplace(m_global.get_layer(i).get(), i);
    std::vector<bool> claimed(std::size_t(count), false);
    std::vector<entry> kept, lost;
    for (entry& e : m_entries) {
        const pointer<app_layer> layer = e.layer.lock();
        const auto it = layer ? where.find(layer.get()) : where.end();
        if (it == where.end()) {
            lost.push_back(e);
            continue;
        }
        e.index = it->second;
        claimed[std::size_t(e.index)] = true;
        kept.push_back(e);
    }
    // Undo puts a copy where a changed layer stood; with the stack the same
    // length the copy at that place is the layer that was selected.
    for (entry& e : lost)
        if (count == m_count && e.index < count && !claimed[std::size_t(e.index)] &&
            is_screen(m_global.get_layer(e.index))) {
            e.layer = m_global.get_layer(e.index);
            claimed[std::size_t(e.index)] = true;
            kept.push_back(e);
        }
    m_entries = std::move(kept);
    m_count = count;
}

std::vector<long long> screen_selection::indices() const {
    resolve();
    std::vector<long long> out;
    for (const entry& e : m_entries)
        out.push_back(e.index);
    std::sort(out.begin(), out.end());
    return out;
}

std::vector<long long> screen_selection::list_order() const {
    std::vector<long long> out = indices();
    std::reverse(out.begin(), out.end());
    return out;
}

bool screen_selection::contains(long long index) const {
    resolve();
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [index](const entry& e) { return e.index == index; });
}

void screen_selection::set(const std::vector<long long>& indices) {
    m_entries.clear();
    m_project = m_global.current_project_pointer();
    m_count = m_global.get_layers_count();
    for (long long i : indices) {
        const pointer<app_layer> layer = m_global.get_layer(i);
        const bool known = std::any_of(m_entries.begin(), m_entries.end(),
                                       [i](const entry& e) { return e.index == i; });
        if (is_screen(layer) && !known) m_entries.push_back({layer, i});
    }
}

void screen_selection::toggle(long long index) {
    std::vector<long long> now = indices();
    const auto it = std::find(now.begin(), now.end(), index);
    if (it != now.end())
        now.erase(it);
    else
        now.push_back(index);
    set(now);
}

// ---------------------------------------------------------------- the canvas

selection_tool::selection_tool(MainImpact& canvas, Global& global)
    : m_canvas(canvas), m_global(global), m_screens(global) {}

selection_tool::~selection_tool() = default;

bool selection_tool::press(const QPoint& p, std::uint64_t modifiers) {
    if (modifiers != keys::group_c) return false;
    // The top visible screen under the pointer, edges included as the
    // canvas's hit test has them.
    for (long long i = m_global.get_layers_count() - 1; i >= 0; --i) {
        const pointer<app_layer> layer = m_global.get_layer(i);
        if (!is_screen(layer) || layer->is_hidden()) continue;
        const QPointF q = m_canvas.screenToLayer(p, *layer);
        if (q.x() >= 0 && q.x() <= layer->get_width() && q.y() >= 0 &&
            q.y() <= layer->get_height()) {
            toggle(i);
            return true;
        }
    }
    const float z = m_canvas.get_effective_zoom();
    m_from = m_to = QPointF(QPointF(p - m_canvas.get_pan()) / double(z)).toPoint();
    m_drawing = true;
    return true;
}

bool selection_tool::motion(const QPoint& p) {
    if (!m_drawing) return false;
    m_to =
        QPointF(QPointF(p - m_canvas.get_pan()) / double(m_canvas.get_effective_zoom())).toPoint();
    m_canvas.update();
    return true;
}

bool selection_tool::release() {
    if (!m_drawing) return false;
    m_drawing = false;
    const long long left = std::min(m_from.x(), m_to.x()), right = std::max(m_from.x(), m_to.x());
    const long long top = std::min(m_from.y(), m_to.y()), bottom = std::max(m_from.y(), m_to.y());
    std::vector<long long> chosen = m_screens.indices();
    for (long long i : visible_screens_in_list_order(m_global)) {
        const raster_rect r = rect_of(*m_global.get_layer(i));
        // Touching is enough: edges count.
        if (r.x <= right && left <= r.right() && r.y <= bottom && top <= r.bottom())
            chosen.push_back(i);
    }
    m_screens.set(chosen);
    changed();
    return true;
}

bool selection_tool::moves_with(const app_layer& layer) const {
    const long long i = index_of(m_global, layer);
    return i >= 0 && m_screens.contains(i) && m_screens.indices().size() >= 2;
}

QPoint selection_tool::block_shift(const app_layer& layer, const QPoint& target) const {
    const std::vector<long long> selected = m_screens.indices();
    raster_rect block = bounds_of(m_global, selected);
    const long long x = block.x, y = block.y;
    block.x += (long long)target.x() - layer.get_offset_x();
    block.y += (long long)target.y() - layer.get_offset_y();
    const QPoint at = snap_block(m_global, block, selected);
    return QPoint(held_offset(at.x() - x), held_offset(at.y() - y));
}

void selection_tool::end_block_move(const app_layer& layer, const QPoint& target) {
    const QPoint shift = block_shift(layer, target);
    const std::vector<long long> selected = m_screens.indices();
    if (move_layers(m_global, selected, shift.x(), shift.y())) edited("Move " + what(selected));
}

void selection_tool::draw(nano2d::context* c) {
    const float z = m_canvas.get_effective_zoom();
    QPoint shift;
    const pointer<app_layer> current = m_global.current_layer();
    if (current && MainImpact::isPosValid(m_canvas.move_delta) && moves_with(*current))
        shift = block_shift(*current, m_canvas.move_target(*current));
    for (long long i : m_screens.indices()) {
        const raster_rect r = rect_of(*m_global.get_layer(i));
        const float X = float(r.x + shift.x()) * z, Y = float(r.y + shift.y()) * z;
        const float W = float(r.w) * z, H = float(r.h) * z;
        c->begin_path();
        c->stroke_color(mark_color);
        c->stroke_width(2.0f);
        c->rectangle(X, Y, W, H);
        c->stroke();
        c->begin_path();
        for (float hx : {X, X + W / 2, X + W})
            for (float hy : {Y, Y + H / 2, Y + H})
                if (hx != X + W / 2 || hy != Y + H / 2)
                    c->rectangle(hx - handle_size / 2, hy - handle_size / 2, handle_size,
                                 handle_size);
        c->fill_color(mark_color);
        c->fill();
    }
    if (!m_drawing) return;
    const float l = float(std::min(m_from.x(), m_to.x())) * z;
    const float t = float(std::min(m_from.y(), m_to.y())) * z;
    const float w = float(std::abs(m_to.x() - m_from.x())) * z;
    const float h = float(std::abs(m_to.y() - m_from.y())) * z;
    c->begin_path();
    c->rectangle(l, t, w, h);
    c->fill_color(rectangle_fill);
    c->fill();
    c->stroke_color(mark_color);
    c->stroke_width(1.0f);
    c->stroke();
}

// ---------------------------------------------------------------- keys

bool selection_tool::key(const QKeyEvent& event, const std::string& name, std::uint64_t held) {
    const int k = event.key();
    const bool arrow =
        k == Qt::Key_Left || k == Qt::Key_Right || k == Qt::Key_Up || k == Qt::Key_Down;
    // A held arrow nudges on; a held command key runs once.
    if (event.isAutoRepeat() && !arrow) return false;
    if (held == keys::group_b && (name == "A" || name == "C" || name == "V")) {
        if (name == "A") select_all();
        if (name == "C") copy();
        if (name == "V") paste();
        return true;
    }
    // The rest act on a selection; without one the keys are what they were
    // (Ctrl+D clones the current layer).
    if (m_screens.empty()) return false;
    if (held == keys::group_b && name == "D") {
        duplicate();
        return true;
    }
    if (held == 0 && k == Qt::Key_Escape) {
        clear();
        return true;
    }
    if (held == 0 && (k == Qt::Key_Delete || k == Qt::Key_Backspace)) {
        remove();
        return true;
    }
    if (!arrow || (held != 0 && held != keys::group_a && held != keys::group_c)) return false;
    long long step_x = held == keys::group_a ? 10 : 1, step_y = step_x;
    if (held == keys::group_c) {
        // One cabinet of the current screen, or of the first in the list.
        pointer<boxes_layer> unit = m_global.current_boxes_layer();
        if (!unit || !m_screens.contains(m_global.get_current_layer_id()))
            unit = std::dynamic_pointer_cast<boxes_layer>(
                m_global.get_layer(m_screens.list_order().front()));
        step_x = unit->Width;
        step_y = unit->Height;
    }
    // From behind the wall, Left moves a screen to the left as seen.
    if (m_canvas.shows_rear()) step_x = -step_x;
    const long long dx = k == Qt::Key_Left ? -step_x : k == Qt::Key_Right ? step_x : 0;
    const long long dy = k == Qt::Key_Up ? -step_y : k == Qt::Key_Down ? step_y : 0;
    nudge(dx, dy);
    return true;
}

// ---------------------------------------------------------------- commands

void selection_tool::changed() {
    m_canvas.update();
    // The rows of the list show the selection.
    m_global.host().post_main_screen_layout();
    if (m_on_change) m_on_change();
}

void selection_tool::edited(const string& step) {
    // One step, now: keys pressed in quick succession each make their own.
    if (MainScreen* screen = MainScreen::of(&m_canvas))
        if (UndoController* undo = screen->undo_controller()) {
            undo->name_next(step);
            undo->record();
        }
    m_global.host().reload_all(m_global, true);
    changed();
}

string selection_tool::what(const std::vector<long long>& indices) const {
    if (indices.size() == 1)
        if (const pointer<app_layer> layer = m_global.get_layer(indices.front()))
            return layer->get_name();
    return std::to_string(indices.size()) + " Screens";
}

void selection_tool::toggle(long long index) {
    m_screens.toggle(index);
    changed();
}

void selection_tool::select_all() {
    m_screens.set(visible_screens_in_list_order(m_global));
    changed();
}

void selection_tool::clear() {
    m_screens.clear();
    changed();
}

void selection_tool::nudge(long long dx, long long dy) {
    const std::vector<long long> selected = m_screens.indices();
    if (move_layers(m_global, selected, dx, dy)) edited("Move " + what(selected));
}

void selection_tool::arrange(arrange_command command) {
    const std::vector<long long> selected = m_screens.indices();
    if (selected.empty())
        return say("No screens are selected: Alt+click them on the canvas, Ctrl+click them in "
                   "the layer list, or press Ctrl+A.");
    bool moved = false;
    switch (command) {
    case arrange_command::distribute_horizontally:
    case arrange_command::distribute_vertically:
        if (selected.size() < 3) return say("Distributing takes three or more selected screens.");
        moved = distribute_layers(m_global, selected,
                                  command == arrange_command::distribute_horizontally);
        break;
    case arrange_command::pack: {
        const string refused = pack_layers(m_global, m_screens.list_order(), pack_gap);
        if (!refused.empty())
            return say("Pack: " + QString::fromStdString(refused) + "; nothing was moved.");
        moved = true;
        break;
    }
    default:
        // The six alignments come first, in the order of their own names.
        static_assert(int(arrange_command::align_vertical_centres) ==
                      int(alignment::vertical_centres));
        moved = align_layers(m_global, selected, alignment(int(command)));
    }
    if (moved) edited(arrange_caption(command));
}

void selection_tool::copy() {
    const std::vector<long long> selected = m_screens.indices();
    if (selected.empty()) return say("No screens are selected to copy.");
    QGuiApplication::clipboard()->setText(QString::fromStdString(screens_text(m_global, selected)));
    say(QString("Copied %1 to the clipboard.").arg(QString::fromStdString(what(selected))));
}

void selection_tool::paste() {
    const pointer_array<app_layer> screens =
        screens_from_text(QGuiApplication::clipboard()->text().toStdString());
    if (screens.empty())
        return say("The clipboard holds no Tesserine screens: nothing was pasted.");
    const raster_rect block = bounds_of(screens);
    const std::optional<QPoint> place = first_free_place(m_global, block.w, block.h);
    const std::vector<long long> added = add_screens(
        m_global, screens, place ? place->x() - block.x : 0, place ? place->y() - block.y : 0);
    if (added.empty())
        return say(
            QString("A project holds at most %1 layers: nothing was pasted.").arg(max_layers));
    m_screens.set(added);
    edited("Paste " + what(added));
    say(place ? QString("Pasted %1.").arg(QString::fromStdString(what(added)))
              : QString("The raster has no free place for %1: pasted where copied.")
                    .arg(QString::fromStdString(what(added))));
}

void selection_tool::duplicate() {
    const std::vector<long long> selected = m_screens.indices();
    // Copies made as a paste makes them, beside the block of the originals.
    const std::vector<long long> added =
        add_screens(m_global, screens_from_text(screens_text(m_global, selected)),
                    bounds_of(m_global, selected).w, 0);
    if (added.empty())
        return say(
            QString("A project holds at most %1 layers: nothing was duplicated.").arg(max_layers));
    m_screens.set(added);
    edited("Duplicate " + what(selected));
}

void selection_tool::remove() {
    const std::vector<long long> selected = m_screens.indices();
    const string step = "Delete " + what(selected);
    delete_layers(m_global, selected);
    m_screens.clear();
    edited(step);
}

void selection_tool::say(const QString& text) {
    // Over the palettes, which lie over the canvas.
    QWidget* host = m_canvas.parentWidget() ? m_canvas.parentWidget() : &m_canvas;
    if (!m_status) {
        m_status = new QLabel(host);
        m_status->setObjectName("status_line");
        m_status->setFont(look::sans(14));
        m_status->setAutoFillBackground(true);
        QPalette palette = m_status->palette();
        palette.setColor(QPalette::Window, look::menu_strip);
        m_status->setPalette(palette);
        look::set_text_color(m_status, look::title_text);
        m_status->setContentsMargins(8, 4, 8, 4);
        m_status_timer = new QTimer(m_status);
        m_status_timer->setSingleShot(true);
        m_status_timer->setInterval(6000);
        QObject::connect(m_status_timer, &QTimer::timeout, m_status, &QLabel::hide);
    }
    m_status->setText(text);
    m_status->adjustSize();
    const QPoint corner = m_canvas.mapTo(host, QPoint(0, m_canvas.height()));
    m_status->move(corner.x() + 8, corner.y() - m_status->height() - 8);
    m_status->show();
    m_status->raise();
    m_status_timer->start();
}

} // namespace Vantora_TesserinePro
