#include "platform/audio_format.h"

#include "base/text_codec.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr std::array PCM_RATES = {8000, 11025, 16000, 22050, 32000, 44100, 48000, 88200, 96000};
constexpr std::array OPUS_RATES = {8000, 12000, 16000, 24000, 48000};
constexpr std::array MP3_RATES = {32000, 44100, 48000};
constexpr std::array WMA_RATES = {22050, 32000, 44100, 48000};
constexpr std::array WAV_BITS = {16, 24, 32};
constexpr std::array FLAC_BITS = {16, 24};
constexpr std::array VORBIS_SCALE = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
constexpr std::array OPUS_KBITS = {32, 48, 64, 96, 128, 160, 192, 256, 320, 450};
constexpr std::array MP3_KBITS = {64, 96, 128, 160, 192, 224, 256, 320};
constexpr std::array WMA_KBITS = {32, 48, 64, 96, 128, 160, 192, 256, 320};

constexpr std::array<Audio_Kind_Traits, ALL_AUDIO_KINDS.size()> KINDS = {{
    {Audio_Kind::Wav, "WAV", ".wav", PCM_RATES, true, Quality_Unit::Bits, WAV_BITS, false, 44100, 16},
    {Audio_Kind::Flac, "FLAC", ".flac", PCM_RATES, true, Quality_Unit::Bits, FLAC_BITS, false, 44100, 16},
    {Audio_Kind::Vorbis, "Ogg Vorbis", ".ogg", PCM_RATES, true, Quality_Unit::Scale, VORBIS_SCALE, true,
     44100, 6},
    {Audio_Kind::Opus, "Opus", ".opus", OPUS_RATES, false, Quality_Unit::Kbits, OPUS_KBITS, true, 48000, 128},
    {Audio_Kind::Mp3, "MP3", ".mp3", MP3_RATES, false, Quality_Unit::Kbits, MP3_KBITS, true, 44100, 192},
    {Audio_Kind::Wma, "Windows Media Audio", ".wma", WMA_RATES, false, Quality_Unit::Kbits, WMA_KBITS, true,
     44100, 128},
}};

bool Offers(std::span<const int> list, bool between, int value) {
    return between ? value >= list.front() && value <= list.back()
                   : std::find(list.begin(), list.end(), value) != list.end();
}

std::string Listed(std::span<const int> list, bool between) {
    if (between)
        return std::to_string(list.front()) + " to " + std::to_string(list.back());
    std::string text;
    for (std::size_t i = 0; i < list.size(); ++i)
        text += (i == 0 ? "" : i + 1 == list.size() ? " or " : ", ") + std::to_string(list[i]);
    return text;
}

const char* Unit_Text(Quality_Unit unit) {
    switch (unit) {
    case Quality_Unit::Bits:
        return " bits";
    case Quality_Unit::Kbits:
        return " kbit/s";
    case Quality_Unit::Scale:
        break;
    }
    return "";
}

} // namespace

const Audio_Kind_Traits& Traits_Of(Audio_Kind kind) {
    return KINDS[static_cast<std::size_t>(kind)];
}

const Audio_Kind_Traits* Kind_By_Ending(const std::filesystem::path& path) {
    const std::string ending = Lower_Ascii(path.extension().string());
    const auto found = std::find_if(KINDS.begin(), KINDS.end(),
                                    [&ending](const Audio_Kind_Traits& row) { return ending == row.ending; });
    return found == KINDS.end() ? nullptr : &*found;
}

bool Fit(Audio_Format& format, std::string& error) {
    const Audio_Kind_Traits& kind = Traits_Of(format.kind);
    if (format.rate == 0)
        format.rate = kind.usualRate;
    if (format.quality == 0)
        format.quality = kind.usualQuality;
    if (format.kind == Audio_Kind::Opus && format.rate > 0) {
        const auto next = std::lower_bound(kind.rates.begin(), kind.rates.end(), format.rate);
        format.rate = next == kind.rates.end() ? kind.rates.back() : *next;
    }
    if (!Offers(kind.rates, kind.ratesBetween, format.rate)) {
        error = std::string(kind.name) + " is written at " + Listed(kind.rates, kind.ratesBetween) +
                " frames a second, not at " + std::to_string(format.rate);
        return false;
    }
    if (!Offers(kind.qualities, kind.qualitiesBetween, format.quality)) {
        error = std::string(kind.name) + " is written with a quality of " +
                Listed(kind.qualities, kind.qualitiesBetween) + Unit_Text(kind.unit) + ", not " +
                std::to_string(format.quality);
        return false;
    }
    return true;
}

std::string Quality_Text(Audio_Kind kind, int quality) {
    const Quality_Unit unit = Traits_Of(kind).unit;
    if (unit == Quality_Unit::Scale)
        return "quality " + std::to_string(quality);
    if (unit == Quality_Unit::Bits && quality == 32)
        return "32 bits, floating point";
    return std::to_string(quality) + Unit_Text(unit);
}

} // namespace tonvex
