#pragma once

#include "input/keyboard_class.h"
#include "input/midi_in_module.h"

#include <array>
#include <string>

namespace tonvex {

/// The one stream of key edges that the rest of the program reads. Interface thread.
class InputHandler {
public:
    InputHandler(KeyboardClass& keyboard, MidiIn_Module& midiIn);

    void Input_Open();
    /// 0 keyboard, 1 keyboard and MIDI. False when the MIDI device cannot be opened or there is none.
    bool Input_Select(int device);
    /// Marks held[key] for each key that is down; every held MIDI note marks element 0.
    void Input_GetHeldKeys(std::array<std::int16_t, 1001>& held) const;
    /// The MIDI notes that are down, which Input_GetHeldKeys folds away.
    std::array<bool, MidiIn_Module::NOTES> Held_Midi_Notes() const;
    bool Input_KeyWaiting() const;
    /// Brings the device states up to date without reading an edge.
    void Input_Poll();
    Key_Edge Input_GetNextEvent();
    void Input_Close();
    void Input_Shutdown();

    int InputDevice = 0;
    std::int32_t MidiInDevice = -1; ///< setting Global_MidiSetup_InDevice
    std::array<std::string, 2> InputDevices{"Keyboard", "Midi Input"};

    KeyboardClass& Keyboard() noexcept { return keyboard; }
    MidiIn_Module& MidiIn() noexcept { return midiIn; }

private:
    KeyboardClass& keyboard;
    MidiIn_Module& midiIn;
};

} // namespace tonvex
