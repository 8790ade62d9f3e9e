#include "engine/midiapi.h"

#include "support/output_bed.h"

#include <functional>
#include <string>
#include <vector>

namespace tonvex {
namespace {

/// "slot op a b", in a few letters each.
std::string Spell(Sound_Op op, int slot, int a, int b) {
    static constexpr const char* names[] = {"on", "off", "patch", "pan", "volume", "quiet", "all quiet"};
    return std::to_string(slot) + " " + names[static_cast<int>(op)] + " " + std::to_string(a) + " " +
           std::to_string(b) + ";";
}

struct Recorder_Observer final : Output_Observer {
    std::string heard;
    void On_Output(Sound_Op op, int slot, int a, int b) override { heard += Spell(op, slot, a, b); }
};

struct midiapi_Test : Output_Bed {
    static constexpr std::int32_t PORT = 7;

    Recorder_Observer observer;

    midiapi_Test() {
        ports.outputs = {{"  Stage Piano \t", PORT}};
        api.Set_Observer(&observer);
    }
    /// What a port was sent since the last call: "status data1 data2;" each.
    std::string To_Port() {
        std::string words;
        for (const auto& sent : ports.sent)
            words += std::to_string(sent.status) + " " + std::to_string(sent.data1) + " " +
                     std::to_string(sent.data2) + ";";
        ports.sent.clear();
        return words;
    }
    /// What the synthesizer was sent since the last call.
    std::string To_Synth() {
        std::string words;
        for (const Sound_Message& message : sound.posted)
            words += Spell(message.op, message.slot, message.a, message.b);
        sound.posted.clear();
        return words;
    }
};

TEST_F(midiapi_Test, Operations_Reach_Port_Synthesizer_And_Observer) {
    struct Row {
        const char* name;
        std::function<void(midiapi&)> call;
        std::string port, synth;
    };
    const std::vector<Row> rows = {
        {"note on", [](midiapi& m) { m.Midi_NoteOn(4, 60, 100); }, "148 60 100;", "4 on 60 100;"},
        {"masked", [](midiapi& m) { m.Midi_NoteOn(20, 60, 100); }, "148 60 100;", "20 on 60 100;"},
        {"last slot", [](midiapi& m) { m.Midi_NoteOff(31, 127, 64); }, "143 127 64;", "31 off 127 64;"},
        {"too loud", [](midiapi& m) { m.Midi_NoteOn(0, 0, 300); }, "144 0 127;", "0 on 0 127;"},
        {"nothing to hear", [](midiapi& m) { m.Midi_NoteOn(0, 1, 0); }, "", ""},
        {"below 0", [](midiapi& m) { m.Midi_NoteOff(0, 1, -5); }, "128 1 0;", "0 off 1 0;"},
        {"bank first", [](midiapi& m) { m.Midi_SetPatch(3, 40, 8, 2); }, "179 0 8;195 40 0;",
         "3 patch 40 8;"},
        {"patch dropped", [](midiapi& m) { m.Midi_SetPatch(16, 40, 0, 0); }, "", "16 patch 40 0;"},
        {"pan", [](midiapi& m) { m.Midi_SetPan(15, 127); }, "191 10 127;", "15 pan 127 0;"},
        {"pan dropped", [](midiapi& m) { m.Midi_SetPan(20, 64); }, "", "20 pan 64 0;"},
        {"volume", [](midiapi& m) { m.Midi_SetVolume(9, 90); }, "185 7 90;", "9 volume 90 0;"},
        {"volume dropped", [](midiapi& m) { m.Midi_SetVolume(31, 90); }, "", "31 volume 90 0;"},
        {"notes off", [](midiapi& m) { m.Midi_ChannelNotesOff(18); }, "178 120 0;", "18 quiet 0 0;"},
        {"channel 32", [](midiapi& m) { m.Midi_NoteOn(32, 60, 100); }, "", ""},
        {"audio channels' slot", [](midiapi& m) { m.Midi_SetPan(255, 60); }, "", ""},
        {"channel -1", [](midiapi& m) { m.Midi_NoteOff(-1, 60, 100); }, "", ""}};
    for (const Row& row : rows) {
        row.call(api); // nothing is open: nothing leaves
        EXPECT_EQ(observer.heard, "") << row.name;
        ASSERT_TRUE(api.Midi_OpenDevice(PORT));
        row.call(api);
        EXPECT_EQ(To_Port(), row.port) << row.name;
        EXPECT_EQ(observer.heard, row.port.empty() ? "" : row.synth) << row.name;
        observer.heard.clear();
        ASSERT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
        (void)To_Port(); // the port's notes were silenced
        observer.heard.clear();
        row.call(api);
        EXPECT_EQ(To_Synth(), row.synth) << row.name;
        EXPECT_EQ(observer.heard, row.synth) << row.name;
        EXPECT_EQ(To_Port(), "") << row.name;
        observer.heard.clear();
        api.Close();
    }
}

TEST_F(midiapi_Test, All_Notes_Off_Reaches_Every_Channel_Also_On_Leaving_A_Port) {
    std::string everyChannelTwice;
    for (int slot = 0; slot < 32; ++slot)
        everyChannelTwice += std::to_string(176 + slot % 16) + " 120 0;";
    ASSERT_TRUE(api.Midi_OpenDevice(PORT));
    api.Midi_AllNotesOff();
    EXPECT_EQ(To_Port(), everyChannelTwice);
    EXPECT_EQ(observer.heard, "-1 all quiet 0 0;");
    ASSERT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
    EXPECT_EQ(To_Port(), everyChannelTwice);
    EXPECT_EQ(ports.openOutput, -1);
    api.Midi_AllNotesOff();
    EXPECT_EQ(To_Synth(), "0 all quiet 0 0;");
}

TEST_F(midiapi_Test, Orders_Carry_Moment_And_Font) {
    ASSERT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
    counter.Advance_Ms(250);
    api.Midi_NoteOn(0, 60, 100);
    api.Midi_NoteOff(0, 60, 100, 249'000'001);
    api.Midi_SetPatch(9, 16, 0, 5);
    ASSERT_EQ(sound.posted.size(), 3U);
    EXPECT_EQ(sound.posted[0].dueNs, 250'000'000);
    EXPECT_EQ(sound.posted[1].dueNs, 249'000'001);
    EXPECT_EQ(sound.posted[2].font, 5);
    EXPECT_EQ(api.LastShortMsg(), 192U + 9U + 16U * 256U);
}

TEST_F(midiapi_Test, The_Buffer_Gives_The_Update_Period_And_Is_Raised_To_What_The_Device_Can_Do) {
    struct Row {
        int buffer, minimum, update, used;
    };
    // 70 / 9 + 10 = 17.8; 4970 / 9 + 10 = 562.2
    const Row rows[] = {{30, 6, 10, 30},
                        {1, 6, 10, 16},
                        {300, 6, 40, 300},
                        {100, 6, 18, 100},
                        {100, 90, 18, 108},
                        {100, 82, 18, 100},
                        {2'000'000'000, 6, 562, 5000},
                        {-50, 6, 10, 16}};
    for (const Row& row : rows) {
        api.Global_BASSBufferSize = row.buffer;
        sound.minimumBufferMs = row.minimum;
        ASSERT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
        EXPECT_EQ(api.UpdatePeriod(), row.update) << row.buffer;
        EXPECT_EQ(sound.opened.back().updateMs, row.update) << row.buffer;
        EXPECT_EQ(api.Global_BASSBufferSize, row.used) << row.buffer;
    }
}

TEST_F(midiapi_Test, Devices_Are_The_Ports_And_Last_The_Synthesizer) {
    ports.inputs = {{"Keys", 3}};
    std::string devices;
    for (const auto& rows : {api.Output_Devices(), api.Input_Devices()})
        for (const Device_Row& row : rows)
            devices +=
                row.Name + " " + std::to_string(row.DeviceID) + " " + std::to_string(row.IsSynth) + ";";
    EXPECT_EQ(devices, "Stage Piano 7 0;SoundFont synthesizer -1000 1;Keys 3 0;");
    for (int id = 100; id < 200; ++id)
        ports.outputs.push_back({"More", id});
    EXPECT_EQ(api.Output_Devices().size(), 51U);
    EXPECT_EQ(api.Output_Devices().back().DeviceID, -1000);
}

TEST_F(midiapi_Test, A_Device_That_Fails_Leaves_The_Program_Silent) {
    ASSERT_TRUE(api.Midi_OpenDevice(PORT));
    EXPECT_FALSE(api.Midi_OpenDevice(99));
    ASSERT_EQ(dialogs.shown.size(), 1U);
    EXPECT_EQ(dialogs.shown[0].kind, Box_Kind::Warning);
    EXPECT_EQ(dialogs.shown[0].text, "Can't open Output device\nTry configuring the Output device");
    EXPECT_EQ(api.CurrentDevice(), midiapi::NO_DEVICE);
    EXPECT_EQ(ports.openOutput, -1);

    sound.openError = "Not enough memory";
    EXPECT_FALSE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
    ASSERT_EQ(dialogs.shown.size(), 2U);
    EXPECT_EQ(dialogs.shown[1].text, "Can't initialize device: \nNot enough memory");
    EXPECT_FALSE(api.UsingSynth());
    api.Midi_NoteOn(0, 60, 100);
    EXPECT_TRUE(sound.posted.empty());

    sound.openError.clear();
    EXPECT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
    api.Midi_NoteOn(0, 60, 100);
    EXPECT_EQ(To_Synth(), "0 on 60 100;");
    api.Close();
    EXPECT_FALSE(sound.status.open);
}

TEST_F(midiapi_Test, Fonts_Are_Found_In_The_Used_Rows) {
    channels.Global_Patches[0] = {"Piano", 0, 0, 1};
    channels.Global_Patches[1] = {"Other piano", 0, 8, 2};
    channels.Global_Patches[2] = {"Unused", 5, 0, 3};
    channels.Global_DrumPatches[0] = {"Kit", 16, 0, 4};
    channels.PatchCount = 2;
    channels.DrumPatchCount = 1;
    EXPECT_EQ(api.Midi_FindFont(false, 0, 0), 1);
    EXPECT_EQ(api.Midi_FindFont(false, 0, 8), 2);
    EXPECT_EQ(api.Midi_FindFont(false, 5, 0), 0);
    EXPECT_EQ(api.Midi_FindFont(true, 16, 0), 4);
    EXPECT_EQ(api.Midi_FindFont(true, 0, 0), 0);
}

} // namespace
} // namespace tonvex
