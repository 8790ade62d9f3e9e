#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tonvex {

/// Tells whoever listens. Interface thread. MsgID is the number of the change message that was carried out.
class EventRaiserClass {
public:
    using Listener = std::function<void(int msgId, std::int32_t param, const std::string& text)>;
    /// Handle for Unsubscribe.
    int Subscribe(Listener listener);
    void Unsubscribe(int handle);
    /// Listeners may subscribe and unsubscribe while they are told.
    void PassMsg(int msgId, std::int32_t param, const std::string& text = {});

private:
    struct Entry {
        int handle;
        Listener listener;
    };
    std::vector<Entry> entries;
    int nextHandle = 1;
    int depth = 0;
};

} // namespace tonvex
