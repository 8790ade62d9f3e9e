// Checks the keyboard against a real X server: stamps while the window is busy, a key held down, a shortcut
// on a key that plays, a switch to another window. Prints what it measured; the exit code is the number of
// checks that failed. Run it by tests/manual/key_state_check.sh, which starts the server.

#include "manual/check.h"
#include "platform/millisecond_counter.h"
#include "platform/qt/qt_key_state.h"

#include <QApplication>
#include <QShortcut>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <thread>
#include <vector>

// Last: these headers define many common words as macros.
#include <X11/Xlib.h>

using namespace tonvex;

namespace {

constexpr unsigned Z = 52;
const Monotonic_Counter counter;

/// Types on the X server by a connection of its own, from any one thread.
class Typist {
public:
    Typist() : display(XOpenDisplay(nullptr)) {
        void* library = dlopen("libXtst.so.6", RTLD_NOW); // comes with xdotool
        if (library != nullptr)
            fake = reinterpret_cast<Fake_Key>(dlsym(library, "XTestFakeKeyEvent"));
    }
    bool Ready() const { return display != nullptr && fake != nullptr; }
    /// The moment at which the server had the key, in ns.
    std::int64_t Key(unsigned code, bool down) {
        fake(display, code, down ? 1 : 0, 0);
        XSync(display, 0);
        return counter.Now_Ns();
    }

private:
    using Fake_Key = int (*)(Display*, unsigned, int, unsigned long);
    Display* display;
    Fake_Key fake = nullptr;
};

struct Seen {
    std::int64_t stampNs;
    std::int64_t handledNs;
};

std::vector<Seen> Read_All(Qt_Key_State& keys) {
    std::vector<Seen> edges;
    static Key_State state;
    for (;;) {
        const Key_State before = state;
        keys.Read(state);
        std::size_t key = 0;
        while (key < 256 && before.down[key] == state.down[key])
            ++key;
        if (key == 256)
            return edges;
        edges.push_back({state.changedAtNs[key], counter.Now_Ns()});
    }
}

void Check_Stamps(Qt_Key_State& keys, Typist& typist, int busyMs) {
    constexpr int EDGES = 200;
    std::vector<std::int64_t> typed;
    std::atomic<bool> done{false};
    std::thread typing([&] {
        for (int i = 0; i < EDGES; ++i) {
            typed.push_back(typist.Key(Z, i % 2 == 0));
            std::this_thread::sleep_for(std::chrono::milliseconds(17 + i * 7 % 31));
        }
        done = true;
    });
    std::vector<Seen> seen;
    while (!done || seen.size() < EDGES) {
        std::this_thread::sleep_for(std::chrono::milliseconds(busyMs)); // a long repaint
        QCoreApplication::processEvents();
        for (const Seen& edge : Read_All(keys))
            seen.push_back(edge);
        if (done && seen.size() < EDGES && counter.Now_Ns() > typed.back() + 2'000'000'000)
            break;
    }
    typing.join();
    std::vector<double> errors;
    std::vector<double> delays;
    for (std::size_t i = 0; i < seen.size() && i < typed.size(); ++i) {
        errors.push_back(std::abs(static_cast<double>(seen[i].stampNs - typed[i]) / 1e6));
        delays.push_back(static_cast<double>(seen[i].handledNs - typed[i]) / 1e6);
    }
    Check(seen.size() == EDGES, std::to_string(seen.size()) + " of " + std::to_string(EDGES) +
                                    " edges with the window busy for " + std::to_string(busyMs) + " ms");
    Check(Percentile(errors, 0.95) < 2.0, "stamp against arrival: " + Percentiles(errors));
    std::printf("        handled after arrival: %s\n", Percentiles(delays).c_str());
}

std::size_t Edges_While(Qt_Key_State& keys, int ms) {
    std::size_t edges = 0;
    const std::int64_t end = counter.Now_Ns() + std::int64_t{ms} * 1'000'000;
    while (counter.Now_Ns() < end) {
        QTest::qWait(5);
        edges += Read_All(keys).size();
    }
    return edges;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication app(argc, argv);
    Typist typist;
    if (!typist.Ready()) {
        std::printf("needs an X server and libXtst.so.6\n");
        return 99;
    }
    QWidget window;
    window.setWindowTitle(QStringLiteral("keys"));
    window.resize(300, 200);
    int shortcuts = 0;
    QShortcut shortcut(QKeySequence(Qt::Key_Z), &window);
    QObject::connect(&shortcut, &QShortcut::activated, [&] { ++shortcuts; });
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window)) {
        std::printf("the window did not become active\n");
        return 98;
    }
    Qt_Key_State keys(counter);
    keys.Open();
    typist.Key(Z, true);
    QTest::qWait(100);
    Check(shortcuts == 1, "idle, the shortcut on z works");
    keys.Acquire(); // with z still held by the shortcut's user
    Check(Edges_While(keys, 1500) == 0,
          "the key of the shortcut that began a run does not play, nor its repeats");
    typist.Key(Z, false);
    Check(Edges_While(keys, 100) == 0, "nor does its release");
    shortcuts = 0;

    Check_Stamps(keys, typist, 1);
    Check_Stamps(keys, typist, 100);
    Check(shortcuts == 0, "no shortcut took a key that plays");

    for (int i = 0; i < 4; ++i) {
        typist.Key(Z, true);
        const std::size_t held = Edges_While(keys, 1500);
        typist.Key(Z, false);
        const std::size_t after = Edges_While(keys, 100);
        Check(held == 1 && after == 1,
              "held for 1.5 s: " + std::to_string(held) + " press, " + std::to_string(after) + " release");
    }

    typist.Key(Z, true);
    Edges_While(keys, 50);
    QWidget other;
    other.setWindowTitle(QStringLiteral("other"));
    other.show();
    other.activateWindow();
    const bool active = QTest::qWaitForWindowActive(&other);
    Check(active && Edges_While(keys, 1000) == 1,
          "another window of ours: released once, repeats do not play");
    typist.Key(Z, false);
    QTest::qWait(20);
    typist.Key(Z, true);
    Check(Edges_While(keys, 100) == 1, "and it plays again from there");
    typist.Key(Z, false);
    std::printf("%d failed\n", failed);
    return failed;
}
