#include "engine/cue_player.h"

#include "base/rounding.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr std::uint8_t NOTE_OFF_VELOCITY = 100;
constexpr float HIGHEST_VELOCITY = 127.0F;
constexpr double BEATS_A_MOMENT = 1.0 / Song_Moment::A_BEAT;
/// How soon an output without room is tried again.
constexpr std::int64_t RETRY_NS = 1'000'000;
/// Rows that close together go out in one go.
constexpr std::int64_t GRAIN_NS = 1'000'000;

std::size_t Index(int value) {
    return static_cast<std::size_t>(value);
}

/// Cut, but a note is left out only where its velocity rounds to 0: so the polling engine decides too.
std::uint8_t Velocity(std::uint8_t stored, float factor) {
    const float product = static_cast<float>(stored) * factor;
    return RoundHalfEven(product) == 0
               ? std::uint8_t{0}
               : static_cast<std::uint8_t>(std::clamp(product, 1.0F, HIGHEST_VELOCITY));
}

} // namespace

Cue_Player::Cue_Player(Cue_Output& cueOutput, const Millisecond_Counter& machineClock, std::int64_t margin)
    : output(cueOutput), counter(machineClock), marginNs(margin) {}

void Cue_Player::Set_Output(bool synth, std::int64_t lead) {
    output.Use(synth);
    leadNs = lead;
}

void Cue_Player::Set_List_Count(std::size_t count) {
    lists.assign(count, {});
    const auto empty = Cue_List::Make({});
    for (List& list : lists)
        list.rows = empty;
    first.Reset(count);
}

void Cue_Player::Set_List(std::size_t index, std::shared_ptr<const Cue_List> rows) {
    if (index >= lists.size())
        return;
    lists[index].sounding.assign(rows->Notes().size(), 0);
    lists[index].rows = std::move(rows);
    lists[index].next = 0;
    Note_Next(index);
}

void Cue_Player::Set_Position(double beats) {
    position = Moment_At(beats);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        List& list = lists[i];
        list.next = list.rows->First_At(position);
        list.missedPatches = list.muted ? 1 : 0;
        Note_Next(i);
    }
}

void Cue_Player::Start() {
    playing = true;
    lastDueNs = settledNs;
    settledAt = position - 1;
}

void Cue_Player::Replace_List(std::size_t index, std::shared_ptr<const Cue_List>& rows, bool keepSounding) {
    if (index >= lists.size())
        return;
    Take_Back();
    List& list = lists[index];
    std::vector<std::uint8_t> kept(rows->Notes().size(), 0);
    for (std::size_t note = 0; note < list.sounding.size(); ++note) {
        if (list.sounding[note] == 0)
            continue;
        const std::int32_t same = keepSounding ? rows->Find_Same(list.rows->Notes()[note], kept) : -1;
        if (same >= 0 && Moment_Of(rows->Notes()[static_cast<std::size_t>(same)].endAt) >= cutNs)
            kept[static_cast<std::size_t>(same)] = 1;
        else
            Close(list, static_cast<std::int32_t>(note));
    }
    const std::int64_t lateAt = Late_At(list);
    list.rows.swap(rows);
    list.sounding = std::move(kept);
    list.next = list.rows->First_At(position);
    if (!keepSounding)
        list.missedPatches = list.muted ? 1 : 0;
    Note_Next(index);
    if (!playing)
        return;
    // What has been walked is not walked again, also where a new clock reads less than the one before. Nor
    // is what lies before the present, unless the old rows were late: then the new ones go on from there.
    std::int64_t walkedAt = settledAt;
    for (const In_Flight& flying : inFlight) {
        if (flying.at != Cue_List::NEVER)
            walkedAt = std::max(walkedAt, flying.at);
    }
    const auto items = list.rows->Items();
    const auto passed = std::partition_point(
        items.begin() + static_cast<std::ptrdiff_t>(list.next), items.end(), [&](const Cue_List::Item& item) {
            return item.at <= walkedAt || (item.at < lateAt && Moment_Of(item.at) < cutNs);
        });
    list.next = static_cast<std::size_t>(passed - items.begin());
    Note_Next(index);
}

/// The place of the list's next row when it was to leave before cutNs and has not; NEVER otherwise. A port
/// gets each row at its very moment, and a thread may have been put off.
std::int64_t Cue_Player::Late_At(const List& list) const {
    const auto items = list.rows->Items();
    if (list.next >= items.size() || Moment_Of(items[list.next].at) >= cutNs)
        return Cue_List::NEVER;
    return items[list.next].at;
}

