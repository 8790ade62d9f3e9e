#include "platform/make_sound_door.h"

#include "platform/live_sound_door.h"

namespace tonvex {

std::unique_ptr<Sound_Door> Make_Sound_Door(const Millisecond_Counter& clock, Sound_Driver_Choice) {
    return std::make_unique<Live_Sound_Door>(clock, std::vector<std::unique_ptr<Sound_Driver>>{});
}

} // namespace tonvex
