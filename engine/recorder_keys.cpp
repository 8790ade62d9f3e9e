#include "engine/recorder_class.h"

#include "base/rounding.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int NOTE_OFF_VELOCITY = 100;
constexpr int PRESSED = 0;

// scan codes of the function keys
constexpr int KEY_ESCAPE = 1;
constexpr int KEY_F1 = 59;
constexpr int KEY_F6 = 64;
constexpr int KEY_F7 = 65;
constexpr int KEY_F10 = 68;
constexpr int KEY_F11 = 87;
constexpr int KEY_F12 = 88;

} // namespace

double RecorderClass::Stamp(std::int64_t atNs) const {
    if (atNs != 0 && atNs <= startNs)
        return startBeat;
    const double now = std::max(startBeat, Position_Now());
    return atNs == 0 ? now : std::clamp(clock.GetTime_At(atNs), startBeat, now);
}

/// At most one edge a round. A call that finds nothing has read the devices, so the second sees what has
/// just arrived.
void RecorderClass::Take_Key() {
    Key_Edge edge = parts.input.Input_GetNextEvent();
    if (edge.Key < 0)
        edge = parts.input.Input_GetNextEvent();
    if (edge.Key < 0 || static_cast<std::size_t>(edge.Key) >= KEYS)
        return;
    if (edge.Action == PRESSED)
        Key_Pressed(edge.Key, edge.atNs);
    else
        Key_Released(edge.Key, edge.atNs);
}

void RecorderClass::Key_Pressed(int key, std::int64_t atNs) {
    const KeyMapEntry entry = parts.layout.KeyMap[static_cast<std::size_t>(key)];
    Played_Key& played = playedKeys[static_cast<std::size_t>(key)];
    if (entry.Enabled == 0 || played.KeyDown)
        return;
    played = {};
    played.KeyDown = true;
    played.kind = entry.Kind; // the release goes by it, whatever the user makes of the key meanwhile
    parts.Tell(&Transport_Observer::On_Key_Pressed, key);
    if (entry.Kind == KEY_NOTE)
        NoteKeyDown(key, entry, atNs);
    else if (entry.Kind == KEY_QCHORD)
        QChordKeyDown(key, entry, atNs);
    else if (entry.Kind == KEY_RESERVED)
        Function_Key(key, atNs);
}

void RecorderClass::NoteKeyDown(int key, const KeyMapEntry& entry, std::int64_t atNs) {
    Played_Key& played = playedKeys[static_cast<std::size_t>(key)];
    if (entry.Target < 0 || static_cast<std::size_t>(entry.Target) >= KEYS)
        return;
    if (PracticeMode)
        Follow_Practice_Channel();
    played.KeyNotes = parts.layout.KeyNoteTable[static_cast<std::size_t>(entry.Target)];
    const int note = parts.layout.Sounding_Note(played.KeyNotes.Note);
    if (note < 0 || note > 127)
        return;
    played.KeyNotes.Note = static_cast<std::uint8_t>(note);
    played.sounds = true;
    played.KeyDownTime = Stamp(atNs);
    Live_Note_On(note, played.KeyNotes.Vol, atNs);
    parts.Tell(&Transport_Observer::On_Note_Shown, note);
}

void RecorderClass::Key_Released(int key, std::int64_t atNs) {
    Played_Key& played = playedKeys[static_cast<std::size_t>(key)];
    if (!played.KeyDown)
        return;
    played.KeyDown = false;
    parts.Tell(&Transport_Observer::On_Key_Released, key);
    const double release = Stamp(atNs);
    if (played.sounds) {
        NoteKeyUp(key, release, atNs);
    } else if (played.KeyQChord >= 0) {
        Sound_Overdue_Steps(key, release);
        QChordKeyUp(key, release, atNs);
    }
}

void RecorderClass::Live_Note_On(int note, std::uint8_t volume, std::int64_t dueNs) {
    const auto velocity = static_cast<int>(RoundHalfEven(static_cast<float>(volume) * RecVolFactor));
    if (velocity <= 0) {
        ++silentNotes[static_cast<std::size_t>(note)];
        return;
    }
    ++heldNotes[static_cast<std::size_t>(note)];
    parts.gcm.GCM_NoteOn(RecChannelRow, note, velocity, true, dueNs);
}

void RecorderClass::Live_Note_Off(int note, std::int64_t dueNs) {
    // Of a note that is held both ways the silent presses let go first: it sounds until the last is up.
    if (std::int32_t& silent = silentNotes[static_cast<std::size_t>(note)]; silent > 0) {
        --silent;
        return;
    }
    std::int32_t& held = heldNotes[static_cast<std::size_t>(note)];
    if (--held == 0)
        parts.gcm.GCM_NoteOff(RecChannelRow, note, NOTE_OFF_VELOCITY, true, dueNs);
    else
        parts.gcm.GCM_LiveRelease(note);
}

void RecorderClass::NoteKeyUp(int key, double releaseBeat, std::int64_t dueNs) {
    Played_Key& played = playedKeys[static_cast<std::size_t>(key)];
    played.sounds = false;
    played.KeyNotes.Length = std::max(0.0, releaseBeat - played.KeyDownTime);
    const int note = played.KeyNotes.Note;
    if (!PracticeMode)
        parts.hub.Message(this, HUB_REC_EVENT, std::int32_t{RecChannelRow}, std::int32_t{EV_NOTE},
                          played.KeyDownTime, EventData(played.KeyNotes));
    Live_Note_Off(note, dueNs);
    parts.Tell(&Transport_Observer::On_Note_Hidden, note);
}

void RecorderClass::Function_Key(int key, std::int64_t atNs) {
    if (key == KEY_ESCAPE) {
        StopRequested = true;
        endBeat = Stamp(atNs);
        return;
    }
    if (key >= KEY_F1 && key <= KEY_F6)
        parts.layout.NotesOctave = key - KEY_F1;
    else if (key >= KEY_F7 && key <= KEY_F10)
        parts.layout.QChordsOctave = key - KEY_F7;
    else if (key == KEY_F11 || key == KEY_F12)
        parts.layout.QChordsOctave = key - KEY_F11 + 4;
    else
        return;
    parts.Tell(&Transport_Observer::On_Octaves_Changed);
}

/// Whatever is down ends here, MIDI keys as well, also a key whose release has not been read yet. All notes
/// are off already: steps of chords that no round has come to stay unheard.
void RecorderClass::Release_All_Keys(double end) {
    for (std::size_t key = 0; key < KEYS; ++key) {
        Played_Key& played = playedKeys[key];
        if (!played.KeyDown)
            continue;
        played.KeyDown = false;
        parts.Tell(&Transport_Observer::On_Key_Released, static_cast<int>(key));
        if (played.sounds)
            NoteKeyUp(static_cast<int>(key), end, midiapi::DUE_NOW);
        else if (played.KeyQChord >= 0)
            QChordKeyUp(static_cast<int>(key), end, midiapi::DUE_NOW);
    }
}

} // namespace tonvex
