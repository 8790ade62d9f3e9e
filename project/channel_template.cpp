#include "project/channel_template.h"

#include "base/file_io.h"
#include "base/rounding.h"
#include "base/text_codec.h"
#include "creator/style_names.h"
#include "project/project_templates.h"
#include "song/effect_records.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <sstream>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t LARGEST_TEMPLATE = std::size_t{1} << 20;
constexpr std::size_t LARGEST_PAGE = std::size_t{4} << 20;
constexpr const char* ENDING = ".txt";
constexpr int HIGHEST_PAN = 127;
constexpr double WHOLE_PERCENT = 100.0;

template <typename Number>
void Take_Number(const std::string& text, Number& target) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size())
        target = value;
}

Flag16 Flag_Of(const std::string& value) {
    return To_Flag(Lower_Ascii(value) == "true");
}

/// Which of count fields a key as "int3" names, counted from 0.
std::optional<std::size_t> Numbered(const std::string& key, std::string_view stem, std::size_t count) {
    if (key.size() != stem.size() + 1 || key.compare(0, stem.size(), stem) != 0)
        return std::nullopt;
    const auto number = static_cast<std::size_t>(static_cast<unsigned char>(key.back()) - '0');
    return number >= 1 && number <= count ? std::optional(number - 1) : std::nullopt;
}

bool Take_Style_Setting(const std::string& key, const std::string& value, ChannelTemplate& target) {
    if (const auto row = Numbered(key, "int", target.StyleInts.size()))
        Take_Number(value, target.StyleInts[*row]);
    else if (const auto string = Numbered(key, "string", target.StyleStrings.size()))
        target.StyleStrings[*string] = value;
    else if (const auto custom = Numbered(key, "customint", target.CustomInts.size()))
        Take_Number(value, target.CustomInts[*custom]);
    else
        return false;
    return true;
}

void Take_Effect(const std::string& guid, const std::string& value, ChannelTemplate& target) {
    if (target.EffectCount >= static_cast<int>(ChannelTemplate::MOST_EFFECTS))
        return;
    const auto row = static_cast<std::size_t>(target.EffectCount++);
    target.EffectGuids[row] = guid;
    target.EffectParams[row] = value;
}

void Take_Line(const std::string& writtenKey, const std::string& value, bool readEffects,
               ChannelTemplate& target) {
    if (writtenKey.starts_with("DSFX") || writtenKey.starts_with("GUID_DSFX")) {
        if (readEffects)
            Take_Effect(writtenKey, value, target);
        return;
    }
    const std::string key = Lower_Ascii(writtenKey);
    if (Take_Style_Setting(key, value, target))
        return;
    if (key == "infofile")
        target.InfoFile = value;
    else if (key == "repstring_find")
        target.RepFind = value;
    else if (key == "repstring_replace")
        target.RepReplace = value;
    else if (key == "keyboardsetupfile")
        target.KeyboardSetupFile = value;
    else if (key == "basictemplate")
        target.BasicTemplate = Flag_Of(value);
    else if (key == "addchannelcounttoname")
        target.AddChannelCountToName = Flag_Of(value);
    else if (key == "pan")
        Take_Number(value, target.TemplatePan);
    else if (key == "vol")
        Take_Number(value, target.TemplateVol);
    else if (key == "outputchannel")
        Take_Number(value, target.TemplateOutput);
    else if (key == "patchbyte0")
        Take_Number(value, target.TemplatePatch0);
    else if (key == "patchbyte1")
        Take_Number(value, target.TemplatePatch1);
    else if (key == "style")
        target.TemplateStyle = Style_FromName(value);
}

/// A value must not become a line of its own.
std::string One_Line(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char sign) { return sign == '\r' || sign == '\n'; }, ' ');
    return text;
}

/// A short page can ask for more than memory holds; what is beyond the largest page is left out.
std::string Replaced(const std::string& page, const std::string& find, const std::string& replacement) {
    std::string result;
    std::size_t from = 0;
    for (std::size_t at = page.find(find); at != std::string::npos; at = page.find(find, from)) {
        result.append(page, from, at - from).append(replacement);
        from = at + find.size();
        if (result.size() > LARGEST_PAGE)
            return result;
    }
    return result.append(page, from);
}

