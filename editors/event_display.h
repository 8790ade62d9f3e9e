#pragma once

#include "editors/span_tree.h"
#include "song/channel_class.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tonvex {

class GlobalChannelsManager;

/// One event as the editor shows it.
struct Ev_Display_Row {
    double StartTime = 0.0; ///< beats
    double Length = 0.0;    ///< beats, as drawn: see LENGTHLESS_SHOWN_BEATS
    std::int32_t EventID = 0;
    Event_Kind Kind = EV_NOTE;
    std::uint8_t Note = 0; ///< row on which it stands, 0 to 127
    std::uint8_t Vol = 0;  ///< 0 to 127; of kinds that have a volume
    bool Selected = false;
    std::uint8_t ChordCount = 0;              ///< used entries of ChordNotes; 0 unless it is a chord
    std::array<std::uint8_t, 6> ChordNotes{}; ///< all notes of a chord; the first is Note

    double End() const noexcept { return StartTime + Length; }
};
/// How long an event without a length is drawn.
inline constexpr double LENGTHLESS_SHOWN_BEATS = 2.0;
constexpr bool Has_Volume(Event_Kind kind) noexcept {
    return kind == EV_NOTE || kind == EV_QCHORD;
}
constexpr bool Has_Length(Event_Kind kind) noexcept {
    return kind == EV_NOTE || kind == EV_QCHORD || kind == EV_MC;
}

/// The events of one channel in order of time, ready to be drawn: what lies in a span is searched, not walked
/// for. Rows change when they are loaded. Interface thread. Beats.
class Event_List {
public:
    /// All events of store; those that were selected stay so.
    void Load(const ChannelClass& store);
    void Clear();

    const std::vector<Ev_Display_Row>& Rows() const noexcept { return EvDisplay; }
    /// found(row index) for each event that reaches into [from, to), in order of time.
    template <typename Found>
    void Visit(double from, double to, const Found& found) const {
        spans.Visit(First_From(to), from, found);
    }
    /// Index of the first event at or after beats.
    std::size_t First_From(double beats) const;
    /// -1 when there is none.
    int Row_Of(std::int32_t eventId) const;

    void Set_Selected(std::size_t row, bool selected);
    void Select_None();
    void Select_All();
    void Invert_Selection();
    /// Exactly those of eventIds that are here.
    void Select(const std::vector<std::int32_t>& eventIds);
    std::size_t Selected_Count() const noexcept { return selectedCount; }
    /// In order of time.
    std::vector<std::int32_t> Selected_IDs() const;

private:
    std::vector<Ev_Display_Row> EvDisplay;
    Span_Tree spans;
    std::size_t selectedCount = 0;
    mutable std::unordered_map<std::int32_t, std::size_t> rowOfId; ///< made when first asked
};

/// A channel that the editor shows beside its own, pale and for reading.
struct CView {
    std::int32_t ChannelID = 0;
    bool Visible = true; ///< its events are drawn
    Event_List Events;
};

/// All that one editor shows: the events of the channel in hand, and views of others. What is stale is loaded
/// when it is next asked for, so that a long batch costs one load. Interface thread.
class Event_Display {
public:
    /// table outlives the display.
    explicit Event_Display(const GlobalChannelsManager& table) : channels(table) {}

    /// The channel in hand; NOT_GIVEN for none. Nothing of it is selected then.
    void Show_Channel(std::int32_t channelId);
    std::int32_t Channel() const noexcept { return ownChannel; }
    /// Null when the channel is not there.
    const ChannelClass* Store() const;
    /// Something of the channel has changed, or, with NOT_GIVEN, anything.
    void Changed(std::int32_t channelId);
    /// Loads what is stale.
    void Update_View();
    /// Up to date.
    Event_List& Own() {
        Update_View();
        return own;
    }

    /// As loaded last, whatever has changed since.
    const Event_List& Last_Own() const noexcept { return own; }

    // ---- what is being recorded ----
    /// What the running take put into the channel in hand, in order of arrival. Not part of Own before it
    /// ends.
    const std::vector<Ev_Display_Row>& Take() const noexcept { return take; }
    /// Reads what came since the last call; false when nothing did.
    bool Update_Take();
    void Clear_Take() { take.clear(); }

    // ---- other channels ----
    int CView_GetTotalChannels() const noexcept { return static_cast<int>(CViews.size()); }
    const CView& CView_GetData(int n) const { return CViews[static_cast<std::size_t>(n)]; }
    /// The channel in hand, one that is shown already or is not there adds nothing.
    bool CView_AddChannel(std::int32_t channelId);
    void CView_RemoveChannel(std::int32_t channelId);
    void CView_ShowEventsFromChannel(std::int32_t channelId) { Set_Visible(channelId, true); }
    void CView_HideEventsFromChannel(std::int32_t channelId) { Set_Visible(channelId, false); }
    bool CView_Is_Shown(std::int32_t channelId) const;

private:
    void Set_Visible(std::int32_t channelId, bool visible);
    const ChannelClass* Store_Of(std::int32_t channelId) const;

    const GlobalChannelsManager& channels;
    std::int32_t ownChannel = NOT_GIVEN;
    Event_List own;
    std::vector<Ev_Display_Row> take;
    std::vector<CView> CViews;
    bool ownStale = true;
    bool viewsStale = true;
};

} // namespace tonvex
