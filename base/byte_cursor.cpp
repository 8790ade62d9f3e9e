#include "base/byte_cursor.h"

namespace tonvex {

void Byte_Cursor::Seek(std::size_t target) noexcept {
    if (failed || target > bytes.size())
        failed = true;
    else
        position = target;
}

void Byte_Writer::Write_Bytes(std::span<const std::uint8_t> data) {
    bytes.insert(bytes.end(), data.begin(), data.end());
}

void Byte_Writer::Write_Text(const std::string& rawBytes) {
    bytes.insert(bytes.end(), rawBytes.begin(), rawBytes.end());
}

} // namespace tonvex
