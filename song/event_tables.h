#pragma once

#include "song/event_data.h"

#include <cstdint>
#include <vector>

namespace tonvex {

/// One channel's payloads, a table by kind. An event names its row (DataRef); rows of deleted events stay
/// as they are until Compact. Interface thread.
class Event_Tables {
public:
    std::vector<NoteData> Notes;
    std::vector<QChordData> QChords;
    std::vector<NamedEventData> NamedEvents;
    std::vector<MCEventData> MCEvents;
    std::vector<AudioEventData> AudioEvents;

    /// Appends a copy and gives its DataRef; for a patch the row of the patch table that it names.
    /// A payload that counts as free is marked live; a length that is no number becomes the shortest.
    std::int32_t Add(const EventData& data);
    /// Replaces a row by a payload of its kind; the old length stays. False when kind or row do not fit.
    bool Replace(Event_Kind kind, std::int32_t dataRef, const EventData& data);
    /// The row exists. A patch needs none.
    bool Holds(Event_Kind kind, std::int32_t dataRef) const noexcept;
    /// The length that the kind stores; null for a kind without one. The row exists.
    double* Stored_Length(Event_Kind kind, std::int32_t dataRef) noexcept;
    const double* Stored_Length(Event_Kind kind, std::int32_t dataRef) const noexcept;
    void Clear();
    /// Every row as Add would have stored it; for rows that came from a file.
    void Bring_Into_Range();
    bool operator==(const Event_Tables&) const = default;

    /// Rows of all tables.
    std::size_t Row_Count() const noexcept {
        return Notes.size() + QChords.size() + NamedEvents.size() + MCEvents.size() + AudioEvents.size();
    }

    /// One use of a row by an event or a recorded event.
    struct Use {
        Event_Kind kind;
        std::int32_t* dataRef;
    };
    /// Fills rows that nobody uses with the last used ones, cuts the tables, and re-points all users of a
    /// moved row. Linear. A use of a row that does not exist is left alone. False when there was nothing to
    /// do.
    bool Compact(const std::vector<Use>& uses);
};

} // namespace tonvex
