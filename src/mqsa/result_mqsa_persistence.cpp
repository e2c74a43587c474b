#include <algorithm>
#include <stdexcept>

#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/survey_cells.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "mqsa/result_mqsa.h"

namespace vorex {

namespace {

constexpr std::string_view kClassName = "CResultMQSA";

std::string ReadText(const IXmlElement& parent, std::string_view name) {
    return parent.ReadValue(name, {});
}

std::string AnswerOfToday(const std::string& answer) {
    for (std::string_view textKey : {text::kPass, text::kFalse})
        if (EqualsIgnoringCase(answer, DefaultText(textKey, {}))) return Translate(textKey);
    return answer;
}

std::string JoinedGrid(const SurveyGrid& grid, GridId id) {
    const GridRow& row = GridRowOf(id);
    std::vector<std::string> cells;
    for (int32_t r = 0; r < row.savedRows; ++r)
        for (int32_t c = 0; c < row.columns; ++c) cells.push_back(SavedCell(id, r, c, grid.At(r, c)));
    return JoinCells(cells);
}

template <std::size_t rows>
std::string JoinedTable(const std::array<VerdictRow, rows>& table) {
    std::vector<std::string> cells;
    for (const VerdictRow& row : table) cells.insert(cells.end(), row.begin(), row.end());
    return JoinCells(cells);
}

template <std::size_t rows>
void FillTable(std::array<VerdictRow, rows>& table, std::string_view name, std::string_view text) {
    if (text.empty()) return;
    const std::vector<std::string> cells = SplitCells(name, text, rows * 2);
    for (std::size_t i = 0; i < rows * 2; ++i) table[i / 2][i % 2] = cells[i];
}

}  // namespace

std::shared_ptr<IXmlElement> CResultMQSA::Save(const std::shared_ptr<IXmlDocument>& owner) {
    const auto element = owner->CreateElement(tag::kResultItem);
    if (!element) RaiseHostError(kErrorResultSave, kClassName, 4, {std::string(tag::kResultItem)});
    if (mMtiId > 0) element->SetAttribute(tag::kMti, PlainText(mMtiId));
    const auto add = [&](const std::shared_ptr<IXmlElement>& child) {
        if (child) element->AddChild(child);
    };
    add(Services().codec->WriteStatus(owner, mStatus, mStatusExtra));
    if (!mComment.empty()) element->AddValue(tag::kComment, mComment);
    const StatusCells& cells = Cells();
    for (const survey::StatusCellRow& row : survey::kStatusCells)
        element->AddValue(row.key, PlainText(cells.*row.cell));
    if (mServiceRecord) add(mServiceRecord->Save(owner));
    if (mStatus != kNotTested && mStatus != kNotApplicable)
        for (const auto& item : mItems) add(item->Save(owner));
    SaveGroups(owner, *element);
    element->AddValue(survey::kSummaryPage, JoinedTable(mTables.summary));
    element->AddValue(survey::kPreliminaryResults, JoinedTable(mTables.preliminary));
    element->AddValue(survey::kResultComment, JoinCells({mRecord.comments.begin(), mRecord.comments.end()}));
    return element;
}

void CResultMQSA::SaveGroups(const std::shared_ptr<IXmlDocument>& owner, IXmlElement& element) const {
    std::size_t field = 0;
    for (const SurveyGroupRow& group : survey::kGroups) {
        std::shared_ptr<IXmlElement> own;
        if (!group.name.empty()) {
            own = owner->CreateElement(group.name);
            if (!own) RaiseHostError(kErrorConfigurationSave, kClassName, 3, {std::string(group.name)});
        }
        IXmlElement& into = own ? *own : element;
        for (const SurveyFieldRow& row : group.fields) {
            const std::string& text = mRecord.fields[field++];
            into.AddValue(row.key, row.kind == FieldKind::kTrimmed ? Trimmed(text) : std::string_view(text));
        }
        for (GridId grid : group.grids) into.AddValue(GridKey(grid), JoinedGrid(mRecord.Grid(grid), grid));
        if (own) element.AddChild(own);
    }
}

void CResultMQSA::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (log != nullptr) log->Position(tag::kResultItem, Translate(text::kLoadingResultData));
    if (element->Name() != tag::kResultItem)
        RaiseHostError(kErrorResultMissing, kClassName, 4,
                       {std::string(kClassName), "found \"" + std::string(element->Name()) + "\""});
    if (const std::string_view mti = element->GetAttribute(tag::kMti); !mti.empty())
        mMtiId = ReadInteger(mti);
    try {
        for (const auto& child : element->Children()) LoadChild(child, log);
    } catch (const std::runtime_error& error) {
        if (log != nullptr) log->LogMessage(kErrorResultMissing, 4, error.what());
        throw;
    }
}

