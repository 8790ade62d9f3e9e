// The file form of the music creator's data.

#include "creator/music_creator_module.h"

#include "base/text_codec.h"
#include "creator/old_clean_guitar.h"
#include "creator/style_names.h"
#include "engine/gcm_midi.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

namespace tonvex {

namespace {

constexpr std::size_t EVENT_BYTES = 236;
constexpr std::size_t TRACK_BYTES = 55;
constexpr std::size_t BAR_BYTES = 8;
constexpr std::size_t OLD_TRACKS = 16;

/// A channel's type when its style has none of its own.
constexpr std::uint8_t PLAIN_CHANNEL_STYLE = 4;
/// Rows of a channel's custom numbers with a distorted guitar's further sounds.
constexpr std::size_t HARMONICS_WORD = 0;
constexpr std::size_t MUTED_WORD = 1;

float Read_Beats(Byte_Cursor& cursor) {
    const float beats = std::bit_cast<float>(cursor.Read_U32());
    return std::isfinite(beats) ? beats : 0.0F;
}

template <std::size_t N>
void Read_Array(Byte_Cursor& cursor, std::array<std::uint8_t, N>& target) {
    const auto piece = cursor.Read_Bytes(N);
    std::copy(piece.begin(), piece.end(), target.begin());
}

MCBarEvent Read_Event(Byte_Cursor& cursor) {
    MCBarEvent event;
    event.InUse = cursor.Read_U16();
    event.StartBeat = Read_Beats(cursor);
    event.LengthBeats = Read_Beats(cursor);
    for (std::int16_t& word : event.ViewWords)
        word = cursor.Read_I16();
    for (std::int32_t& number : event.ViewLongs)
        number = cursor.Read_I32();
    event.TrackIndex = cursor.Read_U8();
    event.LengthI = cursor.Read_I32();
    event.TrackID = cursor.Read_I16();
    event.EventID = cursor.Read_I32();
    Read_Array(cursor, event.StyleBlock);
    event.Reserved = cursor.Read_U8();
    return event;
}

void Write_Event(Byte_Writer& writer, const MCBarEvent& event) {
    writer.Write_U16(event.InUse);
    writer.Write_U32(std::bit_cast<std::uint32_t>(event.StartBeat));
    writer.Write_U32(std::bit_cast<std::uint32_t>(event.LengthBeats));
    for (const std::int16_t word : event.ViewWords)
        writer.Write_I16(word);
    for (const std::int32_t number : event.ViewLongs)
        writer.Write_I32(number);
    writer.Write_U8(event.TrackIndex);
    writer.Write_I32(event.LengthI);
    writer.Write_I16(event.TrackID);
    writer.Write_I32(event.EventID);
    writer.Write_Bytes(event.StyleBlock);
    writer.Write_U8(event.Reserved);
}

MCTrack Read_Track(Byte_Cursor& cursor) {
    MCTrack track;
    track.DisplayByte = cursor.Read_U8();
    track.TrackID = cursor.Read_I16();
    track.ChannelID = cursor.Read_I32();
    const auto name = cursor.Read_Bytes(MCTrack::NAME_BYTES);
    track.Name =
        Text_From_Fixed_Field(std::string_view(reinterpret_cast<const char*>(name.data()), name.size()));
    track.InstanceNumber = cursor.Read_U8();
    track.Style = cursor.Read_U8();
    track.ShownFlag = cursor.Read_U16();
    track.PlayerSlot = cursor.Read_U8();
    track.InUse = cursor.Read_U16();
    track.OldPatchA = cursor.Read_U8();
    track.OldPatchB = cursor.Read_U8();
    Read_Array(cursor, track.Reserved);
    return track;
}

void Write_Track(Byte_Writer& writer, const MCTrack& track) {
    writer.Write_U8(track.DisplayByte);
    writer.Write_I16(track.TrackID);
    writer.Write_I32(track.ChannelID);
    writer.Write_Text(Fixed_Field(track.Name, MCTrack::NAME_BYTES));
    writer.Write_U8(track.InstanceNumber);
    writer.Write_U8(track.Style);
    writer.Write_U16(track.ShownFlag);
    writer.Write_U8(track.PlayerSlot);
    writer.Write_U16(track.InUse);
    writer.Write_U8(track.OldPatchA);
    writer.Write_U8(track.OldPatchB);
    writer.Write_Bytes(track.Reserved);
}

MCBar Read_Bar(Byte_Cursor& cursor) {
    MCBar bar;
    bar.Root = cursor.Read_U8();
    bar.ChordType = cursor.Read_U8();
    bar.HasChord = cursor.Read_U16();
    bar.Reserved = cursor.Read_U16();
    bar.BarSelected = cursor.Read_U16();
    return bar;
}

void Write_Bar(Byte_Writer& writer, const MCBar& bar) {
    writer.Write_U8(bar.Root);
    writer.Write_U8(bar.ChordType);
    writer.Write_U16(bar.HasChord);
    writer.Write_U16(bar.Reserved);
    writer.Write_U16(bar.BarSelected);
}

/// Rows of a table whose highest row the file tells (-1: none). Nothing, and the cursor failed, when they do
/// not all stand in the file.
std::optional<std::size_t> Rows_Up_To(Byte_Cursor& cursor, std::int32_t highest, std::size_t rowBytes) {
    const auto rows = static_cast<std::size_t>(std::int64_t{highest} + 1);
    if (highest < -1 || rows > cursor.Remaining() / rowBytes) {
        cursor.Fail();
        return std::nullopt;
    }
    return rows;
}

template <typename Row, typename Read>
void Read_Rows(Byte_Cursor& cursor, std::size_t count, std::vector<Row>& rows, Read readRow) {
    rows.clear();
    rows.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        rows.push_back(readRow(cursor));
}

/// tracks: of a table without its highest row in the file.
bool Read_Section(Byte_Cursor& cursor, std::optional<std::size_t> tracks, MusicCreator_Module& target) {
    target.SongKey = cursor.Read_I32();
    target.SongMode = cursor.Read_I32();
    // One record more than the count says, also for none.
    const std::int32_t live = cursor.Read_I32();
    const auto events = Rows_Up_To(cursor, live, EVENT_BYTES);
    if (!events || live < 0)
        return false;
    Read_Rows(cursor, *events, target.MC_Events, Read_Event);
    target.NextEventID = std::max(cursor.Read_I32(), FIRST_ID + live);
    if (!tracks)
        tracks = Rows_Up_To(cursor, cursor.Read_I32(), TRACK_BYTES);
    if (!tracks || *tracks > cursor.Remaining() / TRACK_BYTES)
        return false;
    Read_Rows(cursor, *tracks, target.MC_Tracks, Read_Track);
    const std::int32_t highestBar = cursor.Read_I32();
    target.LastBar = cursor.Read_I32();
    const auto bars = Rows_Up_To(cursor, highestBar, BAR_BYTES);
    if (!bars || target.LastBar < -1 || target.LastBar > highestBar)
        return false;
    Read_Rows(cursor, static_cast<std::size_t>(std::int64_t{target.LastBar} + 1), target.MC_Bars, Read_Bar);
    cursor.Skip((*bars - target.MC_Bars.size()) * BAR_BYTES);
    target.MC_Bars.resize(*bars);
    return cursor.Ok();
}

std::int32_t Patch_Word(std::uint8_t oldPatch) {
    return static_cast<std::int32_t>(GCM_Midi::GCM_PackPatch(oldPatch, oldPatch, 0));
}

GlobalChannel* Live_Channel(std::span<GlobalChannel> rows, std::int32_t channelId) {
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const GlobalChannel& row) {
        return Is_On(row.InUse) && row.ChannelID == channelId;
    });
    return found == rows.end() ? nullptr : &*found;
}

