#pragma once

#include "app/windows/frm_main.h"
#include "platform/qt/qt_key_state.h"
#include "platform/qt/qt_run_loop.h"
#include "support/test_session.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWindow>

#include <filesystem>
#include <memory>
#include <optional>

namespace tonvex {

/// A program of its own: real keys, rounds and clock, fakes for sound, MIDI, boxes and settings.
struct Program {
    /// place: the folder of an earlier program to start in again; empty for one of its own.
    explicit Program(const std::filesystem::path& place = {}) : home(place.empty() ? folder.Path() : place) {
        for (const char* key : {"config", "patterns", "templates", "temp", "projectsaudio"}) {
            std::filesystem::create_directories(home / key);
            paths.Set_Path(key, (home / key).string());
        }
        std::filesystem::copy(
            std::filesystem::path(TONVEX_SOURCE_DATA) / "keyboard", home / "config/keyboard",
            std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
        session.emplace(Session_Doors{sound, midi, keys, counter, loop, store, dialogs}, paths,
                        std::filesystem::path(TONVEX_SOURCE_DATA));
        if (!session->Load())
            qFatal("the session does not load");
        window = std::make_unique<frmMain>(*session, theme);
        keys.accept = [this](int scanCode) { return window->Key_Plays(scanCode); };
        window->show();
        if (!QTest::qWaitForWindowActive(window.get()))
            qFatal("the window is not active");
    }
    ~Program() { window.reset(); }

    int Events(int row) const { return session->channels->Store(row).GetTotalEvents() + 1; }
    const GlobalChannel& Channel(int row) const {
        return session->channels->Channels[static_cast<std::size_t>(row)];
    }
    QWidget* Focus() const {
        QWidget* focus = QApplication::focusWidget();
        return focus != nullptr ? focus : window.get();
    }
    /// A key as a user presses it, who is never as fast as a test after a dialog; comes back when the
    /// function that it runs, if any, has run.
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        session->keyRunner.KeysHoldTime = 0;
        QTest::keyClick(Focus(), key, modifiers);
        // A modifier pressed for the key is ignored when no key is noted behind it.
        if (!QTest::qWaitFor([this] {
                const int pending = session->keyRunner.PendingKey;
                return pending == 0 || pending == KEYCODE_SHIFT || pending == KEYCODE_CONTROL;
            }))
            qFatal("a key stays pending");
    }
    /// A key on the road from the window system: first offered to the shortcuts, then to the window.
    void Edge(QEvent::Type type, int scanCode, Qt::Key key) {
        const auto native = static_cast<quint32>(scanCode + 8);
        ++stamp;
        if (type == QEvent::KeyPress) {
            QKeyEvent offer(QEvent::ShortcutOverride, key, Qt::NoModifier, native, 0, 0);
            offer.setTimestamp(stamp);
            QApplication::sendEvent(window->windowHandle(), &offer);
        }
        QKeyEvent event(type, key, Qt::NoModifier, native, 0, 0);
        event.setTimestamp(stamp);
        QApplication::sendEvent(window->windowHandle(), &event);
    }

    Memory_Settings_Store themeStore;
    Theme theme{*qApp, themeStore};
    Temp_Folder folder;
    std::filesystem::path home;
    AppPaths_Class paths;
    Recorder_Sound_Door sound;
    Recorder_Midi_Ports midi;
    Monotonic_Counter counter;
    Qt_Key_State keys{counter};
    Qt_Run_Loop loop;
    Memory_Settings_Store store;
    Recorded_Dialogs dialogs;
    std::optional<Session> session;
    std::unique_ptr<frmMain> window;
    quint64 stamp = 0;
};

} // namespace tonvex
