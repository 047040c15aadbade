#include "app/main_screen.h"

#include "app/application.h"
#include "app/palette_places.h"
#include "app/recent_files.h"
#include "app/recovery_controller.h"
#include "app/settings_file.h"
#include "app/start_steps.h"
#include "app/undo_controller.h"
#include "canvas/live_output.h"
#include "canvas/live_show.h"
#include "canvas/main_impact.h"
#include "core/diagnostics.h"
#include "core/keys.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "panels/about.h"
#include "panels/add_layer_context_menu.h"
#include "panels/look.h"
#include "panels/right_panel.h"
#include "panels/settings_base_window.h"
#include "panels/settings_boxes.h"
#include "panels/settings_boxes_colors.h"
#include "panels/settings_data_diagram.h"
#include "panels/settings_labels.h"
#include "panels/settings_power.h"
#include "panels/settings_raster_label.h"
#include "panels/top_menu.h"
#include "panels/top_panel.h"
#include "panels/widgets/small_widgets.h"

#include <cctype>
#include <cstring>

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonObject>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QUrl>

namespace Vantora_TesserinePro {

namespace {

// The modifier key a Qt key stands for; 0 for any other key. Qt reports
// Command as Control on macOS, and the Control key there as Meta.
std::uint64_t modifier_bit(int key) {
    switch (key) {
    case Qt::Key_Shift:
        return keys::shift_left;
    case Qt::Key_Control:
        return keys::control_left;
    case Qt::Key_Alt:
        return keys::alt_left;
#ifdef Q_OS_MACOS
    case Qt::Key_Meta:
        return keys::command;
#endif
    default:
        return 0;
    }
}

// The key at a place of the keyboard, by its Linux key code (X and Wayland
// both give the kernel's code plus 8): the digit row and the letters of a
// US keyboard. Shift or the layout may make such a key type something
// else ("$", "&", a Cyrillic letter); shortcuts name the key.
std::string key_at(quint32 code) {
    static const char* const rows[] = {"1234567890", "QWERTYUIOP", "ASDFGHJKL", "ZXCVBNM"};
    static const quint32 row_starts[] = {10, 24, 38, 52};
    for (int r = 0; r < 4; ++r)
        if (code >= row_starts[r] && code - row_starts[r] < std::strlen(rows[r]))
            return std::string(1, rows[r][code - row_starts[r]]);
    return {};
}

// The name a pressed key gives a shortcut: the Latin letter or the digit
// of its key whatever Shift and the layout type, "+" for the key of "+"
// and "=" (and the keypad's), "-" for that of "-" and "_"; else its text,
// else Qt's name. The digit row names digits even where the layout types
// "&" or "-" on it unshifted (French), so that Ctrl+6 never deletes.
std::string key_name(const QKeyEvent& event) {
    const int key = event.key();
    if (modifier_bit(key) || key == Qt::Key_unknown) return {};
    if (key >= Qt::Key_A && key <= Qt::Key_Z) return std::string(1, char('A' + (key - Qt::Key_A)));
    const bool keypad = event.modifiers() & Qt::KeypadModifier;
    const std::string placed = keypad ? std::string() : key_at(event.nativeScanCode());
    if (!placed.empty() && std::isdigit((unsigned char)placed[0])) return placed;
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return std::string(1, char('0' + (key - Qt::Key_0)));
    if (key == Qt::Key_Plus || key == Qt::Key_Equal) return "+";
    if (key == Qt::Key_Minus || key == Qt::Key_Underscore) return "-";
    if (!placed.empty()) return placed;
    const QString text = event.text();
    if (!text.isEmpty() && text.at(0).isPrint()) return text.toUpper().toStdString();
    return QKeySequence(key).toString().toStdString();
}

// Whether the focus is in a field that takes typed text.
bool typing_text() {
    QWidget* w = QApplication::focusWidget();
    if (!w) return false;
    if (auto* box = qobject_cast<QComboBox*>(w)) return box->isEditable();
    return qobject_cast<QLineEdit*>(w) || qobject_cast<QAbstractSpinBox*>(w) ||
           qobject_cast<QTextEdit*>(w) || qobject_cast<QPlainTextEdit*>(w);
}

// Qt's name filter of a dialog entry: open dialogs give (caption,
// pattern), save dialogs mostly (extension, caption).
QString name_filter(const file::file_dialog_filter& f) {
    const QString first = QString::fromStdString(f.first);
    const QString second = QString::fromStdString(f.second);
    if (second.startsWith('*')) return first + " (" + second + ")";
    return second + " (*." + first + ")";
}

} // namespace

MainScreen::MainScreen(QWidget* parent) : QWidget(parent) {
    setObjectName("MainScreen");
    setWindowTitle("Tesserine LED Pro");
    setFont(look::sans(14));
    workspace = std::make_shared<Global>(this);
    workspace->set_is_retina(devicePixelRatioF() >= 2.0);
    // Not quit(): that asks every window to close, and this one would ask
    // the question again.
    m_quit = [] { QCoreApplication::exit(0); };
    // Projects and pictures dropped from a file manager.
    accept_file_drops(*this);
}

MainScreen::~MainScreen() {
    // The panels go before the workspace they read.
    qApp->removeEventFilter(this);
    delete m_recovery;
    m_recovery = nullptr;
    delete m_undo;
    m_undo = nullptr;
    const QList<QWidget*> children = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(children);
    m_main_impact = nullptr;
    m_right_panel = nullptr;
    m_top_menu = nullptr;
    m_top_panel = nullptr;
    m_palettes.clear();
    workspace->set_host(nullptr);
}

MainScreen* MainScreen::of(QWidget* widget) {
    for (QWidget* w = widget; w; w = w->parentWidget())
        if (auto* screen = dynamic_cast<MainScreen*>(w)) return screen;
    return nullptr;
}

void MainScreen::create_main_screen() {
    Global* g = workspace.get();
    const auto save_layout = [this] { settings_save_layout(); };
    m_main_impact = new MainImpact(g, this);
    m_about = new About(this, g);
    m_about->move(300, 300);
    m_about->hide();
    m_palettes.push_back(m_about);
    m_settings_boxes = new SettingsBoxes(this, g);
    m_settings_labels = new SettingsLabels(this, g);
    m_settings_power = new SettingsPower(this, g);
    m_settings_data_diagram = new SettingsDataDiagram(this, g);
    m_settings_raster_label = new SettingsRasterLabel(this, g);
    for (SettingsBaseWindow* p :
         {(SettingsBaseWindow*)m_settings_boxes, (SettingsBaseWindow*)m_settings_labels,
          (SettingsBaseWindow*)m_settings_power, (SettingsBaseWindow*)m_settings_data_diagram,
          (SettingsBaseWindow*)m_settings_raster_label}) {
        m_palettes.push_back(p);
        p->set_moved_callback(save_layout);
    }
    m_top_panel = new TopPanel(this, g);
    m_top_menu = new TopMenu(this, g);
    m_settings_boxes_colors = new SettingsBoxesColors(this, g);
    m_palettes.push_back(m_settings_boxes_colors);
    m_settings_boxes_colors->set_moved_callback(save_layout);
    m_right_panel = new RightPanel(this, g);
    m_add_layer_context_menu = new AddLayerContextMenu(this, g);
    m_add_layer_context_menu->move(1, 1);
    m_add_layer_context_menu->hide();

    settings_load_layout();
    resize_elements_to_window_size(width(), height());
    workspace->load_default_presets();
    workspace->load_processor_models();
    // The lists fill at the first turn of the event loop.
    post_layout();
    // Shortcuts and Tab work wherever the focus is in this window.
    qApp->installEventFilter(this);
    m_undo = new UndoController(this, *workspace);
    m_recovery = new RecoveryController(this, *workspace, *m_undo);
    // Once the window shows: the frame, the menu's drop-downs, with the Edit
    // entries named, and the preset list, a row and a picture for each of a
    // hundred presets.
    m_main_impact->set_frame_held(true);
    start_steps::after_first_paint(window(), [this] {
        m_main_impact->set_frame_held(false);
        m_main_impact->repaint();
        start_steps::trace("frame-shown");
    });
    start_steps::after_first_paint(window(), [this] {
        for (std::size_t i = 0; i < m_top_menu->section_texts().size(); ++i)
            m_top_menu->createSubmenu((long long)i);
        m_undo->update_window();
    });
    start_steps::after_first_paint(window(), [this] {
        m_presets_shown = true;
        m_right_panel->syncFromGlobalPresets();
    });
    show();
}

// ---------------------------------------------------------------- layout file

namespace {
// The key names of the layout file, in the order of its palettes.
const char* const layout_names[] = {"boxes", "labels", "colors", "power", "snake", "raster"};
} // namespace

file::path MainScreen::settings_layout_get_default_path() const {
    return workspace->getFolderToSaveData() / "settings_layout.network_payload";
}

bool MainScreen::settings_load_layout() {
    if (settings_load_layout(settings_layout_get_default_path().c_str())) return true;
    settings_reset_layout();
    return false;
}

std::array<SettingsBaseWindow*, 6> MainScreen::layout_palettes() const {
    return {m_settings_boxes, m_settings_labels,       m_settings_boxes_colors,
            m_settings_power, m_settings_data_diagram, m_settings_raster_label};
}

bool MainScreen::settings_load_layout(const char* path) {
    QJsonObject layout;
    if (!read_settings_object(file::path(path), layout)) return false;
    const auto palettes = layout_palettes();
    for (std::size_t i = 0; i < palettes.size(); ++i) {
        const QString name = layout_names[i];
        SettingsBaseWindow* p = palettes[i];
        if (!p) continue;
        // A missing key gives 0, as the palette's place.
        p->move(layout.value(name + "_x").toInt(0), layout.value(name + "_y").toInt(0));
        p->set_stored_visible(layout.value(name + "_visible").toBool(false));
        // A place saved in a larger window may lie outside this one.
        keep_within_reach(p);
    }
    return true;
}

void MainScreen::settings_save_layout() {
    settings_save_layout(settings_layout_get_default_path().c_str());
}

void MainScreen::settings_save_layout(const char* path) {
    const auto palettes = layout_palettes();
    QJsonObject layout;
    for (std::size_t i = 0; i < palettes.size(); ++i) {
        const SettingsBaseWindow* p = palettes[i];
        if (!p) continue;
        const QString name = layout_names[i];
        layout[name + "_x"] = p->x();
        layout[name + "_y"] = p->y();
        layout[name + "_visible"] = p->stored_visible();
    }
    write_settings_object(file::path(path), layout);
}

void MainScreen::settings_reset_layout() {
    // Places that follow the window's size and our palettes' sizes: none
    // covers another, and what does not fit starts hidden.
    const auto palettes = layout_palettes();
    palette_places::sizes sizes;
    for (std::size_t i = 0; i < palettes.size(); ++i)
        sizes[i] = palettes[i] ? palettes[i]->sizeHint() : QSize();
    const palette_places::places places = palette_places::first_start(size(), sizes);
    for (std::size_t i = 0; i < palettes.size(); ++i)
        if (SettingsBaseWindow* p = palettes[i]) {
            p->move(places[i].at);
            p->set_stored_visible(places[i].shown);
            keep_within_reach(p);
        }
}

void MainScreen::keep_within_reach(QWidget* palette) {
    const QPoint place = palette_places::reachable(palette->geometry(), size());
    if (place != palette->pos()) palette->move(place);
}

// ---------------------------------------------------------------- refreshing

void MainScreen::reload_all(bool reload) {
    if (in_reload) return;
    in_reload = true;
    if (!reload) {
        in_reload = false;
        return;
    }
    if (const pointer<boxes_layer> layer = workspace->current_boxes_layer()) {
        SettingsFromLayer* refilled[] = {
            m_settings_boxes,  m_settings_boxes_colors, m_settings_data_diagram, m_top_panel,
            m_settings_labels, m_settings_power,        m_settings_raster_label};
        for (SettingsFromLayer* p : refilled)
            if (p) p->get_settings_from_layer(layer);
    }
    if (m_top_panel) {
        m_top_panel->updateCounts(workspace->get_layers_count(), workspace->get_presets_count());
        m_top_panel->updatePaperNumbersVisual();
    }
    lists_need_sync = true;
    post_layout();
    redraw_panels();
    in_reload = false;
}

void MainScreen::post_layout() {
    if (m_layout_posted) return;
    m_layout_posted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_layout_posted = false;
            perform_layout();
        },
        Qt::QueuedConnection);
}

