#pragma once

#include <cstdint>
#include <string>

namespace tonvex {

/// Values of the song as a whole. A new project holds these defaults.
struct Project_State {
    std::int32_t ProjectTempo = 80; ///< beats per minute from beat 0 to the first tempo change
    std::string ProjectTitle = "Untitled";
    double SongLength = 0.0; ///< beats
    bool Modified = false;
    std::int32_t MetronomeNote = 44;   ///< MIDI note on the drum slot
    std::int32_t MetronomeVolume = 70; ///< 0 to 100
};

} // namespace tonvex
