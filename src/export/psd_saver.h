#pragma once
// Writes the workspace as a layered Photoshop file: 8 bits, RGB, raw. Each
// layer carries its whole name in a Unicode name block beside the fixed
// 15-byte field.
// Frame composition creates one for a save, adds the composed layers bottom
// first, then hands it the finished composite.

#include "core/file_path.h"
#include "core/large_allocator.h"
#include "core/types.h"

#include <optional>
#include <vector>

namespace Vantora_TesserinePro {

class app_layer;

class PSDSaver {
  public:
    using channel = std::vector<unsigned char, large_allocator<unsigned char>>;

    struct layinfo_desc_t {
        // x and y keep a negative offset as its two's complement bits.
        std::uint32_t x = 0, y = 0, width = 0, height = 0;
        // Each channel: two bytes of compression (0 = raw), then the pixels,
        // top row first, exactly as the file holds it.
        channel red, green, blue, alpha;
        string name;

        // All four channels to count pixels (plus the compression word), zero.
        void resize(std::size_t count);
        // count straight RGBA pixels, one after the other.
        void addRGBA(const unsigned char* pixels, std::size_t count);
    };

    // Copies a layer's offscreen image (premultiplied, as drawn) as straight
    // colour at the layer's offset and full size. Null layers and layers
    // without an offscreen image are left out.
    // At x when given (a rear frame's mirrored place), else at the layer's offset.
    void add_layer(const pointer<app_layer>& layer, std::optional<long long> x = std::nullopt);
    // pixels: straight RGBA, top row first, stride in bytes.
    void add_layer(unsigned x, unsigned y, unsigned width, unsigned height,
                   const unsigned char* pixels, int stride, const string& name);
    // composite: the finished frame in any format (a frame is premultiplied
    // as drawn), made straight a band of rows at a time. Returns false when
    // the file could not be written (nothing of it is left behind then, and
    // an old file stays whole).
    bool savePSD(const QImage& composite, const file::path& path);
    // pixels: the composite as straight RGBA, top row first, stride in bytes.
    bool savePSD(const unsigned char* pixels, int width, int height, int stride,
                 const file::path& path);
    // Why the last savePSD failed.
    const string& last_error() const { return m_error; }

    const std::vector<layinfo_desc_t>& layers() const { return m_layers; }

  private:
    std::vector<layinfo_desc_t> m_layers;
    string m_error;
};

} // namespace Vantora_TesserinePro