void MainScreen::perform_layout() {
    if (in_layout) return;
    in_layout = true;
    if (lists_need_sync && m_right_panel) {
        lists_need_sync = false;
        m_right_panel->syncFromGlobalLayers();
        if (m_presets_shown) m_right_panel->syncFromGlobalPresets();
    }
    in_layout = false;
}

void MainScreen::redraw_panels() {
    for (QWidget* w : std::initializer_list<QWidget*>{m_top_menu, m_top_panel, m_right_panel})
        if (w) w->update();
    for (SettingsBaseWindow* p : m_palettes)
        p->update();
}

void MainScreen::update_settings_visibility() {
    const pointer<app_layer> current = workspace->current_layer();
    const bool screen_or_none = !current || current->get_layer_type() == e_layer_boxes;
    // Pictures have no palettes: the aspect box of the top panel stands in.
    for (SettingsBaseWindow* p : m_palettes)
        p->setVisible(screen_or_none && p->stored_visible());
    if (m_top_panel) m_top_panel->showHideAspectRatio(!screen_or_none);
    reload_all(true);
}

void MainScreen::setCurrentLayerTo(long long index, bool full) {
    workspace->set_current_layer_index(index);
    if (full)
        update_settings_visibility();
    else if (m_main_impact)
        m_main_impact->update();
}

