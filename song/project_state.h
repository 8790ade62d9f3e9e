#pragma once

#include "song/event_data.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tonvex {

/// Whether the song has unsaved changes. It counts how often it was set, so that who keeps copies of the song
/// sees that it has moved on since the last one. A flag in whose place another is put has been set too.
class Modified_Flag {
public:
    Modified_Flag() = default;
    Modified_Flag(const Modified_Flag&) = default;
    Modified_Flag& operator=(const Modified_Flag& other) noexcept { return *this = other.on; }
    Modified_Flag& operator=(bool modified) noexcept {
        on = modified;
        ++timesSet;
        return *this;
    }
    operator bool() const noexcept { return on; }
    std::uint64_t Times_Set() const noexcept { return timesSet; }

private:
    bool on = false;
    std::uint64_t timesSet = 0;
};

/// Values of the song as a whole. A new project holds these defaults; what the settings give a new project is
/// set by whoever makes one.
struct Project_State {
    std::int32_t ProjectTempo = 80; ///< beats per minute from beat 0 to the first tempo change
    std::string ProjectTitle = "Untitled";
    std::string ProjectAuthor;
    std::string ProjectComments; ///< lines end in "\r\n"
    double SongLength = 0.0;     ///< beats
    Modified_Flag Modified;
    std::int32_t MetronomeNoteB = 44; ///< MIDI note on the drum slot
    std::int32_t MetronomeNoteA = 70; ///< volume, 0 to 100

    // what a file carries for the windows, kept as it came
    std::int32_t TransportOption = 0;
    std::int32_t ToolValueA = 3; ///< 0 to 5
    std::int32_t ToolValueB = 3; ///< 0 to 5
    std::int32_t ReservedLong = 0;
    std::int16_t EvEdViewA = -1;
    std::int16_t EvEdViewB = -1;
    std::int32_t EvEdViewC = -1;
    std::int32_t EvEdViewD = 4;
    Flag16 EvEdViewBeats = FLAG_ON;
    std::int32_t HubValue1400 = 0;
    std::int32_t KeyboardSetupN = 0;

    // which files belong to it
    std::int32_t ProjectID = 0;      ///< 0: none of its own yet
    std::int32_t InstallationID = 0; ///< of the installation that wrote the file it came from
    std::int32_t NextAudioFileN = 0;
    /// Empty for a new project and for one that came from another format: saving asks for a name.
    std::filesystem::path Path;
};

} // namespace tonvex
