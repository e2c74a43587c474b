#pragma once

#include <string_view>

#include "foundation/number_text.h"
#include "results/result_columns.h"
#include "results/result_common.h"

namespace vorex::test {

/// The row that puts texts, joined by ",", into the columns of a source from the first on.
inline DerivedRow RowInOrder(const CResultCommon& result, std::string_view texts, int32_t source) {
    DerivedRow row;
    if (texts.empty()) return row;
    const auto parts = SplitText(texts, ',');
    for (const auto& item : result.Current()) {
        if (row.fields.size() == parts.size()) break;
        if (IsFilledBy(source, item->Facts()))
            row.fields.push_back({ColumnKeyOf(item->RawKey()), std::string(parts[row.fields.size()])});
    }
    return row;
}

}  // namespace vorex::test
