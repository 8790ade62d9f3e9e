#include "app/settings.h"

#include "base/text_codec.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

namespace tonvex {

namespace {

constexpr const char* SECTION = "Config";

struct Long_Key {
    const char* key;
    std::int32_t Settings::*value;
    std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    std::int32_t highest = std::numeric_limits<std::int32_t>::max();
};

/// A stored number outside the range takes the default, as one that does not convert.
constexpr Long_Key LONG_KEYS[] = {
    {"InstallationID", &Settings::InstallationID},
    {"Global_BASSBufferSize", &Settings::Global_BASSBufferSize, 1, 5000},
    {"Global_Rec_WaitForKey", &Settings::Global_Rec_WaitForKey},
    {"Global_Current_Input", &Settings::Global_Current_Input, 0, 1},
    {"Global_Notation", &Settings::Global_Notation, 0, 3},
    {"Global_UseThreadEngine", &Settings::Global_UseThreadEngine},
    {"Global_PianoLayout_ShowStaff", &Settings::Global_PianoLayout_ShowStaff},
    {"Global_ShowVideoList", &Settings::Global_ShowVideoList},
    {"Global_FirstRun", &Settings::Global_FirstRun},
    {"Global_MC_BarsOpMovesMidiData", &Settings::Global_MC_BarsOpMovesMidiData},
    {"Global_EVEd_View_NoteNumbers", &Settings::Global_EVEd_View_NoteNumbers},
    {"Global_EVEd_View_Always_NoteReference", &Settings::Global_EVEd_View_Always_NoteReference},
    {"Global_MidiImport_Warning", &Settings::Global_MidiImport_Warning},
    {"Global_MidiSetup_OutDevice", &Settings::Global_MidiSetup_OutDevice},
    {"Global_MidiSetup_InDevice", &Settings::Global_MidiSetup_InDevice},
    {"Global_WMAExport_Bitrate", &Settings::Global_WMAExport_Bitrate, 1, 5000},
    {"Global_ShowHelpOnStartUp", &Settings::Global_ShowHelpOnStartUp},
    {"Global_MC_ShowHelp", &Settings::Global_MC_ShowHelp},
    {"Global_MC_StartWindowState", &Settings::Global_MC_StartWindowState},
};

struct Flag_Key {
    const char* key;
    bool Settings::*value;
};

constexpr Flag_Key FLAG_KEYS[] = {
    {"Global_EVEd_ViewBeats", &Settings::Global_EVEd_ViewBeats},
    {"Keyboard_Match_SongKey", &Settings::Keyboard_Match_SongKey},
};

std::optional<std::int32_t> Parse_Long(const std::string& stored) {
    const std::string text = Trim(stored);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

bool Parse_Flag(const std::string& stored, bool fallback) {
    const std::string text = Lower_Ascii(Trim(stored));
    if (text == "true" || text == "false")
        return text == "true";
    const auto number = Parse_Long(text);
    return number ? *number != 0 : fallback;
}

std::string Recent_Key(std::size_t row) {
    return "LRU" + std::to_string(row);
}

} // namespace

void Settings::Load(const Settings_Store& store, const std::string& defaultAudioPath) {
    const Settings defaults;
    for (const Long_Key& row : LONG_KEYS) {
        const std::int32_t fallback = defaults.*row.value;
        const std::int32_t value = Parse_Long(store.Get(SECTION, row.key, {})).value_or(fallback);
        this->*row.value = value < row.lowest || value > row.highest ? fallback : value;
    }
    for (const Flag_Key& row : FLAG_KEYS)
        this->*row.value = Parse_Flag(store.Get(SECTION, row.key, {}), defaults.*row.value);
    Projects_AudioPath = store.Get(SECTION, "Projects_AudioPath", {});
    if (Trim(Projects_AudioPath).empty())
        Projects_AudioPath = defaultAudioPath;
    for (std::size_t i = 0; i < LRU.size(); ++i)
        LRU[i] = store.Get(SECTION, Recent_Key(i), {});
}

void Settings::Save(Settings_Store& store) const {
    for (const Long_Key& row : LONG_KEYS)
        store.Set(SECTION, row.key, std::to_string(this->*row.value));
    for (const Flag_Key& row : FLAG_KEYS)
        store.Set(SECTION, row.key, this->*row.value ? "True" : "False");
    store.Set(SECTION, "Projects_AudioPath", Projects_AudioPath);
    Save_Recent(store);
}

void Settings::Save_Recent(Settings_Store& store) const {
    for (std::size_t i = 0; i < LRU.size(); ++i)
        store.Set(SECTION, Recent_Key(i), LRU[i]);
}

void Settings::Add_Recent(const std::string& path) {
    if (path.empty())
        return;
    const std::string wanted = Lower_Ascii(path);
    auto place = std::find_if(LRU.begin(), LRU.end(),
                              [&wanted](const std::string& row) { return Lower_Ascii(row) == wanted; });
    if (place == LRU.end())
        place = LRU.end() - 1;
    std::move_backward(LRU.begin(), place, place + 1);
    LRU.front() = path;
}

void Settings::Remove_Recent(const std::string& path) {
    const std::string gone = Lower_Ascii(path);
    const auto end = std::remove_if(LRU.begin(), LRU.end(),
                                    [&gone](const std::string& row) { return Lower_Ascii(row) == gone; });
    std::fill(end, LRU.end(), std::string());
}

} // namespace tonvex
