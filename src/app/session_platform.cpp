#include "app/session_platform.h"

namespace vorex {

void SessionPlatform::ShowModal(IModalWindow& window) {
    auto* guide = dynamic_cast<FZRD47500TestGuide*>(&window);
    if (guide != nullptr) {
        mGuide = guide;
        if (mWatcher != nullptr) mWatcher->GuideOpened();
    }
    mPlatform->ShowModal(window);
    if (guide != nullptr) mGuide = nullptr;
}

void SessionPlatform::ShowMessage(std::string_view title, std::string_view message) {
    mPlatform->ShowMessage(title, message);
    if (mWatcher != nullptr) mWatcher->Message(title, message);
}

bool SessionPlatform::Confirm(std::string_view question) {
    if (mWatcher != nullptr)
        if (const std::optional<bool> answer = mWatcher->Asked(question)) return *answer;
    return mPlatform->Confirm(question);
}

std::string SessionPlatform::TimeStamp() {
    std::string now = mPlatform->TimeStamp();
    return mWatcher == nullptr ? now : mWatcher->TimeStamp(std::move(now));
}

}  // namespace vorex
