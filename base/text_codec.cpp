#include "base/text_codec.h"

#include <array>
#include <cstdint>

namespace tonvex {

namespace {

/// Unicode of the Windows-1252 codes 0x80 to 0x9F (the Windows code page table; unused codes as themselves).
constexpr std::array<char16_t, 32> cp1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void Append_Utf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (code >> 6)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xE0 | (code >> 12)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

/// Length of the well-formed UTF-8 sequence at the front, its code in code; 0 when ill-formed
/// (overlong forms, surrogates and codes above 10FFFF included).
std::size_t Decode_One(std::string_view text, char32_t& code) noexcept {
    const auto lead = static_cast<std::uint8_t>(text[0]);
    if (lead < 0x80) {
        code = lead;
        return 1;
    }
    std::size_t length = 0;
    char32_t least = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        code = lead & 0x1F;
        least = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        code = lead & 0x0F;
        least = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        code = lead & 0x07;
        least = 0x10000;
    } else {
        return 0;
    }
    if (text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<std::uint8_t>(text[i]);
        if ((next & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (next & 0x3F);
    }
    if (code < least || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return length;
}

bool Continues_Character(char byte) noexcept {
    return (static_cast<std::uint8_t>(byte) & 0xC0) == 0x80;
}

bool To_Cp1252(char32_t code, char& out) noexcept {
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
        out = static_cast<char>(code);
        return true;
    }
    for (std::size_t i = 0; i < cp1252High.size(); ++i) {
        if (cp1252High[i] == code) {
            out = static_cast<char>(0x80 + i);
            return true;
        }
    }
    return false;
}

} // namespace

bool Is_Valid_Utf8(std::string_view bytes) noexcept {
    char32_t code = 0;
    while (!bytes.empty()) {
        const std::size_t length = Decode_One(bytes, code);
        if (length == 0)
            return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string Text_From_File(std::string_view bytes) {
    if (Is_Valid_Utf8(bytes))
        return std::string(bytes);
    std::string out;
    out.reserve(bytes.size() * 2);
    for (const char raw : bytes) {
        const auto byte = static_cast<std::uint8_t>(raw);
        Append_Utf8(out, byte >= 0x80 && byte < 0xA0 ? cp1252High[byte - 0x80U] : char32_t{byte});
    }
    return out;
}

std::string Text_To_File(std::string_view utf8) {
    std::string out;
    std::string_view rest = utf8;
    char32_t code = 0;
    while (!rest.empty()) {
        const std::size_t length = Decode_One(rest, code);
        char byte = 0;
        if (length == 0 || !To_Cp1252(code, byte))
            return std::string(utf8);
        out.push_back(byte);
        rest.remove_prefix(length);
    }
    // Two Latin characters can spell a UTF-8 sequence by chance; then only UTF-8 reads back as meant.
    return Is_Valid_Utf8(out) && out != utf8 ? std::string(utf8) : out;
}

std::string Text_To_File_Cut(std::string_view utf8, std::size_t size) {
    // No character is shorter than a byte in either form, so the first size characters are the most to keep.
    std::size_t characters = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i)
        if (!Continues_Character(utf8[i]) && ++characters > size)
            utf8 = utf8.substr(0, i);
    std::string bytes = Text_To_File(utf8);
    while (bytes.size() > size) { // UTF-8, then
        std::size_t cut = size;
        while (cut > 0 && Continues_Character(utf8[cut]))
            --cut;
        utf8 = utf8.substr(0, cut);
        bytes = Text_To_File(utf8);
    }
    return bytes;
}

std::string Fixed_Field(std::string_view utf8, std::size_t size) {
    std::string field = Text_To_File_Cut(utf8, size);
    field.resize(size, ' ');
    return field;
}

std::string Text_From_Fixed_Field(std::string_view field) {
    while (!field.empty() && (field.back() == ' ' || field.back() == '\0'))
        field.remove_suffix(1);
    return Text_From_File(field);
}

std::string Lower_Ascii(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return out;
}

std::string Lower_Latin(std::string_view text) {
    std::string lower(text);
    for (std::size_t i = 0; i < lower.size(); ++i) {
        const auto byte = static_cast<unsigned char>(lower[i]);
        if (byte >= 'A' && byte <= 'Z')
            lower[i] = static_cast<char>(byte + 32);
        if (i == 0)
            continue;
        const auto lead = static_cast<unsigned char>(lower[i - 1]);
        // U+00C0 to U+00DE but the multiplication sign; then S and Z with caron, OE, Y with diaeresis.
        if (lead == 0xC3 && byte >= 0x80 && byte <= 0x9E && byte != 0x97)
            lower[i] = static_cast<char>(byte + 32);
        else if (lead == 0xC5 && (byte == 0xA0 || byte == 0xBD || byte == 0x92))
            lower[i] = static_cast<char>(byte + 1);
        else if (lead == 0xC5 && byte == 0xB8)
            lower.replace(i - 1, 2, "\xC3\xBF");
    }
    return lower;
}

std::string Trim(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

std::vector<std::string> Split_Lines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = text.find_first_of("\r\n");
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            break;
        const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
        text.remove_prefix(end + (pair ? 2 : 1));
    }
    return lines;
}

} // namespace tonvex
