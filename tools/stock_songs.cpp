#include "tools/stock_songs.h"

#include "creator/style_names.h"
#include "platform/sound_door.h"
#include "tools/song_builder.h"

#include <array>

namespace tonvex {

namespace {

constexpr int MAJOR = 0;
constexpr int MINOR = 1;
constexpr double BAR = 4.0;
enum Root : int { C = 0, D = 2, E = 4, F = 5, G = 7, A = 9 };
enum Drum : int { BASS_DRUM = 36, SNARE = 38, CLOSED_HAT = 42, OPEN_HAT = 46, CRASH = 49, SHAKER = 70 };
/// A step that is a note value: half a beat.
constexpr std::int16_t EIGHTHS = -1001;
constexpr std::int16_t TRAVIS_MAJOR = 1; ///< picking patterns that ship
constexpr std::int16_t TRAVIS_MINOR = 2;
constexpr std::int32_t BLUE = 0xD08040;
constexpr std::int32_t GREEN = 0x60B060;
constexpr std::int32_t ORANGE = 0x3080E0;

struct Bar_Chord {
    int root;
    int type;
};

struct Tune_Note {
    double start; ///< beats from the phrase's start
    double length;
    int note;
};

constexpr std::array<Bar_Chord, 4> TURN = {{{A, MINOR}, {F, MAJOR}, {C, MAJOR}, {G, MAJOR}}};
constexpr std::array<Bar_Chord, 8> VERSE = {
    {{A, MINOR}, {F, MAJOR}, {C, MAJOR}, {G, MAJOR}, {A, MINOR}, {F, MAJOR}, {D, MINOR}, {E, MAJOR}}};
constexpr std::array<Bar_Chord, 8> CHORUS = {
    {{F, MAJOR}, {G, MAJOR}, {C, MAJOR}, {A, MINOR}, {F, MAJOR}, {G, MAJOR}, {C, MAJOR}, {E, MAJOR}}};
constexpr std::array<Bar_Chord, 4> CLOSE = {{{A, MINOR}, {F, MAJOR}, {D, MINOR}, {A, MINOR}}};

constexpr Tune_Note VERSE_TUNE[] = {
    {0.0, 1.5, 76},  {1.5, 0.5, 74}, {2.0, 1.0, 72},  {3.0, 1.0, 74},  {4.0, 2.5, 69},  {6.5, 0.5, 71},
    {7.0, 1.0, 72},  {8.0, 1.5, 79}, {9.5, 0.5, 76},  {10.0, 2.0, 72}, {12.0, 3.0, 74}, {16.0, 1.5, 76},
    {17.5, 0.5, 74}, {18., 1.0, 72}, {19.0, 1.0, 76}, {20.0, 2.5, 77}, {22.5, 0.5, 76}, {23.0, 1.0, 74},
    {24.0, 2.0, 74}, {26., 1.0, 72}, {27.0, 1.0, 69}, {28.0, 3.5, 68}};
constexpr Tune_Note CHORUS_TUNE[] = {{0.0, 2.0, 81},  {2.0, 1.0, 79},  {3.0, 1.0, 77},  {4.0, 1.5, 79},
                                     {5.5, 0.5, 77},  {6.0, 2.0, 74},  {8.0, 2.0, 76},  {10.0, 1.0, 79},
                                     {11.0, 1.0, 84}, {12.0, 3.0, 81}, {16.0, 2.0, 81}, {18.0, 1.0, 84},
                                     {19.0, 1.0, 81}, {20.0, 1.5, 83}, {21.5, 0.5, 81}, {22.0, 2.0, 79},
                                     {24.0, 2.0, 76}, {26.0, 2.0, 79}, {28.0, 3.5, 80}};

/// Two steps louder, one softer: a hand is never even.
int Touch(int velocity, double start) {
    constexpr std::array<int, 8> SWING = {6, -5, 1, -3, 4, -6, 2, -2};
    return velocity + SWING[static_cast<std::size_t>(start * 2.0) % SWING.size()];
}

class Demo {
public:
    explicit Demo(const NotesStuff& notes) : song(notes, "Paper lanterns", 96) {
        song.Tell("Tonvex", "A walk along the water after dark.\r\nMade of notes, quick chords, arpeggios "
                            "and picking patterns.");
        keys = song.Add_Channel({"Electric piano", 0, 4, 74, 56, STYLE_PIANO});
        guitar = song.Add_Channel({"Nylon guitar", 1, 24, 78, 84, STYLE_GUITAR_CLEAN});
        bass = song.Add_Channel({"Bass", 2, 33, 92, 64, STYLE_BASS});
        drums = song.Add_Channel({"Drums", DRUM_SLOT, 0, 82, 64, STYLE_DRUMS});
        tune = song.Add_Channel({"Flute", 3, 73, 90, 60, STYLE_PIANO});
        strings = song.Add_Channel({"Strings", 4, 48, 60, 74, STYLE_PIANO});
        bells = song.Add_Channel({"Vibraphone", 5, 11, 66, 40, STYLE_PIANO});
    }

