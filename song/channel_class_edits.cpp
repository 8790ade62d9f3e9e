#include "song/channel_class.h"
#include "song/notes_stuff.h"

#include <algorithm>
#include <cmath>
#include <utility>

// Setters and the operations on a whole channel.

namespace tonvex {

namespace {

constexpr std::int32_t HIGHEST = 127; ///< of notes and velocities
constexpr double BEATS_A_BAR = 4.0;

/// The value that a setter's two arguments ask for; nothing when neither is given.
std::optional<double> Asked(double old, double newValue, double delta) noexcept {
    if (delta != NOT_GIVEN_TIME)
        return old + delta;
    return newValue != NOT_GIVEN_TIME ? std::optional(newValue) : std::nullopt;
}

std::optional<std::int64_t> Asked(std::int64_t old, std::int32_t newValue, std::int32_t delta) noexcept {
    if (delta != NOT_GIVEN)
        return old + delta;
    return newValue != NOT_GIVEN ? std::optional<std::int64_t>(newValue) : std::nullopt;
}

bool Is_Midi_Value(std::int64_t value) noexcept {
    return value >= 0 && value <= HIGHEST;
}

} // namespace

// ---- setters ----

void ChannelClass::Fall_Out(std::int32_t eventId) {
    // The hub may delete the event, re-sort or change other events while this runs: nothing but the ID is
    // good behind it.
    host.Event_Fell_Out(ChannelNumber, eventId);
    DeleteEvent(eventId);
}

bool ChannelClass::Set_Event_StartTime(std::int32_t eventId, double newTime, double delta,
                                       std::int32_t eventI) {
    const std::int32_t row = eventI != -1 ? eventI : GetEvent_I(eventId);
    if (!ExistsEventI(row))
        return false;
    ChannelEvent& event = Row(row);
    const std::optional<double> time = Asked(event.StartTime, newTime, delta);
    if (!time)
        return true;
    if (std::isnan(*time))
        return false;
    const double before = std::exchange(event.StartTime, Stored_Beats(*time, 0.0));
    if (event.StartTime != before)
        Changed();
    if (event.StartTime < 0.0) {
        Fall_Out(event.ID);
        return false;
    }
    reSortOwed = true;
    Note_End(row);
    Log(event.ID, MOD_START_TIME);
    return true;
}

void ChannelClass::Set_Event_Length(std::int32_t eventId, double newLength, double delta) {
    const auto event = ReadEvent(GetEvent_I(eventId));
    double* stored = event ? tables.Stored_Length(event->Kind, event->DataRef) : nullptr;
    if (stored == nullptr)
        return;
    const std::optional<double> length = Asked(*stored, newLength, delta);
    if (!length || std::isnan(*length))
        return;
    const double before =
        std::exchange(*stored, std::max(MIN_LENGTH_BEATS, Stored_Beats(*length, MIN_LENGTH_BEATS)));
    if (*stored != before)
        Changed();
    Note_End(event->EventI);
    Log(eventId, MOD_LENGTH);
}

void ChannelClass::Set_Event_Volume(std::int32_t eventId, std::int32_t newVol, std::int32_t delta) {
    const auto event = ReadEvent(GetEvent_I(eventId));
    if (!event || (event->Kind != EV_NOTE && event->Kind != EV_QCHORD))
        return;
    const auto i = static_cast<std::size_t>(event->DataRef);
    std::uint8_t& stored = event->Kind == EV_NOTE ? tables.Notes[i].Vol : tables.QChords[i].ChordVol;
    const std::optional<std::int64_t> volume = Asked(std::int64_t{stored}, newVol, delta);
    if (!volume)
        return;
    const std::uint8_t before =
        std::exchange(stored, static_cast<std::uint8_t>(std::clamp<std::int64_t>(*volume, 0, HIGHEST)));
    if (stored != before)
        Changed();
    Log(eventId, MOD_VOLUME);
}

void ChannelClass::Set_Event_Note(std::int32_t eventId, std::int32_t newNote, std::int32_t delta) {
    const auto event = ReadEvent(GetEvent_I(eventId));
    if (!event || (event->Kind != EV_NOTE && event->Kind != EV_QCHORD && event->Kind != EV_MC))
        return;
    const std::int32_t base = Get_Event_BaseNote(event->EventI);
    if (const std::optional<std::int64_t> note = Asked(std::int64_t{base}, newNote, delta))
        Shift_Notes(event->EventI, *note - base);
}

void ChannelClass::Shift_Notes(std::int32_t eventI, std::int64_t semitones) {
    const ChannelEvent& event = Row(eventI);
    const auto i = static_cast<std::size_t>(event.DataRef);
    const auto shiftedRoot = [semitones](std::uint8_t root) {
        return static_cast<std::uint8_t>(Wrap12(static_cast<int>((root + semitones) % 12)));
    };
    const auto shifted = [semitones](std::uint8_t note) {
        return static_cast<std::uint8_t>(note + semitones);
    };
    if (event.Kind == EV_NOTE) {
        std::uint8_t& note = tables.Notes[i].Note;
        if (!Is_Midi_Value(note + semitones)) {
            Fall_Out(event.ID);
            return;
        }
        note = shifted(note);
    } else if (event.Kind == EV_QCHORD) {
        QChordData& chord = tables.QChords[i];
        const auto used =
            chord.ChordNotes.begin() + std::min<std::ptrdiff_t>(chord.Active, std::ssize(chord.ChordNotes));
        if (!std::all_of(chord.ChordNotes.begin(), used,
                         [semitones](std::uint8_t note) { return Is_Midi_Value(note + semitones); })) {
            Fall_Out(event.ID);
            return;
        }
        std::transform(chord.ChordNotes.begin(), used, chord.ChordNotes.begin(), shifted);
        chord.ChordFlagA = shiftedRoot(chord.ChordFlagA);
        host.Rename_Chord(chord, static_cast<int>(semitones % 12));
    } else {
        tables.MCEvents[i].Root = shiftedRoot(tables.MCEvents[i].Root);
    }
    if (semitones != 0)
        Changed();
    Log(event.ID, MOD_NOTE);
}

void ChannelClass::Set_Event_ChordType(std::int32_t eventId, std::uint8_t chordType) {
    const auto event = ReadEvent(GetEvent_I(eventId));
    if (!event || event->Kind != EV_QCHORD)
        return;
    QChordData& chord = tables.QChords[static_cast<std::size_t>(event->DataRef)];
    const QChordData before = chord;
    host.Retype_Chord(chord, chordType);
    if (!(chord == before))
        Changed();
    Log(eventId, MOD_PROPERTIES);
}

void ChannelClass::Set_Event_Properties(std::int32_t eventId, const EventData& data) {
    const auto event = ReadEvent(GetEvent_I(eventId));
    if (!event)
        return;
    const EventData before = event->Payload();
    const auto* patch = std::get_if<PatchData>(&data);
    if (event->Kind == EV_PATCH && patch != nullptr)
        Row(event->EventI).DataRef = patch->DataRef;
    else if (!tables.Replace(event->Kind, event->DataRef, data))
        return;
    if (!(ReadEvent(event->EventI)->Payload() == before))
        Changed();
    Note_End(event->EventI);
    Log(eventId, MOD_PROPERTIES);
}

// ---- whole channel ----

/// Live events that have a payload row.
std::size_t ChannelClass::Payload_Count() const {
    return static_cast<std::size_t>(
        std::count_if(Events.begin(), Events.end(), [](const ChannelEvent& event) {
            return Is_On(event.InUse) && event.Kind != EV_PATCH;
        }));
}

void ChannelClass::Relink() {
    std::vector<Event_Time_List::Place> ordered;
    ordered.reserve(Events.size());
    for (std::size_t i = 0; i < Events.size(); ++i)
        if (Is_On(Events[i].InUse))
            ordered.emplace_back(Events[i].StartTime, static_cast<std::int32_t>(i));
    if (!std::is_sorted(ordered.begin(), ordered.end()))
        std::sort(ordered.begin(), ordered.end());
    timeList.Rebuild(ordered);
    reSortOwed = false;
    Forget_Ends();
    Changed();
}

void ChannelClass::ReSort_StartTime() {
    // Dense and linked in order: all of it would come out as it stands.
    if (!reSortOwed && std::ssize(Events) == LastEventN + 1)
        return;
    std::size_t live = 0;
    for (std::size_t i = 0; i < Events.size(); ++i) {
        if (!Is_On(Events[i].InUse))
            continue;
        if (live != i)
            Events[live] = Events[i];
        ++live;
    }
    if (live != Events.size())
        rowsIndexed = false;
    Events.resize(live);
    Relink();
}

void ChannelClass::Defrag_Data() {
    if (RecEvents.empty() && tables.Row_Count() == Payload_Count())
        return; // as many rows as uses: none is spare
    std::vector<Event_Tables::Use> uses;
    uses.reserve(Events.size() + RecEvents.size());
    for (ChannelEvent& event : Events)
        if (Is_On(event.InUse))
            uses.push_back({.kind = event.Kind, .dataRef = &event.DataRef});
    for (RecEvent& event : RecEvents)
        uses.push_back({.kind = event.Kind, .dataRef = &event.DataRef});
    if (tables.Compact(uses))
        Changed();
}

void ChannelClass::Project_ChangeSpeed(float factor) {
    if (!(factor > 0.0F) || !std::isfinite(factor))
        return;
    bool same = true;
    const auto scale = [factor, &same](double& beats, double instead) {
        const double before = std::exchange(beats, Stored_Beats(beats * factor, instead));
        same = same && beats == before;
    };
    for (ChannelEvent& event : Events) {
        if (!Is_On(event.InUse) || !tables.Holds(event.Kind, event.DataRef))
            continue;
        scale(event.StartTime, 0.0);
        if (double* length = tables.Stored_Length(event.Kind, event.DataRef))
            scale(*length, MIN_LENGTH_BEATS);
    }
    if (same)
        return;
    // Rounding may have made times equal that were not: the order among them is then that of arrival.
    Relink();
}

void ChannelClass::MC_MoveBarEvents(std::int32_t fromBar, std::int32_t bars) {
    const double from = fromBar * BEATS_A_BAR;
    const double shift = bars * BEATS_A_BAR;
    std::vector<std::int32_t> fallen;
    for (ChannelEvent& event : Events) {
        if (!Is_On(event.InUse) || event.StartTime < from)
            continue;
        event.StartTime = Stored_Beats(event.StartTime + shift, 0.0);
        if (event.StartTime < 0.0)
            fallen.push_back(event.ID);
    }
    Relink();
    for (const std::int32_t eventId : fallen)
        Fall_Out(eventId);
}

void ChannelClass::MC_DeleteBarEvents(std::int32_t fromBar, std::int32_t bars) {
    const double from = std::max(0.0, fromBar * BEATS_A_BAR);
    const double end = (static_cast<double>(fromBar) + bars) * BEATS_A_BAR;
    if (end <= from)
        return;
    for (std::size_t i = 0; i < Events.size(); ++i) {
        if (!Is_On(Events[i].InUse) || Events[i].StartTime < from)
            continue;
        if (Events[i].StartTime < end)
            DeleteEvent(Events[i].ID);
        else
            Events[i].StartTime -= end - from;
    }
    Relink();
}

} // namespace tonvex
