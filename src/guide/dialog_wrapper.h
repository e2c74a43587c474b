#pragma once

#include <memory>
#include <string_view>

#include "foundation/class_registry.h"
#include "foundation/host_contract.h"

namespace vorex {

/// A dialog around a control, which the host can dock into one of its windows. Without a control every
/// operation does nothing and every getter returns an empty value.
class FDialogWrapper : public IDialog, public LibraryObject {
  public:
    /// The message of a dialog that is shown stand-alone.
    static constexpr std::string_view kNote =
        "This dialog should always be docked in another window, and should never be shown stand-alone. This "
        "window is used along with the CTest classes, to show custom test element configuration for ZRD47500 "
        "tests . I.e. this form is shared between these two projects.";

    /// Makes a control of a class and keeps it; empty for an empty name or an unknown class.
    std::shared_ptr<ICustomControl> CreateSetupCtrl(std::string_view className);
    const std::shared_ptr<ICustomControl>& Control() const { return mCustom; }

    bool Visible() const { return mVisible; }
    WindowHandle hWnd() const { return mWindow; }
    /// The window that draws this dialog; 0 while there is none.
    void hWnd(WindowHandle window) { mWindow = window; }
    void GotFocus() { SetFocus(); }

    // IDialog
    std::shared_ptr<IControlCallback> CallBack() const override;
    void CallBack(std::shared_ptr<IControlCallback> callback) override;
    bool IsDocked() const override { return mDocked; }
    bool Locked() const override;
    void Locked(bool locked) override;
    void Initialize(ControlArgument argument) override;
    void Hide() override { mVisible = false; }
    void Show() override { mVisible = true; }
    /// Does nothing for window 0.
    void Dock(WindowHandle parent) override;
    void UnDock() override;
    void Unload() override;
    /// Moves the control when docked, else the dialog. Does nothing unless the width is above 0.
    void Move(int32_t left, int32_t top, int32_t width, int32_t height) override;
    void Refresh() override;
    void SetFocus() override;

  private:
    void PutControlInto(WindowHandle window);

    std::shared_ptr<ICustomControl> mCustom;
    bool mDocked = false;
    bool mVisible = false;
    WindowHandle mWindow = 0;
};

/// A dialog around a new control of a class, initialised with its argument; empty when no control of the
/// class exists.
std::shared_ptr<IDialog> CreateControlDialog(std::string_view className, ControlArgument argument);

}  // namespace vorex
