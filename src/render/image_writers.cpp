#include "render/image_writers.h"

#include "core/atomic_file.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>

#include <cstring>

namespace Vantora_TesserinePro {

frame_file_kind frame_file_kind_for(const std::string& extension) {
    if (extension == "png") return frame_file_kind::png;
    if (extension == "tga") return frame_file_kind::tga;
    if (extension == "bmp") return frame_file_kind::bmp;
    if (extension == "jpg") return frame_file_kind::jpg;
    if (extension == "psd") return frame_file_kind::psd;
    return frame_file_kind::none;
}

namespace {

std::string encode_with_qt(const image& img, const char* format, int quality) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (quality >= 0) writer.setQuality(quality);
    if (!writer.write(img)) return {};
    return std::string(bytes.constData(), std::size_t(bytes.size()));
}

void put16(std::string& out, std::size_t at, unsigned v) {
    out[at] = char(v & 0xFF);
    out[at + 1] = char((v >> 8) & 0xFF);
}

} // namespace

std::string encode_tga(const image& img) {
    if (img.isNull() || img.width() > 0xFFFF || img.height() > 0xFFFF) return {};
    const QImage straight = img.convertToFormat(QImage::Format_ARGB32);
    const int w = straight.width(), h = straight.height();
    const std::size_t row = std::size_t(w) * 4;
    std::string out(18 + row * std::size_t(h) + sizeof tga_footer, '\0');
    out[2] = 2; // uncompressed true colour
    put16(out, 12, unsigned(w));
    put16(out, 14, unsigned(h));
    out[16] = 32;   // bits per pixel
    out[17] = 0x08; // 8 alpha bits, bottom-left origin
    char* pixels = out.data() + 18;
    for (int y = 0; y < h; ++y) {
        const auto* src = reinterpret_cast<const QRgb*>(straight.constScanLine(h - 1 - y));
        char* dst = pixels + row * std::size_t(y);
        if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
            // 0xAARRGGBB in memory is B, G, R, A: the TGA order already.
            std::memcpy(dst, src, row);
        } else {
            for (int x = 0; x < w; ++x) {
                dst[4 * x] = char(qBlue(src[x]));
                dst[4 * x + 1] = char(qGreen(src[x]));
                dst[4 * x + 2] = char(qRed(src[x]));
                dst[4 * x + 3] = char(qAlpha(src[x]));
            }
        }
    }
    std::memcpy(out.data() + 18 + row * std::size_t(h), tga_footer, sizeof tga_footer);
    return out;
}

std::string encode_png(const image& img, bool black_background) {
    if (img.isNull()) return {};
    if (!black_background) return encode_with_qt(img, "png", -1);
    // The frame over opaque black: what the wall shows where nothing is.
    QImage flat(img.size(), QImage::Format_RGB32);
    flat.fill(Qt::black);
    {
        QPainter painter(&flat);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.drawImage(0, 0, img);
    }
    return encode_with_qt(flat, "png", -1);
}

std::string encode_bmp(const image& img) {
    return img.isNull() ? std::string() : encode_with_qt(img, "bmp", -1);
}

std::string encode_jpg(const image& img, int quality) {
    return img.isNull() ? std::string() : encode_with_qt(img, "jpg", quality);
}

bool write_frame_image(const image& img, frame_file_kind kind, bool black_background,
                       const std::string& path, std::string* error) {
    std::string bytes;
    switch (kind) {
    case frame_file_kind::png:
        bytes = encode_png(img, black_background);
        break;
    case frame_file_kind::tga:
        bytes = encode_tga(img);
        break;
    case frame_file_kind::bmp:
        bytes = encode_bmp(img);
        break;
    case frame_file_kind::jpg:
        bytes = encode_jpg(img, 90);
        break;
    case frame_file_kind::psd:
    case frame_file_kind::none:
        if (error) *error = "no image writer for this extension";
        return false;
    }
    if (bytes.empty()) {
        if (error) *error = "the image could not be encoded";
        return false;
    }
    return write_file_atomically(path, bytes, error);
}

} // namespace Vantora_TesserinePro
