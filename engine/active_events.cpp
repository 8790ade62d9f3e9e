// What sounds of the channel that a player walks.

#include "base/rounding.h"
#include "engine/channel_player_class.h"
#include "engine/transport_parts.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {
constexpr int NOTE_OFF_VELOCITY = 100;
} // namespace

void CHannelPlayerClass::ActiveEventRow::Find_Next() noexcept {
    isStep = false;
    bool isStart = false;
    nextTime = EndTime;
    if (chord != nullptr && EndTime != END_NOW) {
        isStart = chord->startsWait;
        const double stepTime = isStart ? chord->step.Time : chord->QChord.Next_Step_Time();
        isStep = isStart || QChordClass::Step_Sounds(stepTime, EndTime);
        if (isStep)
            nextTime = stepTime;
    }
    next = {Moment_At(nextTime), isStart};
}

bool CHannelPlayerClass::ActiveEventRow::Is_Over() const noexcept {
    return chord != nullptr && !isStep && chord->sounding.none();
}

int CHannelPlayerClass::Velocity(std::uint8_t volume) const {
    const float factor = Vol_Factor(channels.Channels[static_cast<std::size_t>(channelRow)]);
    return static_cast<int>(RoundHalfEven(static_cast<float>(volume) * factor));
}

std::int64_t CHannelPlayerClass::Due(double beat) const {
    return beat == END_NOW ? midiapi::DUE_NOW
                           : std::min(clock.Moment_Of(beat + TimeOffset), counter.Now_Ns());
}

void CHannelPlayerClass::Add_Active(ActiveEventRow row) {
    row.Find_Next();
    if (row.Is_Over())
        return;
    activeEvents.push_back(std::move(row));
    std::push_heap(activeEvents.begin(), activeEvents.end());
}

void CHannelPlayerClass::Start_Note(const ChannelClass::Event_View& event) {
    const NoteData& note = *event.Note;
    const int velocity = Velocity(note.Vol);
    if (velocity == 0)
        return;
    output.GCM_PlayNoteOn(channelRow, note.Note, velocity, false, Due(event.StartTime));
    Add_Active({event.StartTime + note.Length, nextOrder++, note.Length, event.EventID, note.Note, nullptr});
}

/// Its first notes are a step like the others, and due at once. Steps before playFrom are passed over.
void CHannelPlayerClass::Start_Chord(const ChannelClass::Event_View& event) {
    auto chord =
        std::make_unique<Active_Chord>(Active_Chord{QChordClass(chordParts), event.QChord->ChordVol, {}});
    chord->QChord.Set_Stored_Chord(*event.QChord, event.StartTime);
    while (Moment_Of(chord->QChord.Next_Step_Time()) < playFrom)
        chord->QChord.GetMsg_On_Time(chord->QChord.Next_Step_Time(), chord->step);
    const double length = event.QChord->Length;
    Add_Active({event.StartTime + length, nextOrder++, length, event.EventID, 0, std::move(chord)});
}

void CHannelPlayerClass::Resume_Chords() {
    const auto isActive = [this](std::int32_t eventId) {
        return std::any_of(activeEvents.begin(), activeEvents.end(),
                           [eventId](const ActiveEventRow& row) { return row.ID == eventId; });
    };
    for (auto eventI = store->FirstEvent(); eventI >= 0 && eventI != NextEventI;
         eventI = store->Get_NextEventI(eventI)) {
        const auto event = store->ReadEvent(eventI);
        if (event && event->Kind == EV_QCHORD && Moment_Of(event->StartTime) < playFrom &&
            Moment_Of(event->StartTime + event->QChord->Length) > playFrom && Is_Heard(*event) &&
            !isActive(event->EventID))
            Start_Chord(*event);
    }
}

void CHannelPlayerClass::Step_First_Chord() {
    ActiveEventRow row = Take_First_Row();
    Active_Chord& chord = *row.chord;
    if (!chord.startsWait)
        chord.QChord.GetMsg_On_Time(row.nextTime, chord.step);
    Sound_Step(chord, chord.startsWait ? QChord_Messages::NOTE_ON : QChord_Messages::NOTE_OFF);
    chord.startsWait = !chord.startsWait;
    Add_Active(std::move(row));
}

