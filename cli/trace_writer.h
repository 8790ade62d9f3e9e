#pragma once

#include "engine/midiapi.h"
#include "engine/transport_state.h"
#include "platform/millisecond_counter.h"
#include "song/vget_tick_count.h"

#include <cstdint>
#include <string>

namespace tonvex {

/// Writes down, as JSON lines, every message that leaves for the output. One thread.
class Trace_Writer final : public Output_Observer, public Transport_Observer {
public:
    /// position: where the run is going to start, in beats. Counter and clock outlive the writer.
    Trace_Writer(const Millisecond_Counter& counter, VGetTickCount& clock, double position);

    void On_Output(Sound_Op op, int slot, int a, int b) override;
    void On_Waiting_For_Key(bool waiting) override;

    const std::string& Text() const noexcept { return text; }

private:
    const Millisecond_Counter& counter;
    VGetTickCount& clock;
    double position;
    std::int64_t startMs;
    std::string text;
};

} // namespace tonvex
