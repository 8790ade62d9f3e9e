// What the main window costs: the interface thread's work a frame while 100 channels play, meters and play
// line moving, against the same window with nothing moving; and the processor time of the idle window against
// a bare Qt window that does nothing. One form a process:
//
//     window_load_check bare|idle|play SECONDS
//
// "idle" is the program as it starts, with one channel; "play" has 100 channels, stands still for as long as
// it plays then, and what sounded is looked at too: the spread of the first channel's onsets, in frames.
// Prints what it measured; tests/manual/window_load_check.sh compares.

#include "app/windows/frm_main.h"
#include "engine/windows/frm_recorder.h"
#include "manual/check.h"
#include "manual/real_program.h"
#include "platform/qt/qt_key_state.h"
#include "platform/qt/qt_run_loop.h"
#include "support/click_font.h"
#include "support/onsets.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QMainWindow>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <pthread.h>
#include <string>
#include <thread>
#include <time.h>
#include <vector>

using namespace tonvex;

namespace {

constexpr std::int64_t FRAME_NS = 16'666'667;
constexpr std::int64_t NS_PER_S = 1'000'000'000;
constexpr int CHANNELS = 100;
constexpr int SETTLE_MS = 3000;

std::int64_t Read_Ns(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return now.tv_sec * NS_PER_S + now.tv_nsec;
}

/// Processor time of the thread that makes it, frame by frame, read by a thread of its own.
class Frame_Meter {
public:
    Frame_Meter() : wholeBefore(Read_Ns(CLOCK_PROCESS_CPUTIME_ID)), startNs(Read_Ns(CLOCK_MONOTONIC)) {
        pthread_getcpuclockid(pthread_self(), &watched);
        threadBefore = Read_Ns(watched);
        reader = std::thread([this] { Read(); });
    }
    Frame_Meter(const Frame_Meter&) = delete;
    Frame_Meter& operator=(const Frame_Meter&) = delete;
    ~Frame_Meter() { Stop(); }

    void Print(const char* name) {
        Stop();
        const double seconds = static_cast<double>(Read_Ns(CLOCK_MONOTONIC) - startNs) / 1e9;
        const double thread = static_cast<double>(Read_Ns(watched) - threadBefore) / 1e6;
        // The reader is no part of the program.
        const double whole =
            static_cast<double>(Read_Ns(CLOCK_PROCESS_CPUTIME_ID) - wholeBefore - readerNs) / 1e6;
        std::printf("%s frames %zu p50_ms %.3f p99_ms %.3f max_ms %.3f interface_ms_per_s %.3f "
                    "process_ms_per_s %.3f\n",
                    name, work.size(), Percentile(work, 0.5), Percentile(work, 0.99), Percentile(work, 1.0),
                    thread / seconds, whole / seconds);
        std::fflush(stdout);
    }

private:
    void Read() {
        std::int64_t due = startNs;
        std::int64_t before = threadBefore;
        while (!ending) {
            due += FRAME_NS;
            const timespec until{due / NS_PER_S, due % NS_PER_S};
            clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
            const std::int64_t now = Read_Ns(watched);
            work.push_back(static_cast<double>(now - before) / 1e6);
            before = now;
        }
        readerNs = Read_Ns(CLOCK_THREAD_CPUTIME_ID);
    }
    void Stop() {
        ending = true;
        if (reader.joinable())
            reader.join();
    }

