#include "cli/listings.h"

#include "audio/dls_list_class.h"
#include "cli/json_texts.h"
#include "cli/silent_sound_door.h"
#include "engine/midiapi.h"
#include "platform/rtmidi_ports.h"

#include <nlohmann/json.hpp>

namespace tonvex {

namespace {

using nlohmann::ordered_json;

ordered_json Device_Rows(const std::vector<Device_Row>& rows) {
    ordered_json list = ordered_json::array();
    for (const Device_Row& row : rows)
        list.push_back({{"Name", row.Name}, {"DeviceID", row.DeviceID}, {"IsSynth", row.IsSynth}});
    return list;
}

/// A song that nobody edits.
class No_Host final : public Channel_Host {
public:
    double Song_Length_Beats() const override { return 0.0; }
    bool Live_Changes_On() const override { return false; }
    void Event_Fell_Out(std::int32_t, std::int32_t) override {}
    double Clip_Length_Beats(double, std::int32_t) const override { return 0.0; }
    void Retype_Chord(QChordData&, std::uint8_t) const override {}
    void Rename_Chord(QChordData&, int) const override {}
};

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
    text = Json_Text(font);
    return {};
}

Cli_Outcome List_Devices(std::string& text) {
    const Monotonic_Counter counter;
    No_Host host;
    const GlobalChannelsManager channels(host);
    Silent_Sound_Door sound;
    Recorded_Dialogs dialogs;
    RtMidi_Ports ports(counter);
    midiapi output(sound, ports, dialogs, counter, channels);
    ordered_json devices;
    devices["outputs"] = Device_Rows(output.Output_Devices());
    devices["inputs"] = Device_Rows(output.Input_Devices());
    text = Json_Text(devices);
    return {};
}

} // namespace tonvex
