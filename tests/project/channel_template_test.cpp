#include "project/channel_template.h"

#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <set>

namespace tonvex {
namespace {

constexpr const char* WHOLE = "[Template Info]\r\n"
                              "Infofile = leadinfo.html\r\n"
                              "repstring_find  = %NAME%\r\n"
                              "repstring_replace  = <a href=\"x=1\">Lead</a>\r\n"
                              "[Channel parameters]\r\n"
                              "KEYBOARDSETUPFILE = Two-row piano\r\n"
                              "BasicTemplate = True\r\n"
                              "AddChannelCountToName=TRUE\r\n"
                              "Pan = 20\r\nVol = 101\r\nOutputChannel = 7\r\n"
                              "PatchByte0  = 5\r\nPatchByte1  = 8\r\n"
                              "Style  = GuitarDist\r\n"
                              "[Style settings]\r\n"
                              "int1 = 1\r\nint5 = -3\r\nint6 = 9\r\nint2 = twelve\r\n"
                              "string2 = two words\r\ncustomint4 = 70000\r\n"
                              "dsfx_lower = 1\r\nUnknown = 3\r\nno sign here\r\n"
                              "GUID_DSFX_STANDARD_ECHO = 30 40 250\r\n"
                              "DSFX_SOMETHING = 9\r\n"
                              "GUID_DSFX_WAVES_REVERB = -200 -6\r\n";

TEST(Channel_Template, Every_Key_Is_Read_And_What_Is_No_Line_Is_Passed_Over) {
    const ChannelTemplate read = Parse_Template(WHOLE, true);
    EXPECT_EQ(read.InfoFile, "leadinfo.html");
    EXPECT_EQ(read.RepReplace, "<a href=\"x=1\">Lead</a>");
    EXPECT_EQ(read.KeyboardSetupFile, "Two-row piano");
    EXPECT_EQ(read.BasicTemplate, FLAG_ON);
    EXPECT_EQ(read.AddChannelCountToName, FLAG_ON);
    EXPECT_EQ(read.TemplatePan, 20);
    EXPECT_EQ(read.TemplateVol, 101);
    EXPECT_EQ(read.TemplateOutput, 7);
    EXPECT_EQ(read.TemplatePatch0, 5);
    EXPECT_EQ(read.TemplatePatch1, 8);
    EXPECT_EQ(read.TemplateStyle, 2);
    EXPECT_EQ(read.StyleInts, (std::array<std::int16_t, 5>{1, 0, 0, 0, -3}));
    EXPECT_EQ(read.StyleStrings[1], "two words");
    EXPECT_EQ(read.CustomInts, (std::array<std::int32_t, 4>{0, 0, 0, 70000}));

    ASSERT_EQ(read.EffectCount, 3);
    const Effect_Settings effects = read.Effects();
    EXPECT_TRUE(effects.Is_On(Effect_Kind::Echo));
    EXPECT_FALSE(effects.Is_On(Effect_Kind::Chorus));
    const Effect_Values& echo = effects.Of(Effect_Kind::Echo);
    EXPECT_EQ(echo[ECHO_LEFT], 250.0F);
    EXPECT_EQ(echo[ECHO_RIGHT], 500.0F); // not named: neutral
    EXPECT_EQ(effects.Of(Effect_Kind::Reverb)[REVERB_IN_GAIN], -96.0F);

    EXPECT_EQ(Parse_Template(WHOLE, false).EffectCount, 0);
    const ChannelTemplate bare = Parse_Template("Vol = 300000\nPan=\n", true);
    EXPECT_EQ(bare.TemplateVol, 80);
    EXPECT_EQ(bare.TemplatePan, 64);
    EXPECT_EQ(bare.TemplateOutput, ChannelTemplate::ANY_SLOT);
}

TEST(Channel_Template, The_Writer_Keeps_Its_Blanks_And_Reads_Back) {
    ChannelTemplate made = Parse_Template(WHOLE, true);
    made.StyleStrings[0] = "two\r\nPan = 1";
    const std::string text = Template_Text(made);
    for (const char* line : {"Infofile = leadinfo.html\r\n", "repstring_find  = %NAME%\r\n",
                             "repstring_replace  = <a href=\"x=1\">Lead</a>\r\n", "BasicTemplate = false\r\n",
                             "PatchByte0  = 5\r\n", "PatchByte1  = 8\r\n", "Style  = guitardist\r\n",
                             "int5 = -3\r\n", "string2 = two words\r\n", "customint2 = 0\r\n"})
        EXPECT_NE(text.find(line), std::string::npos) << line;
    EXPECT_EQ(Parse_Template(text, true).TemplatePan, 20);
}

TEST(Channel_Template, A_Folder_Lists_Its_Templates_With_Their_Pages) {
    const Temp_Folder folder;
    std::ofstream(folder.Path() / "strings.txt") << "Infofile = ../secret.html\n";
    std::ofstream(folder.Path() / "Lead.TXT") << WHOLE;
    std::ofstream(folder.Path() / "leadinfo.html") << "<p>%NAME% and %NAME%</p>";
    std::ofstream(folder.Path() / "notes.doc") << WHOLE;
    std::filesystem::create_directory(folder.Path() / "folder.txt");
    const auto list = List_Templates(folder.Path());
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].Name(), "Lead");
    EXPECT_EQ(Template_Page(list[0]), "<p><a href=\"x=1\">Lead</a> and <a href=\"x=1\">Lead</a></p>");
    EXPECT_EQ(Template_Page(list[1]), "");
    ChannelTemplate kept = list[0];
    EXPECT_FALSE(Read_Template(folder.Path() / "gone.txt", kept, true));
    EXPECT_EQ(kept.TemplatePan, 20);
    EXPECT_TRUE(List_Templates(folder.Path() / "nowhere").empty());
}