/// Rows of the channel are in flight.
bool Cue_Player::Flies_With(int row) const {
    return std::any_of(inFlight.begin(), inFlight.end(), [this, row](const In_Flight& flying) {
        return flying.at != Cue_List::NEVER && lists[flying.list].rows->Row() == row;
    });
}

void Cue_Player::Set_Mute(int row, bool mute) {
    for (List& list : lists) {
        if (list.rows->Row() != row || list.muted == mute)
            continue;
        Take_Back();
        list.muted = mute;
        if (!mute) {
            Send_Missed_Patch(list);
            continue;
        }
        list.missedPatches = 0;
        Close_All(list);
    }
}

void Cue_Player::Set_Vol_Factor(int row, float factor) {
    if (Flies_With(row))
        Take_Back();
    for (List& list : lists) {
        if (list.rows->Row() == row)
            list.factor = factor;
    }
}

void Cue_Player::Set_Performer_Slot(int slot) {
    if (slot == performerSlot)
        return;
    Take_Back();
    performerSlot = slot;
}

void Cue_Player::Set_Live_Notes(const Live_Notes& notes) {
    const bool touchesFlying =
        std::any_of(inFlight.begin(), inFlight.end(), [this, &notes](const In_Flight& flying) {
            const std::size_t note = flying.message.a;
            return flying.heedsPerformer && flying.message.slot == performerSlot &&
                   (liveNotes[note] > 0) != (notes[note] > 0);
        });
    if (touchesFlying)
        Take_Back();
    liveNotes = notes;
}

void Cue_Player::Set_Clock(float newSpeed, std::int64_t newStart, std::vector<Tempo_Segment> newSegments) {
    const bool moves =
        clockSet && std::any_of(inFlight.begin(), inFlight.end(), [&](const In_Flight& flying) {
            return flying.at != Cue_List::NEVER &&
                   Moment_In(newSegments, newStart, static_cast<double>(newSpeed),
                             static_cast<double>(flying.at) * BEATS_A_MOMENT) != Moment_Of(flying.at);
        });
    if (moves)
        Take_Back();
    speed = static_cast<double>(newSpeed);
    startTickMs = newStart;
    segments = std::move(newSegments);
    clockSet = !segments.empty();
}

void Cue_Player::Stop() {
    if (!playing)
        return;
    Take_Back();
    for (List& list : lists)
        Close_All(list);
    Settle(NEVER);
    settledNs = std::max(settledNs, cutNs);
    tookBack = false;
    playing = false;
}

std::int64_t Cue_Player::Moment_Of(std::int64_t at) const {
    if (!clockSet || at == Cue_List::NEVER)
        return NEVER;
    return Moment_In(segments, startTickMs, speed, static_cast<double>(at) * BEATS_A_MOMENT);
}

/// After every change of a list's next row.
void Cue_Player::Note_Next(std::size_t index) {
    const List& list = lists[index];
    const auto items = list.rows->Items();
    if (list.next >= items.size())
        first.Clear(index);
    else
        first.Set(index, items[list.next].at, items[list.next].kind == Cue_List::Kind::Off);
}

bool Cue_Player::Holds(int slot, int note) const noexcept {
    return holds[Index(slot)][Index(note)].load() > 0;
}

void Cue_Player::Tell_Live_Notes(const Live_Notes& notes) noexcept {
    for (std::size_t note = 0; note < notes.size(); ++note)
        liveNow[note].store(notes[note]);
}

void Cue_Player::Take_Over(int slot, int note) {
    if (!playing)
        return;
    Settle(counter.Now_Ns());
    if (Holds(slot, note))
        return;
    Take_Back();
    Send_Off(slot, note);
}

bool Cue_Player::Held(int slot, int note) const noexcept {
    return slot == performerSlot && liveNotes[Index(note)] > 0 && liveNow[Index(note)].load() > 0;
}

/// A row's end has come. True when the note goes on, with another row or with the performer, and this row no
/// longer holds it.
bool Cue_Player::Leave_Note(int slot, int note) noexcept {
    const bool isLast = counts[Index(slot)][Index(note)] == 1;
    if (isLast && !Held(slot, note))
        return false;
    --holds[Index(slot)][Index(note)];
    // Let go just before that, the performer has found the row's hold and sent no off.
    if (!isLast || Held(slot, note))
        return true;
    ++holds[Index(slot)][Index(note)];
    return false;
}

