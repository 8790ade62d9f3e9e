#pragma once

#include "base/unfinished_file.h"
#include "platform/audio_encoder.h"

#include <cstdint>
#include <sndfile.h>
#include <vector>

namespace tonvex {

/// WAV, FLAC, Ogg Vorbis, Opus and MP3. Samples of 16 bits are dithered with triangular noise of two steps'
/// width, the same in each file, but digital silence, which stays silent.
class Sndfile_Encoder final : public Audio_Encoder {
public:
    Sndfile_Encoder() = default;
    ~Sndfile_Encoder() override;
    Sndfile_Encoder(const Sndfile_Encoder&) = delete;
    Sndfile_Encoder& operator=(const Sndfile_Encoder&) = delete;

    bool Open(const std::filesystem::path& target, const Audio_Format& format, std::string& error);
    bool Write(std::span<const float> stereo) override;
    bool Keep(std::string& error) override;

private:
    static int Handle_Of(void* self);
    static SF_VIRTUAL_IO File_Access();
    void Set_Quality();
    bool Write_Dithered(std::span<const float> stereo);
    double Noise() noexcept;
    bool Close();
    std::string Problem() const;

    Unfinished_File file;
    Audio_Format format;
    SNDFILE* sound = nullptr;
    int systemError = 0; ///< errno of the first write that failed; 0: none did
    bool failed = false;
    bool tooLong = false;
    std::int64_t bytesGiven = 0; ///< of samples, in a WAV file
    std::uint64_t noiseState = 0x9e3779b97f4a7c15U;
    std::vector<float> bounded;
    std::vector<short> dithered;
};

} // namespace tonvex
