#include "cli/song_dump.h"

#include <array>
#include <nlohmann/json.hpp>
#include <span>

namespace tonvex {

namespace {

using nlohmann::ordered_json;

std::string Hex(std::span<const std::uint8_t> bytes) {
    constexpr const char* DIGITS = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += DIGITS[byte >> 4U];
        text += DIGITS[byte & 15U];
    }
    return text;
}

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

} // namespace

std::string Dump_Song(const Session& session) {
    ordered_json song;
    song["globals"]["ProjectTempo"] = session.project.ProjectTempo;
    song["globals"]["MetronomeNoteA"] = session.project.MetronomeNoteA;
    song["globals"]["MetronomeNoteB"] = session.project.MetronomeNoteB;
    song["globals"]["ProjectTitle"] = session.project.ProjectTitle;
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
    song["soundfonts"] = session.fonts->Get_CurList();
    // Names that are not UTF-8 must not stop a dump.
    return song.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

} // namespace tonvex
