#include "platform/rtaudio_driver.h"

#include "platform/bounded_run.h"

#include <rtaudio/RtAudio.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <utility>

namespace tonvex {

namespace {

constexpr auto OPEN_LIMIT = std::chrono::milliseconds(5000);
constexpr auto CLOSE_LIMIT = std::chrono::milliseconds(2000);
constexpr unsigned DEVICE_BUFFERS = 2;
constexpr int FALLBACK_RATE = 44100;
/// A block that could not be written may be a hiccup; so many in a row mean that the device has gone.
constexpr int ERRORS_IN_A_ROW = 3;

RtAudio::Api Library_Api(Device_Api api) noexcept {
    switch (api) {
    case Device_Api::Jack:
        return RtAudio::UNIX_JACK;
    case Device_Api::Pulse:
        return RtAudio::LINUX_PULSE;
    case Device_Api::Alsa:
        return RtAudio::LINUX_ALSA;
    }
    return RtAudio::UNSPECIFIED;
}

const char* Api_Name(Device_Api api) noexcept {
    switch (api) {
    case Device_Api::Jack:
        return "JACK";
    case Device_Api::Pulse:
        return "PulseAudio";
    case Device_Api::Alsa:
        return "ALSA";
    }
    return "";
}

/// What the callbacks of one stream share with the rest.
struct Callback_State {
    std::shared_ptr<Block_Source> source;
    std::atomic<bool> lost{false};
    int errors = 0;     ///< in all; this and the next two belong to the callback's thread
    int errorsSeen = 0; ///< of them at the last callback
    int inARow = 0;     ///< callbacks with an error between
};

/// The library tells an error without saying which stream it belongs to, but on the thread that calls
/// back for that stream.
thread_local Callback_State* streamOfThisThread = nullptr;

void On_Error(RtAudioError::Type type, const std::string& text) {
    Callback_State* const state = streamOfThisThread;
    if (state == nullptr)
        return;
    if (type != RtAudioError::WARNING && type != RtAudioError::DEBUG_WARNING)
        state->lost.store(true, std::memory_order_relaxed);
    else if (text.find("underrun") == std::string::npos)
        ++state->errors;
}

int On_Block(void* output, void*, unsigned frames, double, RtAudioStreamStatus, void* user) {
    auto& state = *static_cast<Callback_State*>(user);
    streamOfThisThread = &state;
    state.inARow = state.errors == state.errorsSeen ? 0 : state.inARow + 1;
    state.errorsSeen = state.errors;
    auto* const stereo = static_cast<float*>(output);
    if (state.inARow >= ERRORS_IN_A_ROW)
        state.lost.store(true, std::memory_order_relaxed);
    if (state.lost.load(std::memory_order_relaxed)) {
        std::fill_n(stereo, static_cast<std::size_t>(frames) * 2, 0.0F);
        return 2; // stop at once and drain nothing: there is nobody to drain to
    }
    return state.source->Pull(stereo, static_cast<int>(frames)) ? 0 : 2;
}

} // namespace

/// Lives until the library is done with it, which may be later than the driver.
struct RtAudio_Driver::Opened {
    Callback_State callbacks;
    RtAudio audio;
    Driver_Stream stream;
    std::string failure;
    bool ok = false;

    explicit Opened(Device_Api wantedApi) : audio(Library_Api(wantedApi)) { audio.showWarnings(false); }
    void Open_Default(Device_Api wantedApi, double updateMs);
    void Start() noexcept;
    void Close() noexcept;
};

void RtAudio_Driver::Opened::Open_Default(Device_Api wantedApi, double updateMs) {
    if (audio.getCurrentApi() != Library_Api(wantedApi) || audio.getDeviceCount() == 0) {
        failure = "no device";
        return;
    }
    RtAudio::StreamParameters output;
    output.deviceId = audio.getDefaultOutputDevice();
    output.nChannels = 2;
    const RtAudio::DeviceInfo info = audio.getDeviceInfo(output.deviceId);
    const unsigned rate = info.preferredSampleRate > 0 ? info.preferredSampleRate : FALLBACK_RATE;
    unsigned frames = static_cast<unsigned>(Block_Frames_For(updateMs, static_cast<int>(rate)));
    RtAudio::StreamOptions options;
    options.flags = RTAUDIO_SCHEDULE_REALTIME;
    options.numberOfBuffers = DEVICE_BUFFERS;
    options.streamName = "Tonvex";
    audio.openStream(&output, nullptr, RTAUDIO_FLOAT32, rate, &frames, &On_Block, &callbacks, &options,
                     &On_Error);
    if (!audio.isStreamOpen()) {
        failure = "the device could not be opened";
        return;
    }
    stream.driver = Api_Name(wantedApi);
    stream.deviceName = info.name;
    stream.sampleRate = static_cast<int>(audio.getStreamSampleRate());
    stream.blockFrames = static_cast<int>(frames);
    // All buffers but the one being filled stand before a block.
    const unsigned waiting = (std::max(options.numberOfBuffers, 2U) - 1) * frames;
    stream.latencyMs = waiting * 1000.0 / stream.sampleRate;
    ok = stream.sampleRate > 0 && stream.blockFrames > 0;
}

void RtAudio_Driver::Opened::Start() noexcept {
    ok = false;
    try {
        audio.startStream();
        ok = audio.isStreamRunning();
    } catch (const std::exception&) {
        ok = false;
    }
}

void RtAudio_Driver::Opened::Close() noexcept {
    try {
        if (audio.isStreamRunning())
            audio.abortStream();
        if (audio.isStreamOpen())
            audio.closeStream();
    } catch (const std::exception&) {
        return; // the stream has gone with its server; there is nothing left to close
    }
}

RtAudio_Driver::~RtAudio_Driver() {
    RtAudio_Driver::Close();
}

bool RtAudio_Driver::Open(const Sound_Request& request, Driver_Stream& stream, std::string& reason) {
    Close();
    struct Attempt {
        std::shared_ptr<Opened> made;
        std::string failure;
    };
    auto attempt = std::make_shared<Attempt>();
    const bool inTime = Run_Bounded(
        [attempt, wantedApi = api, updateMs = request.updateMs] {
            try {
                attempt->made = std::make_shared<Opened>(wantedApi);
                attempt->made->Open_Default(wantedApi, updateMs);
                attempt->failure = attempt->made->failure;
            } catch (const std::exception& problem) {
                attempt->failure = problem.what();
                attempt->made.reset();
            }
        },
        OPEN_LIMIT);
    if (!inTime) {
        reason = std::string(Api_Name(api)) + " does not answer";
        return false;
    }
    if (attempt->made == nullptr || !attempt->made->ok) {
        reason = std::string(Api_Name(api)) + ": " + attempt->failure;
        return false;
    }
    opened = attempt->made;
    stream = opened->stream;
    return true;
}

bool RtAudio_Driver::Start(std::shared_ptr<Block_Source> source) {
    if (opened == nullptr)
        return false;
    opened->callbacks.source = std::move(source);
    return Run_Bounded([held = opened] { held->Start(); }, OPEN_LIMIT) && opened->ok;
}

void RtAudio_Driver::Close() {
    if (opened == nullptr)
        return;
    Run_Bounded(
        [held = std::move(opened)]() mutable {
            held->Close();
            held.reset();
        },
        CLOSE_LIMIT);
    opened.reset();
}

bool RtAudio_Driver::Lost() const noexcept {
    return opened != nullptr && opened->callbacks.lost.load(std::memory_order_relaxed);
}

} // namespace tonvex
