#pragma once
// The document: the stack of layers (index 0 at the bottom) and the ends
// counter that numbers data path ports across all layers.

#include "core/types.h"

#include <QSize>

namespace Vantora_TesserinePro {

class app_layer;

class project {
  public:
    virtual ~project() = default;

    pointer_array<app_layer>& get_layers() { return layers; }
    const pointer_array<app_layer>& get_layers() const { return layers; }
    long long get_layers_count() const { return (long long)layers.size(); }

    virtual pointer<image> create_image(const QSize& size);

    pointer_array<app_layer> layers;
    std::int32_t ends_counter = 0;
};

} // namespace Vantora_TesserinePro
