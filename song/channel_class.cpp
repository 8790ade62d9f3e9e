#include "song/channel_class.h"

#include <algorithm>
#include <limits>

namespace tonvex {

EventData ChannelClass::Event_View::Payload() const {
    if (Note != nullptr)
        return *Note;
    if (QChord != nullptr)
        return *QChord;
    if (Named != nullptr)
        return *Named;
    if (MC != nullptr)
        return *MC;
    if (Audio != nullptr)
        return *Audio;
    return PatchData{DataRef};
}

ChannelClass::ChannelClass(Channel_Host& channelHost) : host(channelHost) {}

// ---- adding and deleting ----

std::int32_t ChannelClass::New_ID() {
    if (NextID != std::numeric_limits<std::int32_t>::max())
        return NextID++;
    while (Row_By_ID().contains(lowestSpareId))
        ++lowestSpareId;
    return lowestSpareId++;
}

std::unordered_map<std::int32_t, std::int32_t>& ChannelClass::Row_By_ID() const {
    if (!rowsIndexed) {
        rowById.clear();
        rowById.reserve(Events.size() + RecEvents.size());
        for (std::int32_t row = 0; row < std::ssize(Events); ++row)
            if (Is_On(Row(row).InUse))
                rowById[Row(row).ID] = row;
        for (const RecEvent& recorded : RecEvents)
            rowById[recorded.ID] = -1;
        rowsIndexed = true;
    }
    return rowById;
}

void ChannelClass::Raise_NextID(std::int32_t next) noexcept {
    NextID = std::max(NextID, next);
    Changed();
}

void ChannelClass::Place(const ChannelEvent& event, bool notSorted) {
    if (LastEventN == -1) {
        Events.clear();
        timeList.Clear();
        reSortOwed = false;
    }
    const auto row = static_cast<std::int32_t>(Events.size());
    Events.push_back(event);
    if (rowsIndexed)
        rowById[event.ID] = row;
    Changed();
    ++LastEventN;
    if (notSorted) {
        reSortOwed = true;
        timeList.Append(row, event.StartTime);
    } else {
        timeList.Insert(row, event.StartTime);
    }
    Note_End(row);
    Log(event.ID, MOD_ADDED);
}

std::int32_t ChannelClass::AddNewEvent(double startTime, const EventData& data, bool notSorted) {
    const ChannelEvent event{.ID = New_ID(),
                             .StartTime = Start_In_Song(startTime),
                             .Kind = Kind_Of(data),
                             .DataRef = tables.Add(data),
                             .InUse = FLAG_ON};
    Place(event, notSorted);
    return event.ID;
}

bool ChannelClass::DeleteEvent(std::int32_t eventId, std::int32_t eventI) {
    const std::int32_t row = eventI != -1 ? eventI : GetEvent_I(eventId);
    if (!ExistsEventI(row))
        return false;
    ChannelEvent& event = Row(row);
    Log(event.ID, MOD_DELETED);
    if (rowsIndexed)
        rowById.erase(event.ID);
    Changed();
    if (event.ID >= 0)
        lowestSpareId = std::min(lowestSpareId, event.ID);
    event.InUse = FLAG_OFF;
    --LastEventN;
    timeList.Remove(row);
    return true;
}

void ChannelClass::Clear() {
    ChannelNumber = 0;
    Events.clear();
    tables.Clear();
    timeList.Clear();
    reSortOwed = false;
    rowById.clear();
    rowsIndexed = false;
    Changed();
    NextID = FIRST_ID;
    lowestSpareId = 0;
    LastEventN = -1;
    Forget_Ends();
    RecEvents.clear();
    Clear_Mods();
}

// ---- recording ----

std::int32_t ChannelClass::AddNewEvent_RecMode(double startTime, const EventData& data) {
    RecEvent event{.ID = New_ID(),
                   .StartTime = Start_In_Song(startTime),
                   .Kind = Kind_Of(data),
                   .DataRef = tables.Add(data),
                   .Length = 0.0};
    event.Length = Length_Of(event.Kind, event.DataRef, event.StartTime);
    if (rowsIndexed)
        rowById[event.ID] = -1;
    RecEvents.push_back(event);
    Changed();
    return Recorded_Count() - 1;
}

void ChannelClass::CopyRecEvents() {
    for (const RecEvent& recorded : RecEvents)
        Place(ChannelEvent{.ID = recorded.ID,
                           .StartTime = recorded.StartTime,
                           .Kind = recorded.Kind,
                           .DataRef = recorded.DataRef,
                           .InUse = FLAG_ON},
              false);
    RecEvents.clear();
}

// ---- reading ----

void ChannelClass::Point_At_Data(Event_View& view) const {
    const auto i = static_cast<std::size_t>(view.DataRef);
    switch (view.Kind) {
    case EV_NOTE:
        view.Note = &tables.Notes[i];
        break;
    case EV_QCHORD:
        view.QChord = &tables.QChords[i];
        break;
    case EV_PATCH:
        break;
    case EV_NAMED:
        view.Named = &tables.NamedEvents[i];
        break;
    case EV_MC:
        view.MC = &tables.MCEvents[i];
        break;
    case EV_AUDIO:
        view.Audio = &tables.AudioEvents[i];
        break;
    }
}

std::optional<ChannelClass::Event_View> ChannelClass::ReadEvent(std::int32_t eventI) const {
    if (!ExistsEventI(eventI) || !tables.Holds(Row(eventI).Kind, Row(eventI).DataRef))
        return std::nullopt;
    const ChannelEvent& event = Row(eventI);
    Event_View view{.EventI = eventI,
                    .StartTime = event.StartTime,
                    .Kind = event.Kind,
                    .EventID = event.ID,
                    .DataRef = event.DataRef};
    Point_At_Data(view);
    return view;
}

std::optional<ChannelClass::Event_View> ChannelClass::ReadEvent_RecMode(std::int32_t recI) const {
    if (recI < 0 || recI >= Recorded_Count())
        return std::nullopt;
    const RecEvent& event = RecEvents[static_cast<std::size_t>(recI)];
    Event_View view{.EventI = recI,
                    .StartTime = event.StartTime,
                    .Kind = event.Kind,
                    .EventID = event.ID,
                    .DataRef = event.DataRef,
                    .RecLength = event.Length};
    Point_At_Data(view);
    return view;
}

std::int32_t ChannelClass::GetEvent_I(std::int32_t eventId) const {
    const auto& rows = Row_By_ID();
    const auto found = rows.find(eventId);
    return found == rows.end() ? -1 : found->second;
}

std::int32_t ChannelClass::GetEvent_ID(std::int32_t eventI) const {
    return ExistsEventI(eventI) ? Row(eventI).ID : -1;
}

std::int32_t ChannelClass::Get_NextEventI(std::int32_t eventI) const {
    return timeList.Next(eventI);
}

bool ChannelClass::ExistsEventI(std::int32_t eventI) const {
    return eventI >= 0 && static_cast<std::size_t>(eventI) < Events.size() && Is_On(Row(eventI).InUse);
}

bool ChannelClass::ValidEventI(std::int32_t eventI) const {
    return ReadEvent(eventI).has_value();
}

std::int32_t ChannelClass::Get_Event_BaseNote(std::int32_t eventI) const {
    constexpr std::int32_t LENGTHLESS_ROW = 120;
    constexpr std::int32_t OTHER_ROW = 127;
    constexpr std::int32_t ROOT_ROW = 48;
    const auto event = ReadEvent(eventI);
    if (!event)
        return OTHER_ROW;
    if (event->Note != nullptr)
        return event->Note->Note;
    if (event->QChord != nullptr)
        return event->QChord->ChordNotes[0];
    if (event->MC != nullptr)
        return event->MC->Root + ROOT_ROW;
    return event->Kind == EV_AUDIO ? OTHER_ROW : LENGTHLESS_ROW;
}

double ChannelClass::Length_Of(Event_Kind kind, std::int32_t dataRef, double startTime) const {
    if (!tables.Holds(kind, dataRef))
        return 0.0;
    if (const double* stored = tables.Stored_Length(kind, dataRef))
        return *stored;
    if (kind == EV_AUDIO)
        return host.Clip_Length_Beats(startTime,
                                      tables.AudioEvents[static_cast<std::size_t>(dataRef)].SampleCount);
    return LENGTHLESS_EVENT_BEATS;
}

double ChannelClass::GetEvent_Length(std::int32_t eventI) const {
    if (!ExistsEventI(eventI))
        return 0.0;
    const ChannelEvent& event = Row(eventI);
    return Length_Of(event.Kind, event.DataRef, event.StartTime);
}

void ChannelClass::Forget_Ends() const {
    ends.clear();
    endsKnown = false;
    endsAsked = false;
}

void ChannelClass::Note_End(std::int32_t eventI) {
    if (!endsKnown)
        return;
    // A clip's length follows the tempo map, so in a channel with clips no end lasts.
    if (Row(eventI).Kind == EV_AUDIO || ends.size() > 2 * Events.size()) {
        Forget_Ends();
        return;
    }
    ends.emplace_back(Row(eventI).StartTime + GetEvent_Length(eventI), eventI);
    std::push_heap(ends.begin(), ends.end());
}

double ChannelClass::Get_ChannelLength_Beats() const {
    // The first time a walk does: many a song is loaded and never edited.
    if (!endsAsked) {
        double length = 0.0;
        for (std::int32_t row = 0; row < std::ssize(Events); ++row)
            if (ExistsEventI(row))
                length = std::max(length, Row(row).StartTime + GetEvent_Length(row));
        endsAsked = true;
        return length;
    }
    if (!endsKnown) {
        bool lasting = true;
        for (std::int32_t row = 0; row < std::ssize(Events); ++row) {
            if (!ExistsEventI(row))
                continue;
            ends.emplace_back(Row(row).StartTime + GetEvent_Length(row), row);
            lasting = lasting && Row(row).Kind != EV_AUDIO;
        }
        std::make_heap(ends.begin(), ends.end());
        endsKnown = lasting;
    }
    const auto holds = [this](const Event_Time_List::Place& end) {
        return ExistsEventI(end.second) &&
               Row(end.second).StartTime + GetEvent_Length(end.second) == end.first;
    };
    while (!ends.empty() && !holds(ends.front())) {
        std::pop_heap(ends.begin(), ends.end());
        ends.pop_back();
    }
    const double length = ends.empty() ? 0.0 : std::max(0.0, ends.front().first);
    if (!endsKnown)
        ends.clear();
    return length;
}

std::int32_t ChannelClass::First_Event_At(double time) const {
    if (!reSortOwed)
        return timeList.First_At(time);
    std::int32_t row = timeList.First();
    while (row != -1 && Row(row).StartTime < time)
        row = timeList.Next(row);
    return row;
}

// ---- changes made while the transport runs ----

void ChannelClass::Log(std::int32_t eventId, std::int32_t code) {
    if (!host.Live_Changes_On())
        return;
    mods.push_back(Mod{.ID = eventId, .Code = code});
    ModsPending = true;
}

std::vector<ChannelClass::Mod> ChannelClass::Get_Mods() const {
    return mods;
}

void ChannelClass::Clear_Mods() noexcept {
    mods.clear();
    ModsPending = false;
}

void ChannelClass::Add_Special_Mod(std::int32_t code) {
    Log(0, code);
}

// ---- the whole as plain rows ----

std::shared_ptr<const Channel_Content> ChannelClass::Content() const {
    if (const auto last = lastContent.lock(); last && last->ChannelNumber == ChannelNumber)
        return last;
    auto content = std::make_shared<Channel_Content>();
    content->ChannelNumber = ChannelNumber;
    content->NextID = NextID;
    content->FirstEventI = timeList.First();
    content->Events.reserve(Events.size());
    for (const ChannelEvent& event : Events) {
        content->Events.push_back(event);
        content->Events.back().NextI = timeList.Next(static_cast<std::int32_t>(content->Events.size()) - 1);
    }
    content->Tables = tables;
    lastContent = content;
    return content;
}

void ChannelClass::Take_Content(const Channel_Content& content) {
    Clear();
    Log(0, MOD_ADDED); // whoever plays the channel has to find its place anew
    ChannelNumber = content.ChannelNumber;
    NextID = content.NextID;
    Events = content.Events;
    tables = content.Tables;
    const auto live = std::count_if(Events.begin(), Events.end(),
                                    [](const ChannelEvent& event) { return Is_On(event.InUse); });
    LastEventN = static_cast<std::int32_t>(live) - 1;
    // A walk that comes to its end has visited no row twice.
    std::vector<Event_Time_List::Place> linked;
    linked.reserve(static_cast<std::size_t>(live));
    bool inOrder = true;
    std::int32_t at = content.FirstEventI;
    for (; ExistsEventI(at) && std::ssize(linked) < live; at = Row(at).NextI) {
        linked.emplace_back(Row(at).StartTime, at);
        inOrder = inOrder && (linked.size() < 2 || linked[linked.size() - 2] < linked.back());
    }
    if (at != -1 || std::ssize(linked) != live) {
        Relink();
        return;
    }
    timeList.Reserve(Events.size());
    timeList.Rebuild(linked);
    for (std::int32_t row = 0; row < std::ssize(Events); ++row)
        if (!Is_On(Row(row).InUse))
            timeList.Set_Removed_Link(row, Row(row).NextI);
    reSortOwed = !inOrder;
}

} // namespace tonvex
