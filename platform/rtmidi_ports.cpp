#include "platform/rtmidi_ports.h"

#include "platform/jack_link.h"
#include "platform/midi_port_table.h"
#include "platform/midi_sender.h"

#include <RtMidi.h>
#include <boost/lockfree/spsc_queue.hpp>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace tonvex {

namespace {

constexpr const char* CLIENT_NAME = "Tonvex";
constexpr const char* VIRTUAL_INPUT = "Tonvex virtual input";
constexpr const char* VIRTUAL_OUTPUT = "Tonvex virtual output";
constexpr std::size_t INPUT_QUEUE = 8192;
/// Asking for a sound server that is not there takes half a millisecond: seldom in passing, sooner when
/// somebody wants to see the ports.
constexpr std::int64_t SEEK_SERVER_NS = 2'000'000'000;
constexpr std::int64_t SEEK_IN_PASSING_NS = 60'000'000'000;

/// RtMidi calls this instead of throwing and of writing to the standard error stream.
void Note_Error(RtMidiError::Type type, const std::string&, void* userData) {
    auto& first = *static_cast<std::optional<RtMidiError::Type>*>(userData);
    if (!first && type != RtMidiError::WARNING && type != RtMidiError::DEBUG_WARNING)
        first = type;
}

Midi_Result Result_Of(RtMidiError::Type type) {
    switch (type) {
    case RtMidiError::NO_DEVICES_FOUND:
    case RtMidiError::INVALID_DEVICE:
        return Midi_Result::BadDevice;
    case RtMidiError::MEMORY_ERROR:
        return Midi_Result::NoMemory;
    case RtMidiError::INVALID_PARAMETER:
        return Midi_Result::InvalidParameter;
    case RtMidiError::INVALID_USE:
        return Midi_Result::InvalidFlag;
    default:
        return Midi_Result::Other;
    }
}

/// The client part of "client:port" is ours, with the number that the server adds when it is taken.
bool Is_Ours(const std::string& systemName) {
    const std::string client = systemName.substr(0, systemName.find(':'));
    const std::string own = CLIENT_NAME;
    return client.starts_with(own) &&
           client.find_first_not_of("-0123456789", own.size()) == std::string::npos;
}

/// Index of the port in this object's own list; the lists of two objects need not agree.
std::optional<unsigned> Index_Of(RtMidi& object, const std::string& systemName) {
    const unsigned count = object.getPortCount();
    for (unsigned i = 0; i < count; ++i)
        if (object.getPortName(i) == systemName)
            return i;
    return std::nullopt;
}

/// Opens the listed port, or a virtual one of the name portName.
Midi_Result Open_Port(RtMidi& object, const Midi_Port_Table::Found& found, const char* portName,
                      bool isVirtual) {
    std::optional<RtMidiError::Type> error;
    object.setErrorCallback(Note_Error, &error);
    Midi_Result result = Midi_Result::Ok;
    if (isVirtual) {
        object.openVirtualPort(portName);
    } else if (const auto index = Index_Of(object, found.systemName)) {
        object.openPort(*index, portName);
        if (!object.isPortOpen())
            result = Midi_Result::Other;
    } else {
        result = Midi_Result::BadDevice;
    }
    object.setErrorCallback([](RtMidiError::Type, const std::string&, void*) {}, nullptr);
    return error ? Result_Of(*error) : result;
}

template <typename Midi>
std::unique_ptr<Midi> Make(RtMidi::Api api) {
    try {
        if constexpr (std::is_same_v<Midi, RtMidiIn>)
            return std::make_unique<RtMidiIn>(api, CLIENT_NAME);
        else
            return std::make_unique<RtMidiOut>(api, CLIENT_NAME);
    } catch (const RtMidiError&) {
        return nullptr;
    }
}

} // namespace

struct RtMidi_Ports::Parts {
    explicit Parts(const Millisecond_Counter& clock) : counter(clock), incoming(INPUT_QUEUE) {}

    /// pauseNs: how long ago the last look for a sound server has to lie.
    void Refresh(std::int64_t pauseNs = SEEK_SERVER_NS);
    void Seek_Servers(std::int64_t pauseNs);
    template <typename Midi>
    std::vector<Midi_Port_Table::Found> Look(const std::unique_ptr<Midi>& alsa, bool inputs,
                                             const char* virtualName);
    bool Alive(const std::optional<Midi_Port_Table::Found>& open, const std::shared_ptr<Jack_Link>& link,
               const Midi_Port_Table& table) const;
    static void On_Message(double, std::vector<unsigned char>* bytes, void* self);

