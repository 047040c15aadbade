#include "render/image_wrap.h"

#include "document/app_layer.h"
#include "render/draw2d_context.h"
#include "render/nano2d.h"

namespace Vantora_TesserinePro {

void ImageWrap::adopt(nano2d::context* context, int new_handle) {
    handle = new_handle;
    m_owner = context->image_owner();
}

void ImageWrap::releaseImage() {
    if (handle >= 1)
        if (auto owner = m_owner.lock()) owner->forget_image(handle);
    handle = -1;
    file_name.clear();
    m_owner.reset();
}

void ImageWrap::defer_load_image(nano2d::context* context) {
    if (context && handle < 1 && !file_name.empty())
        adopt(context, context->load_image(file_name, 0));
}

void ImageWrap::setData(nano2d::context* context, int width, int height, const void* pixels,
                        int stride, int flags) {
    if (!context) return;
    // A handle made by another library means nothing to this one (two
    // windows draw the same layers): make a new one here.
    if (handle >= 1 && m_owner.lock() != context->image_owner()) releaseImage();
    // A handle of another size cannot take the pixels: give it back and
    // create one more; a library that refuses twice leaves the wrap without
    // one.
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (handle < 1) {
            adopt(context, context->create_image(width, height, flags, pixels, stride));
            if (handle < 1) continue;
        }
        int w = 0, h = 0;
        if (context->read_image_size(handle, w, h) && w == width && h == height) {
            context->update_image(handle, pixels);
            return;
        }
        releaseImage();
    }
}

void ImageWrap::setData(nano2d::context* context, const image* img) {
    if (!img || img->isNull()) return;
    setData(context, img->width(), img->height(), img->constBits(), int(img->bytesPerLine()),
            nano2d::image_flags_for(img->format()));
}

OffscreenDraw::OffscreenDraw(nano2d::context*& context, image* target)
    : m_saved(context), m_variable(&context) {
    if (context) {
        m_own = context->make_offscreen(target);
    } else if (target && !target->isNull()) {
        m_own = std::make_unique<nano2d::draw2d_context>(target);
    } else {
        m_own = std::make_unique<nano2d::draw2d_context>();
    }
    context = m_own.get();
}

OffscreenDraw::~OffscreenDraw() {
    *m_variable = m_saved;
    m_own.reset();
}

ImageWrap* app_layer::get_nano2d_image(nano2d::context* context) {
    image_wrap.setData(context, offscreen.get());
    return &image_wrap;
}

} // namespace Vantora_TesserinePro
