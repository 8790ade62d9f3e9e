// From font files and channel rows to samples: lists, patch tables, GCM_Midi, midiapi and the synthesizer.

#include "audio/dls_list_class.h"
#include "engine/gcm_midi.h"
#include "platform/offline_sound_door.h"

#include "support/click_font.h"
#include "support/recorder_doors.h"
#include "support/store_host.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace tonvex {
namespace {

constexpr double LOUD_TO_SOFT = 10.0; // levels 30000 and 3000

struct Output_Road_Test : testing::Test {
    Temp_Folder folder;
    Simulated_Counter counter;
    Offline_Sound_Door sound{counter};
    Recorder_Midi_Ports ports;
    Recorded_Dialogs dialogs;
    Store_Host host;
    GlobalChannelsManager channels{host};
    midiapi api{sound, ports, dialogs, counter, channels};
    Transport_State transport;
    GCM_Midi gcm{api, channels, transport};
    DLSListClass fonts{sound, api, channels};
    int lead = channels.Add_Channel(1, false, 3, "Lead");
    int drums = channels.Add_Channel(2, false, 9, "Drums");
    double left = 0.0;
    double right = 0.0;

    std::string Font(const std::string& name, const std::vector<test::Click_Preset>& presets) {
        test::Write_Click_Font(folder.Path() / name, presets, name);
        return (folder.Path() / name).string();
    }
    /// Plays a note on a row and leaves its peaks in left and right.
    void Strike(int row) {
        left = right = 0.0;
        gcm.GCM_NoteOn(row, 60, 127, true);
        counter.Advance_Ms(100);
        sound.Render_Until(counter.Now_Ns(), [this](std::span<const float> stereo) {
            for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
                left = std::max(left, std::fabs(static_cast<double>(stereo[i])));
                right = std::max(right, std::fabs(static_cast<double>(stereo[i + 1])));
            }
        });
        gcm.GCM_NoteOff(row, 60, 100, true);
    }
};

TEST_F(Output_Road_Test, The_Later_Font_Sounds_And_A_Kit_Comes_From_Any) {
    const std::string soft = Font("soft.sf2", {{"Soft", 0, 0, 3000}, {"Kit", 128, 0, 30000}});
    const std::string loud = Font("loud.sf2", {{"Loud", 0, 0, 30000}});
    ASSERT_TRUE(api.Midi_OpenDevice(midiapi::SYNTH_DEVICE));

    ASSERT_TRUE(fonts.Load_SF2_List({soft, loud}));
    gcm.GCM_SendAllPatches();
    Strike(lead);
    const double loudPeak = left;
    ASSERT_GT(loudPeak, 0.0);
    Strike(drums);
    EXPECT_NEAR(left / loudPeak, 1.0, 0.01);

    ASSERT_TRUE(fonts.Load_SF2_List({loud, soft}));
    gcm.GCM_SendAllPatches();
    Strike(lead);
    EXPECT_NEAR(loudPeak / left, LOUD_TO_SOFT, 0.1);

    // Back in the first order, by the row of the table alone.
    ASSERT_TRUE(fonts.Load_SF2_List({soft, loud}));
    channels.Global_Patches[200] = {"Named", 0, 0, channels.Global_DrumPatches[0].Font};
    gcm.GCM_SetChannelPatch(lead, 200);
    Strike(lead);
    EXPECT_NEAR(loudPeak / left, LOUD_TO_SOFT, 0.1);
}

} // namespace
} // namespace tonvex