bool MainScreen::isOnlyCurrent() const {
    return m_right_panel && m_right_panel->draw_current_only();
}

void MainScreen::resize_elements_to_window_size(int width, int height) {
    const struct {
        QWidget* widget;
        QRect place;
        const char* unchanged;
    } places[] = {
        {m_top_menu, QRect(QPoint(0, 0), QPoint(width - 1, 19)),
         "top menu replacement redraw optimized out"},
        {m_top_panel, QRect(QPoint(0, 20), QPoint(width - 1, 59)),
         "top panel replacement redraw optimized out"},
        {m_right_panel,
         QRect(QPoint(width - palette_places::lists_width, palette_places::strips_bottom),
               QPoint(width - 1, height - 1)),
         "right panel replacement redraw optimized out"},
        {m_main_impact, QRect(QPoint(0, palette_places::canvas_top), QPoint(width - 1, height - 1)),
         "main impact replacement redraw optimized out"},
    };
    for (const auto& p : places) {
        if (!p.widget) continue;
        if (p.widget->geometry() == p.place) {
            output_debug_string(p.unchanged);
            continue;
        }
        p.widget->setGeometry(p.place);
    }
}

void MainScreen::resizeEvent(QResizeEvent*) {
    resize_elements_to_window_size(width(), height());
    // A smaller window must not swallow a palette; the layout file keeps
    // the places the user gave.
    for (SettingsBaseWindow* p : m_palettes)
        keep_within_reach(p);
}