    const Millisecond_Counter& counter;
    std::unique_ptr<RtMidiIn> alsaInputs; ///< kept for its list; making one for each look costs more
    std::unique_ptr<RtMidiOut> alsaOutputs;
    std::shared_ptr<Jack_Link> jack;
    std::optional<std::int64_t> soughtNs; ///< when a sound server was looked for last
    Midi_Port_Table inputs;
    Midi_Port_Table outputs;
    bool changed = false;

    boost::lockfree::spsc_queue<Midi_In_Message> incoming;
    std::atomic<std::uint64_t> dropped{0};
    std::unique_ptr<RtMidiIn> input;
    std::optional<Midi_Port_Table::Found> openInput;
    std::int32_t openInputId = -1;
    std::shared_ptr<Jack_Link> inputJack; ///< the server that the open input belongs to
    std::unique_ptr<Midi_Sender> output;
    std::atomic<Midi_Sender*> outputInUse{nullptr}; ///< output, for the threads that send
    std::atomic<int> sending{0};                    ///< of them that may be looking at it
    std::optional<Midi_Port_Table::Found> openOutput;
    std::shared_ptr<Jack_Link> outputJack;
};

void RtMidi_Ports::Parts::Seek_Servers(std::int64_t pauseNs) {
    std::error_code ignored;
    if (!alsaInputs && std::filesystem::exists("/dev/snd/seq", ignored)) {
        alsaInputs = Make<RtMidiIn>(RtMidi::LINUX_ALSA);
        alsaOutputs = Make<RtMidiOut>(RtMidi::LINUX_ALSA);
        if (!alsaInputs || !alsaOutputs) {
            alsaInputs.reset();
            alsaOutputs.reset();
        }
    }
    if (jack && !jack->Alive()) {
        // A try now would pull the clients of the dead server from under whoever has not let go of them.
        jack.reset();
        soughtNs = counter.Now_Ns();
    }
    if (!jack && (!soughtNs || counter.Now_Ns() - *soughtNs >= pauseNs)) {
        jack = Jack_Link::Connect();
        soughtNs = counter.Now_Ns();
    }
}

template <typename Midi>
std::vector<Midi_Port_Table::Found> RtMidi_Ports::Parts::Look(const std::unique_ptr<Midi>& alsa,
                                                              bool wantInputs, const char* virtualName) {
    std::vector<Midi_Port_Table::Found> found;
    if (alsa) {
        const unsigned count = alsa->getPortCount();
        for (unsigned i = 0; i < count; ++i)
            found.push_back({RtMidi::LINUX_ALSA, alsa->getPortName(i)});
    }
    if (jack)
        for (std::string& name : jack->Midi_Port_Names(wantInputs))
            found.push_back({RtMidi::UNIX_JACK, std::move(name)});
    std::erase_if(found,
                  [](const auto& port) { return port.systemName.empty() || Is_Ours(port.systemName); });
    // Bridges show sequencer ports to JACK as well, so one virtual port is enough.
    if (alsa)
        found.push_back({RtMidi::LINUX_ALSA, virtualName});
    else if (jack)
        found.push_back({RtMidi::UNIX_JACK, virtualName});
    return found;
}

void RtMidi_Ports::Parts::Refresh(std::int64_t pauseNs) {
    try {
        Seek_Servers(pauseNs);
        const bool inputsChanged = inputs.Update(Look(alsaInputs, true, VIRTUAL_INPUT));
        const bool outputsChanged = outputs.Update(Look(alsaOutputs, false, VIRTUAL_OUTPUT));
        changed = changed || inputsChanged || outputsChanged;
    } catch (const RtMidiError&) { // NOLINT(bugprone-empty-catch): an unreadable list stays as it was
    }
}

bool RtMidi_Ports::Parts::Alive(const std::optional<Midi_Port_Table::Found>& open,
                                const std::shared_ptr<Jack_Link>& link, const Midi_Port_Table& table) const {
    // A server that came back under the same name does not know our port any more.
    if (!open || (open->api == RtMidi::UNIX_JACK && (!link || !link->Alive())))
        return false;
    const auto& rows = table.Rows();
    return std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.found == *open; });
}

void RtMidi_Ports::Parts::On_Message(double, std::vector<unsigned char>* bytes, void* self) {
    auto& parts = *static_cast<Parts*>(self);
    if (bytes == nullptr || bytes->size() < 2 || bytes->size() > 3)
        return;
    const std::uint8_t status = (*bytes)[0];
    if (status < 0x80 || status >= 0xF0)
        return;
    const auto data2 = static_cast<std::uint8_t>(bytes->size() == 3 ? (*bytes)[2] & 0x7F : 0);
    const Midi_In_Message message{parts.counter.Now_Ns(), status,
                                  static_cast<std::uint8_t>((*bytes)[1] & 0x7F), data2};
    if (!parts.incoming.push(message))
        parts.dropped.fetch_add(1, std::memory_order_relaxed);
}

