#pragma once

#include "song/channel_class.h"
#include "song/effect_records.h"
#include "song/project_state.h"
#include "song/song_maps.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tonvex {

/// One row of the channel table.
struct GlobalChannel {
    std::int32_t ChannelID = 0;
    std::string ChannelName;  ///< at most 50 characters
    std::uint8_t Volume = 80; ///< 0 to 127
    std::int16_t PatchI = 0;  ///< row of the patch table, the same on all rows of a slot
    std::uint8_t Pan = 64;    ///< 0 to 127
    std::string SoundfontSet = "Default";
    std::uint8_t OutputChannel = 0; ///< slot 0 to 31; 255 on an audio channel
    Flag16 Mute = 0;
    Flag16 Solo = 0;
    Flag16 IsAudio = 0;
    std::uint16_t AudioOutput = 0;
    std::uint16_t ReservedA = 0;
    std::uint8_t PatchByte0 = 0; ///< program
    std::uint8_t PatchByte1 = 0; ///< bank
    std::uint8_t Style = 0;
    Flag16 InUse = 0;
    std::uint16_t StyleFlagA = 0;
    std::uint16_t StyleFlagB = 0;
    std::array<std::string, 5> StyleStrings;
    std::array<std::int16_t, 5> StyleInts{};
    std::array<std::int32_t, 11> StyleCustomInts{};
    bool operator==(const GlobalChannel&) const = default;
};

struct OutputSlot {
    std::string SlotName;
    Flag16 InUse = FLAG_ON;
    Flag16 SlotDrums = 0;
    std::uint8_t MidiChannel = 0;
};

/// A sound on offer. Rows of Global_Patches (melodic) and Global_DrumPatches (kits).
struct PatchRow {
    std::string Name;
    std::int16_t Patch = 0; ///< program 0 to 127
    std::uint8_t Bank = 0;
    std::int32_t Font = 0; ///< font handle of the sound door; 0: whichever font has it
    bool operator==(const PatchRow&) const = default;
};

/// The song's channels: a table of rows that stay where they are, each with its event store.
/// Rows 0 to 99 are channels. Row 100 stands for the practice channel: its fields are used by whoever asks
/// for that row, but it is never live, as are rows 101 to 109.
/// What belongs to an output slot is the same on all live rows of the slot: the patch always, the pan once
/// it is set.
/// Interface thread only. An unknown ChannelID, a slot or a patch row outside its table changes nothing.
class GlobalChannelsManager {
public:
    static constexpr int CHANNEL_ROWS = 100;
    static constexpr int PRACTICE_ROW = 100;
    static constexpr int TABLE_ROWS = 110;
    static constexpr int SLOTS = 32;
    static constexpr int PATCH_ROWS = 256;
    static constexpr int DRUM_PATCH_ROWS = 11;

    /// host outlives the manager.
    explicit GlobalChannelsManager(Channel_Host& host);

    // tables; rows are read freely, changed through the operations
    std::array<GlobalChannel, TABLE_ROWS> Channels;
    std::array<OutputSlot, SLOTS> OutputSlots;
    std::array<PatchRow, PATCH_ROWS> Global_Patches;
    std::array<PatchRow, DRUM_PATCH_ROWS> Global_DrumPatches;
    /// The maps of the slots, and those of audio channels from their coming to their going.
    Song_Maps Maps;
    /// What the outputs sound through.
    Song_Effects Effects;
    int PatchCount = 0;     ///< used rows of Global_Patches
    int DrumPatchCount = 0; ///< used rows of Global_DrumPatches

    int Count_Channels() const;
    /// -1 when there is no such live channel.
    int ChannelI(std::int32_t channelId) const;
    /// -1 when there is none.
    int First_Free_Row() const;
    bool Has_Free_Row() const { return First_Free_Row() >= 0; }
    bool Is_Live_Row(int row) const;
    /// The row of Effects that a channel row sounds through; -1 for a row that is not live and for an audio
    /// output beyond the table.
    int Effect_Row(int row) const;
    /// The store beside a row, 0 to 99; row 100 has an empty one. Its address stays for the whole run.
    ChannelClass& Store(int row);
    const ChannelClass& Store(int row) const;

