#include "mqsa/result_mqsa.h"

#include <algorithm>
#include <stdexcept>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "guide/dialog_wrapper.h"
#include "mqsa/survey_calculations.h"

namespace vorex {

namespace {

constexpr std::string_view kCommentControl = "VorexZRD47500Test.XDetailedResult";

/// Columns of the sheet of answers.
struct Answer {
    std::string_view text;
    int32_t status;
};
constexpr uint8_t kPassColumn = 2;
constexpr uint8_t kFailColumn = 3;

Answer AnswerOf(uint8_t column) {
    if (column == kPassColumn) return {text::kPass, kPassed};
    if (column == kFailColumn) return {text::kFail, kFailed};
    return {text::kNotApplicable, kNotApplicable};
}

std::string_view WordOf(int32_t status) {
    if (status == kPassed) return text::kPass;
    return status == kFailed ? text::kFail : text::kNotApplicable;
}

void Give(CMeasurement& item, const Answer& answer) {
    item.Value(Translate(answer.text));
    item.Status(answer.status);
}

/// The status of all answers together: NA does not count, and one Fail decides.
int32_t StatusOfAnswers(const std::vector<std::shared_ptr<CMeasurement>>& items) {
    int32_t status = kNotApplicable;
    for (const auto& item : items) {
        if (item->Status() == kNotTested) return kNotTested;
        if (item->Status() == kFailed) status = kFailed;
        if (item->Status() == kPassed && status != kFailed) status = kPassed;
    }
    return status;
}

}  // namespace

void CResultMQSA::Initialize(const std::shared_ptr<CConfigMQSA>& configuration) {
    mConfig = configuration;
    mItems.clear();
    for (const SurveyItem& row : SurveyItems()) {
        auto item = std::make_shared<CMeasurement>();
        item->Initialize(row.key, row.description, {}, kTextOnly);
        mItems.push_back(std::move(item));
    }
    if (!mConfig) return;
    SurveyGrid& grid = mRecord.Grid(GridId::kLightField);
    for (int32_t row = 0; row < CConfigMQSA::kCollimationRows; ++row)
        for (int32_t column = 0; column < CConfigMQSA::kTableColumns; ++column)
            grid.At(row, column) = mConfig->Collimation(row, column);
}

void CResultMQSA::MQSAClickHandle(uint8_t row, uint8_t column) {
    Give(*mItems.at(row), AnswerOf(column));
    mStatus = StatusOfAnswers(mItems);
}

std::vector<std::string> CResultMQSA::GetDescriptions() const {
    if (mItems.empty()) throw std::logic_error("the survey has no items before Initialize");
    std::vector<std::string> descriptions;
    for (const auto& item : mItems) descriptions.push_back(item->Description());
    return descriptions;
}

void CResultMQSA::TestNotApp() {
    for (const auto& item : mItems)
        if (item->ValueText().empty()) Give(*item, {text::kNotApplicable, kNotApplicable});
}

void CResultMQSA::pUpdateMQSATestStatus() {
    if (mStatus == kNotApplicable) return;
    mStatus = mItems.empty() ? kNotTested : StatusOfAnswers(mItems);
}

std::string CResultMQSA::Val_WR(std::string_view value) {
    return LocaleDecimal(value);
}

ItemStatuses CResultMQSA::Statuses() const {
    ItemStatuses statuses{};
    for (std::size_t i = 0; i < mItems.size(); ++i) statuses.at(i) = mItems[i]->Status();
    return statuses;
}

void CResultMQSA::UpdateStatus(ITestElement& owner, const ISelectedStandards* /*selected*/,
                               bool notApplicable) {
    if (notApplicable) {
        mStatus = kNotApplicable;
    } else {
        for (const auto& item : mItems) {
            if (item->Status() == kPassed || item->Status() == kFailed) mStatus = item->Status();
            if (item->Status() == kFailed) break;
        }
    }
    mFault = EvaluateSurvey(mRecord, Statuses(), mCells, mTables).fault;
    UpdateServiceRecord(owner);
}

void CResultMQSA::CopyStatusCells() {
    vorex::CopyStatusCells(mCells, mTables);
}

void CResultMQSA::UpdateServiceRecord(const ITestElement& owner) {
    const auto info = owner.Info();
    const bool keeps = info && (info->ServiceFlags() & kKeepServiceRecord) != 0;
    if (!keeps || mStatus == kNotTested || !Services().createServiceRecord) return;
    std::string code = mStatus == kFailed ? "F" : "";
    std::string list;
    if (mStatus == kNotApplicable) {
        code = "NA";
    } else {
        for (const auto& item : mItems)
            if (item->Status() != kNotTested)
                list.append("/").append(DefaultText(WordOf(item->Status()), {}));
    }
    mServiceRecord = Services().createServiceRecord();
    mServiceRecord->Initialize(code, list);
}

std::shared_ptr<IMeasurement> CResultMQSA::Measurement(int32_t index) const {
    if (index < 0 || index >= MeasurementCount()) return nullptr;
    const CMeasurement& item = *mItems[static_cast<std::size_t>(index)];
    auto copy = std::make_shared<CMeasurement>();
    copy->Initialize(item.RawKey(), item.Description(), UnitText(item.RawUnit()), item.ValueType());
    copy->Value(item.RawValue());
    copy->Status(item.Status());
    return copy;
}

std::shared_ptr<IMeasurement> CResultMQSA::Measurement(std::string_view key) const {
    const auto at =
        std::find_if(mItems.begin(), mItems.end(), [&](const auto& item) { return item->RawKey() == key; });
    return at == mItems.end() ? nullptr : Measurement(static_cast<int32_t>(at - mItems.begin()));
}

std::shared_ptr<IDialog> CResultMQSA::CreateDialog() {
    auto wrapper = std::make_shared<FDialogWrapper>();
    if (!wrapper->CreateSetupCtrl(kCommentControl)) return nullptr;
    wrapper->Initialize(shared_from_this());
    return wrapper;
}

void CResultMQSA::ReadScores() {
    const SurveyGrid& grid = mRecord.Grid(GridId::kImageQuality);
    mFiber = grid.At(14, 2);
    mSpeck = grid.At(17, 2);
    mMass = grid.At(20, 2);
}

void CResultMQSA::GridChanged(GridId id) {
    SurveyGrid& grid = mRecord.Grid(id);
    for (const CellArea& area : GridRowOf(id).spacers)
        for (int32_t row = area.firstRow; row <= area.lastRow; ++row)
            for (int32_t column = area.firstColumn; column <= area.lastColumn; ++column)
                if (grid.IsBlank(row, column)) grid.At(row, column) = " ";
    Recalculate(mRecord, id);
    if (id == GridId::kImageQuality) ReadScores();
}

void CResultMQSA::RecalculatePages() {
    RecalculateAll(mRecord);
    ReadScores();
}

}  // namespace vorex
