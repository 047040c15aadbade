#include "panels/top_menu.h"

#include "app/main_screen.h"
#include "app/recent_files.h"
#include "app/undo_controller.h"
#include "canvas/live_output.h"
#include "canvas/main_impact.h"
#include "core/keys.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"
#include "panels/arrange_palette.h"
#include "panels/look.h"

#include <QCursor>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace Vantora_TesserinePro {

namespace {

const QColor bar_normal(0x26, 0x26, 0x26);
const QColor bar_hover(0x3f, 0x3f, 0x3f);
const QColor bar_selected(0x7f, 0x7f, 0x7f);
const QColor title_color(0xbf, 0xbf, 0xbf);

std::string upper(std::string s) {
    for (char& c : s)
        c = char(std::toupper((unsigned char)c));
    return s;
}

QLabel* menu_label(QWidget* parent, const std::string& text) {
    auto* label = new QLabel(QString::fromStdString(text), parent);
    label->setFont(look::sans(14));
    look::set_text_color(label, look::text);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

// The commands of the entries, by caption.
using command = std::function<void(Global&, MainScreen*)>;

// A "View" command on the current screen layer; nothing without one.
command on_screen(void (*change)(boxes_layer&)) {
    return [change](Global& g, MainScreen*) {
        if (auto layer = g.current_boxes_layer()) change(*layer);
    };
}

template <std::int32_t BoxesLayerDescription::*Field> command toggle() {
    return on_screen([](boxes_layer& l) {
        l.*Field = l.*Field ? 0 : 1;
        l.set_changed();
    });
}

template <int Mode> command pattern() {
    return on_screen([](boxes_layer& l) {
        l.SnakeMode = Mode;
        l.set_changed();
    });
}

template <void (MainScreen::*Show)()> command show() {
    return [](Global&, MainScreen* screen) {
        if (screen) (screen->*Show)();
    };
}

// An Arrange command on the selected screens.
command arrange(arrange_command c) {
    return [c](Global&, MainScreen* screen) {
        if (screen && screen->main_impact()) screen->main_impact()->selection().arrange(c);
    };
}

// "New" asks before unsaved work goes, and is one step that can be undone.
void new_document(Global& g, MainScreen* s) {
    UndoController* undo = s ? s->undo_controller() : nullptr;
    if (!undo) return g.load_default_layers();
    undo->ask_before_discarding([&g, s, undo] {
        g.load_default_layers();
        g.document_file = {};
        undo->name_next("New");
        undo->record();
        s->reload_all(true);
    });
}

const std::map<std::string, command>& command_table() {
    static const std::map<std::string, command> table = {
        {"New", new_document},
        {"Open Project...",
         [](Global& g, MainScreen* s) {
             if (!s || !s->undo_controller()) return g.open_project_button();
             s->undo_controller()->ask_before_discarding([&g] { g.open_project_button(); });
         }},
        {"Open Recent",
         [](Global&, MainScreen* screen) {
             if (screen) show_open_recent(*screen);
         }},
        {"Undo",
         [](Global&, MainScreen* s) {
             if (s && s->undo_controller()) s->undo_controller()->undo();
         }},
        {"Redo",
         [](Global&, MainScreen* s) {
             if (s && s->undo_controller()) s->undo_controller()->redo();
         }},
        {"Save Project...", [](Global& g, MainScreen*) { g.save_project_button(); }},
        {"Export PNG...", [](Global& g, MainScreen*) { g.save_png_button(); }},
        {"Export PSD...", [](Global& g, MainScreen*) { g.save_psd_button(); }},
        {"Export Resolume Arena...", [](Global& g, MainScreen*) { g.layers_to_xml(); }},
        {"Export Report...", [](Global& g, MainScreen*) { g.save_report_button(); }},
        {"Export Bill of Materials...", [](Global& g, MainScreen*) { g.save_bom_button(); }},
        {"Add Screen Layer", [](Global& g, MainScreen*) { g.new_boxes_layer(); }},
        {"Add Image Layer", [](Global& g, MainScreen*) { TopMenuSubmenu::addImageLayer(&g); }},
        {"Set Logo Layer", [](Global& g, MainScreen*) { g.setLogoLayer(); }},
        {"Clone Current Layer", [](Global& g, MainScreen*) { g.clone_current_layer(); }},
        // The tooltip promises a warning; the layer goes at once.
        {"Delete Current Layer", [](Global& g, MainScreen*) { g.delete_current_layer(); }},
        {"Align Left", arrange(arrange_command::align_left)},
        {"Align Right", arrange(arrange_command::align_right)},
        {"Align Top", arrange(arrange_command::align_top)},
        {"Align Bottom", arrange(arrange_command::align_bottom)},
        {"Align Horizontal Centres", arrange(arrange_command::align_horizontal_centres)},
        {"Align Vertical Centres", arrange(arrange_command::align_vertical_centres)},
        {"Distribute Horizontally", arrange(arrange_command::distribute_horizontally)},
        {"Distribute Vertically", arrange(arrange_command::distribute_vertically)},
        {"Pack", arrange(arrange_command::pack)},
        {"Arrange Palette",
         [](Global&, MainScreen* screen) {
             if (screen) toggle_arrange_palette(*screen);
         }},
        {"Background Color", on_screen([](boxes_layer& l) { l.switch_all_exclude_boxes(); })},
        {"Outline", toggle<&BoxesLayerDescription::DrawGrid>()},
        {"Centering Circle", toggle<&BoxesLayerDescription::DrawCircle>()},
        {"XY Offsets Label",
         on_screen([](boxes_layer& l) { l.toggle_corner_label(corner_top_left); })},
        {"Screen Size Label", toggle<&BoxesLayerDescription::DrawScreenSize>()},
        {"Cabinet ID", toggle<&BoxesLayerDescription::DrawBoxesNames>()},
        {"Power Label", toggle<&BoxesLayerDescription::DrawPower>()},
        {"Data Path", toggle<&BoxesLayerDescription::DrawSnake>()},
        {"Path Pattern 1", pattern<0>()},
        {"Path Pattern 2", pattern<1>()},
        {"Path Pattern 3", pattern<2>()},
        {"Path Pattern 4", pattern<3>()},
        {"Path Pattern 5", pattern<4>()},
        {"Path Pattern 6", pattern<5>()},
        {"Path Pattern 7", pattern<6>()},
        {"Path Pattern 8", pattern<7>()},
        {"Fit Raster",
         [](Global&, MainScreen* screen) {
             if (screen && screen->main_impact()) screen->main_impact()->fit_raster();
         }},
        {"Actual Size",
         [](Global&, MainScreen* screen) {
             if (screen && screen->main_impact()) screen->main_impact()->actual_size();
         }},
        {"Screen Info", show<&MainScreen::showScreenInfo>()},
        {"Labels Info", show<&MainScreen::showLabelsInfo>()},
        {"Data tools", show<&MainScreen::showDataTools>()},
        {"Power tools", show<&MainScreen::showPowerTools>()},
        {"Color tools", show<&MainScreen::showBoxesColors>()},
        {"Raster Label tool", show<&MainScreen::showRasterLabelTool>()},
        {"No Live Output",
         [](Global&, MainScreen* screen) {
             if (screen && screen->main_impact())
                 screen->main_impact()->set_live_output_to_monitor(-1);
         }},
        {"About", show<&MainScreen::showAbout>()},
        {"Website link for update", show<&MainScreen::openUpdateLink>()},
        {"Tutorials link", show<&MainScreen::openTutorialsLink>()},
        {"Help", show<&MainScreen::openHelpLink>()},
    };
    return table;
}

} // namespace

// ---------------------------------------------------------------- the text

std::array<std::string, 4> split_menu_line(const std::string& line) {
    std::array<std::string, 4> fields;
    std::size_t start = 0;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t bar = line.find('|', start);
        fields[i] = line.substr(start, bar == std::string::npos ? std::string::npos : bar - start);
        if (bar == std::string::npos) break;
        start = bar + 1;
    }
    return fields;
}

