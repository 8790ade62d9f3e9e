#include "cli/song_dump.h"

#include "base/byte_cursor.h"
#include "base/text_codec.h"
#include "cli/json_texts.h"
#include "project/project_layout.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <span>

namespace tonvex {

namespace {

using nlohmann::ordered_json;

ordered_json Chord_Json(const QChordData& chord) {
    ordered_json fields;
    fields["Active"] = chord.Active;
    fields["ChordName"] = chord.ChordName;
    fields["Octave"] = chord.Octave;
    fields["VariableOctave"] = Is_On(chord.VariableOctave);
    fields["Length"] = chord.Length;
    fields["ChordFlagA"] = chord.ChordFlagA;
    fields["ChordTypeIndex"] = chord.ChordTypeIndex;
    fields["ChordNotes"] = chord.ChordNotes;
    fields["ChordFlagB"] = chord.ChordFlagB;
    fields["ChordVol"] = chord.ChordVol;
    fields["ArpeggioOn"] = Is_On(chord.ArpeggioOn);
    fields["ArpeggioPattern"] = chord.ArpeggioPattern;
    fields["PatternNoteCount"] = chord.PatternNoteCount;
    fields["PatternNotes"] = chord.PatternNotes;
    fields["StepMs"] = chord.StepMs;
    return fields;
}

ordered_json Style_Json(const MCEventData& style) {
    ordered_json fields;
    fields["Root"] = style.Root;
    fields["Minor"] = style.Minor;
    fields["StartOffset"] = style.StartOffset;
    fields["Style"] = style.Style;
    fields["StyleBlock"] = Hex(style.StyleBlock);
    return fields;
}

ordered_json Audio_Json(const AudioEventData& audio) {
    ordered_json fields;
    fields["ClipID"] = audio.ClipID;
    fields["SampleCount"] = audio.SampleCount;
    fields["FadeIn"] = audio.FadeIn;
    fields["FadeOut"] = audio.FadeOut;
    fields["Take"] = audio.Take;
    return fields;
}

ordered_json Event_Json(const ChannelClass& store, const ChannelClass::Event_View& event) {
    ordered_json fields;
    fields["EventID"] = event.EventID;
    fields["StartTime"] = event.StartTime;
    fields["Kind"] = static_cast<int>(event.Kind);
    switch (event.Kind) {
    case EV_NOTE:
        fields["Note"] = event.Note->Note;
        fields["Vol"] = event.Note->Vol;
        fields["Length"] = event.Note->Length;
        break;
    case EV_QCHORD:
        fields["Length"] = event.QChord->Length;
        fields["QChord"] = Chord_Json(*event.QChord);
        break;
    case EV_PATCH:
        fields["DataRef"] = event.DataRef;
        break;
    case EV_NAMED:
        fields["Length"] = store.GetEvent_Length(event.EventI);
        fields["EventName"] = event.Named->EventName;
        fields["Block"] = Hex(event.Named->Block);
        break;
    case EV_MC:
        fields["Length"] = event.MC->Length;
        fields["MC"] = Style_Json(*event.MC);
        break;
    case EV_AUDIO:
        fields["Length"] = store.GetEvent_Length(event.EventI);
        fields["Audio"] = Audio_Json(*event.Audio);
        break;
    }
    return fields;
}

ordered_json Channel_Json(const GlobalChannelsManager& channels, int row) {
    const GlobalChannel& channel = channels.Channels[static_cast<std::size_t>(row)];
    ordered_json fields;
    fields["row"] = row;
    fields["ChannelID"] = channel.ChannelID;
    fields["ChannelName"] = channel.ChannelName;
    fields["Volume"] = channel.Volume;
    fields["PatchI"] = channel.PatchI;
    fields["Pan"] = channel.Pan;
    fields["SoundfontSet"] = channel.SoundfontSet;
    fields["OutputChannel"] = channel.OutputChannel;
    fields["Mute"] = Is_On(channel.Mute);
    fields["Solo"] = Is_On(channel.Solo);
    fields["IsAudio"] = Is_On(channel.IsAudio);
    fields["AudioOutput"] = channel.AudioOutput;
    fields["ReservedA"] = channel.ReservedA;
    fields["PatchByte0"] = channel.PatchByte0;
    fields["PatchByte1"] = channel.PatchByte1;
    fields["Style"] = channel.Style;
    fields["InUse"] = Is_On(channel.InUse);
    fields["StyleFlagA"] = channel.StyleFlagA;
    fields["StyleFlagB"] = channel.StyleFlagB;
    fields["StyleStrings"] = channel.StyleStrings;
    fields["StyleInts"] = channel.StyleInts;
    fields["StyleCustomInts"] = channel.StyleCustomInts;
    ordered_json events = ordered_json::array();
    const ChannelClass& store = channels.Store(row);
    for (auto eventI = store.FirstEvent(); eventI >= 0; eventI = store.Get_NextEventI(eventI)) {
        if (const auto event = store.ReadEvent(eventI))
            events.push_back(Event_Json(store, *event));
    }
    fields["events"] = std::move(events);
    return fields;
}

ordered_json Marks_Json(const Song_Marks& marks) {
    ordered_json rows = ordered_json::array();
    for (int row = 0; row < Song_Marks::ROWS; ++row) {
        if (!marks.Is_Live(row))
            continue;
        const Mark& mark = marks.Row(row);
        rows.push_back({{"row", row},
                        {"MarkStart", mark.MarkStart},
                        {"MarkEnd", mark.MarkEnd},
                        {"MarkName", mark.MarkName},
                        {"MarkColor", mark.MarkColor}});
    }
    return rows;
}

ordered_json Map_Json(const PanVol_Class& map) {
    ordered_json points = ordered_json::array();
    for (const MapPoint& point : map.In_Time_Order())
        points.push_back(ordered_json::array({point.TimePos, point.Value}));
    return points;
}

ordered_json Maps_Json(const Song_Maps& maps) {
    ordered_json both;
    both["slots"] = ordered_json::array();
    both["audio"] = ordered_json::array();
    for (int slot = 0; slot < Song_Maps::SLOTS; ++slot)
        both["slots"].push_back({{"slot", slot},
                                 {"volume", Map_Json(maps.Slot_Map(Map_Kind::Volume, slot))},
                                 {"pan", Map_Json(maps.Slot_Map(Map_Kind::Pan, slot))}});
    for (int row = 0; row < Song_Maps::AUDIO_ROWS; ++row) {
        const AudioMapRow& audio = maps.Audio_Row(row);
        if (Is_On(audio.InUse))
            both["audio"].push_back({{"row", row},
                                     {"ChannelID", audio.ChannelID},
                                     {"volume", Map_Json(audio.VolMap)},
                                     {"pan", Map_Json(audio.PanMap)}});
    }
    return both;
}

ordered_json Effects_Json(const Song_Effects& effects, int row) {
    constexpr std::array<const char*, EFFECT_KINDS> KEYS = {"reverb", "chorus", "flanger", "echo",
                                                            "distortion"};
    ordered_json fields;
    fields["row"] = row;
    for (const Effect_Kind kind : ALL_EFFECTS)
        fields[KEYS[static_cast<std::size_t>(kind)]] = {
            {"on", effects.Is_On(row, kind)}, {"data", Hex(Effect_Record(kind, effects.Row(row).Of(kind)))}};
    return fields;
}

struct Section_Row {
    std::string name;
    std::int32_t position;
    std::int32_t version;
};

/// The table at the head of a project file; empty for other bytes.
std::vector<Section_Row> Section_Table(std::span<const std::uint8_t> file) {
    std::vector<Section_Row> rows;
    Byte_Cursor cursor(file);
    cursor.Skip(PROJECT_MAGIC.size() + PROJECT_VERSION.size());
    const std::int32_t last = cursor.Read_I32();
    for (std::int32_t row = 0; cursor.Ok() && row <= last; ++row) {
        const auto name = cursor.Read_Bytes(cursor.Read_U16());
        Section_Row section{Text_From_File({reinterpret_cast<const char*>(name.data()), name.size()}),
                            cursor.Read_I32(), cursor.Read_I32()};
        if (cursor.Ok())
            rows.push_back(std::move(section));
    }
    return rows;
}

void Add_Head(ordered_json& song, std::span<const std::uint8_t> file) {
    const std::size_t headBytes = PROJECT_MAGIC.size() + PROJECT_VERSION.size();
    const std::string head(file.begin(),
                           file.begin() + static_cast<std::ptrdiff_t>(std::min(headBytes, file.size())));
    song["magic"] = head.substr(0, PROJECT_MAGIC.size());
    song["fileVersion"] = head.size() > PROJECT_MAGIC.size() ? head.substr(PROJECT_MAGIC.size()) : "";
    song["sections"] = ordered_json::array();
    // The first major version has no table.
    if (song["magic"] != PROJECT_MAGIC)
        return;
    for (const Section_Row& row : Section_Table(file))
        song["sections"].push_back(
            {{"SectionName", row.name}, {"SectionPos", row.position}, {"SectionVersion", row.version}});
}

ordered_json Globals_Json(const Project_State& project) {
    ordered_json fields;
    fields["TransportOption"] = project.TransportOption;
    fields["ToolValueA"] = project.ToolValueA;
    fields["ToolValueB"] = project.ToolValueB;
    fields["ProjectTempo"] = project.ProjectTempo;
    fields["MetronomeNoteA"] = project.MetronomeNoteA;
    fields["MetronomeNoteB"] = project.MetronomeNoteB;
    fields["EvEdViewA"] = project.EvEdViewA;
    fields["EvEdViewB"] = project.EvEdViewB;
    fields["EvEdViewC"] = project.EvEdViewC;
    fields["EvEdViewD"] = project.EvEdViewD;
    fields["EvEdViewBeats"] = Is_On(project.EvEdViewBeats);
    fields["HubValue1400"] = project.HubValue1400;
    fields["ProjectTitle"] = project.ProjectTitle;
    fields["ProjectAuthor"] = project.ProjectAuthor;
    fields["ProjectComments"] = project.ProjectComments;
    fields["KeyboardSetupN"] = project.KeyboardSetupN;
    fields["ProjectID"] = project.ProjectID;
    fields["InstallationID"] = project.InstallationID;
    fields["NextAudioFileN"] = project.NextAudioFileN;
    return fields;
}

ordered_json Creator_Json(const MusicCreator_Module& creator) {
    ordered_json fields;
    fields["SongKey"] = creator.SongKey;
    fields["SongMode"] = creator.SongMode;
    fields["LastBar"] = creator.LastBar;
    fields["tracks"] = ordered_json::array();
    for (std::size_t row = 0; row < creator.MC_Tracks.size(); ++row) {
        const MCTrack& track = creator.MC_Tracks[row];
        if (Is_On(track.InUse))
            fields["tracks"].push_back({{"row", row},
                                        {"DisplayByte", track.DisplayByte},
                                        {"TrackID", track.TrackID},
                                        {"ChannelID", track.ChannelID},
                                        {"Name", track.Name},
                                        {"InstanceNumber", track.InstanceNumber},
                                        {"Style", track.Style},
                                        {"ShownFlag", Is_On(track.ShownFlag)},
                                        {"PlayerSlot", track.PlayerSlot},
                                        {"OldPatchA", track.OldPatchA},
                                        {"OldPatchB", track.OldPatchB}});
    }
    fields["bars"] = ordered_json::array();
    for (std::size_t bar = 0; bar < creator.MC_Bars.size(); ++bar) {
        if (Is_On(creator.MC_Bars[bar].HasChord))
            fields["bars"].push_back({{"bar", bar},
                                      {"Root", creator.MC_Bars[bar].Root},
                                      {"ChordType", creator.MC_Bars[bar].ChordType}});
    }
    fields["events"] = ordered_json::array();
    for (const MCBarEvent& event : creator.MC_Events) {
        if (Is_On(event.InUse))
            fields["events"].push_back({{"EventID", event.EventID},
                                        {"TrackID", event.TrackID},
                                        {"StartBeat", event.StartBeat},
                                        {"LengthBeats", event.LengthBeats},
                                        {"StyleBlock", Hex(event.StyleBlock)}});
    }
    return fields;
}

} // namespace

std::string Dump_Song(const Session& session, std::span<const std::uint8_t> file) {
    ordered_json song;
    Add_Head(song, file);
    song["globals"] = Globals_Json(session.project);
    song["channels"] = ordered_json::array();
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (session.channels->Is_Live_Row(row))
            song["channels"].push_back(Channel_Json(*session.channels, row));
    }
    song["tempo"] = ordered_json::array();
    for (const TempoChange& change : session.tempoChanges.In_Time_Order())
        song["tempo"].push_back({{"ID", change.ID}, {"BeatN", change.BeatN}, {"Tempo", change.Tempo}});
    song["marks"] = Marks_Json(session.marks);
    song["maps"] = Maps_Json(session.channels->Maps);
    song["effects"] = ordered_json::array();
    for (int row = 0; row < Song_Effects::ROWS; ++row) {
        if (session.channels->Effects.Row(row).Any_On())
            song["effects"].push_back(Effects_Json(session.channels->Effects, row));
    }
    song["editor"] = {{"AlignDiv", session.editorSetup.AlignDiv},
                      {"AlignStep", session.editorSetup.AlignStep}};
    song["creator"] = Creator_Json(session.creator);
    song["soundfonts"] = session.fonts->Get_CurList();
    return Json_Text(song);
}

} // namespace tonvex