void CResultMQSA::LoadChild(const std::shared_ptr<IXmlElement>& child, IProgressLog* log) {
    const std::string_view name = child->Name();
    if (name == tag::kComment) {
        mComment = child->Text();
    } else if (name == tag::kStatus) {
        Services().codec->ReadStatus(*child, mStatus, mStatusExtra);
    } else if (name == tag::kServiceRecord) {
        if (!Services().createServiceRecord) return;
        mServiceRecord = Services().createServiceRecord();
        mServiceRecord->Load(child);
    } else if (name == tag::kMeasurement) {
        LoadItem(child, log);
    } else if (name == survey::kSummaryPage) {
        FillTable(mTables.summary, name, child->Text());
    } else if (name == survey::kPreliminaryResults) {
        FillTable(mTables.preliminary, name, child->Text());
    } else if (name == survey::kResultComment) {
        const std::vector<std::string> parts = SplitCells(child->Text());
        std::copy_n(parts.begin(), std::min(parts.size(), mRecord.comments.size()), mRecord.comments.begin());
    } else if (!LoadCell(*child)) {
        for (const SurveyGroupRow& group : survey::kGroups) {
            if (group.name == name) LoadGroup(group, *child);
            if (group.name.empty() && GridKey(group.grids.front()) == name)
                LoadGrid(group.grids.front(), child->Text());
        }
    }
}

bool CResultMQSA::LoadCell(const IXmlElement& child) {
    for (const survey::StatusCellRow& row : survey::kStatusCells) {
        if (row.key != child.Name()) continue;
        mCells.*row.cell = ReadInteger(child.Text());
        return true;
    }
    return false;
}

void CResultMQSA::LoadItem(const std::shared_ptr<IXmlElement>& child, IProgressLog* log) {
    const std::string_view key = child->GetAttribute(tag::kKey);
    const auto item =
        std::find_if(mItems.begin(), mItems.end(), [&](const auto& at) { return at->RawKey() == key; });
    if (item == mItems.end()) return;
    const std::string description = (*item)->RawDescription();
    (*item)->Load(child, log);
    if (child->FindChild(tag::kDescription).empty()) (*item)->Description(description);
}

void CResultMQSA::LoadGroup(const SurveyGroupRow& group, const IXmlElement& element) {
    for (const SurveyFieldRow& row : group.fields)
        mRecord.fields[FieldIndex(group, row)] = ReadText(element, row.key);
    if (group.page == SurveyPage::kGeneral) mRecord.BuildDates();
    for (GridId grid : group.grids)
        for (const auto& saved : element.FindChild(GridKey(grid))) LoadGrid(grid, saved->Text());
}

void CResultMQSA::LoadGrid(GridId id, std::string_view text) {
    if (text.empty()) return;  // as if the grid were absent
    const GridRow& row = GridRowOf(id);
    SurveyGrid& grid = mRecord.Grid(id);
    const auto count = static_cast<std::size_t>(row.savedRows) * static_cast<std::size_t>(row.columns);
    std::vector<std::string> cells = SplitCells(GridKey(id), text, count);
    auto cell = cells.begin();
    for (int32_t r = 0; r < row.savedRows; ++r)
        for (int32_t c = 0; c < row.columns; ++c, ++cell) {
            if (IsIn(row.numbers, r, c)) *cell = Val_WR(*cell);
            if (IsIn(row.answers, r, c)) *cell = AnswerOfToday(*cell);
            grid.At(r, c) = std::move(*cell);
        }
    mRecord.WriteLabels(id);
    if (id == GridId::kImageQuality) ReadScores();
}

}  // namespace vorex