menu_text parse_menu_text(const std::string& text) {
    menu_text menu;
    std::string section;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.empty() || line[0] != '#') {
            if (!section.empty()) section += '\n';
            section += line;
            continue;
        }
        menu.titles.push_back(line.substr(1));
        if (!section.empty()) menu.sections.push_back(section);
        section.clear();
    }
    if (!section.empty()) menu.sections.push_back(section);
    return menu;
}

// ---------------------------------------------------------------- the bar

TopMenuMain::TopMenuMain(Global* global, TopMenu* menu, const std::vector<std::string>& titles)
    : QWidget(menu), m_titles(titles), m_menu(menu), m_global(global) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(2, 2, 2, 2);
    row->setSpacing(15);
    for (std::size_t i = 0; i < titles.size(); ++i) {
        auto* item = new WidgetWithBackground(this, bar_normal, bar_hover, bar_selected, global);
        item->setObjectName(QString::fromStdString(titles[i]));
        auto* inner = new QHBoxLayout(item);
        inner->setContentsMargins(0, 0, 0, 0);
        inner->setSpacing(0);
        inner->addWidget(menu_label(item, " " + titles[i] + " "));
        item->set_callback([menu, i] {
            menu->setSubmenu((long long)i);
            return true;
        });
        row->addWidget(item, 0, Qt::AlignVCenter);
        m_items.push_back(item);
    }
    row->addStretch(1);
}

