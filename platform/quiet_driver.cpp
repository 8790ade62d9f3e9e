#include "platform/quiet_driver.h"

#include <ctime>
#include <sys/prctl.h>
#include <system_error>
#include <utility>

namespace tonvex {

Quiet_Driver::~Quiet_Driver() {
    Close();
}

bool Quiet_Driver::Open(const Sound_Request& request, Driver_Stream& stream, std::string&) {
    Close();
    stream.driver = "Quiet";
    stream.deviceName = "No device";
    stream.sampleRate = sampleRate;
    stream.blockFrames = Block_Frames_For(request.updateMs, sampleRate);
    stream.latencyMs = 0.0;
    stream.quiet = true;
    block.assign(static_cast<std::size_t>(stream.blockFrames) * 2, 0.0F);
    return true;
}

bool Quiet_Driver::Start(std::shared_ptr<Block_Source> source) {
    stop.store(false, std::memory_order_relaxed);
    try {
        thread = std::thread([this, held = std::move(source)] { Run(*held); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void Quiet_Driver::Close() {
    stop.store(true, std::memory_order_relaxed);
    if (thread.joinable())
        thread.join();
}

void Quiet_Driver::Run(Block_Source& source) noexcept {
    // The kernel may otherwise put every wake-up off by 50 microseconds to save energy.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    const auto frames = static_cast<std::int64_t>(block.size() / 2);
    const double blockNs = static_cast<double>(frames) * 1e9 / sampleRate;
    std::int64_t startNs = clock.Now_Ns();
    for (std::int64_t count = 0; !stop.load(std::memory_order_relaxed);) {
        const std::int64_t dueNs = startNs + static_cast<std::int64_t>(static_cast<double>(count) * blockNs);
        const std::int64_t nowNs = clock.Now_Ns();
        if (nowNs - dueNs > LONGEST_CATCH_UP_NS) {
            startNs = nowNs;
            count = 0;
            continue;
        }
        if (nowNs < dueNs) {
            const timespec until{dueNs / 1'000'000'000, dueNs % 1'000'000'000};
            clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
            continue; // a signal may have ended the sleep early
        }
        if (!source.Pull(block.data(), static_cast<int>(frames)))
            return;
        ++count;
    }
}

} // namespace tonvex
