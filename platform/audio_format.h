#pragma once

#include <array>
#include <filesystem>
#include <span>
#include <string>

namespace tonvex {

/// The kinds of sound file that are written.
enum class Audio_Kind { Wav, Flac, Vorbis, Opus, Mp3, Wma };
inline constexpr std::array<Audio_Kind, 6> ALL_AUDIO_KINDS = {Audio_Kind::Wav,    Audio_Kind::Flac,
                                                              Audio_Kind::Vorbis, Audio_Kind::Opus,
                                                              Audio_Kind::Mp3,    Audio_Kind::Wma};

/// What the quality of a kind counts in.
enum class Quality_Unit {
    Bits,  ///< of a sample; 32 is floating point
    Scale, ///< of the encoder's own, 0 the smallest file, 10 the best sound
    Kbits  ///< thousands of bits a second
};

/// How a sound file is to be written.
struct Audio_Format {
    Audio_Kind kind = Audio_Kind::Wav;
    int rate = 0;    ///< frames a second; 0: the kind's usual one
    int quality = 0; ///< in the kind's unit; 0: the kind's usual one
};

/// What a kind offers.
struct Audio_Kind_Traits {
    Audio_Kind kind;
    const char* name;
    const char* ending; ///< with its dot, lower case
    std::span<const int> rates;
    bool ratesBetween; ///< and whatever lies between two of them
    Quality_Unit unit;
    std::span<const int> qualities;
    bool qualitiesBetween;
    int usualRate;
    int usualQuality;
};

const Audio_Kind_Traits& Traits_Of(Audio_Kind kind);
/// By the ending of the name, letter case aside. Nullptr for an ending that no kind has.
const Audio_Kind_Traits* Kind_By_Ending(const std::filesystem::path& path);
/// The usual values in place of zeros. Opus, which sounds at 48000 whatever it was made at, takes its next
/// rate above. False, with a text in error that tells what there is, for a rate or quality that the kind does
/// not offer.
bool Fit(Audio_Format& format, std::string& error);
/// "16 bits", "24 bits", "32 bits, floating point", "quality 5", "128 kbit/s".
std::string Quality_Text(Audio_Kind kind, int quality);

} // namespace tonvex
