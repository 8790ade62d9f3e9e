#pragma once

#include "song/pan_vol_class.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tonvex {

/// Which of the two maps of a slot or an audio channel. The numbers stand in files and messages.
enum class Map_Kind : int { Volume = 0, Pan = 1 };

/// The maps of one audio channel.
struct AudioMapRow {
    explicit AudioMapRow(const Song_Length_Source& song) : VolMap(song), PanMap(song) {}
    Flag16 InUse = FLAG_OFF;
    std::int32_t ChannelID = 0;
    PanVol_Class VolMap;
    PanVol_Class PanMap;
    PanVol_Class& Map(Map_Kind kind) { return kind == Map_Kind::Volume ? VolMap : PanMap; }
};

/// All maps of the song: two for each output slot, always there, and two for each audio channel, in rows
/// that stay where they are while the channel lives. Interface thread only.
class Song_Maps {
public:
    static constexpr int SLOTS = 32;
    static constexpr int AUDIO_ROWS = 100;

    /// song outlives the maps.
    explicit Song_Maps(const Song_Length_Source& song);

    /// slot 0 to 31.
    PanVol_Class& Slot_Map(Map_Kind kind, int slot);
    const PanVol_Class& Slot_Map(Map_Kind kind, int slot) const;
    /// Row of the channel, -1 when it has none.
    int Find_AudioMapRow(std::int32_t channelId) const;
    /// Row of the channel; the first use takes the first free row, with new maps. -1 when all are taken.
    int Get_AudioMapRow(std::int32_t channelId);
    /// Gives a free row to the channel. Another one is left alone.
    void Take_AudioMapRow(int row, std::int32_t channelId);
    void Free_AudioMapRow(std::int32_t channelId);
    /// row 0 to 99; a free row's maps are as new.
    AudioMapRow& Audio_Row(int row) { return audioRows[static_cast<std::size_t>(row)]; }
    const AudioMapRow& Audio_Row(int row) const { return audioRows[static_cast<std::size_t>(row)]; }

    // all maps at once, those of free rows aside
    void SongLength_Changed(double beats);
    void Project_ChangeSpeed(float factor);
    void MC_MoveBarEvents(std::int32_t fromBar, std::int32_t bars);
    /// All maps as new, all audio rows free.
    void Clear();

private:
    template <typename Operation>
    void For_Each(const Operation& operation);

    std::vector<PanVol_Class> volumes; ///< by slot
    std::vector<PanVol_Class> pans;
    std::vector<AudioMapRow> audioRows;
};

} // namespace tonvex
