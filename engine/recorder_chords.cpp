#include "engine/recorder_class.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr std::uint8_t OWN_PATCH_STYLE = 2; ///< the distorted guitar, which changes patches as it plays
/// What a chord is stored longer than to its last step, when that sounded before the release was read.
constexpr double BEHIND_LAST_STEP_BEATS = 1.0e-6;

} // namespace

void RecorderClass::QChordKeyDown(int key, const KeyMapEntry& entry, std::int64_t atNs) {
    if (entry.Target < 0 || static_cast<std::size_t>(entry.Target) >= KEYS)
        return;
    const QChordData& row = parts.layout.KeyQChordTable[static_cast<std::size_t>(entry.Target)];
    if (row.Active == 0)
        return;
    if (PracticeMode)
        Follow_Practice_Channel();
    Send_Own_Patch();
    Played_Key& played = playedKeys[static_cast<std::size_t>(key)];
    played.KeyDownTime = Stamp(atNs);
    played.KeyQChord = static_cast<std::int32_t>(QChords.size());
    Live_Chord& chord = QChords.emplace_back(Live_Chord{key, QChordClass(parts.Chord_Parts())});
    chord.QChord.SetQchordData(row, parts.layout.QChordsOctave, played.KeyDownTime);
    for (const int note : chord.QChord.Shown_Notes())
        parts.Tell(&Transport_Observer::On_Note_Shown, note);
    Step_Chord(chord, played.KeyDownTime);
}

/// A style that changes the patch of its slot leaves another behind than the chord is to sound with.
void RecorderClass::Send_Own_Patch() {
    const GlobalChannel& channel = parts.channels.Channels[static_cast<std::size_t>(RecChannelRow)];
    if (channel.Style != OWN_PATCH_STYLE)
        return;
    // What the player library has sent is not known here.
    if (parts.state.EngineRunning || parts.gcm.Slot_Patch(RecChannelRow) != channel.PatchI)
        parts.gcm.GCM_SetChannelPatch(RecChannelRow, channel.PatchI);
}

void RecorderClass::QChordsStep(double time) {
    for (Live_Chord& chord : QChords)
        Step_Chord(chord, time);
}

void RecorderClass::Step_Chord(Live_Chord& chord, double time) {
    QChord_Messages messages;
    chord.QChord.GetMsg_On_Time(time, messages);
    while (messages.LastIndex >= 0) {
        Sound_Messages(chord, messages, std::min(clock.Moment_Of(messages.Time), parts.counter.Now_Ns()));
        chord.QChord.GetMsg_On_Time(time, messages);
    }
}

void RecorderClass::Sound_Messages(const Live_Chord& chord, const QChord_Messages& messages,
                                   std::int64_t dueNs) {
    for (std::size_t i = 0; i < messages.Rows(); ++i) {
        if (messages.Actions[i] == QChord_Messages::NOTE_ON)
            Live_Note_On(messages.Notes[i], chord.QChord.Volume(), dueNs);
        else
            Live_Note_Off(messages.Notes[i], dueNs);
    }
}

void RecorderClass::Sound_Overdue_Steps(int key, double releaseBeat) {
    Live_Chord& chord = Chord_Of(key);
    while (QChordClass::Step_Sounds(chord.QChord.Next_Step_Time(), releaseBeat))
        Step_Chord(chord, chord.QChord.Next_Step_Time());
}

void RecorderClass::QChordKeyUp(int key, double releaseBeat, std::int64_t dueNs) {
    Played_Key& played = playedKeys[static_cast<std::size_t>(key)];
    Live_Chord& chord = Chord_Of(key);
    // A release that was read late ends behind the steps that have sounded, so that they play again.
    const double lastStep = chord.QChord.Last_Step_Time();
    double end = releaseBeat;
    if (!QChordClass::Step_Sounds(lastStep, end)) {
        end = lastStep + BEHIND_LAST_STEP_BEATS;
        dueNs = midiapi::DUE_NOW;
    }
    QChord_Messages messages;
    chord.QChord.GetMsg_On_Time(QChordClass::STOP, messages);
    Sound_Messages(chord, messages, dueNs);
    for (const int note : chord.QChord.Shown_Notes())
        parts.Tell(&Transport_Observer::On_Note_Hidden, note);
    if (!PracticeMode)
        parts.hub.Message(this, HUB_REC_EVENT, std::int32_t{RecChannelRow}, std::int32_t{EV_QCHORD},
                          played.KeyDownTime, EventData(chord.QChord.Stored_Copy(end - played.KeyDownTime)));
    Remove_Chord(std::exchange(played.KeyQChord, -1));
}

RecorderClass::Live_Chord& RecorderClass::Chord_Of(int key) {
    return QChords[static_cast<std::size_t>(playedKeys[static_cast<std::size_t>(key)].KeyQChord)];
}

/// The last chord takes the free place.
void RecorderClass::Remove_Chord(std::int32_t place) {
    const auto at = static_cast<std::size_t>(place);
    if (at + 1 < QChords.size()) {
        QChords[at] = std::move(QChords.back());
        playedKeys[static_cast<std::size_t>(QChords[at].key)].KeyQChord = place;
    }
    QChords.pop_back();
}

} // namespace tonvex
