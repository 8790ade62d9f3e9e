#include "cli/song_listings.h"

#include "base/file_io.h"
#include "cli/json_texts.h"
#include "cli/song_dump.h"
#include "cli/song_source.h"

#include <nlohmann/json.hpp>

namespace tonvex {

namespace {

using nlohmann::ordered_json;

ordered_json Rows_Json(const Render_MidiEventColClass& list) {
    ordered_json rows = ordered_json::array();
    for (std::int32_t index = 0; index < list.TotalEvents(); ++index) {
        std::int16_t slot = 0;
        double time = 0.0;
        std::uint16_t data1 = 0;
        std::uint16_t data2 = 0;
        list.GetEvent(index, slot, time, data1, data2);
        rows.push_back(ordered_json::array({time, slot, data1, data2}));
    }
    return rows;
}

std::string Note_Lists(Session& session) {
    ordered_json document;
    document["lists"] = ordered_json::array();
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
        if (!session.channels->Is_Live_Row(row) || Is_On(channel.IsAudio))
            continue;
        document["lists"].push_back({{"marker", row},
                                     {"source", "channel"},
                                     {"rows", Rows_Json(session.render->Render_Channel(row))}});
    }
    return Json_Text(document);
}

Cli_Outcome Open(Cli_Session& tool, const Cli_Options& options, const std::string& song) {
    const Cli_Outcome outcome = tool.Open(options, Cli_Sound::None);
    return outcome.Done() ? Open_Song(tool, song, New_Song::Empty) : outcome;
}

} // namespace

Cli_Outcome Print_Song(const Cli_Options& options, const std::string& song, std::string& text) {
    Cli_Session tool;
    Cli_Outcome outcome = Open(tool, options, song);
    std::vector<std::uint8_t> bytes;
    if (outcome.Done() && song == "-")
        outcome = Song_Bytes(tool, bytes);
    else if (outcome.Done())
        bytes = Read_File(song).value_or(std::vector<std::uint8_t>());
    if (outcome.Done())
        text = Dump_Song(*tool.session, bytes);
    return outcome;
}

Cli_Outcome Print_Notes(const Cli_Options& options, const std::string& song, std::string& text) {
    Cli_Session tool;
    Cli_Outcome outcome = Open(tool, options, song);
    if (outcome.Done())
        text = Note_Lists(*tool.session);
    return outcome;
}

} // namespace tonvex
