#include "support/hub_bed.h"

#include <vector>

namespace tonvex {
namespace {

constexpr std::int32_t ECHO = 3;
constexpr const char* SHORT_ECHO =
    "0000c8420000484200007a430000fa4301000000"; // 100 %, 50 %, 250, 500, swapped

struct Effect_Messages : Hub_Bed {
    const Effect_Settings& Row(int row = 0) const { return session.channels->Effects.Row(row); }
};

TEST_F(Effect_Messages, Set_The_Song_The_Output_And_The_Modified_Flag) {
    Send(1030, CHANNEL, ECHO, true, std::string(SHORT_ECHO));
    EXPECT_TRUE(Row().Is_On(Effect_Kind::Echo));
    EXPECT_EQ(Row().Of(Effect_Kind::Echo), (Effect_Values{100.0F, 50.0F, 250.0F, 500.0F, 1.0F}));
    EXPECT_EQ(test.sound.effects[0], Row());
    EXPECT_EQ(test.sound.effectsSet, std::vector<int>{0});
    EXPECT_EQ(Told_Numbers(), std::vector<int>{1030});
    EXPECT_TRUE(session.project.Modified);
    Send(1030, CHANNEL, std::string("GUID_DSFX_STANDARD_ECHO"), false);
    EXPECT_FALSE(test.sound.effects[0].Any_On());
    EXPECT_EQ(Row().Of(Effect_Kind::Echo)[ECHO_LEFT], 250.0F) << "what is not given stays";
}

TEST_F(Effect_Messages, Refuse_What_Makes_No_Sense) {
    const std::monostate none;
    const std::vector<Change_Hub::Args> refused = {
        {FIRST_ID + 40, ECHO, true},
        {CHANNEL, 5, true},
        {CHANNEL, -1, true},
        {CHANNEL, std::string("GUID_DSFX"), true},
        {CHANNEL, ECHO, std::string("on")},
        {CHANNEL, ECHO, none, std::string("0000")},
        {CHANNEL, 0, true, std::string(SHORT_ECHO)},
        {CHANNEL, ECHO, true, 7},
    };
    for (std::size_t i = 0; i < refused.size(); ++i) {
        session.hub->Send(nullptr, 1030, refused[i]);
        EXPECT_EQ(Row(), Effect_Settings()) << i;
        EXPECT_TRUE(told.empty() && test.sound.effectsSet.empty() && !session.project.Modified) << i;
    }
    Send(1030, CHANNEL);
    EXPECT_EQ(test.sound.effectsSet, std::vector<int>{0}) << "without an effect the output is set anew";
}

TEST_F(Effect_Messages, Belong_To_The_Output_That_A_Channel_Is_On) {
    Send(1012, CHANNEL, 31);
    Send(1030, CHANNEL, ECHO, true);
    EXPECT_TRUE(test.sound.effects[31].Is_On(Effect_Kind::Echo));
    EXPECT_FALSE(test.sound.effects[0].Any_On());
    Send(1013, std::string("Vocals"), true);
    Send(1030, FIRST_ID + 1, 0, true);
    EXPECT_TRUE(Row(32).Is_On(Effect_Kind::Reverb)) << "audio output 0";
    EXPECT_EQ(test.sound.effectsSet, std::vector<int>{31}) << "which the synthesizer knows nothing of";
}

TEST_F(Effect_Messages, Go_With_The_Synthesizer_And_End_With_The_Song) {
    Send(1030, CHANNEL, ECHO, true);
    test.midi.outputs = {{"Port", 3}};
    session.Try_Output(3, 100);
    test.sound.effectsSet.clear();
    Send(1030, CHANNEL, 0, true);
    EXPECT_TRUE(test.sound.effectsSet.empty()) << "a port has no effects";
    session.Try_Output(midiapi::SYNTH_DEVICE, 100);
    EXPECT_TRUE(test.sound.effects[0].Is_On(Effect_Kind::Echo) &&
                test.sound.effects[0].Is_On(Effect_Kind::Reverb));
    session.New_Project();
    EXPECT_FALSE(test.sound.effects[0].Any_On());
}

} // namespace
} // namespace tonvex
