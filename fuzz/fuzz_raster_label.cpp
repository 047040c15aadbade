// libFuzzer target: see fuzz_entries.h.
#include "fuzz_entries.h"

#include <QGuiApplication>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz_raster_label";
    static char* argv[] = {name, nullptr};
    static QGuiApplication app(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, unsigned long size) {
    Vantora_TesserinePro::fuzzing::raster_label(data, size);
    return 0;
}