    Song_Snapshot Make() {
        Sound();
        song.Add_Mark(0.0, "Intro", BLUE);
        Play(TURN, [this](const Bar_Chord& chord) { Roll(chord); });
        song.Add_Mark(beat, "Verse", GREEN);
        const double verse = beat;
        Play(VERSE, [this](const Bar_Chord& chord) {
            Roll(chord);
            Walk(chord);
            Groove(false);
        });
        Sing(verse, VERSE_TUNE, 0, 86);
        song.Add_Mark(beat, "Verse 2", GREEN);
        const double second = beat;
        Play(VERSE, [this](const Bar_Chord& chord) {
            Roll(chord);
            Pick(chord);
            Walk(chord);
            Groove(true);
            Answer(chord);
        });
        Sing(second, VERSE_TUNE, 0, 92);
        song.Add_Mark(beat, "Chorus", ORANGE);
        const double chorus = beat;
        song.Add_Note(drums, beat, 0.5, CRASH, 96);
        Play(CHORUS, [this](const Bar_Chord& chord) {
            Hold(chord);
            Pick(chord);
            Walk(chord);
            Groove(true);
        });
        Sing(chorus, CHORUS_TUNE, 0, 98);
        song.Add_Mark(beat, "End", BLUE);
        song.Add_Tempo(beat + 4.0, 90);
        song.Add_Tempo(beat + 8.0, 80);
        song.Add_Tempo(beat + 12.0, 66);
        const double end = beat;
        Play(CLOSE, [this](const Bar_Chord& chord) {
            Roll(chord);
            Hold(chord);
        });
        song.Add_Note(tune, end, 4.0, 76, 80);
        song.Add_Note(tune, end + 4.0, 3.5, 77, 74);
        song.Add_Note(tune, end + 8.0, 3.5, 74, 70);
        song.Add_Note(tune, end + 12.0, 4.0, 69, 66);
        song.Add_Note(bass, end + 12.0, 4.0, 33, 84);
        const std::array<std::pair<double, int>, 4> swell = {
            {{chorus, 40}, {chorus + 16.0, 84}, {end, 76}, {end + 8.0, 60}}};
        song.Draw_Volume(4, 40, 24, swell);
        return song.Take();
    }

private:
    template <std::size_t Bars, typename Part>
    void Play(const std::array<Bar_Chord, Bars>& chords, const Part& part) {
        for (const Bar_Chord& chord : chords) {
            part(chord);
            beat += BAR;
        }
    }

    void Sound() {
        song.Set_Effect(0, Effect_Kind::Chorus, std::array{35.0F, 18.0F, 10.0F, 0.7F});
        song.Set_Effect(3, Effect_Kind::Reverb, std::array{0.0F, -10.0F, 2000.0F, 0.4F});
        song.Set_Effect(4, Effect_Kind::Reverb, std::array{0.0F, -9.0F, 2400.0F, 0.5F});
        song.Set_Effect(5, Effect_Kind::Echo, std::array{30.0F, 35.0F, 312.0F, 468.0F});
    }

    /// The chord of a bar as an arpeggio in eighths.
    void Roll(const Bar_Chord& bar) {
        QChordData chord = song.Chord(bar.root, bar.type, 4, BAR, 78);
        chord.StepMs = EIGHTHS;
        chord.ChordFlagB = 1;
        chord.PatternNoteCount = 4;
        chord.PatternNotes = {1, 3, 2, 3};
        song.Add_Chord(keys, beat, chord);
    }

    void Pick(const Bar_Chord& bar) {
        QChordData chord = song.Chord(bar.root, bar.type, 0, BAR, 84);
        chord.ArpeggioOn = FLAG_ON;
        chord.ArpeggioPattern = bar.type == MINOR ? TRAVIS_MINOR : TRAVIS_MAJOR;
        chord.ChordFlagB = 1;
        song.Add_Chord(guitar, beat, chord);
    }

    void Hold(const Bar_Chord& bar) {
        song.Add_Chord(strings, beat, song.Chord(bar.root, bar.type, 4, BAR - 0.25, 80));
    }

    void Walk(const Bar_Chord& bar) {
        const int low = bar.root > E ? 24 + bar.root : 36 + bar.root;
        song.Add_Note(bass, beat, 1.4, low, Touch(96, beat));
        song.Add_Note(bass, beat + 1.5, 0.4, low, Touch(80, beat + 1.5));
        song.Add_Note(bass, beat + 2.0, 1.4, low + 7, Touch(90, beat + 2.0));
        song.Add_Note(bass, beat + 3.5, 0.4, low + 12, Touch(82, beat + 3.5));
    }

