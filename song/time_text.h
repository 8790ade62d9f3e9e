#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tonvex {

/// Minutes, seconds and tenths, each with a leading blank: 61500 gives " 1: 1: 5".
std::string Format_MS(std::int64_t ms);
/// Bar and beat from 1: position 0 gives "1:1.0". barDigits widens the mask of the beat.
std::string Format_Beats(double beats, int barDigits = 0);
/// Beats of "bar:beat" or of a plain number; nothing when the text is neither.
std::optional<double> Parse_Beats(const std::string& text);

} // namespace tonvex
