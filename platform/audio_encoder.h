#pragma once

#include "platform/audio_format.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace tonvex {

/// A stereo sound file in the making. It comes to its name only when it is whole; one that was not kept
/// leaves nothing behind. One thread.
class Audio_Encoder {
public:
    virtual ~Audio_Encoder() = default;
    /// Interleaved, left first, 1.0 is full scale; what is louder is cut, but by floating point WAV. False
    /// once something could not be written; Keep tells what.
    virtual bool Write(std::span<const float> stereo) = 0;
    /// Closes the file and puts it under its name. False with a text in error.
    virtual bool Keep(std::string& error) = 0;
};

/// format as Fit leaves it. Nullptr, with a text in error, when nothing can be written there or the encoder
/// is not at hand. The same samples give the same bytes each time.
std::unique_ptr<Audio_Encoder> Open_Audio_Encoder(const std::filesystem::path& target,
                                                  const Audio_Format& format, std::string& error);

} // namespace tonvex
