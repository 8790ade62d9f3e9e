// The whole program in a real window: records what a script types, compares the time of every event with the
// arrival of its key event as a connection of its own saw it, then plays the take. With "busy" the window
// repaints for 100 ms at a time meanwhile. Prints what it measured; the exit code is the number of checks
// that failed. Run it by tests/manual/take_check.sh, which starts the servers and types.

#include "app/windows/frm_main.h"
#include "engine/windows/frm_recorder.h"
#include "manual/check.h"
#include "manual/real_program.h"
#include "platform/qt/qt_key_state.h"
#include "platform/qt/qt_run_loop.h"
#include "platform/qt/x11_auto_repeat.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPaintEvent>
#include <QTimer>
#include <QWidget>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

// Last: these headers define many common words as macros.
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>
#undef Status

using namespace tonvex;

namespace {

constexpr int BUSY_MS = 100;
constexpr int BUSY_EVERY_MS = 150;
constexpr double MOST_MS_P95 = 2.0;
constexpr unsigned X_ESCAPE = 9;

/// Notes when key presses arrive at the X server, on a thread and a connection of its own, so that no work
/// of the window delays it.
class Arrivals {
public:
    Arrivals() : display(XOpenDisplay(nullptr)), reader([this] { Read(); }) {}
    ~Arrivals() {
        ending = true;
        reader.join();
        XCloseDisplay(display);
    }
    Arrivals(const Arrivals&) = delete;
    Arrivals& operator=(const Arrivals&) = delete;

    std::vector<std::int64_t> pressedNs; ///< read once the thread has ended its part: after the take

private:
    void Read() {
        int opcode = 0;
        int event = 0;
        int error = 0;
        XQueryExtension(display, "XInputExtension", &opcode, &event, &error);
        unsigned char bits[XIMaskLen(XI_LASTEVENT)] = {};
        XISetMask(bits, XI_RawKeyPress);
        XIEventMask mask{XIAllMasterDevices, sizeof bits, bits};
        XISelectEvents(display, DefaultRootWindow(display), &mask, 1);
        XFlush(display);
        while (!ending) {
            if (XPending(display) == 0) {
                std::this_thread::sleep_for(std::chrono::microseconds(100));
                continue;
            }
            XEvent raw;
            XNextEvent(display, &raw);
            const std::int64_t now = counter.Now_Ns();
            if (raw.xcookie.extension != opcode || XGetEventData(display, &raw.xcookie) == 0)
                continue;
            const auto* key = static_cast<const XIRawEvent*>(raw.xcookie.data);
            if (raw.xcookie.evtype == XI_RawKeyPress && key->detail != static_cast<int>(X_ESCAPE))
                pressedNs.push_back(now);
            XFreeEventData(display, &raw.xcookie);
        }
    }

    const Monotonic_Counter counter;
    Display* display;
    std::atomic<bool> ending{false};
    std::thread reader;
};

/// A pane whose every repaint takes as long as a whole crowded window's.
class Slow_Pane final : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QElapsedTimer spent;
        spent.start();
        while (spent.elapsed() < BUSY_MS) {
        }
    }
};

/// Keeps the moments of the take's events when a recording ends.
class Take final : public Transport_Observer {
public:
    explicit Take(Session& theSession) : session(theSession) { session.observers.push_back(this); }
    void On_Run_Started(bool recording) override { isRecording = recording; }
    void On_Run_Ended() override {
        if (!isRecording)
            return;
        const ChannelClass& store = session.channels->Store(0);
        for (auto row = store.FirstEvent(); row >= 0; row = store.Get_NextEventI(row))
            eventNs.push_back(session.recorder->Clock().Moment_Of(store.ReadEvent(row)->StartTime));
    }
    std::vector<std::int64_t> eventNs;

private:
    Session& session;
    bool isRecording = false;
};

void Compare(std::vector<std::int64_t> arrived, const std::vector<std::int64_t>& events, std::size_t wanted) {
    Check(events.size() == wanted && arrived.size() == wanted,
          std::to_string(arrived.size()) + " presses gave " + std::to_string(events.size()) + " events of " +
              std::to_string(wanted));
    if (events.size() != arrived.size() || events.empty())
        return;
    std::vector<double> apart;
    for (std::size_t i = 0; i < events.size(); ++i)
        apart.push_back(std::abs(static_cast<double>(events[i] - arrived[i])) / 1e6);
    Check(Percentile(apart, 0.95) < MOST_MS_P95, "event against arrival: " + Percentiles(apart));
}

} // namespace

int main(int argc, char** argv) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    if (argc < 3) {
        std::fputs("take_check PRESSES calm|busy\n", stderr);
        return 2;
    }
    const auto wanted = static_cast<std::size_t>(std::atoi(argv[1]));
    const bool busy = std::string(argv[2]) == "busy";
    QApplication application(argc, argv);
    Monotonic_Counter counter;
    Memory_Settings_Store look;
    Theme theme(application, look);
    Qt_Key_State keys(counter);
    Qt_Run_Loop loop;
    Drop_False_Releases();
    Real_Program program(keys, counter, loop);
    Session& session = program.session;
    if (!program.loaded) {
        std::fputs("The session could not be loaded.\n", stderr);
        return 1;
    }
    {
        Arrivals arrivals;
        frmMain window(session, theme);
        Take take(session);
        Slow_Pane slow(&window);
        slow.setGeometry(0, 0, 8, 8);
        window.show();
        application.processEvents();
        std::printf("window after %lld ms, sound by %s (%s)\n", static_cast<long long>(sinceStart.elapsed()),
                    program.sound->Status().driver.c_str(), program.sound->Status().deviceName.c_str());
        QTimer work;
        QObject::connect(&work, &QTimer::timeout, &slow, [&slow] { slow.repaint(); });
        QTimer::singleShot(1000, &window, [&] {
            if (busy)
                work.start(BUSY_EVERY_MS);
            std::puts("recording");
            std::fflush(stdout);
            window.Recorder().Button_Rec();
            work.stop();
            Compare(arrivals.pressedNs, take.eventNs, wanted);
            std::puts("playing");
            std::fflush(stdout);
            session.transport.PlayPosition = 0.0;
            QElapsedTimer played;
            played.start();
            window.Recorder().Button_Play();
            std::printf("        played for %lld ms\n", static_cast<long long>(played.elapsed()));
            QTimer::singleShot(500, &application, &QApplication::quit);
        });
        QApplication::exec();
        std::erase(session.observers, &take);
    }
    session.Shutdown();
    return failed;
}
