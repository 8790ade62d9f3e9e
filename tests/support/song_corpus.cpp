#include "support/song_corpus.h"

#include "creator/style_names.h"

#include <string>

namespace tonvex {

namespace {

int Add_Channel(Session& session, const std::string& name, bool audio = false,
                std::int32_t slot = NOT_GIVEN) {
    return session.channels->Add_Channel(session.channels->New_ChannelID(), audio, slot, name);
}

void Every_Kind(Session& session) {
    ChannelClass& store = session.channels->Store(Add_Channel(session, "Kinds"));
    QChordData chord{.Active = 3, .ChordName = "F#m7", .Octave = 4, .VariableOctave = FLAG_ON, .Length = 2.5};
    chord.ChordNotes = {54, 57, 61, 64, 0, 9};
    chord.PatternNotes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 255};
    chord.StepMs = 125;
    NamedEventData named{.EventName = "cue \u20AC"};
    named.Block.fill(0xA5);
    for (std::size_t i = 101; i < named.Block.size(); ++i)
        named.Block[i] = 0; // files carry 101 bytes of it
    MCEventData fragment{.Root = 11, .Minor = 1, .Length = 16.0, .StartOffset = -0.75, .Style = 4};
    fragment.StyleBlock.fill(0x5A);
    fragment.Reserved = 77;
    store.AddNewEvent(3.0, chord);
    store.AddNewEvent(3.0, PatchData{200});
    store.AddNewEvent(0.0, named);
    store.AddNewEvent(1.0 / 3.0, fragment);
    store.AddNewEvent(3.0, NoteData{127, 0, 0.05});
}

void Holes(Session& session) {
    Add_Channel(session, "First");
    ChannelClass& store = session.channels->Store(Add_Channel(session, "Holes"));
    for (int i = 0; i < 60; ++i)
        store.AddNewEvent((i * 13) % 17, NoteData{static_cast<std::uint8_t>(i), 80, 1.0}, i % 2 == 0);
    for (int i = 0; i < 60; i += 3)
        store.DeleteEvent(FIRST_ID + i);
    session.channels->Delete_Channel(session.channels->Channels[0].ChannelID);
    Add_Channel(session, "Third");
    for (const double beat : {4.0, 8.0, 12.0})
        session.tempoChanges.AddTempoChange(beat, 90);
    session.tempoChanges.DeleteTempoChange(FIRST_ID + 1);
    session.marks.Add_Mark(4.0, 8.0, "gone");
    session.marks.Add_Mark(8.0, Mark::NO_END, "");
    session.marks.Delete_Mark(1);
}

void Maps_And_Effects(Session& session) {
    Add_Channel(session, "Mapped");
    Song_Maps& maps = session.channels->Maps;
    std::int32_t id = 0;
    std::int32_t second = 0;
    maps.Slot_Map(Map_Kind::Volume, 0).Add_Point(4.0, 100, id);
    maps.Slot_Map(Map_Kind::Volume, 0).Add_Point(2.0, 127, second);
    maps.Slot_Map(Map_Kind::Volume, 0).Add_Point(4.0, 0, second);
    maps.Slot_Map(Map_Kind::Volume, 0).Delete_Point(id); // the last row moves into its place
    maps.Slot_Map(Map_Kind::Pan, 31).Add_Point(1.5, 3, id);
    maps.Slot_Map(Map_Kind::Pan, 31).Set_Fixed_Points(12);
    Song_Effects& effects = session.channels->Effects;
    for (const Effect_Kind kind : ALL_EFFECTS)
        effects.Set_On(0, kind, true);
    effects.Set_Values(0, Effect_Kind::Reverb, {-3.0F, -10.0F, 1500.0F, 0.5F});
    effects.Set_Values(130, Effect_Kind::Echo, {25.0F, 10.0F, 250.0F, 500.0F, 1.0F});
    effects.Set_On(130, Effect_Kind::Distortion, true);
}

void Texts(Session& session) {
    const int row = Add_Channel(session, std::string(60, 'n') + "\u00E9");
    GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
    channel.SoundfontSet = "d\u00E9faut";
    channel.StyleStrings = {"one", "", "\u0416", std::string(70000, 'x'), "five"};
    channel.StyleInts = {1, -2, 32767, -32768, 5};
    channel.StyleCustomInts = {-1, 2, -3, 4, -5, 6, -7, 8, -9, 10, -11};
    channel.StyleFlagA = 1;
    channel.StyleFlagB = 65535;
    channel.ReservedA = 4660;
    session.channels->Channels[105].ChannelName = "row that is never live";
    session.channels->Channels[105].ChannelID = 42;
    session.project.ProjectTitle = "\u65E5\u672C";
    session.project.ProjectAuthor = "A\u00EFda";
    for (int i = 0; i < 40000; ++i)
        session.project.ProjectComments += "\u00E9\u0416";
    session.fonts->CurList = {"/nowhere/gr\u00F6\u00DFe.sf2", "/nowhere/\u0416.sf2"};
    session.channelsList[0] = {FLAG_ON, channel.ChannelID, "old name", {1, 2, 3, 4, 5}, -6};
    session.channelsList[7] = {FLAG_OFF, 99, "gone", {9, 8, 7, 6, 5}, 123456};
}

void Audio(Session& session) {
    Add_Channel(session, "Bass");
    for (const char* name : {"Voice", "Choir", "Guitar"}) {
        const int row = Add_Channel(session, name, true);
        session.channels->Store(row).AddNewEvent(2.0, AudioEventData{FLAG_ON, 44100, 441, 882, 3, row});
    }
    std::int32_t id = 0;
    Song_Maps& maps = session.channels->Maps;
    maps.Audio_Row(1).PanMap.Add_Point(8.0, 90, id);
    session.channels->Delete_Channel(
        session.channels->Channels[1].ChannelID); // row 0 of the audio maps is free
    session.project.NextAudioFileN = 4;
}

void Creator(Session& session) {
    Add_Channel(session, "Drums", false, 9);
    MusicCreator_Module& creator = session.creator;
    creator.SongKey = 7;
    creator.SongMode = 1;
    creator.LastBar = 50;
    creator.MC_Tracks.resize(8);
    const std::int32_t drums = session.channels->Channels[0].ChannelID;
    for (std::uint8_t style = 0; style < STYLES; ++style) {
        MCTrack& track = creator.MC_Tracks[style + 1U]; // row 0 is free, row 6 was deleted
        track = {90, 0, drums, std::string(Style_ShownName(style)), style, style, FLAG_ON, 2, FLAG_ON,
                 0,  0, {}};
        track.TrackID = static_cast<std::int16_t>(style + 3);
        track.Reserved[18] = style;
    }
    creator.MC_Tracks[6] = {90, 2, 12345, "\u00E9l\u00E8ve", 1, 3, FLAG_ON, 1, FLAG_OFF, 4, 5, {1, 2, 3}};
    for (std::uint8_t bar = 0; bar < 51; bar += 3)
        creator.MC_Bars[bar] = {static_cast<std::uint8_t>(bar % 12), static_cast<std::uint8_t>(bar % 10),
                                FLAG_ON, bar, To_Flag(bar % 2 == 0)};
    creator.MC_Events.resize(130); // every third row is free
    for (int row = 0; row < 130; row += 1 + row % 3) {
        MCBarEvent& event = creator.MC_Events[static_cast<std::size_t>(row)];
        event = {FLAG_ON, static_cast<float>(row) * 1.25F, 16.0F, {0, 2, 3}, {row, -row}, 0, 16, 0, 0, {}, 0};
        event.ViewWords[0] = static_cast<std::int16_t>(-row);
        event.TrackID = static_cast<std::int16_t>(3 + row % STYLES);
        event.EventID = creator.NextEventID++;
        event.Reserved = static_cast<std::uint8_t>(row);
        event.StyleBlock.fill(static_cast<std::uint8_t>(row + 1));
    }
    session.editorSetup.AlignDiv = 12;
    session.editorSetup.AlignStep = 0.125;
    session.editorSetup.Reserved.fill(7);
    session.editorSetup.ReservedTexts[1] = {1, 2, 0, 255};
}

void Globals(Session& session) {
    Project_State& state = session.project;
    state.ProjectTempo = 133;
    state.MetronomeNoteA = 55;
    state.MetronomeNoteB = 37;
    state.TransportOption = -5;
    state.ToolValueA = 5;
    state.ToolValueB = 0;
    state.ReservedLong = 0x01020304;
    state.EvEdViewA = 12;
    state.EvEdViewB = -13;
    state.EvEdViewC = 14;
    state.EvEdViewD = -15;
    state.EvEdViewBeats = FLAG_OFF;
    state.HubValue1400 = 16;
    state.KeyboardSetupN = 17;
    state.NextAudioFileN = 18;
}

constexpr Corpus_Song SONGS[] = {
    {"nothing", [](Session&) {}},
    {"every kind of event", Every_Kind},
    {"deleted things", Holes},
    {"maps and effects", Maps_And_Effects},
    {"texts", Texts},
    {"audio channels", Audio},
    {"music creator and editor", Creator},
    {"globals", Globals},
    {"all at once", Make_Full_Song},
    {"a full table", [](Session& session) { Make_Large_Song(session, 100, 3); }},
};

} // namespace

std::span<const Corpus_Song> Song_Corpus() {
    return SONGS;
}

void Make_Full_Song(Session& session) {
    Holes(session);
    Every_Kind(session);
    Maps_And_Effects(session);
    Globals(session);
    Creator(session);
    const int row = Add_Channel(session, "Voice", true);
    session.channels->Store(row).AddNewEvent(1.0, AudioEventData{FLAG_ON, 22050, 0, 0, 1, 1});
    session.fonts->CurList = {"/nowhere/a.sf2"};
}

void Make_Large_Song(Session& session, int channelCount, int eventCount) {
    for (int n = 0; n < channelCount; ++n) {
        ChannelClass& store = session.channels->Store(Add_Channel(session, "Channel"));
        for (int i = 0; i < eventCount; ++i)
            store.AddNewEvent(i * 0.25,
                              NoteData{static_cast<std::uint8_t>(36 + i % 48),
                                       static_cast<std::uint8_t>(1 + i % 127), 0.25 * (1 + i % 5)},
                              true);
        store.ReSort_StartTime();
    }
}

} // namespace tonvex
