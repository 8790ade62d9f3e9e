#include "project/mixdown.h"

#include "app/session.h"
#include "platform/live_sound_door.h"
#include "platform/waiting_run_loop.h"
#include "support/click_font.h"
#include "support/onsets.h"
#include "support/sound_files.h"
#include "support/test_session.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>
#include <thread>

namespace tonvex {
namespace {

namespace fs = std::filesystem;
using Outcome = Mixdown_Result::Outcome;

constexpr double FRAME_S = 1.0 / 44100;

/// A song that sounds clicks of a font of its own; 60 beats a minute, so that beats are seconds.
class Mixdown_Test : public testing::Test {
protected:
    void Open(Session& opened, const fs::path& font) {
        session = &opened;
        ASSERT_TRUE(opened.fonts->Load_SF2_List({font.string()}));
        opened.project.ProjectTempo = 60;
    }
    void Open_Clicks() {
        test::Write_Click_Font(doors.folder / "click.sf2", {{"Click", 0, 0, 20000, true}});
        Open(doors.Load(), doors.folder / "click.sf2");
    }
    void Note(double beat, double length, int row = 0, std::uint8_t note = 60) {
        session->channels->Store(row).AddNewEvent(beat, NoteData{note, 100, length});
    }
    Mixdown_Result Run(const std::string& name, Audio_Format format = {}) {
        format.kind = Kind_By_Ending(name)->kind;
        std::string error;
        EXPECT_TRUE(Fit(format, error)) << error;
        return Mixdown(session->Parts(), session->fonts->Sounding_Fonts())
            .Run(doors.folder / name, format, *doors.dialogs.Begin_Work(""));
    }
    std::size_t Files() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(doors.folder.Path()), fs::directory_iterator()));
    }

    Test_Session doors;
    Session* session = nullptr;
};

TEST_F(Mixdown_Test, Begins_With_The_Song_And_Ends_With_It) {
    Open_Clicks();
    Note(0.0, 0.5);
    Note(2.0, 1.0);
    const Mixdown_Result result = Run("song.wav", {Audio_Kind::Wav, 0, 32});
    ASSERT_EQ(result.outcome, Outcome::Done) << result.error;
    const test::Sound_File file = test::Read_Sound(doors.folder / "song.wav");
    EXPECT_EQ(file.rate, 44100);
    // A click is heard from its second frame on, and begins on the synthesizer's grid: at the last multiple
    // of 64 at or before 2 s x 44100.
    EXPECT_EQ(test::Onsets(file.stereo, 1e-6F), (std::vector<std::int64_t>{1, 88193}));
    EXPECT_NEAR(result.seconds, 3.0, 0.1);
    EXPECT_EQ(result.seconds, static_cast<double>(file.Frames()) / 44100);
    const float peak = *std::max_element(file.stereo.begin(), file.stereo.end());
    EXPECT_NEAR(result.peakDb, 20.0 * std::log10(static_cast<double>(peak)), 1e-6);
}

TEST_F(Mixdown_Test, Leaves_The_Session_As_It_Was) {
    Open_Clicks();
    Note(1.0, 1.0);
    session->channels->Set_Mute(session->channels->Channels[0].ChannelID, true);
    session->transport.PlayPosition = 3.0;
    session->output->Midi_SetMasterVolume(40);
    const auto posted = doors.sound.posted.size();
    const auto opened = doors.sound.opened.size();
    const auto nowNs = doors.counter.Now_Ns();
    const Mixdown_Result result = Run("silent.wav");
    EXPECT_EQ(result.outcome, Outcome::Done);
    EXPECT_NEAR(result.seconds, 1.0, 0.1) << "as a play, it ends with the last thing to begin";
    EXPECT_TRUE(std::isinf(result.peakDb) && std::isinf(result.loudness)) << "dither would be heard here";
    EXPECT_EQ(doors.sound.posted.size(), posted);
    EXPECT_EQ(doors.sound.opened.size(), opened);
    EXPECT_EQ(doors.counter.Now_Ns(), nowNs);
    EXPECT_EQ(session->transport.PlayPosition, 3.0);
    EXPECT_FALSE(session->transport.TransportStopped);
    EXPECT_TRUE(Is_On(session->channels->Channels[0].Mute));
    EXPECT_EQ(session->output->Midi_GetMasterVolume(), 40);
    EXPECT_FALSE(session->project.Modified);
}

