#include "engine/qchord_class.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr std::int16_t NO_STEP = -1;
constexpr std::int16_t FIRST_NOTE_VALUE = -1000; ///< StepMs of a beat; each one below halves it
constexpr int SHORTEST_NOTE_VALUE = 10;          ///< 1/1024 beat, below the grain of any round
constexpr int HIGHEST_OCTAVE = 10;
constexpr int RELATIVE_BELOW = 12; ///< no stored chord begins in the lowest octave
constexpr int NOTES = 128;
constexpr std::uint8_t NO_CHORD_TYPE = 255;
constexpr double SAME_MOMENT_BEATS = 1.0e-9;

bool Is_Note(int note) noexcept {
    return note >= 0 && note < NOTES;
}

/// A chord of a type whose notes are intervals above the octave in force.
bool Is_Relative(const QChordData& data) noexcept {
    return data.ChordTypeIndex < NO_CHORD_TYPE && data.Octave == 0 && data.VariableOctave == 0;
}

} // namespace

QChordClass::QChordClass(const QChord_Parts& parts)
    : tempoChanges(&parts.tempoChanges), project(&parts.project), fingerpicks(&parts.fingerpicks) {}

void QChordClass::SetQchordData(const QChordData& Data, int octave, double startTime) {
    Prepare(Data, std::clamp(octave, 0, HIGHEST_OCTAVE), startTime);
}

int QChordClass::Stored_Octave(const QChordData& Data) noexcept {
    return Data.ChordNotes[0] < RELATIVE_BELOW ? STORED_OCTAVE : NO_OCTAVE;
}

void QChordClass::Set_Stored_Chord(const QChordData& Data, double startTime) {
    Prepare(Data, Stored_Octave(Data), startTime);
}

void QChordClass::Prepare(const QChordData& Data, int octave, double startTime) {
    data = Data;
    StartTime = startTime;
    lastStepTime = startTime;
    nextStep = 0;
    NoteOn.reset();
    ArpNotes.clear();
    StepBeats = 0.0;
    shownNotes.clear();
    stringNote.fill(NO_NOTE);
    pattern = nullptr;
    Octave = data.Octave;
    BaseNote = 0;
    if (Is_On(data.ArpeggioOn)) {
        Prepare_Picking();
        return Pass_Idle_Steps();
    }
    if (Is_Relative(data) && octave != NO_OCTAVE) {
        Octave = octave;
        BaseNote = 12 * octave + 12;
    }
    for (int place = 1; place <= Used_Notes(); ++place) {
        if (Is_Note(Note_At(place)))
            shownNotes.push_back(Note_At(place));
    }
    form = Form::Strike;
    if (data.StepMs != NO_STEP && data.PatternNoteCount > 0)
        Prepare_Arpeggio();
    Pass_Idle_Steps();
}

double QChordClass::Length_Of_Step() const {
    if (data.StepMs <= FIRST_NOTE_VALUE)
        return std::ldexp(1.0, -std::min(FIRST_NOTE_VALUE - data.StepMs, SHORTEST_NOTE_VALUE));
    const std::int32_t tempo = Tempo_At(StartTime, *tempoChanges, project->ProjectTempo);
    return std::max(0.0, data.StepMs / Beat_Length_Ms(tempo));
}

void QChordClass::Tempo_Changed(double Time) {
    if (form != Form::Arpeggio || nextStep >= MAX_STEPS || StepBeats == Length_Of_Step())
        return;
    StepBeats = Length_Of_Step();
    nextStep = 0;
    while (Next_Step_Time() <= Time)
        ++nextStep;
    Pass_Idle_Steps();
}

void QChordClass::Prepare_Arpeggio() {
    form = Form::Arpeggio;
    StepBeats = Length_Of_Step();
    const auto entries = std::min<std::size_t>(data.PatternNoteCount, data.PatternNotes.size());
    for (std::size_t i = 0; i < entries; ++i) {
        const int place = data.PatternNotes[i];
        if (place >= 1 && place <= Used_Notes())
            ArpNotes.push_back(Note_At(place));
    }
    if (std::none_of(ArpNotes.begin(), ArpNotes.end(), Is_Note))
        ArpNotes.clear();
}

