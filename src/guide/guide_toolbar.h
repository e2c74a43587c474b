#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "execution/test_guide_contract.h"
#include "foundation/modal_window.h"

namespace vorex {

/// The buttons of the guide: their captions, and which of them can be pressed.
class GuideToolbar : public ICaptions {
  public:
    GuideToolbar();

    void ForEachCaption(const std::function<void(std::string&)>& function) override;

    /// In the order of the bar: the fixed buttons, then the target/filters.
    const std::vector<WindowButton>& Buttons() const { return mButtons; }
    /// The button with a key; null when there is none.
    const WindowButton* Find(int32_t key) const;
    bool Takes(int32_t key) const;
    bool Enabled(int32_t key) const;
    void Enable(int32_t key, bool enable);
    void Show(int32_t key, bool show);
    bool Checked(int32_t key) const;
    /// Checks one button of a group and unchecks the others; a key outside the group leaves none checked.
    void CheckOnly(std::span<const int32_t> group, int32_t key);

    /// Replaces the buttons of the target/filters; the index of the checked one counts from 0, -1 is none.
    void SetTargetFilters(const std::vector<std::string>& names, int32_t checkedIndex);
    void CheckTargetFilter(int32_t index);
    /// Names of the target/filters, in the order of their buttons.
    const std::vector<std::string>& TargetFilters() const { return mTargetFilters; }
    /// Index of the checked target/filter, -1 for none.
    int32_t CheckedTargetFilter() const;

  private:
    WindowButton* FindButton(int32_t key);

    std::vector<WindowButton> mButtons;
    std::vector<std::string> mTargetFilters;
};

/// The three ways to enter mAs values; one is chosen.
inline constexpr int32_t kMasButtons[] = {guide_button::kShunt, guide_button::kClamp, guide_button::kManual};

}  // namespace vorex
