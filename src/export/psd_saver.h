#pragma once
// Writes the workspace as a layered Photoshop file: 8 bits, RGB, raw.

#include "core/file_path.h"
#include "core/types.h"

#include <vector>

namespace Vantora_TesserinePro {

class app_layer;

class PSDSaver {
public:
    struct layinfo_desc_t {
        std::uint32_t x = 0, y = 0, width = 0, height = 0;
        // Each channel: two bytes of compression (0 = raw), then the pixels.
        std::vector<unsigned char> red, green, blue, alpha;
        string name;

        void resize(std::size_t count);
        // Straight RGBA pixels, top row first.
        void addRGBA(const unsigned char* pixels, std::size_t count);
    };

    void add_layer(const pointer<app_layer>& layer);
    // pixels: straight RGBA, top row first, stride in bytes.
    void add_layer(unsigned x, unsigned y, unsigned width, unsigned height,
                   const unsigned char* pixels, int stride, const string& name);
    // pixels: the finished composite as straight RGBA. Returns false when the
    // file could not be written (nothing of it is left behind then).
    bool savePSD(const unsigned char* pixels, int width, int height, int stride,
                 const file::path& path);

    const std::vector<layinfo_desc_t>& layers() const { return m_layers; }

private:
    std::vector<layinfo_desc_t> m_layers;
};

} // namespace Vantora_TesserinePro
