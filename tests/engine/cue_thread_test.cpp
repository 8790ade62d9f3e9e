// The player library on its own thread, in real time: these tests take some.

#include "app/session.h"
#include "engine/cue_engine.h"
#include "platform/due_queue.h"
#include "platform/live_sound_door.h"
#include "support/click_font.h"
#include "support/onsets.h"
#include "support/recorder_doors.h"
#include "support/test_session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

namespace tonvex {
namespace {

using namespace std::chrono_literals;

/// Seconds that a test goes on; a long form is run by hand.
int Seconds(const char* variable, int usual) {
    const char* const given = std::getenv(variable);
    return given == nullptr ? usual : std::max(1, std::atoi(given));
}

/// Takes the messages as the audio thread does, and keeps which notes sound.
class Consuming_Output final : public Cue_Output {
public:
    Consuming_Output() : audio([this] { Consume(); }) {}
    ~Consuming_Output() override {
        stop = true;
        audio.join();
    }
    Consuming_Output(const Consuming_Output&) = delete;
    Consuming_Output& operator=(const Consuming_Output&) = delete;

    void Use(bool) noexcept override {}
    bool Send(const Sound_Message& message) noexcept override { return queue.Push(message); }
    bool Take_Back(std::int64_t fromNs) noexcept override { return queue.Push_Take_Back(fromNs); }
    void Sounded(const Sound_Message&) noexcept override {}

    std::atomic<std::uint64_t> ons{0};
    std::atomic<int> sounding{0}; ///< notes that are on

private:
    void Consume() {
        while (!stop) {
            const std::int64_t now = counter.Now_Ns();
            queue.Collect();
            for (; queue.Next() != nullptr && queue.Next()->dueNs < now; queue.Pop()) {
                const Sound_Message& message = *queue.Next();
                const bool isOn = message.op == Sound_Op::NoteOn;
                bool& sounds = on[message.slot][message.a];
                sounding += static_cast<int>(isOn) - static_cast<int>(sounds);
                sounds = isOn;
                ons += isOn ? 1 : 0;
            }
            std::this_thread::sleep_for(2ms);
        }
    }