bool TopMenuMain::is_item_selected(const QWidget* item) const {
    for (std::size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i] == item) {
            const TopMenuSubmenu* s = m_menu->submenu((long long)i);
            return s && s->isVisible();
        }
    return false;
}

void TopMenuMain::on_item_hover(QWidget* item) {
    if (!m_menu->is_showing_any_submenu()) return;
    if (auto* w = dynamic_cast<WidgetWithBackground*>(item)) {
        const long long index = m_menu->find_submenu(w);
        const TopMenuSubmenu* s = m_menu->submenu(index);
        if (index >= 0 && !(s && s->isVisible())) m_menu->setSubmenu(index);
    }
}

TopMenu::TopMenu(QWidget* parent, Global* global) : QWidget(parent), m_global(global) {
    setObjectName("TopMenu");
    menu_text menu = parse_menu_text(global->get_menu_string());
    m_sections = std::move(menu.sections);
    m_main = new TopMenuMain(global, this, menu.titles);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_main);
}

TopMenuSubmenu* TopMenu::submenu(long long index) const {
    auto it = m_submenus.find(index);
    return it == m_submenus.end() ? nullptr : it->second;
}

void TopMenu::createSubmenu(long long index) {
    TopMenuSubmenu* existing = submenu(index);
    if (!existing) {
        if (index < 0 || index >= (long long)m_sections.size()) return;
        // A child of the main screen, so that it lies over everything.
        existing = new TopMenuSubmenu(m_global, parentWidget(), m_sections[std::size_t(index)]);
        existing->setObjectName(QString("submenu %1").arg(index));
        m_submenus[index] = existing;
        existing->fold();
    }
    if (index == TopMenuSubmenu::live_output_section)
        existing->set_monitor_entries(get_live_output_monitors());
}

void TopMenu::setSubmenu(long long index) {
    fold();
    createSubmenu(index);
    TopMenuSubmenu* s = submenu(index);
    if (!s || !parentWidget()) return;
    // At the pointer's x, under the strip.
    const int x = parentWidget()->mapFromGlobal(QCursor::pos()).x();
    s->adjustSize();
    s->move(x, height);
    s->show();
    s->raise();
    update();
}

long long TopMenu::find_submenu(WidgetWithBackground* item) const {
    const auto& items = m_main->items();
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i] == item) return (long long)i;
    return -1;
}

bool TopMenu::is_showing_any_submenu() const {
    for (const auto& [index, s] : m_submenus)
        if (s && s->isVisible()) return true;
    return false;
}

void TopMenu::fold() {
    for (const auto& [index, s] : m_submenus)
        if (s) s->fold();
    update();
}

bool TopMenu::keytrigger(const std::string& key) {
    // The drop-downs are made once the window shows; a key before that
    // makes them.
    for (std::size_t i = 0; i < m_sections.size(); ++i)
        if (!submenu((long long)i)) createSubmenu((long long)i);
    for (const auto& [index, s] : m_submenus)
        if (s && s->shortcut(key)) return true;
    return false;
}

std::vector<int> TopMenu::get_live_output_monitors() const {
    return Vantora_TesserinePro::get_live_output_monitors(window());
}

void TopMenu::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), bar_normal);
    p.setFont(look::sans(18));
    p.setPen(title_color);
    // Centred, but in a narrow window never over the section titles.
    const QString title = "Tesserine Pro";
    const int w = p.fontMetrics().horizontalAdvance(title);
    const auto& items = m_main->items();
    const int titles_end =
        items.empty() ? 0 : items.back()->mapTo(this, QPoint(items.back()->width(), 0)).x() + 15;
    if ((width() - w) / 2 >= titles_end)
        p.drawText(rect(), Qt::AlignCenter, title);
    else
        p.drawText(QRect(titles_end, 0, w, rect().height()), Qt::AlignLeft | Qt::AlignVCenter,
                   title);
}

void TopMenu::mousePressEvent(QMouseEvent* event) {
    fold();
    event->accept();
}

// ---------------------------------------------------------------- drop-downs

