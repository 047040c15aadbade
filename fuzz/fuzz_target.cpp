// libFuzzer target; FUZZ_ENTRY names the function of fuzz_entries.h that
// gets the input (one executable is built per entry).
#include "fuzz_entries.h"

#include <QGuiApplication>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static QGuiApplication app(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, unsigned long size) {
    Vantora_TesserinePro::fuzzing::FUZZ_ENTRY(data, size);
    return 0;
}
