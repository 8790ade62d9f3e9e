#pragma once

#include "platform/sound_door.h"

#include <memory>
#include <string>

namespace tonvex {

/// Where a driver's blocks come from.
class Block_Source {
public:
    virtual ~Block_Source() = default;
    /// Fills frames interleaved stereo frames. Audio thread. False when there is nothing more to come: the
    /// block is silence and the driver stops asking.
    virtual bool Pull(float* stereo, int frames) noexcept = 0;
};

/// What an opened device does.
struct Driver_Stream {
    std::string driver;
    std::string deviceName;
    int sampleRate = 44100;
    int blockFrames = 512;
    double latencyMs = 0.0; ///< from the callback to the sound leaving the program
    bool quiet = false;
};

/// Largest power of two of frames that lasts no longer than periodMs; at least 64, at most 8192.
int Block_Frames_For(double periodMs, int sampleRate) noexcept;

/// A source of callbacks: a device, or a thread that only counts time. Interface thread, but for Lost.
class Sound_Driver {
public:
    virtual ~Sound_Driver() = default;
    /// Finds and opens the device; nothing is asked for yet. False when it cannot be had, with the reason.
    virtual bool Open(const Sound_Request& request, Driver_Stream& stream, std::string& reason) = 0;
    /// Begins to ask source for blocks. The driver holds it as long as its callbacks may come, which may be
    /// longer than the driver lives when a device hangs.
    virtual bool Start(std::shared_ptr<Block_Source> source) = 0;
    /// Stops asking. Waits for a device a bounded time only.
    virtual void Close() = 0;
    /// The device has gone. Any thread.
    virtual bool Lost() const noexcept = 0;
};

} // namespace tonvex
