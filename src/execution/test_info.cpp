#include <algorithm>
#include <numeric>

#include "execution/setup_lines.h"
#include "execution/test_common.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"

// The lines for the operator: the state of the detector, then the settings for the exposure.

namespace vorex {

namespace {

/// Lines are numbered as if there were two header lines. A combined detector kind has three.
constexpr int32_t kUsualHeaderLines = 2;
/// After the setup lines: press Start, take the exposure.
constexpr int32_t kClosingLines = 2;

/// Notes the ion chamber, even if the instruments give no serial numbers. Returns its name.
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
        const int32_t kind = mfrmTestGuide ? mfrmTestGuide->DetectorType() : config->DetectorName;
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
    // The lists of rows assume a header of at least two lines.
    if (header.size() < std::size_t{kUsualHeaderLines}) header.push_back(Translate(text::kEmptyLine, {""}));
    for (std::string& line : header) lines.push_back(std::move(line));
}

void CTestCommon::RefreshInfo() {
    if (mfrmTestGuide) mfrmTestGuide->SetInfoLines(BuildGuideInfo());
}

void CTestCommon::RefreshLiveInfo() {
    RefreshInfo();
    if (IsTaking(mState)) ShowLiveRows();
}

void CTestCommon::ShowRows(std::vector<int32_t> rows) {
    // Rows of the instructions move down after a longer header, whose lines are all shown.
    const int32_t extra = static_cast<int32_t>(mHeaderLines) - kUsualHeaderLines;
    for (int32_t& row : rows)
        if (row > kUsualHeaderLines) row += extra;
    for (int32_t line = 0; line < extra; ++line)
        rows.insert(rows.begin() + kUsualHeaderLines + line, kUsualHeaderLines + line + 1);
    mfrmTestGuide->ShowRows(rows);
}

/// While exposures run: the header, the settings that change from exposure to exposure, and "Take exposure".
void CTestCommon::ShowLiveRows() {
    const SetupLineNumbers lines = NumberSetupLines(TestID(), mLimitsFlag ? kSetupMas : kSetupMaTime);
    std::vector<int32_t> rows = {1, kUsualHeaderLines};
    for (int32_t line : lines.perExposure) rows.push_back(kUsualHeaderLines + line);
    rows.push_back(kUsualHeaderLines + lines.count + kClosingLines);
    ShowRows(std::move(rows));
}

void CTestCommon::ShowAllRows() {
    const SetupLineNumbers lines = NumberSetupLines(TestID(), mLimitsFlag ? kSetupMas : kSetupMaTime);
    std::vector<int32_t> rows(static_cast<std::size_t>(kUsualHeaderLines + lines.count + kClosingLines));
    std::iota(rows.begin(), rows.end(), 1);
    ShowRows(std::move(rows));
}

}  // namespace vorex
