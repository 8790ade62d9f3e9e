#pragma once

#include "platform/key_state.h"
#include "platform/millisecond_counter.h"
#include "platform/qt/event_clock.h"

#include <QObject>

#include <array>
#include <cstdint>
#include <deque>
#include <functional>

class QKeyEvent;

namespace tonvex {

/// The computer keyboard out of the window system's key events, for all windows of the program.
/// Each edge is stamped with its arrival and queued; Read shows one a call. A repeat is no edge. When the
/// window or the program loses the keyboard or a modal dialog opens, every key that plays is released,
/// since its release may never be told.
///
/// While acquired, a key plays and reaches no widget or shortcut, when
/// - accept takes its scan code,
/// - neither Ctrl, Alt nor the Windows key is held with it,
/// - no modal dialog and no menu is open, and
/// - the focus is not in a field where text is written.
/// The release of a key that plays is always taken. All other keys go their usual way.
/// Interface thread.
class Qt_Key_State final : public QObject, public Key_State_Door {
    Q_OBJECT
public:
    explicit Qt_Key_State(const Millisecond_Counter& counter);
    ~Qt_Key_State() override;

    /// False without a QGuiApplication.
    bool Open() override;
    void Close() override;
    /// Keys that were pressed to play and are still held show as pressed now.
    bool Acquire() override;
    void Release() override;
    bool Read(Key_State& state) override;

    /// Which scan codes play; empty: all that there are.
    std::function<bool(int scanCode)> accept;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    /// What a key does physically, whether it plays or not.
    enum class Held : std::uint8_t {
        Up,
        Announced, ///< offered to the shortcuts; the press itself follows, unless one takes it
        Down,
        DownToPlay ///< pressed where a key plays
    };
    struct Edge {
        std::int64_t atNs;
        std::uint8_t scanCode;
        bool down;
    };

    bool Would_Play(std::uint8_t scanCode, const QKeyEvent& event) const;
    bool On_Shortcut_Override(std::uint8_t scanCode, QKeyEvent& event);
    bool On_Press(std::uint8_t scanCode, const QKeyEvent& event);
    bool On_Release(std::uint8_t scanCode, const QKeyEvent& event);
    void Queue_Edge(std::uint8_t scanCode, bool down, std::int64_t atNs);
    void Release_Playing_Keys();
    void Forget_Held_Keys();
    std::int64_t Moment_Of(const QKeyEvent& event);

    const Millisecond_Counter& counter;
    Event_Clock eventClock;
    bool isOpen = false;
    bool acquired = false;
    std::array<Held, 256> held{};
    std::array<std::uint64_t, 256> announcedAt{}; ///< event time of the announcement
    std::array<bool, 256> playing{};
    std::deque<Edge> queue;
};

} // namespace tonvex