void Give_Channel_Its_Style(MCTrack& track, std::span<GlobalChannel> rows) {
    GlobalChannel* const channel = Live_Channel(rows, track.ChannelID);
    if (channel) {
        const bool own = track.Style >= STYLE_GUITAR_CLEAN && track.Style <= STYLE_BASS;
        channel->Style = own ? track.Style : PLAIN_CHANNEL_STYLE;
    }
    if (track.Style != STYLE_GUITAR_DIST)
        return;
    if (channel) {
        channel->StyleCustomInts[HARMONICS_WORD] = Patch_Word(track.OldPatchA);
        channel->StyleCustomInts[MUTED_WORD] = Patch_Word(track.OldPatchB);
    }
    track.OldPatchA = 0;
    track.OldPatchB = 0;
}

} // namespace

void MusicCreator_Module::MC_SaveData(Byte_Writer& writer) const {
    const auto live = static_cast<std::int32_t>(std::count_if(
        MC_Events.begin(), MC_Events.end(), [](const MCBarEvent& event) { return Is_On(event.InUse); }));
    writer.Write_I32(SongKey);
    writer.Write_I32(SongMode);
    writer.Write_I32(live);
    std::int32_t nextId = FIRST_ID;
    for (const MCBarEvent& event : MC_Events) {
        if (!Is_On(event.InUse))
            continue;
        MCBarEvent stored = event;
        stored.EventID = nextId++;
        Write_Event(writer, stored);
    }
    Write_Event(writer, MCBarEvent{});
    writer.Write_I32(nextId);
    writer.Write_I32(static_cast<std::int32_t>(MC_Tracks.size()) - 1);
    for (const MCTrack& track : MC_Tracks)
        Write_Track(writer, track);
    writer.Write_I32(static_cast<std::int32_t>(MC_Bars.size()) - 1);
    writer.Write_I32(LastBar);
    for (std::size_t bar = 0; bar < MC_Bars.size(); ++bar)
        Write_Bar(writer, static_cast<std::int32_t>(bar) <= LastBar ? MC_Bars[bar] : MCBar{});
}

bool MusicCreator_Module::MC_LoadData_V3(Byte_Cursor& cursor) {
    MusicCreator_Module read;
    if (!Read_Section(cursor, std::nullopt, read))
        return false;
    *this = std::move(read);
    return true;
}

bool MusicCreator_Module::MC_LoadData_V2(Byte_Cursor& cursor, std::span<GlobalChannel> rows) {
    MusicCreator_Module read;
    if (!Read_Section(cursor, OLD_TRACKS, read))
        return false;
    for (MCTrack& track : read.MC_Tracks)
        if (Is_On(track.InUse))
            Give_Channel_Its_Style(track, rows);
    *this = std::move(read);
    return true;
}

bool MusicCreator_Module::MC_LoadData_V1(Byte_Cursor& cursor, std::span<GlobalChannel> rows,
                                         double msPerBeat) {
    if (!MC_LoadData_V2(cursor, rows))
        return false;
    for (MCBarEvent& event : MC_Events) {
        const int track = Is_On(event.InUse) ? MC_TrackIndexFromID(event.TrackID) : -1;
        if (track >= 0 && MC_Tracks[static_cast<std::size_t>(track)].Style == STYLE_GUITAR_CLEAN)
            Renew_Old_Clean_Guitar(event.StyleBlock, msPerBeat);
    }
    return true;
}

} // namespace tonvex
