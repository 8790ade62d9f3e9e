#include "creator/music_creator_module.h"

#include <algorithm>

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

bool MusicCreator_Module::Bars_AddFreeBars(std::int32_t bar, std::int32_t count) {
    if (bar < 0 || bar > MOST_BARS || count < 1 || count > MOST_BARS || LastBar > MOST_BARS - count)
        return false;
    constexpr float BEATS_PER_BAR = 4.0F;
    for (MCBarEvent& event : MC_Events)
        if (Is_On(event.InUse) && event.StartBeat >= static_cast<float>(bar) * BEATS_PER_BAR)
            event.StartBeat += static_cast<float>(count) * BEATS_PER_BAR;
    const auto at = std::min(MC_Bars.size(), static_cast<std::size_t>(bar));
    MC_Bars.insert(MC_Bars.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::size_t>(count),
                   MCBar{});
    LastBar += count;
    return true;
}

int MusicCreator_Module::MC_TrackIndexFromID(std::int32_t trackId) const noexcept {
    for (std::size_t i = 0; i < MC_Tracks.size(); ++i)
        if (Is_On(MC_Tracks[i].InUse) && MC_Tracks[i].TrackID == trackId)
            return static_cast<int>(i);
    return -1;
}

} // namespace tonvex
