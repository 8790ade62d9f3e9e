#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// What the writer and the reader of Standard MIDI Files share. All numbers are big-endian.
namespace midi_format {

using Bytes = std::vector<std::uint8_t>;

inline constexpr int CHANNELS = 16;
inline constexpr int DRUM_CHANNEL = 9;
inline constexpr std::int32_t HEADER_LENGTH = 6;
inline constexpr double TEMPO_UNITS = 60000000.0; ///< microseconds a minute
inline constexpr std::int32_t MAX_TEMPO_VALUE = 0xFFFFFF;
inline constexpr std::int64_t LAST_TICK = 0x7FFFFFFF; ///< that a file's reader can count
inline constexpr std::int64_t MAX_VARIABLE_LENGTH = 0x0FFFFFFF;

inline constexpr std::uint8_t SYSEX = 0xF0;
inline constexpr std::uint8_t SYSEX_MORE = 0xF7;
inline constexpr std::uint8_t META = 0xFF;
inline constexpr std::uint8_t META_TEXT = 0x01;
inline constexpr std::uint8_t META_COPYRIGHT = 0x02;
inline constexpr std::uint8_t META_TRACK_NAME = 0x03;
inline constexpr std::uint8_t META_LYRIC = 0x05;
inline constexpr std::uint8_t META_MARKER = 0x06;
inline constexpr std::uint8_t META_END_OF_TRACK = 0x2F;
inline constexpr std::uint8_t META_TEMPO = 0x51;

/// The longest text or name that is written, in bytes: its length takes one byte.
inline constexpr std::size_t MAX_TEXT_BYTES = 127;

/// 7 bits a byte, most significant group first, the high bit set on all bytes but the last. value 0 to
/// MAX_VARIABLE_LENGTH.
void Append_VariableLength(Bytes& bytes, std::int64_t value);
/// The ticks in front of a message. More than one delta can hold are bridged by empty texts.
void Append_Delta(Bytes& bytes, std::int64_t ticks);
void Append_Number(Bytes& bytes, std::uint32_t value, int byteCount);
/// A meta event of at most MAX_TEXT_BYTES bytes, without its delta.
void Append_Meta(Bytes& bytes, std::uint8_t type, std::string_view data);
/// A whole track: header, length, events, and the end that they must not hold themselves.
void Append_Track(Bytes& bytes, const Bytes& events);

} // namespace midi_format
} // namespace tonvex
