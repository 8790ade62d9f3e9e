#include "song/song_maps.h"

#include <cassert>

namespace tonvex {

Song_Maps::Song_Maps(const Song_Length_Source& song)
    : volumes(SLOTS, PanVol_Class(song)), pans(SLOTS, PanVol_Class(song)),
      audioRows(AUDIO_ROWS, AudioMapRow(song)) {}

PanVol_Class& Song_Maps::Slot_Map(Map_Kind kind, int slot) {
    assert(slot >= 0 && slot < SLOTS);
    return (kind == Map_Kind::Volume ? volumes : pans)[static_cast<std::size_t>(slot)];
}

const PanVol_Class& Song_Maps::Slot_Map(Map_Kind kind, int slot) const {
    assert(slot >= 0 && slot < SLOTS);
    return (kind == Map_Kind::Volume ? volumes : pans)[static_cast<std::size_t>(slot)];
}

int Song_Maps::Find_AudioMapRow(std::int32_t channelId) const {
    for (int row = 0; row < AUDIO_ROWS; ++row)
        if (Is_On(Audio_Row(row).InUse) && Audio_Row(row).ChannelID == channelId)
            return row;
    return -1;
}

int Song_Maps::Get_AudioMapRow(std::int32_t channelId) {
    const int found = Find_AudioMapRow(channelId);
    if (found != -1)
        return found;
    for (int row = 0; row < AUDIO_ROWS; ++row) {
        if (Is_On(Audio_Row(row).InUse))
            continue;
        Audio_Row(row).InUse = FLAG_ON;
        Audio_Row(row).ChannelID = channelId;
        return row;
    }
    return -1;
}

void Song_Maps::Take_AudioMapRow(int row, std::int32_t channelId) {
    if (row < 0 || row >= AUDIO_ROWS || Is_On(Audio_Row(row).InUse))
        return;
    Audio_Row(row).InUse = FLAG_ON;
    Audio_Row(row).ChannelID = channelId;
}

void Song_Maps::Free_AudioMapRow(std::int32_t channelId) {
    const int row = Find_AudioMapRow(channelId);
    if (row == -1)
        return;
    Audio_Row(row).InUse = FLAG_OFF;
    Audio_Row(row).ChannelID = 0;
    Audio_Row(row).VolMap.Clear();
    Audio_Row(row).PanMap.Clear();
}

template <typename Operation>
void Song_Maps::For_Each(const Operation& operation) {
    for (PanVol_Class& map : volumes)
        operation(map);
    for (PanVol_Class& map : pans)
        operation(map);
    for (AudioMapRow& row : audioRows) {
        if (!Is_On(row.InUse))
            continue;
        operation(row.VolMap);
        operation(row.PanMap);
    }
}

void Song_Maps::SongLength_Changed(double beats) {
    For_Each([beats](PanVol_Class& map) { map.SongLength_Changed(beats); });
}

void Song_Maps::Project_ChangeSpeed(float factor) {
    For_Each([factor](PanVol_Class& map) { map.Project_ChangeSpeed(factor); });
}

void Song_Maps::MC_MoveBarEvents(std::int32_t fromBar, std::int32_t bars) {
    For_Each([=](PanVol_Class& map) { map.MC_MoveBarEvents(fromBar, bars); });
}

void Song_Maps::Clear() {
    For_Each([](PanVol_Class& map) { map.Clear(); });
    for (AudioMapRow& row : audioRows) {
        row.InUse = FLAG_OFF;
        row.ChannelID = 0;
    }
}

} // namespace tonvex
