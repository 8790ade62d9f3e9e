#include "engine/device_watch.h"

#include "support/output_bed.h"

#include <string>
#include <vector>

namespace tonvex {
namespace {

struct Device_Watch_Test : Output_Bed {
    Device_Watch watch{api, ports};
    std::int32_t inputPort = midiapi::NO_DEVICE;

    /// The texts of one check.
    std::vector<std::string> Told() {
        std::vector<std::string> texts;
        for (const Device_Loss& loss : watch.Check(sound.Status(), inputPort).losses)
            texts.push_back(loss.text);
        return texts;
    }
};

using Texts = std::vector<std::string>;

TEST_F(Device_Watch_Test, A_Sound_Device_Is_Missed_Once_A_Loss) {
    sound.status.deviceName = "Speakers";
    ASSERT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));
    EXPECT_EQ(Told(), Texts{});
    const Texts lost = {"The sound device \"Speakers\" has gone. Everything goes on in silence."};
    sound.status.deviceLost = true;
    EXPECT_EQ(Told(), lost);
    EXPECT_EQ(Told(), Texts{});
    EXPECT_EQ(watch.Device_To_Reopen(Watched_Device::Sound), midiapi::SYNTH_DEVICE);
    sound.status.deviceLost = false; // opened again, but on nothing
    sound.status.quiet = true;
    EXPECT_EQ(Told(), Texts{"No sound device was found. Everything goes on in silence."});
    EXPECT_EQ(Told(), Texts{});
    sound.status.quiet = false;
    EXPECT_EQ(Told(), Texts{});
    sound.status.deviceLost = true;
    EXPECT_EQ(Told(), lost);
}

TEST_F(Device_Watch_Test, Ports_Are_Missed_By_Name_And_Found_Under_A_New_Number) {
    ports.outputs = {{"Piano", 2}, {"Organ", 3}};
    ports.inputs = {{"Keys", 5}};
    ASSERT_TRUE(api.Midi_OpenDevice(2));
    ASSERT_EQ(ports.Open_Input(5), Midi_Result::Ok);
    inputPort = 5;
    sound.status.quiet = true; // of no concern: the port sounds
    EXPECT_EQ(Told(), Texts{});

    ports.outputs = {{"Organ", 3}};
    ports.inputs.clear();
    ports.portsChanged = true;
    const Device_News news = watch.Check(sound.Status(), inputPort);
    EXPECT_TRUE(news.portsChanged);
    ASSERT_EQ(news.losses.size(), 2U);
    EXPECT_EQ(news.losses[0].device, Watched_Device::Midi_Output);
    EXPECT_EQ(news.losses[0].text, "The MIDI output \"Piano\" has gone. Everything goes on in silence.");
    EXPECT_EQ(news.losses[1].text, "The MIDI keyboard \"Keys\" has gone. The computer keyboard still plays.");
    EXPECT_FALSE(watch.Check(sound.Status(), inputPort).portsChanged);
    EXPECT_EQ(watch.Device_To_Reopen(Watched_Device::Midi_Output), midiapi::NO_DEVICE);

    ports.outputs.push_back({"Piano", 9});
    EXPECT_EQ(watch.Device_To_Reopen(Watched_Device::Midi_Output), 9);
    ASSERT_TRUE(api.Midi_OpenDevice(9));
    EXPECT_EQ(Told(), Texts{});
    ports.outputs.clear();
    EXPECT_EQ(Told().size(), 1U);

    api.Close(); // nothing is open, nothing is missed
    ports.Close_Input();
    inputPort = midiapi::NO_DEVICE;
    EXPECT_EQ(Told(), Texts{});
}

} // namespace
} // namespace tonvex