    clockid_t watched{};
    std::int64_t threadBefore = 0;
    std::int64_t wholeBefore;
    std::int64_t startNs;
    std::int64_t readerNs = 0;
    std::atomic<bool> ending{false};
    std::vector<double> work; ///< ms a frame
    std::thread reader;
};

void Measure(const char* name, int seconds) {
    Frame_Meter meter;
    QTimer::singleShot(seconds * 1000, qApp, &QApplication::quit);
    QApplication::exec();
    meter.Print(name);
}

/// A song of 100 channels on all slots, two notes a beat each, for as long as asked. The first channel has a
/// slot of its own, where its notes sound as clicks louder than all others together.
void Fill_Song(Session& session, const Temp_Folder& home, int seconds) {
    test::Write_Click_Font(home / "click.sf2",
                           {{"Loud", 0, 0, 30000}, {"Quiet", 0, 1, 800}, {"Kit", 128, 0, 800}});
    session.fonts->Load_SF2_List({(home / "click.sf2").string()});
    const int beats = seconds * session.project.ProjectTempo / 60 + 16;
    while (session.channels->Count_Channels() < CHANNELS)
        session.hub->Message(nullptr, MSG_ADD_CHANNEL, std::string("Channel"), false);
    for (int row = 0; row < CHANNELS; ++row) {
        GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
        channel.OutputChannel = static_cast<std::uint8_t>(row == 0 ? 0 : 1 + row % (OUTPUT_SLOTS - 1));
        channel.PatchI = row == 0 ? 0 : 1;
        for (int i = 0; i < 2 * beats; ++i)
            session.channels->Store(row).AddNewEvent(
                i * 0.5 + row * 0.003,
                NoteData{static_cast<std::uint8_t>(36 + (row * 7 + i * 5) % 48), 70, 0.3});
    }
    session.gcm->GCM_SendAllPatches();
    session.project.SongLength = beats;
    session.hub->Message(nullptr, MSG_GENERAL_UPDATE);
}

/// How far the first channel's notes lie apart from where they belong, 99 of 100 of them.
void Print_Onsets(Session& session, std::span<const float> samples) {
    float peak = 0.0F;
    for (const float sample : samples)
        peak = std::max(peak, std::abs(sample));
    const auto onsets = test::Onsets(samples, peak / 2);
    std::vector<double> late;
    for (std::size_t i = 0; i < onsets.size(); ++i) {
        const double due = Beats_To_MS(static_cast<double>(i) * 0.5, session.tempoChanges, session.project);
        late.push_back(static_cast<double>(onsets[i]) - due * 44.1);
    }
    if (late.empty())
        late.push_back(NAN);
    std::printf("onsets notes %zu spread %.1f all_within %.1f\n", onsets.size(),
                Percentile(late, 0.995) - Percentile(late, 0.005),
                Percentile(late, 1.0) - Percentile(late, 0.0));
}

int Run_Program(QApplication& application, const std::string& form, int seconds) {
    Monotonic_Counter counter;
    Memory_Settings_Store look;
    Theme theme(application, look);
    Qt_Key_State keys(counter);
    Qt_Run_Loop loop;
    Real_Program program(keys, counter, loop, Sound_Driver_Choice::Quiet, Cue_Drive::Threaded);
    Session& session = program.session;
    if (!program.loaded)
        return 1;
    if (form == "play") {
        program.sound->Close();
        program.sound->Keep_Samples(static_cast<std::size_t>(44100) *
                                    static_cast<std::size_t>(3 * seconds + 60));
        session.Reopen_Output();
    }
    {
        frmMain window(session, theme);
        window.show();
        if (form == "play")
            Fill_Song(session, program.home, seconds);
        QTimer::singleShot(SETTLE_MS, &application, &QApplication::quit);
        QApplication::exec();
        Measure(form == "play" ? "still" : "idle", seconds);
        if (form == "play") {
            QTimer::singleShot(SETTLE_MS, &window, [&] {
                // The start of the run, which lists the whole song, is no frame of it.
                auto meter = std::make_shared<std::unique_ptr<Frame_Meter>>();
                QTimer::singleShot(SETTLE_MS, &window, [meter] { *meter = std::make_unique<Frame_Meter>(); });
                QTimer::singleShot(SETTLE_MS + seconds * 1000, &window, [&, meter] {
                    (*meter)->Print("play");
                    window.Recorder().Button_Stop();
                });
                window.Recorder().Button_Play();
                QApplication::quit();
            });
            QApplication::exec();
            Print_Onsets(session, program.sound->Kept_Samples());
        }
    }
    session.Shutdown();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("window_load_check bare|idle|play SECONDS\n", stderr);
        return 2;
    }
    const std::string form = argv[1];
    const int seconds = std::max(1, std::atoi(argv[2]));
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (form != "bare")
        return Run_Program(application, form, seconds);
    QMainWindow bare;
    bare.resize(1440, 900);
    bare.show();
    QTimer::singleShot(SETTLE_MS, &application, &QApplication::quit);
    QApplication::exec();
    Measure("bare", seconds);
    return 0;
}
