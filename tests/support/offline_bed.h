#pragma once

#include "platform/offline_sound_door.h"
#include "support/click_font.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonvex {

/// A message as a sound door takes it: patch, note or value in a, bank or velocity in b.
inline Sound_Message Message(Sound_Op op, int slot, int a, int b = 127, std::int64_t dueNs = 0,
                             std::int32_t font = 0) {
    Sound_Message message;
    message.op = op;
    message.slot = static_cast<std::uint8_t>(slot);
    message.a = static_cast<std::uint8_t>(a);
    message.b = static_cast<std::uint8_t>(b);
    message.dueNs = dueNs;
    message.font = font;
    return message;
}

inline Sound_Message Note(std::int64_t dueNs, int slot = 0) {
    return Message(Sound_Op::NoteOn, slot, 60, 127, dueNs);
}

/// A door that renders on a clock that stands until it is moved, and what it has rendered.
struct Offline_Bed : testing::Test {
    explicit Offline_Bed(int blockFrames = 256) : door(clock, blockFrames) {}
    void Open() {
        std::string error;
        ASSERT_TRUE(door.Open({}, error)) << error;
        samples.clear();
    }
    void Run_Ms(int ms) {
        for (int i = 0; i < ms; ++i) {
            clock.Advance_Ms(1);
            door.Render_Until(clock.Now_Ns(), keep);
        }
    }

    Temp_Folder folder;
    Simulated_Counter clock;
    Offline_Sound_Door door;
    std::vector<float> samples; ///< stereo, since Open
    const Offline_Sound_Door::Sample_Sink keep = [this](std::span<const float> stereo) {
        samples.insert(samples.end(), stereo.begin(), stereo.end());
    };
};

} // namespace tonvex