RtMidi_Ports::RtMidi_Ports(const Millisecond_Counter& counter) : parts(std::make_unique<Parts>(counter)) {}

RtMidi_Ports::~RtMidi_Ports() {
    Close_Input();
    Close_Output();
}

std::vector<Midi_Port> RtMidi_Ports::Input_Ports() {
    parts->Refresh();
    return parts->inputs.Ports();
}

std::vector<Midi_Port> RtMidi_Ports::Output_Ports() {
    parts->Refresh();
    return parts->outputs.Ports();
}

Midi_Result RtMidi_Ports::Open_Input(std::int32_t portId) {
    Close_Input();
    parts->Refresh();
    const Midi_Port_Table::Row* row = parts->inputs.Find(portId);
    if (row == nullptr)
        return Midi_Result::BadDevice;
    try {
        auto input = Make<RtMidiIn>(static_cast<RtMidi::Api>(row->found.api));
        if (!input)
            return Midi_Result::Other;
        input->setCallback(&Parts::On_Message, parts.get());
        const Midi_Result result =
            Open_Port(*input, row->found, "Tonvex keys", row->found.systemName == VIRTUAL_INPUT);
        if (result != Midi_Result::Ok)
            return result;
        parts->input = std::move(input);
    } catch (const RtMidiError& error) {
        return Result_Of(error.getType());
    }
    parts->openInput = row->found;
    parts->openInputId = portId;
    parts->inputJack = row->found.api == RtMidi::UNIX_JACK ? parts->jack : nullptr;
    return Midi_Result::Ok;
}

void RtMidi_Ports::Close_Input() {
    if (parts->inputJack && !parts->inputJack->Alive())
        static_cast<void>(parts->input.release()); // abandoned, see Jack_Link
    parts->input.reset();
    parts->openInput.reset();
    parts->inputJack.reset();
    // Only now does nobody push any more: what came in is not of the next port.
    Midi_In_Message stale;
    while (parts->incoming.pop(stale)) {
    }
}

bool RtMidi_Ports::Take_Input(Midi_In_Message& message) {
    return parts->incoming.pop(message);
}

std::uint64_t RtMidi_Ports::Dropped_Inputs() const {
    return parts->dropped.load(std::memory_order_relaxed);
}

Midi_Result RtMidi_Ports::Open_Output(std::int32_t portId) {
    Close_Output();
    parts->Refresh();
    const Midi_Port_Table::Row* row = parts->outputs.Find(portId);
    if (row == nullptr)
        return Midi_Result::BadDevice;
    parts->outputJack = row->found.api == RtMidi::UNIX_JACK ? parts->jack : nullptr;
    try {
        auto output = Make<RtMidiOut>(static_cast<RtMidi::Api>(row->found.api));
        if (!output)
            return Midi_Result::Other;
        const Midi_Result result =
            Open_Port(*output, row->found, "Tonvex out", row->found.systemName == VIRTUAL_OUTPUT);
        if (result != Midi_Result::Ok)
            return result;
        parts->output = std::make_unique<Midi_Sender>(std::move(output), parts->outputJack);
        parts->outputInUse.store(parts->output.get());
    } catch (const RtMidiError& error) {
        return Result_Of(error.getType());
    } catch (const std::system_error&) { // no thread left
        return Midi_Result::NoMemory;
    }
    parts->openOutput = row->found;
    return Midi_Result::Ok;
}

void RtMidi_Ports::Close_Output() {
    parts->outputInUse.store(nullptr);
    while (parts->sending.load() != 0)
        std::this_thread::yield(); // a push into a queue
    parts->output.reset();
    parts->outputJack.reset();
    parts->openOutput.reset();
}

void RtMidi_Ports::Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    parts->sending.fetch_add(1);
    if (Midi_Sender* const sender = parts->outputInUse.load())
        sender->Send(status, data1, data2);
    parts->sending.fetch_sub(1);
}

bool RtMidi_Ports::Ports_Changed() {
    // A keyboard that is plugged in again may have another number, and a new server does not know our port.
    // It is opened anew one look after its loss, so that whoever asks has seen that it was gone.
    const bool inputWasGone = parts->openInput && !Input_Alive();
    parts->Refresh(SEEK_IN_PASSING_NS);
    if (inputWasGone && !Input_Alive() && parts->inputs.Find(parts->openInputId) != nullptr)
        static_cast<void>(Open_Input(parts->openInputId));
    return std::exchange(parts->changed, false);
}

bool RtMidi_Ports::Input_Alive() {
    return parts->Alive(parts->openInput, parts->inputJack, parts->inputs);
}

bool RtMidi_Ports::Output_Alive() {
    return parts->Alive(parts->openOutput, parts->outputJack, parts->outputs);
}

} // namespace tonvex
