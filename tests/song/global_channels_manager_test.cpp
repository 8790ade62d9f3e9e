#include "song/global_channels_manager.h"

#include "support/store_host.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>

namespace tonvex {
namespace {

class Channel_Table : public testing::Test {
protected:
    Store_Host host;
    GlobalChannelsManager table{host};

    Channel_Table() {
        for (std::size_t i = 0; i < table.Global_Patches.size(); ++i)
            table.Global_Patches[i] = {.Name = "p", .Patch = static_cast<std::int16_t>(i % 128), .Bank = 2};
        for (std::size_t i = 0; i < table.Global_DrumPatches.size(); ++i)
            table.Global_DrumPatches[i] = {
                .Name = "d", .Patch = static_cast<std::int16_t>(i * 8), .Bank = 128};
    }
    std::int32_t Add(std::int32_t slot = NOT_GIVEN, const std::string& name = "", bool isAudio = false) {
        const std::int32_t id = table.New_ChannelID();
        EXPECT_NE(table.Add_Channel(id, isAudio, slot, name), -1);
        return id;
    }
    GlobalChannel& Row(std::int32_t id) {
        return table.Channels[static_cast<std::size_t>(table.ChannelI(id))];
    }
};

TEST_F(Channel_Table, New_Channels_Take_Defaults_And_The_Lowest_Free_Places) {
    const std::int32_t first = Add();
    const std::int32_t audio = Add(NOT_GIVEN, "Voice", true);
    const std::int32_t second = Add();
    EXPECT_EQ(first, FIRST_ID);
    EXPECT_EQ(second, FIRST_ID + 2);
    const GlobalChannel& row = Row(first);
    EXPECT_EQ(std::tuple(row.Volume, row.Pan, row.PatchI, row.PatchByte1, row.OutputChannel),
              std::tuple(80, 64, 0, 2, 0));
    EXPECT_EQ(Row(second).OutputChannel, 1);
    EXPECT_EQ(Row(audio).OutputChannel, 255);
    EXPECT_EQ(Row(audio).AudioOutput, 0);
    EXPECT_EQ(Row(Add(NOT_GIVEN, "", true)).AudioOutput, 1);
    EXPECT_EQ(table.Store(0).ChannelNumber, first);
    table.Store(0).AddNewEvent(0, NoteData{60, 100, 1});
    EXPECT_EQ(table.Longest_Channel_Beats(), 1.0);
    table.Delete_Channel(first);
    EXPECT_EQ(table.ChannelI(first), -1);
    EXPECT_EQ(table.Store(0).GetTotalEvents(), -1);
    EXPECT_EQ(table.Count_Channels(), 3);
    EXPECT_EQ(table.ChannelI(Add()), 0) << "the freed row";
    EXPECT_EQ(table.Channels[0].ChannelID, FIRST_ID + 4) << "but never its ID";
    EXPECT_EQ(table.Add_Channel(second, false, NOT_GIVEN, ""), -1) << "an ID that is live";
    table.Add_Channel(100, false, NOT_GIVEN, "");
    EXPECT_EQ(table.New_ChannelID(), 101);
    table.Clear();
    EXPECT_EQ(table.Count_Channels(), 0);
    EXPECT_EQ(table.New_ChannelID(), FIRST_ID);
}

TEST_F(Channel_Table, Free_Slots_Are_Lowest_First_Never_The_Drums_And_Slot_0_When_All_Are_Taken) {
    for (int slot = 0; slot < 32; ++slot)
        if (slot != 9) {
            EXPECT_EQ(Row(Add()).OutputChannel, slot);
        }
    EXPECT_EQ(Row(Add()).OutputChannel, 0);
    EXPECT_EQ(table.OutputSlots[9].SlotName, "Channel 9 (Drums)");
    EXPECT_EQ(table.OutputSlots[31].SlotName, "Channel 31");
    table.Delete_Channel(FIRST_ID + 4);
    Add(NOT_GIVEN, "", true);
    EXPECT_EQ(table.Next_Free_Slot(), 4);
}

TEST_F(Channel_Table, A_Slot_Has_One_Patch_And_One_Pan) {
    const std::int32_t a = Add(3);
    const std::int32_t alone = Add(4);
    table.Set_Patch(a, 200);
    const std::int32_t b = Add(3);
    EXPECT_EQ(Row(b).PatchI, 200);
    EXPECT_EQ(Row(b).PatchByte0, 72);
    table.Set_Patch(b, 17);
    table.Set_Pan(b, 200);
    EXPECT_EQ(Row(a).PatchI, 17);
    EXPECT_EQ(Row(a).PatchByte0, 17);
    EXPECT_EQ(Row(a).Pan, 127);
    EXPECT_EQ(Row(alone).PatchI, 0);
    EXPECT_EQ(Row(alone).Pan, 64);
    table.Set_OutputChannel(alone, 3);
    EXPECT_EQ(Row(alone).PatchI, 17);
    table.Set_OutputChannel(alone, 9); // no kit of that number
    EXPECT_EQ(Row(alone).PatchI, 0);
    EXPECT_EQ(Row(alone).PatchByte1, 128);
    table.Set_Patch(alone, 3);
    EXPECT_EQ(Row(alone).PatchByte0, 24);
    for (const std::int16_t patch : {std::int16_t{-1}, std::int16_t{11}}) {
        table.Set_Patch(alone, patch);
        EXPECT_EQ(Row(alone).PatchI, 3) << patch;
    }
    table.Set_OutputChannel(alone, 32);
    EXPECT_EQ(Row(alone).OutputChannel, 9);
    const std::int32_t audio = Add(3, "", true);
    table.Set_Patch(audio, 5);
    table.Set_OutputChannel(audio, 3);
    EXPECT_EQ(Row(audio).PatchI, 0);
    EXPECT_EQ(Row(audio).OutputChannel, 255);
    table.OutputSlots[3].InUse = FLAG_OFF;
    table.Set_Patch(a, 1);
    EXPECT_EQ(Row(a).PatchI, 17);
}

TEST_F(Channel_Table, Names_Are_Unique_Letter_Case_Aside) {
    const std::string fifty(50, 'n');
    const std::string umlauts = "ÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜÜ"; // fifty
    const std::pair<std::string, std::string> cases[] = {
        {"", "Channel 1"},       {"  ", "Channel 2"},         {"Lead", "Lead"},
        {"LEAD", "LEAD 2"},      {" lead ", "lead 3"},        {"Übung", "Übung"},
        {"üBUNG", "üBUNG 2"},    {fifty + "too long", fifty}, {fifty, fifty.substr(0, 48) + " 2"},
        {umlauts + "x", umlauts}};
    for (const auto& [asked, given] : cases)
        EXPECT_EQ(Row(Add(NOT_GIVEN, asked)).ChannelName, given) << asked;
    table.Set_Name(FIRST_ID + 2, "lead");
    EXPECT_EQ(Row(FIRST_ID + 2).ChannelName, "lead") << "its own name is no other's";
    table.Set_Name(FIRST_ID + 2, "channel 1");
    EXPECT_EQ(Row(FIRST_ID + 2).ChannelName, "channel 1 2");
    table.Delete_Channel(FIRST_ID);
    table.Set_Name(FIRST_ID + 2, "channel 1");
    EXPECT_EQ(Row(FIRST_ID + 2).ChannelName, "channel 1");
}

TEST_F(Channel_Table, Maps_Come_And_Go_With_Channels) {
    const auto pan_at = [&](int slot) {
        return table.Maps.Slot_Map(Map_Kind::Pan, slot).Play_GetValue_At_TimePos(0.0);
    };
    const std::int32_t midi = Add(3);
    const std::int32_t audio = Add(NOT_GIVEN, "", true);
    EXPECT_EQ(table.Maps.Find_AudioMapRow(audio), 0);
    EXPECT_EQ(table.Maps.Find_AudioMapRow(midi), -1);
    table.Set_Pan(midi, 30);
    EXPECT_EQ(pan_at(3), 30);
    const std::int32_t second = Add(3);
    EXPECT_EQ(pan_at(3), 30) << "the slot keeps what its first channel set";
    table.Set_OutputChannel(midi, 4);
    EXPECT_EQ(pan_at(4), 30);
    table.Delete_Channel(second);
    Add(3);
    EXPECT_EQ(pan_at(3), 64) << "a new channel alone on the slot";
    table.Delete_Channel(audio);
    EXPECT_EQ(table.Maps.Find_AudioMapRow(audio), -1);
    table.Clear();
    EXPECT_EQ(pan_at(4), 64);
}

TEST_F(Channel_Table, Mute_Wins_Over_Solo) {
    // mute and solo of A and of B, then whether each is silent
    const char* const cases[] = {"---- --", "m--- s-", "-s-- -s", "ms-- ss", "-s-s --", "-sms -s"};
    const std::int32_t a = Add();
    const std::int32_t b = Add();
    const int rowA = table.ChannelI(a);
    const int rowB = table.ChannelI(b);
    for (const char* c : cases) {
        EXPECT_EQ(table.Set_Mute(a, c[0] == 'm'), c[0] == 'm');
        EXPECT_EQ(table.Set_Solo(a, c[1] == 's'), c[1] == 's');
        table.Set_Mute(b, c[2] == 'm');
        table.Set_Solo(b, c[3] == 's');
        EXPECT_EQ(table.Effective_Mute(rowA), c[5] == 's') << c;
        EXPECT_EQ(table.Effective_Mute(rowB), c[6] == 's') << c;
        EXPECT_FALSE(table.Effective_Mute(GlobalChannelsManager::PRACTICE_ROW));
    }
    EXPECT_TRUE(table.Set_Solo(a, false, true) != table.Set_Solo(a, false, true)) << "toggled twice";
    table.Set_Solo(a, true);
    table.Set_Mute(b, false);
    table.Set_Solo(b, false);
    table.Delete_Channel(a);
    EXPECT_FALSE(table.Effective_Mute(rowB)) << "a solo that is gone";
}

TEST_F(Channel_Table, A_Fifth_Distorted_Guitar_Is_Refused) {
    std::string message;
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(table.Style_Limit(2, message)) << i;
        Row(Add()).Style = 2;
    }
    EXPECT_TRUE(message.empty());
    EXPECT_TRUE(table.Style_Limit(1, message));
    EXPECT_FALSE(table.Style_Limit(2, message));
    EXPECT_EQ(message, "Can't create more than 4 channels using the \ndistorted guitar style");
    table.Delete_Channel(FIRST_ID);
    EXPECT_TRUE(table.Style_Limit(2, message));
}

TEST_F(Channel_Table, Unknown_Channels_Change_Nothing) {
    const std::int32_t id = Add(5, "Only");
    table.Set_Volume(id, 200);
    for (const std::int32_t other : {id + 1, 0, std::numeric_limits<std::int32_t>::max()}) {
        table.Delete_Channel(other);
        table.Set_Volume(other, 1);
        table.Set_Pan(other, 1);
        table.Set_Patch(other, 1);
        table.Set_Name(other, "x");
        table.Set_OutputChannel(other, 1);
        EXPECT_FALSE(table.Set_Mute(other, true));
        EXPECT_FALSE(table.Set_Solo(other, true));
    }
    EXPECT_EQ(table.Count_Channels(), 1);
    EXPECT_EQ(std::tuple(Row(id).Volume, Row(id).Pan, Row(id).OutputChannel), std::tuple(127, 64, 5));
    EXPECT_EQ(Row(id).ChannelName, "Only");
    for (std::size_t row = 1; row < table.Channels.size(); ++row)
        EXPECT_FALSE(Is_On(table.Channels[row].InUse)) << row;
}

} // namespace
} // namespace tonvex
