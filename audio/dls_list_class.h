#pragma once

#include "audio/font_preset.h"
#include "engine/midiapi.h"
#include "platform/sound_door.h"
#include "platform/synth_instance.h"
#include "song/global_channels_manager.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

/// The soundfonts of the project and of new files: paths in UTF-8, later ones take precedence.
/// Whoever loads fonts sends all patches afterwards, since font handles and patch rows are new.
/// Interface thread.
class DLSListClass {
public:
    /// All outlive the list.
    DLSListClass(Sound_Door& sound, midiapi& output, GlobalChannelsManager& channels);

    std::vector<std::string> CurList;     ///< the project's
    std::vector<std::string> DefaultList; ///< for new files

    void Set_Config_Folder(const std::filesystem::path& config) { configFolder = config; }
    /// <config>/defaultsf2.cfg: one full path a line.
    std::filesystem::path Get_DefaultList_Path() const;
    const std::vector<std::string>& Get_CurList() const noexcept { return CurList; }
    void Set_CurList(std::vector<std::string> list) { CurList = std::move(list); }
    /// Reads the default list: lines whose files are there, or else the first of Well_Known_Fonts. Then
    /// makes it the project's (unless keepCurList) and loads its fonts (unless dontLoadFonts).
    /// Without the synthesizer only the plain patch tables are set up and the lists stay.
    /// True when at least one font was loaded (with dontLoadFonts: found), or the output is a port or
    /// nothing.
    bool Load_DefaultList(bool dontLoadFonts = false, bool keepCurList = false);
    /// Writes DefaultList. False with a text in error; the old file then stands.
    bool Save_DefaultList(std::string& error) const;
    /// Entries of CurList whose files are gone.
    std::vector<std::string> CheckFiles_Curlist() const;
    bool Load_CurList_Fonts();
    /// Load_CurList_Fonts, unless just these fonts are the ones that were loaded last.
    bool Keep_Or_Load_CurList();
    /// For an output just opened: the project's fonts, or the default list while it names none.
    bool Load_For_Output();
    /// Loads the fonts into the synthesizer in place of those there, fills Global_Patches and
    /// Global_DrumPatches from their presets (see patch_tables.h). Paths that failed are in Failed_Fonts.
    /// True when at least one was loaded. Without the synthesizer: plain tables, no fonts, true.
    bool Load_SF2_List(const std::vector<std::string>& list);
    /// The fonts that sound now, in list order, with the handles that patches name. None with a port.
    const std::vector<Font_Source>& Sounding_Fonts() const noexcept { return soundingFonts; }
    const std::vector<std::string>& Failed_Fonts() const noexcept { return failedFonts; }

    /// The font's own name; empty when it has none or cannot be read.
    static std::string Get_SF2File_Title(const std::filesystem::path& path);
    /// False, with both empty, when the file is missing or has no whole table of at least one preset.
    static bool Parse_SF2_File(const std::filesystem::path& path, std::string& title,
                               std::vector<Font_Preset>& presets);
    /// The same for a font in memory.
    static bool Parse_SF2_Bytes(std::span<const std::uint8_t> bytes, std::string& title,
                                std::vector<Font_Preset>& presets);
    /// Where a General MIDI font of the system is looked for, in order; the first that exists is taken.
    static std::vector<std::filesystem::path> Well_Known_Fonts();

    /// Well_Known_Fonts, unless others are to be looked for.
    std::vector<std::filesystem::path> fallbackFonts = Well_Known_Fonts();

private:
    Sound_Door& sound;
    midiapi& output;
    GlobalChannelsManager& channels;
    std::filesystem::path configFolder;
    std::vector<std::string> failedFonts;
    std::vector<std::string> loadedList; ///< what the synthesizer was last given
    bool anyLoaded = false;              ///< at least one of loadedList
    std::vector<Font_Source> soundingFonts;
};

} // namespace tonvex
