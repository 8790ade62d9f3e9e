#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
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

    std::uint8_t Read_U8() noexcept;
    std::uint16_t Read_U16() noexcept;
    std::int16_t Read_I16() noexcept;
    std::uint32_t Read_U32() noexcept;
    std::int32_t Read_I32() noexcept;
    double Read_Double() noexcept;
    /// The next count bytes as they stand; empty, and the cursor failed, when fewer are left.
    std::span<const std::uint8_t> Read_Bytes(std::size_t count) noexcept;
    void Skip(std::size_t count) noexcept { (void)Read_Bytes(count); }
    /// Absolute position within the span; past the end fails.
    void Seek(std::size_t target) noexcept;
    void Fail() noexcept { failed = true; }

private:
    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
    bool failed = false;
};

/// Collects little-endian values. The counterpart of Byte_Cursor.
class Byte_Writer {
public:
    void Write_U8(std::uint8_t value) { bytes.push_back(value); }
    void Write_U16(std::uint16_t value);
    void Write_I16(std::int16_t value) { Write_U16(static_cast<std::uint16_t>(value)); }
    void Write_U32(std::uint32_t value);
    void Write_I32(std::int32_t value) { Write_U32(static_cast<std::uint32_t>(value)); }
    void Write_Double(double value);
    void Write_Bytes(std::span<const std::uint8_t> data);
    void Write_Text(const std::string& rawBytes);

    /// Room for so many bytes more, for who knows about how many will come.
    void Reserve(std::size_t count) { bytes.reserve(bytes.size() + count); }

    const std::vector<std::uint8_t>& Bytes() const noexcept { return bytes; }
    std::vector<std::uint8_t> Take() noexcept { return std::move(bytes); }

private:
    template <typename Value>
    void Write_Little(Value value);

    std::vector<std::uint8_t> bytes;
};

} // namespace tonvex
