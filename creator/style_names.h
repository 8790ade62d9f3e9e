#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tonvex {

/// The styles of accompaniment; the numbers stand in files.
enum Style_Number : std::uint8_t {
    STYLE_DRUMS = 0,
    STYLE_GUITAR_CLEAN = 1,
    STYLE_GUITAR_DIST = 2,
    STYLE_BASS = 3,
    STYLE_PIANO = 4
};
inline constexpr int STYLES = 5;

/// As files name a style: "drums", "guitarclean", "guitardist", "bass", "piano". Numbers beyond the styles
/// give the name of style 0.
std::string_view Style_InternalName(int style) noexcept;
/// As the user sees it.
std::string_view Style_ShownName(int style) noexcept;
/// Letter case aside; an unknown name is style 0.
std::uint8_t Style_FromName(std::string_view internalName);

} // namespace tonvex
