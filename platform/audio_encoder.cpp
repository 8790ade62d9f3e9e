#include "platform/audio_encoder.h"

#include "platform/sndfile_encoder.h"
#include "platform/wma_encoder.h"

namespace tonvex {

namespace {

template <typename Encoder>
std::unique_ptr<Audio_Encoder> Opened(const std::filesystem::path& target, const Audio_Format& format,
                                      std::string& error) {
    auto encoder = std::make_unique<Encoder>();
    if (!encoder->Open(target, format, error))
        return nullptr;
    return encoder;
}

} // namespace

std::unique_ptr<Audio_Encoder> Open_Audio_Encoder(const std::filesystem::path& target,
                                                  const Audio_Format& format, std::string& error) {
    return format.kind == Audio_Kind::Wma ? Opened<Wma_Encoder>(target, format, error)
                                          : Opened<Sndfile_Encoder>(target, format, error);
}

} // namespace tonvex
