#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// Lower-case hex digits.
std::string Hex(std::span<const std::uint8_t> bytes);
/// The bytes of hex digits in either case; nothing for other texts.
std::optional<std::vector<std::uint8_t>> From_Hex(std::string_view text);

/// One document as the tool prints it. Names that are not UTF-8 do not stop it.
std::string Json_Text(const nlohmann::ordered_json& document);

} // namespace tonvex
