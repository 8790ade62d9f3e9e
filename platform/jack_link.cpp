#include "platform/jack_link.h"

#include <jack/jack.h>

namespace tonvex {

namespace {
void Say_Nothing(const char*) {}
} // namespace

std::shared_ptr<Jack_Link> Jack_Link::Connect() {
    jack_set_error_function(Say_Nothing);
    jack_set_info_function(Say_Nothing);
    jack_status_t status{};
    jack_client_t* client = jack_client_open("Tonvex watch", JackNoStartServer, &status);
    if (client == nullptr)
        return nullptr;
    std::shared_ptr<Jack_Link> link(new Jack_Link);
    link->client = client;
    jack_on_shutdown(client, &Jack_Link::On_Shutdown, link.get());
    return link;
}

Jack_Link::~Jack_Link() {
    if (client != nullptr && Alive())
        jack_client_close(client);
}

void Jack_Link::On_Shutdown(void* self) {
    static_cast<Jack_Link*>(self)->alive.store(false, std::memory_order_release);
}

std::uint32_t Jack_Link::Block_Start() const noexcept {
    return jack_last_frame_time(client);
}

std::vector<std::string> Jack_Link::Midi_Port_Names(bool inputs) const {
    std::vector<std::string> names;
    // A dead server's ports are still in the shared memory.
    if (!Alive())
        return names;
    const unsigned long direction = inputs ? JackPortIsOutput : JackPortIsInput;
    const char** ports = jack_get_ports(client, nullptr, JACK_DEFAULT_MIDI_TYPE, direction);
    for (std::size_t i = 0; ports != nullptr && ports[i] != nullptr; ++i)
        names.emplace_back(ports[i]);
    if (ports != nullptr)
        jack_free(ports);
    return names;
}

} // namespace tonvex
