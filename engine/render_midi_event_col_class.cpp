#include "engine/render_midi_event_col_class.h"

#include "engine/cue_engine.h"

#include <algorithm>

namespace tonvex {

Render_MidiEventColClass::Render_MidiEventColClass() : Events(static_cast<std::size_t>(GROWTH)) {}

void Render_MidiEventColClass::Make_Room() {
    if (Count == Capacity_Rows())
        Events.resize(Events.size() + static_cast<std::size_t>(GROWTH));
}

void Render_MidiEventColClass::AddEvent(std::int16_t Channel, double Time, std::uint16_t Data1,
                                        std::uint16_t Data2, std::uint16_t Extra) {
    Make_Room();
    Events[static_cast<std::size_t>(Count++)] = {Time, Channel, Data1, Data2, Extra};
}

void Render_MidiEventColClass::Set_Note_Extra(std::int32_t count, std::uint16_t extra) {
    for (std::int32_t i = std::max(0, Count - count); i < Count; ++i) {
        CueRow& row = Events[static_cast<std::size_t>(i)];
        if (row.Data1 < CueRow::PATCH_CHANGE && row.Data2 > 0)
            row.Extra = extra;
    }
}

bool Render_MidiEventColClass::GetEvent(std::int32_t Index, std::int16_t& Channel, double& Time,
                                        std::uint16_t& Data1, std::uint16_t& Data2) const {
    if (Index < 0 || Index >= Count)
        return false;
    const CueRow& row = Events[static_cast<std::size_t>(Index)];
    Channel = row.Channel;
    Time = row.Time;
    Data1 = row.Data1;
    Data2 = row.Data2;
    return true;
}

/// The row of zeros, and the index that the list goes by; false when it has none.
bool Render_MidiEventColClass::Close_List(std::int32_t& listIndex) {
    if (listIndex == BY_MARKER && Count > 0 && Events[0].Data1 == CueRow::LIST_MARKER)
        listIndex = Events[0].Data2;
    if (listIndex < 0)
        return false;
    Make_Room();
    Events[static_cast<std::size_t>(Count)] = {};
    return true;
}

void Render_MidiEventColClass::CopyDataToDll(CueEngine& engine, std::int32_t ListIndex) {
    if (Close_List(ListIndex))
        engine.AddEvents(ListIndex, Events.data(), Count);
}

void Render_MidiEventColClass::CopyDataToDll_ModdedChannel(CueEngine& engine, std::int32_t ListIndex,
                                                           bool keepSounding) {
    if (Close_List(ListIndex))
        engine.Channel_UpdateModded(ListIndex, Events.data(), Count, keepSounding);
}

} // namespace tonvex
