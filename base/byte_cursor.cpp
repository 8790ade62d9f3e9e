#include "base/byte_cursor.h"

#include <array>
#include <bit>

namespace tonvex {

std::span<const std::uint8_t> Byte_Cursor::Read_Bytes(std::size_t count) noexcept {
    if (failed || count > bytes.size() - position) {
        failed = true;
        return {};
    }
    const auto piece = bytes.subspan(position, count);
    position += count;
    return piece;
}

std::uint8_t Byte_Cursor::Read_U8() noexcept {
    const auto piece = Read_Bytes(1);
    return piece.empty() ? std::uint8_t{0} : piece[0];
}

std::uint16_t Byte_Cursor::Read_U16() noexcept {
    const auto piece = Read_Bytes(2);
    if (piece.empty())
        return 0;
    return static_cast<std::uint16_t>(piece[0] | (piece[1] << 8));
}

std::int16_t Byte_Cursor::Read_I16() noexcept {
    return static_cast<std::int16_t>(Read_U16());
}

std::uint32_t Byte_Cursor::Read_U32() noexcept {
    const auto piece = Read_Bytes(4);
    std::uint32_t value = 0;
    for (std::size_t i = piece.size(); i-- > 0;)
        value = (value << 8) | piece[i];
    return value;
}

std::int32_t Byte_Cursor::Read_I32() noexcept {
    return static_cast<std::int32_t>(Read_U32());
}

double Byte_Cursor::Read_Double() noexcept {
    const auto piece = Read_Bytes(8);
    std::uint64_t value = 0;
    for (std::size_t i = piece.size(); i-- > 0;)
        value = (value << 8) | piece[i];
    return std::bit_cast<double>(value);
}

void Byte_Cursor::Seek(std::size_t target) noexcept {
    if (failed || target > bytes.size())
        failed = true;
    else
        position = target;
}

void Byte_Writer::Write_U16(std::uint16_t value) {
    Write_Little(value);
}

void Byte_Writer::Write_U32(std::uint32_t value) {
    Write_Little(value);
}

void Byte_Writer::Write_Double(double value) {
    Write_Little(std::bit_cast<std::uint64_t>(value));
}

template <typename Value>
void Byte_Writer::Write_Little(Value value) {
    std::array<std::uint8_t, sizeof(Value)> piece{};
    for (std::size_t i = 0; i < piece.size(); ++i)
        piece[i] = static_cast<std::uint8_t>((value >> (8 * i)) & 0xFF);
    bytes.insert(bytes.end(), piece.begin(), piece.end());
}

void Byte_Writer::Write_Bytes(std::span<const std::uint8_t> data) {
    bytes.insert(bytes.end(), data.begin(), data.end());
}

void Byte_Writer::Write_Text(const std::string& rawBytes) {
    bytes.insert(bytes.end(), rawBytes.begin(), rawBytes.end());
}

} // namespace tonvex
