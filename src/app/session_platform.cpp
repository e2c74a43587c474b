#include "app/session_platform.h"

#include "foundation/event.h"

namespace vorex {

ModalEnd SessionPlatform::ShowModal(IModalWindow& window) {
    IModalWindow* const below = std::exchange(mWindow, &window);
    window.Gate([this](const OperatorAct& act) { return Admits(act); });
    if (mWatcher != nullptr) mWatcher->WindowOpened();
    ScheduleAct();
    const ModalEnd end = mPlatform->ShowModal(window);
    window.Gate({});
    mWindow = below;
    if (mWatcher != nullptr) mWatcher->WindowClosed(end);
    return end;
}

/// A tick of the library may reach the place of the next act.
std::unique_ptr<IPlatformTimer> SessionPlatform::CreateTimer(std::function<void()> onTick) {
    return mPlatform->CreateTimer([this, tick = std::move(onTick)] {
        Guarded("timer", tick);
        ScheduleAct();
    });
}

/// A person's act may have come in the middle of a tick.
void SessionPlatform::PumpMessages() {
    RepeatAct();
    mPlatform->PumpMessages();
}

int32_t SessionPlatform::ShowPopupMenu(const std::vector<MenuItem>& items) {
    if (const auto answer = RepeatedAnswer(OperatorAct::Kind::kChoose)) return *answer;
    const int32_t chosen = mPlatform->ShowPopupMenu(items);
    if (mWatcher != nullptr) mWatcher->Acted({OperatorAct::Kind::kChoose, chosen});
    return chosen;
}

/// The person has already read the message.
void SessionPlatform::ShowMessage(std::string_view title, std::string_view message) {
    if (mWatcher == nullptr || !mWatcher->Repeating()) mPlatform->ShowMessage(title, message);
    if (mWatcher != nullptr) mWatcher->Message(title, message);
}

bool SessionPlatform::Confirm(std::string_view question) {
    if (const auto answer = RepeatedAnswer(OperatorAct::Kind::kConfirm)) return *answer != 0;
    const std::optional<bool> own = mWatcher == nullptr ? std::nullopt : mWatcher->Asked(question);
    const bool yes = own ? *own : mPlatform->Confirm(question);
    if (mWatcher != nullptr) mWatcher->Acted({OperatorAct::Kind::kConfirm, yes ? 1 : 0});
    return yes;
}

// ------------------------------------------------------------------------------------- repeated acts

bool SessionPlatform::Admits(const OperatorAct& act) {
    if (std::exchange(mRepeats, false)) return true;
    return mWatcher == nullptr || mWatcher->Acted(act);
}

/// A repeated act is a separate event, as it was originally. It may last: Start returns when the run has
/// ended, and further acts come meanwhile.
void SessionPlatform::ScheduleAct() {
    if (mWatcher == nullptr || mWindow == nullptr || !mWatcher->Repeating()) return;
    if (mWatcher->WayIsLost()) return mWindow->Visible(false);
    const OperatorAct* const due = mWatcher->DueAct();
    if (due == nullptr || IsAnswer(due->kind) || mActTimer) return;
    mActTimer = mPlatform->CreateTimer([this] {
        const auto timer = std::move(mActTimer);
        timer->Stop();
        RepeatAct();
    });
    mActTimer->Start(1);
}

void SessionPlatform::RepeatAct() {
    const OperatorAct* const due = mWatcher == nullptr ? nullptr : mWatcher->DueAct();
    if (due == nullptr || mWindow == nullptr || IsAnswer(due->kind)) return;
    const OperatorAct act = mWatcher->TakeAct();
    mRepeats = true;
    if (!mWindow->Act(act)) mWatcher->Refused(act);
    mRepeats = false;
    ScheduleAct();
}

/// The person's answer before the interruption; nothing when the question is new.
std::optional<int32_t> SessionPlatform::RepeatedAnswer(OperatorAct::Kind kind) {
    while (mWatcher != nullptr && mWatcher->Repeating()) {
        const OperatorAct* const due = mWatcher->WayIsLost() ? nullptr : mWatcher->DueAct();
        if (due != nullptr && IsAnswer(due->kind)) {
            const OperatorAct act = mWatcher->TakeAct();
            if (act.kind != kind) mWatcher->Refused(act);
            return act.number;
        }
        ScheduleAct();
        // Exposures may come while a question is open.
        if (mWatcher->WayIsLost() || !mPlatform->WaitForEvent()) return 0;
    }
    return std::nullopt;
}

// -------------------------------------------------------------------------------------------- clock

std::string SessionPlatform::TimeStamp() {
    std::string now = mPlatform->TimeStamp();
    return mWatcher == nullptr ? now : mWatcher->TimeStamp(std::move(now));
}

}  // namespace vorex
