#include "platform/key_state.h"

#include "platform/millisecond_counter.h"

namespace tonvex {

bool Scripted_Key_State::Read(Key_State& state) {
    if (!edges.empty() && counter != nullptr && edges.front().atNs <= counter->Now_Ns()) {
        const Edge edge = edges.front();
        edges.pop_front();
        state.down[edge.scanCode] = edge.down ? 1 : 0;
        state.changedAtNs[edge.scanCode] = edge.atNs;
    }
    return true;
}

} // namespace tonvex
