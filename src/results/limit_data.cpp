#include "results/limit_data.h"

#include <algorithm>
#include <span>
#include <stdexcept>

#include "config/config_common.h"
#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "guide/dialog_wrapper.h"
#include "results/result_columns.h"

namespace vorex {

/// How the unit of a limit row is formed.
enum class LimitUnit { kNone, kPercent, kMmAl, kKv, kMa, kMas, kRatePerTime, kDose, kOutput, kAirKerma };

/// A row of the limit editor, and a limit of a new standard.
struct LimitRow {
    std::string_view key;
    std::string_view description;
    LimitUnit unit;
    std::span<const LimitExpression> forms;  ///< offered by the editor, in its order
    bool renewsUnit = false;                 ///< old standards take the present unit
};

namespace {

constexpr std::string_view kClassName = "CLimitData";
constexpr std::string_view kLimitEditor = "VorexView.XLimitView";

using Form = LimitExpression;
constexpr Form kPlain[] = {Form::kValue};
constexpr Form kRelative[] = {Form::kOffset, Form::kPercent};
constexpr Form kVariation[] = {Form::kVariation, Form::kValue};

// clang-format off
/// Rows of every test but the survey and the group.
constexpr LimitRow kReadingRows[] = {
    {key::kErKvpAvg,           text::kKvpAvg,           LimitUnit::kNone, kRelative},
    {key::kErKvpMax,           text::kKvpMax,           LimitUnit::kNone, kRelative},
    {key::kErKvPpv,            text::kKvPpv,            LimitUnit::kNone, kRelative},
    {key::kErExposure,         text::kExposure,         LimitUnit::kNone, kVariation},
    {key::kErExposureRate,     text::kExposureRate,     LimitUnit::kNone, kPlain},
    {key::kErExposureTime,     text::kExposureTime,     LimitUnit::kNone, kPlain},
    {key::kErExposureInPulses, text::kExposureInPulses, LimitUnit::kNone, kPlain},
    {key::kErHvl,              text::kHvl,              LimitUnit::kMmAl, kPlain},
};
constexpr LimitRow kAccuracyRows[] = {
    {key::kPercentTimerError,  text::kPercentTimerError,    LimitUnit::kPercent, kPlain},
    {key::kPercentKvpError,    text::kPercentKvpAvgError,   LimitUnit::kPercent, kPlain},
    {key::kAbsoluteKvpError,   text::kAbsoluteKvpAvgError,  LimitUnit::kKv,      kPlain, true},
};
constexpr LimitRow kLinearityRows[] = {
    {key::kErAdjacent,         text::kAdjacentLinearity,    LimitUnit::kNone,    kPlain},
    {key::kErNonAdjacent,      text::kNonAdjacentLinearity, LimitUnit::kNone,    kPlain},
};
constexpr LimitRow kOldHvlRows[] = {
    {key::kCriterionHvl,       "",                          LimitUnit::kMmAl,    kPlain},
};
constexpr LimitRow kFluoroAccuracyRows[] = {
    {key::kFluoroKvpError,     text::kPercentKvpAvgError,   LimitUnit::kPercent, kPlain},
};
constexpr LimitRow kFluoroExposureRows[] = {
    {key::kMaxExposureRate,    text::kMaxExposureRate,      LimitUnit::kRatePerTime, kPlain},
};
constexpr LimitRow kMammoAccReproRows[] = {
    {key::kPercentError,       text::kPercentKvpAvgError,   LimitUnit::kPercent, kPlain},
    {key::kCv,                 text::kCvForKvpAvg,          LimitUnit::kNone,    kPlain},
};
constexpr LimitRow kOldMammoHvlRows[] = {
    {key::kMqsaHvl,            "",                          LimitUnit::kMmAl,    kPlain},
    {key::kAcrHvl,             "",                          LimitUnit::kMmAl,    kPlain},
};
constexpr LimitRow kMammoAecRows[] = {
    {key::kCvExposure,         text::kCvForExposure,        LimitUnit::kNone,    kPlain, true},
    {key::kCvMasSettings,      text::kCvForMas,             LimitUnit::kNone,    kPlain, true},
    {key::kGlandularDose,      text::kGlandularDose,        LimitUnit::kDose,    kPlain, true},
};
constexpr LimitRow kMammoRadiationRows[] = {
    {key::kOutputRate,         text::kExposureRate,         LimitUnit::kOutput,  kPlain, true},
    {key::kAirKermaRate,       text::kAirKermaRate,         LimitUnit::kAirKerma, kPlain, true},
};
/// Rows of every test but the survey, after its own.
constexpr LimitRow kMasRows[] = {
    {key::kMa,                 text::kMa,                   LimitUnit::kMa,      kPlain},
    {key::kMas,                text::kMas,                  LimitUnit::kMas,     kPlain},
    {key::kMasPulse,           text::kMasPerPulse,          LimitUnit::kNone,    kPlain},
    {key::kDoseMas,            text::kDosePerMas,           LimitUnit::kNone,    kPlain},
};

/// The rows that a test has of its own.
struct TestLimits {
    int32_t testId;
    std::span<const LimitRow> rows;
    bool perExposure = false;  ///< each exposure has these rows, its number after key and description
};
constexpr TestLimits kTestLimits[] = {
    {kGroupId,        {}},
    {kRadioAccuracy,  kAccuracyRows},
    {kRadioLinearity, kLinearityRows},
    {kOldRadioHvl,    kOldHvlRows},
    {kFluoroAccuracy, kFluoroAccuracyRows},
    {kOldFluoroHvl,   kOldHvlRows},
    {kFluoroExposure, kFluoroExposureRows, true},
    {kMammoAccRepro,  kMammoAccReproRows},
    {kOldMammoHvl,    kOldMammoHvlRows},
    {kMammoAec,       kMammoAecRows},
    {kMammoRadiation, kMammoRadiationRows},
};
// clang-format on

static_assert(HoldsOwnRows(kOwnLimits, kTestLimits));

/// A measuring test without a row has the limits of the readings alone.
const TestLimits& LimitsOf(int32_t testId) {
    static constexpr TestLimits kReadingsOnly = {};
    const auto test = std::find_if(std::begin(kTestLimits), std::end(kTestLimits),
                                   [&](const TestLimits& row) { return row.testId == testId; });
    if (test != std::end(kTestLimits)) return *test;
    if (!IsMeasuringTest(testId))
        throw std::logic_error("test " + PlainText(testId) + " has no list of limit rows");
    return kReadingsOnly;
}

/// Key of a row; exposure 0 for a row without a number.
std::string KeyOf(const LimitRow& row, int32_t exposure) {
    return std::string(row.key) + (exposure > 0 ? PlainText(exposure) : "");
}

std::string DescriptionOf(const LimitRow& row, int32_t exposure) {
    std::string words = Translate(row.description);
    if (exposure > 0) words += " " + Translate(text::kExposureNumber) + PlainText(exposure);
    return words;
}

/// The form of a new limit: the first of its row that judges in the test. Only one test has rows of
/// coefficients of variation.
LimitExpression FirstForm(const LimitRow& row, int32_t testId) {
    const auto judges = [&](LimitExpression form) {
        return !RowOf(form).judgesVariation || testId == kRadioRepro;
    };
    return *std::find_if(row.forms.begin(), row.forms.end(), judges);
}

std::shared_ptr<IExpectedResult> FindLimit(const IStandard& standard, std::string_view limitKey) {
    const ExpectedResults& limits = standard.Results();
    const auto at = std::find_if(limits.begin(), limits.end(),
                                 [&](const auto& limit) { return limit->Key() == limitKey; });
    return at == limits.end() ? nullptr : *at;
}

/// Visits the rows of a test in the editor's order, with the number of the exposure or 0.
template <typename Visit>
void ForEachRow(int32_t testId, int32_t exposures, Visit&& visit) {
    const TestLimits& test = LimitsOf(testId);
    if (testId != kGroupId)
        for (const LimitRow& row : kReadingRows) visit(row, 0);
    const int32_t last = test.perExposure ? exposures : 0;
    for (int32_t exposure = test.perExposure ? 1 : 0; exposure <= last; ++exposure)
        for (const LimitRow& row : test.rows) visit(row, exposure);
    for (const LimitRow& row : kMasRows) visit(row, 0);
}

/// Without a selection every standard is selected.
bool IsSelected(const IStandard& standard, const ISelectedStandards* selected) {
    if (selected == nullptr) return true;
    const auto names = selected->Standards();
    return std::find(names.begin(), names.end(), StandardName{standard.Name(), standard.Version()}) !=
           names.end();
}

}  // namespace

std::shared_ptr<CConfigCommon> CLimitData::OwnerConfiguration() const {
    const auto owner = mOwner.lock();
    return owner ? std::dynamic_pointer_cast<CConfigCommon>(owner->Configuration()) : nullptr;
}

int32_t CLimitData::OwnerTestId() const {
    const auto owner = mOwner.lock();
    return owner ? owner->TestID() : kGroupId;
}

void CLimitData::SetOwner(const std::shared_ptr<ITestElement>& element, bool hasDialog) {
    mOwner = element;
    mHasDialog = hasDialog;
}

void CLimitData::SetStandardsFrom(const ILimitData& source) {
    if (const auto standards = source.Standards()) mStandards = standards->Clone();
}

std::shared_ptr<ILimitData> CLimitData::Clone() const {
    auto clone = std::make_shared<CLimitData>();
    clone->SetStandardsFrom(*this);
    clone->mHasDialog = mHasDialog;
    return clone;
}

void CLimitData::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* /*log*/) {
    if (element->Name() != tag::kExpectedResult)
        RaiseHostError(kErrorBadLimits, kClassName, 4, {"found \"" + std::string(element->Name()) + "\""});
    mStandards.reset();
    const auto standards = Services().createStandards();
    standards->Load(element);
    mStandards = standards;
}

