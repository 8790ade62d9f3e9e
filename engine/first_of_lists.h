#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tonvex {

/// Which of up to 256 lists comes first, by the place of each list's next row: a tree of the lesser of two,
/// so that a list that moves on costs a step for each doubling of their number.
class First_Of_Lists {
public:
    static constexpr std::size_t NONE = SIZE_MAX;

    /// Forgets all places: no list has a row.
    void Reset(std::size_t lists) {
        leaves = std::bit_ceil(std::max<std::size_t>(lists, 1));
        keys.assign(2 * leaves, NOTHING);
    }
    /// The list's next row stands at the place, 0 and up; beyond 2 to the 54th all places are one. At equal
    /// places offs come first, then the order of the lists.
    void Set(std::size_t list, std::int64_t at, bool isOff) noexcept {
        const auto place = static_cast<std::uint64_t>(std::clamp<std::int64_t>(at, 0, LAST_PLACE));
        Put(list, place << 9U | std::uint64_t{isOff ? 0U : 1U} << 8U | list);
    }
    /// The list has no further row.
    void Clear(std::size_t list) noexcept { Put(list, NOTHING); }
    std::size_t First() const noexcept {
        return keys.size() < 2 || keys[1] == NOTHING ? NONE : keys[1] & 0xffU;
    }

private:
    static constexpr std::uint64_t NOTHING = UINT64_MAX;
    static constexpr std::int64_t LAST_PLACE = (std::int64_t{1} << 54U) - 1;

    void Put(std::size_t list, std::uint64_t key) noexcept {
        std::size_t node = leaves + list;
        keys[node] = key;
        for (node /= 2; node > 0; node /= 2)
            keys[node] = std::min(keys[2 * node], keys[2 * node + 1]);
    }

    std::size_t leaves = 0;
    std::vector<std::uint64_t> keys; ///< node n stands over 2 n and 2 n + 1; the lists' own behind all others
};

} // namespace tonvex
