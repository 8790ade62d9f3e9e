#pragma once

#include "platform/quiet_driver.h"
#include "platform/synth_sound_door.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tonvex {

/// The synthesizer in real time: on the first device that opens, else on the quiet driver.
///
/// A device that vanishes while it sounds, or asks for nothing during half a second, is given up: the
/// quiet driver takes over within a tenth of a second, so that messages go on being taken and time goes
/// on, and Status tells deviceLost. Open again tries the devices anew.
/// Calls as of Sound_Door. counter must be the monotonic clock, which the quiet driver sleeps by.
class Live_Sound_Door final : public Synth_Sound_Door {
public:
    /// Drivers are tried in their order; with none the quiet one is the device.
    Live_Sound_Door(const Millisecond_Counter& counter, std::vector<std::unique_ptr<Sound_Driver>> devices);
    ~Live_Sound_Door() override;

    bool Open(const Sound_Request& request, std::string& error) override;
    void Close() override;
    Sound_Status Status() override;
    int Minimum_Buffer_Ms() const override;

private:
    /// Lets through the callbacks of a device until it is shut, and then silence. A device that is being
    /// given up may still call: the core must have one audio thread at a time.
    class Gate final : public Block_Source {
    public:
        Gate(Block_Source& source, const Millisecond_Counter& clock) : inner(source), counter(clock) {}
        bool Pull(float* stereo, int frames) noexcept override;
        /// False while a callback is inside; then try again.
        bool Try_Shut() noexcept;
        /// No callback may be under way.
        void Open() noexcept;
        std::int64_t Last_Pull_Ns() const noexcept { return lastPullNs.load(std::memory_order_relaxed); }

    private:
        enum class State { Free, Inside, Shut };
        Block_Source& inner;
        const Millisecond_Counter& counter;
        std::atomic<State> state{State::Shut};
        std::atomic<std::int64_t> lastPullNs{0};
    };

    bool Start_On(Sound_Driver& driver, const Sound_Request& request, std::string& error);
    void Watch();
    void Stop_Watching();
    bool Device_Is_Gone() const noexcept;
    void Take_Over();

    std::vector<std::unique_ptr<Sound_Driver>> devices;
    Quiet_Driver quiet;
    Gate gate;
    Sound_Driver* device = nullptr; ///< the driver in use, nullptr when closed
    Driver_Stream stream;
    std::atomic<bool> lost{false};

    std::unique_ptr<Quiet_Driver> standIn; ///< after a loss; the watching thread makes it
    std::mutex watchMutex;
    std::condition_variable watchWake;
    bool watchStop = false;
    std::thread watcher;
};

} // namespace tonvex
