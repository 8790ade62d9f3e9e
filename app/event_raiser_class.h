#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tonvex {

/// Tells whoever listens. Interface thread. MsgID is the number of the change message that was carried out;
/// its negative tells that the message is about to be carried out (deletions only, while what goes is
/// still there to be read). Param is the ChannelID, or the first parameter of a message without one.
class EventRaiserClass {
public:
    using Listener = std::function<void(int msgId, std::int32_t param, const std::string& text)>;
    /// Handle for Unsubscribe, above 0.
    int Subscribe(Listener listener);
    void Unsubscribe(int handle);
    /// Listeners may subscribe and unsubscribe while they are told; one that comes in the middle hears the
    /// next notice first.
    void PassMsg(int msgId, std::int32_t param, const std::string& text = {});

private:
    struct Entry {
        int handle; ///< 0: unsubscribed, to be cleared away
        Listener listener;
    };
    std::vector<Entry> entries;
    int nextHandle = 1;
    int depth = 0;
};

} // namespace tonvex
