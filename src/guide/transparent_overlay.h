#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vorex {

/// The message over the guide's result view while an instrument is busy.
class XTransparent {
  public:
    bool Visible() const { return mVisible; }
    void Visible(bool visible) { mVisible = visible; }
    const std::string& LabelCaption() const { return mCaption; }
    /// Shows the text of a key; any other text is shown unchanged.
    void LabelCaption(std::string_view textKey);

    struct Box {
        int32_t left = 0;
        int32_t top = 0;
        int32_t width = 0;
        int32_t height = 0;
        bool operator==(const Box&) const = default;
    };
    /// Fits the label to the size of the caption in the window's font, and centres it in the control; a
    /// caption larger than the control begins at its edge.
    void ResizeTheLabel(int32_t controlWidth, int32_t controlHeight, int32_t captionWidth,
                        int32_t captionHeight);
    const Box& Label() const { return mLabel; }

  private:
    bool mVisible = false;
    std::string mCaption;
    Box mLabel;
};

}  // namespace vorex
