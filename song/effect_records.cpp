#include "song/effect_records.h"

#include <bit>

namespace tonvex {

namespace {

constexpr std::array<const char*, EFFECT_KINDS> NAMES = {
    "GUID_DSFX_WAVES_REVERB", "GUID_DSFX_STANDARD_CHORUS", "GUID_DSFX_STANDARD_FLANGER",
    "GUID_DSFX_STANDARD_ECHO", "GUID_DSFX_STANDARD_DISTORTION"};
constexpr std::size_t FIELD_BYTES = 4;
constexpr std::string_view DIGITS = "0123456789abcdef";

} // namespace

const char* Effect_Name(Effect_Kind kind) noexcept {
    return NAMES[static_cast<std::size_t>(kind)];
}

std::optional<Effect_Kind> Effect_Of_Name(std::string_view name) noexcept {
    for (const Effect_Kind kind : ALL_EFFECTS)
        if (name == Effect_Name(kind))
            return kind;
    return std::nullopt;
}

std::size_t Effect_Record_Size(Effect_Kind kind) noexcept {
    return Parameters_Of(kind).size() * FIELD_BYTES;
}

std::vector<std::uint8_t> Effect_Record(Effect_Kind kind, const Effect_Values& values) {
    const Effect_Values bounded = Bounded(kind, values);
    Byte_Writer out;
    std::size_t i = 0;
    for (const Effect_Parameter& parameter : Parameters_Of(kind)) {
        if (parameter.whole)
            out.Write_I32(static_cast<std::int32_t>(bounded[i]));
        else
            out.Write_U32(std::bit_cast<std::uint32_t>(bounded[i]));
        ++i;
    }
    return out.Take();
}

Effect_Values Read_Effect_Record(Effect_Kind kind, Byte_Cursor& cursor) noexcept {
    Effect_Values values{};
    std::size_t i = 0;
    for (const Effect_Parameter& parameter : Parameters_Of(kind)) {
        const std::uint32_t bits = cursor.Read_U32();
        values[i++] = parameter.whole ? static_cast<float>(static_cast<std::int32_t>(bits))
                                      : std::bit_cast<float>(bits);
    }
    return cursor.Ok() ? Bounded(kind, values) : Neutral_Values(kind);
}

std::string Effect_Record_Text(Effect_Kind kind, const Effect_Values& values) {
    std::string text;
    for (const std::uint8_t byte : Effect_Record(kind, values)) {
        text += DIGITS[byte >> 4U];
        text += DIGITS[byte & 15U];
    }
    return text;
}

std::optional<Effect_Values> Effect_Of_Text(Effect_Kind kind, std::string_view text) {
    if (text.size() != 2 * Effect_Record_Size(kind))
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const std::size_t high = DIGITS.find(text[i]);
        const std::size_t low = DIGITS.find(text[i + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos)
            return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    Byte_Cursor cursor(bytes);
    return Read_Effect_Record(kind, cursor);
}

void Song_Effects::Set_On(int row, Effect_Kind kind, bool on) {
    rows[static_cast<std::size_t>(row)].on[static_cast<std::size_t>(kind)] = on;
}

void Song_Effects::Set_Values(int row, Effect_Kind kind, const Effect_Values& values) {
    rows[static_cast<std::size_t>(row)].values[static_cast<std::size_t>(kind)] = Bounded(kind, values);
}

void Song_Effects::Set_Row(int row, const Effect_Settings& settings) {
    for (const Effect_Kind kind : ALL_EFFECTS) {
        Set_On(row, kind, settings.Is_On(kind));
        Set_Values(row, kind, settings.Of(kind));
    }
}

} // namespace tonvex