/// False when the output has no room; nothing has happened then.
bool Cue_Player::Walk(std::size_t index, std::int64_t dueNs) {
    List& list = lists[index];
    const Cue_List::Item& item = list.rows->Items()[list.next];
    In_Flight row{{}, item.at, static_cast<std::uint32_t>(index), list.next};
    row.message.dueNs = dueNs;
    row.message.slot = item.slot;
    row.message.a = item.a;
    switch (item.kind) {
    case Cue_List::Kind::On:
        row.message.op = Sound_Op::NoteOn;
        row.message.b = Velocity(item.b, list.factor);
        row.heedsPerformer = (item.extra & CueRow::YIELDS) != 0;
        row.sent = !list.muted && row.message.b > 0 && !(row.heedsPerformer && Held(item.slot, item.a));
        row.effect = row.sent ? Effect::Opened : Effect::None;
        break;
    case Cue_List::Kind::Off:
        row.message.op = Sound_Op::NoteOff;
        row.message.b = NOTE_OFF_VELOCITY;
        row.heedsPerformer = true;
        if (list.sounding[static_cast<std::size_t>(item.note)] != 0) {
            row.effect = Effect::Closed;
            row.sent = !Leave_Note(item.slot, item.a);
        }
        break;
    case Cue_List::Kind::Patch:
        row.message.op = Sound_Op::Patch;
        row.message.b = item.b;
        row.message.font = item.font;
        row.sent = !list.muted;
        list.missedPatches += row.sent ? 0 : 1;
        break;
    }
    if (row.sent && !output.Send(row.message))
        return false;
    if (row.effect != Effect::None) {
        const bool opened = row.effect == Effect::Opened;
        list.sounding[static_cast<std::size_t>(item.note)] = opened ? 1 : 0;
        counts[item.slot][item.a] += opened ? 1 : -1;
    }
    ++list.next;
    Note_Next(index);
    lastDueNs = dueNs;
    inFlight.push_back(row);
    return true;
}

std::int64_t Cue_Player::Advance() {
    const std::int64_t now = counter.Now_Ns();
    settledNs = std::max(settledNs, tookBack ? std::max(cutNs, now) : now);
    tookBack = false;
    if (!Send_Owed())
        return now + RETRY_NS;
    std::int64_t wakeNs = NEVER;
    while (playing) {
        const std::size_t index = first.First();
        if (index == First_Of_Lists::NONE)
            break;
        const std::int64_t moment = Moment_Of(lists[index].rows->Items()[lists[index].next].at);
        if (moment == NEVER)
            break;
        if (moment > now + leadNs + (leadNs > 0 ? GRAIN_NS : 0)) {
            wakeNs = moment - leadNs;
            break;
        }
        if (!Walk(index, std::max(moment, lastDueNs))) {
            wakeNs = now + RETRY_NS;
            break;
        }
    }
    Settle(now);
    if (wakeNs == NEVER && !inFlight.empty())
        wakeNs = inFlight.back().message.dueNs;
    // The performer asks what Holds a note, so that has to be known when its moment comes.
    const auto concernsPerformer = [this](const In_Flight& row) {
        return row.message.slot == performerSlot && row.effect != Effect::None;
    };
    const auto next = std::find_if(inFlight.begin(), inFlight.end(), concernsPerformer);
    return next == inFlight.end() ? wakeNs : std::min(wakeNs, next->message.dueNs);
}

/// False when the output still has no room for them.
bool Cue_Player::Send_Owed() {
    while (!owed.empty()) {
        if (!output.Send(owed.back()))
            return false;
        output.Sounded(owed.back());
        owed.pop_back();
    }
    return true;
}

/// An end that is not sent leaves the note to whoever else holds it, the performer perhaps, who lets go
/// before the end comes: nobody would send it then if the row still counted.
bool Cue_Player::Leaves_The_Note(const In_Flight& row) {
    return row.effect == Effect::Closed && !row.sent;
}

void Cue_Player::Settle(std::int64_t untilNs) {
    for (; !inFlight.empty() && inFlight.front().message.dueNs <= untilNs; inFlight.pop_front()) {
        const In_Flight& row = inFlight.front();
        if (row.sent)
            output.Sounded(row.message);
        if (row.effect != Effect::None && !Leaves_The_Note(row))
            holds[row.message.slot][row.message.a] += row.effect == Effect::Opened ? 1 : -1;
        if (row.at != Cue_List::NEVER)
            settledAt = row.at;
    }
}

bool Cue_Player::At_End() const {
    // The end of a note that began before the start of the run is nothing to wait for.
    const auto isOver = [](const List& list) {
        const auto left = list.rows->Items().subspan(list.next);
        return std::all_of(left.begin(), left.end(), [&list](const Cue_List::Item& item) {
            return item.kind == Cue_List::Kind::Off &&
                   list.sounding[static_cast<std::size_t>(item.note)] == 0;
        });
    };
    const bool flies = std::any_of(inFlight.begin(), inFlight.end(), [](const In_Flight& row) {
        return row.sent || row.message.op != Sound_Op::NoteOff;
    });
    return !flies && std::all_of(lists.begin(), lists.end(), isOver);
}

