#include "app/session_channel_host.h"

#include "app/session.h"
#include "base/rounding.h"

#include <algorithm>

namespace tonvex {

namespace {

/// Positions in samples inside a song are at this rate, whatever the device's.
constexpr double SAMPLES_PER_MS = 44.1;

/// Root of the note name that leads a chord's name; -1 when none does. Two characters are tried before one.
int Root_Of_Name(const NotesStuff& notes, const std::string& name) {
    const int longer = name.size() >= 2 ? notes.RootByName(name.substr(0, 2)) : -1;
    return longer >= 0 ? longer : notes.RootByName(name.substr(0, 1));
}

} // namespace

double Session_Channel_Host::Song_Length_Beats() const {
    return session.project.SongLength;
}

bool Session_Channel_Host::Live_Changes_On() const {
    return session.transport.LiveChanges;
}

void Session_Channel_Host::Event_Fell_Out(std::int32_t channelNumber, std::int32_t eventId) {
    session.hub->Message(nullptr, MSG_DELETE_EVENT, channelNumber, eventId);
}

double Session_Channel_Host::Clip_Length_Beats(double startBeat, std::int32_t sampleCount) const {
    const double startMs = Beats_To_MS(startBeat, session.tempoChanges, session.project);
    const double endSample = static_cast<double>(RoundHalfEven(startMs * SAMPLES_PER_MS)) + sampleCount;
    return MS_To_Beats(endSample / SAMPLES_PER_MS, session.tempoChanges, session.project) - startBeat;
}

void Session_Channel_Host::Retype_Chord(QChordData& chord, std::uint8_t chordType) const {
    // A chord that was played in the active octave has octave 0 and yet stands where it sounded.
    const std::uint8_t stored = chord.Octave;
    const int octave = stored > 0 ? stored : std::max(chord.ChordNotes.front() / 12 - 1, 0);
    session.notes.FillChordData(chord, chord.ChordFlagA, chordType, octave, true);
    chord.Octave = stored;
}

void Session_Channel_Host::Rename_Chord(QChordData& chord, int semitones) const {
    const int root = Root_Of_Name(session.notes, chord.ChordName);
    if (root >= 0)
        chord.ChordName = session.notes.Caption_With_Root(chord.ChordName, Wrap12(root + semitones % 12));
}

} // namespace tonvex
