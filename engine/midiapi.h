#pragma once

#include "engine/midi_capture.h"
#include "platform/midi_ports.h"
#include "platform/millisecond_counter.h"
#include "platform/sound_door.h"
#include "platform/user_dialogs.h"
#include "song/global_channels_manager.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

class CueEngine;

/// A row of the output or input device list.
struct Device_Row {
    std::string Name;
    std::int32_t DeviceID = 0;
    std::uint8_t IsSynth = 0;
};

/// Hears every message that leaves for the output, in order. Interface thread.
class Output_Observer {
public:
    virtual ~Output_Observer() = default;
    /// slot is the output slot asked for (a port may mask it), -1 for AllNotesOff; a and b are the values
    /// as sent, 0 where the operation has none. What is dropped, or meets no open device, is not told.
    virtual void On_Output(Sound_Op op, int slot, int a, int b) = 0;
};

/// The single road from the program to sound: a MIDI port or the built-in synthesizer, by output channel
/// 0 to 31; other channels are refused. With a port, patch, pan and volume of channels above 15 are
/// dropped, all else is masked to 0 to 15. Values are kept within 0 to 127 on sending. Interface thread.
class midiapi {
public:
    static constexpr std::int32_t SYNTH_DEVICE = -1000;
    static constexpr std::int32_t NO_DEVICE = -1;
    static constexpr int MAX_DEVICES = 51;
    static constexpr std::int32_t MAX_BUFFER_MS = 5000;
    static constexpr std::int64_t DUE_NOW = 0; ///< dueNs: the moment of the call

    midiapi(Sound_Door& sound, Midi_Ports_Door& ports, User_Dialogs& dialogs,
            const Millisecond_Counter& counter, const GlobalChannelsManager& channels);

    /// The ports, then the synthesizer; at most MAX_DEVICES rows. Asks the system anew.
    std::vector<Device_Row> Output_Devices();
    /// The ports alone.
    std::vector<Device_Row> Input_Devices();
    /// Closes what is open and opens SYNTH_DEVICE or a port. False after a message box; the program then
    /// runs on silent. Afterwards the patch tables fit the device before: the caller has
    /// DLSListClass::Load_For_Output fill them and sends all patches.
    bool Midi_OpenDevice(std::int32_t deviceId);
    /// What still sounds on a port is silenced first.
    void Close();
    /// NO_DEVICE while nothing is open.
    std::int32_t CurrentDevice() const noexcept { return currentDevice; }
    bool UsingSynth() const noexcept { return usingSynth; }
    int UpdatePeriod() const noexcept { return updatePeriod; }

    std::int32_t Global_BASSBufferSize = 100; ///< ms; raised to what the device can do when it opens

    /// Nothing for a velocity of 0 and below.
    void Midi_NoteOn(int channel, int note, int velocity, std::int64_t dueNs = DUE_NOW);
    void Midi_NoteOff(int channel, int note, int velocity, std::int64_t dueNs = DUE_NOW);
    void Midi_SetPatch(int channel, int patch, int bank, std::int32_t font);
    void Midi_SetPan(int channel, int value);
    void Midi_SetVolume(int channel, int value);
    /// Effects are the synthesizer's alone: nothing with a port.
    void Midi_SetEffects(int channel, const Effect_Settings& settings);
    void Midi_AllNotesOff();
    void Midi_ChannelNotesOff(int channel);
    /// The font of the first used row of the patch table (or drum table) with this program and bank; 0
    /// when there is none.
    std::int32_t Midi_FindFont(bool isDrum, int patch, int bank) const;
    /// 0 to 127. A port has no master volume: the value is kept for the synthesizer.
    int Midi_GetMasterVolume() const;
    void Midi_SetMasterVolume(int value);
    /// Drum notes that ring: the hi-hats, crashes, rides, splash and china of the General MIDI kit.
    static bool Midi_IsCymbal(int note);

    /// While there is a capture, notes, patches, pans and volumes of all 32 slots go there and nowhere else,
    /// whether a device is open or not. Null to end; the capture outlives its registration.
    void Set_Capture(Midi_Capture* newCapture) noexcept { capture = newCapture; }
    bool MidiCaptureOn() const noexcept { return capture != nullptr; }

    /// Gives the player library the output that is open now.
    void Midi_PlayerOutput(CueEngine& engine);
    /// The player library's message has sounded: the observer hears it as any other.
    void Tell_Played(const Sound_Message& message);

    /// Null to end; the observer outlives its registration.
    void Set_Observer(Output_Observer* newObserver) noexcept { observer = newObserver; }
    Sound_Door& Sound() noexcept { return sound; }
    /// The last message as a word of its bytes, status lowest; a port gets its bytes, the synthesizer the
    /// order that they stand for.
    std::uint32_t LastShortMsg() const noexcept { return lastShortMsg; }

    /// Update period in ms for a buffer in ms: 10 up to 30, then 30 ms more for each 270 above.
    static int Update_Period_For(int bufferMs);

private:
    bool Open_Synth();
    bool Is_Open() const noexcept { return usingSynth || portOpen || MidiCaptureOn(); }
    /// Patch, pan and volume of the channel have somewhere to go.
    bool Reaches(int channel) const noexcept;
    void Short_Message(int status, int data1, int data2);
    /// Builds the short message and, with the synthesizer, posts the order. Channel and values checked.
    void Send(Sound_Op op, int channel, int a, int b, std::int32_t font, std::int64_t dueNs);
    void Tell(Sound_Op op, int slot, int a, int b);

    Sound_Door& sound;
    Midi_Ports_Door& ports;
    User_Dialogs& dialogs;
    const Millisecond_Counter& counter;
    const GlobalChannelsManager& channels;
    Output_Observer* observer = nullptr;
    Midi_Capture* capture = nullptr;
    std::int32_t currentDevice = NO_DEVICE;
    bool usingSynth = false;
    bool portOpen = false;
    int updatePeriod = 18;
    std::uint32_t lastShortMsg = 0;
};

/// The General MIDI names as the program spells them (some have blanks where a key cap breaks the line),
/// and "Standard" for the drum kit in row 128.
extern const std::array<const char*, 129> PatchNames;

} // namespace tonvex