void MainScreen::paintEvent(QPaintEvent* event) {
    QPainter p(this);
    p.fillRect(event->rect(), look::screen_background);
}

// ---------------------------------------------------------------- keys

bool MainScreen::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::ApplicationDeactivate) {
        // Keys released elsewhere never reach us.
        workspace->set_keyboard_modifiers(0);
        return false;
    }
    if (type == QEvent::MouseButtonPress) {
        auto* w = qobject_cast<QWidget*>(watched);
        if (w && w->window() == window() && (w == this || isAncestorOf(w))) {
            m_last_click =
                mapFromGlobal(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
            on_mouse_down(w);
        }
        return false;
    }
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease) return false;
    auto* target = qobject_cast<QWidget*>(watched);
    if (!target || target->window() != window()) return false;
    // A key event travels from the focus widget up its parents: take it at
    // its first stop only.
    QWidget* first = QApplication::focusWidget() ? QApplication::focusWidget() : window();
    if (target != first) return false;
    return keyboard_event(static_cast<QKeyEvent*>(event));
}

bool MainScreen::keyboard_event(QKeyEvent* event) {
    const bool release = event->type() == QEvent::KeyRelease;
    // A held key repeats as release and press pairs; only real ones count.
    if (event->isAutoRepeat() && release) return false;
    const bool press = !release && !event->isAutoRepeat();

    std::uint64_t held = workspace->get_keyboard_modifiers();
    if (const std::uint64_t bit = modifier_bit(event->key())) {
        const std::uint64_t group = keys::group_of(bit);
        held = release ? (held & ~group) : (held | group);
        workspace->set_keyboard_modifiers(held);
        if (release && m_main_impact) {
            // Letting go of the group drops a move or resize unapplied.
            const pointer<app_layer> current = workspace->current_layer();
            const enum_layer type = current ? current->get_layer_type() : enum_layer(0);
            if ((group == keys::group_a && type == e_layer_boxes) ||
                (group == keys::group_b && type == e_layer_image))
                m_main_impact->cancel_drag();
        }
        // The layer outline on the canvas depends on the groups held.
        if (m_main_impact) m_main_impact->update();
        return false;
    }
    // The modifiers of any other key are the truth: a modal dialog may
    // have taken the release of a modifier, which would then stay held.
    held = modifier_groups(event->modifiers());
    workspace->set_keyboard_modifiers(held);
    if (event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) {
        if (!release) {
            std::uint64_t groups = held;
            if (event->key() == Qt::Key_Backtab) groups |= keys::group_a;
            on_skip_focus(groups);
        }
        return true;
    }
    // While the wall identifies ports (circuits), Left and Right step it.
    if (press && held == 0 && m_main_impact && !typing_text() &&
        (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) &&
        !(m_top_menu && m_top_menu->is_showing_any_submenu()) &&
        live_show_key(m_main_impact->show(), event->key()))
        return true;
    // The selected screens take their keys first (held arrows repeat; with
    // a selection Ctrl+D duplicates it); a text field and an open menu keep
    // theirs.
    if (!release && m_main_impact && !typing_text() &&
        !(m_top_menu && m_top_menu->is_showing_any_submenu()) &&
        m_main_impact->selection().key(*event, key_name(*event), held))
        return true;
    if (!press) return false;
    const std::string name = key_name(*event);
    if (name == " ") {
        // A space typed into a name or a label is text, not a new run.
        if (m_main_impact && !typing_text()) m_main_impact->on_space_key();
        return false;
    }
    if (!name.empty()) {
        m_last_key_string = keys::string_key(name, held);
        if (m_top_menu && m_top_menu->keytrigger(m_last_key_string)) return true;
        // "+" takes Shift on many layouts: Ctrl+Shift+= is Ctrl++.
        if (name == "+" && (held & keys::group_a) && m_top_menu) {
            const std::string unshifted = keys::string_key(name, held & ~keys::group_a);
            if (m_top_menu->keytrigger(unshifted)) {
                m_last_key_string = unshifted;
                return true;
            }
        }
    }
    if (event->key() == Qt::Key_Escape && m_top_menu) m_top_menu->fold();
    return false;
}

