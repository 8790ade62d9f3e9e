#include "engine/midiapi.h"

#include "base/rounding.h"
#include "base/text_codec.h"
#include "engine/cue_engine.h"
#include "engine/short_messages.h"

#include <algorithm>
#include <span>

namespace tonvex {

namespace {

constexpr std::int64_t NS_PER_S = 1'000'000'000;

constexpr std::array<int, 10> CYMBALS = {42, 44, 46, 49, 51, 52, 53, 55, 57, 59};

int In_Range(int value) {
    return std::clamp(value, 0, 127);
}

bool Is_Slot(int channel) {
    return channel >= 0 && channel < OUTPUT_SLOTS;
}

std::vector<Device_Row> Port_Rows(const std::vector<Midi_Port>& found, int limit) {
    std::vector<Device_Row> rows;
    for (const Midi_Port& port : found) {
        if (static_cast<int>(rows.size()) == limit)
            break;
        rows.push_back({Trim(port.name), port.id, 0});
    }
    return rows;
}

} // namespace

midiapi::midiapi(Sound_Door& soundDoor, Midi_Ports_Door& portsDoor, User_Dialogs& userDialogs,
                 const Millisecond_Counter& clock, const GlobalChannelsManager& channelTable)
    : sound(soundDoor), ports(portsDoor), dialogs(userDialogs), counter(clock), channels(channelTable) {}

std::vector<Device_Row> midiapi::Output_Devices() {
    std::vector<Device_Row> rows = Port_Rows(ports.Output_Ports(), MAX_DEVICES - 1);
    rows.push_back({"SoundFont synthesizer", SYNTH_DEVICE, 1});
    return rows;
}

std::vector<Device_Row> midiapi::Input_Devices() {
    return Port_Rows(ports.Input_Ports(), MAX_DEVICES);
}

int midiapi::Update_Period_For(int bufferMs) {
    if (bufferMs <= 30)
        return 10;
    const double bounded = std::min<double>(bufferMs, MAX_BUFFER_MS);
    return static_cast<int>(RoundHalfEven((bounded - 30.0) * 30.0 / 270.0 + 10.0));
}

bool midiapi::Midi_OpenDevice(std::int32_t deviceId) {
    Close();
    if (deviceId == SYNTH_DEVICE)
        return Open_Synth();
    if (ports.Open_Output(deviceId) != Midi_Result::Ok) {
        dialogs.Show_Message(Box_Kind::Warning,
                             "Can't open Output device\nTry configuring the Output device");
        return false;
    }
    portOpen = true;
    currentDevice = deviceId;
    return true;
}

bool midiapi::Open_Synth() {
    Global_BASSBufferSize = std::clamp(Global_BASSBufferSize, 1, MAX_BUFFER_MS);
    updatePeriod = Update_Period_For(Global_BASSBufferSize);
    std::string reason;
    if (!sound.Open({Global_BASSBufferSize, updatePeriod}, reason)) {
        dialogs.Show_Message(Box_Kind::Warning, "Can't initialize device: \n" + reason);
        return false;
    }
    Global_BASSBufferSize = std::max(Global_BASSBufferSize, sound.Minimum_Buffer_Ms() + updatePeriod);
    usingSynth = true;
    currentDevice = SYNTH_DEVICE;
    return true;
}

void midiapi::Close() {
    if (usingSynth)
        sound.Close();
    if (portOpen) {
        Midi_AllNotesOff();
        ports.Close_Output();
    }
    usingSynth = false;
    portOpen = false;
    currentDevice = NO_DEVICE;
}

void midiapi::Short_Message(int status, int data1, int data2) {
    lastShortMsg = static_cast<std::uint32_t>(status + data1 * 256 + data2 * 65536);
    if (portOpen)
        ports.Send(static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                   static_cast<std::uint8_t>(data2));
}

void midiapi::Tell(Sound_Op op, int slot, int a, int b) {
    if (observer != nullptr)
        observer->On_Output(op, slot, a, b);
}

void midiapi::Send(Sound_Op op, int channel, int a, int b, std::int32_t font, std::int64_t dueNs) {
    if (capture != nullptr) {
        if (op != Sound_Op::AllNotesOff && op != Sound_Op::ChannelNotesOff)
            capture->Take(op, channel, a, b);
        return;
    }
    Each_Short_Message(op, channel, a, b,
                       [this](int status, int data1, int data2) { Short_Message(status, data1, data2); });
    if (usingSynth) {
        Sound_Message message;
        message.dueNs = dueNs == DUE_NOW ? counter.Now_Ns() : dueNs;
        message.op = op;
        message.slot = static_cast<std::uint8_t>(channel);
        message.a = static_cast<std::uint8_t>(a);
        message.b = static_cast<std::uint8_t>(b);
        message.font = font;
        if (!sound.Post(message))
            return;
    }
    Tell(op, op == Sound_Op::AllNotesOff ? -1 : channel, a, b);
}

void midiapi::Midi_NoteOn(int channel, int note, int velocity, std::int64_t dueNs) {
    // With a velocity of 0 the message would be the end of a note.
    if (Is_Open() && Is_Slot(channel) && velocity > 0)
        Send(Sound_Op::NoteOn, channel, In_Range(note), In_Range(velocity), 0, dueNs);
}

void midiapi::Midi_NoteOff(int channel, int note, int velocity, std::int64_t dueNs) {
    if (Is_Open() && Is_Slot(channel))
        Send(Sound_Op::NoteOff, channel, In_Range(note), In_Range(velocity), 0, dueNs);
}

void midiapi::Midi_SetPatch(int channel, int patch, int bank, std::int32_t font) {
    if (Reaches(channel))
        Send(Sound_Op::Patch, channel, In_Range(patch), In_Range(bank), font, DUE_NOW);
}

void midiapi::Midi_SetPan(int channel, int value) {
    if (Reaches(channel))
        Send(Sound_Op::Pan, channel, In_Range(value), 0, 0, DUE_NOW);
}

void midiapi::Midi_SetVolume(int channel, int value) {
    if (Reaches(channel))
        Send(Sound_Op::Volume, channel, In_Range(value), 0, 0, DUE_NOW);
}

void midiapi::Midi_SetEffects(int channel, const Effect_Settings& settings) {
    if (usingSynth && Is_Slot(channel))
        sound.Set_Effects(channel, settings);
}

bool midiapi::Reaches(int channel) const noexcept {
    return Is_Slot(channel) && (usingSynth || MidiCaptureOn() || (portOpen && channel < PORT_CHANNELS));
}

void midiapi::Midi_AllNotesOff() {
    if (Is_Open())
        Send(Sound_Op::AllNotesOff, 0, 0, 0, 0, DUE_NOW);
}

void midiapi::Midi_ChannelNotesOff(int channel) {
    if (Is_Open() && Is_Slot(channel))
        Send(Sound_Op::ChannelNotesOff, channel, 0, 0, 0, DUE_NOW);
}

void midiapi::Midi_PlayerOutput(CueEngine& engine) {
    std::int64_t blockNs = 0;
    if (usingSynth) {
        const Sound_Status status = sound.Status();
        if (status.sampleRate > 0)
            blockNs = NS_PER_S * status.blockFrames / status.sampleRate;
    }
    engine.Init_SetOutput(usingSynth, blockNs);
}

void midiapi::Tell_Played(const Sound_Message& message) {
    if (message.op == Sound_Op::Patch ? Reaches(message.slot) : Is_Open())
        Tell(message.op, message.slot, message.a, message.b);
}

std::int32_t midiapi::Midi_FindFont(bool isDrum, int patch, int bank) const {
    const auto font = [&](std::span<const PatchRow> rows) {
        const auto found = std::find_if(rows.begin(), rows.end(), [&](const PatchRow& row) {
            return row.Patch == patch && row.Bank == bank;
        });
        return found == rows.end() ? 0 : found->Font;
    };
    if (isDrum)
        return font(
            std::span(channels.Global_DrumPatches).first(static_cast<std::size_t>(channels.DrumPatchCount)));
    return font(std::span(channels.Global_Patches).first(static_cast<std::size_t>(channels.PatchCount)));
}

int midiapi::Midi_GetMasterVolume() const {
    return sound.Master_Volume();
}

void midiapi::Midi_SetMasterVolume(int value) {
    sound.Set_Master_Volume(In_Range(value));
}

bool midiapi::Midi_IsCymbal(int note) {
    return std::find(CYMBALS.begin(), CYMBALS.end(), note) != CYMBALS.end();
}

} // namespace tonvex
