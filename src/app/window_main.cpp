#include "app/window_main.h"

#include "app/application.h"
#include "panels/look.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace Vantora_TesserinePro {

void apply_window_look() {
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QPalette dark;
    dark.setColor(QPalette::Window, look::palette_fill);
    dark.setColor(QPalette::WindowText, look::text);
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    dark.setColor(QPalette::AlternateBase, QColor(0x2a, 0x2a, 0x2a));
    dark.setColor(QPalette::Text, look::text);
    dark.setColor(QPalette::Button, QColor(0x4a, 0x4a, 0x4a));
    dark.setColor(QPalette::ButtonText, look::title_text);
    dark.setColor(QPalette::Highlight, QColor(0x3f, 0x7f, 0x7f));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::ToolTipBase, QColor(0x26, 0x26, 0x26));
    dark.setColor(QPalette::ToolTipText, look::text);
    QApplication::setPalette(dark);
    QApplication::setFont(look::sans(14));
}

int run_window(int argc, char** argv, const std::string& file) {
    // Qt is kept away from our own arguments.
    int qt_argc = 1;
    (void)argc;
    QApplication qt(qt_argc, argv);
    apply_window_look();
    application app;
    app.init_instance();
    app.on_request(file);
    const int status = qt.exec();
    app.term_application();
    return status;
}

} // namespace Vantora_TesserinePro
