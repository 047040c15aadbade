#include "panels/arrange_palette.h"

#include "app/main_screen.h"
#include "app/palette_places.h"
#include "canvas/main_impact.h"
#include "panels/widgets/cached_style.h"
#include "panels/widgets/fields.h"

#include <QEvent>
#include <QGridLayout>
#include <QPushButton>

namespace Vantora_TesserinePro {

ArrangePalette::ArrangePalette(QWidget* parent, Global* global, selection_tool& tool)
    : SettingsBaseWindow(parent, global, "Arrange"), m_tool(tool) {
    auto* grid = new QGridLayout(body());
    grid->setContentsMargins(8, 8, 8, 8);
    grid->setSpacing(5);
    // Short captions, the menu's as names and tooltips.
    const struct {
        const char* caption;
        arrange_command command;
        int row, column;
    } buttons[] = {
        {"Left", arrange_command::align_left, 0, 0},
        {"H Centre", arrange_command::align_horizontal_centres, 0, 1},
        {"Right", arrange_command::align_right, 0, 2},
        {"Top", arrange_command::align_top, 1, 0},
        {"V Centre", arrange_command::align_vertical_centres, 1, 1},
        {"Bottom", arrange_command::align_bottom, 1, 2},
        {"Space H", arrange_command::distribute_horizontally, 2, 0},
        {"Space V", arrange_command::distribute_vertically, 2, 1},
        {"Pack", arrange_command::pack, 3, 2},
    };
    for (const auto& b : buttons) {
        auto* button = new QPushButton(b.caption, body());
        button->setObjectName(arrange_caption(b.command));
        button->setToolTip(arrange_caption(b.command));
        button->setFixedSize(80, 24);
        button->setFocusPolicy(Qt::NoFocus);
        use_cached_style(button);
        const arrange_command command = b.command;
        connect(button, &QPushButton::clicked, this, [this, command] { m_tool.arrange(command); });
        grid->addWidget(button, b.row, b.column);
    }
    grid->addWidget(make_caption(body(), "Pack gap"), 3, 0);
    gap = new IntBox(body());
    gap->setObjectName("Pack gap");
    gap->setRange(0, 100000);
    gap->setFixedSize(80, 24);
    gap->set_value(m_tool.pack_gap);
    gap->set_callback([this](int v) { m_tool.pack_gap = v; });
    grid->addWidget(gap, 3, 1);
    count = make_caption(body(), "");
    grid->addWidget(count, 4, 0, 1, 3);
    m_tool.set_changed_callback([this] { show_count(); });
    show_count();
    add_children_to_tab_order<>(body());
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    // Not one of the main screen's own palettes: it keeps itself within
    // reach when the window shrinks.
    parent->installEventFilter(this);
}

bool ArrangePalette::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == parentWidget())
        if (MainScreen* screen = MainScreen::of(this)) screen->keep_within_reach(this);
    return false;
}

void ArrangePalette::show_count() {
    const std::size_t n = m_tool.screens().indices().size();
    count->setText(n == 1 ? QString("1 screen selected") : QString("%1 screens selected").arg(n));
}

ArrangePalette* arrange_palette_of(const MainScreen& screen) {
    // By type: it has no meta-object of its own for findChild to tell it by.
    for (QObject* child : screen.children())
        if (auto* palette = dynamic_cast<ArrangePalette*>(child)) return palette;
    return nullptr;
}

void toggle_arrange_palette(MainScreen& screen) {
    ArrangePalette* palette = arrange_palette_of(screen);
    if (palette && palette->isVisible()) return palette->hide();
    const bool first = !palette;
    if (first)
        palette = new ArrangePalette(&screen, &screen.global(), screen.main_impact()->selection());
    palette->show();
    palette->raise();
    if (first) {
        // Its size is known once it shows. Low on the right beside the
        // lists, clear of the palettes' first places.
        palette->layout()->activate();
        palette->move(screen.width() - palette_places::lists_width - palette->width() - 10,
                      screen.height() - palette->height() - 10);
    }
    screen.keep_within_reach(palette);
}

} // namespace Vantora_TesserinePro
