#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

/// Reads little-endian values from bytes that may come from anyone.
/// The first read past the end fails the cursor, and it stays failed: every later read gives zero
/// values, so a reader may read a whole record and ask Ok() once. Never reads outside the span.
class Byte_Cursor {
public:
    explicit Byte_Cursor(std::span<const std::uint8_t> source) noexcept : bytes(source) {}

    bool Ok() const noexcept { return !failed; }
    std::size_t Position() const noexcept { return position; }
    /// Bytes not yet read; 0 once failed. Check counts against it before sizing anything by them.
    std::size_t Remaining() const noexcept { return failed ? 0 : bytes.size() - position; }

    std::uint8_t Read_U8() noexcept { return Read_Little<std::uint8_t>(); }
    std::uint16_t Read_U16() noexcept { return Read_Little<std::uint16_t>(); }
    std::int16_t Read_I16() noexcept { return static_cast<std::int16_t>(Read_U16()); }
    std::uint32_t Read_U32() noexcept { return Read_Little<std::uint32_t>(); }
    std::int32_t Read_I32() noexcept { return static_cast<std::int32_t>(Read_U32()); }
    double Read_Double() noexcept { return std::bit_cast<double>(Read_Little<std::uint64_t>()); }
    /// The next count bytes as they stand; empty, and the cursor failed, when fewer are left.
    std::span<const std::uint8_t> Read_Bytes(std::size_t count) noexcept {
        if (failed || count > bytes.size() - position) {
            failed = true;
            return {};
        }
        const auto piece = bytes.subspan(position, count);
        position += count;
        return piece;
    }
    void Skip(std::size_t count) noexcept { (void)Read_Bytes(count); }
    /// Absolute position within the span; past the end fails.
    void Seek(std::size_t target) noexcept;
    void Fail() noexcept { failed = true; }

private:
    // In the header, and without a loop, so that a row of a big table costs a load or two a field.
    template <typename Value>
    Value Read_Little() noexcept {
        const auto piece = Read_Bytes(sizeof(Value));
        if (piece.empty())
            return 0;
        return [&piece]<std::size_t... I>(std::index_sequence<I...>) {
            return static_cast<Value>(((static_cast<std::uint64_t>(piece[I]) << (8 * I)) | ...));
        }
        (std::make_index_sequence<sizeof(Value)>());
    }

    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
    bool failed = false;
};

/// A row of at most Size bytes being put together, to be appended in one go where there are many.
template <std::size_t Size>
class Byte_Row {
public:
    template <typename Value>
    void Write_Little(Value value) noexcept {
        for (std::size_t i = 0; i < sizeof(Value); ++i)
            bytes[used++] = static_cast<std::uint8_t>((value >> (8 * i)) & 0xFF);
    }
    void Write_U8(std::uint8_t value) noexcept { Write_Little(value); }
    void Write_U16(std::uint16_t value) noexcept { Write_Little(value); }
    void Write_I32(std::int32_t value) noexcept { Write_Little(static_cast<std::uint32_t>(value)); }
    void Write_Double(double value) noexcept { Write_Little(std::bit_cast<std::uint64_t>(value)); }
    std::span<const std::uint8_t> Bytes() const noexcept { return std::span(bytes).first(used); }

private:
    std::array<std::uint8_t, Size> bytes;
    std::size_t used = 0;
};

/// Collects little-endian values. The counterpart of Byte_Cursor.
class Byte_Writer {
public:
    void Write_U8(std::uint8_t value) { bytes.push_back(value); }
    void Write_U16(std::uint16_t value) { Write_Little(value); }
    void Write_I16(std::int16_t value) { Write_U16(static_cast<std::uint16_t>(value)); }
    void Write_U32(std::uint32_t value) { Write_Little(value); }
    void Write_I32(std::int32_t value) { Write_U32(static_cast<std::uint32_t>(value)); }
    void Write_Double(double value) { Write_Little(std::bit_cast<std::uint64_t>(value)); }
    void Write_Bytes(std::span<const std::uint8_t> data);
    void Write_Text(const std::string& rawBytes);

    /// Room for so many bytes more, for who knows about how many will come.
    void Reserve(std::size_t count) { bytes.reserve(bytes.size() + count); }

    const std::vector<std::uint8_t>& Bytes() const noexcept { return bytes; }
    std::vector<std::uint8_t> Take() noexcept { return std::move(bytes); }

private:
    template <typename Value>
    void Write_Little(Value value) {
        Byte_Row<sizeof(Value)> piece;
        piece.Write_Little(value);
        Write_Bytes(piece.Bytes());
    }

    std::vector<std::uint8_t> bytes;
};

} // namespace tonvex
