#include "support/test_support.h"

#include <fstream>
#include <iostream>
#include <sstream>

namespace Vantora_TesserinePro::testing {

bool write_file(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), std::streamsize(bytes.size()));
    return bool(out);
}

std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

std::string golden(const std::string& name) {
    return read_file(std::string(TESSERINE_TEST_DATA) + "/" + name);
}

::testing::AssertionResult matches_golden(const std::string& got, const std::string& name) {
    const std::string wanted = golden(name);
    if (got == wanted) return ::testing::AssertionSuccess();
    write_file(name + ".actual", got);
    std::size_t at = 0;
    while (at < got.size() && at < wanted.size() && got[at] == wanted[at])
        ++at;
    return ::testing::AssertionFailure()
           << name << " differs from byte " << at << " on (" << got.size() << " bytes, golden "
           << wanted.size() << "): got \"" << got.substr(at, 60) << "\", golden \""
           << wanted.substr(at, 60) << "\"; the bytes got are in " << name << ".actual";
}

} // namespace Vantora_TesserinePro::testing
