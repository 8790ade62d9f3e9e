#include "project/undo_class.h"
#include "support/test_session.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

/// Taking an undo step of a channel of 10 000 notes, against plainly writing its bytes. On a file system in
/// memory where there is one. Fails when it takes 10 times as long or more.

namespace {

using namespace tonvex;
namespace fs = std::filesystem;

constexpr int EVENTS = 10'000;
constexpr int RUNS = 31;
constexpr double MOST = 10.0;

/// Median of several runs, ms.
template <typename Work>
double Median_Ms(Work work) {
    std::vector<double> times;
    for (int run = 0; run < RUNS; ++run) {
        const auto begun = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begun;
        times.push_back(took.count());
    }
    std::nth_element(times.begin(), times.begin() + RUNS / 2, times.end());
    return times[RUNS / 2];
}

} // namespace

int main() {
    if (fs::is_directory("/dev/shm"))
        setenv("TMPDIR", "/dev/shm", 1);
    Test_Session bed;
    Session& session = bed.Load();
    ChannelClass& store = session.channels->Store(0);
    for (int i = 0; i < EVENTS; ++i)
        store.AddNewEvent(i * 0.25, NoteData{static_cast<std::uint8_t>(36 + i % 48), 100, 0.5}, true);
    store.ReSort_StartTime();
    const std::int32_t channelId = store.ChannelNumber;
    const std::int32_t eventId = store.GetEvent_ID(EVENTS / 2);
    std::int32_t volume = 0;
    // As an edit takes it: the hub keeps the channel, changes one note of it, writes the step.
    const double stepMs = Median_Ms([&] {
        session.hub->Message(nullptr, MSG_VOLUME_EVENT, channelId, eventId, ++volume);
        session.hub->Message(nullptr, MSG_VOLUME_END, channelId);
    });
    const fs::path file = session.Temp_Folder() / "undofile1.dat";
    if (session.undo->Undo_Count() != RUNS || !fs::exists(file)) {
        std::puts("no step was taken");
        return 1;
    }
    const std::vector<char> bytes(fs::file_size(file), 'x');
    int number = 0;
    const double plainMs = Median_Ms([&] {
        std::ofstream(session.Temp_Folder() / ("plain" + std::to_string(++number)), std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
    const double undoMs = Median_Ms([&] { session.undo->Do_Undo(); });
    std::printf("%zu bytes\nundo step: %.3f ms, plainly %.3f ms, %.2f times\nundoing it: %.3f ms\n",
                bytes.size(), stepMs, plainMs, stepMs / plainMs, undoMs);
    return stepMs < MOST * plainMs ? 0 : 1;
}
