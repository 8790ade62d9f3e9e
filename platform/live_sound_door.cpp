#include "platform/live_sound_door.h"

#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>

namespace tonvex {

namespace {

constexpr auto WATCH_EVERY = std::chrono::milliseconds(20);
constexpr std::int64_t LONGEST_SILENCE_NS = 500'000'000;

} // namespace

Live_Sound_Door::Live_Sound_Door(const Millisecond_Counter& clock,
                                 std::vector<std::unique_ptr<Sound_Driver>> drivers)
    : Synth_Sound_Door(clock), devices(std::move(drivers)) {}

Live_Sound_Door::~Live_Sound_Door() {
    Live_Sound_Door::Close();
}

bool Live_Sound_Door::Open(const Sound_Request& request, std::string& error) {
    Close();
    std::string reason;
    for (const auto& candidate : devices) {
        stream = {};
        if (!candidate->Open(request, stream, reason))
            continue;
        if (Start_On(*candidate, error))
            return true;
        candidate->Close();
    }
    error.clear();
    return quiet.Open(request, stream, reason) && Start_On(quiet, error);
}

bool Live_Sound_Door::Start_On(Sound_Driver& driver, std::string& error) {
    if (!Prepare_Stream(stream.sampleRate, stream.blockFrames, stream.latencyMs, error))
        return false;
    gate = std::make_shared<Block_Gate>(core, counter);
    Stream_Runs(true);
    if (!driver.Start(gate)) {
        error = "The sound thread could not be started";
        Stream_Runs(false);
        gate->Shut();
        return false;
    }
    device = &driver;
    if (!stream.quiet) {
        watchStop = false;
        try {
            watcher = std::thread([this] { Watch(); });
        } catch (const std::system_error&) {
            // Only a loss would go unnoticed.
        }
    }
    return true;
}

void Live_Sound_Door::Close() {
    Stop_Watching();
    Stream_Runs(false);
    // A device that cannot be ended in time is kept out from here on.
    if (gate != nullptr)
        gate->Shut();
    standIn.reset();
    if (device != nullptr)
        device->Close();
    device = nullptr;
    lost.store(false, std::memory_order_relaxed);
}

void Live_Sound_Door::Stop_Watching() {
    {
        const std::lock_guard lock(watchMutex);
        watchStop = true;
    }
    watchWake.notify_all();
    if (watcher.joinable())
        watcher.join();
}

bool Live_Sound_Door::Device_Is_Gone() const noexcept {
    return device->Lost() || counter.Now_Ns() - gate->Last_Pull_Ns() > LONGEST_SILENCE_NS;
}

void Live_Sound_Door::Watch() {
    std::unique_lock lock(watchMutex);
    while (!watchWake.wait_for(lock, WATCH_EVERY, [this] { return watchStop; })) {
        if (Device_Is_Gone() && gate->Try_Shut()) {
            Take_Over();
            return;
        }
    }
}

void Live_Sound_Door::Take_Over() {
    // The block stays, so that the latency does; the rate must, since the synthesizer was made for it.
    Sound_Request same;
    same.updateMs = static_cast<int>(std::ceil(stream.blockFrames * 1000.0 / stream.sampleRate));
    Driver_Stream unused;
    std::string reason;
    auto driver = std::make_unique<Quiet_Driver>(stream.sampleRate);
    core.Begin_Stream(stream.sampleRate, stream.blockFrames, 0.0);
    gate = std::make_shared<Block_Gate>(core, counter);
    if (driver->Open(same, unused, reason) && driver->Start(gate))
        standIn = std::move(driver);
    lost.store(true, std::memory_order_release);
}

Sound_Status Live_Sound_Door::Status() {
    Sound_Status status;
    core.Collect_Garbage();
    core.Fill(status);
    status.open = device != nullptr;
    if (!status.open)
        return status;
    status.deviceLost = lost.load(std::memory_order_acquire);
    status.quiet = stream.quiet;
    status.driver = stream.driver;
    status.deviceName = stream.deviceName;
    status.sampleRate = stream.sampleRate;
    status.blockFrames = stream.blockFrames;
    return status;
}

int Live_Sound_Door::Minimum_Buffer_Ms() const {
    return static_cast<int>(std::ceil(2.0 * stream.blockFrames * 1000.0 / stream.sampleRate));
}

} // namespace tonvex
