#include "panels/about.h"

namespace Vantora_TesserinePro {

About::About(QWidget* parent, Global* global) : SettingsBaseWindow(parent, global, "About") {
    resize(456, 360);
    // Not in the layout file: it closes at every refresh of the palettes.
    set_stored_visible(false);
}

} // namespace Vantora_TesserinePro
