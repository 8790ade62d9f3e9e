#include "song/pan_vol_class.h"

#include "base/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tonvex {

namespace {

constexpr std::size_t FIRST_ROWS = 21;
constexpr std::size_t GROWTH = 100;
constexpr double BEATS_A_BAR = 4.0;

std::int16_t Map_Value(std::int64_t value) noexcept {
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(value, 0, PanVol_Class::HIGHEST));
}

/// A time as a movable point can have it.
double Point_Time(double beats) noexcept {
    return std::clamp(beats, 0.0, MAX_EVENT_BEATS);
}

} // namespace

PanVol_Class::PanVol_Class(const Song_Length_Source& songLength) : song(songLength) {
    Clear();
}

void PanVol_Class::Clear() {
    Points.assign(FIRST_ROWS, MapPoint{});
    NextID = FIRST_ID;
    NextFreeI = FIRST_FREE_ROW;
    walkRow = FIRST_ROW;
    Row(FIRST_ROW) = {FLAG_ON, New_ID(), NEW_VALUE, -1, LAST_ROW, 0.0};
    Row(LAST_ROW) = {FLAG_ON, New_ID(), NEW_VALUE, FIRST_ROW, -1, SONG_END};
}

Map_Content PanVol_Class::Content() const {
    return {{Points.begin(), Points.begin() + NextFreeI}, NextID};
}

void PanVol_Class::Take_Content(Map_Content content) {
    Clear();
    if (!content.Settle())
        return;
    NextFreeI = static_cast<std::int32_t>(content.Points.size());
    NextID = content.NextID;
    Points = std::move(content.Points);
}

std::int32_t PanVol_Class::New_ID() {
    if (NextID < std::numeric_limits<std::int32_t>::max())
        return NextID++;
    // At the end of the numbers: the first that is free, and NextID stays.
    std::int32_t id = FIRST_ID;
    while (GetPoint_I(id) != -1)
        ++id;
    return id;
}

// ---- finding ----

std::int32_t PanVol_Class::Get_Point_NextI(std::int32_t i) const noexcept {
    return Is_Used(i) ? Row(i).NextI : -1;
}

std::int32_t PanVol_Class::Get_Point_PrevI(std::int32_t i) const noexcept {
    return Is_Used(i) ? Row(i).PrevI : -1;
}

std::int32_t PanVol_Class::GetPoint_I(std::int32_t id) const noexcept {
    for (std::int32_t i = 0; i < NextFreeI; ++i)
        if (Is_On(Row(i).InUse) && Row(i).ID == id)
            return i;
    return -1;
}

MapPoint PanVol_Class::Get_Point(std::int32_t i) const noexcept {
    return Is_Used(i) ? Row(i) : MapPoint{};
}

bool PanVol_Class::Get_Point_Data(std::int32_t id, double& timePos, int& value) const noexcept {
    const std::int32_t i = GetPoint_I(id);
    if (i == -1)
        return false;
    timePos = Row(i).TimePos;
    value = Row(i).Value;
    return true;
}

bool PanVol_Class::PointIs_Moveable(std::int32_t id) const noexcept {
    return GetPoint_I(id) >= FIRST_FREE_ROW;
}

std::vector<MapPoint> PanVol_Class::In_Time_Order() const {
    std::vector<MapPoint> ordered;
    ordered.reserve(static_cast<std::size_t>(NextFreeI));
    for (std::int32_t i = FIRST_ROW; i != -1; i = Row(i).NextI)
        ordered.push_back(Row(i));
    return ordered;
}

double PanVol_Class::Time_Of(std::int32_t i) const noexcept {
    return i == LAST_ROW ? song.Song_Length_Beats() : Row(i).TimePos;
}

/// The last row other than the last point's that stands at or before beats, which is 0 or above.
std::int32_t PanVol_Class::Row_At(double beats) const noexcept {
    if (Row(walkRow).TimePos > beats)
        walkRow = FIRST_ROW;
    for (std::int32_t next = Row(walkRow).NextI; next != LAST_ROW && Row(next).TimePos <= beats;
         next = Row(next).NextI)
        walkRow = next;
    return walkRow;
}

// ---- changing ----

bool PanVol_Class::Add_Point(double timePos, int value, std::int32_t& id) {
    if (!std::isfinite(timePos))
        return false;
    const double time = Point_Time(timePos);
    if (static_cast<std::size_t>(NextFreeI) == Points.size())
        Points.resize(Points.size() + GROWTH);
    const std::int32_t before = Row_At(time);
    const std::int32_t behind = Row(before).NextI;
    const std::int32_t i = NextFreeI;
    id = New_ID();
    Row(i) = {FLAG_ON, id, Map_Value(value), before, behind, time};
    Row(before).NextI = i;
    Row(behind).PrevI = i;
    ++NextFreeI;
    return true;
}

