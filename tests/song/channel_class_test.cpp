#include "song/channel_class.h"

#include "support/store_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace tonvex {
namespace {

constexpr double NO = NOT_GIVEN_TIME;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double ENDLESS = std::numeric_limits<double>::infinity();

EventData Note(int note, double length = 1.0, int vol = 100) {
    return NoteData{static_cast<std::uint8_t>(note), static_cast<std::uint8_t>(vol), length};
}

EventData Chord(std::vector<std::uint8_t> notes, double length = 1.0, std::uint8_t vol = 100) {
    QChordData chord;
    chord.Active = static_cast<std::uint8_t>(notes.size());
    std::copy(notes.begin(), notes.end(), chord.ChordNotes.begin());
    chord.Length = length;
    chord.ChordVol = vol;
    return chord;
}

EventData Named(const std::string& name) {
    NamedEventData named;
    named.EventName = name;
    return named;
}

EventData Fragment(int root, double length = 4.0) {
    MCEventData fragment;
    fragment.Root = static_cast<std::uint8_t>(root);
    fragment.Length = length;
    return fragment;
}

EventData Clip(int samples) {
    AudioEventData clip;
    clip.SampleCount = samples;
    return clip;
}

class Channel_Class : public testing::Test {
protected:
    Store_Host host;
    ChannelClass store{host};

