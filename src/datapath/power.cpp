#include "document/boxes_layer.h"

#include <cmath>

namespace Vantora_TesserinePro {

Snake::quarter_watts::quarter_watts(const boxes_layer& layer)
    : full(std::int64_t(layer.PowerWatts) * 4), last_column(std::int64_t(layer.Columns) - 1),
      last_row(std::int64_t(layer.Rows) - 1), half_first_column(layer.HalfColumns[0]),
      half_last_column(layer.HalfColumns[1]), half_first_row(layer.HalfColumns[2]),
      half_last_row(layer.HalfColumns[3]) {}

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
