#pragma once

#include "cli/cli_outcome.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tonvex {

/// What a performance script asks for.
struct Key_Script {
    /// Times in ms from the call on.
    struct Edge {
        std::int64_t ms = 0;
        int key = 0; ///< 0 to 255 a computer key by scan code, 256 + n MIDI note n
        bool down = false;
        int velocity = 100; ///< MIDI keys, 0 to 127
    };
    static constexpr std::int64_t LAST_MS = 4 * 60 * 60 * 1000; ///< longest performance
    static constexpr int FIRST_MIDI_KEY = 256;
    static constexpr int LAST_KEY = FIRST_MIDI_KEY + 127;

    std::optional<std::int32_t> channel; ///< none: the song's first
    double position = 0.0;               ///< beats
    double speed = 100.0;                ///< percent
    bool overwrite = false;
    bool metronome = false;
    bool wait_for_key = false;
    std::string layout;   ///< empty: the stock layout
    int notes_octave = 3; ///< 0 to 5
    int qchords_octave = 3;
    int tuning = 0; ///< 0 to 11
    std::int64_t end_ms = 0;
    std::vector<Edge> edges; ///< in order of time, equal times as they stood

    bool Has_Midi_Keys() const;
};

/// Reads a script. An unknown key of the document is passed over; a value of the wrong type or out of its
/// range fails with its name.
Cli_Outcome Read_Key_Script(const std::filesystem::path& file, Key_Script& script);
/// The same of a text; name stands for the file in the outcome.
Cli_Outcome Parse_Key_Script(const std::string& text, const std::string& name, Key_Script& script);

} // namespace tonvex
