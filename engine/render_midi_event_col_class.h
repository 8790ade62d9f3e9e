#pragma once

#include "engine/cue_row.h"

#include <cstdint>
#include <vector>

namespace tonvex {

class CueEngine;

/// A growing array of rows, whose storage goes to the player library without a copy. Interface thread.
class Render_MidiEventColClass {
public:
    static constexpr std::int32_t GROWTH = 200;
    /// CopyDataToDll: the marker in row 0 names the list.
    static constexpr std::int32_t BY_MARKER = -1;

    Render_MidiEventColClass();

    std::int32_t TotalEvents() const noexcept { return Count; }
    std::int32_t Capacity_Rows() const noexcept { return static_cast<std::int32_t>(Events.size()); }
    /// Extra: see CueRow.
    void AddEvent(std::int16_t Channel, double Time, std::uint16_t Data1, std::uint16_t Data2,
                  std::uint16_t Extra = 0);
    /// Extra of the notes on among the last count rows.
    void Set_Note_Extra(std::int32_t count, std::uint16_t extra);
    /// False, and nothing written, for a row that is not there.
    bool GetEvent(std::int32_t Index, std::int16_t& Channel, double& Time, std::uint16_t& Data1,
                  std::uint16_t& Data2) const;
    /// Hands the rows over as list ListIndex, with a row of zeros behind them that is not counted. BY_MARKER
    /// without a marker in row 0 hands over nothing.
    void CopyDataToDll(CueEngine& engine, std::int32_t ListIndex);
    /// The same in place of a list that plays; keepSounding as of Channel_UpdateModded.
    void CopyDataToDll_ModdedChannel(CueEngine& engine, std::int32_t ListIndex, bool keepSounding = false);

private:
    void Make_Room();
    bool Close_List(std::int32_t& listIndex);

    std::vector<CueRow> Events; ///< its size is the capacity
    std::int32_t Count = 0;
};

} // namespace tonvex
