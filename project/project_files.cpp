#include "project/project_files.h"

#include "base/file_io.h"
#include "project/first_version_reader.h"
#include "project/project_audio_files.h"
#include "project/project_writer.h"
#include "song/tempo_change_class.h"

#include <optional>
#include <system_error>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr const char* TEMPORARY_FILE = "savefile.tvx.tmp";
constexpr const char* NO_DEFAULT_FONT =
    "Could not load the default sf2 file(s).\r\nUse the 'Project menu ->Soundfont file list' option to "
    "specify a new file\r\nor change the Output device (Options menu) to use the soundcard \r\ndefault midi "
    "sounds.";
constexpr const char* FONTS_ARE_GONE =
    "Some soundfont files used by this project don't exist.\r\nThe default soundfont list will be used "
    "instead.\r\nThis might result in midi channels without sound (to fix\r\nthe problem select a valid "
    "patch "
    "for the channel)";
constexpr const char* OTHER_INSTALLATION =
    "The installation of Tonvex used to create this file\r\nis not the same as this one, this might result "
    "in invalid\r\naudio channels.";

const char* Told(Read_Outcome outcome) {
    switch (outcome) {
    case Read_Outcome::Not_A_Project:
        return "Invalid file format (tvx)";
    case Read_Outcome::Version_Not_Supported:
        return "File version not supported";
    case Read_Outcome::Newer_Section:
        return "Error loading file. This file was saved using \r\na newer Tonvex version";
    case Read_Outcome::Whole:
    case Read_Outcome::Broken:
        break;
    }
    return "Error loading file";
}

/// For a new song. False when none of them can be loaded.
bool Take_Default_Fonts(DLSListClass& fonts) {
    // With a MIDI port as the output nothing is read; it is when the synthesizer comes, into an empty list.
    fonts.CurList.clear();
    fonts.Load_DefaultList(true);
    return fonts.Keep_Or_Load_CurList();
}

} // namespace

/// The observers show that work goes on while this lives.
class Project_Files::Busy {
public:
    Busy(const Project_Files& owner, const std::string& status) : files(owner) {
        files.Tell(&Project_Observer::On_Project_Busy, status);
    }
    ~Busy() { files.Tell(&Project_Observer::On_Project_Idle); }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    const Project_Files& files;
};

template <typename Operation, typename... Arg>
void Project_Files::Tell(Operation operation, const Arg&... arg) const {
    // By index: an observer may leave the list while it is told.
    for (std::size_t i = 0; i < observers.size(); ++i)
        (observers[i]->*operation)(arg...);
}

Project_Files::Project_Files(const Project_Parts& theParts) : parts(theParts) {}

void Project_Files::Show(Box_Kind kind, const char* text) const {
    parts.dialogs.Show_Message(kind, text);
}

std::int32_t Project_Files::Find_Free_ProjectID() const {
    return tonvex::Find_Free_ProjectID(parts.host.Audio_Folder());
}

// ---- saving ----

void Project_Files::Sort_Channels() const {
    GlobalChannelsManager& channels = parts.model.channels;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!channels.Is_Live_Row(row))
            continue;
        channels.Store(row).ReSort_StartTime();
        channels.Store(row).Defrag_Data();
    }
}

/// By way of the temp folder while there is room, so that a disk that fills up is noticed where nothing of
/// the user's lies. Without room the song must still be able to go to another disk, which is whole or nothing
/// as well.
bool Project_Files::Write(const fs::path& path, const Song_Snapshot& song) const {
    std::optional<std::vector<std::uint8_t>> bytes = Write_Project(song);
    std::string error;
    const fs::path temp = parts.host.Temp_Folder();
    if (bytes && !temp.empty() && Write_File(temp / TEMPORARY_FILE, *bytes)) {
        bytes = Read_File(temp / TEMPORARY_FILE);
        std::error_code ignored;
        fs::remove(temp / TEMPORARY_FILE, ignored);
    }
    return bytes && Replace_File(path, *bytes, error);
}

bool Project_Files::SaveProject(const fs::path& path, std::int32_t saveAs, bool updateRecent) {
    if (parts.transport.Song_Runs())
        return false;
    const Busy busy(*this, "Saving file");
    Project_State& state = parts.model.state;
    const bool newName = saveAs >= SAVE_AS;
    const bool isCopy = newName && !updateRecent;
    Sort_Channels();
    Song_Snapshot song = Snapshot();
    song.State.InstallationID = parts.host.Installation_ID();

    const std::int32_t oldId = state.ProjectID;
    std::optional<Project_ID_Change> idChange;
    if (givesIds && (oldId == 0 || newName) && song.Has_Audio_Channel()) {
        song.State.ProjectID = Find_Free_ProjectID();
        if (song.State.ProjectID == -1) {
            Show(Box_Kind::Critical, "Can't find a free project ID.\r\nFile won't be saved");
            return false;
        }
        idChange.emplace(parts.host.Audio_Folder(), song.State.ProjectID);
    } else if (isCopy && !song.Has_Audio_Channel()) {
        // Nothing to play under the song's ID; what is recorded under it later must stay the song's alone.
        song.State.ProjectID = 0;
    }
    const auto how =
        isCopy || oldId != 0 ? Project_ID_Change::Files::Copied : Project_ID_Change::Files::Renamed;
    if ((idChange && (!idChange->Make_Marker(path) || !idChange->Bring_Files(oldId, how))) ||
        !Write(path, song)) {
        idChange.reset();
        Show(Box_Kind::Critical, "Error saving file");
        return false;
    }
    if (idChange)
        idChange->Keep();
    if (isCopy)
        return true;
    state.ProjectID = song.State.ProjectID;
    state.InstallationID = song.State.InstallationID;
    state.Path = path;
    state.Modified = false;
    if (updateRecent) {
        parts.host.Add_Recent(path);
        Tell(&Project_Observer::On_Project_Named, path);
    }
    Tell(&Project_Observer::On_Project_Saved);
    return true;
}

