#include "support/sound_files.h"

#include <sndfile.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace tonvex::test {

namespace {

void Decode(AVCodecContext* codec, const AVPacket* packet, AVFrame* frame, Sound_File& read) {
    avcodec_send_packet(codec, packet);
    while (avcodec_receive_frame(codec, frame) == 0) {
        for (int i = 0; i < frame->nb_samples; ++i)
            for (const int side : {0, 1})
                read.stereo.push_back(reinterpret_cast<const float*>(frame->data[side])[i]);
    }
}

Sound_File Read_Wma(const char* path) {
    Sound_File read;
    AVFormatContext* file = nullptr;
    if (avformat_open_input(&file, path, nullptr, nullptr) < 0)
        return read;
    const AVCodecParameters* const parameters = file->streams[0]->codecpar;
    AVCodecContext* codec = avcodec_alloc_context3(avcodec_find_decoder(parameters->codec_id));
    AVFrame* frame = av_frame_alloc();
    AVPacket* packet = av_packet_alloc();
    if (avcodec_parameters_to_context(codec, parameters) >= 0 &&
        avcodec_open2(codec, codec->codec, nullptr) >= 0) {
        read.rate = parameters->sample_rate;
        read.channels = parameters->ch_layout.nb_channels;
        while (av_read_frame(file, packet) >= 0) {
            Decode(codec, packet, frame, read);
            av_packet_unref(packet);
        }
        Decode(codec, nullptr, frame, read);
    }
    av_packet_free(&packet);
    av_frame_free(&frame);
    avcodec_free_context(&codec);
    avformat_close_input(&file);
    return read;
}

} // namespace

Sound_File Read_Sound(const std::filesystem::path& path) {
    if (path.extension() == ".wma")
        return Read_Wma(path.c_str());
    Sound_File read;
    SF_INFO info{};
    SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr)
        return read;
    read.rate = info.samplerate;
    read.channels = info.channels;
    std::vector<float> block(static_cast<std::size_t>(4096 * info.channels));
    for (sf_count_t got = 0; (got = sf_readf_float(file, block.data(), 4096)) > 0;)
        read.stereo.insert(read.stereo.end(), block.begin(), block.begin() + got * info.channels);
    sf_close(file);
    return read;
}

} // namespace tonvex::test
