#pragma once

#include "engine/midiapi.h"
#include "support/recorder_doors.h"
#include "support/store_host.h"

#include <gtest/gtest.h>

namespace tonvex {

/// What an output stands on: recording doors, an empty channel table, a clock that stands.
struct Output_Bed : testing::Test {
    Recorder_Sound_Door sound;
    Recorder_Midi_Ports ports;
    Recorded_Dialogs dialogs;
    Simulated_Counter counter;
    Store_Host host;
    GlobalChannelsManager channels{host};
    midiapi api{sound, ports, dialogs, counter, channels};
};

} // namespace tonvex
