#include "export/psd_saver.h"

#include "document/app_layer.h"
#include "core/save_stream.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#if defined(__linux__)
#endif

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace Vantora_TesserinePro {

namespace {

// Leading compression word of every channel array (0 = raw).
constexpr std::size_t channel_head = 2;
// A layer's record up to its Unicode name block.
constexpr std::size_t layer_record_size = 82;
constexpr std::size_t name_field = 15;

#if defined(__SSE2__)
// Byte `Shift / 8` of 16 RGBA pixels held in four registers.
template <int Shift> __m128i channel_of(__m128i p0, __m128i p1, __m128i p2, __m128i p3) {
    const __m128i low = _mm_set1_epi32(0xFF);
    auto take = [&](__m128i p) { return _mm_and_si128(_mm_srli_epi32(p, Shift), low); };
    // Each value fits a byte, so the saturating packs keep it as it is.
    return _mm_packus_epi16(_mm_packs_epi32(take(p0), take(p1)),
                            _mm_packs_epi32(take(p2), take(p3)));
}

inline void load16(const unsigned char* src, __m128i& p0, __m128i& p1, __m128i& p2, __m128i& p3) {
    p0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    p1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 16));
    p2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 32));
    p3 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 48));
}

inline void store16(unsigned char* dst, __m128i v) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), v);
}
#endif

// Splits n straight RGBA pixels into channel planes; with Alpha false the
// alpha byte is dropped (a may be null). Layers run to millions of pixels,
// so sixteen at a time where the processor allows.
template <bool Alpha>
void split_channels(const unsigned char* src, std::size_t n, unsigned char* r, unsigned char* g,
                    unsigned char* b, unsigned char* a) {
    std::size_t i = 0;
#if defined(__SSE2__)
    for (; i + 16 <= n; i += 16) {
        __m128i p0, p1, p2, p3;
        load16(src + 4 * i, p0, p1, p2, p3);
        store16(r + i, channel_of<0>(p0, p1, p2, p3));
        store16(g + i, channel_of<8>(p0, p1, p2, p3));
        store16(b + i, channel_of<16>(p0, p1, p2, p3));
        if constexpr (Alpha) store16(a + i, channel_of<24>(p0, p1, p2, p3));
    }
#endif
    for (; i < n; ++i) {
        r[i] = src[4 * i];
        g[i] = src[4 * i + 1];
        b[i] = src[4 * i + 2];
        if constexpr (Alpha) a[i] = src[4 * i + 3];
    }
}

void split_rgba(const unsigned char* src, std::size_t n, unsigned char* r, unsigned char* g,
                unsigned char* b, unsigned char* a) {
    split_channels<true>(src, n, r, g, b, a);
}

void split_rgb(const unsigned char* src, std::size_t n, unsigned char* r, unsigned char* g,
               unsigned char* b) {
    split_channels<false>(src, n, r, g, b, nullptr);
}

struct channel_rows {
    unsigned char *r, *g, *b, *a;
    std::size_t stride; // pixels per row of the layer
    unsigned char* row(unsigned char* base, std::size_t y) const { return base + y * stride; }
};

// Rows y0 .. y0 + rows of img (its first width pixels; all by default) as
// straight RGBA. Qt converts the band, so colours come out exactly as Qt
// un-premultiplies them elsewhere, and the extra memory stays small.
QImage straight_rows(const QImage& img, int y0, int rows, int width = -1) {
    if (width < 0) width = img.width();
    // Without a colour table the rows are read in place.
    const QImage source = img.colorCount() > 0 ? img.copy(0, y0, width, rows)
                                               : QImage(img.constScanLine(y0), width, rows,
                                                        img.bytesPerLine(), img.format());
    return source.format() == QImage::Format_RGBA8888
               ? source
               : source.convertToFormat(QImage::Format_RGBA8888);
}

// Copies the part of img that lies inside the layer's width and height into
// the channels; what the image does not cover stays transparent.
void copy_image(const QImage& img, const channel_rows& dst, std::size_t width, std::size_t height) {
    const std::size_t w = std::min<std::size_t>(width, std::size_t(img.width()));
    const std::size_t h = std::min<std::size_t>(height, std::size_t(img.height()));
    if (w == 0 || h == 0) return;
    auto dest = [&](std::size_t y, const unsigned char* src) {
        split_rgba(src, w, dst.row(dst.r, y), dst.row(dst.g, y), dst.row(dst.b, y),
                   dst.row(dst.a, y));
    };
    constexpr int band = 32;
    for (std::size_t y0 = 0; y0 < h; y0 += band) {
        const int rows = int(std::min<std::size_t>(band, h - y0));
        const QImage part = straight_rows(img, int(y0), rows, int(w));
        for (int i = 0; i < rows; ++i)
            dest(y0 + std::size_t(i), part.constScanLine(i));
    }
}

