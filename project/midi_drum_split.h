#pragma once

#include "project/midi_format.h"

#include <vector>

namespace tonvex {

struct Drum_Track {
    static constexpr int THE_REST = -1;
    int note; ///< THE_REST: all notes that have no track of their own
    midi_format::Bytes events;
};

/// The drum column of an export (see Export_Buffers) as a track for each note from 26 to 81 that occurs. Each
/// has the notes of its own number and all messages that are no notes, where they stood. Other notes, if
/// there are any, share one track behind them; a column without notes is that track.
std::vector<Drum_Track> Split_Drums(const midi_format::Bytes& column);

} // namespace tonvex
