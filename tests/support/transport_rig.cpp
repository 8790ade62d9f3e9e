#include "support/transport_rig.h"

#include <cmath>
#include <sstream>

namespace tonvex {

namespace {

constexpr std::int64_t NS_PER_MS = 1'000'000;

/// Microbeats, so that 0.1 + 0.2 reads 0.3.
std::string Beat_Text(double beats) {
    std::ostringstream text;
    text << std::round(beats * 1e6) / 1e6;
    return text.str();
}

/// In the order of Sound_Op.
constexpr const char* OP_TEXTS[] = {"On", "Off", "Patch", "Pan", "Volume", "ChannelOff", "AllOff"};

} // namespace

Transport_Rig::Transport_Rig() {
    project.ProjectTempo = 60;
    project.MetronomeNoteB = 33;
    project.MetronomeNoteA = 80;
    output.Midi_OpenDevice(midiapi::SYNTH_DEVICE);
    output.Set_Observer(this);
    options.Global_UseThreadEngine = false;
    cue.InitDLL();
    cueOutput.onSounded = [this](const Sound_Message& message) { output.Tell_Played(message); };
    gcm.engineTakesOver = [this](int slot, int note) { return cue.Player_TakesOver(slot, note); };
    gcm.onLiveNotes = [this](const CueEngine::Live_Notes& held) { cue.Player_CopyRecActiveNotes(held); };
    channels.PatchCount = 128;
    for (std::size_t i = 0; i < 128; ++i)
        channels.Global_Patches[i].Patch = static_cast<std::int16_t>(i);
    firstChannel = Add_Channel(0);
    keys.counter = &counter;
    input.Input_Open();
    input.MidiInDevice = Scripted_Midi_Ports::PORT_ID;
    midiIn.onVelocity = [this](int note, int velocity) {
        layout.KeyNoteTable[static_cast<std::size_t>(256 + note)].Vol = static_cast<std::uint8_t>(velocity);
    };
    layout.LoadSpecialKeys();
    const auto noteKey = [this](int key, int note) {
        const auto row = static_cast<std::size_t>(key);
        layout.KeyMap[row] = {-1, static_cast<std::int16_t>(key), KEY_NOTE};
        layout.KeyNoteTable[row] = {static_cast<std::uint8_t>(note), 127, 0.0};
    };
    noteKey(Z, 128);
    noteKey(X, 130);
    noteKey(A, 48);
    loop.betweenRounds = [this](std::int64_t ms) {
        while (!actions.empty() && actions.begin()->first <= ms) {
            const auto action = actions.begin()->second;
            actions.erase(actions.begin());
            action();
        }
    };
}

std::int32_t Transport_Rig::Add_Channel(int slot) {
    const std::int32_t id = channels.New_ChannelID();
    channels.Add_Channel(id, false, slot, "Channel");
    return id;
}

std::int32_t Transport_Rig::Add_Note(const Rig_Note& note, int row) {
    return channels.Store(row).AddNewEvent(
        note.start,
        NoteData{static_cast<std::uint8_t>(note.note), static_cast<std::uint8_t>(note.vol), note.length});
}

void Transport_Rig::Add_Patch(double start, int patchRow, int row) {
    channels.Store(row).AddNewEvent(start, PatchData{patchRow});
}

void Transport_Rig::Script(const std::vector<Rig_Edge>& edges) {
    for (const Rig_Edge& edge : edges) {
        if (edge.key < 256)
            keys.edges.push_back({edge.ms * NS_PER_MS, static_cast<std::uint8_t>(edge.key), edge.down});
        else
            midi.messages.push_back({edge.ms * NS_PER_MS, static_cast<std::uint8_t>(edge.down ? 0x90 : 0x80),
                                     static_cast<std::uint8_t>(edge.key - 256),
                                     static_cast<std::uint8_t>(edge.velocity)});
    }
    if (!midi.messages.empty())
        input.InputDevice = 1;
}

void Transport_Rig::Keys(const std::string& text) {
    const std::map<std::string, int> names = {{"Z", Z},   {"X", X},   {"A", A},   {"ESC", ESCAPE},
                                              {"F2", 60}, {"F6", 64}, {"F12", 88}};
    std::istringstream words(text);
    std::vector<Rig_Edge> edges;
    Rig_Edge edge{};
    char way = 0;
    std::string key;
    while (words >> edge.ms >> way >> key) {
        const auto named = names.find(key);
        const int number = named == names.end() ? std::stoi(key) : named->second;
        edge.key = named == names.end() && number < 128 ? 256 + number : number;
        edge.down = way == '+';
        const std::size_t colon = key.find(':');
        edge.velocity = colon == std::string::npos ? 100 : std::stoi(key.substr(colon + 1));
        edges.push_back(edge);
    }
    Script(edges);
}

void Transport_Rig::Add_Notes(const std::string& text) {
    std::istringstream words(text);
    for (Rig_Note note{}; words >> note.start >> note.note >> note.vol >> note.length;)
        Add_Note(note);
}

bool Transport_Rig::Record(std::int64_t stopMs, bool overwrite, double position, float speed,
                           bool metronome) {
    sent.clear();
    startMs = counter.Now_Ms();
    if (stopMs >= 0)
        At(startMs + stopMs, [this] { state.StopTransportRequest = true; });
    return recorder.StartRecording(position, speed, firstChannel, overwrite, metronome, false);
}

bool Transport_Rig::Play(double position, std::int64_t stopMs, float speed) {
    sent.clear();
    startMs = counter.Now_Ms();
    if (stopMs >= 0)
        At(startMs + stopMs, [this] { state.PlayRequested = false; });
    return player.Transport_Play(position, false, speed);
}

std::string Transport_Rig::Trace() const {
    std::ostringstream text;
    for (const Sent& message : sent) {
        if (!withPatches && (message.op == Sound_Op::Patch || message.op == Sound_Op::Pan))
            continue;
        if (!withVolumes && message.op == Sound_Op::Volume)
            continue;
        text << message.ms << ' ' << OP_TEXTS[static_cast<int>(message.op)];
        if (message.op != Sound_Op::AllNotesOff)
            text << ' ' << message.slot << ' ' << message.a << ' ' << message.b;
        text << '\n';
    }
    return text.str();
}

std::string Transport_Rig::Events(int row) const {
    std::ostringstream text;
    const ChannelClass& store = channels.Store(row);
    for (auto i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
        const auto event = store.ReadEvent(i);
        if (event && event->Kind == EV_NOTE)
            text << Beat_Text(event->StartTime) << ' ' << int{event->Note->Note} << ' '
                 << int{event->Note->Vol} << ' ' << Beat_Text(event->Note->Length) << '\n';
    }
    return text.str();
}

std::vector<std::int64_t> Transport_Rig::Due_Ms() const {
    std::vector<std::int64_t> due;
    for (const Sound_Message& message : sound.posted)
        if (message.op == Sound_Op::NoteOn)
            due.push_back(message.dueNs / NS_PER_MS);
    return due;
}

void Transport_Rig::Send(Msg_Sender, int msg, const Args& args) {
    hubMessages.push_back(msg);
    if (msg == HUB_REC_EVENT)
        channels.Store(std::get<std::int32_t>(args[0]))
            .AddNewEvent_RecMode(std::get<double>(args[2]), std::get<EventData>(args[3]));
    else if (msg == HUB_DELETE_EVENT)
        channels.Store(channels.ChannelI(std::get<std::int32_t>(args[0])))
            .DeleteEvent(std::get<std::int32_t>(args[1]));
    else if (msg == HUB_SONG_POSITION)
        state.PlayPosition = std::get<double>(args[0]);
}

void Transport_Rig::On_Output(Sound_Op op, int slot, int a, int b) {
    sent.push_back({counter.Now_Ms() - startMs, op, slot, a, b});
}

} // namespace tonvex
