#pragma once

#include "platform/sound_driver.h"

#include <memory>
#include <string>

namespace tonvex {

enum class Device_Api { Jack, Pulse, Alsa };

/// A device of one of the machine's sound systems: its default output, stereo.
/// The device's own rate and block are taken as they are. Opening and closing run on threads of their
/// own and are waited for a few seconds at most, since a server that hangs would hang its caller.
class RtAudio_Driver final : public Sound_Driver {
public:
    explicit RtAudio_Driver(Device_Api wanted) : api(wanted) {}
    ~RtAudio_Driver() override;

    bool Open(const Sound_Request& request, Driver_Stream& stream, std::string& reason) override;
    bool Start(std::shared_ptr<Block_Source> source) override;
    void Close() override;
    bool Lost() const noexcept override;

private:
    struct Opened;

    Device_Api api;
    std::shared_ptr<Opened> opened;
};

} // namespace tonvex
