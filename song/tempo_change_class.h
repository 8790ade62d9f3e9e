#pragma once

#include "song/event_data.h"
#include "song/tempo_content.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tonvex {

/// Length of one beat in ms at a tempo in beats per minute. A tempo below 1 counts as 1, so that no value
/// from a file or a field can divide by zero.
double Beat_Length_Ms(std::int32_t tempo) noexcept;

/// The song's tempo changes. The base tempo is no row: it runs from beat 0 to the first change.
/// A tempo below 1 is stored as 1. A position that the list cannot show (at or below -1, from
/// NO_CHANGE_BEAT on, or no number) is refused.
/// Costs: adding, deleting, moving and finding are logarithmic or constant; the view in time order is made
/// anew once after a change.
/// Interface thread. An unknown ID does nothing.
class TempoChangeClass {
public:
    /// Positions lie above -1 and below this one.
    static constexpr double NO_CHANGE_BEAT = 99000000.0;

    TempoChangeClass();
    /// Ignored when a live row stands at exactly beatN.
    void AddTempoChange(double beatN, std::int16_t tempo);
    void DeleteTempoChange(std::int32_t id);
    /// -1 leaves the position, or the tempo, as it is.
    void SetTempoChange(std::int32_t id, double beatN, std::int16_t tempo);
    bool GetTempoChange_byID(std::int32_t id, double& beatN, std::int16_t& tempo) const;
    /// The n-th live row in time order, counted from 0; false past the end.
    bool GetTempoChange(int n, std::int32_t& id, double& beatN, std::int16_t& tempo) const;
    /// -1 when no live row stands at beatN, 0 when one does.
    int ValidTempoBeatN(double beatN) const;
    /// What GetTempoChange counts through. Of rows that were moved onto one position the first row alone is
    /// there.
    const std::vector<TempoChange>& In_Time_Order() const;
    void Clear();
    /// All rows as they stand, free ones too, and back. Rows that the list cannot show become free; a tempo
    /// below 1 becomes 1.
    Tempo_Content Content() const { return {rows, NextID}; }
    void Take_Content(const Tempo_Content& content);

    /// Rises with every change of the list, so that what is worked out from it can be kept until then.
    std::uint64_t Revision() const noexcept { return revision; }

private:
    std::size_t Free_Row();
    void Changed() noexcept;

    std::vector<TempoChange> rows; ///< in no order; a freed row is used again
    std::int32_t NextID = FIRST_ID;
    std::size_t freeHint = 0;                              ///< no row before it is free
    std::set<std::pair<double, std::size_t>> positions;    ///< (BeatN, row) of every live row
    std::unordered_map<std::int32_t, std::size_t> rowOfId; ///< live rows
    mutable std::vector<TempoChange> ordered;
    mutable bool orderedValid = false;
    std::uint64_t revision = 0;
};

/// The tempo that holds from beats on: of the last change at or before it, else baseTempo.
std::int32_t Tempo_At(double beats, const TempoChangeClass& tempoChanges, std::int32_t baseTempo);

} // namespace tonvex