std::shared_ptr<IXmlElement> CLimitData::Save(const std::shared_ptr<IXmlDocument>& owner) {
    if (!mStandards) return nullptr;
    const auto element = mStandards->Save(owner);
    if (element) element->Name(tag::kExpectedResult);
    return element;
}

void CLimitData::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& /*setup*/) {
    if (report == nullptr) return;
    auto& shown = report->SelectedStandardsForReport;
    // Otherwise the limits of the previous element would be printed next to these results.
    shown.clear();
    const ISelectedStandards* selected = report->SelectedStandards();
    for (int32_t i = 0; mStandards && i < mStandards->Count(); ++i) {
        const auto standard = mStandards->Item(i);
        if (IsSelected(*standard, selected))
            shown.push_back(mStandards->FindExpectedResult(0, standard->Name(), standard->Version()));
    }
}

std::vector<std::shared_ptr<IStandard>> CLimitData::FindFailedStandards(
    const IMeasurement* measurement, const ISelectedStandards* selected) const {
    if (!mStandards || measurement == nullptr || selected == nullptr || mStandards->Count() == 0) return {};
    // A test judges thousands of its own measurements: what each knows of itself is not worked out again.
    if (const auto* own = dynamic_cast<const CMeasurement*>(measurement)) {
        const std::optional<double> reading = own->Reading();
        return FindFailed({own->RawLimitKey(), ToSingle(reading ? *reading : NumberOf(own->RawValue())),
                           own->RawPresetValue(), own->Facts()},
                          *selected);
    }
    const std::string measurementKey = measurement->Key();
    return FindFailed({LimitKeyOf(measurementKey), ToSingle(NumberOf(measurement->value())),
                       measurement->PresetValue(), FactsOf(measurementKey)},
                      *selected);
}

