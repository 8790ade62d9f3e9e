#pragma once

#include "song/event_data.h"

#include <cstdint>
#include <vector>

namespace tonvex {

struct TempoChange {
    Flag16 InUse = 0;
    double BeatN = 0.0;     ///< position in beats
    std::int16_t Tempo = 0; ///< beats per minute from there on
    std::int32_t ID = 0;
};

/// The song's tempo changes. The base tempo is no row: it runs from beat 0 to the first change.
/// Interface thread. An unknown ID does nothing.
class TempoChangeClass {
public:
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
    /// All live rows in time order; found once after a change.
    const std::vector<TempoChange>& In_Time_Order() const;
    void Clear();

private:
    std::vector<TempoChange> rows;
    std::int32_t NextID = FIRST_ID;
    mutable std::vector<TempoChange> ordered;
    mutable bool orderedValid = false;
};

} // namespace tonvex
