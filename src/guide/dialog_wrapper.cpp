#include "guide/dialog_wrapper.h"

#include <utility>

#include "foundation/host_services.h"

namespace vorex {

std::shared_ptr<ICustomControl> FDialogWrapper::CreateSetupCtrl(std::string_view className) {
    if (className.empty()) return nullptr;
    mCustom = CreateObjectAs<ICustomControl>(className);
    return mCustom;
}

std::shared_ptr<IControlCallback> FDialogWrapper::CallBack() const {
    return mCustom ? mCustom->CallBack() : nullptr;
}

void FDialogWrapper::CallBack(std::shared_ptr<IControlCallback> callback) {
    if (mCustom) mCustom->CallBack(std::move(callback));
}

bool FDialogWrapper::Locked() const {
    return mCustom && mCustom->Locked();
}

void FDialogWrapper::Locked(bool locked) {
    if (mCustom) mCustom->Locked(locked);
}

void FDialogWrapper::Initialize(ControlArgument argument) {
    if (mCustom) mCustom->Initialize(std::move(argument));
}

void FDialogWrapper::Dock(WindowHandle parent) {
    if (parent == 0) return;
    PutControlInto(parent);
    mDocked = true;
}

void FDialogWrapper::UnDock() {
    PutControlInto(mWindow);
    mDocked = false;
}

void FDialogWrapper::Unload() {
    if (mDocked) UnDock();
    mVisible = false;
    mCustom.reset();
}

void FDialogWrapper::Move(int32_t left, int32_t top, int32_t width, int32_t height) {
    const auto& platform = Services().platform;
    if (width <= 0 || !platform) return;
    const WindowHandle window = mDocked && mCustom ? mCustom->hWnd() : mWindow;
    if (window != 0) platform->MoveWindow(window, left, top, width, height);
}

void FDialogWrapper::Refresh() {
    if (mCustom) mCustom->Refresh();
}

void FDialogWrapper::SetFocus() {
    if (mCustom) mCustom->SetFocus();
}

void FDialogWrapper::PutControlInto(WindowHandle window) {
    const auto& platform = Services().platform;
    if (platform && mCustom) platform->SetParent(mCustom->hWnd(), window);
}

std::shared_ptr<IDialog> CreateControlDialog(std::string_view className, ControlArgument argument) {
    auto dialog = std::make_shared<FDialogWrapper>();
    if (!dialog->CreateSetupCtrl(className)) return nullptr;
    dialog->Initialize(std::move(argument));
    return dialog;
}

}  // namespace vorex
