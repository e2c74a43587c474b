#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/operator.h"
#include "cli/operator_script.h"
#include "foundation/platform.h"
#include "guide/test_guide_form.h"
#include "host/headless_platform.h"
#include "instruments/instruments.h"
#include "instruments/technique.h"

namespace vorex {

/// Drives the test guide as an operator script tells: one element of the script for each guide that opens, a
/// step whenever the guide is idle. A guide that the script does not drive gets "start,next".
///
/// A step that cannot be taken is an error of the script, and the run is broken off; unless an instrument
/// has failed, for then the guide is left as far as it came.
class HeadlessOperator : public IOperator {
  public:
    HeadlessOperator(std::vector<ElementSteps> script, const IInstruments& instruments);

    bool OnIdle(IModalWindow& window) override;
    void AfterEvent() override;
    void Message(std::string_view title, std::string_view message) override;
    /// Abort is meant when the script says so.
    bool Confirm(std::string_view /*question*/) override { return true; }

    /// What is set on the X-ray unit for the exposure that comes next: what the open guide asks for; empty
    /// while none is open.
    std::optional<Technique> AtConsole() const;

    /// What was wrong with the script; empty when it could be followed.
    const std::string& ScriptError() const { return mScriptError; }
    /// An instrument fault ended a run before its exposures were taken.
    bool RunBroken() const { return mRunBroken; }
    /// No further element may begin.
    bool Ended() const { return mRunBroken || !mScriptError.empty() || mInstruments.Ended(); }
    std::size_t Opened() const override { return mElementNumber; }
    std::size_t StepsTaken() const override { return mNext; }
    /// Messages that the guide showed to the operator.
    const std::vector<std::string>& Messages() const { return mMessages; }

  private:
    void OpenElement(FZRD47500TestGuide& guide);
    void TakeStep(FZRD47500TestGuide& guide);
    void TakeRun(FZRD47500TestGuide& guide, const std::function<bool()>& press, const OperatorStep& step);
    bool Faulty() const;
    void Fail(const OperatorStep& step, std::string_view reason);
    void LeaveGuide(FZRD47500TestGuide& guide);
    std::string ElementName() const;

    std::vector<ElementSteps> mScript;
    const IInstruments& mInstruments;
    std::size_t mElementNumber = 0;  ///< guides opened so far
    ElementSteps mSteps;
    std::size_t mNext = 0;
    FZRD47500TestGuide* mGuide = nullptr;
    const OperatorStep* mPendingStop = nullptr;
    bool mStopTaken = false;
    bool mRunBroken = false;
    int32_t mElementId = 0;
    std::string mScriptError;
    std::vector<std::string> mMessages;
};

}  // namespace vorex
