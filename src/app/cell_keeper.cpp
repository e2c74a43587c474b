#include "app/cell_keeper.h"

#include <algorithm>

#include "app/elements.h"
#include "files/element_file.h"
#include "foundation/test_sets.h"
#include "mqsa/result_mqsa.h"

namespace vorex {

namespace {

StatusCells SavedCells(const ITestElement& element) {
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element.Result());
    return survey ? survey->Cells() : StatusCells();
}

}  // namespace

CellKeeper::CellKeeper(const ElementFile& file) : mFile(file) {
    std::vector<Entry> entries;
    Visit(file.Elements(), entries);
    for (const Entry& entry : entries)
        if (entry.survey) mSurveyOf[entry.element] = *entry.survey;
}

CellKeeper::Level CellKeeper::Visit(const Elements& elements, std::vector<Entry>& entries) {
    Level level;
    for (const auto& element : elements) {
        const Place place = entries.size();
        entries.push_back({element.get(), {}});
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element)) {
            const Level below = Visit(container->NewEnum(), entries);
            level.tests.insert(level.tests.end(), below.tests.begin(), below.tests.end());
            level.surveys.insert(level.surveys.end(), below.surveys.begin(), below.surveys.end());
        } else if (element->TestID() == kMqsaSurvey) {
            entries[place].survey = mCells.size();
            mCells.push_back(SavedCells(*element));
            level.surveys.push_back(place);
        } else if (kMammography.Has(element->TestID())) {
            level.tests.push_back(place);
        }
    }
    if (level.surveys.empty()) return level;
    for (const Place test : level.tests) {
        const auto next = std::upper_bound(level.surveys.begin(), level.surveys.end(), test);
        entries[test].survey = entries[next == level.surveys.end() ? level.surveys.back() : *next].survey;
    }
    level.tests.clear();
    return level;
}

void CellKeeper::Enter(const ITestElement& element) {
    const auto at = mSurveyOf.find(&element);
    if (at == mSurveyOf.end() || mPresent == at->second) return;
    if (mPresent) mCells[*mPresent] = State().cells;
    mPresent = at->second;
    State().cells = mCells[*mPresent];
}

void CellKeeper::HandOut() {
    for (const auto& element : SurveysOf(mFile.Elements())) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (!survey) continue;
        Enter(*element);
        survey->TakeStatusCells();
    }
}

}  // namespace vorex
