#include "app/event_raiser_class.h"

#include <algorithm>
#include <utility>

namespace tonvex {

int EventRaiserClass::Subscribe(Listener listener) {
    entries.push_back({nextHandle, std::move(listener)});
    return nextHandle++;
}

void EventRaiserClass::Unsubscribe(int handle) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [handle](const Entry& entry) { return entry.handle == handle; });
    if (handle <= 0 || found == entries.end())
        return;
    if (depth == 0)
        entries.erase(found);
    else
        found->handle = 0;
}

void EventRaiserClass::PassMsg(int msgId, std::int32_t param, const std::string& text) {
    ++depth;
    const std::size_t listenersNow = entries.size();
    for (std::size_t i = 0; i < listenersNow; ++i) {
        if (entries[i].handle == 0)
            continue;
        // A copy: the listener may subscribe another one and so move the entries.
        const Listener listener = entries[i].listener;
        listener(msgId, param, text);
    }
    --depth;
    if (depth == 0)
        std::erase_if(entries, [](const Entry& entry) { return entry.handle == 0; });
}

} // namespace tonvex
