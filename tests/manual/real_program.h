#pragma once

#include "app/session.h"
#include "app/stock_data.h"
#include "platform/make_sound_door.h"
#include "platform/rtmidi_ports.h"
#include "platform/settings_store.h"
#include "platform/user_dialogs.h"
#include "support/temp_folder.h"

namespace tonvex {

/// A session on the machine's sound and MIDI, with the layouts that ship, in a folder that goes with it.
/// Keys, loop and the clock that they count by are the caller's.
struct Real_Program {
    Real_Program(Key_State_Door& keys, Millisecond_Counter& counter, Run_Loop& loop,
                 Sound_Driver_Choice choice = Sound_Driver_Choice::Automatic,
                 Cue_Drive drive = Cue_Drive::Stepped)
        : sound(Make_Sound_Door(counter, choice)), midi(counter),
          session({*sound, midi, keys, counter, loop, store, dialogs, drive}, Paths(home),
                  TONVEX_SOURCE_DATA) {
        Copy_Stock_Files({{std::filesystem::path(TONVEX_SOURCE_DATA) / "keyboard", home / "config/keyboard"}},
                         home / "manifest");
        loaded = session.Load();
    }

    Temp_Folder home;
    Memory_Settings_Store store;
    Recorded_Dialogs dialogs;
    std::unique_ptr<Synth_Sound_Door> sound;
    RtMidi_Ports midi;
    AppPaths_Class paths;
    Session session;
    bool loaded = false;

private:
    AppPaths_Class& Paths(const Temp_Folder& below) {
        for (const char* name : {"config", "patterns", "templates", "temp", "projectsaudio"})
            paths.Set_Path(name, (below / name).string());
        return paths;
    }
};

} // namespace tonvex