void QChordClass::Prepare_Picking() {
    form = Form::Silent;
    pattern = fingerpicks->Pattern(data.ArpeggioPattern);
    if (pattern == nullptr)
        return;
    if (pattern->BaseChord < 0 || pattern->ChordType != data.ChordTypeIndex) {
        pattern = nullptr;
        return;
    }
    transposition = Wrap12(data.ChordFlagA - pattern->BaseChord);
    std::bitset<NOTES> struck;
    for (const PickRow& row : pattern->PickRows) {
        for (std::size_t string = 0; string < STRINGS; ++string) {
            const int note = String_Note(row, string);
            if (Is_Note(note))
                struck.set(static_cast<std::size_t>(note));
        }
    }
    if (struck.any())
        form = Form::Picking;
    for (int note = 0; note < NOTES; ++note) {
        if (struck.test(static_cast<std::size_t>(note)))
            shownNotes.push_back(note);
    }
}

int QChordClass::Used_Notes() const noexcept {
    return std::min<int>(data.Active, static_cast<int>(data.ChordNotes.size()));
}

/// place: 1 to Used_Notes. Within a byte: an interval below the octave, as a layout that is tuned down holds
/// one, has wrapped round and comes back.
int QChordClass::Note_At(int place) const noexcept {
    return static_cast<std::uint8_t>(data.ChordNotes[static_cast<std::size_t>(place - 1)] + BaseNote);
}

/// string: 0 the lowest. NO_NOTE when the row does not strike it.
int QChordClass::String_Note(const PickRow& row, std::size_t string) const noexcept {
    const std::int8_t fret = row.Strings[string];
    return fret < 0 ? NO_NOTE : fingerpicks->Notes().OpenNotes[STRINGS - string] + fret + transposition;
}

bool QChordClass::Step_Sounds(double stepTime, double endTime) noexcept {
    return stepTime < endTime - SAME_MOMENT_BEATS;
}

/// Beats from StartTime to a step; NEVER behind the last.
double QChordClass::Step_Offset(std::int64_t step) const noexcept {
    const bool repeats = data.ChordFlagB != 0;
    if (step >= MAX_STEPS || form == Form::Silent)
        return NEVER;
    if (form == Form::Strike)
        return step == 0 ? 0.0 : NEVER;
    const auto passSteps = static_cast<std::int64_t>(form == Form::Arpeggio ? ArpNotes.size()
                                                     : pattern != nullptr   ? pattern->PickRows.size()
                                                                            : 0);
    if (passSteps == 0 || (!repeats && step >= passSteps))
        return NEVER;
    if (form == Form::Arpeggio) {
        if (StepBeats > 0.0)
            return static_cast<double>(step) * StepBeats;
        return step == 0 ? 0.0 : NEVER;
    }
    const PickRow& row = pattern->PickRows[static_cast<std::size_t>(step % passSteps)];
    const std::int64_t pass = step / passSteps;
    return static_cast<double>(pass) * pattern->PickLength + row.Time;
}

double QChordClass::Next_Step_Time() const noexcept {
    return StartTime + Step_Offset(nextStep);
}

bool QChordClass::Changes_Nothing(std::int64_t step) const noexcept {
    if (form == Form::Strike)
        return shownNotes.empty();
    if (form == Form::Arpeggio) {
        const int note = ArpNotes[static_cast<std::size_t>(step) % ArpNotes.size()];
        return StepBeats > 0.0 && !Is_Note(note) && (Is_On(data.VariableOctave) || NoteOn.none());
    }
    const PickRow& row = pattern->PickRows[static_cast<std::size_t>(step) % pattern->PickRows.size()];
    for (std::size_t string = 0; string < STRINGS; ++string) {
        const bool stops = row.Strings[string] != PickRow::NOTHING && stringNote[string] != NO_NOTE;
        if (stops || String_Note(row, string) != NO_NOTE)
            return false;
    }
    return true;
}

/// So that nobody waits for them. Each pass has a step that sounds something.
void QChordClass::Pass_Idle_Steps() noexcept {
    while (Step_Offset(nextStep) < NEVER && Changes_Nothing(nextStep))
        ++nextStep;
}

void QChordClass::GetMsg_On_Time(double Time, QChord_Messages& Messages) {
    Messages.LastIndex = -1;
    Messages.Time = Time;
    if (Time < 0.0) {
        nextStep = MAX_STEPS;
        for (int note = 0; note < NOTES && NoteOn.any(); ++note)
            Note_Off(note, Messages);
        return;
    }
    if (Next_Step_Time() <= Time)
        Take_Step(Messages);
}

