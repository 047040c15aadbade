#include "document/boxes_layer.h"

#include <cmath>

namespace Vantora_TesserinePro {

Snake::half_cuts::half_cuts(const boxes_layer& layer)
    : last_column(std::int64_t(layer.Columns) - 1), last_row(std::int64_t(layer.Rows) - 1),
      cut_first_column(layer.HalfColumns[0]), cut_last_column(layer.HalfColumns[1]),
      cut_first_row(layer.HalfColumns[2]), cut_last_row(layer.HalfColumns[3]) {}

Snake::quarter_watts::quarter_watts(const boxes_layer& layer)
    : full(std::int64_t(layer.PowerWatts) * 4), cuts(layer) {}

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
