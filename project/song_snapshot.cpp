#include "project/song_snapshot.h"

#include "song/tempo_change_class.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

/// A map needs a song to be one at all; what it holds does not depend on it.
class No_Song final : public Song_Length_Source {
public:
    double Song_Length_Beats() const override { return 0.0; }
};

std::size_t Index(int row) noexcept {
    return static_cast<std::size_t>(row);
}

} // namespace

Song_Snapshot::Song_Snapshot() {
    const No_Song song;
    const Map_Content newMap = PanVol_Class(song).Content();
    SlotVolumes.fill(newMap);
    SlotPans.fill(newMap);
}

bool Song_Snapshot::Is_Live_Row(int row) const noexcept {
    return row >= 0 && row < ROWS && Is_On(Channels[Index(row)].InUse);
}

bool Song_Snapshot::Has_Audio_Channel() const noexcept {
    return std::any_of(Channels.begin(), Channels.begin() + ROWS, [](const GlobalChannel& channel) {
        return Is_On(channel.InUse) && Is_On(channel.IsAudio);
    });
}

Song_Snapshot Take_Snapshot(const Song_Model& model) {
    Song_Snapshot song;
    song.State = model.state;
    song.Channels = model.channels.Channels;
    for (int row = 0; row < Song_Snapshot::ROWS; ++row)
        if (song.Is_Live_Row(row))
            song.Contents[Index(row)] = std::as_const(model.channels).Store(row).Content();
    song.ChannelsList = model.channelsList;
    Follow_Channels(song.ChannelsList, song.Channels);
    song.Marks = model.marks.All_Rows();
    song.MarkCount = model.marks.Mark_Count();
    const Song_Maps& maps = model.channels.Maps;
    for (int slot = 0; slot < Song_Maps::SLOTS; ++slot) {
        song.SlotVolumes[Index(slot)] = maps.Slot_Map(Map_Kind::Volume, slot).Content();
        song.SlotPans[Index(slot)] = maps.Slot_Map(Map_Kind::Pan, slot).Content();
    }
    for (int row = 0; row < Song_Maps::AUDIO_ROWS; ++row) {
        const AudioMapRow& audio = maps.Audio_Row(row);
        if (Is_On(audio.InUse))
            song.AudioMaps[Index(row)] = {true, audio.ChannelID, audio.VolMap.Content(),
                                          audio.PanMap.Content()};
    }
    song.Effects = model.channels.Effects;
    song.EditorSetup = model.editorSetup;
    song.MusicCreator = model.creator;
    song.Tempo = model.tempoChanges.Content();
    song.Fonts = model.fonts;
    return song;
}

namespace {

/// Rows stay where the song has them; an audio channel that has none takes a free one.
void Put_Audio_Maps(const Song_Snapshot& song, GlobalChannelsManager& channels) {
    const auto isAudio = [&channels](std::int32_t channelId) {
        const int row = channels.ChannelI(channelId);
        return row != -1 && Is_On(channels.Channels[Index(row)].IsAudio);
    };
    for (int row = 0; row < Song_Maps::AUDIO_ROWS; ++row) {
        const Audio_Maps_Content& from = song.AudioMaps[Index(row)];
        if (!from.HasMaps || !isAudio(from.ChannelID) || channels.Maps.Find_AudioMapRow(from.ChannelID) != -1)
            continue;
        AudioMapRow& to = channels.Maps.Audio_Row(row);
        to.InUse = FLAG_ON;
        to.ChannelID = from.ChannelID;
        to.VolMap.Take_Content(from.VolMap);
        to.PanMap.Take_Content(from.PanMap);
    }
    for (int row = 0; row < Song_Snapshot::ROWS; ++row)
        if (channels.Is_Live_Row(row) && Is_On(channels.Channels[Index(row)].IsAudio))
            channels.Maps.Get_AudioMapRow(channels.Channels[Index(row)].ChannelID);
}

} // namespace

bool Put_Snapshot(const Song_Snapshot& song, const Song_Model& model) {
    GlobalChannelsManager& channels = model.channels;
    const bool whole = channels.Take_Rows(song.Channels);
    model.state = whole ? song.State : Project_State{};
    model.tempoChanges.Clear();
    model.marks.Clear();
    model.channelsList = {};
    model.editorSetup = EventsEditor_Setup{};
    model.creator.InitNewFileSettings();
    model.fonts.clear();
    if (!whole)
        return false;
    for (int row = 0; row < Song_Snapshot::ROWS; ++row) {
        const std::int32_t channelId = channels.Channels[Index(row)].ChannelID;
        if (!song.Is_Live_Row(row) || !song.Contents[Index(row)])
            continue;
        channels.Store(row).Take_Content(*song.Contents[Index(row)]);
        channels.Store(row).ChannelNumber = channelId;
    }
    Song_Maps& maps = channels.Maps;
    for (int slot = 0; slot < Song_Maps::SLOTS; ++slot) {
        maps.Slot_Map(Map_Kind::Volume, slot).Take_Content(song.SlotVolumes[Index(slot)]);
        maps.Slot_Map(Map_Kind::Pan, slot).Take_Content(song.SlotPans[Index(slot)]);
    }
    Put_Audio_Maps(song, channels);
    channels.Effects = song.Effects;
    model.tempoChanges.Take_Content(song.Tempo);
    model.marks.Take_Rows(song.Marks, song.MarkCount);
    model.channelsList = song.ChannelsList;
    model.editorSetup = song.EditorSetup;
    model.creator = song.MusicCreator;
    model.fonts = song.Fonts;
    return true;
}

} // namespace tonvex
