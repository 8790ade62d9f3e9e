#include "support/offline_bed.h"

#include <array>

namespace tonvex {
namespace {

constexpr float LOUDEST = 30000.0F;

struct Synth_Fonts : Offline_Bed {
    Synth_Fonts() {
        test::Write_Click_Font(first, {{"A", 0, 0, 30000}, {"B", 0, 5, 25000}, {"Kit", 128, 0, 20000}});
        test::Write_Click_Font(second, {{"C", 0, 0, 15000}, {"D", 3, 5, 10000}, {"Kit 16", 128, 16, 6000}});
    }
    void Patch(int slot, int program, int bank, std::int32_t font) {
        door.Post(Message(Sound_Op::Patch, slot, program, bank, 0, font));
    }
    float Peak_Of_Note(int slot) {
        door.Post(Note(0, slot));
        clock.Advance_Ms(100);
        door.Slot_Peak(slot);
        door.Render_Until(clock.Now_Ns(), {});
        return door.Slot_Peak(slot);
    }

    const std::filesystem::path first = folder / "first.sf2";
    const std::filesystem::path second = folder / "second.sf2";
};

TEST_F(Synth_Fonts, A_Patch_Finds_Its_Font) {
    const auto handles = door.Set_Fonts({first, second});
    ASSERT_GT(handles[0], 0);
    ASSERT_GT(handles[1], 0);
    Open();
    struct Row {
        const char* name;
        int slot;
        int program;
        int bank;
        std::int32_t font;
        float level;
    };
    const Row rows[] = {{"named font", 0, 0, 0, handles[0], 30000},
                        {"last font that has it", 0, 0, 0, 0, 15000},
                        {"only the first has it", 1, 5, 0, 0, 25000},
                        {"only the second has the bank", 1, 5, 3, 0, 10000},
                        {"no font has the bank", 2, 5, 7, 0, 25000},
                        {"no font has the program", 3, 9, 0, 0, 15000},
                        {"the named font lacks it", 4, 5, 0, handles[1], 25000},
                        {"a font that is not there", 5, 0, 0, 99, 15000},
                        {"values out of range", 6, 255, 255, -7, 15000},
                        {"drum kit", 9, 16, 0, 0, 6000},
                        {"drum kit of a named font", 9, 0, 0, handles[0], 20000},
                        {"no such drum kit", 9, 40, 0, 0, 20000},
                        {"slot 25 is melodic", 25, 5, 0, 0, 25000}};
    Patch(31, 0, 0, handles[0]);
    const float loudest = Peak_Of_Note(31);
    ASSERT_GT(loudest, 0.05F);
    for (const Row& row : rows) {
        Patch(row.slot, row.program, row.bank, row.font);
        EXPECT_NEAR(Peak_Of_Note(row.slot) / loudest, row.level / LOUDEST, 0.01F) << row.name;
    }
}

TEST_F(Synth_Fonts, Fonts_Change_Under_The_Patches) {
    Open();
    EXPECT_EQ(Peak_Of_Note(0), 0.0F) << "no font: silence";
    const std::int32_t handle = door.Set_Fonts({first}).front();
    Patch(0, 5, 0, handle);
    Patch(1, 5, 3, 0);
    const float of25000 = Peak_Of_Note(0);
    EXPECT_GT(of25000, 0.05F);
    EXPECT_EQ(door.Set_Fonts({second, first}).back(), handle) << "a path keeps its handle";
    EXPECT_NEAR(Peak_Of_Note(0) / of25000, 1.0F, 0.01F);
    EXPECT_NEAR(Peak_Of_Note(1) / of25000, 0.4F, 0.01F) << "the bank wanted before is there now";
    door.Set_Fonts({});
    EXPECT_EQ(Peak_Of_Note(0), 0.0F);
}

TEST_F(Synth_Fonts, Files_That_Are_No_Fonts_Leave_The_Others) {
    folder.Write("text.sf2", "no font at all");
    folder.Write("empty.sf2", "");
    const auto handles = door.Set_Fonts({folder / "text.sf2", folder / "missing.sf2", first,
                                         folder / "empty.sf2", folder.Path(), "/dev/zero"});
    ASSERT_EQ(handles.size(), 6U);
    for (std::size_t i = 0; i < handles.size(); ++i)
        EXPECT_EQ(handles[i] > 0, i == 2) << i;
    Open();
    EXPECT_GT(Peak_Of_Note(0), 0.05F);
}

/// Loads every variant, sounds each that loads, and the good font at the end.
void Sound_Variants(const Temp_Folder& folder, const std::vector<std::vector<std::uint8_t>>& variants,
                    std::vector<bool>& loads) {
    std::vector<Font_Source> fonts;
    for (const auto& bytes : variants) {
        const auto handle = static_cast<std::int32_t>(fonts.size() + 1);
        fonts.push_back({folder.Write(std::to_string(handle), {bytes.begin(), bytes.end()}), handle});
    }
    std::string error;
    const auto instance = Synth_Instance::Make(44100, fonts, error);
    ASSERT_NE(instance, nullptr) << error;
    const auto graph = std::make_unique<Synth_Graph>();
    graph->Swap_Instance(instance.get());
    std::array<float, Synth_Graph::PIECE> left{};
    std::array<float, Synth_Graph::PIECE> right{};
    for (const Font_Source& font : fonts) {
        loads.push_back(instance->Has_Font(font.handle));
        graph->Apply(Message(Sound_Op::Patch, 0, 0, 0, 0, font.handle));
        graph->Apply(Note(0));
        for (int piece = 0; piece < 12; ++piece) {
            graph->Render(left.data(), right.data(), 1.0F);
            for (const float sample : left)
                ASSERT_TRUE(sample > -100.0F && sample < 100.0F) << "variant " << font.handle;
        }
        graph->Apply(Message(Sound_Op::AllNotesOff, 0, 0));
    }
}

TEST_F(Synth_Fonts, Every_Cut_Is_Refused) {
    const auto good = test::Make_Click_Font({{"A", 0, 0, 30000}});
    std::vector<std::vector<std::uint8_t>> variants;
    for (std::size_t length = 0; length < good.size(); ++length)
        variants.emplace_back(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
    variants.push_back(good);
    std::vector<bool> loads;
    Sound_Variants(folder, variants, loads);
    ASSERT_EQ(loads.size(), variants.size());
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_FALSE(loads[length]) << "cut to " << length << " of " << good.size();
    EXPECT_TRUE(loads.back());
}

TEST_F(Synth_Fonts, Flipped_Bytes_Never_Crash) {
    const auto good = test::Make_Click_Font({{"A", 0, 0, 30000}});
    const std::string text(good.begin(), good.end());
    const std::size_t samplesBegin = text.find("smpl") + 8;
    const std::size_t samplesEnd = text.find("LIST", samplesBegin);
    ASSERT_LT(samplesEnd, good.size());
    for (const int flip : {0xff, 0x01}) {
        std::vector<std::vector<std::uint8_t>> variants;
        for (std::size_t at = 0; at < good.size(); ++at) {
            if (at >= samplesBegin && at < samplesEnd)
                continue; // another sound, the same structure
            variants.push_back(good);
            variants.back()[at] = static_cast<std::uint8_t>(good[at] ^ flip);
        }
        variants.push_back(good);
        std::vector<bool> loads;
        Sound_Variants(folder, variants, loads);
        ASSERT_FALSE(loads.empty());
        EXPECT_TRUE(loads.back());
    }
}

} // namespace
} // namespace tonvex
