#include "platform/midi_sender.h"

#include <RtMidi.h>

#include <chrono>

namespace tonvex {

namespace {

constexpr std::size_t QUEUE_CAPACITY = 16384;
/// RtMidi keeps up to 16384 bytes for JACK, 7 for a short message, and spins when they are full. They are
/// taken out once a block, so this many may go into two blocks.
constexpr int ROOM_IN_TWO_BLOCKS = 2000;
/// How long a port that is to be closed may take nothing before the rest is given up.
constexpr int PATIENCE_MS = 200;
/// More than three blocks of any size in use.
constexpr std::uint32_t LONG_AGO_FRAMES = 16384;

std::size_t Length_Of(std::uint8_t status) {
    const int kind = status >> 4;
    return kind == 0xC || kind == 0xD ? 2 : 3;
}

} // namespace

Midi_Sender::Midi_Sender(std::unique_ptr<RtMidiOut> openPort, std::shared_ptr<Jack_Link> link)
    : port(std::move(openPort)), jack(std::move(link)), queue(QUEUE_CAPACITY), thread([this] { Work(); }) {}

Midi_Sender::~Midi_Sender() {
    ending.store(true, std::memory_order_relaxed);
    waiting.release();
    thread.join();
}

bool Midi_Sender::Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) noexcept {
    if (!queue.push(Short_Message{status, data1, data2}))
        return false;
    waiting.release();
    return true;
}

bool Midi_Sender::Wait_For_Room() {
    if (jack == nullptr)
        return true;
    if (givenUp)
        return false;
    for (int waitedMs = 0; jack->Alive(); ++waitedMs) {
        const std::uint32_t block = jack->Block_Start();
        if (block != blockAtMark) {
            // The first change may have come just before the last message; the ring is surely empty only
            // when a whole block has passed, so half the room counts for each.
            blockAtMark = block;
            sentInBlock = 0;
        }
        if (sentInBlock < ROOM_IN_TWO_BLOCKS / 2) {
            ++sentInBlock;
            return true;
        }
        if (ending.load(std::memory_order_relaxed) && waitedMs > PATIENCE_MS) {
            givenUp = true;
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

void Midi_Sender::Let_Last_Message_Out() {
    if (jack == nullptr || jack->Block_Start() - blockAtMark > LONG_AGO_FRAMES)
        return;
    // One block takes the message out of the ring, one hands it on, one plays it to the reader.
    std::uint32_t block = jack->Block_Start();
    int blocks = 0;
    for (int waitedMs = 0; blocks < 3 && waitedMs < PATIENCE_MS && jack->Alive(); ++waitedMs) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (jack->Block_Start() != block) {
            block = jack->Block_Start();
            ++blocks;
        }
    }
}

void Midi_Sender::Work() {
    for (;;) {
        waiting.acquire();
        Short_Message message;
        while (queue.pop(message)) {
            if (!Wait_For_Room())
                continue;
            try {
                port->sendMessage(message.data(), Length_Of(message[0]));
            } catch (const RtMidiError&) {
                // The port has gone; Output_Alive tells, and the rest is dropped in the same way.
                continue;
            }
        }
        if (ending.load(std::memory_order_relaxed))
            break;
    }
    Let_Last_Message_Out();
    if (jack != nullptr && !jack->Alive())
        static_cast<void>(port.release());
    port.reset();
}

} // namespace tonvex
