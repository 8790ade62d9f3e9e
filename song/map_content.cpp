#include "song/map_content.h"

#include "song/file_rows.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr std::size_t MAP_ROW_BYTES_MS = 20;
constexpr std::size_t FIXED_POINTS = 2;
constexpr double SONG_END = -1.0;
constexpr std::int16_t HIGHEST = 127;

/// Rows as they will be once the free ones have gone; -1 for those.
std::vector<std::int32_t> Dense_Rows(const std::vector<MapPoint>& points) {
    std::vector<std::int32_t> rows(points.size(), -1);
    std::int32_t next = 0;
    for (std::size_t i = 0; i < points.size(); ++i)
        if (Is_On(points[i].InUse))
            rows[i] = next++;
    return rows;
}

bool Is_Linked_In_Time(const std::vector<MapPoint>& points) {
    std::size_t seen = 0;
    std::int32_t before = -1;
    for (std::int32_t i = 0; i != -1; i = points[static_cast<std::size_t>(i)].NextI) {
        if (i < 0 || i >= std::ssize(points) || seen == points.size())
            return false;
        const MapPoint& point = points[static_cast<std::size_t>(i)];
        const bool inTime = before == -1 || point.TimePos == SONG_END ||
                            point.TimePos >= points[static_cast<std::size_t>(before)].TimePos;
        if (point.PrevI != before || !inTime || (i == 1) != (point.NextI == -1))
            return false;
        before = i;
        ++seen;
    }
    return seen == points.size();
}

void Link_In_Time(std::vector<MapPoint>& points) {
    std::vector<std::int32_t> order;
    for (std::int32_t i = FIXED_POINTS; i < std::ssize(points); ++i)
        order.push_back(i);
    std::stable_sort(order.begin(), order.end(), [&points](std::int32_t a, std::int32_t b) {
        return points[static_cast<std::size_t>(a)].TimePos < points[static_cast<std::size_t>(b)].TimePos;
    });
    order.push_back(1);
    std::int32_t before = 0;
    points[0].PrevI = -1;
    for (const std::int32_t i : order) {
        points[static_cast<std::size_t>(before)].NextI = i;
        points[static_cast<std::size_t>(i)].PrevI = before;
        before = i;
    }
    points[1].NextI = -1;
}

MapPoint Read_Before_Time(Byte_Cursor& cursor) {
    MapPoint point;
    point.InUse = cursor.Read_U16();
    point.ID = cursor.Read_I32();
    point.Value = cursor.Read_I16();
    point.PrevI = cursor.Read_I32();
    point.NextI = cursor.Read_I32();
    return point;
}

template <typename Reader>
bool Read_Map(Byte_Cursor& cursor, Map_Content& map, std::size_t rowBytes, Reader readRow) {
    const std::int64_t lastPointN = cursor.Read_I32();
    map = Map_Content{};
    if (!Read_Rows(cursor, lastPointN + 1, rowBytes, map.Points, readRow))
        return false;
    (void)cursor.Read_I32(); // NextID: the numbers are given anew
    if (!cursor.Ok() || !map.Settle())
        return false;
    map.Renumber();
    return true;
}

} // namespace

bool Map_Content::Settle() {
    const std::vector<std::int32_t> newRow = Dense_Rows(Points);
    const auto moved = [&newRow](std::int32_t row) {
        return row >= 0 && row < std::ssize(newRow) ? newRow[static_cast<std::size_t>(row)] : -1;
    };
    std::erase_if(Points, [](const MapPoint& point) { return !Is_On(point.InUse); });
    if (Points.size() < FIXED_POINTS) {
        *this = Map_Content{};
        return false;
    }
    for (MapPoint& point : Points) {
        point.PrevI = moved(point.PrevI);
        point.NextI = moved(point.NextI);
        point.Value = std::clamp<std::int16_t>(point.Value, 0, HIGHEST);
        point.TimePos = Start_In_Song(point.TimePos);
    }
    Points[0].TimePos = 0.0;
    Points[1].TimePos = SONG_END;
    if (!Is_Linked_In_Time(Points))
        Link_In_Time(Points);
    return true;
}

void Map_Content::Renumber() {
    NextID = FIRST_ID;
    for (MapPoint& point : Points)
        point.ID = NextID++;
}

MapPoint Read_Map_Row(Byte_Cursor& cursor) {
    MapPoint point = Read_Before_Time(cursor);
    point.TimePos = cursor.Read_Double();
    return point;
}

void Write_Map_Row(Byte_Writer& writer, const MapPoint& point) {
    writer.Write_U16(point.InUse);
    writer.Write_I32(point.ID);
    writer.Write_I16(point.Value);
    writer.Write_I32(point.PrevI);
    writer.Write_I32(point.NextI);
    writer.Write_Double(point.TimePos);
}

void Write_Map_V2(Byte_Writer& writer, const Map_Content& map) {
    writer.Write_I32(static_cast<std::int32_t>(map.Points.size()) - 1);
    std::int32_t fileId = FIRST_ID;
    for (MapPoint point : map.Points) {
        point.ID = fileId++;
        Write_Map_Row(writer, point);
    }
    writer.Write_I32(fileId);
}

bool Read_Map_V2(Byte_Cursor& cursor, Map_Content& map) {
    return Read_Map(cursor, map, MAP_ROW_BYTES, Read_Map_Row);
}

bool Read_Map_V1(Byte_Cursor& cursor, Map_Content& map, double msPerBeat) {
    return Read_Map(cursor, map, MAP_ROW_BYTES_MS, [msPerBeat](Byte_Cursor& from) {
        MapPoint point = Read_Before_Time(from);
        const std::int32_t ms = from.Read_I32();
        point.TimePos = ms < 1 ? ms : ms / msPerBeat;
        return point;
    });
}

} // namespace tonvex