    std::vector<std::int32_t> Listed() const {
        std::vector<std::int32_t> ids;
        for (auto row = store.FirstEvent(); row != -1 && std::ssize(ids) <= 100000;
             row = store.Get_NextEventI(row))
            ids.push_back(store.GetEvent_ID(row));
        return ids;
    }
    /// Times in list order, as text for messages.
    std::string Times() const {
        std::string text;
        for (const auto id : Listed())
            text += std::to_string(std::lround(Event(id).StartTime * 100)) + " ";
        return text;
    }
    ChannelClass::Event_View Event(std::int32_t id) const {
        return store.ReadEvent(store.GetEvent_I(id)).value_or(ChannelClass::Event_View{});
    }
    double Length(std::int32_t id) const { return store.GetEvent_Length(store.GetEvent_I(id)); }
};

TEST_F(Channel_Class, Starts_Empty) {
    EXPECT_EQ(store.GetTotalEvents(), -1);
    EXPECT_EQ(store.First_Event_At(0.0), -1);
    for (const int row : {-1, 0, 50, 1000000}) {
        EXPECT_FALSE(store.ReadEvent(row) || store.ReadEvent_RecMode(row)) << row;
        EXPECT_FALSE(store.DeleteEvent(0, row == -1 ? 7 : row)) << row;
        EXPECT_EQ(store.Get_NextEventI(row), -1) << row;
        EXPECT_EQ(store.GetEvent_Length(row), 0.0) << row;
    }
    EXPECT_EQ(store.AddNewEvent(0.0, Note(60)), FIRST_ID);
    const std::int32_t freed = store.GetEvent_I(store.AddNewEvent(1.0, Note(61)));
    EXPECT_TRUE(store.DeleteEvent(FIRST_ID + 1));
    EXPECT_FALSE(store.DeleteEvent(FIRST_ID, freed)) << "a row that is free hides the ID";
}

TEST_F(Channel_Class, Equal_Times_Keep_The_Order_Of_Arrival_On_Every_Road) {
    struct Road {
        const char* name;
        void (*add)(ChannelClass&, double);
        void (*end)(ChannelClass&);
    };
    const Road roads[] = {
        {"sorted", [](ChannelClass& s, double t) { s.AddNewEvent(t, Note(60)); }, [](ChannelClass&) {}},
        {"appended", [](ChannelClass& s, double t) { s.AddNewEvent(t, Note(60), true); },
         [](ChannelClass& s) { s.ReSort_StartTime(); }},
        {"recorded", [](ChannelClass& s, double t) { s.AddNewEvent_RecMode(t, Note(60)); },
         [](ChannelClass& s) { s.CopyRecEvents(); }}};
    for (const Road& road : roads) {
        store.Clear();
        for (const double time : {4.0, 2.0, 4.0, 0.0, 2.0, 4.0, 0.0})
            road.add(store, time);
        road.end(store);
        std::vector<int> arrival;
        for (const auto id : Listed())
            arrival.push_back(id - FIRST_ID);
        EXPECT_EQ(arrival, (std::vector{3, 6, 1, 4, 0, 2, 5})) << road.name;
        EXPECT_EQ(store.GetEvent_ID(store.LastTimeEvent()), FIRST_ID + 5) << road.name;
    }
}

// Every operation that moves events, in any order, against a plain vector in order of arrival.
TEST_F(Channel_Class, Storms_Of_Operations_Match_A_Plain_Model) {
    struct Model_Event {
        std::int32_t id;
        double time;
        EventData data;
    };
    for (unsigned seed = 1; seed <= 6; ++seed) {
        store.Clear();
        std::vector<Model_Event> model;
        std::vector<Model_Event> take;
        std::mt19937 random(seed);
        const auto upTo = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        const auto anyTime = [&] { return upTo(40) * 0.5; };
        const auto anyData = [&](int n) -> EventData {
            // Clips and events of a fixed length, which hide the ends of the others, not in each storm.
            const std::array<EventData, 6> kinds = {Chord({60, 64, static_cast<std::uint8_t>(n % 128)}, n),
                                                    Fragment(n % 12, n),
                                                    Note(n % 128, n),
                                                    PatchData{n},
                                                    Named(std::to_string(n)),
                                                    Clip(n)};
            return kinds[static_cast<std::size_t>(upTo(seed % 2 == 0 ? 6 : 3))];
        };
        for (int step = 0; step < 2000; ++step) {
            const auto victim =
                model.empty() ? model.end() : model.begin() + upTo(static_cast<int>(model.size()));
            const int operation = upTo(100);
            bool sorted = true;
            if (operation < 45) {
                const EventData data = anyData(step);
                const double time = anyTime();
                sorted = operation < 40;
                model.push_back({store.AddNewEvent(time, data, !sorted), time, data});
            } else if (operation < 70 && victim != model.end()) {
                ASSERT_TRUE(
                    store.DeleteEvent(victim->id, operation % 2 == 0 ? store.GetEvent_I(victim->id) : -1));
                model.erase(victim);
            } else if (operation < 80 && victim != model.end()) {
                victim->time = anyTime();
                ASSERT_TRUE(store.Set_Event_StartTime(victim->id, victim->time));
                sorted = false;
            } else if (operation < 88) {
                const EventData data = anyData(step);
                const double time = anyTime();
                const auto recorded = store.ReadEvent_RecMode(store.AddNewEvent_RecMode(time, data));
                ASSERT_TRUE(recorded);
                take.push_back({recorded->EventID, time, data});
            } else if (operation < 90) {
                store.CopyRecEvents();
                model.insert(model.end(), take.begin(), take.end());
                take.clear();
            } else if (operation < 93) {
                store.Defrag_Data();
            } else if (operation < 95) {
                const int from = upTo(6);
                store.MC_DeleteBarEvents(from, 1);
                std::erase_if(model,
                              [from](const auto& e) { return e.time >= from * 4 && e.time < from * 4 + 4; });
                for (auto& e : model)
                    e.time -= e.time >= from * 4 ? 4.0 : 0.0;
            } else if (operation < 96) {
                const int from = upTo(6);
                store.MC_MoveBarEvents(from, 1);
                for (auto& e : model)
                    e.time += e.time >= from * 4 ? 4.0 : 0.0;
            } else if (operation < 99 && victim != model.end()) {
                store.Set_Event_Length(victim->id, step % 50 + 1);
                const auto lengthen = [&](auto& data) {
                    if constexpr (requires { data.Length; })
                        data.Length = step % 50 + 1;
                };
                std::visit(lengthen, victim->data);
            } else {
                for (const auto& e : model)
                    store.DeleteEvent(e.id);
                model.clear();
            }
            ASSERT_EQ(std::ssize(Listed()), std::ssize(model)) << "seed " << seed << " step " << step;
            double end = 0.0;
            for (const auto& e : model)
                end = std::max(end, e.time + Length(e.id));
            ASSERT_EQ(store.Get_ChannelLength_Beats(), end) << "seed " << seed << " step " << step;
            if (!sorted && upTo(4) != 0)
                continue; // the next operations meet a list that is not in order
            store.ReSort_StartTime();
            auto expected = model;
            std::stable_sort(expected.begin(), expected.end(),
                             [](auto& a, auto& b) { return a.time < b.time; });
            auto row = store.FirstEvent();
            for (const auto& e : expected) {
                const auto view = store.ReadEvent(row);
                ASSERT_TRUE(view && view->EventID == e.id && view->StartTime == e.time &&
                            view->Payload() == e.data)
                    << "seed " << seed << " step " << step << " id " << e.id;
                ASSERT_EQ(store.GetEvent_I(e.id), row);
                row = store.Get_NextEventI(row);
            }
            ASSERT_EQ(row, -1);
            ASSERT_EQ(store.GetEvent_ID(store.LastTimeEvent()), expected.empty() ? -1 : expected.back().id);
            const double time = anyTime();
            const auto first =
                std::find_if(expected.begin(), expected.end(), [&](auto& e) { return e.time >= time; });
            ASSERT_EQ(store.First_Event_At(time), first == expected.end() ? -1 : store.GetEvent_I(first->id));
        }
    }
}

// Without a re-sort in between the list of sorted adds and deletes is in order at each step.
TEST_F(Channel_Class, Adds_And_Deletes_Keep_The_List_In_Order) {
    std::mt19937 random(9);
    std::vector<std::int32_t> ids;
    for (int step = 0; step < 2000; ++step) {
        if (random() % 3 != 0 || ids.empty()) {
            ids.push_back(store.AddNewEvent(static_cast<double>(random() % 30), Note(60)));
        } else {
            const auto victim = ids.begin() + static_cast<std::ptrdiff_t>(random() % ids.size());
            store.DeleteEvent(*victim);
            ids.erase(victim);
        }
        auto expected = ids;
        std::stable_sort(expected.begin(), expected.end(),
                         [this](int a, int b) { return Event(a).StartTime < Event(b).StartTime; });
        ASSERT_EQ(Listed(), expected) << step;
    }
}

TEST_F(Channel_Class, A_List_That_Is_Not_In_Order_Is_Walked_As_It_Stands) {
    const std::int32_t late = store.AddNewEvent(5, Note(60), true);
    const std::int32_t early = store.AddNewEvent(1, Note(60), true);
    store.AddNewEvent(3, Note(60));
    EXPECT_EQ(Times(), "300 500 100 ") << "before the first later event";
    store.DeleteEvent(late);
    EXPECT_EQ(store.First_Event_At(4), -1);
    store.ReSort_StartTime();
    EXPECT_EQ(store.First_Event_At(1), store.GetEvent_I(early));
    store.Set_Event_StartTime(early, 9);
    EXPECT_EQ(Times(), "900 300 ") << "not re-linked by the setter";
    EXPECT_EQ(store.First_Event_At(4), store.GetEvent_I(early));
}

TEST_F(Channel_Class, Start_Times_Stay_Within_The_Song) {
    struct Case {
        const char* name;
        double newTime, delta, expected;
        bool stays;
    };
    const Case cases[] = {{"absolute", 3.0, NO, 3.0, true},
                          {"to zero", 0.0, NO, 0.0, true},
                          {"later", 99.0, 2.5, 12.5, true},
                          {"earlier to zero", 99.0, -10.0, 0.0, true},
                          {"neither given", NO, NO, 10.0, true},
                          {"beyond the end", 268435456.0, NO, MAX_EVENT_BEATS, true},
                          {"endless", ENDLESS, NO, MAX_EVENT_BEATS, true},
                          {"before the start", -0.001, NO, 0, false},
                          {"pushed before the start", 99.0, -10.001, 0, false},
                          {"endless before", -ENDLESS, NO, 0, false}};
    for (const Case& c : cases)
        for (const bool hubDeletes : {true, false}) {
            store.Clear();
            host.fallen.clear();
            host.onFall = [&](std::int32_t id) {
                if (hubDeletes) {
                    EXPECT_TRUE(store.DeleteEvent(id)) << c.name;
                    store.ReSort_StartTime();
                }
            };
            const std::int32_t other = store.AddNewEvent(5, Note(60));
            const std::int32_t id = store.AddNewEvent(10, Note(61));
            EXPECT_EQ(store.Set_Event_StartTime(id, c.newTime, c.delta), c.stays) << c.name;
            EXPECT_EQ(store.GetEvent_I(id) != -1, c.stays) << c.name;
            EXPECT_EQ(host.fallen.size(), c.stays ? 0U : 1U) << c.name;
            if (c.stays) {
                EXPECT_EQ(Event(id).StartTime, c.expected) << c.name;
            }
            EXPECT_EQ(Event(other).StartTime, 5.0) << c.name;
            EXPECT_EQ(store.GetTotalEvents(), c.stays ? 1 : 0) << c.name;
        }
    store.Clear();
    const std::int32_t id = store.AddNewEvent(1, Note(60));
    EXPECT_FALSE(store.Set_Event_StartTime(id, NOT_A_NUMBER));
    EXPECT_EQ(Event(id).StartTime, 1.0);
    for (const double time : {NOT_A_NUMBER, -5.0, ENDLESS, 268435455.0, 2.0})
        store.AddNewEvent(time, Note(60, NOT_A_NUMBER));
    EXPECT_EQ(Times(), "0 0 100 200 26843545400 26843545400 ");
    EXPECT_TRUE(std::isfinite(store.Get_ChannelLength_Beats()));
}

TEST_F(Channel_Class, Lengths_Volumes_And_Notes_Keep_Their_Limits) {
    struct Case {
        const char* name;
        EventData data;
        char what; ///< l, v, n
        double value, delta;
        double expected; ///< -1: the event goes
    };
    const Case cases[] = {{"note length", Note(60), 'l', 2.5, NO, 2.5},
                          {"length 0", Note(60), 'l', 0, NO, 0.05},
                          {"chord length less 9", Chord({60}), 'l', 0, -9, 0.05},
                          {"fragment length more 2", Fragment(0), 'l', 0, 2, 6},
                          {"length not a number", Note(60), 'l', NOT_A_NUMBER, NO, 1},
                          {"length of a patch", PatchData{3}, 'l', 2, NO, 500},
                          {"length of a clip", Clip(44100), 'l', 9, NO, 2},
                          {"length not given", Note(60), 'l', NO, NO, 1},
                          {"volume", Note(60), 'v', 64, NO, 64},
                          {"volume plus 200", Note(60), 'v', 0, 200, 127},
                          {"volume less 200", Chord({60}), 'v', 0, -200, 0},
                          {"volume by the widest step", Note(60), 'v', 0, 2147483647.0, 127},
                          {"note", Note(60), 'n', 127, NO, 127},
                          {"note down to 0", Note(60), 'n', 0, -60, 0},
                          {"note below 0", Note(60), 'n', 0, -61, -1},
                          {"note above 127", Note(60), 'n', 128, NO, -1},
                          {"note by the widest step", Note(60), 'n', 0, -2147483647.0, -1},
                          {"chord to its first note", Chord({60, 64, 67}), 'n', 62, NO, 62},
                          {"chord whose top leaves", Chord({60, 64, 67}), 'n', 0, 61, -1},
                          {"chord up to the top", Chord({60, 64, 67}), 'n', 0, 60, 120},
                          {"fragment down", Fragment(1), 'n', 0, -3, 58},
                          {"fragment absolute", Fragment(1), 'n', 50, NO, 50},
                          {"note of a patch", PatchData{3}, 'n', 5, NO, 120}};
    for (const Case& c : cases) {
        const std::int32_t id = store.AddNewEvent(0, c.data);
        const auto value =
            c.value == NO || std::isnan(c.value) ? NOT_GIVEN : static_cast<std::int32_t>(c.value);
        const auto delta = c.delta == NO ? NOT_GIVEN : static_cast<std::int32_t>(c.delta);
        if (c.what == 'l')
            store.Set_Event_Length(id, c.value, c.delta);
        else if (c.what == 'v')
            store.Set_Event_Volume(id, value, delta);
        else
            store.Set_Event_Note(id, value, delta);
        const auto event = store.ReadEvent(store.GetEvent_I(id));
        ASSERT_EQ(event.has_value(), c.expected != -1) << c.name;
        if (!event)
            continue;
        const double got = c.what == 'l'   ? Length(id)
                           : c.what == 'n' ? store.Get_Event_BaseNote(event->EventI)
                           : event->Note   ? event->Note->Vol
                                           : event->QChord->ChordVol;
        EXPECT_EQ(got, c.expected) << c.name;
    }
    EXPECT_EQ(host.fallen.size(), 4U);
}

TEST_F(Channel_Class, Moving_A_Chord_Shifts_Used_Notes_Root_And_Name_Only) {
    QChordData chord = std::get<QChordData>(Chord({60, 64, 67}));
    chord.ChordName = "B7";
    chord.ChordFlagA = 11;
    chord.PatternNoteCount = 2;
    chord.PatternNotes = {6, 5};
    const std::int32_t id = store.AddNewEvent(0, chord);
    store.Set_Event_Note(id, 0, 3);
    chord.ChordNotes = {63, 67, 70, 0, 0, 0};
    chord.ChordFlagA = 2;
    chord.ChordName = "B73"; // the host's part
    EXPECT_EQ(*Event(id).QChord, chord);
}

TEST_F(Channel_Class, Properties_Replace_All_But_Length_And_Kind) {
    struct Case {
        const char* name;
        EventData before, given, after;
    };
    const Case cases[] = {{"note", Note(60, 2.0), Note(61, 9.0, 5), Note(61, 2.0, 5)},
                          {"chord", Chord({60}, 2.0), Chord({61, 62}, 9.0), Chord({61, 62}, 2.0)},
                          {"fragment", Fragment(1, 2.0), Fragment(5, 9.0), Fragment(5, 2.0)},
                          {"clip", Clip(10), Clip(20), Clip(20)},
                          {"name", Named("a"), Named("b"), Named("b")},
                          {"patch", PatchData{1}, PatchData{7}, PatchData{7}},
                          {"another kind", Note(60), Clip(20), Note(60)},
                          {"patch on a note", Note(60), PatchData{7}, Note(60)},
                          {"note on a patch", PatchData{1}, Note(60), PatchData{1}}};
    for (const Case& c : cases) {
        const std::int32_t id = store.AddNewEvent(0, c.before);
        store.Set_Event_Properties(id, c.given);
        EXPECT_EQ(Event(id).Payload(), c.after) << c.name;
    }
}

TEST_F(Channel_Class, Length_Of_The_Channel_Follows_Speed_And_Tempo) {
    const std::int32_t note = store.AddNewEvent(3, Note(60, 4));
    store.Project_ChangeSpeed(2.0F);
    EXPECT_EQ(store.Get_ChannelLength_Beats(), 14.0);
    for (const float factor : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()})
        store.Project_ChangeSpeed(factor);
    EXPECT_EQ(Event(note).StartTime, 6.0);
    store.AddNewEvent(20, Clip(22050));
    EXPECT_EQ(store.Get_ChannelLength_Beats(), 21.0);
    host.samplesPerBeat = 11025; // the tempo has changed
    EXPECT_EQ(store.Get_ChannelLength_Beats(), 22.0);
}

