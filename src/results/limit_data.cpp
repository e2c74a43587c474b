#include "results/limit_data.h"

#include <algorithm>
#include <span>

#include "config/config_common.h"
#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "guide/dialog_wrapper.h"

namespace vorex {

/// How the unit of a limit row is made up.
enum class LimitUnit { kNone, kPercent, kMmAl, kKv, kMa, kMas, kRatePerTime, kDose, kOutput, kAirKerma };

/// A row of the limit editor.
struct LimitRow {
    int32_t testId;  ///< 0 for every test
    std::string_view key;
    std::string_view description;
    LimitUnit unit;
    std::span<const LimitExpression> forms;  ///< that the editor offers, in its order
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
    {0, key::kErKvpAvg,           text::kKvpAvg,           LimitUnit::kNone, kRelative},
    {0, key::kErKvpMax,           text::kKvpMax,           LimitUnit::kNone, kRelative},
    {0, key::kErKvPpv,            text::kKvPpv,            LimitUnit::kNone, kRelative},
    {0, key::kErExposure,         text::kExposure,         LimitUnit::kNone, kVariation},
    {0, key::kErExposureRate,     text::kExposureRate,     LimitUnit::kNone, kPlain},
    {0, key::kErExposureTime,     text::kExposureTime,     LimitUnit::kNone, kPlain},
    {0, key::kErExposureInPulses, text::kExposureInPulses, LimitUnit::kNone, kPlain},
    {0, key::kErHvl,              text::kHvl,              LimitUnit::kMmAl, kPlain},
};

constexpr LimitRow kTestRows[] = {
    {kRadioAccuracy,  key::kPercentTimerError, text::kPercentTimerError,    LimitUnit::kPercent, kPlain},
    {kRadioAccuracy,  key::kPercentKvpError,   text::kPercentKvpAvgError,   LimitUnit::kPercent, kPlain},
    {kRadioAccuracy,  key::kAbsoluteKvpError,  text::kAbsoluteKvpAvgError,  LimitUnit::kKv,      kPlain, true},
    {kRadioLinearity, key::kErAdjacent,        text::kAdjacentLinearity,    LimitUnit::kNone,    kPlain},
    {kRadioLinearity, key::kErNonAdjacent,     text::kNonAdjacentLinearity, LimitUnit::kNone,    kPlain},
    {kOldRadioHvl,    key::kCriterionHvl,      "",                          LimitUnit::kMmAl,    kPlain},
    {kOldFluoroHvl,   key::kCriterionHvl,      "",                          LimitUnit::kMmAl,    kPlain},
    {kFluoroAccuracy, key::kFluoroKvpError,    text::kPercentKvpAvgError,   LimitUnit::kPercent, kPlain},
    {kMammoAccRepro,  key::kPercentError,      text::kPercentKvpAvgError,   LimitUnit::kPercent, kPlain},
    {kMammoAccRepro,  key::kCv,                text::kCvForKvpAvg,          LimitUnit::kNone,    kPlain},
    {kOldMammoHvl,    key::kMqsaHvl,           "",                          LimitUnit::kMmAl,    kPlain},
    {kOldMammoHvl,    key::kAcrHvl,            "",                          LimitUnit::kMmAl,    kPlain},
    {kMammoAec,       key::kCvExposure,        text::kCvForExposure,        LimitUnit::kNone,    kPlain, true},
    {kMammoAec,       key::kCvMasSettings,     text::kCvForMas,             LimitUnit::kNone,    kPlain, true},
    {kMammoAec,       key::kGlandularDose,     text::kGlandularDose,        LimitUnit::kDose,    kPlain, true},
    {kMammoRadiation, key::kOutputRate,        text::kExposureRate,         LimitUnit::kOutput,  kPlain, true},
    {kMammoRadiation, key::kAirKermaRate,      text::kAirKermaRate,         LimitUnit::kAirKerma, kPlain, true},
};

/// Exposure rate of test 700; each exposure has a row, with its number behind key and description.
constexpr LimitRow kExposureRateRow = {
    kFluoroExposure,  key::kMaxExposureRate,   text::kMaxExposureRate,      LimitUnit::kRatePerTime, kPlain};

constexpr LimitRow kMasRows[] = {
    {0, key::kMa,       text::kMa,          LimitUnit::kMa,   kPlain},
    {0, key::kMas,      text::kMas,         LimitUnit::kMas,  kPlain},
    {0, key::kMasPulse, text::kMasPerPulse, LimitUnit::kNone, kPlain},
    {0, key::kDoseMas,  text::kDosePerMas,  LimitUnit::kNone, kPlain},
};
// clang-format on

std::string ExposureKey(int32_t exposure) {
    return std::string(kExposureRateRow.key) + PlainText(exposure);
}

/// The form that a new limit starts with: the first of its row that judges in the test. Only one test has
/// rows of coefficients of variation.
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

/// Visits the rows of a test in the editor's order, but for the exposure rows of test 700.
template <typename Visit>
void ForEachRow(int32_t testId, Visit&& visit) {
    if (testId != kGroupId)
        for (const LimitRow& row : kReadingRows) visit(row);
    for (const LimitRow& row : kTestRows)
        if (row.testId == testId) visit(row);
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
    // The limits of the element before must not stand beside the results of this one.
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
    const std::string measurementKey = measurement->Key();
    const std::string limitKey = LimitKeyOf(measurementKey);
    const float value = ToSingle(NumberOf(measurement->value()));
    const TaggedValue preset = measurement->PresetValue();
    const JudgedAs judgedAs = IsVariationRow(measurementKey) ? JudgedAs::kVariation : JudgedAs::kValue;
    std::vector<std::shared_ptr<IStandard>> failed;
    for (const StandardName& name : selected->Standards()) {
        auto standard = mStandards->FindExpectedResult(0, name.name, name.version);
        if (standard && standard->Evaluate(limitKey, value, preset, judgedAs) == kFailed)
            failed.push_back(std::move(standard));
    }
    return failed;
}

void CLimitData::AddLimit(IStandard& standard, std::string_view limitKey, std::string_view unit,
                          LimitExpression expression) const {
    auto limit = Services().createExpectedResult();
    limit->Setup(limitKey, unit, "", "");
    // Both sides: a number that is typed into either then judges as the editor shows it.
    for (const int32_t side : {kHighSide, kLowSide}) limit->Expression(side, RowOf(expression).text);
    standard.AddExpectedResult(std::move(limit));
}

/// Exposure unit and time base of test 700 in words.
std::string CLimitData::ExposureRateUnit() const {
    constexpr std::string_view kBases[] = {text::kUnitSec, text::kUnitMin, text::kUnitHour, text::kUnitPulse};
    const auto config = OwnerConfiguration();
    const int32_t unit = config ? config->pMeasurementExposure : kUnitR;
    const int32_t base = config ? config->pMeasurementExposureRateUnit : 1;
    const bool known = base >= 1 && base <= static_cast<int32_t>(std::size(kBases));
    return Translate(unit == kUnitR ? text::kExposureUnitR : text::kUnitMilligray) + "/" +
           Translate(known ? kBases[static_cast<std::size_t>(base) - 1] : kBases[0]);
}

std::string CLimitData::UnitOf(const LimitRow& row) const {
    const auto config = OwnerConfiguration();
    switch (row.unit) {
        case LimitUnit::kNone:
            return {};
        case LimitUnit::kPercent:
            return std::string(text::kUnitPercent);
        case LimitUnit::kMmAl:
            return Translate(text::kUnitMmAl);
        case LimitUnit::kKv:
            return Translate(text::kUnitKv);
        case LimitUnit::kMa:
            return Translate(text::kMa);
        case LimitUnit::kMas:
            return Translate(text::kMas);
        case LimitUnit::kRatePerTime:
            return ExposureRateUnit();
        case LimitUnit::kDose:
            return Translate(config && config->pMeasurementExposure != kUnitR ? text::kUnitMilligray
                                                                              : text::kUnitMillirad);
        case LimitUnit::kOutput:
            return Translate(text::kUnitMilliroentgen) + "/" + Translate(text::kUnitSec);
        case LimitUnit::kAirKerma:
            return Translate(text::kUnitMilligray) + "/" + Translate(text::kUnitSec);
    }
    return {};
}

void CLimitData::CreateTestLimits(IStandard& standard, int32_t testId) const {
    if (testId == kMqsaSurvey) return;
    const auto add = [&](const LimitRow& row) {
        AddLimit(standard, row.key, UnitOf(row), FirstForm(row, testId));
    };
    ForEachRow(testId, add);
    if (testId == kFluoroExposure)
        AddLimit(standard, ExposureKey(1), ExposureRateUnit(), LimitExpression::kValue);
    for (const LimitRow& row : kMasRows) add(row);
}

std::shared_ptr<IStandard> CLimitData::CreateStandard(std::string_view name, std::string_view version) {
    std::string wantedName(name);
    std::string wantedVersion(version);
    std::shared_ptr<IStandard> standard;
    if (!mOwner.expired()) standard = LoadStandard(OwnerTestId(), wantedName, wantedVersion);
    if (!standard) {
        standard = Services().createStandard(name, version);
        if (standard) CreateTestLimits(*standard, OwnerTestId());
    }
    if (standard) {
        if (!mStandards) mStandards = Services().createStandards();
        if (!mStandards->FindExpectedResult(0, standard->Name(), standard->Version()))
            mStandards->Add(standard);
    }
    return standard;
}

void CLimitData::RefreshUnits(int32_t testId) {
    for (int32_t i = 0; mStandards && i < mStandards->Count(); ++i)
        for (const LimitRow& row : kTestRows)
            if (row.testId == testId && row.renewsUnit)
                if (const auto limit = FindLimit(*mStandards->Item(i), row.key)) limit->Unit(UnitOf(row));
}

void CLimitData::AddExposureRows(ILimitView& view) {
    const auto config = OwnerConfiguration();
    const int32_t exposures = config ? config->pNoOfExposures : 0;
    const std::string unit = ExposureRateUnit();
    for (int32_t exposure = 1; exposure <= exposures; ++exposure) {
        const std::string limitKey = ExposureKey(exposure);
        view.AddRow(LimitEditorForms(kExposureRateRow.forms), unit,
                    Translate(kExposureRateRow.description) + " " + Translate(text::kExposureNumber) +
                        PlainText(exposure),
                    limitKey);
        for (int32_t i = 0; mStandards && i < mStandards->Count(); ++i) {
            const auto standard = mStandards->Item(i);
            if (!FindLimit(*standard, limitKey)) AddLimit(*standard, limitKey, unit, LimitExpression::kValue);
        }
    }
}

void CLimitData::PrepareLimitDialog(ILimitView& view, int32_t testId) {
    if (testId == kMqsaSurvey) return;
    RefreshUnits(testId);
    const auto show = [&](const LimitRow& row) {
        view.AddRow(LimitEditorForms(row.forms), UnitOf(row), Translate(row.description), row.key);
    };
    if (testId == kFluoroExposure) view.ClearRows();
    ForEachRow(testId, show);
    if (testId == kFluoroExposure) AddExposureRows(view);
    for (const LimitRow& row : kMasRows) show(row);
    if (testId == kFluoroAccuracy) view.Hint(true, Translate(text::kFluoroLimitHint));
}

std::shared_ptr<IDialog> CLimitData::CreateDialog() {
    if (!mHasDialog) return nullptr;
    auto wrapper = std::make_shared<FDialogWrapper>();
    const auto control = wrapper->CreateSetupCtrl(kLimitEditor);
    const auto view = std::dynamic_pointer_cast<ILimitView>(control);
    if (!view) return nullptr;
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
