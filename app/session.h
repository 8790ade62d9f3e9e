#pragma once

#include "app/app_paths_class.h"
#include "app/event_raiser_class.h"
#include "app/function_key_runner.h"
#include "app/function_keys.h"
#include "app/msg_manager.h"
#include "app/session_temp_folder.h"
#include "app/settings.h"
#include "audio/dls_list_class.h"
#include "creator/music_creator_module.h"
#include "engine/cue_engine.h"
#include "engine/gcm_midi.h"
#include "engine/midi_cue_output.h"
#include "engine/midiapi.h"
#include "engine/recorder_class.h"
#include "engine/render_module.h"
#include "engine/transport_parts.h"
#include "engine/transport_state.h"
#include "input/input_handler.h"
#include "input/keyboard_layout.h"
#include "platform/key_state.h"
#include "platform/midi_ports.h"
#include "platform/millisecond_counter.h"
#include "platform/run_loop.h"
#include "platform/settings_store.h"
#include "platform/sound_door.h"
#include "platform/user_dialogs.h"
#include "project/channels_list_rows.h"
#include "project/midi_export.h"
#include "project/midi_import_class.h"
#include "project/project_files.h"
#include "project/undo_module.h"
#include "song/events_editor_setup.h"
#include "song/global_channels_manager.h"
#include "song/marks.h"
#include "song/notes_stuff.h"
#include "song/project_state.h"
#include "song/tempo_change_class.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tonvex {

/// The doors of one session. They outlive it.
struct Session_Doors {
    Sound_Door& sound;
    Midi_Ports_Door& midi;
    Key_State_Door& keys;
    Millisecond_Counter& counter;
    Run_Loop& loop;
    Settings_Store& store;
    User_Dialogs& dialogs;
    /// Threaded needs the monotonic counter. Stepped, the player library moves in the rounds of a run, and
    /// what it plays is told to the output's observer.
    Cue_Drive cueDrive = Cue_Drive::Stepped;
};

/// All objects of one running program, in the order in which they come to life. Interface thread.
/// A session reads and writes only below the folders of paths and dataFolder, and what the settings name.
class Session {
public:
    /// dataFolder holds what ships (chords.txt, drums.txt, keyboard/, patterns/ …). The folders of
    /// appPaths: config (its keyboard/ is read), patterns, templates, temp, projectsaudio.
    Session(const Session_Doors& doors, AppPaths_Class appPaths, std::filesystem::path dataFolder);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The program's data, settings, output, input, fonts, an empty project, in the fixed order.
    /// False only when the program cannot go on; the user has been told.
    bool Load();
    /// The orderly end: input, settings, function keys, output, temp folder. Load may not follow; a second
    /// call does nothing.
    void Shutdown();
    /// Empty song with one MIDI channel on slot 0, not modified. Does nothing while a song runs.
    void New_Project();
    /// The MIDI channel that the window puts into a song without any, on slot 0; the song counts as
    /// unmodified.
    void Add_First_Channel();
    /// Opens the output that the settings name, without fonts. False after a message box; the program runs on
    /// silent. The settings take over a raised buffer.
    bool Open_Output();
    /// Open_Output with the fonts and the song's patches, after a setup or a loss.
    bool Reopen_Output();
    /// Reopen_Output with another device (DeviceID of midiapi's list) and buffer (ms), for a test; the
    /// settings stay.
    bool Try_Output(std::int32_t deviceId, int bufferMs);
    /// Takes the input source, 0 keyboard, 1 keyboard and MIDI, into the settings and opens it. False when
    /// MIDI was asked for and cannot be opened or no device is chosen.
    bool Select_Input(int source);
    /// What the slots stand at between two runs, whatever was tried on them.
    void Send_Idle_Sound();
    /// What a run of the song works on. Between Load and the end of the session.
    Transport_Parts Parts();
    /// The recent files go to the store at once: they are wanted after a crash, too.
    void Keep_Recent_Files();
    /// This session's own folder for files that do not outlive it; empty when it could not be made.
    std::filesystem::path Temp_Folder() const;

    // the objects, in order of life
    Session_Doors doors;
    AppPaths_Class paths;
    std::filesystem::path dataFolder;
    Settings settings;
    EventRaiserClass events;
    Project_State project;
    TempoChangeClass tempoChanges;
    Song_Marks marks;
    MusicCreator_Module creator;
    EventsEditor_Setup editorSetup;
    Channels_List_Rows channelsList;
    NotesStuff notes;
    Transport_State transport;
    Transport_Options options;
    std::unique_ptr<Channel_Host> channelHost;
    std::unique_ptr<GlobalChannelsManager> channels;
    std::unique_ptr<midiapi> output;
    std::unique_ptr<GCM_Midi> gcm;
    std::unique_ptr<Midi_Cue_Output> cueOutput;
    std::unique_ptr<CueEngine> cue;
    std::unique_ptr<RenderModule> render;
    std::unique_ptr<DLSListClass> fonts;
    std::unique_ptr<KeyboardClass> keyboard;
    std::unique_ptr<MidiIn_Module> midiIn;
    std::unique_ptr<InputHandler> input;
    std::unique_ptr<KeyboardLayout> layout;
    std::vector<Transport_Observer*> observers; ///< windows that follow runs
    std::unique_ptr<MsgManager> hub;
    std::unique_ptr<Project_Host> projectHost;
    std::unique_ptr<Project_Files> files;
    std::unique_ptr<UndoModule> undo;
    std::unique_ptr<Fingerpick_Patterns> fingerpicks;
    std::unique_ptr<RecorderClass> recorder;
    std::unique_ptr<RecorderClass> practiceRecorder;
    std::unique_ptr<Player_Recorder> player;
    std::unique_ptr<MidiImport_Class> midiImport;
    std::unique_ptr<Midi_Export> midiExport;
    Function_Key_Table functionKeys;
    Function_Key_Runner keyRunner{*this};

    bool fontsLoaded = false; ///< false after Load: the font error window is due

private:
    bool Make_Folder(const std::filesystem::path& folder);
    void Make_Temp_Folder();
    void Load_Tables();
    bool Load_Settings();
    void Load_Sounds();
    void Keep_Settings();
    void Keep_Function_Keys();
    std::filesystem::path Function_Keys_File() const;
    void Load_Layout();
    void Take_Velocity(int note, int velocity);

    std::optional<Session_Temp_Folder> tempFolder;
    bool loaded = false;
    bool settingsRead = false; ///< before, there is nothing to be saved
    bool functionKeysRead = false;
};

} // namespace tonvex