std::vector<std::shared_ptr<IStandard>> CLimitData::FindFailed(const Judged& judged,
                                                               const ISelectedStandards& selected) const {
    const JudgedAs judgedAs = judged.facts.Is(kCvOfReadings) ? JudgedAs::kVariation : JudgedAs::kValue;
    std::vector<std::shared_ptr<IStandard>> failed;
    for (const StandardName& name : selected.Standards()) {
        auto standard = mStandards->FindExpectedResult(0, name.name, name.version);
        if (standard && standard->Evaluate(judged.limitKey, judged.value, judged.preset, judgedAs) == kFailed)
            failed.push_back(std::move(standard));
    }
    return failed;
}

void CLimitData::AddLimit(IStandard& standard, const LimitRow& row, int32_t exposure, int32_t testId) const {
    auto limit = Services().createExpectedResult();
    limit->Setup(KeyOf(row, exposure), UnitKeyOf(row), "", "");
    // Both sides: a number that is typed into either then judges as the editor shows it.
    for (const int32_t side : {kHighSide, kLowSide})
        limit->Expression(side, RowOf(FirstForm(row, testId)).text);
    standard.AddExpectedResult(std::move(limit));
}

std::string_view CLimitData::UnitKeyOf(const LimitRow& row) const {
    const auto config = OwnerConfiguration();
    const int32_t exposure = config ? config->pMeasurementExposure : kUnitR;
    switch (row.unit) {
        case LimitUnit::kNone:
            return {};
        case LimitUnit::kPercent:
            return text::kUnitPercent;
        case LimitUnit::kMmAl:
            return text::kUnitMmAl;
        case LimitUnit::kKv:
            return text::kUnitKv;
        case LimitUnit::kMa:
            return text::kMa;
        case LimitUnit::kMas:
            return text::kMas;
        case LimitUnit::kRatePerTime:
            return ExposureRateUnitKey(kFluoro, exposure, config ? config->pMeasurementExposureRateUnit : 1);
        case LimitUnit::kDose:
            return exposure == kUnitR ? text::kUnitMillirad : text::kUnitMilligray;
        case LimitUnit::kOutput:
            return text::kOutputRateUnit;
        case LimitUnit::kAirKerma:
            return text::kAirKermaRateUnit;
    }
    return {};
}

