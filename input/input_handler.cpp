#include "input/input_handler.h"

namespace tonvex {

InputHandler::InputHandler(KeyboardClass& computerKeys, MidiIn_Module& midiKeys)
    : keyboard(computerKeys), midiIn(midiKeys) {}

void InputHandler::Input_Open() {
    keyboard.OpenInputDevice();
}

bool InputHandler::Input_Select(int device) {
    InputDevice = device == KEYBOARD_AND_MIDI ? KEYBOARD_AND_MIDI : 0;
    const bool keyboardReady = keyboard.Initialize_Input();
    if (InputDevice == 0)
        return keyboardReady;
    return MidiInDevice != -1 && midiIn.MidiIn_Open(MidiInDevice).empty();
}

void InputHandler::Input_GetHeldKeys(std::array<std::int16_t, 1001>& held) const {
    const auto mark = [&held](int key) {
        held[static_cast<std::size_t>(KeyboardClass::GetKeyEventI(key))] = -1;
    };
    for (int key = 0; key < 256; ++key)
        if (keyboard.GetKeyState(key) != 0)
            mark(key);
    const auto notes = Held_Midi_Notes();
    for (std::size_t note = 0; note < notes.size(); ++note)
        if (notes[note])
            mark(256 + static_cast<int>(note));
}

std::array<bool, MidiIn_Module::NOTES> InputHandler::Held_Midi_Notes() const {
    std::array<bool, MidiIn_Module::NOTES> notes{};
    if (InputDevice == KEYBOARD_AND_MIDI)
        for (std::size_t note = 0; note < notes.size(); ++note)
            notes[note] = midiIn.Is_Down(static_cast<int>(note));
    return notes;
}

bool InputHandler::Input_KeyWaiting() const {
    return keyboard.Stop_WaitForKey() || (InputDevice == KEYBOARD_AND_MIDI && midiIn.MidiIn_KeyWaiting());
}

void InputHandler::Input_Poll() {
    keyboard.Poll_When_Idle();
    if (InputDevice == KEYBOARD_AND_MIDI)
        midiIn.Poll();
}

Key_Edge InputHandler::Input_GetNextEvent() {
    const Key_Edge edge = keyboard.GetNewMessage();
    // What was down on a MIDI keyboard that was left in the midst of a take has to end, too.
    if (edge.Key == -1 && (InputDevice == KEYBOARD_AND_MIDI || !midiIn.Is_Open()))
        return midiIn.MidiIn_GetNextEvent();
    return edge;
}

void InputHandler::Input_Close() {
    keyboard.Close_Input();
    if (InputDevice == KEYBOARD_AND_MIDI)
        midiIn.MidiIn_Close();
    midiIn.Clear_Reported();
}

void InputHandler::Input_Shutdown() {
    keyboard.CloseInputDevice();
}

} // namespace tonvex
