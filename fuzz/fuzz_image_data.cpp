// libFuzzer target: see fuzz_entries.h.
#include "fuzz_entries.h"

#include <QGuiApplication>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz_image_data";
    static char* argv[] = {name, nullptr};
    static QGuiApplication app(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, unsigned long size) {
    Vantora_TesserinePro::fuzzing::image_data(data, size);
    return 0;
}
