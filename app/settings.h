#pragma once

#include "platform/settings_store.h"

#include <array>
#include <cstdint>
#include <string>

namespace tonvex {

/// Every user setting, by its key in the store. Read once at the start, written once at the end.
struct Settings {
    static constexpr int RECENT_FILES = 9;

    std::int32_t InstallationID = 0;
    std::int32_t Global_BASSBufferSize = 100;
    std::string Projects_AudioPath;
    std::int32_t Global_Rec_WaitForKey = 0;
    std::int32_t Global_Current_Input = 0;
    std::int32_t Global_Notation = 0;
    std::int32_t Global_UseThreadEngine = 1;
    std::int32_t Global_PianoLayout_ShowStaff = 0;
    std::int32_t Global_ShowVideoList = 1;
    std::int32_t Global_FirstRun = 1;
    std::int32_t Global_MC_BarsOpMovesMidiData = 1;
    bool Global_EVEd_ViewBeats = true;
    std::int32_t Global_EVEd_View_NoteNumbers = 0;
    std::int32_t Global_EVEd_View_Always_NoteReference = 0;
    std::int32_t Global_MidiImport_Warning = 0;
    std::int32_t Global_MidiSetup_OutDevice = -1000;
    std::int32_t Global_MidiSetup_InDevice = -1;
    std::int32_t Global_WMAExport_Bitrate = 128;
    std::int32_t Global_ShowHelpOnStartUp = 0;
    std::int32_t Global_MC_ShowHelp = 1;
    std::int32_t Global_MC_StartWindowState = 1;
    bool Keyboard_Match_SongKey = true;
    std::array<std::string, RECENT_FILES> LRU; ///< 0 the newest

    void Load(const Settings_Store& store, const std::string& defaultAudioPath);
    void Save(Settings_Store& store) const;
    /// To the top of the list, letter case aside; nothing is doubled, the tenth falls off.
    void Add_Recent(const std::string& path);
};

} // namespace tonvex
