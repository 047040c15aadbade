#include "document/project.h"

namespace Vantora_TesserinePro {

pointer<image> project::create_image(const QSize& size) {
    auto img = std::make_shared<image>(size, image_format);
    if (img->isNull()) return nullptr;
    return img;
}

} // namespace Vantora_TesserinePro
