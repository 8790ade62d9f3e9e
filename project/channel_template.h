#pragma once

#include "platform/effects/effect_settings.h"
#include "song/event_data.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// Below the folder of templates.
inline constexpr const char* CHANNEL_TEMPLATES = "channels";

/// What a new channel is preset with. A field that a template does not name keeps the value that a new
/// channel has.
struct ChannelTemplate {
    static constexpr std::int16_t ANY_SLOT = -1;
    static constexpr std::size_t MOST_EFFECTS = 11;

    std::filesystem::path TemplateFile;
    std::string InfoFile;          ///< page beside the template; empty: none
    std::string RepFind;           ///< text of the page …
    std::string RepReplace;        ///< … and what is shown in its place
    std::string KeyboardSetupFile; ///< name of a keyboard layout; empty: the one in use
    Flag16 BasicTemplate = FLAG_OFF;
    Flag16 AddChannelCountToName = FLAG_OFF;
    std::int16_t TemplatePan = 64;          ///< 0 to 127
    std::int16_t TemplateVol = 80;          ///< 0 to 127
    std::int16_t TemplateOutput = ANY_SLOT; ///< output slot 0 to 31
    std::int16_t TemplatePatch0 = 0;        ///< program 0 to 127
    std::int16_t TemplatePatch1 = 0;        ///< bank 0 to 127
    std::int16_t TemplateStyle = 0;         ///< style of the music creator
    std::array<std::int16_t, 5> StyleInts{};
    std::array<std::string, 5> StyleStrings;
    std::array<std::int32_t, 4> CustomInts{};
    std::array<std::string, MOST_EFFECTS> EffectGuids;  ///< as Effect_Name
    std::array<std::string, MOST_EFFECTS> EffectParams; ///< figures of the effect's record, see Effects
    int EffectCount = 0;

    /// The file of a template of that name; empty for a name that is none.
    static std::filesystem::path File_Of(const std::filesystem::path& folder, const std::string& name);
    /// The name that the user sees: the file's, without its ending.
    std::string Name() const;
    /// What the effect lines say: an effect named is on. Its figures stand in the order of its record,
    /// separated by blanks; those left out are neutral. Unknown effects are passed over.
    Effect_Settings Effects() const;
};

/// Reads one template. False, and the target as it was, when the file is missing, cannot be read or is too
/// long to be one. Lines that are no key and value, keys that are unknown and figures that do not convert are
/// passed over.
bool Read_Template(const std::filesystem::path& path, ChannelTemplate& target, bool readEffects);
/// The same of a text in memory.
ChannelTemplate Parse_Template(std::string_view bytes, bool readEffects);

/// The file's text, lines ended by "\r\n". Effects are not written.
std::string Template_Text(const ChannelTemplate& source);
/// Replaces path in one step. False with a text in error.
bool Write_Template(const std::filesystem::path& path, const ChannelTemplate& source, std::string& error);

/// All templates of a folder that can be read, by name.
std::vector<ChannelTemplate> List_Templates(const std::filesystem::path& folder);

/// The page that tells about a template, with its text replaced as the template asks; empty when there is
/// none. UTF-8.
std::string Template_Page(const ChannelTemplate& source);

/// A pan as the user writes it: a percentage ("0 %" left, "50" the middle, "100" right; the sign may stay
/// away), or "l", "left", "r", "right", "c", "center". Letter case aside. 0 to 127; nothing for other texts.
std::optional<std::uint8_t> Pan_From_Text(std::string_view text);

} // namespace tonvex