/// The rows of the chord's step that have the action.
void CHannelPlayerClass::Sound_Step(Active_Chord& chord, std::uint8_t action) {
    const std::int64_t due = Due(chord.step.Time);
    for (std::size_t i = 0; i < chord.step.Rows(); ++i) {
        if (chord.step.Actions[i] != action)
            continue;
        if (action == QChord_Messages::NOTE_OFF)
            End_Note_Of(chord, chord.step.Notes[i], due);
        else
            Start_Note_Of(chord, chord.step.Notes[i], due);
    }
}

/// What the performer holds is left out.
void CHannelPlayerClass::Start_Note_Of(Active_Chord& chord, std::uint8_t note, std::int64_t due) {
    const int velocity = Velocity(chord.volume);
    if (muted || velocity == 0 || output.Performer_Holds(channelRow, note))
        return;
    chord.sounding.set(note);
    output.GCM_PlayNoteOn(channelRow, note, velocity, false, due);
}

void CHannelPlayerClass::End_Note_Of(Active_Chord& chord, std::uint8_t note, std::int64_t due) {
    if (!chord.sounding.test(note))
        return;
    chord.sounding.reset(note);
    output.GCM_PlayNoteOff(channelRow, note, NOTE_OFF_VELOCITY, false, due);
}

void CHannelPlayerClass::Silence(Active_Chord& chord, std::int64_t due) {
    for (std::size_t note = 0; note < chord.sounding.size() && chord.sounding.any(); ++note)
        End_Note_Of(chord, static_cast<std::uint8_t>(note), due);
}

CHannelPlayerClass::ActiveEventRow CHannelPlayerClass::Take_First_Row() {
    std::pop_heap(activeEvents.begin(), activeEvents.end());
    ActiveEventRow row = std::move(activeEvents.back());
    activeEvents.pop_back();
    return row;
}

void CHannelPlayerClass::End_First_Row() {
    const ActiveEventRow row = Take_First_Row();
    if (row.chord != nullptr)
        Silence(*row.chord, Due(row.EndTime));
    else
        output.GCM_PlayNoteOff(channelRow, row.Note, NOTE_OFF_VELOCITY, false, Due(row.EndTime));
}

void CHannelPlayerClass::Mark_Ended(std::int32_t eventId) {
    for (ActiveEventRow& row : activeEvents) {
        if (row.ID == eventId)
            row.EndTime = END_NOW;
    }
}

/// The heap is in order again afterwards.
void CHannelPlayerClass::End_Marked() {
    for (ActiveEventRow& row : activeEvents)
        row.Find_Next();
    std::make_heap(activeEvents.begin(), activeEvents.end());
    while (!activeEvents.empty() && activeEvents.front().EndTime == END_NOW)
        End_First_Row();
}

void CHannelPlayerClass::End_All() {
    for (ActiveEventRow& row : activeEvents)
        row.EndTime = END_NOW;
    End_Marked();
}

void CHannelPlayerClass::Change_Length(std::int32_t eventId) {
    const std::int32_t eventI = store->GetEvent_I(eventId);
    if (eventI < 0)
        return;
    const double length = store->GetEvent_Length(eventI);
    for (ActiveEventRow& row : activeEvents) {
        if (row.ID != eventId || row.EndTime == END_NOW)
            continue;
        row.EndTime += length - row.length;
        row.length = length;
    }
}

/// What sounds goes on as it began, unless the event is to be heard no more.
void CHannelPlayerClass::Change_Volume(std::int32_t eventId) {
    const auto event = store->ReadEvent(store->GetEvent_I(eventId));
    if (!event)
        return;
    if (!Is_Heard(*event))
        return Mark_Ended(eventId);
    for (ActiveEventRow& row : activeEvents) {
        if (row.ID == eventId && row.chord != nullptr)
            row.chord->volume = event->QChord->ChordVol;
    }
}

void CHannelPlayerClass::MuteChannel() {
    muted = true;
    for (ActiveEventRow& row : activeEvents) {
        if (row.chord != nullptr)
            Silence(*row.chord, midiapi::DUE_NOW);
        if (row.chord == nullptr || row.Is_Over())
            row.EndTime = END_NOW;
    }
    End_Marked();
}

} // namespace tonvex
