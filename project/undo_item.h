#pragma once

#include "creator/music_creator_module.h"
#include "engine/gcm_midi.h"
#include "engine/transport_state.h"
#include "platform/millisecond_counter.h"
#include "platform/user_dialogs.h"
#include "song/change_hub.h"
#include "song/global_channels_manager.h"
#include "song/marks.h"
#include "song/project_state.h"
#include "song/tempo_change_class.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace tonvex {

/// The parts of a song that undo keeps and brings back, and what has to hear of it. All outlive the undo.
struct Undo_Song {
    GlobalChannelsManager& channels;
    TempoChangeClass& tempoChanges;
    Song_Marks& marks;
    MusicCreator_Module& creator;
    Project_State& project;
    const Transport_State& transport;
    GCM_Midi& gcm;
    Change_Hub& hub;
    const Millisecond_Counter& counter;
    User_Dialogs& dialogs;
    /// Tells the views of a change that no message made: as EventRaiserClass::PassMsg.
    std::function<void(int msgId, std::int32_t param, const std::string& text)> tell;
};

/// What an item holds.
enum class Undo_Kind : std::uint8_t {
    Events = 1,          ///< all events of channel row RowI; in a file
    Volume_Map = 2,      ///< of output slot RowI; in a file
    Pan_Map = 3,         ///< of output slot RowI; in a file
    Row = 4,             ///< row RowI of the channel table, whose sound follows
    Plain_Row = 5,       ///< the same of a row without a channel: what stands there is kept, nothing sounds
    Added_Channel = 6,   ///< a channel that came into row RowI
    Deleted_Channel = 7, ///< a channel that went from row RowI, with its events and maps
    Effects = 8,         ///< effect row RowI
    Tempo = 9,           ///< the song's first tempo
    Music_Creator = 10,  ///< all of it; in a file
    Tempo_List = 11,     ///< in a file
    Audio_Map = 12,      ///< map SubI (Map_Kind) of audio row RowI; in a file
    Marks = 13           ///< the table of marks
};

/// A channel that is not in the song.
struct Kept_Channel {
    GlobalChannel Row;
    std::shared_ptr<const Channel_Content> Events;
    int MapRow = -1; ///< audio row of its maps; -1 for a MIDI channel
    Map_Content VolMap;
    Map_Content PanMap;
    bool operator==(const Kept_Channel&) const = default;
};

/// A state of one part of the song; the channel's ID for an added channel.
using Undo_State = std::variant<std::monostate, std::int32_t, GlobalChannel, Kept_Channel,
                                std::shared_ptr<const Channel_Content>, Map_Content, Effect_Settings,
                                MusicCreator_Module, Tempo_Content, Song_Marks>;

/// One part of the song in one state. A kind that lives in a file keeps its state in memory until Write, and
/// for good when the file cannot be written. Interface thread.
struct UndoItem {
    /// The part as it is now.
    static UndoItem Now(const Undo_Song& song, Undo_Kind kind, std::int32_t rowI, std::int32_t subI);

    std::filesystem::path FileName; ///< empty while there is none
    Undo_Kind ItemKind = Undo_Kind::Row;
    std::int32_t RowI = 0;
    std::int32_t SubI = 0;
    Undo_State ItemValue;              ///< nothing once the file holds it
    std::vector<std::int32_t> clipIds; ///< clips that the channel kept here plays
    std::uint64_t revision = 0;        ///< of the channel's events

    bool Is_About(Undo_Kind kind, std::int32_t rowI, std::int32_t subI) const noexcept {
        return ItemKind == kind && RowI == rowI && SubI == subI;
    }
    /// The song is not in this state any more. Asked before Write.
    bool Differs(const Undo_Song& song) const;
    static bool Lives_In_File(Undo_Kind kind) noexcept;
    void Write(const std::filesystem::path& path);
    /// The state, from the file if it is there; nothing when that cannot be read.
    Undo_State Read() const;
    /// Puts a state that Read gave in place of the present one.
    void Restore(const Undo_Song& song, const Undo_State& state) const;
};

} // namespace tonvex
