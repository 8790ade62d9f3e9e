#pragma once

#include "song/event_data.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

/// A named position or span of the song.
struct Mark {
    static constexpr double NO_END = -1.0;
    static constexpr std::int32_t WHITE = 16777215;

    Flag16 InUse = FLAG_OFF;
    double MarkStart = 0.0; ///< beats
    double MarkEnd = 0.0;   ///< beats; the start or NO_END for a plain mark
    std::string MarkName;   ///< may be empty
    std::int32_t MarkColor = WHITE;
    bool operator==(const Mark&) const = default;
};

/// The song's marks: a table whose rows are used once. A deleted row keeps its place and its fields, free,
/// until the table is emptied. Several marks may stand at one place.
/// Interface thread. A row that is not live, a position below 0 or beyond the song's limit, or no number
/// changes nothing and gives false.
class Song_Marks {
public:
    static constexpr int ROWS = 100;

    /// In row MarkCount. markEnd NOT_GIVEN_TIME: a plain mark; an end before the start is the start. False
    /// when all rows have been used.
    bool Add_Mark(double markStart, double markEnd, const std::string& name);
    bool Delete_Mark(int row);
    bool Change_Mark(int row, const std::string& name);
    /// The end goes along by the same distance, unless one is given, which makes the mark a span up to there;
    /// an end before the start is the start. markStart NOT_GIVEN_TIME: the end alone. False with neither.
    bool Move_Mark(int row, double markStart, double markEnd = NOT_GIVEN_TIME);

    bool Is_Live(int row) const noexcept;
    /// row 0 to 99, free ones with what they held.
    const Mark& Row(int row) const { return marks[static_cast<std::size_t>(row)]; }
    int Mark_Count() const noexcept { return MarkCount; }
    /// Live rows by MarkStart; at one place in order of rows.
    std::vector<int> In_Time_Order() const;
    /// Last start or end of a live mark, 0 without marks.
    double Last_Beat() const noexcept;

    bool operator==(const Song_Marks&) const = default;
    void Clear();
    /// The whole table. Live rows at no place of a song become free; count is raised to behind the last live
    /// row and kept within the table.
    const std::array<Mark, ROWS>& All_Rows() const noexcept { return marks; }
    void Take_Rows(const std::array<Mark, ROWS>& rows, std::int32_t count);
    /// As a new project has them: one mark, "Start", at beat 0.
    void New_Project();

private:
    std::array<Mark, ROWS> marks;
    int MarkCount = 0; ///< next row to use
};

} // namespace tonvex
