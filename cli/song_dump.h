#pragma once

#include "app/session.h"

#include <string>

namespace tonvex {

/// The whole song as a JSON document, live rows alone, field names as keys. Numbers read back as they were.
std::string Dump_Song(const Session& session);

} // namespace tonvex