TEST_F(Channel_Class, Bars_Move_And_Go) {
    struct Case {
        const char* name;
        void (*run)(ChannelClass&);
        const char* times; ///< hundredths of beats
    };
    const Case cases[] = {
        // events at 0, 3.99, 4, 7.99, 8, 12
        {"insert a bar at 1", [](auto& s) { s.MC_MoveBarEvents(1, 1); }, "0 399 800 1199 1200 1600 "},
        {"pull back from 2", [](auto& s) { s.MC_MoveBarEvents(2, -1); }, "0 399 400 400 799 800 "},
        {"pull out of the song", [](auto& s) { s.MC_MoveBarEvents(1, -2); }, "0 0 399 400 "},
        {"cut bar 1", [](auto& s) { s.MC_DeleteBarEvents(1, 1); }, "0 399 400 800 "},
        {"cut bars 0 and 1", [](auto& s) { s.MC_DeleteBarEvents(0, 2); }, "0 400 "},
        {"cut from before the start", [](auto& s) { s.MC_DeleteBarEvents(-1, 2); }, "0 399 400 800 "},
        {"cut nothing", [](auto& s) { s.MC_DeleteBarEvents(1, 0); }, "0 399 400 799 800 1200 "},
        {"cut less than nothing", [](auto& s) { s.MC_DeleteBarEvents(3, -2); }, "0 399 400 799 800 1200 "}};
    for (const Case& c : cases) {
        store.Clear();
        for (const double time : {8.0, 4.0, 0.0, 7.99, 12.0, 3.99})
            store.AddNewEvent(time, Note(60));
        c.run(store);
        EXPECT_EQ(Times(), c.times) << c.name;
    }
}

