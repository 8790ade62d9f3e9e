#include "project/midi_file_data.h"

#include <algorithm>
#include <iterator>

namespace tonvex {

namespace {

bool Is_Later(const ImportEvent& a, const ImportEvent& b) {
    return a.Tick != b.Tick ? a.Tick > b.Tick : a.Order > b.Order;
}

} // namespace

std::int32_t Midi_File_Data::End_Tick_Of(const ImportEvent& event) const {
    const auto behind = std::partition_point(tracks.begin(), tracks.end(), [&event](const Midi_Track& track) {
        return track.firstOrder <= event.Order;
    });
    return behind == tracks.begin() ? event.Tick : std::prev(behind)->endTick;
}

void Midi_File_Data::Order_Columns() {
    for (auto& column : ImportEvents) {
        // The messages of one track are in order already.
        std::reverse(column.begin(), column.end());
        if (!std::is_sorted(column.begin(), column.end(), Is_Later))
            std::sort(column.begin(), column.end(), Is_Later);
    }
}

std::int32_t Midi_File_Data::Take_Earliest(int channel) const {
    return static_cast<std::int32_t>(Rows(channel)) - 1;
}

const ImportEvent& Midi_File_Data::Row(int channel, std::int32_t row) const {
    return ImportEvents[static_cast<std::size_t>(channel)][static_cast<std::size_t>(row)];
}

void Midi_File_Data::Remove_Row(int channel, std::int32_t row) {
    auto& column = Column(channel);
    column[static_cast<std::size_t>(row)] = column.back();
    column.pop_back();
}

} // namespace tonvex
