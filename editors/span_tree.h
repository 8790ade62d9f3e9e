#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tonvex {

/// Finds, among spans that are sorted by their start, those that reach beyond a place, without walking those
/// that do not. Building is linear; a look costs what is found times a logarithm.
class Span_Tree {
public:
    void Build(const std::vector<double>& ends) {
        count = ends.size();
        leaves = 1;
        while (leaves < count)
            leaves *= 2;
        top.assign(2 * leaves, LOWEST);
        std::copy(ends.begin(), ends.end(), top.begin() + static_cast<std::ptrdiff_t>(leaves));
        for (std::size_t node = leaves; node-- > 1;)
            top[node] = std::max(top[2 * node], top[2 * node + 1]);
    }
    /// found(index) for each span of the first last ones that ends behind from, in order.
    template <typename Found>
    void Visit(std::size_t last, double from, const Found& found) const {
        if (count > 0)
            Visit_Node(1, 0, leaves, std::min(last, count), from, found);
    }

private:
    static constexpr double LOWEST = -1e300;

    template <typename Found>
    void Visit_Node(std::size_t node, std::size_t first, std::size_t width, std::size_t last, double from,
                    const Found& found) const {
        if (first >= last || !(top[node] > from))
            return;
        if (width == 1) {
            found(first);
            return;
        }
        Visit_Node(2 * node, first, width / 2, last, from, found);
        Visit_Node(2 * node + 1, first + width / 2, width / 2, last, from, found);
    }

    std::size_t count = 0;
    std::size_t leaves = 1;
    std::vector<double> top; ///< heap of maxima, leaves last
};

} // namespace tonvex
