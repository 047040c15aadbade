#pragma once
// What each fuzz target feeds its input to. The same functions run over the
// kept corpus and the regression inputs in the ordinary test suite.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Vantora_TesserinePro::fuzzing {

// Project and preset file text through the file reader, then the writer.
void project_file(const std::uint8_t* data, std::size_t size);
// One layer record through both layer kinds, then their writers and the route.
void layer_record(const std::uint8_t* data, std::size_t size);
// Custom path text, its writer and the custom route.
void custom_path(const std::uint8_t* data, std::size_t size);
// The raster label record and the lines it draws.
void raster_label(const std::uint8_t* data, std::size_t size);
// Image "Data": the bytes as hexadecimal text, decoded and encoded again.
void image_data(const std::uint8_t* data, std::size_t size);

struct target {
    const char* name;
    void (*run)(const std::uint8_t*, std::size_t);
};
const std::vector<target>& targets();

} // namespace Vantora_TesserinePro::fuzzing
