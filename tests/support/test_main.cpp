// Shared main of the test programs: Qt's offscreen platform (fonts and
// codecs work headless) and a data folder of their own in a temporary place.

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir data_home;
    qputenv("XDG_DATA_HOME", data_home.path().toUtf8());
    // A private runtime folder keeps Qt from warning about a missing one.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        qputenv("XDG_RUNTIME_DIR", data_home.path().toUtf8());
    int qt_argc = 1;
    QGuiApplication app(qt_argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
