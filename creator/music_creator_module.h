#pragma once

#include "base/byte_cursor.h"
#include "song/global_channels_manager.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

/// A track of the music creator: one style on one channel of the song.
struct MCTrack {
    static constexpr std::uint8_t NEW_DISPLAY_BYTE = 90;
    static constexpr std::size_t NAME_BYTES = 20;

    std::uint8_t DisplayByte = 0; ///< NEW_DISPLAY_BYTE in a track that the program makes
    std::int16_t TrackID = 0;     ///< unique among live tracks
    std::int32_t ChannelID = 0;   ///< the channel that sounds it
    std::string Name;             ///< at most 20 characters
    std::uint8_t InstanceNumber = 0;
    std::uint8_t Style = 0; ///< Style_Number
    Flag16 ShownFlag = FLAG_OFF;
    std::uint8_t PlayerSlot = 0; ///< set on each list build
    Flag16 InUse = FLAG_OFF;
    std::uint8_t OldPatchA = 0; ///< files before version 3; see MC_LoadData_V2
    std::uint8_t OldPatchB = 0;
    std::array<std::uint8_t, 19> Reserved{};
    bool operator==(const MCTrack&) const = default;
};

/// The chord of one bar of 4 beats.
struct MCBar {
    std::uint8_t Root = 0;      ///< 0 to 11
    std::uint8_t ChordType = 0; ///< row of the chord types
    Flag16 HasChord = FLAG_OFF; ///< on once a chord has been set; else the song's key holds
    std::uint16_t Reserved = 0;
    Flag16 BarSelected = FLAG_OFF;
    bool operator==(const MCBar&) const = default;
};

/// A style event on a track.
struct MCBarEvent {
    Flag16 InUse = FLAG_OFF;
    float StartBeat = 0.0F;                  ///< beats
    float LengthBeats = 0.0F;                ///< beats
    std::array<std::int16_t, 3> ViewWords{}; ///< what the window keeps here
    std::array<std::int32_t, 2> ViewLongs{};
    std::uint8_t TrackIndex = 0; ///< refreshed on each list build; the link is TrackID
    std::int32_t LengthI = 0;    ///< LengthBeats rounded, refreshed on each list build
    std::int16_t TrackID = 0;
    std::int32_t EventID = 0;
    std::array<std::uint8_t, 200> StyleBlock{}; ///< the style's own; head: see STYLE_ROOT and its relatives
    std::uint8_t Reserved = 0;
    bool operator==(const MCBarEvent&) const = default;
};

/// Bytes of a style block that all styles have in common.
inline constexpr std::size_t STYLE_ROOT = 0;
inline constexpr std::size_t STYLE_CHORD_TYPE = 1;
inline constexpr std::size_t STYLE_CONFIGURED = 2;    ///< 0: the style fills in its defaults
inline constexpr std::size_t STYLE_NEEDS_REFRESH = 3; ///< 255: the style makes its derived data anew
inline constexpr std::uint8_t STYLE_REFRESH = 255;

/// The song's accompaniment: tracks, the chords of its bars, and style events. A value: a copy is the whole
/// of it. Rows count while InUse is on.
/// Values that came from a file stand as they came, numbers that are none aside: who uses one as an index
/// keeps it within its table. Interface thread.
class MusicCreator_Module {
public:
    static constexpr std::size_t NEW_TRACK_ROWS = 6;
    static constexpr std::size_t NEW_BAR_ROWS = 101;
    static constexpr std::size_t NEW_EVENT_ROWS = 101;
    static constexpr std::int32_t NEW_LAST_BAR = 30;
    static constexpr std::int32_t SECTION_VERSION = 3; ///< what MC_SaveData writes

    MusicCreator_Module() { InitNewFileSettings(); }

    std::vector<MCTrack> MC_Tracks;
    std::vector<MCBar> MC_Bars; ///< at least up to LastBar
    std::vector<MCBarEvent> MC_Events;
    std::int32_t SongKey = 0;  ///< 0 to 11
    std::int32_t SongMode = 0; ///< 0 major, 1 minor
    std::int32_t LastBar = NEW_LAST_BAR;
    std::int32_t NextEventID = FIRST_ID;

    /// As a new song has it.
    void InitNewFileSettings();
    /// count free bars come in before bar (from 0): events from there on move, chords too. LastBar grows.
    /// Bars below 0 or beyond MOST_BARS, or a count that is not above 0, change nothing and give false.
    bool Bars_AddFreeBars(std::int32_t bar, std::int32_t count);
    static constexpr std::int32_t MOST_BARS = 100'000;
    /// First live track with the ID; -1 when there is none.
    int MC_TrackIndexFromID(std::int32_t trackId) const noexcept;

    /// Appends the section. Its events have new IDs, counted from FIRST_ID in their order; those here keep
    /// theirs.
    void MC_SaveData(Byte_Writer& writer) const;
    /// Reads a section from the cursor's place on. False when it is not whole, and nothing has changed.
    bool MC_LoadData_V3(Byte_Cursor& cursor);
    /// Sections of 16 tracks, which held what their channels hold today: each live track gives its channel
    /// among the live rows the style's number (4 for drums and piano), a distorted guitar also its two
    /// further sounds, which the track then no longer has. On failure the rows stay too.
    bool MC_LoadData_V2(Byte_Cursor& cursor, std::span<GlobalChannel> rows);
    /// The same, with the chords of clean guitar events in their older form: lengths in ms become beats by
    /// msPerBeat, and the style makes the notes anew.
    bool MC_LoadData_V1(Byte_Cursor& cursor, std::span<GlobalChannel> rows, double msPerBeat);

    bool operator==(const MusicCreator_Module&) const = default;
};

} // namespace tonvex