TEST_F(Channel_Class, Mods_Are_Logged_Only_While_The_Transport_Runs) {
    const auto edit = [this] {
        const std::int32_t id = store.AddNewEvent(1, Note(60));
        const std::int32_t chord = store.AddNewEvent(1, Chord({60}));
        store.Set_Event_StartTime(id, 2.0);
        store.Set_Event_Length(id, 2.0);
        store.Set_Event_Note(id, 61);
        store.Set_Event_Properties(id, Note(5));
        store.Set_Event_ChordType(chord, 4);
        store.Set_Event_ChordType(id, 4);
        store.Set_Event_Volume(id, 4);
        store.DeleteEvent(id);
        store.Add_Special_Mod(77);
        return id;
    };
    edit();
    EXPECT_FALSE(store.Mods_Pending());
    EXPECT_TRUE(store.Get_Mods().empty());
    host.live = true;
    const std::int32_t id = edit();
    EXPECT_TRUE(store.Mods_Pending());
    const std::vector<ChannelClass::Mod> expected = {{id, 4}, {id + 1, 4}, {id, 3}, {id, 2}, {id, 5},
                                                     {id, 6}, {id + 1, 6}, {id, 7}, {id, 1}, {0, 77}};
    EXPECT_EQ(store.Get_Mods(), expected);
    store.Clear_Mods();
    EXPECT_FALSE(store.Mods_Pending());
    EXPECT_TRUE(store.Get_Mods().empty());
}

TEST_F(Channel_Class, Spent_IDs_Give_Way_To_The_Lowest_Free_Numbers) {
    store.Raise_NextID(2147483646);
    store.Raise_NextID(5); // never back
    EXPECT_EQ(store.AddNewEvent(0, Note(60)), 2147483646);
    EXPECT_EQ(store.AddNewEvent(0, Note(61)), 0);
    EXPECT_EQ(store.ReadEvent_RecMode(store.AddNewEvent_RecMode(0, Note(62)))->EventID, 1);
    EXPECT_EQ(store.AddNewEvent(0, Note(63)), 2);
    store.DeleteEvent(0);
    EXPECT_EQ(store.AddNewEvent(0, Note(64)), 0);
    EXPECT_EQ(store.AddNewEvent(0, Note(65)), 3);
    store.CopyRecEvents();
    EXPECT_EQ(Listed(), (std::vector{2147483646, 2, 0, 3, 1}));
    EXPECT_EQ(Event(0).Payload(), Note(64));
}

} // namespace
} // namespace tonvex
