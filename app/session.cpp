#include "app/session.h"

#include "app/session_channel_host.h"
#include "app/session_project_host.h"

#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr const char* FIRST_CHANNEL_NAME = "Channel 1";
constexpr const char* OWN_DEFAULT_LAYOUT = "default";
constexpr const char* FINGERPICK_FOLDER = "fingerpick";
constexpr const char* STOCK_LAYOUT = "Tonvex default";

} // namespace

Session::Session(const Session_Doors& theDoors, AppPaths_Class appPaths, fs::path data)
    : doors(theDoors), paths(std::move(appPaths)), dataFolder(std::move(data)) {
    channelHost = std::make_unique<Session_Channel_Host>(*this);
    channels = std::make_unique<GlobalChannelsManager>(*channelHost);
    channels->Play_Is_Active = [this] { return transport.Song_Runs(); };
    output = std::make_unique<midiapi>(doors.sound, doors.midi, doors.dialogs, doors.counter, *channels);
    gcm = std::make_unique<GCM_Midi>(*output, *channels, transport);
    cueOutput = std::make_unique<Midi_Cue_Output>(doors.sound, doors.midi);
    if (doors.cueDrive == Cue_Drive::Stepped)
        cueOutput->onSounded = [this](const Sound_Message& message) { output->Tell_Played(message); };
    cue = std::make_unique<CueEngine>(doors.counter, *cueOutput, doors.cueDrive);
    gcm->engineTakesOver = [this](int slot, int note) { return cue->Player_TakesOver(slot, note); };
    gcm->onLiveNotes = [this](const CueEngine::Live_Notes& held) { cue->Player_CopyRecActiveNotes(held); };
    // Who brings no patterns of his own plays those that ship.
    fingerpicks =
        std::make_unique<Fingerpick_Patterns>(std::vector{paths.Get_Folder("patterns") / FINGERPICK_FOLDER,
                                                          dataFolder / "patterns" / FINGERPICK_FOLDER},
                                              notes);
    render = std::make_unique<RenderModule>(*channels, *gcm, *cue, doors.loop,
                                            QChord_Parts{tempoChanges, project, *fingerpicks});
    fonts = std::make_unique<DLSListClass>(doors.sound, *output, *channels);
    keyboard = std::make_unique<KeyboardClass>(doors.keys, doors.dialogs);
    midiIn = std::make_unique<MidiIn_Module>(doors.midi);
    input = std::make_unique<InputHandler>(*keyboard, *midiIn);
    layout = std::make_unique<KeyboardLayout>(notes, doors.dialogs);
    midiIn->onVelocity = [this](int note, int velocity) { Take_Velocity(note, velocity); };
    hub = std::make_unique<MsgManager>(*this);
    undo = std::make_unique<UndoModule>(
        Undo_Song{*channels, tempoChanges, marks, creator, project, transport, *gcm, *hub, doors.counter,
                  doors.dialogs, [this](int msgId, std::int32_t param, const std::string& text) {
                      events.PassMsg(msgId, param, text);
                  }});
    projectHost = std::make_unique<Session_Project_Host>(*this);
    const Song_Model song{*channels, tempoChanges, marks,        project,
                          creator,   editorSetup,  channelsList, fonts->CurList};
    files = std::make_unique<Project_Files>(
        Project_Parts{song, *fonts, *output, *gcm, *hub, transport, doors.dialogs, *projectHost});
    files->observers.push_back(undo.get());
    const Transport_Parts parts = Parts();
    recorder = std::make_unique<RecorderClass>(parts);
    practiceRecorder = std::make_unique<RecorderClass>(parts);
    practiceRecorder->PracticeMode = true;
    player = std::make_unique<Player_Recorder>(parts);
    midiImport = std::make_unique<MidiImport_Class>(
        Midi_Import_Parts{*channels, tempoChanges, project, *hub, doors.dialogs, [this] { New_Project(); },
                          [this] { files->Song_Was_Replaced(); }});
    midiExport = std::make_unique<Midi_Export>(parts, doors.sound, doors.midi);
}

