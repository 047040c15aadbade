#pragma once
// Holder of a drawing-library image handle; only handles of 1 and above are
// valid.

#include "core/types.h"

#include <memory>
#include <string>

namespace Vantora_TesserinePro {
namespace nano2d {
class context;
}

class ImageWrap {
  public:
    ImageWrap() = default;
    ImageWrap(nano2d::context*, std::string file_name) : file_name(std::move(file_name)) {}
    ImageWrap(nano2d::context*, const char* file_name) : file_name(file_name ? file_name : "") {}
    ~ImageWrap() { releaseImage(); }
    ImageWrap(const ImageWrap&) = default;
    ImageWrap& operator=(const ImageWrap&) = default;

    // Loads file_name once a context exists; tried again while it fails.
    void defer_load_image(nano2d::context* context);
    // Hands pixels to the library, reusing the handle while the size holds.
    // flags tell the pixel layout (nano2d::image_flags_for); 0 is the
    // drawing targets' premultiplied ARGB32.
    void setData(nano2d::context* context, int width, int height, const void* pixels, int stride,
                 int flags = 0);
    void setData(nano2d::context* context, const image* img);
    // Forgets the handle; the library is not told.
    void releaseImage() {
        handle = -1;
        file_name.clear();
    }

    int handle = -1;
    std::string file_name;
};

// Scope object: while it lives, the caller's context variable points at a
// context that draws into target; the destructor puts the old one back.
class OffscreenDraw {
  public:
    OffscreenDraw(nano2d::context*& context, image* target);
    ~OffscreenDraw();
    OffscreenDraw(const OffscreenDraw&) = delete;
    OffscreenDraw& operator=(const OffscreenDraw&) = delete;

  private:
    nano2d::context* m_saved;
    nano2d::context** m_variable;
    std::unique_ptr<nano2d::context> m_own;
};

} // namespace Vantora_TesserinePro
