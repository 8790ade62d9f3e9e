#include "creator/music_creator_module.h"

namespace tonvex {

void MusicCreator_Module::InitNewFileSettings() {
    MC_Tracks.assign(NEW_TRACK_ROWS, MCTrack{});
    MC_Bars.assign(NEW_BAR_ROWS, MCBar{});
    MC_Events.assign(NEW_EVENT_ROWS, MCBarEvent{});
    SongKey = 0;
    SongMode = 0;
    LastBar = NEW_LAST_BAR;
    NextEventID = FIRST_ID;
}

int MusicCreator_Module::MC_TrackIndexFromID(std::int32_t trackId) const noexcept {
    for (std::size_t i = 0; i < MC_Tracks.size(); ++i)
        if (Is_On(MC_Tracks[i].InUse) && MC_Tracks[i].TrackID == trackId)
            return static_cast<int>(i);
    return -1;
}

} // namespace tonvex
