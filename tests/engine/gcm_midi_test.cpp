#include "engine/gcm_midi.h"

#include "support/output_bed.h"

#include <string>
#include <vector>

namespace tonvex {
namespace {

constexpr int PRACTICE = GlobalChannelsManager::PRACTICE_ROW;

/// Says every message in a few letters: "on 3:60@100", "off 3:60", "patch 3:40/8 f2", "pan 3:64".
std::string Spell(const Sound_Message& message) {
    const std::string at = std::to_string(message.slot) + ":" + std::to_string(message.a);
    switch (message.op) {
    case Sound_Op::NoteOn:
        return "on " + at + "@" + std::to_string(message.b);
    case Sound_Op::NoteOff:
        return "off " + at;
    case Sound_Op::Patch:
        return "patch " + at + "/" + std::to_string(message.b) + " f" + std::to_string(message.font);
    case Sound_Op::Pan:
        return "pan " + at;
    default:
        return "other";
    }
}

struct Counting_Viewer final : Transport_Observer {
    std::vector<std::string> seen;
    void On_Note_Shown(int note) override { seen.push_back("+" + std::to_string(note)); }
    void On_Note_Hidden(int note) override { seen.push_back("-" + std::to_string(note)); }
};

struct GCM_Midi_Test : Output_Bed {
    using Words = std::vector<std::string>;
    Transport_State transport;
    GCM_Midi gcm{api, channels, transport};
    int lead = channels.Add_Channel(1, false, 3, "Lead");
    int second = channels.Add_Channel(2, false, 3, "Second");
    int drums = channels.Add_Channel(3, false, 9, "Drums");
    int clips = channels.Add_Channel(4, true, NOT_GIVEN, "Clips");

    GCM_Midi_Test() {
        EXPECT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
        for (std::size_t i = 0; i < 256; ++i)
            channels.Global_Patches[i] = {"P", static_cast<std::int16_t>(i % 128),
                                          static_cast<std::uint8_t>(i / 128), 1};
        channels.Global_DrumPatches[2] = {"Kit", 16, 0, 2};
    }
    GlobalChannel& Row(int row) { return channels.Channels[static_cast<std::size_t>(row)]; }
    /// What was sent since the last call.
    Words Sent() {
        Words words;
        for (const Sound_Message& message : sound.posted)
            words.push_back(Spell(message));
        sound.posted.clear();
        return words;
    }
};

TEST_F(GCM_Midi_Test, Live_Notes_Count_And_Never_Fall_Below_Zero) {
    gcm.GCM_NoteOn(lead, 60, 90, true);
    gcm.GCM_NoteOn(lead, 60, 91, true);
    EXPECT_EQ(transport.LiveNotes[60], 2);
    gcm.GCM_NoteOff(lead, 60, 100, true);
    gcm.GCM_NoteOff(lead, 60, 100, true);
    gcm.GCM_NoteOff(lead, 60, 100, true);
    EXPECT_EQ(transport.LiveNotes[60], 0);
    gcm.GCM_NoteOn(lead, 61, 90, false);
    EXPECT_EQ(transport.LiveNotes[61], 0);
    EXPECT_EQ(Sent(), (Words{"on 3:60@90", "on 3:60@91", "off 3:60", "off 3:60", "off 3:60", "on 3:61@90"}));
}

TEST_F(GCM_Midi_Test, Rows_And_Notes_That_Do_Not_Exist_Are_Passed_Over) {
    for (const int row : {-1, clips, clips + 1, 101, 109, 110, 100000}) {
        gcm.GCM_NoteOn(row, 60, 90, false);
        gcm.GCM_PlayNoteOn(row, 60, 90, false);
        gcm.GCM_PlayNoteOff(row, 60, 90, false);
        gcm.GCM_SetChannelPatch(row, 0);
        gcm.GCM_SetChannelPan(row);
        EXPECT_EQ(Sent(), Words{}) << row;
    }
    for (const int note : {-1, 128, 255}) {
        gcm.GCM_NoteOn(lead, note, 90, true);
        gcm.GCM_PlayNoteOn(lead, note, 90, false);
        gcm.GCM_PlayNoteOff(lead, note, 90, false);
        EXPECT_EQ(Sent(), Words{}) << note;
    }
    Row(PRACTICE).OutputChannel = 7;
    gcm.GCM_NoteOn(PRACTICE, 60, 90, true);
    gcm.GCM_PlayNoteOn(PRACTICE, 61, 90, false);
    gcm.GCM_PlayNoteOff(PRACTICE, 61, 90, false);
    EXPECT_EQ(Sent(), (Words{"on 7:60@90", "on 7:61@90", "off 7:61"}));
}

TEST_F(GCM_Midi_Test, The_Viewed_Channel_Shows_Its_Stored_Notes) {
    Counting_Viewer viewer;
    gcm.viewer = &viewer;
    gcm.View_Channel(second);
    gcm.GCM_PlayNoteOn(lead, 60, 80, false);
    gcm.GCM_PlayNoteOn(second, 60, 80, false);
    gcm.GCM_PlayNoteOn(second, 60, 80, false);
    gcm.GCM_PlayNoteOff(lead, 60, 100, false);
    gcm.GCM_PlayNoteOff(second, 60, 100, false);
    gcm.GCM_PlayNoteOff(second, 60, 100, false);
    gcm.GCM_PlayNoteOff(second, 60, 100, false);
    gcm.GCM_PlayNoteOn(second, 62, 80, false);
    gcm.View_Channel(lead); // takes the note along
    gcm.GCM_PlayNoteOff(second, 62, 100, false);
    EXPECT_EQ(viewer.seen, (Words{"+60", "+60", "-60", "-60", "+62", "-62"}));
}

TEST_F(GCM_Midi_Test, Patches_Come_From_The_Slots_Table) {
    gcm.GCM_SetChannelPatch(lead, 40);
    gcm.GCM_SetChannelPatch(lead, 255);
    gcm.GCM_SetChannelPatch(drums, 2);
    for (const int outside : {-1, 256, 32767})
        gcm.GCM_SetChannelPatch(lead, outside);
    gcm.GCM_SetChannelPatch(drums, 11);
    EXPECT_EQ(Sent(), (Words{"patch 3:40/0 f1", "patch 3:127/1 f1", "patch 9:16/0 f2"}));
}

TEST_F(GCM_Midi_Test, All_Patches_Are_Those_Of_The_Last_Row_Of_Each_Slot) {
    Row(lead).PatchI = 10;
    Row(lead).Pan = 10;
    Row(second).PatchI = 20;
    Row(second).Pan = 100;
    Row(drums).PatchI = 300; // no such kit: the slot keeps its own
    const Words all = {"patch 3:20/0 f1", "pan 3:100", "pan 9:64"};
    gcm.GCM_SendAllPatches();
    EXPECT_EQ(Sent(), all);
    gcm.GCM_SetChannelPan(second);
    EXPECT_EQ(Sent(), Words{});
    gcm.GCM_SetChannelPan(lead);
    EXPECT_EQ(Sent(), (Words{"pan 3:10"}));
    gcm.GCM_SendAllPatches();
    EXPECT_EQ(Sent(), all);
}

} // namespace
} // namespace tonvex
