#include "platform/sndfile_encoder.h"

#include "base/rounding.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace tonvex {

namespace {

constexpr int CHANNELS = 2;
/// Sizes in a WAV file have 32 bits; the header needs some of them.
constexpr std::int64_t LONGEST_WAV_BYTES = 0xffffffffLL - 4096;

int Library_Format(const Audio_Format& format) {
    const int bits = format.quality == 24 ? SF_FORMAT_PCM_24 : SF_FORMAT_PCM_16;
    switch (format.kind) {
    case Audio_Kind::Wav:
        return SF_FORMAT_WAV | (format.quality == 32 ? SF_FORMAT_FLOAT : bits);
    case Audio_Kind::Flac:
        return SF_FORMAT_FLAC | bits;
    case Audio_Kind::Vorbis:
        return SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    case Audio_Kind::Opus:
        return SF_FORMAT_OGG | SF_FORMAT_OPUS;
    case Audio_Kind::Mp3:
        return SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
    case Audio_Kind::Wma:
        break;
    }
    return 0;
}

bool Is_Float(const Audio_Format& format) {
    return format.kind == Audio_Kind::Wav && format.quality == 32;
}

bool Is_Dithered(const Audio_Format& format) {
    return Traits_Of(format.kind).unit == Quality_Unit::Bits && format.quality == 16;
}

} // namespace

Sndfile_Encoder::~Sndfile_Encoder() {
    Close();
}

int Sndfile_Encoder::Handle_Of(void* self) {
    return static_cast<Sndfile_Encoder*>(self)->file.Handle();
}

/// All through our own calls, so that no write that fails goes unnoticed, whatever the format's writer makes
/// of it.
SF_VIRTUAL_IO Sndfile_Encoder::File_Access() {
    SF_VIRTUAL_IO access{};
    access.get_filelen = [](void* self) -> sf_count_t {
        const off_t here = ::lseek(Handle_Of(self), 0, SEEK_CUR);
        const off_t end = ::lseek(Handle_Of(self), 0, SEEK_END);
        ::lseek(Handle_Of(self), here, SEEK_SET);
        return end;
    };
    access.seek = [](sf_count_t offset, int whence, void* self) -> sf_count_t {
        return ::lseek(Handle_Of(self), offset, whence);
    };
    access.tell = [](void* self) -> sf_count_t { return ::lseek(Handle_Of(self), 0, SEEK_CUR); };
    access.read = [](void* data, sf_count_t count, void* self) -> sf_count_t {
        return std::max<sf_count_t>(::read(Handle_Of(self), data, static_cast<std::size_t>(count)), 0);
    };
    access.write = [](const void* data, sf_count_t count, void* self) -> sf_count_t {
        sf_count_t done = 0;
        while (done < count) {
            const ssize_t written = ::write(Handle_Of(self), static_cast<const char*>(data) + done,
                                            static_cast<std::size_t>(count - done));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0) {
                auto& owner = *static_cast<Sndfile_Encoder*>(self);
                owner.failed = true;
                if (owner.systemError == 0)
                    owner.systemError = errno;
                break;
            }
            done += written;
        }
        return done;
    };
    return access;
}

bool Sndfile_Encoder::Open(const std::filesystem::path& target, const Audio_Format& wanted,
                           std::string& error) {
    format = wanted;
    if (!file.Begin(target, error))
        return false;
    SF_INFO info{};
    info.samplerate = format.rate;
    info.channels = CHANNELS;
    info.format = Library_Format(format);
    SF_VIRTUAL_IO access = File_Access();
    if (sf_format_check(&info) != SF_FALSE)
        sound = sf_open_virtual(&access, SFM_WRITE, &info, this);
    if (sound == nullptr) {
        error = systemError != 0 ? Problem()
                                 : std::string("this system's sound file library cannot write ") +
                                       Traits_Of(format.kind).name;
        file.Drop();
        return false;
    }
    Set_Quality();
    return true;
}

