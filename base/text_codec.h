#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// Text of the program's files and UTF-8, the text inside the program.
/// Bytes that are valid UTF-8 are UTF-8, all others Windows-1252 (its five unused codes map to the
/// control characters of the same number).
std::string Text_From_File(std::string_view bytes);

/// Windows-1252 where every character fits, else the UTF-8 bytes themselves.
std::string Text_To_File(std::string_view utf8);

/// Text_To_File of as much of the text as gives at most size bytes, cut at a character's border.
std::string Text_To_File_Cut(std::string_view utf8, std::size_t size);

/// A fixed field of size bytes, as files carry it: encoded, cut at a character's border, blank padded.
std::string Fixed_Field(std::string_view utf8, std::size_t size);

/// The text of a fixed field: decoded, without trailing blanks and zero bytes.
std::string Text_From_Fixed_Field(std::string_view field);

bool Is_Valid_Utf8(std::string_view bytes) noexcept;

/// ASCII letters only, as keys of the program's tables are compared.
std::string Lower_Ascii(std::string_view text);
/// The letters of Windows-1252, those that texts in the program's files can hold; others stay.
std::string Lower_Latin(std::string_view text);
/// Without leading and trailing blanks and tabs, carriage returns and line feeds.
std::string Trim(std::string_view text);
/// Lines without their ends; "\r\n", "\n" and "\r" all end a line.
std::vector<std::string> Split_Lines(std::string_view text);

} // namespace tonvex