    /// outputSlot NOT_GIVEN, or one that is no slot, picks Next_Free_Slot. A slot in use gives the channel
    /// its patch. Returns the row, -1 when the table is full or a live channel has the ID.
    int Add_Channel(std::int32_t channelId, bool isAudio, std::int32_t outputSlot, const std::string& name);
    /// An ID that no channel of this project has had: the first is FIRST_ID, each later one 1 more. IDs
    /// that channels were added with count as used.
    std::int32_t New_ChannelID();
    void Delete_Channel(std::int32_t channelId);
    /// A channel comes back into the row that it had, which is free, with its events; an audio channel's maps
    /// into mapRow, which is free, as new. Its ID stays used.
    void Restore_Channel(int row, const GlobalChannel& channel, const Channel_Content& events, int mapRow);
    /// toggle inverts, else sets; the flag after it.
    bool Set_Mute(std::int32_t channelId, bool value, bool toggle = false);
    bool Set_Solo(std::int32_t channelId, bool value, bool toggle = false);
    /// 0 to 127; above that is 127. An audio channel's volume is one of 0 to 100 and its volume map follows:
    /// the points around the song's position take the value on the map's scale.
    void Set_Volume(std::int32_t channelId, std::uint8_t value, double position = 0.0);
    /// 0 to 127; above that is 127. On a slot the pan goes to all rows, and to the slot's pan map while that
    /// is undrawn.
    void Set_Pan(std::int32_t channelId, std::uint8_t value);
    /// Row of Global_Patches, on the drum slot of Global_DrumPatches. The patch goes to all rows of the slot.
    void Set_Patch(std::int32_t channelId, std::int16_t patchI);
    /// Made unique as Unique_Name does.
    void Set_Name(std::int32_t channelId, const std::string& name);
    /// Takes the patch of the slot, if a live channel is on it, else its own along.
    void Set_OutputChannel(std::int32_t channelId, std::uint8_t slot);
    /// name, or name and a counter, so that no other live row has it (letter case aside), of at most 50
    /// characters. An empty name becomes "Channel" and a counter.
    std::string Unique_Name(const std::string& name, int exceptRow = -1) const;
    /// Lowest slot that is not the drum slot and that no channel uses; 0 when there is none.
    int Next_Free_Slot() const;
    /// Smallest number that no audio channel has.
    std::uint16_t Next_AudioOutput() const;
    /// False, with a text for the user, when one more channel of the style would be too many.
    bool Style_Limit(std::uint8_t style, std::string& message) const;
    /// What mute and solo together make of a row: mute wins; with any solo on, rows without it are silent.
    bool Effective_Mute(int row) const;
    /// Maximum of Get_ChannelLength_Beats over live channels.
    double Longest_Channel_Beats() const;

    /// True while the transport runs; the session gives the answer.
    std::function<bool()> Play_Is_Active = [] { return false; };

    /// Empties all rows and slots, as a new project does. The patch tables stay.
    void Clear();
    /// Another song's rows in place of these: all else is empty afterwards, and the caller gives audio
    /// channels their maps. Of live rows, values out of range are brought into it. False, and all empty, when
    /// two live rows have one ID.
    bool Take_Rows(const std::array<GlobalChannel, TABLE_ROWS>& rows);
    /// Gives each live row the patch row of the tables in force whose program and bank it names, if there is
    /// one: for tables that were filled anew behind a load.
    void Find_Patches();

private:
    GlobalChannel* Live_Channel(std::int32_t channelId);
    /// First live row on the slot other than exceptRow, -1 when there is none.
    int Row_On_Slot(std::uint8_t slot, int exceptRow) const;
    bool Give_Patch(GlobalChannel& channel, std::int16_t patchI) const;
    void Take_Slot(int row, std::uint8_t slot);
    void Follow_Pan(const GlobalChannel& channel);
    bool Name_Is_Free(const std::string& name, int exceptRow) const;

    std::array<std::unique_ptr<ChannelClass>, CHANNEL_ROWS + 1> stores;
    std::int32_t nextChannelId = FIRST_ID;
};

} // namespace tonvex
