#include "app/window_main.h"

#include "app/application.h"
#include "app/control_map.h"
#include "app/start_steps.h"
#include "panels/look.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

#include <cstdlib>
#include <iostream>
#include <vector>

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

namespace {

// What a user without a display can do instead.
[[noreturn]] void no_display(const std::string& why) {
    std::cerr << "tesserine: no display: " << why
              << ".\nThe window needs a display. Without one, run a command such as "
                 "\"tesserine info FILE\" (\"tesserine --help\" lists them), or set DISPLAY "
                 "(or WAYLAND_DISPLAY) to a display you can reach, or QT_QPA_PLATFORM to a "
                 "platform that works here."
              << std::endl;
    std::_Exit(1);
}

// Qt ends the program with an abort when no platform can be opened. While
// the application is made, its messages are held back: a fatal one turns
// into the message above and status 1, the others are passed on after.
std::vector<std::pair<QtMsgType, QString>> g_held;
QtMessageHandler g_previous = nullptr;
void hold_message(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type != QtFatalMsg) {
        g_held.emplace_back(type, message);
        return;
    }
    std::string why = message.section('\n', 0, 0).toStdString();
    for (const auto& held : g_held)
        if (held.second.contains("display", Qt::CaseInsensitive)) why = held.second.toStdString();
    (void)context;
    no_display(why);
}

} // namespace

int run_window(int argc, char** argv, const std::string& file) {
    start_steps::trace("main");
#if defined(Q_OS_LINUX) || defined(Q_OS_FREEBSD)
    // With no platform named, Qt looks for a display in these.
    const auto unset = [](const char* name) { return qEnvironmentVariableIsEmpty(name); };
    if (unset("QT_QPA_PLATFORM") && unset("DISPLAY") && unset("WAYLAND_DISPLAY"))
        no_display("neither DISPLAY nor WAYLAND_DISPLAY is set");
#endif
    // Qt is kept away from our own arguments.
    int qt_argc = 1;
    (void)argc;
    g_previous = qInstallMessageHandler(hold_message);
    QApplication qt(qt_argc, argv);
    qInstallMessageHandler(g_previous);
    for (const auto& [type, message] : g_held)
        qt_message_output(type, QMessageLogContext(), message);
    g_held.clear();
    start_steps::trace("qt");
    apply_window_look();
    application app;
    app.init_instance();
    app.on_request(file);
    start_steps::trace("built");
    start_control_map(&qt);
    const int status = qt.exec();
    app.term_application();
    return status;
}

} // namespace Vantora_TesserinePro
