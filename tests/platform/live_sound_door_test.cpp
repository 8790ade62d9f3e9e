#include "platform/live_sound_door.h"

#include "platform/audio_thread_mark.h"
#include "support/audio_thread_guard.h"
#include "support/offline_bed.h"
#include "support/onsets.h"
#include "support/real_time.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <random>
#include <thread>

// The quiet driver keeps real time, so these tests take some.

namespace tonvex {
namespace {

using test::Comes_True;
using test::Wait_Ms;

/// Update period in ms that gives a block of so many frames at 44100 Hz.
int Update_Ms_For(int blockFrames) {
    return blockFrames / 44 + 1;
}

/// A device that is there until it is unplugged.
class Pluggable_Driver final : public Sound_Driver {
public:
    explicit Pluggable_Driver(std::atomic<bool>& pluggedIn) : plugged(pluggedIn) {}
    bool Open(const Sound_Request& request, Driver_Stream& stream, std::string& reason) override {
        if (!plugged || !inner.Open(request, stream, reason))
            return false;
        stream.driver = "Pluggable";
        stream.quiet = false;
        return true;
    }
    bool Start(std::shared_ptr<Block_Source> source) override { return inner.Start(std::move(source)); }
    void Close() override { inner.Close(); }
    bool Lost() const noexcept override { return !plugged; }

private:
    std::atomic<bool>& plugged;
    Quiet_Driver inner;
};

class Live_Door : public ::testing::Test {
protected:
    Live_Door() {
        test::Write_Click_Font(folder / "a.sf2", {{"Click", 0, 0, 30000}, {"Kit", 128, 0, 20000}});
        test::Write_Click_Font(folder / "b.sf2", {{"Held", 0, 0, 3000, true}});
    }
    std::unique_ptr<Live_Sound_Door> Make_Door() {
        std::vector<std::unique_ptr<Sound_Driver>> devices;
        devices.push_back(std::make_unique<Pluggable_Driver>(plugged));
        auto door = std::make_unique<Live_Sound_Door>(clock, std::move(devices));
        EXPECT_GT(door->Set_Fonts({folder / "a.sf2"}).front(), 0);
        return door;
    }

