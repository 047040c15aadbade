#pragma once
// The menu strip across the top of the window, drawn by the program itself:
// the section titles and the product name, one drop-down per section, and
// the shortcuts of every command. Its whole vocabulary is one text; a fixed
// table binds each caption to a command.

#include "core/types.h"
#include "panels/widgets/clickable_widget.h"

#include <QWidget>

#include <array>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Vantora_TesserinePro {

class Global;
class image_layer;
class TopMenu;
class TopMenuSubmenu;

// The menu text read: the titles of the sections, and each section's lines
// joined by newlines. A line of fewer than four fields gives empty ones.
struct menu_text {
    std::vector<std::string> titles;
    std::vector<std::string> sections;
};
menu_text parse_menu_text(const std::string& text);
// One entry line: caption, tooltip, macOS shortcut (read and ignored),
// shortcut.
std::array<std::string, 4> split_menu_line(const std::string& line);

// The row of section titles.
class TopMenuMain : public QWidget, public item_container {
  public:
    TopMenuMain(Global* global, TopMenu* menu, const std::vector<std::string>& titles);
    const std::vector<WidgetWithBackground*>& items() const { return m_items; }

    bool is_item_selected(const QWidget* item) const override;
    // Once one drop-down is open, moving across the bar opens the others.
    void on_item_hover(QWidget* item) override;

  private:
    std::vector<std::string> m_titles;
    std::vector<WidgetWithBackground*> m_items;
    TopMenu* m_menu;
    Global* m_global;
};

class TopMenu : public QWidget {
  public:
    // The strip's height.
    static constexpr int height = 20;
    TopMenu(QWidget* parent, Global* global);

    // Makes the drop-down of a section, once (an open makes it if need be);
    // for the Live Output section it lists the monitors again.
    void createSubmenu(long long index);
    void setSubmenu(long long index);
    long long find_submenu(WidgetWithBackground* item) const;
    bool is_showing_any_submenu() const;
    bool any_open() const { return is_showing_any_submenu(); }
    void fold();
    // Offers a key string ("CONTROL+SHIFT+B") to each drop-down in order;
    // true when one ran a command.
    bool keytrigger(const std::string& key);
    // Every monitor but the one that holds most of the main window.
    std::vector<int> get_live_output_monitors() const;

    TopMenuMain* main_row() const { return m_main; }
    TopMenuSubmenu* submenu(long long index) const;
    const std::vector<std::string>& section_texts() const { return m_sections; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    // A press that none of the titles took folds the menu.
    void mousePressEvent(QMouseEvent* event) override;

  private:
    Global* m_global;
    TopMenuMain* m_main = nullptr;
    std::vector<std::string> m_sections;
    std::map<long long, TopMenuSubmenu*> m_submenus;
};

// One drop-down: a child of the main screen, placed under the strip.
class TopMenuSubmenu : public QWidget, public item_container {
  public:
    // The drop-down of the monitors.
    static constexpr long long live_output_section = 6;

    TopMenuSubmenu(Global* global, QWidget* parent, const std::string& section_text);

    // " [CONTROL+N]": a shortcut as the entry shows it.
    static std::string create_readable_keycode(const std::string& key);
    // Runs the command of entry id, then refreshes the panels. Throws
    // std::out_of_range for an id past the entries.
    void clicked_to(unsigned long id);
    void fold();
    void killFocus();
    // Runs the first entry whose shortcut matches key; true when one did.
    bool shortcut(const std::string& key) const;
    // "Add Image Layer": a picture file becomes a layer of its size.
    static void addImageLayer(Global* global);

    const std::vector<std::string>& captions() const { return m_captions; }
    const std::vector<WidgetWithBackground*>& entries() const { return m_entries; }
    // The Live Output drop-down: entries for these monitors after the
    // first one, replacing those of the last opening.
    void set_monitor_entries(const std::vector<int>& monitors);

    bool is_item_selected(const QWidget*) const override { return false; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    WidgetWithBackground* add_entry(const std::string& caption, const std::string& tooltip,
                                    const std::string& key, std::function<bool()> callback,
                                    int at = -1);
    void refresh_panels() const;

    Global* m_global;
    std::vector<std::string> m_captions;
    std::map<std::string, std::function<void()>> m_commands;
    std::vector<WidgetWithBackground*> m_entries;
    std::vector<WidgetWithBackground*> m_extra_entries;
};

// Add Image Layer with the picture at PATH, read by the program's picture
// reader; null, after telling the user, when it cannot be read.
pointer<image_layer> add_picture_layer(Global& global, const std::string& path);

} // namespace Vantora_TesserinePro