Transport_Parts Session::Parts() {
    return {*channels,     tempoChanges, project,      *output, *gcm,       *input,
            *layout,       *hub,         transport,    options, doors.loop, doors.counter,
            doors.dialogs, observers,    *fingerpicks, *cue,    *render};
}

Session::~Session() {
    Shutdown();
}

bool Session::Load() {
    loaded = true;
    // Without a thread the library takes nothing, and the polling engine plays.
    (void)cue->InitDLL();
    const fs::path patterns = paths.Get_Folder("patterns");
    if (!Make_Folder(patterns) || !Make_Folder(patterns / "Drums"))
        return false;
    Make_Temp_Folder();
    Load_Tables();
    if (!Load_Settings())
        return false;
    functionKeys.FunctionKeys_Load(Function_Keys_File());
    functionKeysRead = true;
    Open_Output();
    input->Input_Open();
    if (settings.Global_Current_Input == 1)
        input->Input_Select(1);
    fonts->Set_Config_Folder(paths.Get_Folder("config"));
    fontsLoaded = fonts->Load_DefaultList();
    Load_Layout();
    // The fonts are there, or their absence is told when the windows are.
    files->Reset();
    Add_First_Channel();
    return true;
}

void Session::Shutdown() {
    if (!std::exchange(loaded, false))
        return;
    input->Input_Close();
    input->Input_Shutdown();
    if (settingsRead)
        Keep_Settings();
    if (functionKeysRead)
        Keep_Function_Keys();
    output->Close();
    cue->FreeDLL();
    if (tempFolder)
        tempFolder->Remove();
    tempFolder.reset();
}

void Session::New_Project() {
    if (files->NewProject())
        Add_First_Channel();
}

void Session::Add_First_Channel() {
    channels->Add_Channel(channels->New_ChannelID(), false, 0, FIRST_CHANNEL_NAME);
    Send_Idle_Sound();
    hub->Message(nullptr, MSG_GENERAL_UPDATE);
    project.Modified = false;
}

bool Session::Open_Output() {
    output->Global_BASSBufferSize = settings.Global_BASSBufferSize;
    const bool opened = output->Midi_OpenDevice(settings.Global_MidiSetup_OutDevice);
    settings.Global_BASSBufferSize = output->Global_BASSBufferSize;
    return opened;
}

bool Session::Reopen_Output() {
    const bool opened = Open_Output();
    Load_Sounds();
    return opened;
}

bool Session::Try_Output(std::int32_t deviceId, int bufferMs) {
    output->Global_BASSBufferSize = bufferMs;
    const bool opened = output->Midi_OpenDevice(deviceId);
    Load_Sounds();
    return opened;
}

void Session::Load_Sounds() {
    if (transport.EngineRunning)
        output->Midi_PlayerOutput(*cue);
    // A session that began on a port has read no list yet.
    fontsLoaded = fonts->CurList.empty() ? fonts->Load_DefaultList() : fonts->Load_CurList_Fonts();
    Send_Idle_Sound();
    hub->Message(nullptr, MSG_GENERAL_UPDATE);
}

void Session::Send_Idle_Sound() {
    gcm->GCM_SendAllPatches();
    gcm->GCM_SendAllEffects();
    gcm->GCM_SendAllVolumes();
    gcm->GCM_ResetMaps();
}

bool Session::Select_Input(int source) {
    settings.Global_Current_Input = source == 1 ? 1 : 0;
    input->MidiInDevice = settings.Global_MidiSetup_InDevice;
    midiIn->MidiIn_Close();
    return input->Input_Select(settings.Global_Current_Input);
}

fs::path Session::Temp_Folder() const {
    return tempFolder ? tempFolder->Path() : fs::path();
}

bool Session::Make_Folder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!folder.empty() && fs::is_directory(folder, error))
        return true;
    doors.dialogs.Show_Message(Box_Kind::Critical,
                               "Could not create folder: " + folder.string() + "\nTonvex will exit now");
    return false;
}

