#pragma once

#include "app/session.h"
#include "cli/cli_outcome.h"
#include "platform/offline_sound_door.h"
#include "platform/scripted_midi_ports.h"
#include "platform/waiting_run_loop.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tonvex {

/// A folder of this process alone that goes with the object.
class Temporary_Folder {
public:
    Temporary_Folder();
    ~Temporary_Folder();
    Temporary_Folder(const Temporary_Folder&) = delete;
    Temporary_Folder& operator=(const Temporary_Folder&) = delete;
    /// Empty when it could not be made.
    const std::filesystem::path& Path() const noexcept { return path; }

private:
    std::filesystem::path path;
};

/// What the user chose for the whole tool.
struct Cli_Options {
    std::filesystem::path data; ///< the data folder
    std::vector<std::filesystem::path> soundfonts;
};

/// What a tool's session sounds on.
enum class Cli_Sound {
    None,   ///< messages are taken and sound nothing; simulated time
    Pulled, ///< the synthesizer is there to be pulled; simulated time
    Device  ///< the machine's sound device, in real time
};

/// A session with scripted keys, on simulated time unless it sounds on a device, that reads nothing of the
/// user's but the files named in the call and leaves nothing behind. One thread.
class Cli_Session {
    // What the session stands on comes first: it outlives the session.
    Temporary_Folder folder;
    Memory_Settings_Store store;
    std::unique_ptr<Sound_Door> silence;

public:
    Cli_Session() = default;
    Cli_Outcome Open(const Cli_Options& options, Cli_Sound sound);

    Simulated_Counter counter;
    Simulated_Run_Loop loop{counter};
    Monotonic_Counter realCounter;
    Waiting_Run_Loop realLoop;
    Scripted_Key_State keys;
    Scripted_Midi_Ports midi{counter};
    Recorded_Dialogs dialogs;
    std::unique_ptr<Offline_Sound_Door> synthesizer; ///< Cli_Sound::Pulled
    std::unique_ptr<Synth_Sound_Door> device;        ///< Cli_Sound::Device
    std::unique_ptr<Session> session;                ///< after Open

private:
    Cli_Outcome Make_Folders(const Cli_Options& options, AppPaths_Class& paths);
};

/// The data folder that is used when none is named: the installed one beside the executable, else the source
/// tree's.
std::filesystem::path Usual_Data_Folder();

} // namespace tonvex
