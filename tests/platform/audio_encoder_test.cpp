#include "platform/audio_encoder.h"

#include "base/file_io.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace tonvex {
namespace {

/// 440 Hz on the left, 1 kHz at half of it on the right.
std::vector<float> Two_Tones(int rate, double seconds) {
    std::vector<float> stereo;
    for (int i = 0; i < static_cast<int>(seconds * rate); ++i) {
        const double turn = 2.0 * std::numbers::pi * i / rate;
        stereo.push_back(static_cast<float>(0.5 * std::sin(turn * 440.0)));
        stereo.push_back(static_cast<float>(0.25 * std::sin(turn * 1000.0)));
    }
    return stereo;
}

std::string Encode(const std::filesystem::path& path, Audio_Format format, std::span<const float> stereo) {
    std::string error;
    if (!Fit(format, error))
        return error;
    const auto encoder = Open_Audio_Encoder(path, format, error);
    constexpr std::size_t PIECE = 2 * 700;
    for (std::size_t i = 0; encoder != nullptr && i < stereo.size(); i += PIECE)
        encoder->Write(stereo.subspan(i, std::min(PIECE, stereo.size() - i)));
    if (encoder != nullptr)
        encoder->Keep(error);
    return error;
}

TEST(Audio_Encoder, Every_Kind_Comes_Back_As_It_Went) {
    struct Row {
        const char* name;
        int rate, quality;
        int rateBack;
        std::size_t framesMore; ///< at most
        double error;           ///< RMS, against a left side of RMS 0.354; rounding to bits: step / sqrt(12)
        double kbits;           ///< wanted size, 0: not known beforehand
        bool sameBytes = true;
        double seconds = 3.0;
    };
    constexpr double STEP_16 = 1.0 / 32768;
    const Row rows[] = {
        {"a.wav", 0, 0, 44100, 0, 0.6 * STEP_16, 1411.2}, // dithered: the rounding's and the noise's power
        {"b.wav", 96000, 24, 96000, 0, STEP_16 / 200, 4608},
        {"c.wav", 8000, 32, 8000, 0, 0.0, 512},
        {"a.flac", 48000, 16, 48000, 0, 0.6 * STEP_16, 0},
        {"b.flac", 88200, 24, 88200, 0, STEP_16 / 200, 0},
        {"a.ogg", 0, 0, 44100, 0, 0.01, 0, false},
        {"b.ogg", 48000, 10, 48000, 0, 0.005, 0, false},
        {"a.opus", 0, 0, 48000, 0, 0.02, 128, false},
        {"b.opus", 44100, 64, 48000, 0, 0.03, 64, false},
        {"a.mp3", 0, 0, 44100, 2304, 0.01, 192},
        {"b.mp3", 48000, 320, 48000, 2304, 0.01, 320},
        {"a.wma", 0, 0, 44100, 4096, 0.02, 128, true, 20.0},
        {"b.wma", 48000, 192, 48000, 4096, 0.02, 192, true, 20.0},
        {"c.wma", 22050, 32, 22050, 4096, 0.02, 32, true, 20.0},
    };
    Temp_Folder folder;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const Audio_Format format{Kind_By_Ending(row.name)->kind, row.rate, row.quality};
        const std::vector<float> tones = Two_Tones(row.rateBack, row.seconds);
        ASSERT_EQ(Encode(folder / row.name, format, tones), "");
        const test::Sound_File back = test::Read_Sound(folder / row.name);
        EXPECT_EQ(back.rate, row.rateBack);
        EXPECT_EQ(back.channels, 2);
        ASSERT_GE(back.Frames(), tones.size() / 2);
        EXPECT_LE(back.Frames(), tones.size() / 2 + row.framesMore);
        double sum = 0.0;
        for (std::size_t i = 0; i < tones.size(); ++i)
            sum += std::pow(static_cast<double>(back.stereo[i] - tones[i]), 2);
        EXPECT_LE(std::sqrt(sum / static_cast<double>(tones.size())), row.error);
        const auto bytes = static_cast<double>(std::filesystem::file_size(folder / row.name));
        if (row.kbits > 0) {
            EXPECT_NEAR(bytes * 8 / row.seconds / 1000, row.kbits, row.kbits * 0.15 + 3);
        }
        if (row.sameBytes) {
            const std::string again = std::string("again.") + row.name;
            ASSERT_EQ(Encode(folder / again, format, tones), "");
            EXPECT_EQ(Read_File(folder / row.name), Read_File(folder / again));
        }
    }
}

TEST(Audio_Encoder, Loud_Sound_Is_Cut_And_Silence_Stays_Silent) {
    Temp_Folder folder;
    const std::vector<float> loud = {2.0F, -2.0F, 0.0F, 0.0F, 1.0F, -1.0F};
    const float most = 32767.0F / 32768.0F;
    ASSERT_EQ(Encode(folder / "a.wav", {Audio_Kind::Wav}, loud), "");
    const auto cut = test::Read_Sound(folder / "a.wav").stereo;
    ASSERT_EQ(cut.size(), loud.size());
    EXPECT_EQ(std::vector(cut.begin(), cut.begin() + 4), (std::vector{most, -1.0F, 0.0F, 0.0F}));
    ASSERT_EQ(Encode(folder / "b.wav", {Audio_Kind::Wav, 0, 32}, loud), "");
    EXPECT_EQ(test::Read_Sound(folder / "b.wav").stereo, loud);
}

TEST(Audio_Encoder, What_A_Kind_Does_Not_Offer_Is_Told) {
    const std::pair<Audio_Format, const char*> rows[] = {
        {{Audio_Kind::Wav, 7999, 0}, "WAV is written at 8000 to 96000 frames a second, not at 7999"},
        {{Audio_Kind::Wav, 0, 20}, "WAV is written with a quality of 16, 24 or 32 bits, not 20"},
        {{Audio_Kind::Mp3, 96000, 0},
         "MP3 is written at 32000, 44100 or 48000 frames a second, not at 96000"},
        {{Audio_Kind::Wma, 0, 1000},
         "Windows Media Audio is written with a quality of 32 to 320 kbit/s, not 1000"},
        {{Audio_Kind::Vorbis, 0, -1}, "Ogg Vorbis is written with a quality of 1 to 10, not -1"},
    };
    for (auto [format, text] : rows) {
        std::string error;
        EXPECT_FALSE(Fit(format, error));
        EXPECT_EQ(error, text);
    }
    EXPECT_EQ(Kind_By_Ending("Song.WMA")->kind, Audio_Kind::Wma);
    EXPECT_EQ(Kind_By_Ending("song.aac"), nullptr);
}

} // namespace
} // namespace tonvex
