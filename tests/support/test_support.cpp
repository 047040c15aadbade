#include "support/test_support.h"

#include "core/diagnostics.h"

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

struct capture_diagnostics::impl {
    std::ostringstream stream;
};

capture_diagnostics::capture_diagnostics() : m(new impl) {
    set_diagnostics_out(&m->stream);
}
capture_diagnostics::~capture_diagnostics() {
    set_diagnostics_out(nullptr);
    delete m;
}
std::string capture_diagnostics::text() const {
    return m->stream.str();
}

} // namespace Vantora_TesserinePro::testing
