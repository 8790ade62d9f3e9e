#pragma once

#include "platform/midi_ports.h"
#include "platform/sound_door.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

/// A sound door that keeps what it is given, in order, and sounds nothing.
class Recorder_Sound_Door final : public Sound_Door {
public:
    std::vector<Sound_Message> posted;                        ///< of both senders, in order
    std::vector<Sound_Request> opened;                        ///< one a call of Open
    std::vector<std::vector<std::filesystem::path>> fontSets; ///< one a call of Set_Fonts
    std::vector<std::filesystem::path> unloadable;            ///< Set_Fonts gives 0 for these
    float amplification = 0.0F;                               ///< as last set
    std::array<Effect_Settings, OUTPUT_SLOTS> effects;        ///< as last set
    std::vector<int> effectsSet;                              ///< slots, one a call of Set_Effects
    std::string openError;                                    ///< not empty: Open fails with this text
    int minimumBufferMs = 6;
    Sound_Status status; ///< what Status gives; open follows Open and Close

    bool Open(const Sound_Request& request, std::string& error) override {
        opened.push_back(request);
        error = openError;
        status.open = openError.empty();
        return status.open;
    }
    void Close() override { status.open = false; }
    Sound_Status Status() override { return status; }
    int Minimum_Buffer_Ms() const override { return minimumBufferMs; }
    bool Post(const Sound_Message& message) noexcept override {
        posted.push_back(message);
        return true;
    }
    bool Post_From_Player(const Sound_Message& message) noexcept override { return Post(message); }
    bool Take_Back_From_Player(std::int64_t) noexcept override { return true; }
    /// Handles rise over all calls: the first font ever given has 1.
    std::vector<std::int32_t> Set_Fonts(const std::vector<std::filesystem::path>& paths) override {
        fontSets.push_back(paths);
        std::vector<std::int32_t> handles;
        for (const auto& path : paths) {
            const bool bad = std::find(unloadable.begin(), unloadable.end(), path) != unloadable.end();
            handles.push_back(bad ? 0 : ++lastHandle);
        }
        return handles;
    }
    void Set_Effects(int slot, const Effect_Settings& settings) noexcept override {
        effects[static_cast<std::size_t>(slot)] = settings;
        effectsSet.push_back(slot);
    }
    void Set_Master_Volume(int value) noexcept override { masterVolume = value; }
    int Master_Volume() const noexcept override { return masterVolume; }
    void Set_Amplification(float factor) noexcept override { amplification = factor; }
    float Slot_Peak(int) noexcept override { return 0.0F; }

private:
    std::int32_t lastHandle = 0;
    int masterVolume = 127;
};

/// How many of the messages are of that kind, slot and note or value.
inline int Count(const std::vector<Sound_Message>& messages, Sound_Op op, int slot, int a) {
    return static_cast<int>(std::count_if(messages.begin(), messages.end(), [&](const Sound_Message& m) {
        return m.op == op && m.slot == slot && m.a == a;
    }));
}

/// MIDI ports that exist by decree: what is sent is kept, what is to come in is put into incoming.
class Recorder_Midi_Ports final : public Midi_Ports_Door {
public:
    struct Short_Message {
        int status;
        int data1;
        int data2;
        bool operator==(const Short_Message&) const = default;
    };
    std::vector<Midi_Port> inputs;
    std::vector<Midi_Port> outputs;
    std::deque<Midi_In_Message> incoming; ///< taken only while an input is open
    std::vector<Short_Message> sent;      ///< only what was sent while an output was open
    std::int32_t openInput = -1;          ///< port ID, -1 none
    std::int32_t openOutput = -1;
    Midi_Result openResult = Midi_Result::Ok; ///< what opening a port that exists gives
    bool portsChanged = false;

    std::vector<Midi_Port> Input_Ports() override { return inputs; }
    std::vector<Midi_Port> Output_Ports() override { return outputs; }
    Midi_Result Open_Input(std::int32_t portId) override { return Open(inputs, portId, openInput); }
    void Close_Input() override { openInput = -1; }
    bool Take_Input(Midi_In_Message& message) override {
        if (openInput < 0 || incoming.empty())
            return false;
        message = incoming.front();
        incoming.pop_front();
        return true;
    }
    std::uint64_t Dropped_Inputs() const override { return 0; }
    Midi_Result Open_Output(std::int32_t portId) override { return Open(outputs, portId, openOutput); }
    void Close_Output() override { openOutput = -1; }
    void Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override {
        if (openOutput >= 0)
            sent.push_back({status, data1, data2});
    }
    bool Ports_Changed() override { return std::exchange(portsChanged, false); }
    bool Input_Alive() override { return Has(inputs, openInput); }
    bool Output_Alive() override { return Has(outputs, openOutput); }

private:
    static bool Has(const std::vector<Midi_Port>& ports, std::int32_t id) {
        return std::any_of(ports.begin(), ports.end(), [id](const Midi_Port& port) { return port.id == id; });
    }
    Midi_Result Open(const std::vector<Midi_Port>& ports, std::int32_t id, std::int32_t& open) const {
        if (!Has(ports, id))
            return Midi_Result::BadDevice;
        if (openResult == Midi_Result::Ok)
            open = id;
        return openResult;
    }
};

} // namespace tonvex
