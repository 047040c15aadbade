#include "document/boxes_layer.h"

#include <cmath>

namespace Vantora_TesserinePro {

long long boxes_layer::powered_cabinets() const {
    long long cabinets = (long long)Rows * (long long)Columns;
    if (SkipBlankBoxes) cabinets -= (long long)ExcludeBoxes.size();
    return cabinets;
}

float boxes_layer::calculate_power() const {
    // Single precision throughout, as the figure has always been shown.
    return float(PowerWatts) * float(powered_cabinets()) /
           (std::sqrt(float(PowerPhases)) * float(PowerVolts));
}

} // namespace Vantora_TesserinePro
