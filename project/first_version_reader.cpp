#include "project/first_version_reader.h"

#include "base/byte_cursor.h"
#include "base/text_codec.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <string_view>

namespace tonvex {

namespace {

constexpr std::string_view MAGIC = "Tonvex File v:";
constexpr std::size_t VERSION_DIGITS = 2;
constexpr int FIRST_UNKNOWN_VERSION = 3;

std::string_view Characters(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// A signed 32-bit count and so many bytes.
std::string Read_Long_Text(Byte_Cursor& cursor) {
    const std::int32_t size = cursor.Read_I32();
    if (size < 0)
        cursor.Fail();
    return Text_From_File(Characters(cursor.Read_Bytes(size < 0 ? 0 : static_cast<std::size_t>(size))));
}

} // namespace

bool Is_First_Version(std::span<const std::uint8_t> bytes) {
    return Characters(bytes).starts_with(MAGIC);
}

First_Version_Outcome Read_First_Version(std::span<const std::uint8_t> bytes, Project_State& state) {
    if (!Is_First_Version(bytes))
        return First_Version_Outcome::Not_This_Version;
    Byte_Cursor cursor(bytes);
    cursor.Skip(MAGIC.size());
    const std::string digits = Trim(Characters(cursor.Read_Bytes(VERSION_DIGITS)));
    int version = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), version);
    if (error != std::errc() || end != digits.data() + digits.size())
        return First_Version_Outcome::Broken;
    if (version >= FIRST_UNKNOWN_VERSION)
        return First_Version_Outcome::Version_Not_Supported;
    Project_State read = state;
    read.ProjectTitle = Read_Long_Text(cursor);
    read.ProjectAuthor = Read_Long_Text(cursor);
    read.ProjectComments = Read_Long_Text(cursor);
    read.MetronomeNoteA = cursor.Read_I32();
    read.ProjectTempo =
        std::clamp<std::int32_t>(cursor.Read_I32(), 1, std::numeric_limits<std::int16_t>::max());
    read.MetronomeNoteB = cursor.Read_I32();
    if (!cursor.Ok())
        return First_Version_Outcome::Broken;
    state = read;
    return cursor.Remaining() == 0 ? First_Version_Outcome::Whole : First_Version_Outcome::Notes_Left_Out;
}

} // namespace tonvex
