// Songs of other people, from where their package puts them, against what another reader lists of them.

#include "support/midi_files.h"
#include "support/test_session.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>

namespace tonvex {
namespace {

namespace fs = std::filesystem;

const fs::path SONGS = "/usr/share/games/openttd/baseset/openmsx";

/// program -1: a drum.
struct Real_Note {
    int program;
    int number;
    int velocity;
    double start;
    double end;
    auto Key() const { return std::tie(program, number, velocity, start, end); }
};
using Real_Notes = std::vector<Real_Note>;

Real_Notes Sorted(Real_Notes notes) {
    std::sort(notes.begin(), notes.end(), [](const auto& a, const auto& b) { return a.Key() < b.Key(); });
    return notes;
}

struct Listed_Event {
    std::int64_t tick;
    int track;
    std::string kind;
    std::vector<int> values;
};

/// What midicsv tells of a file, in the order in which it happens; empty when there is no midicsv.
std::vector<Listed_Event> Listed(const fs::path& file, int& division) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
        popen(("midicsv '" + file.string() + "' 2>/dev/null").c_str(), "r"), pclose);
    std::vector<Listed_Event> events;
    std::array<char, 4096> line{};
    while (pipe && std::fgets(line.data(), line.size(), pipe.get()) != nullptr) {
        std::istringstream words(line.data());
        Listed_Event event{};
        char comma = 0;
        words >> event.track >> comma >> event.tick >> comma >> event.kind;
        for (int value = 0; words >> value; words >> comma)
            event.values.push_back(value);
        if (event.kind == "Header,")
            division = event.values.at(2);
        events.push_back(event);
    }
    std::stable_sort(events.begin(), events.end(),
                     [](const auto& a, const auto& b) { return a.tick < b.tick; });
    return events;
}

/// An off ends the oldest open note of its number, and what is never ended ends with its track.
Real_Notes Notes_Listed(const fs::path& file, int& division) {
    const std::vector<Listed_Event> events = Listed(file, division);
    struct Open {
        std::size_t note;
        int track;
    };
    std::map<std::pair<int, int>, std::vector<Open>> open;
    std::map<int, int> programs;
    Real_Notes notes;
    for (const Listed_Event& event : events) {
        const double beat = static_cast<double>(event.tick) / division;
        if (event.kind == "Program_c,") {
            programs[event.values.at(0)] = event.values.at(1);
        } else if (event.kind == "End_track") {
            for (auto& [key, list] : open)
                for (const Open& left : list)
                    if (left.track == event.track)
                        notes[left.note].end = beat;
        } else if (event.kind == "Note_on_c," || event.kind == "Note_off_c,") {
            const int channel = event.values.at(0);
            auto& list = open[{channel, event.values.at(1)}];
            if (event.kind == "Note_on_c," && event.values.at(2) > 0) {
                list.push_back({notes.size(), event.track});
                notes.push_back({channel == 9 ? -1 : programs[channel], event.values.at(1),
                                 event.values.at(2), beat, beat});
            } else if (!list.empty()) {
                notes[list.front().note].end = beat;
                list.erase(list.begin());
            }
        }
    }
    return Sorted(notes);
}

Real_Notes Notes_In(const Session& session) {
    Real_Notes notes;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!session.channels->Is_Live_Row(row))
            continue;
        const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
        const ChannelClass& store = session.channels->Store(row);
        for (auto i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
            const auto event = store.ReadEvent(i);
            if (event->Note != nullptr)
                notes.push_back({channel.OutputChannel == 9 ? -1 : channel.PatchI, event->Note->Note,
                                 event->Note->Vol, event->StartTime, event->StartTime + event->Note->Length});
        }
    }
    return Sorted(notes);
}

/// Beats by which the two differ at most; infinity when they are not the same notes.
double Difference(const Real_Notes& a, const Real_Notes& b) {
    if (a.size() != b.size())
        return std::numeric_limits<double>::infinity();
    double most = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::tie(a[i].program, a[i].number, a[i].velocity) !=
            std::tie(b[i].program, b[i].number, b[i].velocity))
            return std::numeric_limits<double>::infinity();
        most = std::max({most, std::abs(a[i].start - b[i].start), std::abs(a[i].end - b[i].end)});
    }
    return most;
}

class Begun_Notes final : public Output_Observer {
public:
    std::size_t count = 0;
    void On_Output(Sound_Op op, int, int, int) override { count += op == Sound_Op::NoteOn ? 1 : 0; }
};

TEST(Real_Midi_Files, Import_Play_And_Export_With_The_Notes_That_Another_Reader_Lists) {
    if (!fs::is_directory(SONGS) || std::system("command -v midicsv >/dev/null") != 0)
        GTEST_SKIP() << "needs the packages openttd-openmsx and midicsv";
    int songs = 0;
    for (const auto& entry : fs::directory_iterator(SONGS)) {
        if (entry.path().extension() != ".mid")
            continue;
        SCOPED_TRACE(entry.path().filename());
        ++songs;
        int division = 0;
        const Real_Notes listed = Notes_Listed(entry.path(), division);
        ASSERT_GT(listed.size(), 100U);
        Test_Session test;
        Session& session = test.Load();
        ASSERT_EQ(session.midiImport->ImportMidi(entry.path()), Work_Outcome::Done);
        EXPECT_LT(Difference(Notes_In(session), listed), 1e-9);

        Begun_Notes begun;
        session.output->Set_Observer(&begun);
        session.options.Global_UseThreadEngine = false;
        EXPECT_TRUE(session.player->Transport_Play(0.0, false, 50.0F)) << "plays to its end";
        session.output->Set_Observer(nullptr);
        const auto audible = std::count_if(listed.begin(), listed.end(),
                                           [](const Real_Note& note) { return note.end > note.start; });
        EXPECT_EQ(begun.count, static_cast<std::size_t>(audible));

        const fs::path exported = test.folder / "out.mid";
        ASSERT_EQ(session.midiExport->Export(exported, {}), Work_Outcome::Done);
        EXPECT_LE(Difference(Notes_Listed(exported, division), listed), 1.0 / 192.0);
        EXPECT_EQ(division, 192);
        ASSERT_EQ(session.midiImport->ImportMidi(exported), Work_Outcome::Done);
        EXPECT_LE(Difference(Notes_In(session), listed), 1.0 / 192.0);
    }
    EXPECT_GE(songs, 30);
}

} // namespace
} // namespace tonvex
