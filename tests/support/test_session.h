#pragma once

#include "app/session.h"
#include "support/recorder_doors.h"
#include "support/temp_folder.h"

#include <memory>
#include <string>

namespace tonvex {

/// A session with fakes for all doors, its own folders and a clock that stands until it is moved. Data: an
/// empty chord library, 61 drum names, a layout without keys.
class Test_Session {
public:
    Test_Session() {
        std::string drums;
        for (int note = 0; note < NotesStuff::DRUM_NAMES; ++note)
            drums += "Drum " + std::to_string(note) + "\n";
        folder.Write("data/drums.txt", drums);
        folder.Write("data/chords.txt", "");
        folder.Write("config/keyboard/none", "");
        const NotesStuff notes;
        KeyboardLayout empty(notes, dialogs);
        empty.Write_Tables(folder / "config/keyboard/Tonvex default.dat", true);
        for (const char* key : {"config", "patterns", "templates", "temp", "projectsaudio"})
            paths.Set_Path(key, (folder / key).string());
    }
    Session& Make() {
        session = std::make_unique<Session>(Session_Doors{sound, midi, keys, counter, loop, store, dialogs},
                                            paths, folder / "data");
        return *session;
    }
    /// Made and loaded.
    Session& Load() {
        Make().Load();
        return *session;
    }

    Temp_Folder folder;
    Recorder_Sound_Door sound;
    Recorder_Midi_Ports midi;
    Scripted_Key_State keys;
    Simulated_Counter counter;
    Simulated_Run_Loop loop{counter};
    Memory_Settings_Store store;
    Recorded_Dialogs dialogs;
    AppPaths_Class paths;
    std::unique_ptr<Session> session;
};

} // namespace tonvex
