#pragma once

#include "platform/settings_store.h"

#include <array>
#include <cstdint>
#include <string>

namespace tonvex {

/// Every user setting, by its key in the store (section "Config"). Read once at the start, written once at
/// the end. Long integers are stored in decimal, flags as "True" and "False" (numbers are read too, nonzero
/// is true). A value that is missing, does not convert or lies out of range takes its default. Interface
/// thread.
struct Settings {
    static constexpr int RECENT_FILES = 9;

    std::int32_t InstallationID = 0;          ///< 0 until the first run has drawn one
    std::int32_t Global_BASSBufferSize = 100; ///< ms, 1 to 5000
    std::string Projects_AudioPath;
    std::int32_t Global_Rec_WaitForKey = 0; ///< nonzero: on
    std::int32_t Global_Current_Input = 0;  ///< 0 keyboard, 1 keyboard and MIDI
    std::int32_t Global_Notation = 0;       ///< 0 to 3
    std::int32_t Global_UseThreadEngine = 1;
    std::int32_t Global_PianoLayout_ShowStaff = 0;
    std::int32_t Global_ShowVideoList = 1;
    std::int32_t Global_FirstRun = 1;
    std::int32_t Global_MC_BarsOpMovesMidiData = 1;
    bool Global_EVEd_ViewBeats = true;
    std::int32_t Global_EVEd_View_NoteNumbers = 0;
    std::int32_t Global_EVEd_View_Always_NoteReference = 0;
    std::int32_t Global_MidiImport_Warning = 0;
    std::int32_t Global_MidiSetup_OutDevice = -1000; ///< device ID
    std::int32_t Global_MidiSetup_InDevice = -1;     ///< device ID, -1 none
    std::int32_t Global_WMAExport_Bitrate = 128;     ///< kbit/s
    std::int32_t Global_ShowHelpOnStartUp = 0;
    std::int32_t Global_MC_ShowHelp = 1;
    std::int32_t Global_MC_StartWindowState = 1;
    bool Keyboard_Match_SongKey = true;
    std::array<std::string, RECENT_FILES> LRU; ///< 0 the newest

    /// defaultAudioPath stands in for a Projects_AudioPath that was never stored.
    void Load(const Settings_Store& store, const std::string& defaultAudioPath);
    /// Sets every key; the caller flushes the store.
    void Save(Settings_Store& store) const;
    /// The recent files alone, likewise.
    void Save_Recent(Settings_Store& store) const;
    /// To the top of the list, letter case aside; nothing is doubled, the tenth falls off.
    void Add_Recent(const std::string& path);
    /// The rows below it move up.
    void Remove_Recent(const std::string& path);
};

} // namespace tonvex