void Sndfile_Encoder::Set_Quality() {
    sf_command(sound, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    // It holds the time of the day.
    sf_command(sound, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    double level = 0.0;
    switch (format.kind) {
    case Audio_Kind::Vorbis:
        level = format.quality / 10.0;
        sf_command(sound, SFC_SET_VBR_ENCODING_QUALITY, &level, sizeof level);
        break;
    case Audio_Kind::Opus:
        // From 6 to 256 kbit/s a channel, 0 being the most.
        level = 1.0 - (format.quality / static_cast<double>(CHANNELS) - 6.0) / 250.0;
        sf_command(sound, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
        break;
    case Audio_Kind::Mp3: {
        int mode = SF_BITRATE_MODE_CONSTANT;
        sf_command(sound, SFC_SET_BITRATE_MODE, &mode, sizeof mode);
        // From 32 to 320 kbit/s, 0 being the most.
        level = (320.0 - format.quality) / 288.0;
        sf_command(sound, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
        break;
    }
    default:
        break;
    }
}

bool Sndfile_Encoder::Write(std::span<const float> stereo) {
    if (sound == nullptr || failed)
        return false;
    if (format.kind == Audio_Kind::Wav) {
        bytesGiven += static_cast<std::int64_t>(stereo.size()) * format.quality / 8;
        tooLong = bytesGiven > LONGEST_WAV_BYTES;
        failed = failed || tooLong;
        if (tooLong)
            return false;
    }
    const auto frames = static_cast<sf_count_t>(stereo.size() / CHANNELS);
    if (Is_Dithered(format)) {
        failed = !Write_Dithered(stereo) || failed;
    } else if (Is_Float(format)) {
        failed = sf_writef_float(sound, stereo.data(), frames) != frames || failed;
    } else {
        bounded.resize(stereo.size());
        std::transform(stereo.begin(), stereo.end(), bounded.begin(),
                       [](float sample) { return std::clamp(sample, -1.0F, 1.0F); });
        failed = sf_writef_float(sound, bounded.data(), frames) != frames || failed;
    }
    return !failed;
}

/// Triangular over -1 to 1: the difference of both halves of one number. The generator is George Marsaglia's
/// xorshift of 64 bits, shifts 13, 7, 17.
double Sndfile_Encoder::Noise() noexcept {
    noiseState ^= noiseState << 13U;
    noiseState ^= noiseState >> 7U;
    noiseState ^= noiseState << 17U;
    const auto high = static_cast<std::int64_t>(noiseState >> 32U);
    const auto low = static_cast<std::int64_t>(noiseState & 0xffffffffU);
    return static_cast<double>(high - low) * 0x1.0p-32;
}

bool Sndfile_Encoder::Write_Dithered(std::span<const float> stereo) {
    constexpr double STEPS = 32768.0;
    dithered.resize(stereo.size());
    for (std::size_t i = 0; i < stereo.size(); ++i) {
        const double noise = stereo[i] == 0.0F ? 0.0 : Noise();
        const double wanted = static_cast<double>(stereo[i]) * STEPS + noise;
        dithered[i] = static_cast<short>(RoundHalfEven(std::clamp(wanted, -STEPS, STEPS - 1.0)));
    }
    const auto frames = static_cast<sf_count_t>(stereo.size() / CHANNELS);
    return sf_writef_short(sound, dithered.data(), frames) == frames;
}

bool Sndfile_Encoder::Close() {
    SNDFILE* const closing = sound;
    sound = nullptr;
    return closing == nullptr || sf_close(closing) == 0;
}

std::string Sndfile_Encoder::Problem() const {
    if (tooLong)
        return "the song is longer than a WAV file can be (4 GB); FLAC can hold it";
    return systemError != 0 ? std::strerror(systemError) : "the sound could not be written";
}

bool Sndfile_Encoder::Keep(std::string& error) {
    const bool wasOpen = sound != nullptr;
    if (!Close() || failed || !wasOpen) {
        error = Problem();
        file.Drop();
        return false;
    }
    return file.Keep(error);
}

} // namespace tonvex