TEST(Channel_Template, A_Pan_Is_Taken_In_Words_And_In_Percent) {
    const struct {
        const char* text;
        int pan; ///< -1: refused
    } CASES[] = {{"l", 0},      {" Left ", 0}, {"R", 127},   {"right", 127}, {"c", 64},  {"Center", 64},
                 {"50%", 64},   {"0 %", 0},    {"100", 127}, {"25 %", 32},   {"", -1},   {"%", -1},
                 {"101 %", -1}, {"-1", -1},    {"nan", -1},  {"5 left", -1}, {"lx", -1}, {"20 %%", -1}};
    for (const auto& one : CASES)
        EXPECT_EQ(Pan_From_Text(one.text).value_or(255), one.pan < 0 ? 255 : one.pan) << one.text;
}

TEST(Channel_Template, Those_That_Ship_Are_Whole_And_Differ) {
    const std::filesystem::path folder = std::filesystem::path(TONVEX_SOURCE_DATA) / "templates" / "channels";
    std::set<std::pair<int, int>> sounds;
    const auto list = List_Templates(folder);
    EXPECT_GE(list.size(), 16U);
    for (const ChannelTemplate& one : list) {
        SCOPED_TRACE(one.Name());
        const std::string page = Template_Page(one);
        EXPECT_NE(page.find(one.Name()), std::string::npos);
        EXPECT_TRUE(one.TemplatePatch0 >= 0 && one.TemplatePatch0 <= 127);
        EXPECT_TRUE(one.TemplatePan >= 0 && one.TemplatePan <= 127);
        EXPECT_TRUE(one.TemplateVol > 0 && one.TemplateVol <= 127);
        EXPECT_TRUE(sounds.insert({one.TemplateOutput, one.TemplatePatch0}).second);
        const Effect_Settings effects = one.Effects();
        int on = 0;
        for (const Effect_Kind kind : ALL_EFFECTS)
            on += effects.Is_On(kind) ? 1 : 0;
        EXPECT_EQ(on, one.EffectCount) << "an effect line that means nothing";
    }
}

} // namespace
} // namespace tonvex
