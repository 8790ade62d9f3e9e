#pragma once

#include "song/event_data.h"
#include "song/map_content.h"
#include "song/song_length_source.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tonvex {

/// A curve over the song: points in order of time, straight lines between them. Each output slot and each
/// audio channel has one for its volume and one for its pan.
/// Two points stay for the life of the map: row 0 at beat 0 and row 1 at the end of the song. They can be
/// set, never moved or deleted. Points of equal time lie in the order in which they came there. Points may
/// lie behind the song's end; the last point then stands behind them, and what is beyond it has its value.
/// Used rows are dense: a deletion moves the last row into the freed one. IDs stay, until a point is moved
/// in time: then it has a new one.
/// Interface thread only. An unknown ID, a row outside the table or a time that is no number gives false, or
/// -1, and changes nothing. Times in beats; values beyond 0 to 127 are brought to the nearer end.
class PanVol_Class {
public:
    static constexpr double SONG_END = -1.0;
    static constexpr int HIGHEST = 127;
    static constexpr int NEW_VALUE = 64; ///< of both points of a new map

    /// song outlives the map.
    explicit PanVol_Class(const Song_Length_Source& song);

    std::int32_t Get_FirstPoint_ID() const noexcept { return Row(FIRST_ROW).ID; }
    std::int32_t Get_LastPoint_ID() const noexcept { return Row(LAST_ROW).ID; }
    std::int32_t Get_FirstPoint_I() const noexcept { return FIRST_ROW; }
    /// Row after, or before, row i in time; -1 at the end of the list and for a row that is not used.
    std::int32_t Get_Point_NextI(std::int32_t i) const noexcept;
    std::int32_t Get_Point_PrevI(std::int32_t i) const noexcept;
    /// -1 when no point has the ID.
    std::int32_t GetPoint_I(std::int32_t id) const noexcept;
    /// The point in row i; a free one for a row that is not used.
    MapPoint Get_Point(std::int32_t i) const noexcept;
    bool Get_Point_Data(std::int32_t id, double& timePos, int& value) const noexcept;
    /// False for the two fixed points.
    bool PointIs_Moveable(std::int32_t id) const noexcept;
    /// All points with their time and value, in order of time: what draws, files and dumps walk.
    std::vector<MapPoint> In_Time_Order() const;
    /// Only the two fixed points are there.
    bool Is_Undrawn() const noexcept { return NextFreeI == FIRST_FREE_ROW; }

    /// Behind all points of the same time. A time below 0 is 0.
    bool Add_Point(double timePos, int value, std::int32_t& id);
    /// Absolute, or relative when delta is not NOT_GIVEN.
    bool Set_Point_Val(std::int32_t id, std::int32_t value, std::int32_t delta = NOT_GIVEN);
    /// Absolute, or relative when delta is not NOT_GIVEN_TIME. Refuses the fixed points.
    bool Set_Point_TimePos(std::int32_t id, double timePos, double delta, std::int32_t& newId);
    /// Refuses the fixed points.
    bool Delete_Point(std::int32_t id);
    void Set_Fixed_Points(int value);

    /// Drops the points that a song of that length has no place for: those at or behind beats.
    void SongLength_Changed(double beats);
    /// Times times factor. A factor not above 0 changes nothing.
    void Project_ChangeSpeed(float factor);
    /// Opens bars (4 beats each) at fromBar, or, below 0, removes as many there with their points. The fixed
    /// points stay where they are.
    void MC_MoveBarEvents(std::int32_t fromBar, std::int32_t bars);

    /// Starts the walk of a run at beats. Only speed depends on it.
    void tmp_Play_SetStartTime(double beats) const noexcept;
    /// 0 to 127. A walk forward in time costs what it passes.
    int Play_GetValue_At_TimePos(double beats) const noexcept;
    /// IDs of the last point at or before beats and of the one behind it; at the end both are the last point.
    std::pair<std::int32_t, std::int32_t> Points_Around(double beats) const noexcept;
    /// As new.
    void Clear();
    /// The used rows as they stand, and back. Take_Content settles what it is given; no map gives a new one.
    Map_Content Content() const;
    void Take_Content(Map_Content content);

private:
    static constexpr std::int32_t FIRST_ROW = 0;
    static constexpr std::int32_t LAST_ROW = 1;
    static constexpr std::int32_t FIRST_FREE_ROW = 2;

    bool Is_Used(std::int32_t i) const noexcept { return i >= 0 && i < NextFreeI; }
    MapPoint& Row(std::int32_t i) { return Points[static_cast<std::size_t>(i)]; }
    const MapPoint& Row(std::int32_t i) const { return Points[static_cast<std::size_t>(i)]; }
    std::int32_t New_ID();
    double Time_Of(std::int32_t i) const noexcept;
    std::int32_t Row_At(double beats) const noexcept;
    bool Is_Behind_All(std::int32_t before, double time) const noexcept;
    void Remove_Row(std::int32_t i);
    void Remove_Between(double fromBeat, double endBeat);

    const Song_Length_Source& song;
    std::vector<MapPoint> Points;
    std::int32_t NextFreeI = FIRST_FREE_ROW; ///< next unused row
    std::int32_t NextID = FIRST_ID;
    /// Where the last walk ended, for the next to begin; never the last row.
    mutable std::int32_t walkRow = FIRST_ROW;
};

} // namespace tonvex
