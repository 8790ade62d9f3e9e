#include "cli/trace_writer.h"

#include "base/rounding.h"

#include <nlohmann/json.hpp>

namespace tonvex {

namespace {

const char* Op_Name(Sound_Op op) {
    switch (op) {
    case Sound_Op::NoteOn:
        return "NoteOn";
    case Sound_Op::NoteOff:
        return "NoteOff";
    case Sound_Op::Patch:
        return "Patch";
    case Sound_Op::Pan:
        return "Pan";
    case Sound_Op::Volume:
        return "Volume";
    case Sound_Op::ChannelNotesOff:
        return "ChannelNotesOff";
    case Sound_Op::AllNotesOff:
        return "AllNotesOff";
    }
    return "";
}

/// Millionths of a beat are far below a millisecond at any tempo.
double Short_Beat(double beats) {
    return static_cast<double>(RoundHalfEven(beats * 1e6)) / 1e6;
}

} // namespace

Trace_Writer::Trace_Writer(const Millisecond_Counter& machineClock, VGetTickCount& runClock, double start)
    : counter(machineClock), clock(runClock), position(start), startMs(machineClock.Now_Ms()) {}

void Trace_Writer::On_Waiting_For_Key(bool waiting) {
    if (!waiting)
        startMs = counter.Now_Ms();
}

void Trace_Writer::On_Output(Sound_Op op, int slot, int a, int b) {
    const std::int64_t ms = counter.Now_Ms() - startMs;
    // What goes out before the first round belongs to the set-up, when the clock does not run yet.
    const double beat = ms == 0 ? position : clock.GetTime();
    nlohmann::ordered_json line;
    line["ms"] = ms;
    line["beat"] = Short_Beat(beat);
    line["op"] = Op_Name(op);
    line["slot"] = slot;
    line["a"] = a;
    line["b"] = b;
    text += line.dump() + "\n";
}

} // namespace tonvex
