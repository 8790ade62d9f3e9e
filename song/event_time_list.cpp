#include "song/event_time_list.h"

#include <algorithm>
#include <limits>

namespace tonvex {

void Event_Time_List::Insert(std::int32_t row, double time) {
    if (LastTimeI == -1 || At(LastTimeI).place <= time) {
        Append(row, time);
        return;
    }
    Make_Tree();
    const auto behind = tree.upper_bound({time, std::numeric_limits<std::int32_t>::max()});
    const std::int32_t behindRow = behind->second;
    tree.emplace_hint(behind, time, row);
    Link_Between(row, time, At(behindRow).PrevI, behindRow);
}

void Event_Time_List::Append(std::int32_t row, double time) {
    const double place = LastTimeI == -1 ? time : std::max(time, At(LastTimeI).place);
    if (treeMade)
        tree.emplace_hint(tree.end(), place, row);
    Link_Between(row, place, LastTimeI, -1);
}

void Event_Time_List::Link_Between(std::int32_t row, double place, std::int32_t before, std::int32_t behind) {
    if (static_cast<std::size_t>(row) >= links.size())
        links.resize(static_cast<std::size_t>(row) + 1);
    At(row) = Link{.NextI = behind, .PrevI = before, .place = place};
    (before == -1 ? FirstEventI : At(before).NextI) = row;
    (behind == -1 ? LastTimeI : At(behind).PrevI) = row;
}

void Event_Time_List::Remove(std::int32_t row) {
    const Link link = At(row);
    (link.PrevI == -1 ? FirstEventI : At(link.PrevI).NextI) = link.NextI;
    (link.NextI == -1 ? LastTimeI : At(link.NextI).PrevI) = link.PrevI;
    if (treeMade)
        tree.erase({link.place, row});
}

void Event_Time_List::Rebuild(const std::vector<Place>& ordered) {
    Clear();
    for (const auto& [time, row] : ordered)
        Append(row, time);
}

void Event_Time_List::Clear() {
    links.clear();
    FirstEventI = -1;
    LastTimeI = -1;
    tree.clear();
    treeMade = false;
}

void Event_Time_List::Set_Removed_Link(std::int32_t row, std::int32_t next) {
    if (static_cast<std::size_t>(row) >= links.size())
        links.resize(static_cast<std::size_t>(row) + 1);
    At(row).NextI = next;
}

std::int32_t Event_Time_List::Next(std::int32_t row) const noexcept {
    return row >= 0 && static_cast<std::size_t>(row) < links.size() ? At(row).NextI : -1;
}

std::int32_t Event_Time_List::First_At(double time) const {
    Make_Tree();
    const auto found = tree.lower_bound({time, std::numeric_limits<std::int32_t>::min()});
    return found == tree.end() ? -1 : found->second;
}

void Event_Time_List::Make_Tree() const {
    if (treeMade)
        return;
    for (std::int32_t row = FirstEventI; row != -1; row = At(row).NextI)
        tree.emplace_hint(tree.end(), At(row).place, row);
    treeMade = true;
}

} // namespace tonvex
