#pragma once

#include "base/byte_cursor.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tonvex {

/// count rows of at least rowBytes each by readRow(cursor). False, the cursor failed and nothing sized, when
/// count is below 0 or the rows do not stand in the bytes left.
template <typename Row, typename Reader>
bool Read_Rows(Byte_Cursor& cursor, std::int64_t count, std::size_t rowBytes, std::vector<Row>& rows,
               Reader readRow) {
    if (!cursor.Ok() || count < 0 || static_cast<std::uint64_t>(count) > cursor.Remaining() / rowBytes) {
        cursor.Fail();
        return false;
    }
    rows.clear();
    rows.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i)
        rows.push_back(readRow(cursor));
    return cursor.Ok();
}

} // namespace tonvex