void QChordClass::Take_Step(QChord_Messages& messages) {
    lastStepTime = Next_Step_Time();
    messages.Time = lastStepTime;
    if (form == Form::Strike)
        Strike(messages);
    else if (form == Form::Arpeggio)
        Arpeggio_Step(messages);
    else
        Picking_Step(messages);
    ++nextStep;
    Pass_Idle_Steps();
}

void QChordClass::Strike(QChord_Messages& messages) {
    for (int place = 1; place <= Used_Notes(); ++place)
        Note_On(Note_At(place), messages);
}

void QChordClass::Arpeggio_Step(QChord_Messages& messages) {
    if (StepBeats <= 0.0) {
        for (const int note : ArpNotes)
            Note_On(note, messages);
        return;
    }
    const int note = ArpNotes[static_cast<std::size_t>(nextStep) % ArpNotes.size()];
    // The strings of a guitar ring on; a keyboard's finger moves from note to note.
    if (Is_On(data.VariableOctave)) {
        Note_Off(note, messages);
    } else {
        for (const int other : ArpNotes)
            Note_Off(other, messages);
    }
    Note_On(note, messages);
}

void QChordClass::Picking_Step(QChord_Messages& messages) {
    const auto passSteps = pattern->PickRows.size();
    const PickRow& row = pattern->PickRows[static_cast<std::size_t>(nextStep) % passSteps];
    for (std::size_t string = 0; string < STRINGS; ++string) {
        if (row.Strings[string] == PickRow::NOTHING)
            continue;
        Note_Off(stringNote[string], messages);
        stringNote[string] = NO_NOTE;
    }
    // A note that rings on another string is struck anew here, and that string has lost it.
    for (std::size_t string = 0; string < STRINGS; ++string) {
        const int note = String_Note(row, string);
        if (note == NO_NOTE)
            continue;
        for (int& held : stringNote) {
            if (held == note)
                held = NO_NOTE;
        }
        Note_Off(note, messages);
    }
    for (std::size_t string = 0; string < STRINGS; ++string) {
        const int note = String_Note(row, string);
        if (note == NO_NOTE)
            continue;
        Note_On(note, messages);
        stringNote[string] = note;
    }
}

void QChordClass::Note_On(int note, QChord_Messages& messages) {
    if (!Is_Note(note) || NoteOn.test(static_cast<std::size_t>(note)))
        return;
    NoteOn.set(static_cast<std::size_t>(note));
    messages.Add(note, QChord_Messages::NOTE_ON);
}

void QChordClass::Note_Off(int note, QChord_Messages& messages) {
    if (!Is_Note(note) || !NoteOn.test(static_cast<std::size_t>(note)))
        return;
    NoteOn.reset(static_cast<std::size_t>(note));
    messages.Add(note, QChord_Messages::NOTE_OFF);
}

void QChordClass::Render_GetEvents(Render_MidiEventColClass& List, std::int16_t Channel, std::int16_t Volume,
                                   bool CloseNotes, double Time, std::int32_t& Count) {
    if (Time >= 0.0)
        StartTime = Time;
    const double end = StartTime + data.Length;
    const std::int32_t before = List.TotalEvents();
    const auto velocity = static_cast<std::uint16_t>(std::clamp<int>(Volume, 0, NOTES - 1));
    QChord_Messages messages;
    const auto append = [&](double rowTime) {
        for (std::size_t i = 0; i < messages.Rows(); ++i)
            List.AddEvent(Channel, rowTime, messages.Notes[i],
                          messages.Actions[i] == QChord_Messages::NOTE_ON ? velocity : std::uint16_t{0});
    };
    while (Step_Sounds(Next_Step_Time(), end)) {
        GetMsg_On_Time(Next_Step_Time(), messages);
        append(messages.Time);
    }
    if (CloseNotes) {
        GetMsg_On_Time(STOP, messages);
        append(end);
    }
    Count = List.TotalEvents() - before;
}

QChordData QChordClass::Stored_Copy(double length) const {
    QChordData copy = data;
    copy.Length = length;
    copy.Octave = static_cast<std::uint8_t>(Octave);
    for (int place = 1; place <= Used_Notes(); ++place)
        copy.ChordNotes[static_cast<std::size_t>(place - 1)] = static_cast<std::uint8_t>(Note_At(place));
    // Of a type it would be raised: it sounded below the lowest octave.
    if (BaseNote > 0 && Octave == 0 && copy.ChordNotes[0] < RELATIVE_BELOW)
        copy.ChordTypeIndex = NO_CHORD_TYPE;
    return copy;
}

} // namespace tonvex
