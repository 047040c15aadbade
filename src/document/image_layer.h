#pragma once
// A picture on the raster, kept in the project as a hexadecimal encoded
// image file.

#include "document/app_layer.h"

namespace Vantora_TesserinePro {

class image_layer : public app_layer {
  public:
    // --- lifecycle and copying
    image_layer() = default;
    pointer<app_layer> clone() const override;

    // --- geometry
    int get_width() const override { return width; }
    int get_height() const override { return height; }
    int get_full_width() const override { return get_width(); }
    int get_full_height() const override { return get_height(); }
    enum_layer get_layer_type() const override { return e_layer_image; }
    int get_real_width() const { return real_width; }
    int get_real_height() const { return real_height; }
    bool getMaintainAspectRatio() const { return maintain_aspect_ratio; }
    void setMaintainAspectRatio(bool value);
    void set_width(int value);
    void set_height(int value);

    // --- the picture
    pointer<image> get_image() const { return picture; }
    void set_image(pointer<image> img);
    void on_image_loaded();
    void freeIfNeeded();
    // Throws std::runtime_error("image failed to load") when the file is
    // not a picture.
    void load_from_file(const string& path);
    void load_from_hex_data(const string& hex);
    string getImageAsHex() const;

    // --- parameter text
    void apply_parameter_by_name(const string& key, const string& value) override;
    property_set get_all_parameters() const override;

    // --- drawing
    void build_frame(nano2d::context* context, error_callback on_error) override;

    pointer<image> picture;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t real_width = 0;
    std::int32_t real_height = 0;
    float aspect_ratio = 1.0f;
    bool maintain_aspect_ratio = true;
};

// Lets Qt's image reader decode pictures as large as the program can draw;
// every decoding path calls it before reading.
void allow_large_pictures();
// Decodes a picture file's bytes (PNG, JPG, BMP, TGA); null when they are none.
pointer<image> decode_image(const QByteArray& bytes);
// Loads a picture file; null when it cannot be read or decoded.
pointer<image> load_image_file(const string& path);

} // namespace Vantora_TesserinePro
