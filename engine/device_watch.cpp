#include "engine/device_watch.h"

#include "base/text_codec.h"

#include <algorithm>

namespace tonvex {

namespace {

std::string Quoted(const std::string& name) {
    return name.empty() ? std::string() : " \"" + name + "\"";
}

} // namespace

Device_Watch::Device_Watch(midiapi& outputApi, Midi_Ports_Door& portsDoor)
    : output(outputApi), ports(portsDoor) {}

void Device_Watch::Check_Sound(const Sound_Status& sound, Device_News& news) {
    Sound_State now = Sound_State::Fine;
    if (output.UsingSynth() && sound.deviceLost)
        now = Sound_State::Lost;
    else if (output.UsingSynth() && sound.quiet)
        now = Sound_State::Absent;
    if (now != soundState && now == Sound_State::Lost)
        news.losses.push_back({Watched_Device::Sound, "The sound device" + Quoted(sound.deviceName) +
                                                          " has gone. Everything goes on in silence."});
    if (now != soundState && now == Sound_State::Absent)
        news.losses.push_back(
            {Watched_Device::Sound, "No sound device was found. Everything goes on in silence."});
    soundState = now;
}

bool Device_Watch::Port_Went(Watched_Port& port, std::int32_t id, bool alive) {
    const bool went = id != midiapi::NO_DEVICE && port.alive && !alive;
    port.alive = alive;
    return went;
}

void Device_Watch::Follow(Watched_Port& port, std::int32_t id, bool portsChanged, bool isOutput) {
    if (id == port.id && !portsChanged)
        return; // asking the system for its ports costs something
    if (id != port.id)
        port = {id, {}, true};
    if (id == midiapi::NO_DEVICE)
        return;
    for (const Midi_Port& listed : isOutput ? ports.Output_Ports() : ports.Input_Ports())
        if (listed.id == id)
            port.name = Trim(listed.name);
}

Device_News Device_Watch::Check(const Sound_Status& sound, std::int32_t openInput) {
    Device_News news;
    news.portsChanged = ports.Ports_Changed();
    Check_Sound(sound, news);
    const std::int32_t openOutput = output.UsingSynth() ? midiapi::NO_DEVICE : output.CurrentDevice();
    Follow(outputPort, openOutput, news.portsChanged, true);
    Follow(inputPort, openInput, news.portsChanged, false);
    if (Port_Went(outputPort, openOutput, ports.Output_Alive()))
        news.losses.push_back({Watched_Device::Midi_Output, "The MIDI output" + Quoted(outputPort.name) +
                                                                " has gone. Everything goes on in silence."});
    if (Port_Went(inputPort, openInput, ports.Input_Alive()))
        news.losses.push_back(
            {Watched_Device::Midi_Input,
             "The MIDI keyboard" + Quoted(inputPort.name) + " has gone. The computer keyboard still plays."});
    return news;
}

std::int32_t Device_Watch::Device_To_Reopen(Watched_Device device) {
    if (device == Watched_Device::Sound)
        return midiapi::SYNTH_DEVICE;
    const bool isOutput = device == Watched_Device::Midi_Output;
    const std::string& name = isOutput ? outputPort.name : inputPort.name;
    const std::vector<Midi_Port> listed = isOutput ? ports.Output_Ports() : ports.Input_Ports();
    const auto row = std::find_if(listed.begin(), listed.end(),
                                  [&](const Midi_Port& port) { return Trim(port.name) == name; });
    return row == listed.end() ? midiapi::NO_DEVICE : row->id;
}

} // namespace tonvex
