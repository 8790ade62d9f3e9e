#include "project/midi_format.h"

#include <array>

namespace tonvex::midi_format {

namespace {

constexpr int GROUP_BITS = 7;
constexpr std::int64_t GROUP_MASK = 0x7F;
constexpr std::uint8_t MORE_FOLLOWS = 0x80;
constexpr int LAST_GROUP_SHIFT = 21;

} // namespace

void Append_VariableLength(Bytes& bytes, std::int64_t value) {
    for (int shift = LAST_GROUP_SHIFT; shift > 0; shift -= GROUP_BITS) {
        if ((value >> shift) != 0)
            bytes.push_back(static_cast<std::uint8_t>(((value >> shift) & GROUP_MASK) | MORE_FOLLOWS));
    }
    bytes.push_back(static_cast<std::uint8_t>(value & GROUP_MASK));
}

void Append_Delta(Bytes& bytes, std::int64_t ticks) {
    for (; ticks > MAX_VARIABLE_LENGTH; ticks -= MAX_VARIABLE_LENGTH) {
        Append_VariableLength(bytes, MAX_VARIABLE_LENGTH);
        Append_Meta(bytes, META_TEXT, {});
    }
    Append_VariableLength(bytes, ticks);
}

void Append_Number(Bytes& bytes, std::uint32_t value, int byteCount) {
    constexpr int BITS = 8;
    for (int shift = (byteCount - 1) * BITS; shift >= 0; shift -= BITS)
        bytes.push_back(static_cast<std::uint8_t>((value >> shift) & 0xFF));
}

void Append_Meta(Bytes& bytes, std::uint8_t type, std::string_view data) {
    bytes.push_back(META);
    bytes.push_back(type);
    bytes.push_back(static_cast<std::uint8_t>(data.size()));
    bytes.insert(bytes.end(), data.begin(), data.end());
}

void Append_Track(Bytes& bytes, const Bytes& events) {
    constexpr std::string_view name = "MTrk";
    constexpr std::array<std::uint8_t, 4> end = {0, META, META_END_OF_TRACK, 0};
    bytes.insert(bytes.end(), name.begin(), name.end());
    Append_Number(bytes, static_cast<std::uint32_t>(events.size() + end.size()), 4);
    bytes.insert(bytes.end(), events.begin(), events.end());
    bytes.insert(bytes.end(), end.begin(), end.end());
}

} // namespace tonvex::midi_format
