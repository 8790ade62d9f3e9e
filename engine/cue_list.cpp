#include "engine/cue_list.h"

#include "platform/sound_door.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr std::uint16_t HIGHEST_VALUE = 127;

std::uint8_t Midi_Value(std::uint16_t value) {
    return static_cast<std::uint8_t>(std::min(value, HIGHEST_VALUE));
}

constexpr std::size_t NUMBERS = 128;

/// The notes that wait for their off, by channel and number, oldest first.
class Open_Notes {
public:
    /// The next note, counted from 0, waits under the key.
    void Add(std::size_t key) {
        const auto note = static_cast<std::int32_t>(next.size());
        next.push_back(NONE);
        if (oldest[key] == NONE)
            oldest[key] = note;
        else
            next[static_cast<std::size_t>(newest[key])] = note;
        newest[key] = note;
    }
    /// The note that has waited longest; -1 for none.
    std::int32_t Take_Oldest(std::size_t key) {
        const std::int32_t note = oldest[key];
        if (note != NONE)
            oldest[key] = next[static_cast<std::size_t>(note)];
        return note;
    }

private:
    static constexpr std::int32_t NONE = -1;
    std::vector<std::int32_t> oldest = std::vector<std::int32_t>(OUTPUT_SLOTS * NUMBERS, NONE);
    std::vector<std::int32_t> newest = std::vector<std::int32_t>(OUTPUT_SLOTS * NUMBERS, NONE);
    std::vector<std::int32_t> next; ///< of each note, the one that waits behind it
};

} // namespace

std::shared_ptr<const Cue_List> Cue_List::Make(std::span<const CueRow> rows) {
    auto list = std::make_shared<Cue_List>();
    list->items.reserve(rows.size());
    Open_Notes open;
    for (const CueRow& row : rows) {
        if (row.Data1 == CueRow::LIST_MARKER) {
            list->row = row.Data2;
            continue;
        }
        if (row.Channel < 0 || row.Channel >= OUTPUT_SLOTS || !std::isfinite(row.Time))
            continue;
        const auto slot = static_cast<std::uint8_t>(row.Channel);
        const std::int64_t at = Moment_At(row.Time);
        if (row.Data1 == CueRow::PATCH_CHANGE) {
            list->items.push_back({at, -1, row.Extra, Kind::Patch, slot, Midi_Value(row.Data2 & 255U),
                                   Midi_Value(static_cast<std::uint16_t>(row.Data2 >> 8U))});
            continue;
        }
        if (row.Data1 > HIGHEST_VALUE)
            continue;
        const auto number = static_cast<std::uint8_t>(row.Data1);
        const std::size_t key = std::size_t{slot} * NUMBERS + number;
        if (row.Data2 > 0) {
            const auto index = static_cast<std::int32_t>(list->notes.size());
            const std::uint8_t velocity = Midi_Value(row.Data2);
            list->notes.push_back(
                {at, NEVER, slot, number, static_cast<std::uint16_t>(row.Extra & CueRow::TAG)});
            list->items.push_back({at, index, 0, Kind::On, slot, number, velocity, row.Extra});
            open.Add(key);
        } else if (const std::int32_t index = open.Take_Oldest(key); index >= 0) {
            Note& note = list->notes[static_cast<std::size_t>(index)];
            note.endAt = std::max(at, note.at + 1);
            list->items.push_back({note.endAt, index, 0, Kind::Off, slot, number, 0});
        }
    }
    const auto earlier = [](const Item& left, const Item& right) {
        if (left.at != right.at)
            return left.at < right.at;
        return left.kind == Kind::Off && right.kind != Kind::Off;
    };
    // One voice alone comes in order, and to look costs next to nothing.
    if (!std::is_sorted(list->items.begin(), list->items.end(), earlier))
        std::stable_sort(list->items.begin(), list->items.end(), earlier);
    return list;
}

std::size_t Cue_List::First_At(std::int64_t at) const noexcept {
    const auto found =
        std::partition_point(items.begin(), items.end(), [at](const Item& item) { return item.at < at; });
    return static_cast<std::size_t>(found - items.begin());
}

std::int32_t Cue_List::Find_Same(const Note& note, std::span<const std::uint8_t> taken) const noexcept {
    // RENEWED is clear in what is looked for.
    constexpr auto BITS = static_cast<std::uint16_t>(CueRow::TAG | CueRow::RENEWED);
    for (std::size_t i = First_At(note.at); i < items.size() && items[i].at == note.at; ++i) {
        const Item& item = items[i];
        if (item.kind == Kind::On && item.slot == note.slot && item.a == note.number &&
            (item.extra & BITS) == note.tag && taken[static_cast<std::size_t>(item.note)] == 0)
            return item.note;
    }
    return -1;
}

} // namespace tonvex
