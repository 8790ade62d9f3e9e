#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>

namespace tonvex {

/// A flag of a 16-bit field: 65535 on, 0 off; a live row is tested by a value above 65534.
using Flag16 = std::uint16_t;
inline constexpr Flag16 FLAG_ON = 65535;
inline constexpr Flag16 FLAG_OFF = 0;
inline constexpr bool Is_On(Flag16 flag) noexcept {
    return flag > 65534;
}
inline constexpr Flag16 To_Flag(bool on) noexcept {
    return on ? FLAG_ON : FLAG_OFF;
}

/// Arguments that are not given.
inline constexpr std::int32_t NOT_GIVEN = 268435455;
inline constexpr double NOT_GIVEN_TIME = 268435455.0;
/// Stable identities start here and rise.
inline constexpr std::int32_t FIRST_ID = -2147483647 - 1;

enum Event_Kind : std::uint8_t {
    EV_NOTE = 0,
    EV_QCHORD = 1,
    EV_PATCH = 3,
    EV_NAMED = 4,
    EV_MC = 5,
    EV_AUDIO = 6
};

/// The fixed length in beats that events without a length report.
inline constexpr double LENGTHLESS_EVENT_BEATS = 500.0;
/// The shortest length in beats that an edit leaves a note, a chord or a style fragment.
inline constexpr double MIN_LENGTH_BEATS = 0.05;
/// The last start time in beats: the number above it, NOT_GIVEN_TIME, bounds a song.
inline constexpr double MAX_EVENT_BEATS = 268435454.0;
/// What a store keeps of a time or length in beats: at most MAX_EVENT_BEATS, and never less than
/// -MAX_EVENT_BEATS; instead when it is not a number, so that the order of events is always defined.
double Stored_Beats(double beats, double instead) noexcept;
/// What a store keeps of an event's start: 0 to MAX_EVENT_BEATS, 0 when it is not a number.
double Start_In_Song(double beats) noexcept;

struct NoteData {
    std::uint8_t Note = 0; ///< MIDI note 0 to 127; 128 + n in a key: n semitones above the active octave
    std::uint8_t Vol = 0;  ///< velocity 0 to 127
    double Length = 0.0;   ///< beats
    bool operator==(const NoteData&) const = default;
};

/// The complete definition of a played chord.
struct QChordData {
    std::uint8_t Active = 0; ///< used entries of ChordNotes, 0 to 6
    std::string ChordName;   ///< at most 10 characters, without the padding
    std::uint8_t Octave = 0; ///< 0 the active octave, k (1 to 6) the fixed octave k
    Flag16 VariableOctave = 0;
    double Length = 0.0;               ///< beats
    std::uint8_t ChordFlagA = 0;       ///< root 0 to 11
    std::uint8_t ChordTypeIndex = 255; ///< 255: no chord type
    std::array<std::uint8_t, 6> ChordNotes{};
    std::uint8_t ChordFlagB = 0; ///< repeat
    std::uint8_t ChordVol = 0;   ///< 0 to 127
    Flag16 ArpeggioOn = 0;
    std::int16_t ArpeggioPattern = 0;
    std::uint8_t PatternNoteCount = 0;
    std::array<std::uint8_t, 10> PatternNotes{};
    std::int16_t StepMs = -1; ///< -1 none
    bool operator==(const QChordData&) const = default;
};

struct PatchData {
    std::int32_t DataRef = 0; ///< row of the patch table
    bool operator==(const PatchData&) const = default;
};

struct NamedEventData {
    Flag16 InUse = FLAG_ON;
    std::string EventName; ///< at most 20 characters
    std::array<std::uint8_t, 122> Block{};
    bool operator==(const NamedEventData&) const = default;
};

struct MCEventData {
    std::uint8_t Root = 0;    ///< 0 to 11
    std::uint8_t Minor = 0;   ///< 0 major
    double Length = 0.0;      ///< beats
    double StartOffset = 0.0; ///< beats
    Flag16 InUse = FLAG_ON;
    std::uint8_t Style = 0; ///< 0 drums, 1 clean guitar, 2 distorted guitar, 3 bass, 4 piano
    std::array<std::uint8_t, 200> StyleBlock{};
    std::uint8_t Reserved = 0; ///< the last byte of a file's row, carried along
    bool operator==(const MCEventData&) const = default;
};

struct AudioEventData {
    Flag16 InUse = FLAG_ON;
    std::int32_t SampleCount = 0; ///< length on the timeline, samples at 44100 Hz
    std::int32_t FadeIn = 0;      ///< samples
    std::int32_t FadeOut = 0;     ///< samples
    std::int16_t Take = 0;
    std::int32_t ClipID = 0;
    bool operator==(const AudioEventData&) const = default;
};

using EventData = std::variant<NoteData, QChordData, PatchData, NamedEventData, MCEventData, AudioEventData>;

/// The kind that a payload makes.
Event_Kind Kind_Of(const EventData& data) noexcept;

} // namespace tonvex
