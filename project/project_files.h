#pragma once

#include "audio/dls_list_class.h"
#include "engine/gcm_midi.h"
#include "engine/transport_state.h"
#include "platform/user_dialogs.h"
#include "project/project_host.h"
#include "project/project_reader.h"
#include "project/song_snapshot.h"
#include "song/change_hub.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

/// What the project files work on. All outlive them.
struct Project_Parts {
    Song_Model model;
    DLSListClass& fonts;
    midiapi& output;
    GCM_Midi& gcm;
    Change_Hub& hub;
    const Transport_State& transport;
    User_Dialogs& dialogs;
    Project_Host& host;
};

/// New, load and save: the song and its file. Tells the user what went wrong; each operation is whole or has
/// changed nothing but what is told. Interface thread, and only while no song runs: else nothing happens and
/// the result is false.
class Project_Files {
public:
    /// Values of SaveAs from here on mark a save under a new name.
    static constexpr std::int32_t SAVE_AS = 65535;

    explicit Project_Files(const Project_Parts& parts);

    /// Writes the song to path: prepared in the temp folder, then put there in one step, over a link's target
    /// and with the permissions that a file there has. Channels are sorted and compacted first. A song with a
    /// live audio channel gets an ID of its own at its first save and under a new name, and its clips go
    /// along (see project_audio_files.h).
    /// updateRecent: title and recent files follow. A new name without it is a copy, as a template is one:
    /// the song keeps its path, ID, clips and modified flag.
    /// False after a message: the file at path, the song and its flag are as before.
    bool SaveProject(const std::filesystem::path& path, std::int32_t saveAs, bool updateRecent);
    /// Puts the song in the file in the place of the one there. False after a message: without such a file
    /// all is as before; else a new, empty project stands.
    bool LoadProject(const std::filesystem::path& path, std::int32_t reserved, bool updateRecent);
    /// A song without channels, not modified, with the default fonts. False when a song runs.
    bool NewProject();
    /// Smallest free project ID, or -1.
    std::int32_t Find_Free_ProjectID() const;

    /// The song as it stands, for who writes it elsewhere.
    Song_Snapshot Snapshot() const { return Take_Snapshot(parts.model); }
    /// As NewProject without the fonts: nothing is loaded, nothing told.
    void Reset();
    /// Behind whoever put another song in the place of the one there: all views and the outputs show and
    /// sound it, who follows the project is told, and it counts as unmodified.
    void Song_Was_Replaced();

    std::vector<Project_Observer*> observers;
    /// The windowed program clears away what unsaved songs recorded; a tool beside it must not.
    bool clearsUnsavedAudio = false;
    /// Who has no part in the folder of the users' audio leaves a song's ID as it is, and its clips where
    /// they lie: an ID of its own choice could be that of another song there.
    bool givesIds = true;

private:
    class Busy;
    bool Load_First_Version(std::span<const std::uint8_t> bytes);
    bool Write(const std::filesystem::path& path, const Song_Snapshot& song) const;
    void Sort_Channels() const;
    void Empty_Model();
    void Reset_With_Fonts();
    bool Take_Over(const Song_Snapshot& song);
    void Load_Fonts(bool defaultList);
    void Show(Box_Kind kind, const char* text) const;
    template <typename Operation, typename... Arg>
    void Tell(Operation operation, const Arg&... arg) const;

    Project_Parts parts;
};

} // namespace tonvex
