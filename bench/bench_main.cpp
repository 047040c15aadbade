// tesserine-bench: every benchmark case of the project; Qt runs offscreen,
// with a data folder of its own.

#ifdef TESSERINE_HAS_WINDOW
#include <QApplication>
using qt_application = QApplication;
#else
#include <QGuiApplication>
using qt_application = QGuiApplication;
#endif
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir data_home;
    qputenv("XDG_DATA_HOME", data_home.path().toUtf8());
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        qputenv("XDG_RUNTIME_DIR", data_home.path().toUtf8());
    int qt_argc = 1;
    qt_application app(qt_argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
