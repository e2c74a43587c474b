#include "guide/transparent_overlay.h"

#include <algorithm>

#include "foundation/utilities.h"

namespace vorex {

void XTransparent::LabelCaption(std::string_view textKey) {
    mCaption = Translate(textKey);
}

void XTransparent::ResizeTheLabel(int32_t controlWidth, int32_t controlHeight, int32_t captionWidth,
                                  int32_t captionHeight) {
    mLabel.width = std::min(captionWidth, controlWidth);
    mLabel.height = std::min(captionHeight, controlHeight);
    mLabel.left = (controlWidth - mLabel.width) / 2;
    mLabel.top = (controlHeight - mLabel.height) / 2;
}

}  // namespace vorex
