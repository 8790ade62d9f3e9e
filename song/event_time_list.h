#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace tonvex {

/// Rows of a table, linked in the order of their times. Knows no events: a row is a number from 0, a time
/// is in beats. Interface thread.
///
/// Each row keeps the time at which it was linked, its place. The list is always in the order of
/// (place, row), also while the owner has changed times and not yet rebuilt; so a search among the places
/// is logarithmic at any moment. The search tree is made on the first need and kept in step from then on;
/// who only appends never pays for it.
class Event_Time_List {
public:
    using Place = std::pair<double, std::int32_t>; ///< time, row

    /// Behind all rows whose place is at or before time. row is higher than every row linked so far.
    /// Constant at the end, else logarithmic.
    void Insert(std::int32_t row, double time);
    /// Behind the last row, whatever its time. row as above. Constant.
    void Append(std::int32_t row, double time);
    /// The link of a removed row stays readable, so that who stood on it finds on. Constant, logarithmic
    /// while there is a tree.
    void Remove(std::int32_t row);
    /// Links exactly these rows. They are in order.
    void Rebuild(const std::vector<Place>& ordered);
    void Clear();
    /// The link that a removed row keeps. row is not linked; next is a row or -1.
    void Set_Removed_Link(std::int32_t row, std::int32_t next);
    /// Room for rows 0 to rows - 1, for who knows how many will come.
    void Reserve(std::size_t rows) { links.reserve(rows); }

    std::int32_t First() const noexcept { return FirstEventI; }
    std::int32_t Last() const noexcept { return LastTimeI; }
    /// -1 behind the last row and for numbers that are no row.
    std::int32_t Next(std::int32_t row) const noexcept;
    /// First row whose place is at or behind time, -1 when there is none.
    std::int32_t First_At(double time) const;

private:
    struct Link {
        std::int32_t NextI = -1;
        std::int32_t PrevI = -1;
        double place = 0.0;
    };
    Link& At(std::int32_t row) { return links[static_cast<std::size_t>(row)]; }
    const Link& At(std::int32_t row) const { return links[static_cast<std::size_t>(row)]; }
    void Make_Tree() const;
    void Link_Between(std::int32_t row, double place, std::int32_t before, std::int32_t behind);

    std::vector<Link> links; ///< by row
    std::int32_t FirstEventI = -1;
    std::int32_t LastTimeI = -1;
    mutable std::set<Place> tree;
    mutable bool treeMade = false;
};

} // namespace tonvex
