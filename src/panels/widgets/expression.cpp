#include "panels/widgets/expression.h"

#include <muParser.h>

#include <cmath>
#include <limits>

namespace Vantora_TesserinePro {

double calc_expression(const std::string& text) {
    try {
        mu::Parser parser;
        parser.SetExpr(text);
        const double value = parser.Eval();
        return std::isnan(value) ? 0.0 : value;
    } catch (const mu::Parser::exception_type&) {
        return 0.0;
    }
}

unsigned int calc_dimension(const std::string& text) {
    const double value = calc_expression(text);
    if (!(value > 0)) return 0;
    if (value >= double(std::numeric_limits<unsigned int>::max()))
        return std::numeric_limits<unsigned int>::max();
    return unsigned(value);
}

float calc_float_dimension(const std::string& text) {
    const float value = float(calc_expression(text));
    return value > 0 ? value : 0.0f;
}

} // namespace Vantora_TesserinePro
