#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/class_registry.h"
#include "foundation/event.h"
#include "foundation/host_contract.h"
#include "foundation/platform.h"
#include "waveforms/waveform.h"

namespace vorex {

class CConfigCommon;

/// What the operator does in the test guide, in order of declaration.
struct TestGuideEvents {
    Event<uint8_t, bool, uint8_t> DrawWaveForm{"mfrmTestGuide_DrawWaveForm"};  ///< exposure, current, type
    Event<> StartTest{"mfrmTestGuide_StartTest"};
    Event<> StopTest{"mfrmTestGuide_StopTest"};
    Event<> AbortTest{"mfrmTestGuide_AbortTest"};
    Event<> Skip{"mfrmTestGuide_Skip"};
    Event<> NextTest{"mfrmTestGuide_NextTest"};
    Event<> Previous{"mfrmTestGuide_Previous"};
    Event<> NA{"mfrmTestGuide_NA"};
    Event<bool> ItemClicked{"mfrmTestGuide_ItemClicked"};
    Event<uint8_t> ReDoExposure{"mfrmTestGuide_ReDoExposure"};  ///< exposure, counted from 1
    Event<> WakeUpDetector{"mfrmTestGuide_WakeUpDetector"};
    Event<> DisplayIonChamber{"mfrmTestGuide_DisplayIonChamber"};
    Event<const std::string&> TargetFilterChangedEvent{"mfrmTestGuide_TargetFilterChangedEvent"};
    Event<> MASInputChanged{"mfrmTestGuide_MASInputChanged"};
    Event<> ConnectionLost{"mfrmTestGuide_ConnectionLost"};
    Event<> ConnectionFound{"mfrmTestGuide_ConnectionFound"};
};

enum class GuideState { kIdle, kRunning };

/// Keys of the guide's toolbar buttons.
namespace guide_button {
inline constexpr int32_t kAbort = 101;
inline constexpr int32_t kPrevious = 102;
inline constexpr int32_t kNext = 103;
inline constexpr int32_t kStop = 201;
inline constexpr int32_t kStart = 202;
inline constexpr int32_t kWakeUp = 300;
inline constexpr int32_t kSkip = 301;
inline constexpr int32_t kNa = 302;
inline constexpr int32_t kIonChamber = 400;
inline constexpr int32_t kStatusPanel = 500;
inline constexpr int32_t kSpacer = 501;
inline constexpr int32_t kDisconnect = 700;
inline constexpr int32_t kFirstTargetFilter = 1200;
inline constexpr int32_t kShunt = 1501;
inline constexpr int32_t kClamp = 1502;
inline constexpr int32_t kManual = 1503;
}  // namespace guide_button

/// Class name under which elements ask for their guide.
inline constexpr std::string_view kTestGuideClass = "VorexZRD47500Test.FZRD47500TestGuide";

/// The window in which the operator runs an element: the element sets what is shown, and events report what
/// the operator does. It exists during `Perform` only: `Load`, `Initialize`, shown modally, `Unload`.
class ITestGuide : public IModalWindow, public LibraryObject {
  public:
    /// Creates the guide's own detector service and starts to watch the link.
    virtual void Load() = 0;
    virtual void Initialize(const std::shared_ptr<ITestElement>& element,
                            const std::shared_ptr<IExecutionPipe>& pipe,
                            const std::vector<std::string>& lines) = 0;
    virtual void SetInfoLines(const std::vector<std::string>& lines) = 0;
    /// Rows of the details pane that stay visible, counted from 1.
    virtual void ShowRows(std::span<const int32_t> rows) = 0;
    virtual void ToolbarState(GuideState state, bool enableNext) = 0;
    virtual void EnableNext(bool enable) = 0;
    virtual void SetStatusText(std::string_view text) = 0;
    virtual void ShowStatus(const IResultData* result) = 0;
    /// Refreshes the table from the element's result and makes an exposure the current row.
    virtual void ShowResult(const std::shared_ptr<ITestElement>& element, uint8_t exposure) = 0;
    /// An empty or sampleless waveform clears the pane.
    virtual void DrawWaveform(const std::shared_ptr<IWaveform>& waveform) = 0;
    virtual void EnableStop(bool enable) = 0;
    virtual void EnableStart(bool enable) = 0;
    virtual void ResetSelection() = 0;
    virtual void ClearTable() = 0;
    virtual void SetWakeUpButton(bool enable) = 0;
    virtual void SetWaveformExposure(uint8_t exposure) = 0;
    virtual void WaveformType(uint8_t type) = 0;
    virtual void ShowOverlay(bool show, std::string_view text) = 0;
    /// Detector kind in use.
    virtual int32_t DetectorType() const = 0;
    virtual bool GetToolBarButtonStatus(int32_t button) const = 0;
    virtual void SetToolBarButtonStatus(int32_t button, bool enabled) = 0;
    virtual void EnableMenuRedoExposure(bool enable) = 0;
    /// Adds the columns of the table for the element's test and detector kind.
    virtual void BuildColumns(const std::shared_ptr<CConfigCommon>& configuration, bool refresh) = 0;
    virtual void Unload() = 0;

    TestGuideEvents events;
};

}  // namespace vorex
