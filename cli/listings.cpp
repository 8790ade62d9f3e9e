#include "cli/listings.h"

#include "audio/dls_list_class.h"
#include "cli/silent_sound_door.h"
#include "engine/midiapi.h"

#include <nlohmann/json.hpp>

namespace tonvex {

namespace {

using nlohmann::ordered_json;

std::string Document(const ordered_json& document) {
    return document.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

} // namespace

Cli_Outcome List_Font(const std::filesystem::path& file, std::string& text) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return Cli_Outcome::Failed(file.string(), "there is no such file");
    std::string title;
    std::vector<Font_Preset> presets;
    if (!DLSListClass::Parse_SF2_File(file, title, presets))
        return Cli_Outcome::Failed(file.string(), "is not a soundfont");
    ordered_json font;
    font["title"] = title;
    font["presets"] = ordered_json::array();
    for (const Font_Preset& preset : presets)
        font["presets"].push_back({{"PresetName", preset.PresetName},
                                   {"PresetNumber", preset.PresetNumber},
                                   {"PresetBank", preset.PresetBank},
                                   {"IsDrums", Is_On(preset.IsDrums)}});
    text = Document(font);
    return {};
}

} // namespace tonvex