std::string_view Text_Of(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

fs::path ChannelTemplate::File_Of(const fs::path& folder, const std::string& name) {
    return Named_File(folder, name, ENDING);
}

std::string ChannelTemplate::Name() const {
    return TemplateFile.stem().string();
}

Effect_Settings ChannelTemplate::Effects() const {
    Effect_Settings settings;
    for (int row = 0; row < EffectCount; ++row) {
        const auto kind = Effect_Of_Name(EffectGuids[static_cast<std::size_t>(row)]);
        if (!kind)
            continue;
        Effect_Values values = Neutral_Values(*kind);
        std::istringstream figures(EffectParams[static_cast<std::size_t>(row)]);
        figures.imbue(std::locale::classic());
        for (std::size_t i = 0; i < Parameters_Of(*kind).size(); ++i) {
            float value = 0.0F;
            if (!(figures >> value))
                break;
            values[i] = value;
        }
        settings.on[static_cast<std::size_t>(*kind)] = true;
        settings.values[static_cast<std::size_t>(*kind)] = Bounded(*kind, values);
    }
    return settings;
}

ChannelTemplate Parse_Template(std::string_view bytes, bool readEffects) {
    ChannelTemplate result;
    for (const std::string& line : Split_Lines(Text_From_File(bytes))) {
        // The first sign parts; behind it a page's text may have more of them.
        const std::size_t sign = line.find('=');
        if (sign != std::string::npos)
            Take_Line(Trim(line.substr(0, sign)), Trim(line.substr(sign + 1)), readEffects, result);
    }
    return result;
}

bool Read_Template(const fs::path& path, ChannelTemplate& target, bool readEffects) {
    const auto bytes = Read_File(path, LARGEST_TEMPLATE);
    if (!bytes)
        return false;
    target = Parse_Template(Text_Of(*bytes), readEffects);
    target.TemplateFile = path;
    return true;
}

std::string Template_Text(const ChannelTemplate& source) {
    std::string text;
    const auto line = [&text](const std::string& words) { text += words + "\r\n"; };
    const auto number = [&line](const char* key, std::int32_t value) { line(key + std::to_string(value)); };
    line("[Template Info]");
    line("Infofile = " + One_Line(source.InfoFile));
    line("repstring_find  = " + One_Line(source.RepFind));
    line("repstring_replace  = " + One_Line(source.RepReplace));
    line("");
    line("[Channel parameters]");
    line("KeyboardSetupFile = " + One_Line(source.KeyboardSetupFile));
    line("BasicTemplate = false");
    number("Pan = ", source.TemplatePan);
    number("Vol = ", source.TemplateVol);
    if (source.TemplateOutput != ChannelTemplate::ANY_SLOT)
        number("OutputChannel = ", source.TemplateOutput);
    number("PatchByte0  = ", source.TemplatePatch0);
    number("PatchByte1  = ", source.TemplatePatch1);
    line("Style  = " + std::string(Style_InternalName(source.TemplateStyle)));
    line("");
    line("[Style settings]");
    for (std::size_t i = 0; i < source.StyleInts.size(); ++i)
        number(("int" + std::to_string(i + 1) + " = ").c_str(), source.StyleInts[i]);
    for (std::size_t i = 0; i < source.StyleStrings.size(); ++i)
        line("string" + std::to_string(i + 1) + " = " + One_Line(source.StyleStrings[i]));
    number("customint1 = ", source.CustomInts[0]);
    number("customint2 = ", source.CustomInts[1]);
    return text;
}

bool Write_Template(const fs::path& path, const ChannelTemplate& source, std::string& error) {
    const std::string bytes = Text_To_File(Template_Text(source));
    return Replace_File(path, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, error);
}

std::vector<ChannelTemplate> List_Templates(const fs::path& folder) {
    std::vector<ChannelTemplate> templates;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        ChannelTemplate read;
        if (Lower_Ascii(at->path().extension().string()) == ENDING && Read_Template(at->path(), read, true))
            templates.push_back(std::move(read));
    }
    std::sort(templates.begin(), templates.end(), [](const ChannelTemplate& a, const ChannelTemplate& b) {
        const std::string left = Lower_Ascii(a.Name());
        const std::string right = Lower_Ascii(b.Name());
        return left != right ? left < right : a.Name() < b.Name();
    });
    return templates;
}

std::string Template_Page(const ChannelTemplate& source) {
    if (source.InfoFile.empty())
        return {};
    const auto bytes =
        Read_File(source.TemplateFile.parent_path() / fs::path(source.InfoFile).filename(), LARGEST_PAGE);
    if (!bytes)
        return {};
    std::string page = Text_From_File(Text_Of(*bytes));
    return source.RepFind.empty() ? page : Replaced(page, source.RepFind, source.RepReplace);
}

std::optional<std::uint8_t> Pan_From_Text(std::string_view text) {
    std::string words = Lower_Ascii(Trim(text));
    if (words == "l" || words == "left")
        return std::uint8_t{0};
    if (words == "r" || words == "right")
        return static_cast<std::uint8_t>(HIGHEST_PAN);
    if (words == "c" || words == "center")
        return std::uint8_t{64};
    if (words.ends_with('%'))
        words = Trim(std::string_view(words).substr(0, words.size() - 1));
    double percent = -1.0;
    Take_Number(words, percent);
    if (!(percent >= 0.0 && percent <= WHOLE_PERCENT))
        return std::nullopt;
    return static_cast<std::uint8_t>(RoundHalfUp(percent * HIGHEST_PAN / WHOLE_PERCENT));
}

} // namespace tonvex
