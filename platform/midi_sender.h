#pragma once

#include "platform/jack_link.h"

#include <boost/lockfree/queue.hpp>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <semaphore>
#include <thread>

class RtMidiOut;

namespace tonvex {

/// Hands short messages to one open output port on a thread of its own: a port whose server hangs or has
/// died would hold up whoever sends to it. Send belongs to any thread, the port to the sender.
class Midi_Sender {
public:
    /// link: the JACK server that the port belongs to, null with another API.
    Midi_Sender(std::unique_ptr<RtMidiOut> openPort, std::shared_ptr<Jack_Link> link);
    /// Waits for the thread, which first sends what is queued, unless the port takes nothing any more.
    /// The port of a server that has gone is abandoned (see Jack_Link).
    ~Midi_Sender();
    Midi_Sender(const Midi_Sender&) = delete;
    Midi_Sender& operator=(const Midi_Sender&) = delete;

    /// False when the queue is full: the message is dropped.
    bool Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) noexcept;

private:
    using Short_Message = std::array<std::uint8_t, 3>;

    void Work();
    bool Wait_For_Room();
    /// Closing a JACK port drops what its reader has not yet got.
    void Let_Last_Message_Out();

    std::unique_ptr<RtMidiOut> port;
    std::shared_ptr<Jack_Link> jack;
    boost::lockfree::queue<Short_Message, boost::lockfree::fixed_sized<true>> queue;
    std::counting_semaphore<> waiting{0};
    std::atomic<bool> ending{false};
    std::uint32_t blockAtMark = 0; ///< sender's thread
    int sentInBlock = 0;           ///< sender's thread: since the block of the mark
    bool givenUp = false;          ///< sender's thread: the port takes nothing and is to be closed
    std::thread thread;
};

} // namespace tonvex
