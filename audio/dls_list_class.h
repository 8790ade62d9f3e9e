#pragma once

#include "engine/midiapi.h"
#include "platform/sound_door.h"
#include "song/global_channels_manager.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tonvex {

struct Font_Preset {
    std::string PresetName;
    std::uint8_t PresetNumber = 0;
    std::uint8_t PresetBank = 0;
    Flag16 IsDrums = 0;
};

/// The soundfonts of the project and of new files. Interface thread.
class DLSListClass {
public:
    /// All outlive the list.
    DLSListClass(Sound_Door& sound, midiapi& output, GlobalChannelsManager& channels);

    std::vector<std::string> CurList;
    std::vector<std::string> DefaultList;

    void Set_Config_Folder(const std::filesystem::path& config) { configFolder = config; }
    std::filesystem::path Get_DefaultList_Path() const;
    const std::vector<std::string>& Get_CurList() const noexcept { return CurList; }
    void Set_CurList(std::vector<std::string> list) { CurList = std::move(list); }
    /// True when at least one font was loaded, or the output is not the synthesizer.
    bool Load_DefaultList(bool dontLoadFonts = false, bool keepCurList = false);
    bool Save_DefaultList(std::string& error) const;
    /// Entries of CurList whose files are gone.
    std::vector<std::string> CheckFiles_Curlist() const;
    bool Load_CurList_Fonts();
    /// Loads the fonts into the synthesizer, fills Global_Patches and Global_DrumPatches from their presets.
    /// Paths that failed are in Failed_Fonts. True when at least one was loaded.
    bool Load_SF2_List(const std::vector<std::string>& list);
    const std::vector<std::string>& Failed_Fonts() const noexcept { return failedFonts; }

    static std::string Get_SF2File_Title(const std::filesystem::path& path);
    static bool Parse_SF2_File(const std::filesystem::path& path, std::string& title,
                               std::vector<Font_Preset>& presets);
    /// Where a General MIDI font of the system is looked for, in order; the first that exists is taken.
    static std::vector<std::filesystem::path> Well_Known_Fonts();

private:
    Sound_Door& sound;
    midiapi& output;
    GlobalChannelsManager& channels;
    std::filesystem::path configFolder;
    std::vector<std::string> failedFonts;
};

} // namespace tonvex
