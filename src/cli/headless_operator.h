#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/operator.h"
#include "cli/operator_script.h"
#include "foundation/platform.h"
#include "host/headless_platform.h"
#include "instruments/instruments.h"

namespace vorex {

/// Drives the test guide by an operator script: one element of the script for each guide that opens, one step
/// whenever the guide is idle. A guide beyond the script gets "start,next".
///
/// A step that cannot be taken is an error of the script and breaks the run off. But after an instrument
/// fault, the guide is left with what was measured so far.
class HeadlessOperator : public IOperator, public IHeadlessOperator {
  public:
    HeadlessOperator(std::vector<ElementSteps> script, const IInstruments& instruments);

    /// Continues at an element that a person has operated. Stored exposures stay: without steps in the script
    /// the operator leaves the element by Next.
    void TakeOver(std::shared_ptr<ITestElement> element) { mTakenOver = std::move(element); }

    bool OnIdle(IModalWindow& window) override;
    bool BeforeWait(IModalWindow* shown) override;
    void AfterEvent(IModalWindow* shown) override;
    void Message(std::string_view title, std::string_view message) override;
    /// Confirms Abort if the script asks for it.
    bool Confirm(std::string_view question) override;
    bool ByHand() const override { return false; }

    /// The error of the script; empty when it could be followed.
    std::string Error() const override { return mScriptError; }
    /// True when no further element may begin.
    bool Ended() const override { return mRunBroken || !mScriptError.empty() || mInstruments.Ended(); }
    std::size_t StepsTaken() const override { return mNext; }

  private:
    void OpenElement(IModalWindow& guide);
    void TakeStep(IModalWindow& guide);
    void TakeRun(IModalWindow& guide, const std::function<bool()>& press, const OperatorStep& step);
    bool Faulty() const;
    void Fail(const OperatorStep& step, std::string_view reason);
    void PressStop(IModalWindow& guide);
    void LeaveGuide(IModalWindow& guide);
    std::string ElementName() const;

    std::vector<ElementSteps> mScript;
    const IInstruments& mInstruments;
    std::size_t mElementNumber = 0;  ///< guides opened so far
    ElementSteps mSteps;
    std::size_t mNext = 0;
    IModalWindow* mGuide = nullptr;  ///< of the steps
    std::shared_ptr<ITestElement> mTakenOver;
    const OperatorStep* mPendingStop = nullptr;
    bool mStopTaken = false;
    bool mRunBroken = false;  ///< an instrument fault ended a run early
    int32_t mElementId = 0;
    std::string mScriptError;
    int32_t mMessages = 0;  ///< shown by the guide
};

}  // namespace vorex
