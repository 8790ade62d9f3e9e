#pragma once

#include "platform/sound_door.h"

namespace tonvex {

/// A synthesizer that takes every message and sounds none, for runs whose sound nobody keeps.
class Silent_Sound_Door final : public Sound_Door {
public:
    bool Open(const Sound_Request&, std::string&) override { return true; }
    void Close() override {}
    Sound_Status Status() override { return {}; }
    int Minimum_Buffer_Ms() const override { return 0; }
    bool Post(const Sound_Message&) noexcept override { return true; }
    bool Post_From_Player(const Sound_Message&) noexcept override { return true; }
    bool Take_Back_From_Player(std::int64_t) noexcept override { return true; }
    std::vector<std::int32_t> Set_Fonts(const std::vector<std::filesystem::path>& paths) override {
        std::vector<std::int32_t> handles;
        for (std::size_t i = 0; i < paths.size(); ++i)
            handles.push_back(static_cast<std::int32_t>(i) + 1);
        return handles;
    }
    void Set_Effects(int, const Effect_Settings&) noexcept override {}
    void Set_Master_Volume(int value) noexcept override { masterVolume = value; }
    int Master_Volume() const noexcept override { return masterVolume; }
    void Set_Amplification(float) noexcept override {}
    float Slot_Peak(int) noexcept override { return 0.0F; }

private:
    int masterVolume = 127;
};

} // namespace tonvex