bool PanVol_Class::Set_Point_Val(std::int32_t id, std::int32_t value, std::int32_t delta) {
    const std::int32_t i = GetPoint_I(id);
    if (i == -1 || (value == NOT_GIVEN && delta == NOT_GIVEN))
        return false;
    Row(i).Value = Map_Value(delta == NOT_GIVEN ? std::int64_t{value} : std::int64_t{Row(i).Value} + delta);
    return true;
}

bool PanVol_Class::Set_Point_TimePos(std::int32_t id, double timePos, double delta, std::int32_t& newId) {
    const std::int32_t i = GetPoint_I(id);
    const bool absolute = delta == NOT_GIVEN_TIME;
    if (i < FIRST_FREE_ROW || (absolute && timePos == NOT_GIVEN_TIME))
        return false;
    const double time = absolute ? timePos : Row(i).TimePos + delta;
    if (!std::isfinite(time))
        return false;
    const int value = Row(i).Value;
    Remove_Row(i);
    return Add_Point(time, value, newId);
}

bool PanVol_Class::Delete_Point(std::int32_t id) {
    const std::int32_t i = GetPoint_I(id);
    if (i < FIRST_FREE_ROW)
        return false;
    Remove_Row(i);
    return true;
}

void PanVol_Class::Set_Fixed_Points(int value) {
    Row(FIRST_ROW).Value = Map_Value(value);
    Row(LAST_ROW).Value = Map_Value(value);
}

/// Takes a point out of the list; the last used row moves into its place.
void PanVol_Class::Remove_Row(std::int32_t i) {
    walkRow = FIRST_ROW;
    Row(Row(i).PrevI).NextI = Row(i).NextI;
    Row(Row(i).NextI).PrevI = Row(i).PrevI;
    --NextFreeI;
    if (i != NextFreeI) {
        Row(i) = Row(NextFreeI);
        Row(Row(i).PrevI).NextI = i;
        Row(Row(i).NextI).PrevI = i;
    }
    Row(NextFreeI) = MapPoint{};
}

void PanVol_Class::Remove_Between(double fromBeat, double endBeat) {
    // From the end, so that the row that moves into a freed one has been looked at.
    for (std::int32_t i = NextFreeI - 1; i >= FIRST_FREE_ROW; --i)
        if (Row(i).TimePos >= fromBeat && Row(i).TimePos < endBeat)
            Remove_Row(i);
}

void PanVol_Class::SongLength_Changed(double beats) {
    Remove_Between(beats, std::numeric_limits<double>::infinity());
}

void PanVol_Class::Project_ChangeSpeed(float factor) {
    if (!(factor > 0.0F) || !std::isfinite(factor))
        return;
    for (std::int32_t i = FIRST_FREE_ROW; i < NextFreeI; ++i)
        Row(i).TimePos = Point_Time(Row(i).TimePos * factor);
}

void PanVol_Class::MC_MoveBarEvents(std::int32_t fromBar, std::int32_t bars) {
    const double from = fromBar * BEATS_A_BAR;
    const double shift = bars * BEATS_A_BAR;
    if (bars < 0)
        Remove_Between(from, from - shift);
    for (std::int32_t i = FIRST_FREE_ROW; i < NextFreeI; ++i)
        if (Row(i).TimePos >= from)
            Row(i).TimePos = Point_Time(Row(i).TimePos + shift);
    walkRow = FIRST_ROW;
}

// ---- reading in a run ----

void PanVol_Class::tmp_Play_SetStartTime(double beats) const noexcept {
    walkRow = FIRST_ROW;
    Row_At(std::max(beats, 0.0));
}

/// The last point's value holds, before being Row_At(time). A song of no length has a beginning all the same.
bool PanVol_Class::Is_Behind_All(std::int32_t before, double time) const noexcept {
    return Row(before).NextI == LAST_ROW && time > 0.0 && song.Song_Length_Beats() <= time;
}

int PanVol_Class::Play_GetValue_At_TimePos(double beats) const noexcept {
    const double time = beats > 0.0 ? beats : 0.0;
    const std::int32_t before = Row_At(time);
    const std::int32_t behind = Row(before).NextI;
    if (Is_Behind_All(before, time))
        return Row(LAST_ROW).Value;
    const double start = Time_Of(before);
    const double end = Time_Of(behind);
    const auto slope = static_cast<float>((Row(behind).Value - Row(before).Value) / (end - start));
    if (!std::isfinite(slope)) // a song of no length, or points closer than the slope can tell
        return Row(before).Value;
    return Map_Value(RoundHalfEven(Row(before).Value + static_cast<double>(slope) * (time - start)));
}

std::pair<std::int32_t, std::int32_t> PanVol_Class::Points_Around(double beats) const noexcept {
    const double time = beats > 0.0 ? beats : 0.0;
    const std::int32_t before = Row_At(time);
    const std::int32_t behind = Row(before).NextI;
    if (Is_Behind_All(before, time))
        return {Row(LAST_ROW).ID, Row(LAST_ROW).ID};
    return {Row(before).ID, Row(behind).ID};
}

} // namespace tonvex
