// An image layer's frame: its picture stretched to the layer's size.

#include "core/diagnostics.h"
#include "document/image_layer.h"
#include "render/image_wrap.h"
#include "render/nano2d.h"

namespace Vantora_TesserinePro {

void image_layer::build_frame(nano2d::context* context, error_callback) {
    if (!picture || picture->isNull() || get_width() == 0 || get_height() == 0 ||
        picture->width() == 0 || picture->height() == 0)
        return;
    pointer<image> target =
        request_offscreen((unsigned long)get_width(), (unsigned long)get_height());
    if (!target) {
        // Left out of the frame; the user is not told.
        diagnostics_printf("%d offscreen return nil\n", 359);
        return;
    }
    ImageWrap source(nullptr, "");
    source.setData(context, picture->width(), picture->height(), picture->constBits(),
                   int(picture->bytesPerLine()), nano2d::image_flags_for(picture->format()));
    {
        OffscreenDraw draw(context, target.get());
        if (source.handle >= 1) {
            const nano2d::paint stretched = context->image_pattern(
                source.handle, 0.0f, 0.0f, float(get_width()), float(get_height()), 0.0f, 1.0f);
            context->begin_path();
            context->rectangle(0.0f, 0.0f, float(get_width()), float(get_height()));
            context->fill_paint(stretched);
            context->fill();
        }
    }
    // The handle was made for this one frame: the wrap gives it back as it
    // goes.
}

} // namespace Vantora_TesserinePro
