#include "render/image_writers.h"

#include "core/save_stream.h"

#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <vector>

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

// Qt's image writers write to a device; this one hands the bytes on to a
// stream that puts the file in place only when all of it was written.
class stream_device : public QIODevice {
  public:
    explicit stream_device(save_stream& out) : m_out(out) { open(QIODevice::WriteOnly); }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        m_out.write(data, std::size_t(size));
        return m_out.good() ? size : -1;
    }

  private:
    save_stream& m_out;
};

bool write_with_qt(const QImage& img, const char* format, int quality, save_stream& out) {
    stream_device device(out);
    QImageWriter writer(&device, format);
    if (quality >= 0) writer.setQuality(quality);
    return writer.write(img);
}

// The frame over opaque black. Premultiplied colour over black is the colour
// channels as they stand, so a premultiplied frame is only read as RGB32,
// whose fourth byte no writer reads: no copy. Another format is painted
// over black.
QImage over_black(const image& img) {
    if (img.format() == QImage::Format_ARGB32_Premultiplied || img.format() == QImage::Format_RGB32)
        return QImage(img.constBits(), img.width(), img.height(), img.bytesPerLine(),
                      QImage::Format_RGB32);
    QImage flat(img.size(), QImage::Format_RGB32);
    flat.fill(Qt::black);
    QPainter(&flat).drawImage(0, 0, img);
    return flat;
}

// Little-endian fields of the TGA and BMP headers.
void put16(unsigned char* out, unsigned v) {
    out[0] = (unsigned char)(v & 0xFF);
    out[1] = (unsigned char)((v >> 8) & 0xFF);
}
void put32(unsigned char* out, std::uint32_t v) {
    put16(out, v & 0xFFFF);
    put16(out + 2, v >> 16);
}

// Each row of img, bottom first (the origin every reader of TGA and BMP
// knows), as B G R bytes (and A with four channels) padded with zeros to
// row_bytes. Made straight ARGB32 a band of rows at a time, so that colours
// come out as Qt un-premultiplies them elsewhere.
template <int Channels>
void write_rows_bottom_first(const image& img, std::size_t row_bytes, save_stream& out) {
    std::vector<unsigned char> bytes(row_bytes, 0);
    constexpr int band = 64;
    for (int bottom = img.height(); bottom > 0 && out.good(); bottom -= band) {
        const int rows = std::min(band, bottom), top = bottom - rows;
        const QImage part =
            QImage(img.constScanLine(top), img.width(), rows, img.bytesPerLine(), img.format())
                .convertToFormat(QImage::Format_ARGB32);
        for (int y = rows - 1; y >= 0; --y) {
            const auto* src = reinterpret_cast<const QRgb*>(part.constScanLine(y));
            for (int x = 0; x < img.width(); ++x) {
                unsigned char* b = &bytes[std::size_t(x) * Channels];
                b[0] = (unsigned char)qBlue(src[x]);
                b[1] = (unsigned char)qGreen(src[x]);
                b[2] = (unsigned char)qRed(src[x]);
                if constexpr (Channels == 4) b[3] = (unsigned char)qAlpha(src[x]);
            }
            out.write(bytes.data(), bytes.size());
        }
    }
}

// Uncompressed 32 bits, B G R A, with the TGA 2.0 footer.
bool write_tga(const image& img, save_stream& out) {
    const int w = img.width();
    unsigned char header[18] = {};
    header[2] = 2; // uncompressed true colour
    put16(header + 12, unsigned(w));
    put16(header + 14, unsigned(img.height()));
    header[16] = 32;   // bits per pixel
    header[17] = 0x08; // 8 alpha bits, bottom-left origin
    out.write(header, sizeof header);
    write_rows_bottom_first<4>(img, std::size_t(w) * 4, out);
    out.write(tga_footer, sizeof tga_footer);
    return true;
}

// 24 bits, B G R, rows padded to four bytes, the resolution of the image
// (72 dpi when it has none): the file Qt's writer makes of a frame, which it
// makes from a whole straight copy of it.
bool write_bmp(const image& img, save_stream& out) {
    const int w = img.width(), h = img.height();
    const std::size_t row = (std::size_t(w) * 3 + 3) / 4 * 4;
    const std::uint64_t pixels = std::uint64_t(row) * std::uint64_t(h);
    if (pixels + 54 > 0xFFFFFFFFu) return false;
    unsigned char header[54] = {'B', 'M'};
    put32(header + 2, std::uint32_t(54 + pixels));
    put32(header + 10, 54); // where the pixels start
    put32(header + 14, 40); // the size of the info header
    put32(header + 18, std::uint32_t(w));
    put32(header + 22, std::uint32_t(h));
    put16(header + 26, 1);  // planes
    put16(header + 28, 24); // bits per pixel
    put32(header + 34, std::uint32_t(pixels));
    const auto per_metre = [](int d) { return std::uint32_t(d > 0 ? d : 2834); };
    put32(header + 38, per_metre(img.dotsPerMeterX()));
    put32(header + 42, per_metre(img.dotsPerMeterY()));
    out.write(header, sizeof header);
    write_rows_bottom_first<3>(img, row, out);
    return true;
}

} // namespace

bool write_frame_image(const image& img, frame_file_kind kind, bool black_background,
                       const std::string& path, std::string* error) {
    const auto fail = [error](const std::string& why) {
        if (error) *error = why;
        return false;
    };
    if (kind == frame_file_kind::psd || kind == frame_file_kind::none)
        return fail("no image writer for this extension");
    if (img.isNull() ||
        (kind == frame_file_kind::tga && (img.width() > 0xFFFF || img.height() > 0xFFFF)))
        return fail("the image could not be encoded");
    save_stream out(path);
    bool encoded = false;
    switch (kind) {
    case frame_file_kind::png:
        encoded = write_with_qt(black_background ? over_black(img) : img, "png", -1, out);
        break;
    case frame_file_kind::tga:
        encoded = write_tga(img, out);
        break;
    case frame_file_kind::bmp:
        encoded = write_bmp(img, out);
        break;
    case frame_file_kind::jpg:
        encoded = write_with_qt(img, "jpg", 90, out);
        break;
    default:
        break;
    }
    // Nothing half written takes the place of the old file; a failed disk
    // write says why, a writer that failed on its own does not.
    if (encoded && out.commit()) return true;
    return fail(out.error().empty() ? "the image could not be encoded" : out.error());
}

} // namespace Vantora_TesserinePro
