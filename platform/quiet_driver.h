#pragma once

#include "platform/millisecond_counter.h"
#include "platform/sound_driver.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace tonvex {

/// A real-time thread without a device: asks for a block whenever the monotonic clock has come to the
/// block's first frame. What it is given goes nowhere. Never lost.
class Quiet_Driver final : public Sound_Driver {
public:
    /// A thread that comes more than this behind (the machine slept) leaves out what it missed.
    static constexpr std::int64_t LONGEST_CATCH_UP_NS = 500'000'000;

    explicit Quiet_Driver(int framesASecond = 44100) : sampleRate(framesASecond) {}
    ~Quiet_Driver() override;

    bool Open(const Sound_Request& request, Driver_Stream& stream, std::string& reason) override;
    bool Start(std::shared_ptr<Block_Source> source) override;
    void Close() override;
    bool Lost() const noexcept override { return false; }

private:
    void Run(Block_Source& source) noexcept;

    int sampleRate;
    Monotonic_Counter clock;
    std::vector<float> block;
    std::atomic<bool> stop{false};
    std::thread thread;
};

} // namespace tonvex
