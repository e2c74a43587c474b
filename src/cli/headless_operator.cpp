#include "cli/headless_operator.h"

#include <utility>

#include "execution/test_common.h"
#include "foundation/number_text.h"
#include "foundation/sequence_state.h"
#include "results/result_common.h"

namespace vorex {

namespace {

struct ButtonRow {
    StepKind kind;
    int32_t button;
};

constexpr ButtonRow kButtons[] = {
    {StepKind::kNext, guide_button::kNext},   {StepKind::kPrevious, guide_button::kPrevious},
    {StepKind::kSkip, guide_button::kSkip},   {StepKind::kNa, guide_button::kNa},
    {StepKind::kAbort, guide_button::kAbort},
};

int32_t StoredExposures(const IModalWindow& guide) {
    const auto element = guide.Element();
    const auto result = element ? std::dynamic_pointer_cast<CResultCommon>(element->Result()) : nullptr;
    return result ? result->ExposureCount() : 0;
}

int32_t PlannedExposures(const IModalWindow& guide) {
    const auto element = guide.Element();
    const auto config =
        element ? std::dynamic_pointer_cast<CConfigCommon>(element->Configuration()) : nullptr;
    return config ? config->pNoOfExposures : 0;
}

}  // namespace

HeadlessOperator::HeadlessOperator(std::vector<ElementSteps> script, const IInstruments& instruments)
    : mScript(std::move(script)), mInstruments(instruments) {}

std::string HeadlessOperator::ElementName() const {
    return "element " + PlainText(mElementId) + " (number " + std::to_string(mElementNumber) +
           " of the script)";
}

bool HeadlessOperator::Faulty() const {
    return !mInstruments.Faults().empty();
}

void HeadlessOperator::Fail(const OperatorStep& step, std::string_view reason) {
    // A run that an instrument broke is not the script's fault.
    if (Faulty()) {
        mRunBroken = true;
        return;
    }
    mScriptError =
        "operator script: step \"" + step.text + "\" at " + ElementName() + ": " + std::string(reason);
}

void HeadlessOperator::OpenElement(IModalWindow& guide) {
    mGuide = &guide;
    mElementId = guide.Element() ? guide.Element()->ID() : 0;
    const auto element = guide.Element();
    const bool survey = element && element->TestID() == kMqsaSurvey;
    const bool begun = element && element == mTakenOver && StoredExposures(guide) > 0;
    mSteps = StepsOf(mScript, mElementNumber, survey || begun);
    ++mElementNumber;
    mNext = 0;
}

bool HeadlessOperator::OnIdle(IModalWindow& window) {
    if (&window != mGuide) OpenElement(window);
    if (Ended()) {
        LeaveGuide(window);
    } else if (mNext < mSteps.size()) {
        TakeStep(window);
    } else {
        const OperatorStep next{StepKind::kNext, 0, "next"};
        if (!window.PressButton(guide_button::kNext))
            Fail(next, "the steps of the element are used up, and Next is not enabled");
    }
    if (!window.Visible()) mGuide = nullptr;
    return true;
}

/// After a fault, Next keeps the exposures, if there are any.
void HeadlessOperator::LeaveGuide(IModalWindow& guide) {
    if (!mScriptError.empty() || !guide.PressButton(guide_button::kNext)) guide.Visible(false);
}

void HeadlessOperator::TakeStep(IModalWindow& guide) {
    const OperatorStep step = mSteps[mNext++];
    if (step.kind == StepKind::kStart)
        return TakeRun(
            guide, [&] { return guide.PressButton(guide_button::kStart); }, step);
    if (step.kind == StepKind::kRedo)
        return TakeRun(
            guide, [&] { return guide.RedoExposure(step.number); }, step);
    for (const ButtonRow& row : kButtons)
        if (row.kind == step.kind && !guide.PressButton(row.button)) Fail(step, "the button is not enabled");
}

/// Start and redo return when the run has ended; a stop that belongs to the run is pressed during it.
void HeadlessOperator::TakeRun(IModalWindow& guide, const std::function<bool()>& press,
                               const OperatorStep& step) {
    const bool stops = mNext < mSteps.size() && mSteps[mNext].kind == StepKind::kStop;
    const OperatorStep stop = stops ? mSteps[mNext++] : OperatorStep{};
    const bool redo = step.kind == StepKind::kRedo;
    mPendingStop = stops ? &stop : nullptr;
    mStopTaken = false;
    const int32_t messages = mMessages;
    const auto resultBefore = guide.Element() ? guide.Element()->Result() : nullptr;
    const bool judgedBefore = resultBefore && resultBefore->Status() != kNotTested;
    const bool pressed = press();
    mPendingStop = nullptr;
    if (!pressed) {
        Fail(step, redo ? "there is no such exposure to redo" : "the button is not enabled");
        return;
    }
    if (stops && !mStopTaken && mScriptError.empty()) {
        Fail(stop, "the run ended after " + PlainText(StoredExposures(guide)) + " exposures");
        return;
    }
    // A run that ended early without a stop was ended by an instrument fault, or never began.
    const bool began = !judgedBefore || guide.Element()->Result() != resultBefore;
    const bool complete = began && StoredExposures(guide) >= PlannedExposures(guide);
    if (!stops && !redo && !complete && (Faulty() || mMessages > messages)) mRunBroken = true;
}

void HeadlessOperator::AfterEvent(IModalWindow* shown) {
    if (shown == nullptr) return;
    // A sleeping detector sees nothing, so the operator wakes it.
    shown->PressButton(guide_button::kWakeUp);
    if (mPendingStop != nullptr && !mStopTaken && StoredExposures(*shown) >= mPendingStop->number)
        PressStop(*shown);
}

/// A stop before the first exposure must precede the first poll, which may deliver that exposure. In
/// fluoroscopy it follows that poll, because it ends the held exposure.
bool HeadlessOperator::BeforeWait(IModalWindow* shown) {
    if (mPendingStop == nullptr || mStopTaken || shown == nullptr || mPendingStop->number != 0) return false;
    const auto element = shown->Element();
    const auto config =
        element ? std::dynamic_pointer_cast<CConfigCommon>(element->Configuration()) : nullptr;
    if (!config || config->pMeasurementMode == kFluoro || !element->Sequence()->gRunActive) return false;
    PressStop(*shown);
    return true;
}

void HeadlessOperator::PressStop(IModalWindow& guide) {
    mStopTaken = true;
    if (!guide.PressButton(guide_button::kStop)) Fail(*mPendingStop, "the button is not enabled");
}

bool HeadlessOperator::Confirm(std::string_view /*question*/) {
    return mNext > 0 && mSteps[mNext - 1].kind == StepKind::kAbort;
}

void HeadlessOperator::Message(std::string_view /*title*/, std::string_view /*message*/) {
    ++mMessages;
}

}  // namespace vorex
