#include "creator/style_names.h"

#include "base/text_codec.h"

namespace tonvex {

namespace {

struct Names {
    std::string_view internal;
    std::string_view shown;
};

constexpr std::array<Names, STYLES> NAMES = {{{"drums", "Drums"},
                                              {"guitarclean", "Clean Guitar"},
                                              {"guitardist", "Distorted Guitar"},
                                              {"bass", "Bass Guitar"},
                                              {"piano", "Piano"}}};

const Names& Of(int style) noexcept {
    return NAMES[style >= 0 && style < STYLES ? static_cast<std::size_t>(style) : 0];
}

} // namespace

std::string_view Style_InternalName(int style) noexcept {
    return Of(style).internal;
}

std::string_view Style_ShownName(int style) noexcept {
    return Of(style).shown;
}

std::uint8_t Style_FromName(std::string_view internalName) {
    const std::string wanted = Lower_Ascii(internalName);
    for (std::size_t style = 0; style < NAMES.size(); ++style) {
        if (NAMES[style].internal == wanted)
            return static_cast<std::uint8_t>(style);
    }
    return STYLE_DRUMS;
}

} // namespace tonvex
