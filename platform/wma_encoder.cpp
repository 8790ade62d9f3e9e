#include "platform/wma_encoder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <unistd.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

namespace tonvex {

namespace {

constexpr int CHANNELS = 2;
constexpr int BUFFER_BYTES = 65536;
/// A packet is filled up with nothing when the next block does not fit; the larger it is, the less is lost.
constexpr int PACKET_BYTES = 12800;

} // namespace

void Wma_Encoder::Deleter::operator()(AVCodecContext* freed) const noexcept {
    avcodec_free_context(&freed);
}
void Wma_Encoder::Deleter::operator()(AVFormatContext* freed) const noexcept {
    avformat_free_context(freed);
}
void Wma_Encoder::Deleter::operator()(AVFrame* freed) const noexcept {
    av_frame_free(&freed);
}
void Wma_Encoder::Deleter::operator()(AVIOContext* freed) const noexcept {
    av_freep(&freed->buffer);
    avio_context_free(&freed);
}
void Wma_Encoder::Deleter::operator()(AVPacket* freed) const noexcept {
    av_packet_free(&freed);
}

Wma_Encoder::Wma_Encoder() = default;
Wma_Encoder::~Wma_Encoder() = default;

int Wma_Encoder::Write_Bytes(void* self, std::uint8_t* bytes, int count) {
    auto& encoder = *static_cast<Wma_Encoder*>(self);
    int done = 0;
    while (done < count) {
        const ssize_t written =
            ::write(encoder.file.Handle(), bytes + done, static_cast<std::size_t>(count - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            if (encoder.systemError == 0)
                encoder.systemError = errno;
            return AVERROR(errno);
        }
        done += static_cast<int>(written);
    }
    return count;
}

std::int64_t Wma_Encoder::Seek(void* self, std::int64_t offset, int whence) {
    const int handle = static_cast<Wma_Encoder*>(self)->file.Handle();
    if ((whence & AVSEEK_SIZE) == 0)
        return ::lseek(handle, offset, whence & ~AVSEEK_FORCE);
    const off_t here = ::lseek(handle, 0, SEEK_CUR);
    const off_t end = ::lseek(handle, 0, SEEK_END);
    ::lseek(handle, here, SEEK_SET);
    return end;
}

bool Wma_Encoder::Open(const std::filesystem::path& target, const Audio_Format& format, std::string& error) {
    if (!file.Begin(target, error))
        return false;
    if (Open_Codec(format, error) && Open_Container(error))
        return true;
    file.Drop();
    return false;
}

bool Wma_Encoder::Open_Codec(const Audio_Format& format, std::string& error) {
    const AVCodec* const encoder = avcodec_find_encoder(AV_CODEC_ID_WMAV2);
    if (encoder == nullptr) {
        error = "this system's media library cannot write Windows Media Audio";
        return false;
    }
    codec.reset(avcodec_alloc_context3(encoder));
    frame.reset(av_frame_alloc());
    packet.reset(av_packet_alloc());
    if (codec == nullptr || frame == nullptr || packet == nullptr) {
        error = std::strerror(ENOMEM);
        return false;
    }
    codec->sample_fmt = AV_SAMPLE_FMT_FLTP;
    codec->sample_rate = format.rate;
    codec->bit_rate = static_cast<std::int64_t>(format.quality) * 1000;
    codec->time_base = {1, format.rate};
    av_channel_layout_default(&codec->ch_layout, CHANNELS);
    // Without dates and version numbers, so that the same sound makes the same file.
    codec->flags |= AV_CODEC_FLAG_BITEXACT | AV_CODEC_FLAG_GLOBAL_HEADER;
    if (avcodec_open2(codec.get(), encoder, nullptr) < 0) {
        error = "Windows Media Audio cannot be written at " + std::to_string(format.rate) +
                " frames a second with " + Quality_Text(format.kind, format.quality);
        return false;
    }
    blockFrames = codec->frame_size;
    frame->nb_samples = blockFrames;
    frame->format = codec->sample_fmt;
    frame->sample_rate = format.rate;
    if (av_channel_layout_copy(&frame->ch_layout, &codec->ch_layout) < 0 ||
        av_frame_get_buffer(frame.get(), 0) < 0) {
        error = std::strerror(ENOMEM);
        return false;
    }
    return true;
}

bool Wma_Encoder::Open_Container(std::string& error) {
    AVFormatContext* made = nullptr;
    avformat_alloc_output_context2(&made, nullptr, "asf", nullptr);
    container.reset(made);
    auto* const buffer = static_cast<std::uint8_t*>(av_malloc(BUFFER_BYTES));
    if (buffer != nullptr)
        access.reset(avio_alloc_context(buffer, BUFFER_BYTES, 1, this, nullptr, Write_Bytes, Seek));
    AVStream* const stream = container == nullptr ? nullptr : avformat_new_stream(container.get(), nullptr);
    if (access == nullptr || stream == nullptr) {
        error = container == nullptr ? "this system's media library cannot write Windows Media files"
                                     : std::strerror(ENOMEM);
        return false;
    }
    container->pb = access.get();
    container->flags |= AVFMT_FLAG_BITEXACT;
    stream->time_base = codec->time_base;
    Note(avcodec_parameters_from_context(stream->codecpar, codec.get()));
    av_opt_set_int(container->priv_data, "packet_size", PACKET_BYTES, 0);
    if (problem == 0)
        Note(avformat_write_header(container.get(), nullptr));
    if (problem != 0) {
        error = Problem();
        return false;
    }
    Fill_Block(); // the silent one
    return true;
}

void Wma_Encoder::Add(float left, float right) {
    reinterpret_cast<float*>(frame->data[0])[filled] = left;
    reinterpret_cast<float*>(frame->data[1])[filled] = right;
    if (++filled == blockFrames)
        Encode_Block();
}

void Wma_Encoder::Encode_Block() {
    filled = 0;
    frame->pts = nextFrame;
    nextFrame += blockFrames;
    Encode(frame.get());
    if (problem == 0)
        Note(av_frame_make_writable(frame.get()));
}

/// With silence, up to its end.
void Wma_Encoder::Fill_Block() {
    do
        Add(0.0F, 0.0F);
    while (filled != 0);
}

/// nullptr: there are no more.
void Wma_Encoder::Encode(const AVFrame* block) {
    if (problem != 0)
        return;
    Note(avcodec_send_frame(codec.get(), block));
    while (problem == 0) {
        const int result = avcodec_receive_packet(codec.get(), packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        Note(result);
        av_packet_rescale_ts(packet.get(), codec->time_base, container->streams[0]->time_base);
        packet->stream_index = 0;
        if (problem == 0)
            Note(av_interleaved_write_frame(container.get(), packet.get()));
    }
}

void Wma_Encoder::Note(int result) {
    if (problem == 0 && result < 0)
        problem = result;
    if (problem == 0 && access != nullptr && access->error < 0)
        problem = access->error;
}

bool Wma_Encoder::Write(std::span<const float> stereo) {
    for (std::size_t i = 0; i + 1 < stereo.size() && problem == 0; i += CHANNELS)
        Add(std::clamp(stereo[i], -1.0F, 1.0F), std::clamp(stereo[i + 1], -1.0F, 1.0F));
    return problem == 0;
}

std::string Wma_Encoder::Problem() const {
    if (systemError != 0)
        return std::strerror(systemError);
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(problem, text.data(), text.size());
    return text.data();
}

bool Wma_Encoder::Keep(std::string& error) {
    if (problem == 0 && filled > 0)
        Fill_Block();
    if (problem == 0)
        Fill_Block(); // the last block's second half comes with the next one
    Encode(nullptr);
    if (problem == 0)
        Note(av_write_trailer(container.get()));
    avio_flush(access.get());
    Note(0);
    if (problem == 0)
        return file.Keep(error);
    error = Problem();
    file.Drop();
    return false;
}

} // namespace tonvex