// ---- loading ----

bool Project_Files::LoadProject(const fs::path& path, std::int32_t /*reserved*/, bool updateRecent) {
    if (parts.transport.Song_Runs())
        return false;
    std::error_code ignored;
    if (!fs::exists(path, ignored)) {
        Show(Box_Kind::Critical, "File does not exist");
        return false;
    }
    const Busy busy(*this, "Loading file");
    for (const int msg : {HUB_POSITION_FAMILY, HUB_POSITION_VALUE, HUB_SONG_POSITION})
        parts.hub.Message(nullptr, msg, 0.0);
    const auto bytes = Read_File(path);
    if (bytes && Is_First_Version(*bytes))
        return Load_First_Version(*bytes);
    Song_Snapshot song;
    const Read_Outcome outcome = bytes ? Read_Project(*bytes, song) : Read_Outcome::Broken;
    if (outcome != Read_Outcome::Whole || !Take_Over(song)) {
        Reset_With_Fonts();
        Show(Box_Kind::Critical, Told(outcome));
        return false;
    }
    Project_State& state = parts.model.state;
    state.Path = path;
    const bool fontsAreGone = parts.output.UsingSynth() && !parts.fonts.CheckFiles_Curlist().empty();
    Load_Fonts(fontsAreGone);
    if (state.InstallationID != parts.host.Installation_ID() && song.Has_Audio_Channel())
        Show(Box_Kind::Warning, OTHER_INSTALLATION);
    parts.hub.Message(nullptr, HUB_RECORDER_VALUE, state.HubValue1400);
    parts.hub.Hold_Update(); // Refresh brings the one that is due
    parts.hub.Message(nullptr, HUB_SET_TEMPO, state.ProjectTempo);
    parts.hub.Release_Update();
    Song_Was_Replaced();
    if (fontsAreGone)
        Show(Box_Kind::Critical, FONTS_ARE_GONE);
    if (updateRecent) {
        parts.host.Add_Recent(path);
        Tell(&Project_Observer::On_Project_Named, path);
    }
    return true;
}

/// What such a file holds goes into a new project, which has no path: saving asks for a name.
bool Project_Files::Load_First_Version(std::span<const std::uint8_t> bytes) {
    Show(Box_Kind::Warning, FIRST_VERSION_WARNING);
    Reset_With_Fonts();
    switch (Read_First_Version(bytes, parts.model.state)) {
    case First_Version_Outcome::Whole:
        Song_Was_Replaced();
        return true;
    case First_Version_Outcome::Notes_Left_Out:
        Song_Was_Replaced();
        Show(Box_Kind::Warning, FIRST_VERSION_NOTES_LEFT_OUT);
        return true;
    case First_Version_Outcome::Version_Not_Supported:
        Show(Box_Kind::Critical, FIRST_VERSION_NOT_SUPPORTED);
        return false;
    case First_Version_Outcome::Not_This_Version:
    case First_Version_Outcome::Broken:
        break;
    }
    Show(Box_Kind::Critical, Told(Read_Outcome::Broken));
    return false;
}

bool Project_Files::Take_Over(const Song_Snapshot& song) {
    parts.gcm.Clear_Note_Counts();
    return Put_Snapshot(song, parts.model);
}

/// The fonts that the song names, or the default list in their place.
void Project_Files::Load_Fonts(bool defaultList) {
    DLSListClass& fonts = parts.fonts;
    if (defaultList)
        fonts.Load_DefaultList(true);
    // A song that names none sounds with the default list, and goes on naming none.
    if (fonts.CurList.empty())
        fonts.Load_DefaultList(false, true);
    else
        fonts.Keep_Or_Load_CurList();
    parts.model.channels.Find_Patches();
}

void Project_Files::Song_Was_Replaced() {
    parts.gcm.GCM_SendAllPatches();
    parts.gcm.GCM_SendAllEffects();
    parts.gcm.GCM_SendAllVolumes();
    parts.gcm.GCM_ResetMaps();
    // Another song is not one that an edit made shorter.
    parts.model.state.SongLength = 0.0;
    parts.hub.Message(nullptr, HUB_GENERAL_UPDATE);
    Tell(&Project_Observer::On_Song_Replaced);
    parts.model.state.Modified = false;
}

// ---- new ----

void Project_Files::Empty_Model() {
    const Song_Model& model = parts.model;
    parts.gcm.Clear_Note_Counts();
    model.channels.Clear();
    model.tempoChanges.Clear();
    model.marks.New_Project();
    model.creator.InitNewFileSettings();
    model.editorSetup = EventsEditor_Setup{};
    model.channelsList = {};
    model.state = Project_State{};
    model.state.EvEdViewBeats = To_Flag(parts.host.Shows_Beats());
}

void Project_Files::Reset_With_Fonts() {
    (void)Take_Default_Fonts(parts.fonts);
    Reset();
}

void Project_Files::Reset() {
    Empty_Model();
    parts.hub.Message(nullptr, HUB_SONG_POSITION, 0.0);
    Song_Was_Replaced();
    Tell(&Project_Observer::On_Project_Named, fs::path());
}

bool Project_Files::NewProject() {
    if (parts.transport.Song_Runs())
        return false;
    if (!Take_Default_Fonts(parts.fonts))
        Show(Box_Kind::Warning, NO_DEFAULT_FONT);
    if (clearsUnsavedAudio)
        Delete_Unsaved_Audio(parts.host.Audio_Folder());
    Reset();
    return true;
}

} // namespace tonvex
