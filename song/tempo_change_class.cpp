#include "song/tempo_change_class.h"

#include <algorithm>
#include <iterator>

namespace tonvex {

namespace {

constexpr std::size_t FIRST_ROWS = 11;
constexpr std::size_t GROWTH = 10;
constexpr double LOWEST_BEAT = -1.0;

bool Can_Show(double beatN) noexcept {
    return beatN > LOWEST_BEAT && beatN < TempoChangeClass::NO_CHANGE_BEAT;
}

std::int16_t Usable_Tempo(std::int16_t tempo) noexcept {
    return std::max<std::int16_t>(tempo, 1);
}

} // namespace

double Beat_Length_Ms(std::int32_t tempo) noexcept {
    return 60000.0 / std::max(tempo, 1);
}

TempoChangeClass::TempoChangeClass() : rows(FIRST_ROWS) {}

void TempoChangeClass::Changed() noexcept {
    orderedValid = false;
    ++revision;
}

std::size_t TempoChangeClass::Free_Row() {
    while (freeHint < rows.size() && Is_On(rows[freeHint].InUse))
        ++freeHint;
    if (freeHint == rows.size())
        rows.resize(rows.size() + GROWTH);
    return freeHint;
}

void TempoChangeClass::AddTempoChange(double beatN, std::int16_t tempo) {
    if (!Can_Show(beatN) || ValidTempoBeatN(beatN) == 0)
        return;
    const std::size_t row = Free_Row();
    rows[row] = {.InUse = FLAG_ON, .BeatN = beatN, .Tempo = Usable_Tempo(tempo), .ID = NextID};
    positions.emplace(beatN, row);
    rowOfId.emplace(NextID, row);
    ++NextID;
    Changed();
}

void TempoChangeClass::DeleteTempoChange(std::int32_t id) {
    const auto found = rowOfId.find(id);
    if (found == rowOfId.end())
        return;
    const std::size_t row = found->second;
    positions.erase({rows[row].BeatN, row});
    rows[row].InUse = FLAG_OFF;
    rowOfId.erase(found);
    freeHint = std::min(freeHint, row);
    Changed();
}

void TempoChangeClass::SetTempoChange(std::int32_t id, double beatN, std::int16_t tempo) {
    const auto found = rowOfId.find(id);
    if (found == rowOfId.end())
        return;
    const std::size_t row = found->second;
    if (Can_Show(beatN)) {
        positions.erase({rows[row].BeatN, row});
        rows[row].BeatN = beatN;
        positions.emplace(beatN, row);
    }
    if (tempo != -1)
        rows[row].Tempo = Usable_Tempo(tempo);
    Changed();
}

bool TempoChangeClass::GetTempoChange_byID(std::int32_t id, double& beatN, std::int16_t& tempo) const {
    const auto found = rowOfId.find(id);
    if (found == rowOfId.end())
        return false;
    beatN = rows[found->second].BeatN;
    tempo = rows[found->second].Tempo;
    return true;
}

bool TempoChangeClass::GetTempoChange(int n, std::int32_t& id, double& beatN, std::int16_t& tempo) const {
    const auto& changes = In_Time_Order();
    if (n < 0 || static_cast<std::size_t>(n) >= changes.size())
        return false;
    const TempoChange& change = changes[static_cast<std::size_t>(n)];
    id = change.ID;
    beatN = change.BeatN;
    tempo = change.Tempo;
    return true;
}

int TempoChangeClass::ValidTempoBeatN(double beatN) const {
    const auto first = positions.lower_bound({beatN, 0});
    return first != positions.end() && first->first == beatN ? 0 : -1;
}

const std::vector<TempoChange>& TempoChangeClass::In_Time_Order() const {
    if (!orderedValid) {
        ordered.clear();
        ordered.reserve(positions.size());
        for (const auto& [beatN, row] : positions)
            if (ordered.empty() || beatN > ordered.back().BeatN)
                ordered.push_back(rows[row]);
        orderedValid = true;
    }
    return ordered;
}

void TempoChangeClass::Clear() {
    rows.assign(FIRST_ROWS, TempoChange{});
    positions.clear();
    rowOfId.clear();
    NextID = FIRST_ID;
    freeHint = 0;
    Changed();
}

void TempoChangeClass::Take_Content(const Tempo_Content& content) {
    Clear();
    rows = content.Rows;
    NextID = content.NextID;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        TempoChange& change = rows[row];
        if (!Is_On(change.InUse))
            continue;
        if (!Can_Show(change.BeatN) || !rowOfId.emplace(change.ID, row).second) {
            change.InUse = FLAG_OFF;
            continue;
        }
        change.Tempo = Usable_Tempo(change.Tempo);
        positions.emplace(change.BeatN, row);
    }
    Changed();
}

std::int32_t Tempo_At(double beats, const TempoChangeClass& tempoChanges, std::int32_t baseTempo) {
    const std::vector<TempoChange>& changes = tempoChanges.In_Time_Order();
    const auto behind = std::partition_point(
        changes.begin(), changes.end(), [beats](const TempoChange& change) { return change.BeatN <= beats; });
    return behind == changes.begin() ? baseTempo : std::prev(behind)->Tempo;
}

} // namespace tonvex
