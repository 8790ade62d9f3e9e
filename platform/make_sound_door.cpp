#include "platform/make_sound_door.h"

#include "platform/live_sound_door.h"
#include "platform/rtaudio_driver.h"

#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace tonvex {

namespace {

struct Api_Row {
    const char* word;
    Device_Api api;
};
constexpr Api_Row APIS[] = {
    {"jack", Device_Api::Jack}, {"pulse", Device_Api::Pulse}, {"alsa", Device_Api::Alsa}};

} // namespace

std::unique_ptr<Synth_Sound_Door> Make_Sound_Door(const Millisecond_Counter& clock,
                                                  Sound_Driver_Choice choice) {
    const char* const value = std::getenv("TONVEX_SOUND");
    const std::string_view wish = value == nullptr ? "" : value;
    std::vector<std::unique_ptr<Sound_Driver>> all;
    std::vector<std::unique_ptr<Sound_Driver>> wished;
    for (const Api_Row& row : APIS) {
        auto& list = wish == row.word ? wished : all;
        list.push_back(std::make_unique<RtAudio_Driver>(row.api));
    }
    if (choice == Sound_Driver_Choice::Quiet || wish == "quiet")
        all.clear();
    else if (!wished.empty())
        all = std::move(wished);
    return std::make_unique<Live_Sound_Door>(clock, std::move(all));
}

} // namespace tonvex
