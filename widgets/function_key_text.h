#pragma once

#include "app/session.h"

#include <QKeySequence>
#include <QString>

#include <string_view>

namespace tonvex {

/// The key by which a function runs now, for entries and tips; empty when none does.
QKeySequence Key_Of_Function(const Session& session, std::string_view internalName);
QString Function_Key_Text(const Session& session, std::string_view internalName);

} // namespace tonvex
