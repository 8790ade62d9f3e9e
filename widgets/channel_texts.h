#pragma once

#include "app/session.h"

#include <QString>

namespace tonvex {

/// The sound of a channel row as it is shown: "Flute", by the slot's patch table.
QString Patch_Name(const Session& session, int row);
/// "Flute · slot 5"; "Audio" for an audio channel.
QString Patch_Line(const Session& session, int row);
/// Pan 0 to 127 as the user reads it: "centre", "20 left", "63 right".
QString Pan_Text(int pan);

} // namespace tonvex