channel_rows rows_of(PSDSaver::layinfo_desc_t& d) {
    return {d.red.data() + channel_head, d.green.data() + channel_head,
            d.blue.data() + channel_head, d.alpha.data() + channel_head, d.width};
}

// The name as the file's fixed field holds it: 15 bytes, padded with spaces.
void name_field_of(const string& name, char out[name_field]) {
    std::memset(out, ' ', name_field);
    std::memcpy(out, name.data(), std::min(name.size(), name_field));
}

// The whole name as UTF-16, for the Unicode name block ('luni') that readers
// take over the fixed field, which is cut and padded.
std::u16string unicode_name_of(const string& name) {
    return QString::fromUtf8(name.data(), qsizetype(name.size())).toStdU16String();
}

// The block's data: the count of UTF-16 units, the units, then zeros up to a
// multiple of four bytes.
std::size_t unicode_name_data_size(const std::u16string& name) {
    return (4 + 2 * name.size() + 3) / 4 * 4;
}

// A layer's record: the fixed fields, then the Unicode name block.
std::size_t record_size(const std::u16string& name) {
    return layer_record_size + 12 + unicode_name_data_size(name);
}

} // namespace

void PSDSaver::layinfo_desc_t::resize(std::size_t count) {
    for (auto* channel : {&red, &green, &blue, &alpha})
        channel->assign(count + channel_head, 0);
}

void PSDSaver::layinfo_desc_t::addRGBA(const unsigned char* pixels, std::size_t count) {
    resize(count);
    if (!pixels) return;
    split_rgba(pixels, count, red.data() + channel_head, green.data() + channel_head,
               blue.data() + channel_head, alpha.data() + channel_head);
}

void PSDSaver::add_layer(const pointer<app_layer>& layer, std::optional<long long> x) {
    if (!layer) return;
    const pointer<image> offscreen = layer->get_offscreen();
    if (!offscreen || offscreen->isNull()) return;
    layinfo_desc_t d;
    d.x = static_cast<std::uint32_t>(x ? *x : layer->get_offset_x());
    d.y = static_cast<std::uint32_t>(layer->get_offset_y());
    d.width = std::uint32_t(std::max(layer->get_full_width(), 0));
    d.height = std::uint32_t(std::max(layer->get_full_height(), 0));
    // A size no offscreen image can have is a stale layer, not a picture.
    if (std::uint64_t(d.width) * d.height > max_image_pixels) return;
    d.resize(std::size_t(d.width) * d.height);
    copy_image(*offscreen, rows_of(d), d.width, d.height);
    d.name = layer->get_name();
    if (d.name.empty()) d.name = "NoName";
    m_layers.push_back(std::move(d));
}

void PSDSaver::add_layer(unsigned x, unsigned y, unsigned width, unsigned height,
                         const unsigned char* pixels, int stride, const string& name) {
    if (std::uint64_t(width) * height > max_image_pixels) return;
    layinfo_desc_t d;
    d.x = x;
    d.y = y;
    d.width = width;
    d.height = height;
    d.resize(std::size_t(width) * height);
    if (pixels) {
        const channel_rows dst = rows_of(d);
        for (std::size_t row = 0; row < height; ++row)
            split_rgba(pixels + std::ptrdiff_t(row) * stride, width, dst.row(dst.r, row),
                       dst.row(dst.g, row), dst.row(dst.b, row), dst.row(dst.a, row));
    }
    d.name = name.empty() ? string("NoName") : name;
    m_layers.push_back(std::move(d));
}

bool PSDSaver::savePSD(const unsigned char* pixels, int width, int height, int stride,
                       const file::path& path) {
    m_error.clear();
    if (!pixels || width <= 0 || height <= 0 || std::int64_t(stride) < 4ll * width) {
        m_error = "no composite image to write";
        return false;
    }
    return savePSD(QImage(pixels, width, height, stride, QImage::Format_RGBA8888), path);
}

