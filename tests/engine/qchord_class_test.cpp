#include "engine/qchord_class.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>

namespace tonvex {
namespace {

constexpr std::int16_t HALF = -1001;
constexpr std::int16_t EIGHTH = -1003;

/// 120 beats a minute up to beat 100, 60 from there on. Pattern 7 is written for A major, 2 beats long.
struct Chord_Bed {
    Temp_Folder folder;
    NotesStuff notes;
    TempoChangeClass tempoChanges;
    Project_State project;
    Fingerpick_Patterns patterns{{folder.Path()}, notes};
    QChord_Parts parts{tempoChanges, project, patterns};

    Chord_Bed() {
        project.ProjectTempo = 120;
        tempoChanges.AddTempoChange(100.0, 60);
        std::ofstream(folder.Path() / "7.txt")
            << "Name=Test\nBaseChord = A\nchordtype= Major \nlength = 2\n[PICK pattern]\n"
               "0 = x0xxx0\n0.5=xx2\n1 = x5xxxx\n1.5 = mmxx2xx9\n";
    }
};

struct Row {
    double time;
    int note;
    bool on;
};

std::string Text(const std::vector<Row>& rows) {
    std::ostringstream text;
    for (const Row& row : rows)
        text << std::round(row.time * 1e6) / 1e6 << (row.on ? '+' : '-') << row.note << ' ';
    return text.str();
}

std::string Rendered(QChordClass chord) {
    Render_MidiEventColClass list;
    std::int32_t count = 0;
    chord.Render_GetEvents(list, 3, 99, true, QChordClass::STOP, count);
    std::vector<Row> rows;
    for (std::int32_t i = 0; i < count; ++i) {
        std::int16_t channel = 0;
        double time = 0.0;
        std::uint16_t note = 0;
        std::uint16_t velocity = 0;
        EXPECT_TRUE(list.GetEvent(i, channel, time, note, velocity));
        EXPECT_EQ(channel, 3);
        EXPECT_TRUE(velocity == 0 || velocity == 99);
        rows.push_back({time, note, velocity > 0});
    }
    return Text(rows);
}

/// Asked in rounds as late as lag makes them, until the key is let go.
template <typename Lag>
std::string Live(QChordClass chord, double start, double length, Lag lag) {
    std::vector<Row> rows;
    QChord_Messages messages;
    const auto take = [&](double time) {
        chord.GetMsg_On_Time(time, messages);
        for (std::size_t i = 0; i < messages.Rows(); ++i)
            rows.push_back({time < 0.0 ? start + length : messages.Time, messages.Notes[i],
                            messages.Actions[i] == QChord_Messages::NOTE_ON});
        return messages.LastIndex >= 0;
    };
    for (double time = start; QChordClass::Step_Sounds(time, start + length); time += lag())
        while (take(time)) {
        }
    while (QChordClass::Step_Sounds(chord.Next_Step_Time(), start + length))
        (void)take(chord.Next_Step_Time());
    (void)take(QChordClass::STOP);
    return Text(rows);
}

QChordData Custom(std::vector<int> notes, std::int16_t step, std::vector<int> order, double length,
                  bool repeat = false) {
    QChordData data;
    data.Active = static_cast<std::uint8_t>(notes.size());
    std::copy(notes.begin(), notes.end(), data.ChordNotes.begin());
    data.StepMs = step;
    data.PatternNoteCount = static_cast<std::uint8_t>(order.size());
    std::copy(order.begin(), order.end(), data.PatternNotes.begin());
    data.Length = length;
    data.ChordFlagB = repeat ? 1 : 0;
    data.ChordVol = 100;
    return data;
}

template <typename Change>
QChordData With(QChordData data, Change change) {
    change(data);
    return data;
}

const auto guitar = [](QChordData& data) { data.VariableOctave = FLAG_ON; };
const auto major = [](QChordData& data) { data.ChordTypeIndex = 0; };
/// On D, five semitones above the pattern's A.
const auto picked = [](QChordData& data) {
    data.ArpeggioOn = FLAG_ON;
    data.ArpeggioPattern = 7;
    data.ChordTypeIndex = 0;
    data.ChordFlagA = 2;
};

TEST(QChord, Live_And_Rendered_Forms_Sound_The_Same_Notes_At_The_Same_Beats) {
    struct Case {
        const char* name;
        QChordData data;
        const char* rows;
        double start = 8.0;
    };
    const std::vector<int> triad = {60, 64, 67};
    const Case cases[] = {
        {"strike", Custom(triad, -1, {}, 1.0), "8+60 8+64 8+67 9-60 9-64 9-67 "},
        {"one pass, the last note rings", Custom(triad, HALF, {1, 2, 3}, 4.0),
         "8+60 8.5-60 8.5+64 9-64 9+67 12-67 "},
        {"eighths of a beat", Custom(triad, EIGHTH, {1, 2}, 1.0), "8+60 8.125-60 8.125+64 9-64 "},
        {"125 ms", Custom(triad, 125, {1, 2}, 1.0), "8+60 8.25-60 8.25+64 9-64 "},
        {"125 ms, the tempo of the start holds", Custom(triad, 125, {1, 2}, 2.0, true),
         "99.5+60 99.75-60 99.75+64 100-64 100+60 100.25-60 100.25+64 100.5-64 100.5+60 100.75-60 "
         "100.75+64 101-64 101+60 101.25-60 101.25+64 101.5-64 ",
         99.5},
        {"125 ms at another tempo", Custom(triad, 125, {1, 2}, 1.0), "100+60 100.125-60 100.125+64 101-64 ",
         100.0},
        {"a cut last pass", Custom(triad, HALF, {1, 2, 3}, 2.25, true),
         "8+60 8.5-60 8.5+64 9-64 9+67 9.5-67 9.5+60 10-60 10+64 10.25-64 "},
        {"no step at the very end", Custom(triad, HALF, {1, 2}, 1.0, true), "8+60 8.5-60 8.5+64 9-64 "},
        {"shorter than a step", Custom(triad, HALF, {1, 2}, 0.3), "8+60 8.3-60 "},
        {"zeros and places beyond the count", Custom(triad, HALF, {1, 0, 5, 3}, 2.0),
         "8+60 8.5-60 8.5+67 10-67 "},
        {"a count beyond the table",
         With(Custom(triad, HALF, {1}, 6.0), [](QChordData& data) { data.PatternNoteCount = 200; }),
         "8+60 14-60 "},
        {"an order of nothing", Custom(triad, HALF, {0, 4}, 2.0, true), ""},
        {"no order", Custom(triad, 100, {}, 1.0), "8+60 8+64 8+67 9-60 9-64 9-67 "},
        {"no time between the notes", Custom(triad, 0, {3, 1}, 1.0, true), "8+67 8+60 9-60 9-67 "},
        {"guitar strings ring on", With(Custom(triad, HALF, {1, 2, 1}, 2.0), guitar),
         "8+60 8.5+64 9-60 9+60 10-60 10-64 "},
        {"one note twice", Custom({60, 60, 64}, -1, {}, 1.0), "8+60 8+64 9-60 9-64 "},
        {"a note that is none", Custom({130, 60}, -1, {}, 1.0), "8+60 9-60 "},
        {"more notes than there are",
         With(Custom(triad, -1, {}, 1.0),
              [](QChordData& data) {
                  data.Active = 9;
                  data.ChordNotes = {60, 61, 62, 63, 64, 65};
              }),
         "8+60 8+61 8+62 8+63 8+64 8+65 9-60 9-61 9-62 9-63 9-64 9-65 "},
        {"no length", Custom(triad, -1, {}, 0.0), ""},
        {"picked once: strings ring, stop and are struck anew", With(Custom(triad, -1, {}, 3.0), picked),
         "8+50 8+69 8.5+57 9-50 9+55 9.5-55 9.5+66 11-57 11-66 11-69 "},
        {"picked on into a cut pass", With(Custom(triad, -1, {}, 2.25, true), picked),
         "8+50 8+69 8.5+57 9-50 9+55 9.5-55 9.5+66 10-69 10+50 10+69 10.25-50 10.25-57 10.25-66 10.25-69 "},
        {"a pattern for another type",
         With(With(Custom(triad, -1, {}, 1.0), picked), [](QChordData& data) { data.ChordTypeIndex = 1; }),
         ""},
        {"a pattern that is not there",
         With(With(Custom(triad, -1, {}, 1.0), picked), [](QChordData& data) { data.ArpeggioPattern = 8; }),
         ""},
        {"a low custom chord", Custom({5, 9}, -1, {}, 1.0), "8+5 8+9 9-5 9-9 "},
        {"a stored chord of intervals", With(Custom({0, 4, 7}, -1, {}, 1.0), major),
         "8+48 8+52 8+55 9-48 9-52 9-55 "},
        {"a stored chord of notes", With(Custom({12, 16, 19}, -1, {}, 1.0), major),
         "8+12 8+16 8+19 9-12 9-16 9-19 "},
    };
    Chord_Bed bed;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        QChordClass chord(bed.parts);
        chord.Set_Stored_Chord(one.data, one.start);
        EXPECT_EQ(Rendered(chord), one.rows);
        EXPECT_EQ(Live(chord, one.start, one.data.Length, [] { return 0.7; }), one.rows);
    }
}

/// Whatever a key row holds: what the performer hears is what its stored copy renders.
TEST(QChord, A_Stored_Copy_Plays_What_Was_Played) {
    Chord_Bed bed;
    std::mt19937 random(20260311);
    const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    int sounding = 0;
    for (int round = 0; round < 3000; ++round) {
        QChordData data = Custom({}, -1, {}, 0.0, below(2) == 0);
        data.Active = static_cast<std::uint8_t>(below(9));
        for (auto& note : data.ChordNotes)
            note = static_cast<std::uint8_t>(below(below(4) == 0 ? 256 : 90));
        data.ChordTypeIndex = static_cast<std::uint8_t>(below(3) == 0 ? 255 : below(3));
        data.Octave = static_cast<std::uint8_t>(below(2) == 0 ? 0 : below(7));
        data.VariableOctave = below(3) == 0 ? FLAG_ON : FLAG_OFF;
        data.ArpeggioOn = below(5) == 0 ? FLAG_ON : FLAG_OFF;
        data.ArpeggioPattern = 7;
        data.ChordFlagA = static_cast<std::uint8_t>(below(256));
        data.PatternNoteCount = static_cast<std::uint8_t>(below(14));
        for (auto& place : data.PatternNotes)
            place = static_cast<std::uint8_t>(below(8));
        data.StepMs = static_cast<std::int16_t>(below(3) == 0   ? -1
                                                : below(2) == 0 ? below(400)
                                                                : -1000 - below(6));
        const double start = 97.0 + below(4000) / 1000.0;
        const double length = below(8000) / 1000.0;
        QChordClass live(bed.parts);
        live.SetQchordData(data, below(6), start);
        QChordClass stored(bed.parts);
        stored.Set_Stored_Chord(live.Stored_Copy(length), start);
        const std::string heard = Live(live, start, length, [&] { return (1 + below(900)) / 1000.0; });
        ASSERT_EQ(Rendered(stored), heard) << "round " << round;
        sounding += heard.empty() ? 0 : 1;
    }
    EXPECT_GT(sounding, 2000);
}

TEST(QChord, A_Chord_Without_An_Octave_Takes_The_One_In_Force) {
    Chord_Bed bed;
    QChordClass chord(bed.parts);
    const QChordData relative = With(Custom({9, 13, 16}, -1, {}, 0.0), major);
    chord.SetQchordData(relative, 0, 0.0);
    EXPECT_EQ(chord.Shown_Notes(), (std::vector<int>{21, 25, 28}));
    chord.SetQchordData(relative, 5, 0.0);
    const QChordData stored = chord.Stored_Copy(1.5);
    EXPECT_EQ(stored.ChordNotes, (std::array<std::uint8_t, 6>{81, 85, 88}));
    EXPECT_EQ(stored.Octave, 5);
    EXPECT_EQ(stored.Length, 1.5);
    // Three semitones down: intervals wrap round. Stored in the lowest octave they stay where they sounded.
    const QChordData below = With(Custom({253, 1, 4}, -1, {}, 0.0), major);
    chord.SetQchordData(below, 3, 0.0);
    EXPECT_EQ(chord.Shown_Notes(), (std::vector<int>{45, 49, 52}));
    chord.SetQchordData(below, 0, 0.0);
    const QChordData lowest = chord.Stored_Copy(1.0);
    chord.Set_Stored_Chord(lowest, 0.0);
    EXPECT_EQ(chord.Shown_Notes(), (std::vector<int>{9, 13, 16}));
    const QChordData own = With(Custom({57, 61, 64}, -1, {}, 0.0), [](QChordData& data) {
        data.ChordTypeIndex = 0;
        data.Octave = 3;
    });
    chord.SetQchordData(own, 5, 0.0);
    EXPECT_EQ(chord.Stored_Copy(1.0).ChordNotes, own.ChordNotes);
    EXPECT_EQ(chord.Octave_In_Force(), 3);
}

TEST(QChord, Steps_Without_End_Are_Cut) {
    Chord_Bed bed;
    QChordClass chord(bed.parts);
    chord.Set_Stored_Chord(Custom({60, 64}, 1, {1, 2}, 1.0e9, true), 0.0);
    Render_MidiEventColClass list;
    std::int32_t count = 0;
    chord.Render_GetEvents(list, 0, 100, true, QChordClass::STOP, count);
    EXPECT_EQ(count, 2 * QChordClass::MAX_STEPS);
}

TEST(FingerpickPattern, Any_Text_Is_Safe) {
    const NotesStuff notes;
    const auto parse = [&notes](const char* text) { return Parse_Fingerpick_Pattern(text, notes); };
    const auto full = parse("name =  Roll \r\nnonsense\nlength = 1 = 2\nbasechord = Eb\nchordtype = MINOR\n"
                            "length=1.5\n [Pick Pattern] \n1 = m0\n1.5 = 000000\n-1 = 000000\nx = 0\n"
                            "0 = 12345678\n0.5\n");
    EXPECT_EQ(full.Name, "Roll");
    EXPECT_EQ(full.BaseChord, 3);
    EXPECT_EQ(full.ChordType, 1);
    EXPECT_EQ(full.PickLength, 1.5);
    const std::vector<PickRow> rows = {{0.0, {1, 2, 3, 4, 5, 6}}, {1.0, {-2, 0, -1, -1, -1, -1}}};
    EXPECT_EQ(full.PickRows, rows);
    for (const char* length : {"", "0", "-4", "nan", "1e99", "inf", "four"})
        EXPECT_EQ(parse((std::string("length = ") + length).c_str()).PickLength, 4.0) << length;
    EXPECT_TRUE(parse("0 = 0\n").PickRows.empty()) << "rows stand behind the head";
}

TEST(FingerpickPattern, Those_That_Ship_Come_In_Pairs_And_Play_Chord_Tones) {
    const NotesStuff notes;
    Fingerpick_Patterns patterns({TONVEX_SOURCE_DATA "/patterns/fingerpick"}, notes);
    for (int number = 1; number <= 16; number += 2) {
        const auto ofMajor = patterns.Pattern(number);
        const auto ofMinor = patterns.Pattern(number + 1);
        ASSERT_TRUE(ofMajor != nullptr && ofMinor != nullptr) << number;
        EXPECT_EQ(ofMajor->Name, ofMinor->Name);
        EXPECT_FALSE(ofMajor->Name.empty());
        for (const auto& [pattern, type] : {std::pair{ofMajor, 0}, std::pair{ofMinor, 1}}) {
            EXPECT_EQ(pattern->ChordType, type) << number;
            EXPECT_GE(pattern->PickRows.size(), 5U) << number;
            const int third = type == 0 ? 4 : 3;
            for (const PickRow& row : pattern->PickRows)
                for (std::size_t string = 0; string < 6; ++string) {
                    const int tone =
                        Wrap12(notes.OpenNotes[6 - string] + row.Strings[string] - pattern->BaseChord);
                    EXPECT_TRUE(row.Strings[string] < 0 || tone == 0 || tone == third || tone == 7)
                        << pattern->Name << " at " << row.Time << " string " << 6 - string;
                }
        }
    }
}

TEST(FingerpickPattern, A_Changed_File_Is_Read_Again) {
    Chord_Bed bed;
    const auto file = bed.folder.Path() / "7.txt";
    EXPECT_EQ(bed.patterns.Pattern(7)->Name, "Test");
    std::ofstream(file) << "name = Other\n";
    std::filesystem::last_write_time(file,
                                     std::filesystem::file_time_type::clock::now() + std::chrono::seconds(5));
    EXPECT_EQ(bed.patterns.Pattern(7)->Name, "Other");
    std::filesystem::remove(file);
    EXPECT_EQ(bed.patterns.Pattern(7), nullptr);
}

} // namespace
} // namespace tonvex
