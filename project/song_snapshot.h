#pragma once

#include "creator/music_creator_module.h"
#include "project/channels_list_rows.h"
#include "song/channel_content.h"
#include "song/effect_records.h"
#include "song/events_editor_setup.h"
#include "song/global_channels_manager.h"
#include "song/map_content.h"
#include "song/marks.h"
#include "song/project_state.h"
#include "song/song_maps.h"
#include "song/tempo_content.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tonvex {

class TempoChangeClass;

/// The two maps of an audio row.
struct Audio_Maps_Content {
    bool HasMaps = false;
    std::int32_t ChannelID = 0;
    Map_Content VolMap;
    Map_Content PanMap;
    bool operator==(const Audio_Maps_Content&) const = default;
};

/// Everything that a project file holds, as plain values. Taken on the interface thread, then anybody's: it
/// shares nothing that changes. Copies are cheap where it counts: the contents of channels are shared.
/// As made it is a song without channels and marks, with new maps.
struct Song_Snapshot {
    static constexpr int ROWS = GlobalChannelsManager::CHANNEL_ROWS;

    Song_Snapshot();

    Project_State State; ///< Modified and SongLength are of no meaning here
    std::array<GlobalChannel, GlobalChannelsManager::TABLE_ROWS> Channels;
    /// By row; null for a row that is not live and for a channel without events.
    std::array<std::shared_ptr<const Channel_Content>, ROWS> Contents;
    Channels_List_Rows ChannelsList;
    std::array<Mark, Song_Marks::ROWS> Marks;
    std::int32_t MarkCount = 0;
    std::array<Map_Content, Song_Maps::SLOTS> SlotVolumes;
    std::array<Map_Content, Song_Maps::SLOTS> SlotPans;
    std::array<Audio_Maps_Content, Song_Maps::AUDIO_ROWS> AudioMaps;
    Song_Effects Effects;
    EventsEditor_Setup EditorSetup;
    MusicCreator_Module MusicCreator;
    Tempo_Content Tempo;
    std::vector<std::string> Fonts; ///< paths in UTF-8

    /// A live channel of that row, 0 to 99.
    bool Is_Live_Row(int row) const noexcept;
    bool Has_Audio_Channel() const noexcept;
};

/// The objects that hold a song. They outlive who is given them. Interface thread.
struct Song_Model {
    GlobalChannelsManager& channels;
    TempoChangeClass& tempoChanges;
    Song_Marks& marks;
    Project_State& state;
    MusicCreator_Module& creator;
    EventsEditor_Setup& editorSetup;
    Channels_List_Rows& channelsList;
    std::vector<std::string>& fonts;
};

/// The song as it stands. Costs the size of the channels that changed since the snapshot before that
/// somebody still holds. Nothing in the model is sorted or renumbered.
Song_Snapshot Take_Snapshot(const Song_Model& model);
/// Another song in place of the one there. False, and the model an empty song, when it cannot be one. State's
/// Modified and SongLength and the font list's loading are the caller's.
bool Put_Snapshot(const Song_Snapshot& song, const Song_Model& model);

} // namespace tonvex
