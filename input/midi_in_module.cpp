#include "input/midi_in_module.h"

namespace tonvex {

namespace {

constexpr int FIRST_MIDI_KEY = 256;
constexpr std::uint8_t NOTE_OFF = 8;
constexpr std::uint8_t NOTE_ON = 9;

std::string Error_Name(Midi_Result result) {
    switch (result) {
    case Midi_Result::BadDevice:
        return "MMSYSERR_BADDEVICEID";
    case Midi_Result::Allocated:
        return "MMSYSERR_ALLOCATED";
    case Midi_Result::NoMemory:
        return "MMSYSERR_NOMEM";
    case Midi_Result::InvalidFlag:
        return "MMSYSERR_INVALFLAG";
    case Midi_Result::InvalidParameter:
        return "MMSYSERR_INVALPARAM";
    default:
        return "Unknown error";
    }
}

} // namespace

MidiIn_Module::MidiIn_Module(Midi_Ports_Door& midiPorts) : ports(midiPorts) {}

std::string MidiIn_Module::MidiIn_Open(std::int32_t deviceId) {
    MidiNow.fill(0);
    MidiPrev.fill(0);
    MidiIn_Close();
    const Midi_Result result = ports.Open_Input(deviceId);
    if (result != Midi_Result::Ok) {
        ports.Close_Input();
        return Error_Name(result);
    }
    MidiInOpened = true;
    openDevice = deviceId;
    portGone = false;
    return {};
}

void MidiIn_Module::MidiIn_Close() {
    if (MidiInOpened)
        ports.Close_Input();
    MidiInOpened = false;
    // What is down on a keyboard that is left is let go, now.
    MidiNow.fill(0);
    changedAtNs.fill(0);
}

void MidiIn_Module::Take_In(const Midi_In_Message& message) {
    const auto kind = static_cast<std::uint8_t>(message.status >> 4);
    const std::size_t note = message.data1;
    if ((kind != NOTE_OFF && kind != NOTE_ON) || note >= MidiNow.size())
        return;
    const bool down = kind == NOTE_ON && message.data2 > 0;
    // The touch is handed out before the edge: whoever reads the edge finds it in place.
    if (down && onVelocity)
        onVelocity(static_cast<int>(note), message.data2);
    if (down == (MidiNow[note] != 0))
        return;
    MidiNow[note] = down ? 1 : 0;
    changedAtNs[note] = message.arrivedNs;
}

int MidiIn_Module::Waiting_Note() const noexcept {
    for (std::size_t note = 0; note < MidiNow.size(); ++note)
        if (MidiNow[note] != MidiPrev[note])
            return static_cast<int>(note);
    return -1;
}

void MidiIn_Module::Poll() {
    if (!MidiInOpened)
        return;
    Midi_In_Message message;
    while (Waiting_Note() < 0 && ports.Take_Input(message))
        Take_In(message);
    if (Waiting_Note() < 0)
        Follow_Port();
}

void MidiIn_Module::Follow_Port() {
    const bool alive = ports.Input_Alive();
    if (alive && portGone) {
        portGone = ports.Open_Input(openDevice) != Midi_Result::Ok;
    } else if (!alive && !portGone) {
        portGone = true;
        MidiNow.fill(0);
        changedAtNs.fill(0);
    }
}

Key_Edge MidiIn_Module::MidiIn_GetNextEvent() {
    Poll();
    const int waiting = Waiting_Note();
    if (waiting < 0)
        return {};
    const auto note = static_cast<std::size_t>(waiting);
    MidiPrev[note] = MidiNow[note];
    return {FIRST_MIDI_KEY + waiting, MidiNow[note] != 0 ? 0 : 1, changedAtNs[note]};
}

bool MidiIn_Module::MidiIn_KeyWaiting() const {
    for (std::size_t note = 0; note < MidiNow.size(); ++note)
        if (MidiNow[note] != 0 && MidiPrev[note] == 0)
            return true;
    return false;
}

bool MidiIn_Module::Is_Down(int note) const {
    return note >= 0 && note < NOTES && MidiNow[static_cast<std::size_t>(note)] != 0;
}

void MidiIn_Module::Clear_Reported() {
    MidiPrev.fill(0);
}

} // namespace tonvex