namespace {
// Whether the palette (or panel) a widget belongs to shows.
bool panel_shows(QWidget* widget) {
    for (QWidget* w = widget->parentWidget(); w; w = w->parentWidget())
        if (auto* from_layer = dynamic_cast<SettingsFromLayer*>(w)) {
            if (auto* palette = dynamic_cast<SettingsBaseWindow*>(from_layer))
                return palette->palette_visible();
            return w->isVisible();
        }
    return true;
}
} // namespace

bool MainScreen::on_skip_focus(std::uint64_t modifiers) {
    const bool backward = (modifiers & keys::group_a) != 0;
    const long long n = (long long)m_tab_order.size();
    if (n == 0) return false;
    const long long step = backward ? -1 : 1;
    long long at = -1;
    for (long long k = 0; k < n; ++k) {
        const long long i = backward ? n - 1 - k : k;
        if (m_tab_order[std::size_t(i)]->hasFocus()) {
            at = i;
            break;
        }
    }
    if (at < 0) {
        set_focus_to(m_tab_order[std::size_t(backward ? n - 1 : 0)]);
        return false;
    }
    m_tab_order[std::size_t(at)]->clearFocus();
    // At most one pass round the chain, to a field that shows in a shown
    // palette; with none, no field keeps the focus.
    for (long long k = 1; k < n; ++k) {
        QWidget* w = m_tab_order[std::size_t(((at + step * k) % n + n) % n)];
        if (w->isVisible() && panel_shows(w)) {
            set_focus_to(w);
            break;
        }
    }
    return true;
}

void MainScreen::set_palettes_shown(bool shown) {
    workspace->palettes_shown = shown;
    if (!shown) {
        m_stepped_aside.clear();
        for (SettingsBaseWindow* p : m_palettes)
            if (p->isVisible()) {
                m_stepped_aside.push_back(p);
                p->hide();
            }
        return;
    }
    for (SettingsBaseWindow* p : m_stepped_aside)
        p->show();
    m_stepped_aside.clear();
}

void MainScreen::set_focus_to(QWidget* widget) {
    if (!widget) return;
    widget->setFocus(Qt::TabFocusReason);
    // A text field reached this way has all its text selected, so typing
    // replaces it.
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) edit->selectAll();
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(widget)) spin->selectAll();
}

// ---------------------------------------------------------------- commands

