#include "cli/json_texts.h"

#include <nlohmann/json.hpp>

namespace tonvex {

namespace {

constexpr std::string_view DIGITS = "0123456789abcdef";

std::optional<std::uint8_t> Digit(char sign) {
    const std::size_t at =
        DIGITS.find(sign >= 'A' && sign <= 'F' ? static_cast<char>(sign - 'A' + 'a') : sign);
    return at == std::string_view::npos ? std::nullopt : std::optional(static_cast<std::uint8_t>(at));
}

} // namespace

std::string Hex(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += DIGITS[byte >> 4U];
        text += DIGITS[byte & 15U];
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> From_Hex(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    if (text.size() % 2 != 0)
        return std::nullopt;
    bytes.reserve(text.size() / 2);
    for (std::size_t at = 0; at < text.size(); at += 2) {
        const auto high = Digit(text[at]);
        const auto low = Digit(text[at + 1]);
        if (!high || !low)
            return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(*high << 4U | *low));
    }
    return bytes;
}

std::string Json_Text(const nlohmann::ordered_json& document) {
    return document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace tonvex