bool PSDSaver::savePSD(const QImage& composite, const file::path& path) {
    m_error.clear();
    if (composite.isNull()) {
        m_error = "no composite image to write";
        return false;
    }
    const int width = composite.width(), height = composite.height();
    // The layer section's lengths are 32-bit fields: a stack they cannot
    // describe is refused rather than written with wrapped lengths.
    std::vector<std::u16string> names;
    std::uint64_t total = 0;
    for (const auto& d : m_layers) {
        names.push_back(unicode_name_of(d.name));
        total += record_size(names.back()) + d.alpha.size() + d.red.size() + d.green.size() +
                 d.blue.size();
    }
    if (total + 10 > std::numeric_limits<std::uint32_t>::max() || m_layers.size() > 0x7FFF) {
        m_error = "the layers are too large for a PSD file";
        return false;
    }

    save_stream out(path.string());

    // File header, then empty colour mode data and image resources.
    out.put_bytes("8BPS", 4);
    out.put_u16(1);
    out.put_bytes("\0\0\0\0\0\0", 6);
    out.put_u16(3);
    out.put_u32(std::uint32_t(height));
    out.put_u32(std::uint32_t(width));
    out.put_u16(8);
    out.put_u16(3);
    out.put_u32(0);
    out.put_u32(0);

    // Layer and mask section. The layer information length also takes in
    // the four bytes of the global mask length that close the section.
    out.put_u32(std::uint32_t(total + 10));
    out.put_u32(std::uint32_t(total + 6));
    out.put_u16(unsigned(m_layers.size()));
    for (std::size_t i = 0; i < m_layers.size(); ++i) {
        const layinfo_desc_t& d = m_layers[i];
        const std::u16string& unicode = names[i];
        out.put_u32(d.y);
        out.put_u32(d.x);
        out.put_u32(d.y + d.height);
        out.put_u32(d.x + d.width);
        out.put_u16(4);
        out.put_u16(0xFFFF);
        out.put_u32(std::uint32_t(d.alpha.size()));
        out.put_u16(0);
        out.put_u32(std::uint32_t(d.red.size()));
        out.put_u16(1);
        out.put_u32(std::uint32_t(d.green.size()));
        out.put_u16(2);
        out.put_u32(std::uint32_t(d.blue.size()));
        out.put_bytes("8BIMnorm", 8);
        out.put_u8(255); // opacity
        out.put_u8(0);   // clipping
        out.put_u8(0);   // flags
        out.put_u8(0);   // filler
        // Extra data: mask and blending lengths, the name, its Unicode block.
        const std::size_t unicode_size = unicode_name_data_size(unicode);
        out.put_u32(std::uint32_t(24 + 12 + unicode_size));
        out.put_u32(0);
        out.put_u32(0);
        out.put_u8(name_field);
        char name[name_field];
        name_field_of(d.name, name);
        out.put_bytes(name, name_field);
        // Blocks follow the name at once: a byte between would be read as
        // the start of a block.
        out.put_bytes("8BIMluni", 8);
        out.put_u32(std::uint32_t(unicode_size));
        out.put_u32(std::uint32_t(unicode.size()));
        for (char16_t unit : unicode)
            out.put_u16(unit);
        for (std::size_t pad = 4 + 2 * unicode.size(); pad < unicode_size; ++pad)
            out.put_u8(0);
    }
    for (const auto& d : m_layers)
        for (const auto* channel : {&d.alpha, &d.red, &d.green, &d.blue})
            out.write(channel->data(), channel->size());
    out.put_u32(0); // global layer mask

    // Merged image: raw red, green and blue planes; the composite's alpha is
    // not part of it. The composite is read once, a band of rows at a time
    // (made straight RGBA, a band at a time), and each band's three plane
    // pieces go to their places in the file.
    out.put_u16(0);
    const std::uint64_t plane = std::uint64_t(width) * std::uint64_t(height);
    const std::uint64_t planes_at = out.position();
    const std::size_t band = std::max<std::size_t>(1, (std::size_t(1) << 18) / std::size_t(width));
    std::vector<unsigned char> pieces(3 * band * std::size_t(width));
    for (std::size_t y0 = 0; y0 < std::size_t(height) && out.good(); y0 += band) {
        const std::size_t rows = std::min(band, std::size_t(height) - y0);
        const std::size_t piece = rows * std::size_t(width);
        unsigned char* r = pieces.data();
        unsigned char* g = r + piece;
        unsigned char* b = g + piece;
        const QImage straight = straight_rows(composite, int(y0), int(rows));
        for (std::size_t i = 0; i < rows; ++i)
            split_rgb(straight.constScanLine(int(i)), std::size_t(width),
                      r + i * std::size_t(width), g + i * std::size_t(width),
                      b + i * std::size_t(width));
        const std::uint64_t at = planes_at + y0 * std::uint64_t(width);
        out.write_at(at, r, piece);
        out.write_at(at + plane, g, piece);
        out.write_at(at + 2 * plane, b, piece);
    }
    if (!out.commit()) {
        m_error = out.error();
        return false;
    }
    return true;
}

} // namespace Vantora_TesserinePro
