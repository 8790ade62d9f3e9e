#pragma once

#include "platform/key_state.h"
#include "platform/user_dialogs.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tonvex {

/// One key edge as callers get it.
struct Key_Edge {
    int Key = -1;          ///< key number, -1 for nothing: 0 to 255 computer key, 256 + n MIDI note n
    int Action = 0;        ///< 0 pressed, 1 released
    std::int64_t atNs = 0; ///< arrival, Millisecond_Counter time; 0 when not known
};

/// Shows keys as pressed where they are drawn. Interface thread.
class Key_Mark_Observer {
public:
    virtual ~Key_Mark_Observer() = default;
    virtual void On_Key_Mark(int scanCode, bool pressed) = 0;
    virtual void On_All_Marks_Off() = 0;
};

/// The computer keyboard: compares the state now with what was last reported. Interface thread.
/// Scan codes are 0 to 255; a call with any other is passed over.
class KeyboardClass {
public:
    KeyboardClass(Key_State_Door& keys, User_Dialogs& dialogs);

    /// Sets DirectInputOK; a failure shows its box and the program goes on with SetKeyState alone.
    void OpenInputDevice();
    static int GetKeyEventI(int key) noexcept { return key <= 255 ? key : 0; }
    /// Forgets what was reported, not what is down: a key still held gives a press. Always true.
    bool Initialize_Input();
    void SetKeyState(int scanCode, std::uint8_t value, std::int64_t atNs = 0);
    std::uint8_t GetKeyState(int scanCode) const;
    /// A press waits to be read. Nothing is consumed.
    bool Stop_WaitForKey() const;
    /// The edge of the lowest scan code that has one. Without any the device is read once and the result
    /// is empty; what that read brought comes with the next call.
    Key_Edge GetNewMessage();
    void ClearKeyState();
    void Close_Input();
    void CloseInputDevice();
    /// One device read, or one try to get a lost keyboard back.
    void PollDevice();
    /// PollDevice, unless an edge waits: reading over it would swallow a short press.
    void Poll_When_Idle();
    bool DirectInputOK() const noexcept { return directInputOk; }

    Key_Mark_Observer* marks = nullptr; ///< may be null; outlives its registration

private:
    static constexpr std::size_t KEYS = 256;
    enum class Edge_Kind { None, Press, Release };

    Edge_Kind Edge_Of(std::size_t key) const noexcept;

    Key_State_Door& keys;
    User_Dialogs& dialogs;
    Key_State KeyNow;
    std::array<std::uint8_t, KEYS> KeyPrev{};
    bool Acquired = false;
    bool directInputOk = false;
};

} // namespace tonvex
