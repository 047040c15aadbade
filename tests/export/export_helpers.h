#pragma once
// Helpers of the export tests: byte strings built field by field, small
// workspaces with offscreen images filled by hand, and a file size limit
// that makes writes fail part way.

#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"
#include "export/psd_saver.h"

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <sys/resource.h>

namespace Vantora_TesserinePro::testing {

// Big-endian fields appended one after the other.
struct bytes {
    std::string s;
    bytes& u8(unsigned v) {
        s += char(v & 0xFF);
        return *this;
    }
    bytes& u16(unsigned v) { return u8(v >> 8).u8(v); }
    bytes& u32(std::uint32_t v) { return u16(v >> 16).u16(v & 0xFFFF); }
    bytes& text(const std::string& t) {
        s += t;
        return *this;
    }
    bytes& list(std::initializer_list<unsigned> values) {
        for (unsigned v : values)
            u8(v);
        return *this;
    }
    bytes& repeat(unsigned v, std::size_t n) {
        s.append(n, char(v));
        return *this;
    }
};

// A channel array as plain bytes, to compare.
inline std::vector<unsigned char> plain(const PSDSaver::channel& c) {
    return std::vector<unsigned char>(c.begin(), c.end());
}

// The 34 bytes before the layer section of a PSD of width by height.
inline std::string psd_head(std::uint32_t width, std::uint32_t height) {
    return bytes{}
        .text("8BPS")
        .u16(1)
        .repeat(0, 6)
        .u16(3)
        .u32(height)
        .u32(width)
        .u16(8)
        .u16(3)
        .u32(0)
        .u32(0)
        .s;
}

// A screen layer of columns by rows cabinets of cabinet by cabinet pixels,
// at the top of the stack, with its offscreen image filled with one
// premultiplied ARGB value.
inline pointer<boxes_layer> add_screen(Global& global, const std::string& name, int x, int y,
                                       int columns, int rows, int cabinet = 2) {
    auto layer = std::static_pointer_cast<boxes_layer>(global.create_layer(e_layer_boxes));
    layer->set_name(name);
    layer->Columns = columns;
    layer->Rows = rows;
    layer->Width = cabinet;
    layer->Height = cabinet;
    layer->set_offset_x(x);
    layer->set_offset_y(y);
    global.insert_layer_at(layer, -1);
    return layer;
}

inline pointer<image_layer> add_picture(Global& global, const std::string& name, int x, int y,
                                        int width, int height) {
    auto layer = std::static_pointer_cast<image_layer>(global.create_layer(e_layer_image));
    layer->set_name(name);
    layer->width = width;
    layer->height = height;
    layer->set_offset_x(x);
    layer->set_offset_y(y);
    global.insert_layer_at(layer, -1);
    return layer;
}

// Gives the layer an offscreen image of its full size where pixel (x, y)
// holds pixel(x, y), a premultiplied ARGB value.
template <class F> void paint_offscreen(app_layer& layer, F&& pixel) {
    pointer<image> img = layer.request_offscreen(unsigned(layer.get_full_width()),
                                                 unsigned(layer.get_full_height()));
    for (int y = 0; y < img->height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img->scanLine(y));
        for (int x = 0; x < img->width(); ++x)
            line[x] = pixel(x, y);
    }
}

// While alive, files of this process cannot grow beyond limit bytes: a
// write past it fails instead of raising SIGXFSZ.
class file_size_limit {
  public:
    explicit file_size_limit(rlim_t limit) {
        m_old_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit now = m_old;
        now.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~file_size_limit() {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_old_handler);
    }
    file_size_limit(const file_size_limit&) = delete;
    file_size_limit& operator=(const file_size_limit&) = delete;

  private:
    rlimit m_old{};
    void (*m_old_handler)(int) = nullptr;
};

// Names of the files in a folder, to see that nothing was left behind.
inline QStringList files_in(const QTemporaryDir& dir) {
    return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace Vantora_TesserinePro::testing
