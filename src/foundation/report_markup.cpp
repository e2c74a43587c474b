#include "foundation/report_markup.h"

#include <algorithm>

#include "foundation/number_text.h"

namespace vorex::markup {

std::string Text(std::string_view text) {
    std::string cell;
    cell.reserve(text.size());
    for (char c : text) {
        if (kSpecials.find(c) != std::string_view::npos) cell += kEscape;
        cell += c;
    }
    return cell;
}

std::string Heading(std::string_view text) {
    return kCell + std::string(kHeadingBegin) + Text(text) + std::string(kHeadingEnd);
}

std::string Line(std::string_view text) {
    return kCell + Text(text) + kRowEnd;
}

std::string Number(std::string_view number, const IReportDocument& report) {
    std::string shown(number);
    const char sign = report.DecimalSign();
    const char other = sign == ',' ? '.' : ',';
    if (number.find(other) == std::string_view::npos) return shown;
    const bool starred = number.ends_with('*');
    if (IsNumber(starred ? number.substr(0, number.size() - 1) : number))
        std::replace(shown.begin(), shown.end(), other, sign);
    return shown;
}

}  // namespace vorex::markup
