#include "base/file_io.h"
#include "support/test_session.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>

/// Saving and loading a song of 100 channels of 10 000 notes, against plainly writing and reading the same
/// bytes. On a file system in memory where there is one, so that neither side waits for a disk. Fails when
/// one takes 12 times as long or more.

namespace {

using namespace tonvex;
namespace fs = std::filesystem;

constexpr int CHANNELS = 100;
constexpr int EVENTS = 10'000;
constexpr int RUNS = 7;
constexpr double MOST = 12.0;

void Fill(Session& session) {
    for (int n = 0; n < CHANNELS; ++n) {
        const int row = session.channels->Add_Channel(session.channels->New_ChannelID(), false, n % 32, "");
        ChannelClass& store = session.channels->Store(row);
        for (int i = 0; i < EVENTS; ++i)
            store.AddNewEvent(i * 0.25, NoteData{static_cast<std::uint8_t>(36 + i % 48), 100, 0.5}, true);
    }
}

/// Processor time of this process, user's and system's: what else the machine does, does not count.
double Cpu_Ms() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// Best of several runs, ms. prepare runs before each, unmeasured.
template <typename Prepare, typename Work>
double Best_Ms(Prepare prepare, Work work) {
    double best = 1e9;
    for (int run = 0; run < RUNS; ++run) {
        prepare();
        const double begun = Cpu_Ms();
        work();
        best = std::min(best, Cpu_Ms() - begun);
    }
    return best;
}

void Write_Plainly(const fs::path& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::vector<char> Read_Plainly(const fs::path& path) {
    std::vector<char> bytes(fs::file_size(path));
    std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

bool Report(const char* what, double ms, double plainMs) {
    std::printf("%s: %.1f ms, plainly %.1f ms, %.2f times\n", what, ms, plainMs, ms / plainMs);
    return ms < MOST * plainMs;
}

} // namespace

int main() {
    if (fs::is_directory("/dev/shm"))
        setenv("TMPDIR", "/dev/shm", 1);
    Test_Session bed;
    Session& session = bed.Load();
    session.files->Reset();
    const fs::path song = bed.folder / "song.tvx";
    const fs::path plain = bed.folder / "plain.bin";
    const auto nothing = [] {};
    const auto changed = [&session] {
        // An event more in each channel, so that no copy of an earlier save serves.
        for (int row = 0; row < CHANNELS; ++row)
            session.channels->Store(row).AddNewEvent(0.0, NoteData{60, 100, 1.0});
    };
    bool good = true;
    Fill(session);
    const double saveMs =
        Best_Ms(changed, [&] { good = session.files->SaveProject(song, 0, false) && good; });
    const double loadMs =
        Best_Ms(nothing, [&] { good = session.files->LoadProject(song, 0, false) && good; });
    const auto bytes = Read_File(song);
    if (!good || !bytes || session.channels->Count_Channels() != CHANNELS) {
        std::puts("the song was not saved and loaded");
        return 1;
    }
    const double writeMs = Best_Ms(nothing, [&] { Write_Plainly(plain, *bytes); });
    const double readMs = Best_Ms(nothing, [&] { good = Read_Plainly(plain).size() == bytes->size(); });
    std::printf("%zu bytes\n", bytes->size());
    good = Report("save", saveMs, writeMs) && good;
    return Report("load", loadMs, readMs) && good ? 0 : 1;
}
