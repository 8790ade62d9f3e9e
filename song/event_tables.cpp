#include "song/event_tables.h"

#include <cmath>
#include <type_traits>
#include <utility>

namespace tonvex {

namespace {

bool Is_Row(std::int32_t row, std::size_t count) noexcept {
    return row >= 0 && static_cast<std::size_t>(row) < count;
}

std::size_t Index(std::int32_t row) noexcept {
    return static_cast<std::size_t>(row);
}

/// Makes of a payload what a table keeps of it.
template <typename Row>
void Mark_Stored(Row& row) {
    if constexpr (requires { row.InUse; })
        row.InUse = FLAG_ON;
    if constexpr (requires { row.Length; })
        row.Length = Stored_Beats(row.Length, MIN_LENGTH_BEATS);
}

template <typename Row>
std::int32_t Append(std::vector<Row>& table, const Row& row) {
    table.push_back(row);
    Mark_Stored(table.back());
    return static_cast<std::int32_t>(table.size()) - 1;
}

template <typename Row>
void Overwrite(Row& old, const Row& data) {
    Row row = data;
    Mark_Stored(row);
    if constexpr (requires { row.Length; })
        row.Length = old.Length;
    old = std::move(row);
}

template <typename Row>
bool Compact_Table(std::vector<Row>& table, Event_Kind kind, const std::vector<Event_Tables::Use>& uses) {
    constexpr std::int32_t FREE = -1;
    std::vector<std::int32_t> newRow(table.size(), FREE);
    for (const Event_Tables::Use& use : uses)
        if (use.kind == kind && Is_Row(*use.dataRef, table.size()))
            newRow[Index(*use.dataRef)] = *use.dataRef;
    std::size_t hole = 0;
    std::size_t end = table.size();
    for (;; ++hole) {
        while (hole < end && newRow[hole] != FREE)
            ++hole;
        while (end > hole && newRow[end - 1] == FREE)
            --end;
        if (hole == end)
            break;
        --end;
        table[hole] = std::move(table[end]);
        newRow[end] = static_cast<std::int32_t>(hole);
    }
    const std::size_t rowsBefore = table.size();
    if (end == rowsBefore)
        return false;
    table.resize(end);
    for (const Event_Tables::Use& use : uses)
        if (use.kind == kind && Is_Row(*use.dataRef, rowsBefore))
            *use.dataRef = newRow[Index(*use.dataRef)];
    return true;
}

} // namespace

std::int32_t Event_Tables::Add(const EventData& data) {
    struct Adder {
        Event_Tables& tables;
        std::int32_t operator()(const NoteData& row) const { return Append(tables.Notes, row); }
        std::int32_t operator()(const QChordData& row) const { return Append(tables.QChords, row); }
        std::int32_t operator()(const PatchData& row) const { return row.DataRef; }
        std::int32_t operator()(const NamedEventData& row) const { return Append(tables.NamedEvents, row); }
        std::int32_t operator()(const MCEventData& row) const { return Append(tables.MCEvents, row); }
        std::int32_t operator()(const AudioEventData& row) const { return Append(tables.AudioEvents, row); }
    };
    return std::visit(Adder{*this}, data);
}

bool Event_Tables::Replace(Event_Kind kind, std::int32_t dataRef, const EventData& data) {
    if (Kind_Of(data) != kind || kind == EV_PATCH || !Holds(kind, dataRef))
        return false;
    struct Replacer {
        Event_Tables& tables;
        std::size_t i;
        void operator()(const NoteData& row) const { Overwrite(tables.Notes[i], row); }
        void operator()(const QChordData& row) const { Overwrite(tables.QChords[i], row); }
        void operator()(const PatchData& /*row*/) const {}
        void operator()(const NamedEventData& row) const { Overwrite(tables.NamedEvents[i], row); }
        void operator()(const MCEventData& row) const { Overwrite(tables.MCEvents[i], row); }
        void operator()(const AudioEventData& row) const { Overwrite(tables.AudioEvents[i], row); }
    };
    std::visit(Replacer{*this, Index(dataRef)}, data);
    return true;
}

bool Event_Tables::Holds(Event_Kind kind, std::int32_t dataRef) const noexcept {
    switch (kind) {
    case EV_NOTE:
        return Is_Row(dataRef, Notes.size());
    case EV_QCHORD:
        return Is_Row(dataRef, QChords.size());
    case EV_PATCH:
        return true;
    case EV_NAMED:
        return Is_Row(dataRef, NamedEvents.size());
    case EV_MC:
        return Is_Row(dataRef, MCEvents.size());
    case EV_AUDIO:
        return Is_Row(dataRef, AudioEvents.size());
    }
    return false;
}

const double* Event_Tables::Stored_Length(Event_Kind kind, std::int32_t dataRef) const noexcept {
    if (kind == EV_NOTE)
        return &Notes[Index(dataRef)].Length;
    if (kind == EV_QCHORD)
        return &QChords[Index(dataRef)].Length;
    return kind == EV_MC ? &MCEvents[Index(dataRef)].Length : nullptr;
}

double* Event_Tables::Stored_Length(Event_Kind kind, std::int32_t dataRef) noexcept {
    return const_cast<double*>(std::as_const(*this).Stored_Length(kind, dataRef));
}

void Event_Tables::Clear() {
    *this = Event_Tables{};
}

void Event_Tables::Bring_Into_Range() {
    const auto store = [](auto& table) {
        for (auto& row : table)
            Mark_Stored(row);
    };
    store(Notes);
    store(QChords);
    store(NamedEvents);
    store(MCEvents);
    store(AudioEvents);
}

bool Event_Tables::Compact(const std::vector<Use>& uses) {
    bool changed = Compact_Table(Notes, EV_NOTE, uses);
    changed = Compact_Table(QChords, EV_QCHORD, uses) || changed;
    changed = Compact_Table(NamedEvents, EV_NAMED, uses) || changed;
    changed = Compact_Table(MCEvents, EV_MC, uses) || changed;
    return Compact_Table(AudioEvents, EV_AUDIO, uses) || changed;
}

} // namespace tonvex
