#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/operator.h"
#include "cli/operator_script.h"
#include "foundation/platform.h"
#include "guide/test_guide_form.h"
#include "host/headless_platform.h"
#include "instruments/instruments.h"

namespace vorex {

/// Drives the test guide as an operator script says: one element of the script for each guide that opens, a
/// step whenever the guide is idle. A guide that the script does not drive gets "start,next".
///
/// A step that cannot be taken is an error of the script, and the run is broken off; unless an instrument
/// has failed, for then the guide is left as far as it came.
class HeadlessOperator : public IOperator, public IHeadlessOperator {
  public:
    HeadlessOperator(std::vector<ElementSteps> script, const IInstruments& instruments);

    bool OnIdle(IModalWindow& window) override;
    bool BeforeWait() override;
    void AfterEvent() override;
    void Message(std::string_view title, std::string_view message) override;
    /// Abort is meant when the script says so.
    bool Confirm(std::string_view /*question*/) override { return true; }

    /// What was wrong with the script; empty when it could be followed.
    std::string Error() const override { return mScriptError; }
    /// No further element may begin.
    bool Ended() const override { return mRunBroken || !mScriptError.empty() || mInstruments.Ended(); }
    std::size_t StepsTaken() const override { return mNext; }

  private:
    void OpenElement(FZRD47500TestGuide& guide);
    void TakeStep(FZRD47500TestGuide& guide);
    void TakeRun(FZRD47500TestGuide& guide, const std::function<bool()>& press, const OperatorStep& step);
    bool Faulty() const;
    void Fail(const OperatorStep& step, std::string_view reason);
    void PressStop();
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
    bool mRunBroken = false;  ///< an instrument fault ended a run before its exposures were taken
    int32_t mElementId = 0;
    std::string mScriptError;
    int32_t mMessages = 0;  ///< that the guide showed
};

}  // namespace vorex
