#include <algorithm>

#include "execution/setup_lines.h"
#include "execution/test_common.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"

// The lines that the operator reads: the state of the detector, then what to set before the exposure.

namespace vorex {

namespace {

/// The row lists count on two header lines; a combined detector kind has one more.
constexpr std::size_t kUsualHeaderLines = 2;

/// Which lines stay visible while exposures run, and how many there are, by test and generator setup.
struct RowList {
    int32_t testId;
    bool masSetup;  ///< the setup has one line for mAs in the place of two for mA and time
    std::vector<int32_t> live;
    int32_t all;
};

const RowList& FindRowList(int32_t testId, bool masSetup) {
    static const RowList kNone = {0, true, {}, 0};
    // clang-format off
    static const RowList kRowLists[] = {
        {kRadioRepro,     true,  {1, 2, 8},                8},
        {kRadioRepro,     false, {1, 2, 9},                9},
        {kRadioAccuracy,  true,  {1, 2, 4, 5, 6, 8},       8},
        {kRadioAccuracy,  false, {1, 2, 4, 5, 6, 7, 9},    9},
        {kRadioLinearity, true,  {1, 2, 4, 6, 8},          8},
        {kRadioLinearity, false, {1, 2, 4, 6, 9},          9},
        {kFluoroAccuracy, true,  {1, 2, 5, 6, 8},          8},
        {kFluoroExposure, true,  {1, 2, 5, 6, 7, 8, 10},  10},
        {kMammoAccRepro,  true,  {1, 2, 9},                9},
        {kMammoAec,       true,  {1, 2, 5, 23},           23},
        {kMammoRadiation, true,  {1, 2, 8, 9, 11},        11},
    };
    // clang-format on
    const RowList* found = &kNone;
    for (const RowList& list : kRowLists)
        if (list.testId == testId && (found == &kNone || list.masSetup == masSetup)) found = &list;
    return *found;
}

/// The ion chamber is noted whether or not the instruments give serial numbers. Returns its name.
std::string TakeIonChamber(IDetectorService& service, CConfigCommon& config) {
    config.IonChamberName = service.IonChamberName();
    if (!config.IonChamberName.empty()) {
        config.CalConstant = service.IonCalConstant();
        config.CalFactor = service.IonCalFactor();
    }
    return config.IonChamberName;
}

}  // namespace

std::vector<std::string> CTestCommon::BuildGuideInfo() {
    const auto config = Config();
    mLimitsFlag = config->pGeneratorSetup != kSetupMaTime;
    std::vector<std::string> lines;
    AddHeader(lines);
    mHeaderLines = lines.size();
    const int32_t lastRow = std::max(config->pNoOfExposures - 1, 0);
    const auto row = static_cast<uint8_t>(std::min<int32_t>(mExposureNo, lastRow));
    for (std::string& line : BuildSetupLines(*config, row)) lines.push_back(std::move(line));
    lines.push_back(Translate(text::kClickStart, {PlainText(kStepAfterSetup)}));
    lines.push_back(Translate(text::kTakeExposure, {PlainText(kStepAfterSetup + 1)}));
    return lines;
}

/// State of the detector. A detector that cannot be asked is shown as not connected.
void CTestCommon::AddHeader(std::vector<std::string>& lines) {
    const auto config = Config();
    std::vector<std::string> header;
    bool connected = false;
    const bool answered = Guarded("BuildGuideInfo", [&] {
        IDetectorService& service = Vti();
        connected = ReadNumber(service.SerialNumbers()) > 0;
        const std::string chamber = TakeIonChamber(service, *config);
        if (!connected) return;
        if (service.IsCharging()) {
            mInfoChanged = mInfoChanged || !mCharging;
            mCharging = true;
            mBatteryLevel = 0;
            header.push_back(Translate(text::kCharging));
        } else {
            const uint8_t level = service.BatteryLevel();
            mInfoChanged = mInfoChanged || level != mBatteryLevel;
            mBatteryLevel = level;
            mCharging = false;
            header.push_back(Translate(text::kBatteryStatus, {PlainText(static_cast<int32_t>(level)) + "%"}));
        }
        const int32_t kind = config->DetectorName;
        if (HasZrd(kind)) {
            const std::string& name = config->pTargetFilterName;
            if (!EqualsIgnoringCase(name, mTargetFilter)) {
                mTargetFilter = name;
                mInfoChanged = true;
            }
            header.push_back(Translate(text::kTargetFilterLine, {name}));
        }
        if (HasPelomark(kind))
            header.push_back(chamber.empty() ? Translate(text::kNoIonChamber)
                                             : Translate(text::kIonChamberLine, {chamber}));
        if (HasMasMeter(kind))
            header.push_back(Translate(text::kMasInputLine, {Translate(config->TestGuideMASInput)}));
    });
    if (!answered || !connected) {
        header = {Translate(text::kDetectorNotConnected), Translate(text::kEmptyLine, {""}),
                  Translate(text::kEmptyLine, {""})};
        mBatteryLevel = 0;
        mCharging = false;
        mTargetFilter.clear();
    }
    for (std::string& line : header) lines.push_back(std::move(line));
}

void CTestCommon::RefreshInfo() {
    if (mfrmTestGuide) mfrmTestGuide->SetInfoLines(BuildGuideInfo());
}

void CTestCommon::RefreshLiveInfo() {
    RefreshInfo();
    if (mStartBusy || mRedoActive) ShowLiveRows();
}

void CTestCommon::ShowRows(std::vector<int32_t> rows) {
    // Rows of the instructions move down behind a longer header, whose lines all stay.
    const auto extra = static_cast<int32_t>(mHeaderLines) - static_cast<int32_t>(kUsualHeaderLines);
    for (int32_t& row : rows)
        if (row > static_cast<int32_t>(kUsualHeaderLines)) row += extra;
    for (int32_t line = 0; line < extra; ++line)
        rows.insert(rows.begin() + kUsualHeaderLines + line,
                    static_cast<int32_t>(kUsualHeaderLines) + line + 1);
    mfrmTestGuide->ShowRows(rows);
}

void CTestCommon::ShowLiveRows() {
    ShowRows(FindRowList(TestID(), mLimitsFlag).live);
}

void CTestCommon::ShowAllRows() {
    std::vector<int32_t> rows(static_cast<std::size_t>(FindRowList(TestID(), mLimitsFlag).all));
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = static_cast<int32_t>(i) + 1;
    ShowRows(std::move(rows));
}

}  // namespace vorex
