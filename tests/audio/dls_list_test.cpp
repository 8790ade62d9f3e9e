#include "audio/dls_list_class.h"

#include "audio/patch_tables.h"
#include "support/output_bed.h"
#include "support/riff_bytes.h"
#include "support/temp_folder.h"

#include <string>
#include <vector>

namespace tonvex {
namespace {

using Paths = std::vector<std::string>;

struct DLSList_Test : Output_Bed {
    Temp_Folder folder;
    DLSListClass fonts{sound, api, channels};
    std::string Font(const std::string& name, const std::vector<Preset_Header>& presets) {
        return folder.Write(name, Silent_Font(name, Preset_Records(presets))).string();
    }
    std::string first = Font("first.sf2", {{"Grand", 0, 0}, {"Organ", 16, 0}, {"Kit A", 0, 128}});
    std::string second = Font("second.sf2", {{"Better grand", 0, 0}, {"Upright", 1, 8}});
    std::string broken = folder.Write("broken.sf2", "RIFF").string();

    DLSList_Test() {
        ports.outputs = {{"Port", 0}};
        fonts.Set_Config_Folder(folder.Path());
        fonts.fallbackFonts = {folder.Path() / "none.sf2", first, second};
        EXPECT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
    }
};

TEST(SF2_File, Preset_Records_Decide) {
    const std::string titleField(" Title \0x", 9);
    const std::string one = Preset_Records({{"Piano", 0, 0}});
    const std::string full = Preset_Records(
        {{"A name of 20 letters", 300, 128}, {std::string("Cut\0off", 7), 5, 3}, {"High", 127, 257}});
    struct Row {
        const char* name;
        std::string records;
        std::vector<Font_Preset> presets;
    };
    const std::vector<Row> rows = {
        {"nothing", "", {}},
        {"38 bytes: the closing record alone", one.substr(38), {}},
        {"39 bytes", one.substr(0, 39), {}},
        {"77 bytes", one + "x", {}},
        {"one preset", one, {{"Piano", 0, 0, FLAG_OFF}}},
        // 300 is 256 + 44; bank 257 is drums and 1.
        {"names, programs and banks",
         full,
         {{"A name of 20 letters", 44, 0, FLAG_ON}, {"Cut", 5, 3, FLAG_OFF}, {"High", 127, 1, FLAG_ON}}}};
    for (const Row& row : rows) {
        std::string title;
        std::vector<Font_Preset> presets;
        EXPECT_EQ(
            DLSListClass::Parse_SF2_Bytes(Bytes_Of(Silent_Font(titleField, row.records)), title, presets),
            !row.presets.empty())
            << row.name;
        EXPECT_EQ(presets, row.presets) << row.name;
        EXPECT_EQ(title, row.presets.empty() ? "" : "Title") << row.name;
    }
    // Cut short anywhere, it is refused: the records stand at its very end.
    const auto whole = Bytes_Of(Silent_Font("T", full));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        std::string title;
        std::vector<Font_Preset> presets;
        EXPECT_FALSE(DLSListClass::Parse_SF2_Bytes(std::span(whole).first(length), title, presets)) << length;
    }
}

TEST_F(DLSList_Test, The_Default_List_Keeps_What_Is_There) {
    struct Row {
        const char* name;
        std::string file;
        Paths list;
    };
    const std::vector<Row> rows = {
        {"two, with blanks and a dead one", "  " + second + "\r\n/no/such.sf2\n\n" + first, {second, first}},
        {"only dead paths", "/no/such.sf2\n" + folder.Path().string() + "\n", {first}},
        {"empty", "", {first}}};
    for (const Row& row : rows) {
        folder.Write("defaultsf2.cfg", row.file);
        fonts.CurList = {"/of/the/project.sf2"};
        EXPECT_TRUE(fonts.Load_DefaultList(true, true)) << row.name;
        EXPECT_EQ(fonts.DefaultList, row.list) << row.name;
        EXPECT_EQ(fonts.CurList, Paths{"/of/the/project.sf2"}) << row.name;
        EXPECT_TRUE(sound.fontSets.empty()) << row.name;
    }
    EXPECT_TRUE(fonts.Load_DefaultList());
    EXPECT_EQ(fonts.CurList, Paths{first});
    EXPECT_EQ(sound.fontSets.size(), 1U);

    fonts.fallbackFonts.clear();
    EXPECT_FALSE(fonts.Load_DefaultList());
    EXPECT_TRUE(fonts.CurList.empty());
}

TEST_F(DLSList_Test, The_Default_List_Is_Saved_As_It_Is_Read) {
    std::string error;
    fonts.DefaultList = {second, first};
    ASSERT_TRUE(fonts.Save_DefaultList(error)) << error;
    fonts.DefaultList = {"bad\nname"};
    EXPECT_FALSE(fonts.Save_DefaultList(error));
    EXPECT_TRUE(fonts.Load_DefaultList(true));
    EXPECT_EQ(fonts.CurList, (Paths{second, first}));
    std::filesystem::remove(second);
    EXPECT_EQ(fonts.CheckFiles_Curlist(), Paths{second});
}

TEST_F(DLSList_Test, Later_Fonts_Take_Precedence_And_Failed_Ones_Are_Named) {
    const std::string vanished = Font("vanished.sf2", {{"Never", 0, 0}});
    sound.unloadable = {vanished}; // readable when listed, gone when the synthesizer comes to it
    EXPECT_TRUE(fonts.Load_SF2_List({first, broken, "", second, "/no/such.sf2", vanished}));
    EXPECT_EQ(fonts.Failed_Fonts(), (Paths{broken, "/no/such.sf2", vanished}));
    // Handles: first 1, second 2.
    EXPECT_EQ(channels.Global_Patches[0], (PatchRow{"Better grand", 0, 0, 2}));
    EXPECT_EQ(channels.Global_Patches[1], (PatchRow{"Bright Acoustic Piano", 1, 0, 0}));
    EXPECT_EQ(channels.Global_Patches[16], (PatchRow{"Organ", 16, 0, 1}));
    EXPECT_EQ(channels.Global_Patches[128], (PatchRow{"Upright", 1, 8, 2}));
    EXPECT_EQ(channels.PatchCount, 129);
    EXPECT_EQ(channels.Global_DrumPatches[0], (PatchRow{"Kit A", 0, 0, 1}));
    EXPECT_EQ(channels.DrumPatchCount, 1);

    EXPECT_FALSE(fonts.Load_SF2_List({broken}));
    EXPECT_EQ(channels.Global_Patches[0], (PatchRow{"Acoustic Grand Piano", 0, 0, 0}));
    EXPECT_EQ(channels.Global_DrumPatches[0], (PatchRow{"Standard", 0, 0, 0}));
    EXPECT_EQ(channels.PatchCount, 128);
}

TEST_F(DLSList_Test, A_Port_Offers_The_Plain_Names) {
    ASSERT_TRUE(api.Midi_OpenDevice(0));
    fonts.CurList = {first};
    EXPECT_TRUE(fonts.Load_DefaultList());
    EXPECT_TRUE(fonts.Load_CurList_Fonts());
    EXPECT_TRUE(sound.fontSets.empty());
    EXPECT_EQ(fonts.CurList, Paths{first});
    EXPECT_EQ(channels.Global_Patches[127], (PatchRow{"Gunshot", 127, 0, 0}));
    EXPECT_EQ(channels.PatchCount, 128);
    EXPECT_EQ(channels.DrumPatchCount, 1);

    fonts.CurList.clear();
    ASSERT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
    EXPECT_TRUE(fonts.Load_For_Output());
    EXPECT_EQ(channels.Global_Patches[0], (PatchRow{"Grand", 0, 0, 1}));
    fonts.CurList = {second};
    EXPECT_TRUE(fonts.Load_For_Output());
    EXPECT_EQ(channels.Global_Patches[0].Name, "Better grand");
}

TEST_F(DLSList_Test, More_Sounds_Than_Rows) {
    Loaded_Font font{1, {}};
    for (int bank = 3; bank >= 0; --bank)
        for (int program = 0; program < 100; ++program)
            font.presets.push_back(
                {"", static_cast<std::uint8_t>(program), static_cast<std::uint8_t>(bank), FLAG_OFF});
    for (const int kit : {1, 2, 3, 48, 40, 32, 25, 24, 16, 8, 0, 56, 200})
        font.presets.push_back({"Kit " + std::to_string(kit), static_cast<std::uint8_t>(kit), 0, FLAG_ON});
    Fill_Font_Patches(channels, std::span(&font, 1));
    EXPECT_EQ(channels.PatchCount, 256);
    // Rows 128 to 227 are bank 1, so 228 to 255 are programs 0 to 27 of bank 2.
    EXPECT_EQ(channels.Global_Patches[255], (PatchRow{PatchNames[27], 27, 2, 1}));
    std::vector<int> kits;
    for (const PatchRow& row : channels.Global_DrumPatches)
        kits.push_back(row.Patch);
    EXPECT_EQ(kits, (std::vector<int>{0, 1, 2, 8, 16, 24, 25, 32, 40, 48, 56}));
}

} // namespace
} // namespace tonvex
