#pragma once

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
    /// b is 0 where the operation has one value; all slots for AllNotesOff (slot -1).
    virtual void On_Output(Sound_Op op, int slot, int a, int b) = 0;
};

/// The single road from the program to sound: a MIDI port or the built-in synthesizer, by output channel
/// 0 to 31. With a port, patch, pan and volume of channels above 15 are dropped, all else is masked to 0
/// to 15. Values are kept within 0 to 127 on sending. Interface thread.
class midiapi {
public:
    static constexpr std::int32_t SYNTH_DEVICE = -1000;
    static constexpr std::int32_t NO_DEVICE = -1;
    static constexpr int MAX_DEVICES = 51;
    static constexpr std::int64_t DUE_NOW = 0; ///< dueNs: the moment of the call

    midiapi(Sound_Door& sound, Midi_Ports_Door& ports, User_Dialogs& dialogs,
            const Millisecond_Counter& counter, const GlobalChannelsManager& channels);

    std::vector<Device_Row> Output_Devices();
    std::vector<Device_Row> Input_Devices();
    /// False after a message box; the program then runs on silent.
    bool Midi_OpenDevice(std::int32_t deviceId);
    void Close();
    std::int32_t CurrentDevice() const noexcept { return currentDevice; }
    bool UsingSynth() const noexcept { return usingSynth; }
    int UpdatePeriod() const noexcept { return updatePeriod; }

    std::int32_t Global_BASSBufferSize = 100; ///< ms; raised to what the device can do when it opens

    void Midi_NoteOn(int channel, int note, int velocity, std::int64_t dueNs = DUE_NOW);
    void Midi_NoteOff(int channel, int note, int velocity, std::int64_t dueNs = DUE_NOW);
    void Midi_SetPatch(int channel, int patch, int bank, std::int32_t font);
    void Midi_SetPan(int channel, int value);
    void Midi_SetVolume(int channel, int value);
    void Midi_AllNotesOff();
    void Midi_ChannelNotesOff(int channel);
    std::int32_t Midi_FindFont(bool isDrum, int patch, int bank) const;
    int Midi_GetMasterVolume() const;
    void Midi_SetMasterVolume(int value);
    static bool Midi_IsCymbal(int note);

    /// Null to end; the observer outlives its registration.
    void Set_Observer(Output_Observer* newObserver) noexcept { observer = newObserver; }
    Sound_Door& Sound() noexcept { return sound; }
    std::uint32_t LastShortMsg() const noexcept { return lastShortMsg; }

    /// Update period in ms for a buffer in ms: 10 up to 30, then 30 ms more for each 270 above.
    static int Update_Period_For(int bufferMs);

private:
    Sound_Door& sound;
    Midi_Ports_Door& ports;
    User_Dialogs& dialogs;
    const Millisecond_Counter& counter;
    const GlobalChannelsManager& channels;
    Output_Observer* observer = nullptr;
    std::int32_t currentDevice = NO_DEVICE;
    bool usingSynth = false;
    bool portOpen = false;
    int updatePeriod = 18;
    std::uint32_t lastShortMsg = 0;
};

/// The General MIDI names as the program spells them, and "Standard" for the drum kit in row 128.
extern const std::array<const char*, 129> PatchNames;

} // namespace tonvex
