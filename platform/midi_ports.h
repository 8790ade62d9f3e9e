#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tonvex {

/// One message that came in, stamped on arrival.
struct Midi_In_Message {
    std::int64_t arrivedNs = 0; ///< Millisecond_Counter time
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
};

struct Midi_Port {
    std::string name;
    std::int32_t id = 0; ///< stable while the program runs and the port stays; 0 and up
};

/// MIDI ports of the machine. Interface thread, but for the queue that the MIDI thread fills.
/// The results of opening are the codes of Midi_Result.
enum class Midi_Result {
    Ok = 0,
    BadDevice = 2,
    Allocated = 4,
    NoMemory = 7,
    InvalidFlag = 10,
    InvalidParameter = 11,
    Other = 1
};

class Midi_Ports_Door {
public:
    virtual ~Midi_Ports_Door() = default;
    /// The ports there now; asks the system anew.
    virtual std::vector<Midi_Port> Input_Ports() = 0;
    virtual std::vector<Midi_Port> Output_Ports() = 0;

    virtual Midi_Result Open_Input(std::int32_t portId) = 0;
    virtual void Close_Input() = 0;
    /// Oldest message not yet taken; false when there is none. Messages that found the queue full are
    /// counted by Dropped_Inputs.
    virtual bool Take_Input(Midi_In_Message& message) = 0;
    virtual std::uint64_t Dropped_Inputs() const = 0;

    virtual Midi_Result Open_Output(std::int32_t portId) = 0;
    virtual void Close_Output() = 0;
    /// A short message of 1 to 3 bytes. Silent when no output is open or the port has gone. The player thread
    /// may call it as well.
    virtual void Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) = 0;

    /// True once after ports came or went since the last call; called about twice a second by the owner. A
    /// sound server that comes up may show here up to a minute later, at the next look at the ports
    /// themselves at once.
    virtual bool Ports_Changed() = 0;
    /// The open input (output) is still among the ports.
    virtual bool Input_Alive() = 0;
    virtual bool Output_Alive() = 0;
};

} // namespace tonvex
