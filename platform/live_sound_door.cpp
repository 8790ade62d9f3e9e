#include "platform/live_sound_door.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>

namespace tonvex {

namespace {

constexpr auto WATCH_EVERY = std::chrono::milliseconds(20);
constexpr std::int64_t LONGEST_SILENCE_NS = 500'000'000;

} // namespace

bool Live_Sound_Door::Gate::Pull(float* stereo, int frames) noexcept {
    State expected = State::Free;
    if (!state.compare_exchange_strong(expected, State::Inside, std::memory_order_acquire)) {
        std::fill_n(stereo, static_cast<std::size_t>(frames) * 2, 0.0F);
        return false;
    }
    lastPullNs.store(counter.Now_Ns(), std::memory_order_relaxed);
    const bool more = inner.Pull(stereo, frames);
    state.store(State::Free, std::memory_order_release);
    return more;
}

bool Live_Sound_Door::Gate::Try_Shut() noexcept {
    State expected = State::Free;
    return state.compare_exchange_strong(expected, State::Shut, std::memory_order_acquire) ||
           expected == State::Shut;
}

void Live_Sound_Door::Gate::Open() noexcept {
    lastPullNs.store(counter.Now_Ns(), std::memory_order_relaxed);
    state.store(State::Free, std::memory_order_release);
}

Live_Sound_Door::Live_Sound_Door(const Millisecond_Counter& clock,
                                 std::vector<std::unique_ptr<Sound_Driver>> drivers)
    : Synth_Sound_Door(clock), devices(std::move(drivers)), gate(core, clock) {}

Live_Sound_Door::~Live_Sound_Door() {
    Live_Sound_Door::Close();
}

bool Live_Sound_Door::Open(const Sound_Request& request, std::string& error) {
    Close();
    std::string reason;
    for (const auto& candidate : devices) {
        if (!candidate->Open(request, stream, reason))
            continue;
        if (Start_On(*candidate, request, error))
            return true;
        candidate->Close();
    }
    error.clear();
    return quiet.Open(request, stream, reason) && Start_On(quiet, request, error);
}

bool Live_Sound_Door::Start_On(Sound_Driver& driver, const Sound_Request&, std::string& error) {
    if (!Prepare_Stream(stream.sampleRate, stream.blockFrames, stream.latencyMs, error))
        return false;
    gate.Open();
    Stream_Runs(true);
    if (!driver.Start(gate)) {
        error = "The sound thread could not be started";
        Stream_Runs(false);
        while (!gate.Try_Shut())
            std::this_thread::yield();
        return false;
    }
    device = &driver;
    if (!stream.quiet) {
        watchStop = false;
        watcher = std::thread([this] { Watch(); });
    }
    return true;
}

void Live_Sound_Door::Close() {
    Stop_Watching();
    Stream_Runs(false);
    if (device != nullptr)
        device->Close();
    if (standIn != nullptr)
        standIn->Close();
    standIn.reset();
    device = nullptr;
    // A driver that could not end its thread in time is kept out from here on.
    while (!gate.Try_Shut())
        std::this_thread::yield();
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
    return device->Lost() || counter.Now_Ns() - gate.Last_Pull_Ns() > LONGEST_SILENCE_NS;
}

void Live_Sound_Door::Watch() {
    std::unique_lock lock(watchMutex);
    while (!watchWake.wait_for(lock, WATCH_EVERY, [this] { return watchStop; })) {
        if (Device_Is_Gone() && gate.Try_Shut()) {
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
    if (driver->Open(same, unused, reason) && driver->Start(core))
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
