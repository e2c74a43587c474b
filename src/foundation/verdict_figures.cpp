#include "foundation/verdict_figures.h"

#include "foundation/number_text.h"
#include "foundation/text_keys.h"
#include "foundation/utilities.h"

namespace vorex {

std::string VerdictFigure::Words() const {
    static constexpr std::string_view kWords[] = {text::kShowAtMost, text::kShowAtLeast, survey_text::kBelow};
    return Translate(kWords[static_cast<std::size_t>(bound)]) + " " + PlainText(figure) +
           (unit.empty() ? "" : " " + Translate(unit));
}

std::string VerdictFigure::Excluding(const std::string& found) const {
    return Translate(survey_text::kFindingValue, {Translate(name), found, Words(), Translate(clause)});
}

}  // namespace vorex