void MainScreen::on_mouse_down(QWidget* widget) {
    if (!m_top_menu || !m_top_menu->is_showing_any_submenu()) return;
    // A press in a drop-down is its entry's business; anywhere else folds.
    for (QWidget* w = widget; w; w = w->parentWidget())
        if (dynamic_cast<TopMenuSubmenu*>(w)) return;
    m_top_menu->fold();
}

void MainScreen::foldTopMenu() {
    if (m_top_menu) m_top_menu->fold();
}

void MainScreen::on_close() {
    if (m_quit_box) return;
    if (m_undo) {
        // Unsaved work gets its own question instead.
        m_undo->record();
        if (m_undo->is_modified())
            return m_undo->ask_before_discarding([this] {
                // Saved, or thrown away on purpose: nothing to recover.
                if (m_recovery) m_recovery->discard();
                if (m_quit) m_quit();
            });
    }
    QMessageBox* box =
        window_modal_box(QMessageBox::Warning, "Quit", "Are you sure ?", this, "quit");
    QPushButton* yes = box->addButton("Yes", QMessageBox::YesRole);
    QPushButton* no = box->addButton("No", QMessageBox::NoRole);
    // Return answers yes, Escape no.
    box->setDefaultButton(yes);
    box->setEscapeButton(no);
    connect(box, &QMessageBox::finished, this, [this, box, yes] {
        m_quit_box = nullptr;
        if (box->clickedButton() == yes && m_quit) m_quit();
    });
    m_quit_box = box;
    box->open();
}

void MainScreen::showScreenInfo() {
    m_settings_boxes->toggle_stored_visibility();
}
void MainScreen::showLabelsInfo() {
    m_settings_labels->toggle_stored_visibility();
}
void MainScreen::showDataTools() {
    m_settings_data_diagram->toggle_stored_visibility();
}
void MainScreen::showPowerTools() {
    m_settings_power->toggle_stored_visibility();
}
void MainScreen::showBoxesColors() {
    m_settings_boxes_colors->toggle_stored_visibility();
}
void MainScreen::showRasterLabelTool() {
    m_settings_raster_label->toggle_stored_visibility();
}
void MainScreen::showAbout() {
    // Its state is kept nowhere. It opens whole inside the window where the
    // window is large enough: its first place runs past a laptop's bottom.
    m_about->setVisible(!m_about->isVisible());
    if (!m_about->isVisible()) return;
    const QRect below_strips(0, palette_places::canvas_top, width(),
                             height() - palette_places::canvas_top);
    m_about->move(palette_places::inside(m_about->geometry(), below_strips));
    m_about->raise();
}

void MainScreen::openUpdateLink() {
    QDesktopServices::openUrl(QUrl(web_address));
}
void MainScreen::openTutorialsLink() {
    QDesktopServices::openUrl(QUrl(web_address));
}
void MainScreen::openHelpLink() {
    QDesktopServices::openUrl(QUrl(web_address));
}

void MainScreen::showAddLayerContextMenu() {
    // Above the last click, so that the menu opens over the "+" pressed.
    m_add_layer_context_menu->setGeometry(m_last_click.x(), m_last_click.y() - 90, 100, 90);
    m_add_layer_context_menu->show();
    m_add_layer_context_menu->raise();
    m_add_layer_context_menu->update();
}

// ---------------------------------------------------------------- host

void MainScreen::outside_paint(std::function<void()> f) {
    if (m_building == 0) {
        f();
        return;
    }
    m_after_paint.push_back(std::move(f));
}

void MainScreen::frame_build_begins() {
    ++m_building;
}

void MainScreen::frame_build_ends() {
    if (--m_building > 0 || m_after_paint.empty() || m_after_paint_posted) return;
    // Still inside the paint: the queued calls run when it is over.
    m_after_paint_posted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_after_paint_posted = false;
            std::vector<std::function<void()>> calls;
            calls.swap(m_after_paint);
            for (auto& call : calls)
                call();
        },
        Qt::QueuedConnection);
}

void MainScreen::set_current_layer_to(Global&, long long index, bool update_settings) {
    setCurrentLayerTo(index, update_settings);
}

void MainScreen::reload_all(Global&, bool reload) {
    outside_paint([this, reload] { reload_all(reload); });
}

void MainScreen::update_amperes() {
    if (m_settings_power) m_settings_power->update_amperes();
}