    Temp_Folder folder;
    Monotonic_Counter clock;
    std::atomic<bool> plugged{true};
};

class Live_Blocks : public Live_Door, public ::testing::WithParamInterface<int> {};

TEST_P(Live_Blocks, Onsets_Keep_One_Latency) {
    auto door = Make_Door();
    door->Keep_Samples(44100 * 8);
    std::string error;
    ASSERT_TRUE(door->Open({100, Update_Ms_For(GetParam())}, error)) << error;
    EXPECT_EQ(door->Status().blockFrames, GetParam());
    Wait_Ms(400);
    std::vector<std::int64_t> dues;
    std::vector<bool> inTime; // a thread put off between the reading and the post sends too late by itself
    for (int i = 0; i < 50; ++i) {
        dues.push_back(clock.Now_Ns());
        door->Post(Note(dues.back()));
        inTime.push_back(clock.Now_Ns() - dues.back() < 200'000);
        std::this_thread::sleep_for(std::chrono::microseconds(21'000 + 137 * i));
    }
    Wait_Ms(200);
    const double latencyMs = door->Status().latencyMs;
    door->Close();
    const auto onsets = test::Onsets(door->Kept_Samples());
    ASSERT_EQ(onsets.size(), dues.size());
    std::vector<double> late;
    for (std::size_t i = 0; i < dues.size(); ++i)
        if (inTime[i])
            late.push_back(static_cast<double>(onsets[i]) - static_cast<double>(dues[i] - dues[0]) * 44.1e-6);
    ASSERT_GT(late.size(), 30U);
    const auto [least, most] = std::minmax_element(late.begin(), late.end());
    EXPECT_LE(*most - *least, 68.0);
    EXPECT_NEAR(latencyMs, GetParam() / 44.1, 64 / 44.1);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Live_Blocks, ::testing::Values(64, 256, 1024));

TEST_F(Live_Door, A_Lost_Device_Leaves_Time_Running_And_Can_Come_Back) {
    auto door = Make_Door();
    door->Keep_Samples(44100 * 10);
    std::string error;
    ASSERT_TRUE(door->Open({}, error)) << error;
    EXPECT_EQ(door->Status().driver, "Pluggable");
    EXPECT_FALSE(door->Status().quiet);
    plugged = false;
    ASSERT_TRUE(Comes_True([&] { return door->Status().deviceLost; }));
    EXPECT_TRUE(door->Status().open);
    const auto before = test::Onsets(door->Kept_Samples()).size();
    door->Post(Note(clock.Now_Ns()));
    EXPECT_TRUE(Comes_True([&] { return test::Onsets(door->Kept_Samples()).size() == before + 1; }));
    ASSERT_TRUE(door->Open({}, error));
    EXPECT_TRUE(door->Status().quiet) << "still unplugged";
    EXPECT_FALSE(door->Status().deviceLost);
    plugged = true;
    ASSERT_TRUE(door->Open({}, error));
    EXPECT_EQ(door->Status().driver, "Pluggable");
    EXPECT_FALSE(door->Status().deviceLost || door->Status().quiet);
}

/// Everything that a door can be asked while it sounds, from two sending threads, with the fonts changing
/// and the device going.
void Exercise(Live_Sound_Door& door, const Temp_Folder& folder, std::atomic<bool>& plugged, int messages) {
    const Monotonic_Counter clock;
    std::atomic<bool> stop{false};
    std::thread player([&] {
        for (std::uint32_t i = 0; !stop; ++i) {
            const Sound_Message row = Note(clock.Now_Ns() + 12'000'000, static_cast<int>(i % OUTPUT_SLOTS));
            door.Post_From_Player(row);
            if (i % 100 == 0)
                door.Take_Back_From_Player(row.dueNs - 5'000'000);
            std::this_thread::sleep_for(std::chrono::microseconds(300));
        }
    });
    std::mt19937 random(5);
    for (int i = 0; i < messages; ++i) {
        const auto r = static_cast<std::uint32_t>(random());
        const Sound_Op op = r % 4 != 0 ? Sound_Op::NoteOn : static_cast<Sound_Op>(r / 4 % 7);
        door.Post(
            Message(op, static_cast<int>(r >> 8 & 31), static_cast<int>(r >> 13 & 127), 127, clock.Now_Ns()));
        door.Set_Master_Volume(static_cast<int>(r >> 20 & 127));
        if (i % 5 == 0) {
            Effect_Settings effects;
            effects.on[r % EFFECT_KINDS] = r % 7 != 0;
            effects.on[r / 8 % EFFECT_KINDS] = true;
            effects.values[r % EFFECT_KINDS][r / 64 % MOST_PARAMETERS] = static_cast<float>(r % 3000);
            door.Set_Effects(static_cast<int>(r >> 8 & 31), effects);
        }
        if (i % 100 == 50)
            door.Set_Fonts({folder / (i % 200 == 50 ? "b.sf2" : "a.sf2")});
        if (i == messages / 2)
            plugged = false;
        door.Status();
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    stop = true;
    player.join();
    EXPECT_TRUE(Comes_True([&] { return door.Status().deviceLost; }));
}

TEST_F(Live_Door, The_Audio_Thread_Neither_Allocates_Nor_Locks_Nor_Touches_Files) {
    auto door = Make_Door();
    const test::Audio_Thread_Guard guard;
    std::string error;
    ASSERT_TRUE(door->Open({30, 6}, error)) << error;
    Exercise(*door, folder, plugged, 2000);
    // The figure begins anew on the driver that took over.
    EXPECT_TRUE(Comes_True([&] { return door->Status().cpuPercent > 0.0; }));
    door->Close();
    EXPECT_EQ(guard.Violations(), 0) << guard.First_Violation();
}

TEST(Audio_Thread_Guard, Catches_What_It_Is_There_For) {
    if (!test::Audio_Thread_Guard::Is_Built())
        GTEST_SKIP() << "built without TONVEX_GUARD_AUDIO";
    const test::Audio_Thread_Guard guard;
    std::mutex mutex;
    std::vector<int> allocated(10);
    std::ifstream("/dev/null").get();
    EXPECT_EQ(guard.Violations(), 0) << "outside of the callback everything is allowed";
    const auto Caught = [&guard](auto deed) {
        const int before = guard.Violations();
        {
            const Audio_Thread_Mark mark;
            deed();
        }
        return guard.Violations() > before;
    };
    EXPECT_TRUE(Caught([&] { allocated.resize(1000); }));
    EXPECT_TRUE(Caught([&] { std::vector<int>().swap(allocated); }));
    EXPECT_TRUE(Caught([&] { mutex.lock(); }));
    EXPECT_TRUE(Caught([] { Wait_Ms(1); }));
    EXPECT_TRUE(Caught([] { std::ifstream("/dev/null").get(); }));
    EXPECT_FALSE(Caught([] {}));
    EXPECT_NE(guard.First_Violation().find("malloc"), std::string::npos) << guard.First_Violation();
    mutex.unlock();
}

} // namespace
} // namespace tonvex
