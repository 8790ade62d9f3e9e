#pragma once

#include "app/session.h"

#include <cstdint>
#include <span>
#include <string>

namespace tonvex {

/// The whole song as one JSON document, UTF-8: the session's, with the head and the table of sections of the
/// project file that it came from or would become.
std::string Dump_Song(const Session& session, std::span<const std::uint8_t> file);

} // namespace tonvex