void MainScreen::raster_label_settings_from_raster(Global&) {
    if (m_settings_raster_label) m_settings_raster_label->get_settings_from_raster();
}

void MainScreen::raster_label_settings_to_palette(Global&) {
    outside_paint([this] {
        if (m_settings_raster_label)
            m_settings_raster_label->get_settings_from_layer(workspace->current_boxes_layer());
    });
}

void MainScreen::layer_row_changed(const app_layer& layer) {
    if (m_right_panel) m_right_panel->layer_changed(layer);
}

// Redraw requests made while a frame is built are dropped: the build is
// itself the paint they ask for, and a paint must not start another.
void MainScreen::post_canvas_redraw() {
    // Every edit comes through here; the port line follows it.
    if (m_settings_data_diagram) m_settings_data_diagram->post_follow_up();
    if (m_settings_power) m_settings_power->post_follow_up();
    if (m_building == 0 && m_main_impact) m_main_impact->update();
}

void MainScreen::post_live_output_redraw() {
    if (m_building != 0) return;
    if (application* app = application::instance())
        if (live_output_window* live = app->live_output_window_pointer.get())
            if (live->isVisible()) live->canvas()->update();
}

void MainScreen::post_main_window_redraw() {
    if (m_building != 0) return;
    update();
    // The canvas's paint is the one that builds the frame and writes a
    // requested export; a repaint of this widget alone may leave it be.
    if (m_main_impact) m_main_impact->update();
}

void MainScreen::post_main_screen_layout() {
    // A palette asks for this after an edit the rows show (sizes, counts):
    // the lists follow at the same once-per-frame sync as after a reload.
    lists_need_sync = true;
    post_layout();
    if (m_building == 0) update();
}

void MainScreen::show_error(const std::string& message) {
    outside_paint([this, message] {
        const QString text = QString::fromStdString(message);
        // The same message still waiting to be read is not opened again.
        for (QMessageBox* open : findChildren<QMessageBox*>("error"))
            if (open->isVisible() && open->text() == text) return;
        window_modal_box(QMessageBox::Warning, "Error", text, this, "error", QMessageBox::Ok)
            ->open();
    });
}

void MainScreen::show_warning(const std::string& title, const std::string& message) {
    outside_paint([this, title, message] {
        window_modal_box(QMessageBox::Warning, QString::fromStdString(title),
                         QString::fromStdString(message), this, "warning", QMessageBox::Ok)
            ->open();
    });
}

void MainScreen::document_saved(Global&) {
    if (m_undo) m_undo->record();
    if (m_recovery) m_recovery->discard();
}

void MainScreen::pick_single_file(const std::vector<file::file_dialog_filter>& filters,
                                  const pick_callback& callback, bool save,
                                  const file::path& suggested) {
    auto* dialog = new QFileDialog(this);
    dialog->setObjectName(save ? "save_dialog" : "open_dialog");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    QStringList names;
    for (const auto& f : filters)
        names << name_filter(f);
    dialog->setNameFilters(names);
    // Each kind of file opens where it was last taken from or put.
    const QString kind = (save ? "save " : "open ") + names.join(";;");
    const QString folder = recent_files::of(*this).folder_for(kind);
    if (!folder.isEmpty() && QFileInfo(folder).isDir()) dialog->setDirectory(folder);
    if (!suggested.empty()) {
        const QFileInfo start(QString::fromStdString(suggested.string()));
        dialog->setDirectory(start.absolutePath());
        dialog->selectFile(start.fileName());
    }
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, callback, kind](const QString& chosen) {
                recent_files::of(*this).set_folder_for(kind, QFileInfo(chosen).absolutePath());
                // A file the readers refuse must not end the program from inside
                // Qt's event loop: say so and keep the document as it is.
                try {
                    callback(file::path(chosen.toStdString()));
                } catch (const std::exception& e) {
                    show_error("The file " + chosen.toStdString() + " cannot be used: " + e.what());
                    return;
                }
                // A project opened or saved (".tsrx" is added when the name has no
                // extension) goes on the recent list.
                const QFileInfo picked(chosen);
                const QString project = picked.suffix().isEmpty() ? chosen + ".tsrx" : chosen;
                if (QFileInfo(project).suffix() == "tsrx" && QFileInfo(project).isFile())
                    recent_files::of(*this).add_project(project);
            });
    // A cancelled dialog answers nothing: the command does nothing.
    dialog->open();
}

} // namespace Vantora_TesserinePro
