#pragma once
// Holder of a drawing-library image handle; only handles of 1 and above are
// valid.

#include "core/types.h"

#include <memory>
#include <string>

namespace Vantora_TesserinePro {
namespace nano2d {
class context;
class handle_owner;
} // namespace nano2d

class ImageWrap {
  public:
    ImageWrap() = default;
    ImageWrap(nano2d::context*, std::string file_name) : file_name(std::move(file_name)) {}
    ImageWrap(nano2d::context*, const char* file_name) : file_name(file_name ? file_name : "") {}
    ~ImageWrap() { releaseImage(); }
    // A handle is given back once: a wrap is not copied.
    ImageWrap(const ImageWrap&) = delete;
    ImageWrap& operator=(const ImageWrap&) = delete;

    // Loads file_name once a context exists; tried again while it fails.
    void defer_load_image(nano2d::context* context);
    // Hands pixels to the library, reusing the handle while the size and
    // the library hold. flags tell the pixel layout
    // (nano2d::image_flags_for); 0 is the drawing targets' premultiplied
    // ARGB32.
    void setData(nano2d::context* context, int width, int height, const void* pixels, int stride,
                 int flags = 0);
    void setData(nano2d::context* context, const image* img);
    // Gives the handle back to the library that made it, so that no handle
    // is left pointing at pixels that are gone, and forgets it.
    void releaseImage();
    void swap(ImageWrap& other) noexcept {
        std::swap(handle, other.handle);
        file_name.swap(other.file_name);
        m_owner.swap(other.m_owner);
    }

    int handle = -1;
    std::string file_name;

  private:
    // Takes a handle just made by context.
    void adopt(nano2d::context* context, int new_handle);
    // The library of the handle; expired or null when it is not known.
    std::weak_ptr<nano2d::handle_owner> m_owner;
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
