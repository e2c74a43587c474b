#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/class_registry.h"
#include "foundation/host_contract.h"

namespace vorex::test {

/// Keeps what it hears, "Edited;".
class FakeCallback : public IControlCallback {
  public:
    void CallBack(std::string_view what) override { heard += std::string(what) + ";"; }
    std::string heard;
};

/// A control that keeps what it was given, and counts.
class FakeControl : public ICustomControl, public LibraryObject {
  public:
    std::shared_ptr<IControlCallback> CallBack() const override { return mCallback; }
    void CallBack(std::shared_ptr<IControlCallback> callback) override { mCallback = std::move(callback); }
    WindowHandle hWnd() const override { return 7; }
    bool Visible() const override { return true; }
    void Visible(bool) override {}
    bool Locked() const override { return mLocked; }
    void Locked(bool locked) override { mLocked = locked; }
    void Initialize(ControlArgument argument) override { given = std::move(argument); }
    void Refresh() override { ++refreshed; }
    void SetFocus() override { ++focused; }

    ControlArgument given;
    int refreshed = 0;
    int focused = 0;

  private:
    std::shared_ptr<IControlCallback> mCallback;
    bool mLocked = false;
};

}  // namespace vorex::test
