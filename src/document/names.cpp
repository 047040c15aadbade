#include "document/names.h"

#include <QString>

#include <cstdlib>

namespace Vantora_TesserinePro {

namespace {
bool holds_name(const string_array& names, const string& candidate) {
    const QString c = QString::fromStdString(candidate);
    for (const auto& n : names)
        if (QString::fromStdString(n).compare(c, Qt::CaseInsensitive) == 0) return true;
    return false;
}
} // namespace

string _001GetNewName(const string& prefix, long long number, const string_array& names) {
    const long long limit = number < 1000 ? 999 : number;
    string result;
    for (long long candidate = number + 1; candidate != limit + 1; ++candidate) {
        result = prefix + std::to_string(candidate);
        if (!holds_name(names, result)) return result;
    }
    return result;
}

string _001IncrementName(const string& name, const string& fallback, const string_array& names) {
    const std::u32string chars = QString::fromStdString(name).toStdU32String();
    if (chars.empty()) return _001GetNewName(fallback, 0, names);
    std::size_t k = chars.size();
    while (k > 0 && QChar::isDigit(char32_t(chars[k - 1])))
        --k;
    if (k == chars.size()) return _001GetNewName(name, 0, names);
    if (k > 1) {
        const std::u32string head = chars.substr(0, k);
        const QString digits = QString::fromStdU32String(chars.substr(k));
        // Non-ASCII digits count as digits but read as 0, as atoi would.
        const long long number = std::atoll(digits.toStdString().c_str());
        return _001GetNewName(QString::fromStdU32String(head).toStdString(), number, names);
    }
    return _001GetNewName(fallback, std::atoi(name.c_str()), names);
}

} // namespace Vantora_TesserinePro
