#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tonvex {

/// Minutes, seconds and tenths, each with a leading blank: 61500 gives " 1: 1: 5".
std::string Format_MS(std::int64_t ms);
/// Bar and beat from 1: position 0 gives "1:1.0". The beat has one decimal, half a tenth going up, and shows
/// 4.9 at most. barDigits adds places to the number mask that only digits fill, so a beat never shows them.
/// A position that is no number shows as 0.
std::string Format_Beats(double beats, int barDigits = 0);
/// Beats of "bar:beat" (beat from 1 to below 5; a negative bar turns the sign) or of a plain number with a
/// decimal point; nothing when the text is neither.
std::optional<double> Parse_Beats(const std::string& text);

} // namespace tonvex
