#include "editors/event_display.h"

#include "song/global_channels_manager.h"

#include <algorithm>

namespace tonvex {

namespace {

/// Rows of events that are no notes, as Get_Event_BaseNote of ChannelClass has them.
constexpr int FRAGMENT_ROW = 48;
constexpr int LENGTHLESS_ROW = 120;

Ev_Display_Row Shown(const ChannelClass::Event_View& event, int note, double length) {
    Ev_Display_Row row;
    row.StartTime = event.StartTime;
    row.EventID = event.EventID;
    row.Kind = event.Kind;
    row.Note = static_cast<std::uint8_t>(std::clamp(note, 0, 127));
    if (event.Note != nullptr)
        row.Vol = event.Note->Vol;
    if (event.QChord != nullptr) {
        row.Vol = event.QChord->ChordVol;
        row.ChordNotes = event.QChord->ChordNotes;
        row.ChordCount =
            static_cast<std::uint8_t>(std::min<std::size_t>(event.QChord->Active, row.ChordNotes.size()));
    }
    const bool lengthless = event.Kind == EV_PATCH || event.Kind == EV_NAMED;
    row.Length = lengthless ? LENGTHLESS_SHOWN_BEATS : length;
    return row;
}

bool Earlier(const Ev_Display_Row& a, const Ev_Display_Row& b) {
    return a.StartTime < b.StartTime;
}

} // namespace

// ---- one channel's list ----

void Event_List::Load(const ChannelClass& store) {
    std::vector<std::int32_t> selected = Selected_IDs();
    std::sort(selected.begin(), selected.end());
    EvDisplay.clear();
    EvDisplay.reserve(static_cast<std::size_t>(store.GetTotalEvents()) + 1U);
    for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
        if (const auto event = store.ReadEvent(i))
            EvDisplay.push_back(Shown(*event, store.Get_Event_BaseNote(i), store.GetEvent_Length(i)));
    // In the middle of a batch of moves the store is not sorted.
    if (!std::is_sorted(EvDisplay.begin(), EvDisplay.end(), Earlier))
        std::stable_sort(EvDisplay.begin(), EvDisplay.end(), Earlier);
    std::vector<double> ends;
    ends.reserve(EvDisplay.size());
    selectedCount = 0;
    for (Ev_Display_Row& row : EvDisplay) {
        ends.push_back(row.End());
        row.Selected = std::binary_search(selected.begin(), selected.end(), row.EventID);
        selectedCount += row.Selected ? 1U : 0U;
    }
    spans.Build(ends);
    rowOfId.clear();
}

void Event_List::Clear() {
    EvDisplay.clear();
    spans.Build({});
    rowOfId.clear();
    selectedCount = 0;
}

std::size_t Event_List::First_From(double beats) const {
    const auto found =
        std::lower_bound(EvDisplay.begin(), EvDisplay.end(), beats,
                         [](const Ev_Display_Row& row, double time) { return row.StartTime < time; });
    return static_cast<std::size_t>(found - EvDisplay.begin());
}

int Event_List::Row_Of(std::int32_t eventId) const {
    if (rowOfId.empty())
        for (std::size_t i = 0; i < EvDisplay.size(); ++i)
            rowOfId.emplace(EvDisplay[i].EventID, i);
    const auto found = rowOfId.find(eventId);
    return found == rowOfId.end() ? -1 : static_cast<int>(found->second);
}

void Event_List::Set_Selected(std::size_t row, bool selected) {
    if (EvDisplay[row].Selected == selected)
        return;
    EvDisplay[row].Selected = selected;
    selected ? ++selectedCount : --selectedCount;
}

void Event_List::Select_None() {
    for (Ev_Display_Row& row : EvDisplay)
        row.Selected = false;
    selectedCount = 0;
}

void Event_List::Select_All() {
    for (Ev_Display_Row& row : EvDisplay)
        row.Selected = true;
    selectedCount = EvDisplay.size();
}

void Event_List::Invert_Selection() {
    for (Ev_Display_Row& row : EvDisplay)
        row.Selected = !row.Selected;
    selectedCount = EvDisplay.size() - selectedCount;
}

void Event_List::Select(const std::vector<std::int32_t>& eventIds) {
    Select_None();
    for (const std::int32_t eventId : eventIds) {
        const int row = Row_Of(eventId);
        if (row >= 0)
            Set_Selected(static_cast<std::size_t>(row), true);
    }
}

std::vector<std::int32_t> Event_List::Selected_IDs() const {
    std::vector<std::int32_t> ids;
    ids.reserve(selectedCount);
    if (selectedCount > 0)
        for (const Ev_Display_Row& row : EvDisplay)
            if (row.Selected)
                ids.push_back(row.EventID);
    return ids;
}

// ---- all that is shown ----

const ChannelClass* Event_Display::Store_Of(std::int32_t channelId) const {
    const int row = channels.ChannelI(channelId);
    return row < 0 ? nullptr : &channels.Store(row);
}

const ChannelClass* Event_Display::Store() const {
    return Store_Of(ownChannel);
}

void Event_Display::Show_Channel(std::int32_t channelId) {
    if (channelId == ownChannel)
        return;
    ownChannel = channelId;
    own.Clear();
    take.clear();
    ownStale = true;
}

void Event_Display::Changed(std::int32_t channelId) {
    ownStale = ownStale || channelId == ownChannel || channelId == NOT_GIVEN;
    viewsStale = viewsStale || channelId != ownChannel;
}

void Event_Display::Update_View() {
    if (ownStale) {
        ownStale = false;
        if (const ChannelClass* store = Store())
            own.Load(*store);
        else
            own.Clear();
    }
    if (!viewsStale)
        return;
    viewsStale = false;
    std::erase_if(CViews, [this](const CView& view) { return Store_Of(view.ChannelID) == nullptr; });
    for (CView& view : CViews)
        view.Events.Load(*Store_Of(view.ChannelID));
}

bool Event_Display::Update_Take() {
    const ChannelClass* store = Store();
    const std::int32_t count = store == nullptr ? 0 : store->Recorded_Count();
    const std::size_t before = take.size();
    for (auto i = static_cast<std::int32_t>(before); i < count; ++i) {
        const auto event = store->ReadEvent_RecMode(i);
        // Keys give notes and chords; a fragment stands where an event of its kind does.
        const int note = !event                     ? 0
                         : event->Note != nullptr   ? event->Note->Note
                         : event->QChord != nullptr ? event->QChord->ChordNotes[0]
                         : event->MC != nullptr     ? event->MC->Root + FRAGMENT_ROW
                                                    : LENGTHLESS_ROW;
        take.push_back(event ? Shown(*event, note, event->RecLength) : Ev_Display_Row{});
    }
    return take.size() > before;
}

bool Event_Display::CView_AddChannel(std::int32_t channelId) {
    if (channelId == ownChannel || CView_Is_Shown(channelId) || Store_Of(channelId) == nullptr)
        return false;
    CViews.push_back({channelId, true, {}});
    viewsStale = true;
    return true;
}

void Event_Display::CView_RemoveChannel(std::int32_t channelId) {
    std::erase_if(CViews, [channelId](const CView& view) { return view.ChannelID == channelId; });
}

bool Event_Display::CView_Is_Shown(std::int32_t channelId) const {
    return std::any_of(CViews.begin(), CViews.end(),
                       [channelId](const CView& view) { return view.ChannelID == channelId; });
}

void Event_Display::Set_Visible(std::int32_t channelId, bool visible) {
    for (CView& view : CViews)
        if (view.ChannelID == channelId)
            view.Visible = visible;
}

} // namespace tonvex