TEST_F(Mixdown_Test, What_Ends_Without_A_File_Leaves_The_Old_One) {
    Open_Clicks();
    EXPECT_EQ(Run("none.wav").error, "There is nothing in the song to be heard");
    Note(0.0, 60.0);
    const fs::path old = doors.folder / "song.wav";
    doors.folder.Write("song.wav", "old");
    const auto filesBefore = Files();
    doors.dialogs.stopWorkAt = 0;
    EXPECT_EQ(Run("song.wav").outcome, Outcome::Cancelled);
    doors.dialogs.stopWorkAt = 101;
    EXPECT_NE(Run("nowhere/song.wav").error, "");

    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    for (const Audio_Kind kind : ALL_AUDIO_KINDS) {
        const std::string name = std::string("song") + Traits_Of(kind).ending;
        doors.folder.Write(name, "old");
        const auto filesNow = Files();
        rlimit small = before;
        small.rlim_cur = 10000;
        setrlimit(RLIMIT_FSIZE, &small);
        const Mixdown_Result result = Run(name);
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(result.outcome, Outcome::Failed) << name;
        EXPECT_EQ(result.error, "File too large") << name;
        EXPECT_EQ(fs::file_size(doors.folder / name), 3U) << name;
        EXPECT_EQ(Files(), filesNow) << name;
    }
    std::signal(SIGXFSZ, ignored);
    EXPECT_GE(Files(), filesBefore);
    EXPECT_EQ(Run("song.wav").outcome, Outcome::Done);
    EXPECT_GT(fs::file_size(old), 44100U * 4 * 60);
}

std::span<const float> From_First_Sound(std::span<const float> stereo) {
    const auto first =
        std::find_if(stereo.begin(), stereo.end(), [](float sample) { return sample != 0.0F; });
    return stereo.subspan(static_cast<std::size_t>(first - stereo.begin()) & ~std::size_t{1});
}

/// All that happens lies in the middle between two places of the synthesizer's grid, so that a run whose
/// beginning lies anywhere but at the very edge of a place sounds the same.
TEST_F(Mixdown_Test, Sounds_As_The_Song_Played_In_Real_Time) {
    constexpr int TRIES = 4;
    Monotonic_Counter counter;
    Waiting_Run_Loop loop;
    Live_Sound_Door sound(counter, {});
    Session live(
        {sound, doors.midi, doors.keys, counter, loop, doors.store, doors.dialogs, Cue_Drive::Threaded},
        doors.paths, doors.folder / "data");
    ASSERT_TRUE(live.Load());
    const auto fonts = DLSListClass::Well_Known_Fonts();
    const auto font = std::find_if(fonts.begin(), fonts.end(), [](const auto& path) { return exists(path); });
    ASSERT_NE(font, fonts.end());
    Open(live, *font);
    std::mt19937 random(20);
    double lastEnd = 0.0;
    for (const int slot : {0, 1, 2, 9, 17}) {
        const auto id = live.channels->New_ChannelID();
        const int row = live.channels->Add_Channel(id, false, slot, "");
        live.channels->Set_Patch(id, static_cast<std::int16_t>(slot == 9 ? 0 : slot * 5));
        live.channels->Set_Pan(id, static_cast<std::uint8_t>(30 + 10 * row));
        for (int note = 0; note < 12; ++note) {
            const double start = (64.0 * static_cast<double>(random() % 900) + 32.0) * FRAME_S;
            const double length = 64.0 * static_cast<double>(1 + random() % 400) * FRAME_S;
            Note(start, length, row, static_cast<std::uint8_t>(36 + random() % 40));
            lastEnd = std::max(lastEnd, start + length);
        }
    }
    ASSERT_EQ(Run("song.wav", {Audio_Kind::Wav, 0, 32}).outcome, Outcome::Done);
    const std::vector<float> rendered = test::Read_Sound(doors.folder / "song.wav").stereo;
    const auto wanted = From_First_Sound(rendered);
    std::size_t same = 0;
    std::size_t compared = 0;
    for (int attempt = 0; attempt < TRIES && (attempt == 0 || same < compared); ++attempt) {
        sound.Close();
        sound.Keep_Samples(44100 * 8);
        ASSERT_TRUE(live.Reopen_Output());
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ASSERT_TRUE(live.player->Transport_Play(0.0, false, 1.0F));
        const auto heard = From_First_Sound(sound.Kept_Samples());
        // Behind the song's end the transport ends all notes once more, and releases go on from there.
        const auto untilEnd = static_cast<std::size_t>(lastEnd / FRAME_S) * 2;
        compared = std::min(untilEnd - (rendered.size() - wanted.size()), heard.size());
        same = static_cast<std::size_t>(std::mismatch(wanted.begin(),
                                                      wanted.begin() + static_cast<std::ptrdiff_t>(compared),
                                                      heard.begin())
                                            .first -
                                        wanted.begin());
    }
    EXPECT_GT(compared, 44100U);
    EXPECT_EQ(same, compared) << "of " << wanted.size();
    live.Shutdown();
}

} // namespace
} // namespace tonvex
