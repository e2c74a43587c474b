#include "reports/report_model.h"

#include <algorithm>
#include <cstring>

namespace vorex {

std::string_view TextStore::Add(std::string_view text) {
    if (text.empty()) return {};
    if (text.size() > mLeft) {
        const std::size_t size = std::max(kBlock, text.size());
        mBlocks.push_back(std::make_unique_for_overwrite<char[]>(size));
        mNext = mBlocks.back().get();
        mLeft = size;
    }
    std::memcpy(mNext, text.data(), text.size());
    const std::string_view kept(mNext, text.size());
    mNext += text.size();
    mLeft -= text.size();
    return kept;
}

}  // namespace vorex
