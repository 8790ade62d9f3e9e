#include "platform/rtaudio_driver.h"

#include "platform/live_sound_door.h"
#include "support/child_process.h"
#include "support/offline_bed.h"
#include "support/onsets.h"
#include "support/real_time.h"
#include "support/sanitizers.h"

#include <chrono>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

// Against real servers without a sound card, started here under a name of their own; where a server is not
// installed, its test is skipped.

namespace tonvex {
namespace {

using test::Comes_True;
using test::Wait_Ms;

#if defined(TONVEX_THREAD_SANITIZER) || defined(TONVEX_ADDRESS_SANITIZER)
constexpr bool SANITIZED = true;
#else
constexpr bool SANITIZED = false;
#endif

/// A variable of the environment, as it was before again at the end.
class Set_Variable {
public:
    Set_Variable(const char* variable, const std::string& value) : name(variable) {
        const char* const present = std::getenv(name);
        hadOne = present != nullptr;
        before = hadOne ? present : "";
        setenv(name, value.c_str(), 1);
    }
    ~Set_Variable() {
        if (hadOne)
            setenv(name, before.c_str(), 1);
        else
            unsetenv(name);
    }
    Set_Variable(const Set_Variable&) = delete;
    Set_Variable& operator=(const Set_Variable&) = delete;

private:
    const char* name;
    bool hadOne;
    std::string before;
};

struct Row {
    Device_Api api;
    const char* name;
    int rate;
    int block;
};

class Real_Server : public ::testing::TestWithParam<Row> {
protected:
    void SetUp() override {
        if (SANITIZED)
            GTEST_SKIP() << "the servers' libraries are built without sanitizers";
        const std::string unique = "tonvex-test-" + std::to_string(getpid());
        std::vector<std::string> command;
        if (GetParam().api == Device_Api::Jack) {
            variables.push_back(std::make_unique<Set_Variable>("JACK_DEFAULT_SERVER", unique.c_str()));
            variables.push_back(std::make_unique<Set_Variable>("JACK_NO_AUDIO_RESERVATION", "1"));
            command = {"jackd", "-n", unique, "--no-realtime", "-d", "dummy", "-r", "48000", "-p", "256"};
        } else {
            const std::string socket = (folder / "native").string();
            variables.push_back(std::make_unique<Set_Variable>("PULSE_SERVER", ("unix:" + socket).c_str()));
            variables.push_back(std::make_unique<Set_Variable>("XDG_RUNTIME_DIR", folder.Path().c_str()));
            std::istringstream words("pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no "
                                     "--realtime=no --high-priority=no");
            command.assign(std::istream_iterator<std::string>(words), {});
            for (const std::string& module :
                 {"module-native-protocol-unix auth-anonymous=1 socket=" + socket,
                  std::string("module-null-sink sink_name=out1 rate=44100 channels=2 norewinds=1")})
                command.insert(command.end(), {"-L", module});
        }
        if (!server.Start(command))
            GTEST_SKIP() << command.front() << " is not installed";
        std::vector<std::unique_ptr<Sound_Driver>> devices;
        devices.push_back(std::make_unique<RtAudio_Driver>(GetParam().api));
        door = std::make_unique<Live_Sound_Door>(clock, std::move(devices));
        test::Write_Click_Font(folder / "clicks.sf2", {{}});
        ASSERT_EQ(door->Set_Fonts({folder / "clicks.sf2"}).front(), 1);
        door->Keep_Samples(48000 * 20);
        const bool up = Comes_True(
            [this] {
                std::string error;
                return door->Open({30, 6}, error) && !door->Status().quiet;
            },
            8);
        if (!up)
            GTEST_SKIP() << command.front() << " does not start on this machine";
    }
    void Play_Click() { door->Post(Note(clock.Now_Ns())); }
    bool Clicks_Heard(std::size_t count) {
        return Comes_True([&] { return test::Onsets(door->Kept_Samples()).size() >= count; }, 5);
    }

    Temp_Folder folder;
    std::vector<std::unique_ptr<Set_Variable>> variables;
    test::Child_Process server;
    Monotonic_Counter clock;
    std::unique_ptr<Live_Sound_Door> door;
};

TEST_P(Real_Server, Sounds_And_Runs_On_When_The_Server_Goes) {
    const Sound_Status status = door->Status();
    EXPECT_TRUE(status.open);
    EXPECT_EQ(status.driver, GetParam().name);
    EXPECT_EQ(status.sampleRate, GetParam().rate);
    EXPECT_EQ(status.blockFrames, GetParam().block);
    Play_Click();
    EXPECT_TRUE(Clicks_Heard(1));
    Wait_Ms(50);

    Play_Click(); // sounds while the server goes
    server.End();
    EXPECT_TRUE(Comes_True([this] { return door->Status().deviceLost; }, 5));
    EXPECT_TRUE(Clicks_Heard(2)) << "what was under way is not lost";
    Wait_Ms(50); // or the clicks would run together
    Play_Click();
    EXPECT_TRUE(Clicks_Heard(3)) << "the quiet driver has taken over";

    const auto closing = std::chrono::steady_clock::now();
    door->Close();
    EXPECT_LT(std::chrono::steady_clock::now() - closing, std::chrono::seconds(3));
    std::string error;
    EXPECT_TRUE(door->Open({30, 6}, error)) << error;
    EXPECT_TRUE(door->Status().quiet) << "no server any more";
}

INSTANTIATE_TEST_SUITE_P(Kinds, Real_Server,
                         ::testing::Values(Row{Device_Api::Jack, "JACK", 48000, 256},
                                           Row{Device_Api::Pulse, "PulseAudio", 44100, 256}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace tonvex
