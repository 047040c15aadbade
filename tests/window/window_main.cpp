// Main of the window test programs: real widgets under Qt's offscreen
// platform, with a data folder of their own. A program built with
// TESSERINE_TEST_SCREENS gets the monitors of that file (the offscreen
// platform's JSON of "screens").

#include "app/window_main.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QTemporaryDir data_home;
    qputenv("XDG_DATA_HOME", data_home.path().toUtf8());
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        qputenv("XDG_RUNTIME_DIR", data_home.path().toUtf8());
    QByteArray platform = "offscreen";
#ifdef TESSERINE_TEST_SCREENS
    platform += ":configfile=" TESSERINE_TEST_SCREENS;
#endif
    qputenv("QT_QPA_PLATFORM", platform);
    int qt_argc = 1;
    QApplication app(qt_argc, argv);
    Vantora_TesserinePro::apply_window_look();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