    Monotonic_Counter counter;
    Due_Queue queue{8192};
    std::array<std::array<bool, 128>, OUTPUT_SLOTS> on{};
    std::atomic<bool> stop{false};
    std::thread audio;
};

std::vector<CueRow> Random_List(std::mt19937& random, int channelRow) {
    std::vector<CueRow> rows{{0.0, 0, CueRow::LIST_MARKER, static_cast<std::uint16_t>(channelRow), 0}};
    for (int i = 0; i < 300; ++i) {
        const double start = static_cast<double>(random() % 10000) / 500.0;
        const double length = static_cast<double>(1 + random() % 400) / 500.0;
        const auto slot = static_cast<std::int16_t>(channelRow % 3); // lists share slots
        const auto note = static_cast<std::uint16_t>(60 + random() % 12);
        rows.push_back({start, slot, note, static_cast<std::uint16_t>(1 + random() % 127), 0});
        rows.push_back({start + length, slot, note, 0, 0});
    }
    return rows;
}

TEST(Cue_Thread, A_Storm_Of_Changes_Leaves_No_Note_Hanging) {
    constexpr int LISTS = 6;
    Monotonic_Counter counter;
    Consuming_Output output;
    CueEngine engine(counter, output, Cue_Drive::Threaded);
    ASSERT_TRUE(engine.InitDLL());
    EXPECT_TRUE(engine.Player_IsPaused());
    std::mt19937 random(7);
    engine.Init_SetOutput(true, 11'000'000);
    ASSERT_TRUE(engine.Init_Buffers(LISTS - 1, 601));
    for (int i = 0; i < LISTS; ++i) {
        const auto rows = Random_List(random, i);
        engine.AddEvents(i, rows.data(), static_cast<std::int32_t>(rows.size()));
    }
    double beat = 0.0;
    const auto setClock = [&] {
        const auto speed = 0.5F + static_cast<float>(random() % 100) / 50.0F;
        engine.clock_SetPars(speed, 60 + static_cast<std::int32_t>(random() % 120), counter.Now_Ms(), 0, beat,
                             {});
    };
    const auto start = [&] {
        engine.Player_SetPos(beat);
        setClock();
        EXPECT_EQ(engine.clock_CheckValid(beat), 0);
        engine.Player_Start();
    };
    const auto stop = [&] {
        engine.Player_Stop();
        const auto deadline = std::chrono::steady_clock::now() + 5s;
        while (!engine.Player_IsPaused() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(100us);
        ASSERT_TRUE(engine.Player_IsPaused());
    };
    start();
    int changes = 0;
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(Seconds("TONVEX_STORM_SECONDS", 4));
    for (; std::chrono::steady_clock::now() < end; ++changes) {
        const auto list = static_cast<int>(random() % LISTS);
        beat = static_cast<double>(random() % 1500) / 100.0;
        switch (random() % 16) {
        case 0: {
            const auto rows = Random_List(random, list);
            engine.Channel_UpdateModded(list, rows.data(), static_cast<std::int32_t>(rows.size()),
                                        random() % 2 == 0);
            break;
        }
        case 1:
            setClock();
            break;
        case 2:
            stop();
            start();
            break;
        case 3:
        case 4:
        case 5:
            engine.Channel_SetVolFactor(list, static_cast<float>(random() % 128) / 100.0F);
            break;
        case 6:
            engine.Player_CopyRecActiveNotes({static_cast<std::int32_t>(random() % 2)});
            break;
        case 7:
        case 8:
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
            break;
        default:
            engine.Channel_SetMute(list, random() % 3 == 0);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
    }
    stop();
    std::this_thread::sleep_for(50ms); // the offs are due, and the consumer looks every 2 ms
    EXPECT_EQ(output.sounding, 0);
    EXPECT_GT(output.ons, 100U);
    std::cout << changes << " changes, " << output.ons << " notes\n";
    engine.FreeDLL();
    EXPECT_TRUE(engine.Player_IsPaused());
    EXPECT_FALSE(engine.Init_Buffers(0, 1)) << "it has ended";
}

/// An interface that is held up for 200 ms before each round.
class Blocked_Loop final : public Run_Loop {
public:
    void Run(const std::function<bool()>& round) override {
        do
            std::this_thread::sleep_for(200ms);
        while (round());
    }
    void Let_Messages_Run() override {}
};

TEST(Cue_Thread, Notes_Keep_Their_Time_Under_Load) {
    constexpr double LAST_FRACTION = 0.995; // 99 of 100 notes lie between the two ends
    constexpr double STEP_BEATS = 0.05;
    const int seconds = Seconds("TONVEX_LOAD_SECONDS", 5);
    Test_Session doors;
    Monotonic_Counter counter;
    Blocked_Loop loop;
    Live_Sound_Door sound(counter, {});
    sound.Keep_Samples(static_cast<std::size_t>(44100) * static_cast<std::size_t>(seconds + 6));
    Session session(
        {sound, doors.midi, doors.keys, counter, loop, doors.store, doors.dialogs, Cue_Drive::Threaded},
        doors.paths, doors.folder / "data");
    test::Write_Click_Font(doors.folder / "click.sf2", {{"Click", 0, 0, 30000}});
    ASSERT_TRUE(session.Load());
    ASSERT_TRUE(session.fonts->Load_SF2_List({(doors.folder / "click.sf2").string()}));
    session.gcm->GCM_SendAllPatches();
    // 25 ms from note to note, 30 ms behind the change of tempo, which falls on a whole millisecond.
    session.project.ProjectTempo = 120;
    session.tempoChanges.AddTempoChange(4.0, 100);
    const int notes = seconds * 1000 / 30;
    std::vector<double> expectedFrames;
    for (int i = 0; i < notes; ++i) {
        const double beat = 1.0 + STEP_BEATS * i;
        session.channels->Store(0).AddNewEvent(beat, NoteData{60, 100, STEP_BEATS / 2});
        expectedFrames.push_back(Beats_To_MS(beat, session.tempoChanges, session.project) * 44.1);
    }
    std::atomic<bool> done{false};
    std::thread busy([&done] {
        while (!done) {
        }
    });
    EXPECT_TRUE(session.player->Transport_Play(0.0, false, 1.0F));
    done = true;
    busy.join();
    const auto onsets = test::Onsets(sound.Kept_Samples());
    session.Shutdown();
    ASSERT_EQ(onsets.size(), expectedFrames.size());
    std::vector<double> late;
    for (std::size_t i = 0; i < onsets.size(); ++i)
        late.push_back(static_cast<double>(onsets[i]) - expectedFrames[i]);
    std::sort(late.begin(), late.end());
    const auto at = [&late](double fraction) {
        return late[static_cast<std::size_t>(fraction * static_cast<double>(late.size() - 1))];
    };
    const double spread = at(LAST_FRACTION) - at(1.0 - LAST_FRACTION);
    std::cout << notes << " notes, spread " << spread << " frames, all within " << late.back() - late.front()
              << "\n";
    EXPECT_LE(spread, 68.0);
}

} // namespace
} // namespace tonvex
