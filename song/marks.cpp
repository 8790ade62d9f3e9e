#include "song/marks.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr const char* FIRST_MARK_NAME = "Start";

bool Is_Position(double beats) noexcept {
    return beats >= 0.0 && beats <= MAX_EVENT_BEATS;
}

} // namespace

bool Song_Marks::Add_Mark(double markStart, double markEnd, const std::string& name) {
    const bool plain = markEnd == NOT_GIVEN_TIME;
    const bool endFits = plain || markEnd == Mark::NO_END || Is_Position(markEnd);
    if (MarkCount == ROWS || !Is_Position(markStart) || !endFits)
        return false;
    double end = markEnd;
    if (plain)
        end = markStart;
    else if (markEnd != Mark::NO_END)
        end = std::max(markStart, markEnd);
    marks[static_cast<std::size_t>(MarkCount)] = {FLAG_ON, markStart, end, name, Mark::WHITE};
    ++MarkCount;
    return true;
}

bool Song_Marks::Is_Live(int row) const noexcept {
    return row >= 0 && row < ROWS && Is_On(marks[static_cast<std::size_t>(row)].InUse);
}

bool Song_Marks::Delete_Mark(int row) {
    if (!Is_Live(row))
        return false;
    marks[static_cast<std::size_t>(row)].InUse = FLAG_OFF;
    return true;
}

bool Song_Marks::Change_Mark(int row, const std::string& name) {
    if (!Is_Live(row))
        return false;
    marks[static_cast<std::size_t>(row)].MarkName = name;
    return true;
}

bool Song_Marks::Move_Mark(int row, double markStart, double markEnd) {
    const bool starts = markStart != NOT_GIVEN_TIME;
    const bool ends = markEnd != NOT_GIVEN_TIME;
    if (!Is_Live(row) || (!starts && !ends) || (starts && !Is_Position(markStart)) ||
        (ends && !Is_Position(markEnd)))
        return false;
    Mark& mark = marks[static_cast<std::size_t>(row)];
    const double length = std::max(mark.MarkEnd - mark.MarkStart, 0.0);
    if (starts)
        mark.MarkStart = markStart;
    if (ends)
        mark.MarkEnd = std::max(markEnd, mark.MarkStart);
    else if (mark.MarkEnd != Mark::NO_END)
        mark.MarkEnd = std::min(mark.MarkStart + length, MAX_EVENT_BEATS);
    return true;
}

std::vector<int> Song_Marks::In_Time_Order() const {
    std::vector<int> rows;
    for (int row = 0; row < ROWS; ++row)
        if (Is_Live(row))
            rows.push_back(row);
    std::stable_sort(rows.begin(), rows.end(),
                     [this](int a, int b) { return Row(a).MarkStart < Row(b).MarkStart; });
    return rows;
}

double Song_Marks::Last_Beat() const noexcept {
    double last = 0.0;
    for (const Mark& mark : marks)
        if (Is_On(mark.InUse))
            last = std::max({last, mark.MarkStart, mark.MarkEnd});
    return last;
}

void Song_Marks::Clear() {
    marks.fill(Mark{});
    MarkCount = 0;
}

void Song_Marks::Take_Rows(const std::array<Mark, ROWS>& rows, std::int32_t count) {
    marks = rows;
    MarkCount = std::clamp(count, 0, ROWS);
    for (int row = 0; row < ROWS; ++row) {
        Mark& mark = marks[static_cast<std::size_t>(row)];
        if (!Is_Live(row))
            continue;
        if (!Is_Position(mark.MarkStart)) {
            mark.InUse = FLAG_OFF;
            continue;
        }
        if (mark.MarkEnd != Mark::NO_END && !Is_Position(mark.MarkEnd))
            mark.MarkEnd = mark.MarkStart;
        MarkCount = std::max(MarkCount, row + 1);
    }
}

void Song_Marks::New_Project() {
    Clear();
    Add_Mark(0.0, 0.0, FIRST_MARK_NAME);
}

} // namespace tonvex
