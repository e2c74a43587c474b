#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "mqsa/result_mqsa.h"

/// Entering a survey without its form. A place has an address: "Collimation.SID" is a field,
/// "DeviXrayLightField(2,1)" a cell by row and column from 0, "Comment(3)" the comment of a page, "PR1" an
/// answer.
namespace vorex {

/// An address or a text that the survey does not accept; the message says what was expected.
class SurveyEntryError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

enum class PlaceKind : uint8_t { kTyped, kCalculated, kAnswer, kDate };

/// One place of the survey as a list shows it.
struct SurveyPlace {
    SurveyPage page;
    std::string address;
    std::string meaning;
    std::string value;
    PlaceKind kind;
    std::string saved = value;  ///< as a file holds it, the same in every language
};

/// Stores a text at an address and recalculates the page that it is on. When it throws SurveyEntryError,
/// nothing has changed. Returns a warning for a text that is stored but may not count as meant; empty for
/// none.
std::string SetSurveyText(CResultMQSA& survey, std::string_view address, std::string_view text);
/// Throws SurveyEntryError for a whole date that the calendar does not have: its parts are entered one by
/// one.
void CheckSurveyDates(const CResultMQSA& survey);
/// Answers an item with Pass, Fail or NA, in English or in today's language, whatever the case.
void AnswerSurvey(CResultMQSA& survey, std::string_view item, std::string_view answer);
/// Every place, page by page.
std::vector<SurveyPlace> ListSurvey(const CResultMQSA& survey);

}  // namespace vorex
