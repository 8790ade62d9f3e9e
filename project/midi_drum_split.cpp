#include "project/midi_drum_split.h"

#include "engine/short_messages.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tonvex {

namespace {

constexpr int FIRST_DRUM = 26;
constexpr int LAST_DRUM = 81;
constexpr int NO_NOTE = -1;

struct Message {
    std::int64_t delta;
    std::span<const std::uint8_t> bytes;
    int note;
};

bool Is_Drum(int note) {
    return note >= FIRST_DRUM && note <= LAST_DRUM;
}

/// The column is our own, so it is whole.
std::vector<Message> Messages_Of(const midi_format::Bytes& column) {
    constexpr std::uint8_t MORE_FOLLOWS = 0x80;
    std::vector<Message> messages;
    for (std::size_t at = 0; at < column.size();) {
        std::int64_t delta = 0;
        bool more = true;
        while (more) {
            delta = delta * MORE_FOLLOWS + column[at] % MORE_FOLLOWS;
            more = column[at] >= MORE_FOLLOWS;
            ++at;
        }
        const int status = column[at];
        const bool isNote = status == STATUS_NOTE_ON + DRUM_SLOT || status == STATUS_NOTE_OFF + DRUM_SLOT;
        const std::size_t size = status == STATUS_PROGRAM + DRUM_SLOT ? 2 : 3;
        messages.push_back({delta, std::span(column).subspan(at, size), isNote ? column[at + 1] : NO_NOTE});
        at += size;
    }
    return messages;
}

/// The messages that are no notes, and the notes that takes accepts.
template <typename Takes>
midi_format::Bytes Pick(std::span<const Message> messages, const Takes& takes) {
    midi_format::Bytes picked;
    std::int64_t delta = 0;
    for (const Message& message : messages) {
        delta += message.delta;
        if (message.note != NO_NOTE && !takes(message.note))
            continue;
        midi_format::Append_Delta(picked, delta);
        picked.insert(picked.end(), message.bytes.begin(), message.bytes.end());
        delta = 0;
    }
    return picked;
}

} // namespace

std::vector<Drum_Track> Split_Drums(const midi_format::Bytes& column) {
    const std::vector<Message> messages = Messages_Of(column);
    std::array<bool, 128> occurs{};
    bool others = false;
    for (const Message& message : messages) {
        if (message.note == NO_NOTE)
            continue;
        occurs[static_cast<std::size_t>(message.note)] = true;
        others = others || !Is_Drum(message.note);
    }
    std::vector<Drum_Track> tracks;
    for (int drum = FIRST_DRUM; drum <= LAST_DRUM; ++drum) {
        if (occurs[static_cast<std::size_t>(drum)])
            tracks.push_back({drum, Pick(messages, [drum](int note) { return note == drum; })});
    }
    if (others || tracks.empty())
        tracks.push_back({Drum_Track::THE_REST, Pick(messages, [](int note) { return !Is_Drum(note); })});
    return tracks;
}

} // namespace tonvex