void CLimitData::CreateTestLimits(IStandard& standard, int32_t testId) const {
    if (testId == kMqsaSurvey) return;
    ForEachRow(testId, 1,
               [&](const LimitRow& row, int32_t exposure) { AddLimit(standard, row, exposure, testId); });
}

std::shared_ptr<IStandard> CLimitData::CreateStandard(std::string_view name, std::string_view version) {
    std::string wantedName(name);
    std::string wantedVersion(version);
    std::shared_ptr<IStandard> standard;
    if (const auto owner = mOwner.lock()) standard = LoadStandard(*owner, wantedName, wantedVersion);
    if (!standard) {
        standard = Services().createStandard(name, version);
        if (standard) CreateTestLimits(*standard, OwnerTestId());
    }
    if (standard) AddStandard(standard);
    return standard;
}

void CLimitData::AddStandard(const std::shared_ptr<IStandard>& standard) {
    if (!mStandards) mStandards = Services().createStandards();
    if (!mStandards->FindExpectedResult(0, standard->Name(), standard->Version())) mStandards->Add(standard);
}

void CLimitData::AppendExposureLimit(int32_t exposure) {
    const int32_t testId = OwnerTestId();
    if (testId == kMqsaSurvey || !LimitsOf(testId).perExposure) return;
    AddExposure(exposure, testId);
    RefreshDialog();
}

void CLimitData::AddExposure(int32_t exposure, int32_t testId) {
    for (int32_t i = 0; mStandards && i < mStandards->Count(); ++i)
        for (const LimitRow& row : LimitsOf(testId).rows)
            if (const auto standard = mStandards->Item(i); !FindLimit(*standard, KeyOf(row, exposure)))
                AddLimit(*standard, row, exposure, testId);
}

void CLimitData::ReorderLimits(int32_t exposure) {
    const int32_t testId = OwnerTestId();
    if (testId == kMqsaSurvey || !LimitsOf(testId).perExposure) return;
    for (int32_t i = 0; mStandards && i < mStandards->Count(); ++i)
        for (const LimitRow& row : LimitsOf(testId).rows) {
            IStandard& standard = *mStandards->Item(i);
            standard.RemoveExpectedResults(KeyOf(row, exposure));
            for (const auto& limit : standard.Results()) {
                const std::string limitKey = limit->Key();
                if (!limitKey.starts_with(row.key)) continue;
                const int32_t number = ReadInteger(limitKey.substr(row.key.size()));
                if (number > exposure) limit->Key(KeyOf(row, number - 1));
            }
        }
    RefreshDialog();
}

void CLimitData::RefreshUnits(int32_t testId) {
    for (int32_t i = 0; mStandards && i < mStandards->Count(); ++i)
        for (const LimitRow& row : LimitsOf(testId).rows)
            if (row.renewsUnit)
                if (const auto limit = FindLimit(*mStandards->Item(i), row.key)) limit->Unit(UnitKeyOf(row));
}

void CLimitData::PrepareLimitDialog(ILimitView& view, int32_t testId) {
    if (testId == kMqsaSurvey) return;
    RefreshUnits(testId);
    const auto config = OwnerConfiguration();
    const int32_t exposures = config ? config->pNoOfExposures : 0;
    if (LimitsOf(testId).perExposure) {
        view.ClearRows();
        for (int32_t exposure = 1; exposure <= exposures; ++exposure) AddExposure(exposure, testId);
    }
    ForEachRow(testId, exposures, [&](const LimitRow& row, int32_t exposure) {
        view.AddRow(LimitEditorForms(row.forms), Translate(UnitKeyOf(row)), DescriptionOf(row, exposure),
                    KeyOf(row, exposure));
    });
    if (testId == kFluoroAccuracy) view.Hint(true, Translate(text::kFluoroLimitHint));
}

std::shared_ptr<IDialog> CLimitData::CreateDialog() {
    if (!mHasDialog) return nullptr;
    auto wrapper = std::make_shared<FDialogWrapper>();
    const auto view = std::dynamic_pointer_cast<ILimitView>(wrapper->CreateSetupCtrl(kLimitEditor));
    if (!view) {
        wrapper->Unload();
        return nullptr;
    }
    wrapper->Initialize(OwnedLimits{shared_from_this(), mOwner.lock()});
    mView = view;
    RefreshDialog();
    return wrapper;
}

void CLimitData::RefreshDialog() {
    const auto view = mView.lock();
    if (!view) return;
    PrepareLimitDialog(*view, OwnerTestId());
    view->Reload(mStandards);
}

}  // namespace vorex
