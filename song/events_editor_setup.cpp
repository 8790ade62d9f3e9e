#include "song/events_editor_setup.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonvex {

void EventsEditor_Setup::Settings_Save(Byte_Writer& writer) const {
    writer.Write_I32(AlignDiv);
    writer.Write_Double(AlignStep);
    writer.Write_Bytes(Reserved);
    for (const auto& text : ReservedTexts) {
        writer.Write_U16(static_cast<std::uint16_t>(text.size()));
        writer.Write_Bytes(text);
    }
}

bool EventsEditor_Setup::Settings_Load(Byte_Cursor& cursor, std::int32_t version) {
    EventsEditor_Setup read;
    read.AlignDiv = cursor.Read_I32();
    const double step = cursor.Read_Double();
    if (std::isfinite(step))
        read.AlignStep = step;
    if (version >= 2) {
        const auto reserved = cursor.Read_Bytes(read.Reserved.size());
        std::copy(reserved.begin(), reserved.end(), read.Reserved.begin());
        for (auto& text : read.ReservedTexts) {
            const auto bytes = cursor.Read_Bytes(cursor.Read_U16());
            text.assign(bytes.begin(), bytes.end());
        }
    }
    if (!cursor.Ok())
        return false;
    *this = std::move(read);
    return true;
}

} // namespace tonvex
