#pragma once

#include "platform/block_gate.h"
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
/// quiet driver takes over, so that messages go on being taken and time goes
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
    bool Start_On(Sound_Driver& driver, std::string& error);
    void Watch();
    void Stop_Watching();
    bool Device_Is_Gone() const noexcept;
    void Take_Over();

    std::vector<std::unique_ptr<Sound_Driver>> devices;
    Quiet_Driver quiet;
    std::shared_ptr<Block_Gate> gate; ///< before the core, one for each driver started
    Sound_Driver* device = nullptr;   ///< the driver in use, nullptr when closed
    Driver_Stream stream;
    std::atomic<bool> lost{false};

    std::unique_ptr<Quiet_Driver> standIn; ///< after a loss; the watching thread makes it
    std::mutex watchMutex;
    std::condition_variable watchWake;
    bool watchStop = false;
    std::thread watcher;
};

} // namespace tonvex
