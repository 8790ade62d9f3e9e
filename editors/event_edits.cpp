#include "editors/event_edits.h"

#include "app/messages.h"
#include "editors/edit_grid.h"
#include "editors/roll_geometry.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace tonvex {

namespace {

constexpr const char* MOVE_LABEL = "Move Events";

std::string Deletion_Question(std::ptrdiff_t count, const char* why) {
    return std::to_string(count) + " event(s) will be deleted (" + why + "\r\nContinue ?";
}

} // namespace

/// One undo step, with the general update held back until the closing message.
class Event_Edits::Step {
public:
    Step(const Event_Edits& owner, const std::string& label) : edits(owner) {
        edits.parts.hub.Begin_Step(label);
        edits.parts.hub.Hold_Update();
    }
    ~Step() {
        Release();
        edits.parts.hub.End_Step();
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

    void Close(int message) {
        Release();
        if (message == MSG_GENERAL_UPDATE)
            edits.parts.hub.Message(edits.sender, message);
        else
            edits.parts.hub.Message(edits.sender, message, edits.Channel);
    }

private:
    void Release() {
        if (held)
            edits.parts.hub.Release_Update();
        held = false;
    }

    const Event_Edits& edits;
    bool held = true;
};

const ChannelClass* Event_Edits::Store() const {
    const int row = parts.channels.ChannelI(Channel);
    return row < 0 ? nullptr : &parts.channels.Store(row);
}

std::optional<ChannelClass::Event_View> Event_Edits::Event(std::int32_t eventId) const {
    const ChannelClass* store = Store();
    return store == nullptr ? std::nullopt : store->ReadEvent(store->GetEvent_I(eventId));
}

// ---- ranges ----

bool Event_Edits::Leaves_Notes(std::int32_t eventId, int rows) const {
    const auto event = Event(eventId);
    // The root of a style fragment turns round within its octave; the other kinds have no note.
    if (!event || rows == 0 || (event->Note == nullptr && event->QChord == nullptr))
        return false;
    const int row = Roll_Geometry::Row_Of_Note(Store()->Get_Event_BaseNote(event->EventI)) + rows;
    if (row < 0 || row >= Roll_Geometry::OUT_ROW)
        return true;
    if (event->QChord == nullptr)
        return false;
    const QChordData& chord = *event->QChord;
    const auto used = std::min<std::size_t>(chord.Active, chord.ChordNotes.size());
    return std::any_of(chord.ChordNotes.begin(), chord.ChordNotes.begin() + static_cast<std::ptrdiff_t>(used),
                       [rows](int note) { return note - rows < 0 || note - rows > 127; });
}

bool Event_Edits::Rows_Agreed(const IDs& ids, int rows) const {
    const auto out = std::count_if(ids.begin(), ids.end(),
                                   [&](std::int32_t eventId) { return Leaves_Notes(eventId, rows); });
    return out == 0 || parts.dialogs.Ask_YesNo(
                           Deletion_Question(out, "the range of the notes\r\nmust be between 0-127)"));
}

bool Event_Edits::Start_Agreed(std::ptrdiff_t before) const {
    return before == 0 || parts.dialogs.Ask_YesNo(Deletion_Question(
                              before, "the start of the events\r\ncan't be less than 1:0:0)"));
}

// ---- time and pitch ----

void Event_Edits::Send_Rows(const IDs& ids, int rows) const {
    for (const std::int32_t eventId : ids) {
        if (Leaves_Notes(eventId, rows))
            parts.hub.Message(sender, MSG_DELETE_EVENT, Channel, eventId);
        else
            parts.hub.Message(sender, MSG_NOTE_EVENT, Channel, eventId, NOT_GIVEN, std::int32_t{-rows});
    }
}

bool Event_Edits::Move_Rows(const IDs& ids, int rows) const {
    if (!Rows_Agreed(ids, rows))
        return false;
    Step step(*this, MOVE_LABEL);
    if (rows != 0)
        Send_Rows(ids, rows);
    step.Close(MSG_NOTE_END);
    return true;
}

bool Event_Edits::Move_Beats(const IDs& ids, double beats) const {
    std::vector<std::pair<std::int32_t, double>> moves;
    std::ptrdiff_t before = 0;
    for (const std::int32_t eventId : ids)
        if (const auto event = Event(eventId)) {
            moves.emplace_back(eventId, Tidy_Beats(event->StartTime + beats));
            before += moves.back().second < 0.0 ? 1 : 0;
        }
    if (!Start_Agreed(before))
        return false;
    Step step(*this, MOVE_LABEL);
    if (beats != 0.0)
        for (const auto& [eventId, start] : moves)
            parts.hub.Message(sender, MSG_MOVE_EVENT, Channel, eventId, start, NOT_GIVEN_TIME);
    step.Close(MSG_MOVE_END);
    return true;
}

Event_Edits::IDs Event_Edits::Copy_Events(const IDs& ids, double beats, int rows) const {
    New_Events copies;
    IDs kept;
    std::ptrdiff_t before = 0;
    for (const std::int32_t eventId : ids) {
        const auto event = Event(eventId);
        if (!event)
            continue;
        const double start = Tidy_Beats(event->StartTime + beats);
        if (start < 0.0) {
            ++before;
            continue;
        }
        kept.push_back(eventId);
        copies.emplace_back(start, event->Payload());
    }
    if (!Start_Agreed(before) || !Rows_Agreed(kept, rows))
        return {};
    Step step(*this, "Copy events");
    IDs added = Send_Adds(copies);
    if (rows != 0)
        Send_Rows(added, rows);
    step.Close(MSG_EVENTS_ADDED_END);
    return added;
}

void Event_Edits::Align(const IDs& ids, int div, int strength) const {
    Step step(*this, "Align Events");
    for (const std::int32_t eventId : ids) {
        const auto event = Event(eventId);
        if (!event)
            continue;
        const double goal = Round_To_Grid(event->StartTime, div);
        const double start =
            strength >= 100 ? goal : event->StartTime + (goal - event->StartTime) * strength / 100.0;
        parts.hub.Message(sender, MSG_MOVE_EVENT, Channel, eventId, start, NOT_GIVEN_TIME);
    }
    step.Close(MSG_MOVE_END);
}

bool Event_Edits::Set_Times(const IDs& ids, std::optional<double> start, std::optional<double> length,
                            bool add) const {
    const auto moved = [&](double from) { return add ? Tidy_Beats(from + start.value_or(0.0)) : *start; };
    std::ptrdiff_t before = 0;
    if (start)
        for (const std::int32_t eventId : ids)
            if (const auto event = Event(eventId))
                before += moved(event->StartTime) < 0.0 ? 1 : 0;
    if (!Start_Agreed(before))
        return false;
    Step step(*this, "Change events time properties");
    for (const std::int32_t eventId : ids) {
        const auto event = Event(eventId);
        if (!event)
            continue;
        if (start)
            parts.hub.Message(sender, MSG_MOVE_EVENT, Channel, eventId, moved(event->StartTime),
                              NOT_GIVEN_TIME);
        if (length)
            parts.hub.Message(sender, MSG_LENGTH_EVENT, Channel, eventId, add ? NOT_GIVEN_TIME : *length,
                              add ? *length : NOT_GIVEN_TIME);
    }
    step.Close(MSG_MOVE_END);
    return true;
}

// ---- length ----

void Event_Edits::Resize(const IDs& ids, double beats, double least) const {
    const ChannelClass* store = Store();
    Step step(*this, "Resize events");
    for (const std::int32_t eventId : ids) {
        const auto event = Event(eventId);
        if (!event || !Has_Length(event->Kind) || beats == 0.0)
            continue;
        const double before = store->GetEvent_Length(event->EventI);
        const double shortest = beats < 0.0 ? std::min(before, least) : 0.0;
        const double length = std::max({LEAST_LENGTH, shortest, Tidy_Beats(before + beats)});
        parts.hub.Message(sender, MSG_LENGTH_EVENT, Channel, eventId, length, NOT_GIVEN_TIME);
    }
    step.Close(MSG_LENGTH_END);
}

void Event_Edits::Legato(const IDs& ids) const {
    std::vector<std::pair<double, std::int32_t>> byStart;
    for (const std::int32_t eventId : ids)
        if (const auto event = Event(eventId); event && Has_Length(event->Kind))
            byStart.emplace_back(event->StartTime, eventId);
    std::sort(byStart.begin(), byStart.end());
    Step step(*this, "Legato");
    double next = std::numeric_limits<double>::infinity();
    double later = next; // the start behind the one in hand
    for (std::size_t i = byStart.size(); i-- > 0;) {
        const auto& [start, eventId] = byStart[i];
        if (start < next) {
            later = next;
            next = start;
        }
        if (later < std::numeric_limits<double>::infinity())
            parts.hub.Message(sender, MSG_LENGTH_EVENT, Channel, eventId, Tidy_Beats(later - start),
                              NOT_GIVEN_TIME);
    }
    step.Close(MSG_LENGTH_END);
}

// ---- volume, chord, properties ----

void Event_Edits::Set_Volumes(const std::vector<std::pair<std::int32_t, int>>& volumes) const {
    Step step(*this, "Change events volume");
    for (const auto& [eventId, volume] : volumes)
        parts.hub.Message(sender, MSG_VOLUME_EVENT, Channel, eventId, std::int32_t{volume}, NOT_GIVEN);
    step.Close(MSG_VOLUME_END);
}

void Event_Edits::Set_Volume(const IDs& ids, int volume) const {
    std::vector<std::pair<std::int32_t, int>> volumes;
    for (const std::int32_t eventId : ids)
        volumes.emplace_back(eventId, volume);
    Set_Volumes(volumes);
}

void Event_Edits::Change_Volume(const IDs& ids, int delta) const {
    Step step(*this, "Change events volume");
    if (delta != 0)
        for (const std::int32_t eventId : ids)
            parts.hub.Message(sender, MSG_VOLUME_EVENT, Channel, eventId, NOT_GIVEN, std::int32_t{delta});
    step.Close(MSG_VOLUME_END);
}

void Event_Edits::Set_Chord_Type(const IDs& ids, int chordType) const {
    Step step(*this, "Change chord type");
    for (const std::int32_t eventId : ids)
        parts.hub.Message(sender, MSG_CHORD_TYPE_EVENT, Channel, eventId, std::int32_t{chordType});
    step.Close(MSG_CHORD_TYPE_END);
}

void Event_Edits::Set_Properties(std::int32_t eventId, const EventData& data,
                                 const std::string& label) const {
    Step step(*this, label);
    parts.hub.Message(sender, MSG_PROPERTIES_EVENT, Channel, eventId, data);
    step.Close(MSG_PROPERTIES_END);
}

// ---- adding and deleting ----

void Event_Edits::Delete(const IDs& ids, const std::string& label) const {
    if (ids.empty())
        return;
    Step step(*this, label);
    for (const std::int32_t eventId : ids)
        parts.hub.Message(sender, MSG_DELETE_EVENT, Channel, eventId);
    step.Close(MSG_GENERAL_UPDATE);
}

Event_Edits::IDs Event_Edits::Send_Adds(const New_Events& events) const {
    IDs added;
    // The notice tells the ID that the event was given.
    const int listener =
        parts.events.Subscribe([&](int msgId, std::int32_t channelId, const std::string& text) {
            std::int32_t eventId = 0;
            if (msgId == MSG_EVENT_ADDED && channelId == Channel &&
                std::from_chars(text.data(), text.data() + text.size(), eventId).ec == std::errc())
                added.push_back(eventId);
        });
    for (const auto& [start, data] : events)
        parts.hub.Message(sender, MSG_EVENT_ADDED, Channel, std::monostate{}, start, data);
    parts.events.Unsubscribe(listener);
    return added;
}

Event_Edits::IDs Event_Edits::Add(const New_Events& events, const std::string& label) const {
    Step step(*this, label);
    IDs added = Send_Adds(events);
    step.Close(MSG_EVENTS_ADDED_END);
    return added;
}

} // namespace tonvex
