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
    /// 0 keyboard, 1 keyboard and MIDI; any other number counts as 0.
    /// False when the MIDI device cannot be opened or there is none.
    bool Input_Select(int device);
    /// Sets held[key] to -1 for each key that is down; every held MIDI note marks element 0.
    void Input_GetHeldKeys(std::array<std::int16_t, 1001>& held) const;
    /// The MIDI notes that are down, which Input_GetHeldKeys folds away. None with device 0.
    std::array<bool, MidiIn_Module::NOTES> Held_Midi_Notes() const;
    bool Input_KeyWaiting() const;
    /// Brings the device states up to date without reading an edge; whoever waits with Input_KeyWaiting
    /// calls it once a round. An edge that waits to be read stays.
    void Input_Poll();
    /// At most one edge. The computer keyboard comes before MIDI.
    Key_Edge Input_GetNextEvent();
    void Input_Close();
    void Input_Shutdown();

    int InputDevice = 0;
    std::int32_t MidiInDevice = -1; ///< setting Global_MidiSetup_InDevice
    std::array<std::string, 2> InputDevices{"Keyboard", "Midi Input"};

    KeyboardClass& Keyboard() noexcept { return keyboard; }
    MidiIn_Module& MidiIn() noexcept { return midiIn; }

private:
    static constexpr int KEYBOARD_AND_MIDI = 1;

    KeyboardClass& keyboard;
    MidiIn_Module& midiIn;
};

} // namespace tonvex
