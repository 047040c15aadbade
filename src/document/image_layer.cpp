#include "document/image_layer.h"

#include "document/global.h"
#include "render/image_writers.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include <cstdlib>
#include <stdexcept>

namespace Vantora_TesserinePro {

void allow_large_pictures() {
    // Qt refuses to decode a picture of more than 128 MiB, which a project
    // record holds easily (an 8000 by 6000 photograph): the picture would
    // be lost without a word. Allow every picture whose pixels fit the
    // drawable limit, at up to 8 bytes a pixel (16-bit channels). A 32-bit
    // build keeps Qt's cap: it could not hold more.
    static const bool once = [] {
        if constexpr (sizeof(void*) >= 8)
            QImageReader::setAllocationLimit(int((max_image_pixels * 8) >> 20));
        return true;
    }();
    (void)once;
}

pointer<image> decode_image(const QByteArray& bytes) {
    if (bytes.isEmpty()) return nullptr;
    allow_large_pictures();
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    QImage img = reader.read();
    if (img.isNull()) {
        // TGA has no signature to sniff, and Qt's reader only takes files
        // with the version 2 footer: older files get one added.
        QByteArray with_footer = bytes;
        if (!bytes.endsWith(QByteArray(tga_footer + 8, 18)))
            with_footer.append(tga_footer, sizeof tga_footer);
        QBuffer tga_buffer(&with_footer);
        tga_buffer.open(QIODevice::ReadOnly);
        QImageReader tga(&tga_buffer, "tga");
        img = tga.read();
    }
    if (img.isNull() || img.width() <= 0 || img.height() <= 0) return nullptr;
    // Straight ARGB keeps every 8-bit picture exact, so saving it again as
    // PNG gives back the same pixels; drawing converts as it needs.
    return std::make_shared<image>(img.convertToFormat(QImage::Format_ARGB32));
}

pointer<image> load_image_file(const string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) return nullptr;
    return decode_image(file.readAll());
}

pointer<app_layer> image_layer::clone() const {
    auto copy = std::make_shared<image_layer>();
    copy->set_references(global, get_project());
    copy->apply_layer_info(get_layer_info());
    return copy;
}

void image_layer::setMaintainAspectRatio(bool value) {
    maintain_aspect_ratio = value;
    set_changed();
}

void image_layer::set_width(int value) {
    width = value;
    if (maintain_aspect_ratio) height = int(float(value) / aspect_ratio);
    set_changed();
}

void image_layer::set_height(int value) {
    height = value;
    if (maintain_aspect_ratio) width = int(float(value) * aspect_ratio);
    set_changed();
}

void image_layer::set_image(pointer<image> img) {
    picture = std::move(img);
    on_image_loaded();
}

void image_layer::on_image_loaded() {
    if (picture) {
        real_width = picture->width();
        real_height = picture->height();
        aspect_ratio =
            (real_width != 0 && real_height != 0) ? float(real_width) / float(real_height) : 1.0f;
    } else {
        real_width = 0;
        real_height = 0;
        aspect_ratio = 1.0f;
    }
    set_changed();
}

void image_layer::freeIfNeeded() {
    picture.reset();
    width = height = real_width = real_height = 0;
}

void image_layer::load_from_file(const string& path) {
    pointer<image> img = load_image_file(path);
    if (img) {
        picture = img;
        on_image_loaded();
        return;
    }
    freeIfNeeded();
    throw std::runtime_error("image failed to load");
}

namespace {
int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
} // namespace

void image_layer::load_from_hex_data(const string& hex) {
    // Pairs of hexadecimal digits, either case; decoding ends at the first
    // character that is none.
    QByteArray bytes;
    bytes.reserve(qsizetype(hex.size() / 2));
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        const int hi = hex_digit(hex[i]);
        const int lo = hex_digit(hex[i + 1]);
        if (hi < 0 || lo < 0) break;
        bytes.append(char(hi * 16 + lo));
    }
    if (bytes.isEmpty()) return;
    pointer<image> img = decode_image(bytes);
    if (!img) {
        freeIfNeeded();
        return;
    }
    picture = img;
    on_image_loaded();
}

string image_layer::getImageAsHex() const {
    if (!picture || picture->isNull()) return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    // Lossless, so a save and a load give back the same pixels.
    picture->save(&buffer, "PNG");
    return bytes.toHex().toUpper().toStdString();
}

void image_layer::apply_parameter_by_name(const string& key, const string& value) {
    if (key == "Width") {
        width = std::atoi(value.c_str());
    } else if (key == "Height") {
        height = std::atoi(value.c_str());
    } else if (key == "Data") {
        load_from_hex_data(value);
    } else if (key == "AspectRatio") {
        maintain_aspect_ratio = std::atoi(value.c_str()) != 0;
        set_changed();
    }
}

property_set image_layer::get_all_parameters() const {
    property_set set;
    set.set("Width", get_width());
    set.set("Height", get_height());
    set.set("Data", getImageAsHex());
    set.set("AspectRatio", maintain_aspect_ratio ? "1" : "0");
    return set;
}

} // namespace Vantora_TesserinePro
