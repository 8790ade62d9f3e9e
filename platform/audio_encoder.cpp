#include "platform/audio_encoder.h"

#include "platform/sndfile_encoder.h"

namespace tonvex {

std::unique_ptr<Audio_Encoder> Open_Audio_Encoder(const std::filesystem::path& target,
                                                  const Audio_Format& format, std::string& error) {
    auto encoder = std::make_unique<Sndfile_Encoder>();
    if (!encoder->Open(target, format, error))
        return nullptr;
    return encoder;
}

} // namespace tonvex
