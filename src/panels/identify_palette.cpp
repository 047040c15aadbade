#include "panels/identify_palette.h"

#include "app/main_screen.h"
#include "app/palette_places.h"
#include "canvas/live_show.h"
#include "canvas/main_impact.h"
#include "panels/widgets/cached_style.h"
#include "panels/widgets/fields.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

namespace Vantora_TesserinePro {

IdentifyPalette::IdentifyPalette(QWidget* parent, Global* global, live_show& shown)
    : SettingsBaseWindow(parent, global, "Identify"), m_show(shown) {
    auto* grid = new QGridLayout(body());
    grid->setContentsMargins(8, 8, 8, 8);
    grid->setSpacing(5);
    status = make_caption(body(), "");
    status->setObjectName("Identify status");
    status->setMinimumWidth(170);
    grid->addWidget(status, 0, 0, 1, 3);
    const struct {
        const char* caption;
        const char* name;
        int column;
        void (*run)(live_show&);
    } buttons[] = {
        {"<", "Previous", 0, [](live_show& s) { s.step(-1); }},
        {">", "Next", 1, [](live_show& s) { s.step(1); }},
        {"Map", "Map", 2, [](live_show& s) { s.show_pattern(test_pattern::map); }},
    };
    for (const auto& b : buttons) {
        auto* button = new QPushButton(b.caption, body());
        button->setObjectName(b.name);
        button->setToolTip(b.name);
        button->setFixedSize(54, 24);
        button->setFocusPolicy(Qt::NoFocus);
        use_cached_style(button);
        const auto run = b.run;
        connect(button, &QPushButton::clicked, this, [this, run] { run(m_show); });
        grid->addWidget(button, 1, b.column);
    }
    automatic = new QCheckBox("Auto (every 2 s)", body());
    automatic->setObjectName("Auto");
    automatic->setFocusPolicy(Qt::NoFocus);
    connect(automatic, &QCheckBox::toggled, this, [this](bool on) { m_show.set_auto(on); });
    grid->addWidget(automatic, 2, 0, 1, 3);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    // The status follows every step, from here, the keys, the menu or auto.
    auto said = m_show.on_status;
    m_show.on_status = [this, said](const std::string& text) {
        if (said) said(text);
        refresh();
    };
    refresh();
    parent->installEventFilter(this);
}

void IdentifyPalette::refresh() {
    status->setText(
        QString::fromStdString(m_show.is_identifying() ? m_show.status_text() : "Not identifying"));
    const QSignalBlocker quiet(automatic);
    automatic->setChecked(m_show.is_auto());
}

bool IdentifyPalette::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == parentWidget())
        if (MainScreen* screen = MainScreen::of(this)) screen->keep_within_reach(this);
    return false;
}

void show_identify_palette(MainScreen& screen) {
    IdentifyPalette* palette = nullptr;
    for (QObject* child : screen.children())
        if ((palette = dynamic_cast<IdentifyPalette*>(child))) break;
    const bool first = !palette;
    if (first)
        palette = new IdentifyPalette(&screen, &screen.global(), screen.main_impact()->show());
    palette->show();
    palette->raise();
    if (first) {
        // On the right beside the lists, above the Arrange palette's place.
        palette->layout()->activate();
        palette->move(screen.width() - palette_places::lists_width - palette->width() - 10,
                      (screen.height() - palette->height()) / 2);
    }
    screen.keep_within_reach(palette);
}

} // namespace Vantora_TesserinePro
