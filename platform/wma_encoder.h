#pragma once

#include "base/unfinished_file.h"
#include "platform/audio_encoder.h"

#include <cstddef>
#include <cstdint>
#include <memory>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;

namespace tonvex {

/// Windows Media Audio 2, in an ASF file. A decoder that throws the first block away, as is usual, since it
/// lacks what lies before, finds a silent one there; what it gives begins with the first sample written.
class Wma_Encoder final : public Audio_Encoder {
public:
    Wma_Encoder();
    ~Wma_Encoder() override;
    Wma_Encoder(const Wma_Encoder&) = delete;
    Wma_Encoder& operator=(const Wma_Encoder&) = delete;

    bool Open(const std::filesystem::path& target, const Audio_Format& format, std::string& error);
    bool Write(std::span<const float> stereo) override;
    bool Keep(std::string& error) override;

private:
    struct Deleter {
        void operator()(AVCodecContext* codec) const noexcept;
        void operator()(AVFormatContext* container) const noexcept;
        void operator()(AVFrame* frame) const noexcept;
        void operator()(AVIOContext* access) const noexcept;
        void operator()(AVPacket* packet) const noexcept;
    };
    static int Write_Bytes(void* self, std::uint8_t* bytes, int count);
    static std::int64_t Seek(void* self, std::int64_t offset, int whence);

    bool Open_Codec(const Audio_Format& format, std::string& error);
    bool Open_Container(std::string& error);
    void Add(float left, float right);
    void Encode_Block();
    void Fill_Block();
    void Encode(const AVFrame* block);
    void Note(int result);
    std::string Problem() const;

    Unfinished_File file;
    std::unique_ptr<AVIOContext, Deleter> access; ///< outlives the container
    std::unique_ptr<AVFormatContext, Deleter> container;
    std::unique_ptr<AVCodecContext, Deleter> codec;
    std::unique_ptr<AVFrame, Deleter> frame;
    std::unique_ptr<AVPacket, Deleter> packet;
    int blockFrames = 0;
    int filled = 0; ///< frames of the block
    std::int64_t nextFrame = 0;
    int problem = 0; ///< the library's number of the first failure, 0 for none
    int systemError = 0;
};

} // namespace tonvex
