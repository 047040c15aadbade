#include "document/boxes_layer.h"

#include <cmath>

namespace Vantora_TesserinePro {

float boxes_layer::calculate_power() const {
    long long cabinets = (long long)Rows * (long long)Columns;
    if (SkipBlankBoxes) cabinets -= (long long)ExcludeBoxes.size();
    // Single precision throughout, as the figure has always been shown.
    return float(PowerWatts) * float(cabinets) /
           (std::sqrt(float(PowerPhases)) * float(PowerVolts));
}

} // namespace Vantora_TesserinePro