void Session::Make_Temp_Folder() {
    tempFolder = Session_Temp_Folder::Make(paths.Get_Folder("temp"));
    if (tempFolder)
        undo->Enable(tempFolder->Path());
    else
        doors.dialogs.Show_Message(Box_Kind::Warning,
                                   "Could not create temp folder, Undo function will be disabled");
}

void Session::Load_Tables() {
    std::string error;
    if (!notes.Load_Chords(dataFolder / "chords.txt", error))
        doors.dialogs.Show_Message(Box_Kind::Critical, error);
    if (!notes.Load_Drums(dataFolder / "drums.txt", error))
        doors.dialogs.Show_Message(Box_Kind::Warning, error);
}

bool Session::Load_Settings() {
    const std::string usualAudioPath = paths.Get_Folder("projectsaudio").string();
    settings.Load(doors.store, usualAudioPath);
    settingsRead = true;
    std::error_code error;
    fs::create_directories(settings.Projects_AudioPath, error);
    // A stored folder may lie on a disk that is not there today; the program starts all the same.
    if (!fs::is_directory(settings.Projects_AudioPath, error) && !Make_Folder(usualAudioPath))
        return false;
    options.Global_Rec_WaitForKey = settings.Global_Rec_WaitForKey != 0;
    options.Global_UseThreadEngine = settings.Global_UseThreadEngine != 0;
    notes.Global_Notation = settings.Global_Notation;
    input->InputDevice = settings.Global_Current_Input;
    input->MidiInDevice = settings.Global_MidiSetup_InDevice;
    return true;
}

void Session::Keep_Settings() {
    settings.Global_Rec_WaitForKey = options.Global_Rec_WaitForKey ? 1 : 0;
    settings.Global_UseThreadEngine = options.Global_UseThreadEngine ? 1 : 0;
    settings.Global_Notation = notes.Global_Notation;
    settings.Global_FirstRun = 0;
    settings.Save(doors.store);
    if (!doors.store.Flush())
        doors.dialogs.Show_Message(Box_Kind::Warning, "The settings could not be saved. Check that your "
                                                      "configuration folder can be written to.");
}

void Session::Keep_Recent_Files() {
    settings.Save_Recent(doors.store);
    // A song that is saved has the number of its installation, which has to outlive a crash as well.
    doors.store.Set("Config", "InstallationID", std::to_string(settings.InstallationID));
    // What cannot be written is told at the end.
    (void)doors.store.Flush();
}

fs::path Session::Function_Keys_File() const {
    return paths.Get_Folder("config") / "keys.dat";
}

void Session::Keep_Function_Keys() {
    std::string error;
    if (!functionKeys.FunctionKeys_Save(Function_Keys_File(), error))
        doors.dialogs.Show_Message(Box_Kind::Warning,
                                   "The keys of the functions could not be saved.\n" + error);
}

void Session::Load_Layout() {
    const fs::path config = paths.Get_Folder("config");
    layout->Set_Folders(config, Temp_Folder());
    std::error_code ignored;
    const bool own = fs::exists(config / "keyboard" / (std::string(OWN_DEFAULT_LAYOUT) + ".dat"), ignored);
    layout->LoadKeyboardSettings(own ? OWN_DEFAULT_LAYOUT : STOCK_LAYOUT, project.ProjectTempo);
}

void Session::Take_Velocity(int note, int velocity) {
    const std::size_t key = 256 + static_cast<std::size_t>(note);
    if (note < 0 || velocity < 0 || key >= layout->KeyMap.size())
        return;
    const KeyMapEntry& entry = layout->KeyMap[key];
    // Target is a row of the notes' table for a note key only.
    if (entry.Kind == KEY_NOTE && entry.Target >= 0 && entry.Target < KeyboardLayout::KEYS)
        layout->KeyNoteTable[static_cast<std::size_t>(entry.Target)].Vol =
            static_cast<std::uint8_t>(velocity > 127 ? 127 : velocity);
}

} // namespace tonvex
