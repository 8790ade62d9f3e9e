#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct _jack_client; // NOLINT(bugprone-reserved-identifier): the name that the JACK library gives it

namespace tonvex {

/// A silent client of the JACK server, which tells what RtMidi does not: whether the server still lives,
/// how its time goes on, and which MIDI ports there are. It takes no part in the graph and costs no cycle.
/// When a server has gone, the JACK library frees all clients of the process itself, at the next try to reach
/// a server. A client that lost its server must therefore be abandoned, never closed.
class Jack_Link {
public:
    /// Null when no server runs; takes some 3 ms then, 20 ms otherwise. Starts no server.
    /// Silences the texts that the JACK library writes to the standard streams.
    static std::shared_ptr<Jack_Link> Connect();
    ~Jack_Link();
    Jack_Link(const Jack_Link&) = delete;
    Jack_Link& operator=(const Jack_Link&) = delete;

    /// False for good once the server has gone. Any thread.
    bool Alive() const noexcept { return alive.load(std::memory_order_acquire); }
    /// Frame at which the running block began; stands still when the server hangs. Any thread.
    std::uint32_t Block_Start() const noexcept;
    /// Full names, "client:port". inputs: the ports that we can read from. Interface thread.
    std::vector<std::string> Midi_Port_Names(bool inputs) const;

private:
    Jack_Link() = default;
    static void On_Shutdown(void* self);

    _jack_client* client = nullptr;
    std::atomic<bool> alive{true};
};

} // namespace tonvex