    void Groove(bool full) {
        song.Add_Note(drums, beat, 0.25, BASS_DRUM, Touch(100, beat));
        song.Add_Note(drums, beat + 2.5, 0.25, BASS_DRUM, Touch(86, beat));
        for (double step = 0.0; step < BAR; step += 0.5)
            song.Add_Note(drums, beat + step, 0.2, full ? CLOSED_HAT : SHAKER, Touch(58, beat + step));
        if (!full)
            return;
        song.Add_Note(drums, beat + 1.0, 0.25, SNARE, Touch(92, beat));
        song.Add_Note(drums, beat + 3.0, 0.25, SNARE, Touch(94, beat));
        song.Add_Note(drums, beat + 3.5, 0.4, OPEN_HAT, 60);
    }

    /// Two bells behind the middle of the bar.
    void Answer(const Bar_Chord& bar) {
        const int third = bar.type == MINOR ? 3 : 4;
        song.Add_Note(bells, beat + 2.5, 0.5, 72 + (bar.root + third) % 12, 74);
        song.Add_Note(bells, beat + 3.0, 1.0, 72 + (bar.root + 7) % 12, 70);
    }

    template <std::size_t Notes>
    void Sing(double from, const Tune_Note (&notes)[Notes], int shift, int velocity) {
        for (const Tune_Note& note : notes)
            song.Add_Note(tune, from + note.start, note.length, note.note + shift,
                          Touch(velocity, note.start));
    }

    Song_Builder song;
    double beat = 0.0;
    int keys = 0;
    int guitar = 0;
    int bass = 0;
    int drums = 0;
    int tune = 0;
    int strings = 0;
    int bells = 0;
};

struct Template {
    const char* name;
    int tempo;
    const char* comments;
    std::vector<Builder_Channel> channels;
};

std::vector<Template> Templates() {
    return {{"Band",
             112,
             "Drums, bass, guitar, keys and a lead voice.",
             {{"Lead", 0, 80, 84, 64, STYLE_PIANO},
              {"Electric piano", 1, 4, 80, 48, STYLE_PIANO},
              {"Steel guitar", 2, 25, 82, 84, STYLE_GUITAR_CLEAN},
              {"Bass", 3, 33, 100, 64, STYLE_BASS},
              {"Drums", DRUM_SLOT, 0, 96, 64, STYLE_DRUMS}}},
            {"Chamber strings",
             72,
             "A quartet: two violins, viola and cello.",
             {{"First violin", 0, 40, 88, 40, STYLE_PIANO},
              {"Second violin", 1, 40, 80, 54, STYLE_PIANO},
              {"Viola", 2, 41, 82, 76, STYLE_PIANO},
              {"Cello", 3, 42, 90, 90, STYLE_PIANO}}},
            {"Club",
             124,
             "A drum machine's tempo, short basses, pads and a square lead.",
             {{"Square lead", 0, 80, 80, 64, STYLE_PIANO},
              {"Warm pad", 1, 89, 74, 64, STYLE_PIANO},
              {"Synth bass", 2, 38, 98, 64, STYLE_BASS},
              {"Drums", DRUM_SLOT, 0, 100, 64, STYLE_DRUMS}}},
            {"Piano and voice",
             84,
             "A piano and a flute that keeps the singer's place.",
             {{"Piano", 0, 0, 92, 64, STYLE_PIANO}, {"Voice", 1, 73, 88, 64, STYLE_PIANO}}},
            {"Two guitars",
             100,
             "A picked and a strummed guitar over a bass.",
             {{"Picked guitar", 0, 24, 88, 40, STYLE_GUITAR_CLEAN},
              {"Strummed guitar", 1, 25, 80, 88, STYLE_GUITAR_CLEAN},
              {"Bass", 2, 32, 96, 64, STYLE_BASS}}}};
}

} // namespace

std::vector<Stock_Song> Stock_Songs(const NotesStuff& notes) {
    std::vector<Stock_Song> songs;
    songs.push_back({"demo/Paper lanterns.tvx", Demo(notes).Make()});
    for (const Template& one : Templates()) {
        Song_Builder builder(notes, one.name, one.tempo);
        builder.Tell("", one.comments);
        for (const Builder_Channel& channel : one.channels)
            builder.Add_Channel(channel);
        songs.push_back(
            {std::filesystem::path("templates") / (std::string(one.name) + ".tvx"), builder.Take()});
    }
    return songs;
}

} // namespace tonvex
