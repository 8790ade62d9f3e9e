#include "song/time_text.h"

#include "base/rounding.h"
#include "base/text_codec.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
constexpr double HIGHEST_BEAT_SHOWN = 4.9;

/// A number as plain text: a blank stands where a minus would.
std::string Signed_Text(std::int64_t value) {
    return (value < 0 ? "" : " ") + std::to_string(value);
}

/// The whole text, blanks around it aside, as a finite decimal number with a point.
std::optional<double> Number_Of(std::string_view raw) {
    const std::string text = Trim(raw);
    std::string_view digits = text;
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    double value = 0.0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, failed] = std::from_chars(digits.data(), end, value);
    if (failed != std::errc{} || stop != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace

std::string Format_MS(std::int64_t ms) {
    return Signed_Text(ms / 60000) + ":" + Signed_Text(ms % 60000 / 1000) + ":" +
           Signed_Text(ms % 1000 / 100);
}

std::string Format_Beats(double beats, int /*barDigits*/) {
    const double position = std::isfinite(beats) ? beats : 0.0;
    const double barStart = std::floor(position / BEATS_PER_BAR);
    const double beat = std::min(position - BEATS_PER_BAR * barStart + 1.0, HIGHEST_BEAT_SHOWN);
    // As a number mask does: half a tenth goes up.
    const std::int64_t tenths = RoundHalfUp(beat * 10.0);
    return std::to_string(RoundHalfEven(barStart) + 1) + ":" + std::to_string(tenths / 10) + "." +
           std::to_string(tenths % 10);
}

std::optional<double> Parse_Beats(const std::string& text) {
    const auto colon = text.find(':');
    if (colon == std::string::npos)
        return Number_Of(text);
    // A second colon makes the beat no number.
    const auto bar = Number_Of(std::string_view(text).substr(0, colon));
    const auto beat = Number_Of(std::string_view(text).substr(colon + 1));
    if (!bar || !beat || *beat < 1.0 || *beat >= 5.0)
        return std::nullopt;
    const double distance = (std::abs(*bar) - 1.0) * BEATS_PER_BAR + *beat - 1.0;
    return *bar < 0.0 ? 0.0 - distance : distance;
}

} // namespace tonvex