/// Once between two calls of Advance: from cutNs on everything is as if it had not been walked.
void Cue_Player::Take_Back() {
    if (tookBack || !playing)
        return;
    tookBack = true;
    cutNs = std::max(counter.Now_Ns() + marginNs, settledNs + 1);
    if (inFlight.empty() || inFlight.back().message.dueNs < cutNs)
        return;
    if (!output.Take_Back(cutNs)) {
        cutNs = inFlight.back().message.dueNs + 1; // it sounds; what changes does so behind it
        return;
    }
    // A thread that was put off since it read the clock may have come too late for the first of them.
    const std::int64_t doubtfulUntilNs = marginNs > 0 ? counter.Now_Ns() : cutNs - 1;
    doubtful.clear();
    while (!inFlight.empty() && inFlight.back().message.dueNs >= cutNs) {
        const In_Flight& row = inFlight.back();
        if (row.sent && row.message.op == Sound_Op::NoteOn && row.message.dueNs <= doubtfulUntilNs)
            doubtful.emplace_back(row.message.slot, row.message.a);
        Undo(row);
        inFlight.pop_back();
    }
    lastDueNs = cutNs;
    for (const auto& [slot, note] : doubtful) {
        if (counts[Index(slot)][Index(note)] == 0)
            Send_Off(slot, note);
    }
}

void Cue_Player::Undo(const In_Flight& row) {
    if (row.at == Cue_List::NEVER)
        return;
    List& list = lists[row.list];
    list.next = row.item;
    Note_Next(row.list);
    if (row.message.op == Sound_Op::Patch && !row.sent)
        --list.missedPatches;
    if (row.effect == Effect::None)
        return;
    const bool opened = row.effect == Effect::Opened;
    const auto note = static_cast<std::size_t>(list.rows->Items()[row.item].note);
    list.sounding[note] = opened ? 0 : 1;
    counts[row.message.slot][row.message.a] += opened ? -1 : 1;
    if (Leaves_The_Note(row))
        ++holds[row.message.slot][row.message.a];
}

void Cue_Player::Close(List& list, std::int32_t note) {
    const Cue_List::Note& ended = list.rows->Notes()[static_cast<std::size_t>(note)];
    list.sounding[static_cast<std::size_t>(note)] = 0;
    --holds[ended.slot][ended.number];
    if (--counts[ended.slot][ended.number] == 0)
        Send_Off(ended.slot, ended.number);
}

void Cue_Player::Close_All(List& list) {
    for (std::size_t note = 0; note < list.sounding.size(); ++note) {
        if (list.sounding[note] != 0)
            Close(list, static_cast<std::int32_t>(note));
    }
}

/// At the moment from which on everything was taken back.
void Cue_Player::Send_Off(int slot, int note) {
    if (Held(slot, note))
        return;
    In_Flight off{{}, Cue_List::NEVER, 0, 0};
    off.heedsPerformer = true;
    off.sent = true;
    off.message.dueNs = cutNs;
    off.message.op = Sound_Op::NoteOff;
    off.message.slot = static_cast<std::uint8_t>(slot);
    off.message.a = static_cast<std::uint8_t>(note);
    off.message.b = NOTE_OFF_VELOCITY;
    Send_At_Cut(off);
}

/// The channel is heard again: the last patch change that went by meanwhile counts from here.
void Cue_Player::Send_Missed_Patch(List& list) {
    if (!playing || std::exchange(list.missedPatches, 0) <= 0)
        return;
    const auto passed = list.rows->Items().first(list.next);
    const auto last = std::find_if(passed.rbegin(), passed.rend(), [](const Cue_List::Item& item) {
        return item.kind == Cue_List::Kind::Patch;
    });
    if (last == passed.rend())
        return;
    In_Flight patch{{}, Cue_List::NEVER, 0, 0};
    patch.sent = true;
    patch.message.dueNs = cutNs;
    patch.message.op = Sound_Op::Patch;
    patch.message.slot = last->slot;
    patch.message.a = last->a;
    patch.message.b = last->b;
    patch.message.font = last->font;
    Send_At_Cut(patch);
}

void Cue_Player::Send_At_Cut(In_Flight row) {
    lastDueNs = std::max(lastDueNs, cutNs);
    if (output.Send(row.message))
        inFlight.push_back(row);
    else
        owed.push_back(row.message);
}

} // namespace tonvex
