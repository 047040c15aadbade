// tesserine: with a command word it works headless; otherwise it opens the
// window, on the project named if there is one.

#include "cli/cli.h"
#include "core/diagnostics.h"
#include "core/file_path.h"
#ifdef TESSERINE_HAS_WINDOW
#include "app/window_main.h"
#endif

#include <QCommandLineParser>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdlib>
#include <iostream>
#include <map>

using namespace Vantora_TesserinePro;

namespace {
// Qt's own chatter (missing runtime folders, image plugins probing a file)
// is not for the user of a command; real failures are reported by us.
void quiet_qt_messages(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::cerr << "tesserine: " << message.toStdString() << std::endl;
}
} // namespace

int main(int argc, char** argv) {
    static const std::map<std::string, int (*)(const cli::args&)> commands = {
        {"new", &cli::cmd_new},         {"info", &cli::cmd_info},
        {"presets", &cli::cmd_presets}, {"route", &cli::cmd_route},
        {"power", &cli::cmd_power},     {"processors", &cli::cmd_processors},
        {"bom", &cli::cmd_bom},
        {"render", &cli::cmd_render},   {"export-resolume", &cli::cmd_export_resolume},
        {"report", &cli::cmd_report},   {"pack", &cli::cmd_pack},
    };
    // Options before the command word are the program's own; what follows
    // the word is the command's.
    QCommandLineParser parser;
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption help(QStringList{"h", "help"}), version(QStringList{"v", "version"});
    parser.addOption(help);
    parser.addOption(version);
    QStringList words;
    for (int i = 0; i < argc; ++i)
        words << QString::fromLocal8Bit(argv[i]);
    if (parser.parse(words)) {
        if (parser.isSet(version)) return std::cout << cli::version_text(), cli::exit_ok;
        if (parser.isSet(help)) return std::cout << cli::usage_text(), cli::exit_ok;
    }
    const std::string word = argc >= 2 ? argv[1] : "";
    if (word == "help") return std::cout << cli::usage_text(), cli::exit_ok;
    auto it = commands.find(word);
    if (it == commands.end()) {
        // No command word: the window, with the project named if any.
        const bool project = argc == 2 && (QFileInfo::exists(QString::fromLocal8Bit(argv[1])) ||
                                           file::path(word).final_extension_lower() == "tsrx");
        if (argc >= 2 && !project) return cli::usage_error("unknown command \"" + word + "\"");
#ifdef TESSERINE_HAS_WINDOW
        return run_window(argc, argv, project ? word : std::string());
#else
        return cli::usage_error("the window is not part of this build");
#endif
    }

    // Headless whatever the environment says: a display platform that is
    // set but cannot be reached (over SSH, in CI) would abort the command.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quiet_qt_messages);
    int qt_argc = 1; // keep Qt away from our own arguments
    QGuiApplication app(qt_argc, argv);

    // Standard output carries only the command's result.
    set_diagnostics_out(&std::cerr);
    cli::args rest(argv + 2, argv + argc);
    try {
        const int status = it->second(rest);
        // The output stands, but what it was read from was damaged.
        return status == cli::exit_ok && cli::damage_reported() ? cli::exit_damaged : status;
    } catch (const std::exception& e) {
        std::cerr << "tesserine: " << e.what() << std::endl;
        return cli::exit_failure;
    }
}
