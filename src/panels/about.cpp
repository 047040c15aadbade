#include "panels/about.h"

#include "app/main_screen.h"
#include "document/global.h"
#include "panels/look.h"
#include "panels/widgets/fields.h"
#include "panels/widgets/pictures.h"
#include "panels/widgets/small_widgets.h"

#include <QDir>
#include <QVBoxLayout>

namespace Vantora_TesserinePro {

About::About(QWidget* parent, Global* global) : SettingsBaseWindow(parent, global, "About") {
    auto* column = new QVBoxLayout(body());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(5);
    m_logo = new W_Image(body(), 456, 256);
    column->addWidget(m_logo);
    const auto line = [&](const QString& text) {
        QLabel* label = make_caption(body(), text);
        label->setContentsMargins(8, 0, 8, 0);
        column->addWidget(label);
        m_lines.push_back(label);
        return label;
    };
    line("Version " TESSERINE_VERSION);
    line(MainScreen::web_address);
    look::set_text_color(line(""), Qt::white);
    line(QString::asprintf("User Dir: %s", QDir::homePath().toUtf8().constData()));
    line(QString::asprintf("Data Dir: %s", global->getFolderToSaveData().string().c_str()));
    look::set_text_color(line(""), Qt::white);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    // Not in the layout file: it closes at every refresh of the palettes.
    set_stored_visible(false);
}

void About::showEvent(QShowEvent* event) {
    // Text that can be selected is a small document each: made when needed.
    if (m_logo->image().isNull()) {
        m_logo->set_image(logo_picture(456, 256));
        for (QLabel* label : m_lines)
            label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    SettingsBaseWindow::showEvent(event);
}

} // namespace Vantora_TesserinePro