TopMenuSubmenu::TopMenuSubmenu(Global* global, QWidget* parent, const std::string& section_text)
    : QWidget(parent), m_global(global) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    std::istringstream lines(section_text);
    std::string line;
    while (std::getline(lines, line)) {
        const auto fields = split_menu_line(line);
        const unsigned long id = m_captions.size();
        m_captions.push_back(fields[0]);
        add_entry(fields[0], fields[1], fields[3], [this, id] {
            std::printf("Submenu clicked, id: %lu\n", id);
            std::fflush(stdout);
            clicked_to(id);
            fold();
            return true;
        });
    }
    // A caption with no row in the table does nothing.
    for (const std::string& caption : m_captions) {
        auto it = command_table().find(caption);
        if (it == command_table().end()) continue;
        const command run = it->second;
        m_commands[caption] = [this, run] { run(*m_global, MainScreen::of(parentWidget())); };
    }
}

WidgetWithBackground* TopMenuSubmenu::add_entry(const std::string& caption,
                                                const std::string& tooltip, const std::string& key,
                                                std::function<bool()> callback) {
    auto* entry = new WidgetWithBackground(this, bar_normal, bar_hover, bar_selected, m_global);
    entry->setObjectName(QString::fromStdString(caption));
    auto* row = new QHBoxLayout(entry);
    row->setContentsMargins(2, 2, 2, 2);
    row->setSpacing(0);
    entry->set_menu_name(caption);
    if (!tooltip.empty()) entry->setToolTip(QString::fromStdString(tooltip));
    row->addWidget(menu_label(entry, caption));
    entry->setAccessKey(upper(key));
    if (!key.empty()) row->addWidget(menu_label(entry, create_readable_keycode(key)));
    row->addStretch(1);
    entry->set_callback(std::move(callback));
    layout()->addWidget(entry);
    m_entries.push_back(entry);
    return entry;
}

std::string TopMenuSubmenu::create_readable_keycode(const std::string& key) {
    return " [" + key + "]";
}

void TopMenuSubmenu::refresh_panels() const {
    if (MainScreen* screen = MainScreen::of(parentWidget())) screen->reload_all(true);
}

void TopMenuSubmenu::clicked_to(unsigned long id) {
    fold();
    if (id >= m_captions.size()) throw std::out_of_range("menu entry out of range");
    auto it = m_commands.find(m_captions[id]);
    if (it == m_commands.end()) return;
    it->second();
    refresh_panels();
}

void TopMenuSubmenu::killFocus() {
    for (WidgetWithBackground* entry : m_entries)
        entry->killFocus();
}

void TopMenuSubmenu::fold() {
    killFocus();
    hide();
    update();
}

bool TopMenuSubmenu::shortcut(const std::string& key) const {
    for (WidgetWithBackground* entry : m_entries) {
        if (entry->getAccessKey().empty()) continue;
        if (!keys::is_equivalent_using_modifiers_groups(entry->getAccessKey(), key)) continue;
        entry->exec();
        refresh_panels();
        return true;
    }
    return false;
}

void TopMenuSubmenu::set_monitor_entries(const std::vector<int>& monitors) {
    // All but the first entry, "No Live Output", go.
    for (WidgetWithBackground* extra : m_extra_entries) {
        m_entries.erase(std::remove(m_entries.begin(), m_entries.end(), extra), m_entries.end());
        delete extra;
    }
    m_extra_entries.clear();
    for (int m : monitors) {
        char caption[64];
        std::snprintf(caption, sizeof caption, "Live Output to Screen %d", m + 1);
        WidgetWithBackground* entry = add_entry(caption, "", "", [this, m] {
            if (MainScreen* screen = MainScreen::of(parentWidget()))
                if (MainImpact* canvas = screen->main_impact())
                    canvas->set_live_output_to_monitor(m);
            fold();
            return true;
        });
        m_extra_entries.push_back(entry);
    }
    adjustSize();
}

void TopMenuSubmenu::addImageLayer(Global* global) {
    global->host().pick_single_file(
        file_dialog_filters(),
        [global](const file::path& chosen) {
            if (!chosen.empty()) add_picture_layer(*global, chosen.string());
        },
        false);
}

void TopMenuSubmenu::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), bar_normal);
}

pointer<image_layer> add_picture_layer(Global& global, const std::string& path) {
    const pointer<image> picture = load_image_file(path);
    if (!picture || picture->isNull() || picture->width() <= 0 || picture->height() <= 0) {
        global.show_error("Error loading image.");
        return nullptr;
    }
    // Set in this order on a layer whose ratio is still 1: the layer starts
    // as a square of the picture's height.
    pointer<image_layer> layer = global.new_image_layer();
    if (layer) {
        layer->set_width(picture->width());
        layer->set_height(picture->height());
        layer->set_image(picture);
    }
    return layer;
}

} // namespace Vantora_TesserinePro
