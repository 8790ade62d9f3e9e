// Checks the keyboard against a real X server: a key held down, a shortcut on a key that plays, a switch to
// another window; tests/manual/take_check.sh has the stamps while the window is busy. The exit code is the
// number of checks that failed. Run it by tests/manual/key_state_check.sh, which starts the server.

#include "manual/check.h"
#include "platform/millisecond_counter.h"
#include "platform/qt/qt_key_state.h"

#include <QApplication>
#include <QShortcut>
#include <QTest>
#include <QWidget>

#include <cstdio>
#include <dlfcn.h>
#include <string>

// Last: these headers define many common words as macros.
#include <X11/Xlib.h>

using namespace tonvex;

namespace {

constexpr unsigned Z = 52;
const Monotonic_Counter counter;

/// Types on the X server by a connection of its own.
class Typist {
public:
    Typist() : display(XOpenDisplay(nullptr)) {
        void* library = dlopen("libXtst.so.6", RTLD_NOW); // comes with xdotool
        if (library != nullptr)
            fake = reinterpret_cast<Fake_Key>(dlsym(library, "XTestFakeKeyEvent"));
    }
    bool Ready() const { return display != nullptr && fake != nullptr; }
    void Key(unsigned code, bool down) {
        fake(display, code, down ? 1 : 0, 0);
        XSync(display, 0);
    }

private:
    using Fake_Key = int (*)(Display*, unsigned, int, unsigned long);
    Display* display;
    Fake_Key fake = nullptr;
};

std::size_t Read_All(Qt_Key_State& keys) {
    static Key_State state;
    for (std::size_t edges = 0;; ++edges) {
        const Key_State before = state;
        keys.Read(state);
        if (before.down == state.down)
            return edges;
    }
}

std::size_t Edges_While(Qt_Key_State& keys, int ms) {
    std::size_t edges = 0;
    const std::int64_t end = counter.Now_Ns() + std::int64_t{ms} * 1'000'000;
    while (counter.Now_Ns() < end) {
        QTest::qWait(5);
        edges += Read_All(keys);
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
    Check(shortcuts == 1, "no shortcut took a key that plays");
    std::printf("%d failed\n", failed);
    return failed;
}
