#include "input/keyboard_class.h"

namespace tonvex {

KeyboardClass::KeyboardClass(Key_State_Door& keyState, User_Dialogs& userDialogs)
    : keys(keyState), dialogs(userDialogs) {}

void KeyboardClass::OpenInputDevice() {
    directInputOk = keys.Open();
    if (!directInputOk)
        dialogs.Show_Message(Box_Kind::Critical,
                             "Error initializing Keyboard Input\nSome keys will be disabled");
}

bool KeyboardClass::Initialize_Input() {
    KeyPrev.fill(0);
    return true;
}

void KeyboardClass::SetKeyState(int scanCode, std::uint8_t value, std::int64_t atNs) {
    if (scanCode < 0 || scanCode >= static_cast<int>(KEYS))
        return;
    const auto key = static_cast<std::size_t>(scanCode);
    // A repeat of a held key must not move the moment of its press.
    if ((KeyNow.down[key] != 0) != (value != 0))
        KeyNow.changedAtNs[key] = atNs;
    KeyNow.down[key] = value;
}

std::uint8_t KeyboardClass::GetKeyState(int scanCode) const {
    if (scanCode < 0 || scanCode >= static_cast<int>(KEYS))
        return 0;
    return KeyNow.down[static_cast<std::size_t>(scanCode)];
}

KeyboardClass::Edge_Kind KeyboardClass::Edge_Of(std::size_t key) const noexcept {
    const bool isDown = KeyNow.down[key] != 0;
    const bool wasDown = KeyPrev[key] != 0;
    if (isDown == wasDown)
        return Edge_Kind::None;
    return isDown ? Edge_Kind::Press : Edge_Kind::Release;
}

bool KeyboardClass::Stop_WaitForKey() const {
    for (std::size_t key = 0; key < KEYS; ++key)
        if (Edge_Of(key) == Edge_Kind::Press)
            return true;
    return false;
}

Key_Edge KeyboardClass::GetNewMessage() {
    for (std::size_t key = 0; key < KEYS; ++key) {
        const Edge_Kind edge = Edge_Of(key);
        if (edge == Edge_Kind::None)
            continue;
        const bool pressed = edge == Edge_Kind::Press;
        KeyPrev[key] = pressed ? 1 : 0;
        if (marks != nullptr)
            marks->On_Key_Mark(static_cast<int>(key), pressed);
        return {GetKeyEventI(static_cast<int>(key)), pressed ? 0 : 1, KeyNow.changedAtNs[key]};
    }
    PollDevice();
    return {};
}

void KeyboardClass::ClearKeyState() {
    KeyNow = {};
    KeyPrev.fill(0);
}

void KeyboardClass::Close_Input() {
    keys.Release();
    Acquired = false;
    if (marks != nullptr)
        marks->On_All_Marks_Off();
    ClearKeyState();
}

void KeyboardClass::CloseInputDevice() {
    keys.Close();
    Acquired = false;
    directInputOk = false;
}

void KeyboardClass::PollDevice() {
    if (!directInputOk)
        return;
    if (Acquired && !keys.Read(KeyNow)) {
        Acquired = false;
        keys.Release();
    }
    if (!Acquired)
        Acquired = keys.Acquire();
}

void KeyboardClass::Poll_When_Idle() {
    for (std::size_t key = 0; key < KEYS; ++key)
        if (Edge_Of(key) != Edge_Kind::None)
            return;
    PollDevice();
}

} // namespace tonvex
