// What the 32 slots cost: processor time of the synthesizer graph against one plain FluidSynth instance
// that mixes the same notes to one stereo pair, effects off in both. Prints one line for each number of
// voices; status 1 when the graph takes 1.3 times the plain instance's time or more.

#include "platform/synth_graph.h"

#include <fluidsynth.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace tonvex;

constexpr int RATE = 44100;
constexpr int SECONDS = 4;
constexpr int ROUNDS = 9;
constexpr int PLAIN_BLOCK = 512;
constexpr double LIMIT = 1.3;

std::filesystem::path Stock_Font() {
    for (const char* place : {"/usr/share/sounds/sf2/TimGM6mb.sf2", "/usr/share/sounds/sf2/default-GM.sf2",
                              "/usr/share/soundfonts/default.sf2", "/usr/share/sounds/sf2/FluidR3_GM.sf2"})
        if (std::filesystem::exists(place))
            return place;
    return {};
}

double Cpu_Seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Sounds that last: organs, strings, choirs and pads, another on each slot.
int Program_Of(int slot) {
    constexpr std::array<int, 8> LASTING = {16, 19, 48, 49, 52, 89, 91, 73};
    return LASTING[static_cast<std::size_t>(slot) % LASTING.size()];
}
int Note_Number(int index) {
    return 40 + index * 5 % 37;
}
int Slot_Of(int index) {
    const int slot = index % OUTPUT_SLOTS;
    return slot == DRUM_SLOT ? 10 : slot;
}

class Plain_Synth {
public:
    explicit Plain_Synth(const std::filesystem::path& font) : settings(new_fluid_settings()) {
        fluid_settings_setint(settings, "synth.threadsafe-api", 0);
        fluid_settings_setint(settings, "synth.midi-channels", OUTPUT_SLOTS);
        fluid_settings_setint(settings, "synth.reverb.active", 0);
        fluid_settings_setint(settings, "synth.chorus.active", 0);
        fluid_settings_setint(settings, "synth.polyphony", Synth_Instance::POLYPHONY);
        fluid_settings_setnum(settings, "synth.sample-rate", RATE);
        synth = new_fluid_synth(settings);
        const int id = fluid_synth_sfload(synth, font.c_str(), 0);
        for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
            fluid_synth_set_channel_type(synth, slot, CHANNEL_TYPE_MELODIC);
            fluid_synth_program_select(synth, slot, id, 0, Program_Of(slot));
        }
    }
    ~Plain_Synth() {
        delete_fluid_synth(synth);
        delete_fluid_settings(settings);
    }
    Plain_Synth(const Plain_Synth&) = delete;
    Plain_Synth& operator=(const Plain_Synth&) = delete;

    void Note_On(int index) { fluid_synth_noteon(synth, Slot_Of(index), Note_Number(index), 100); }
    int Voices() const { return fluid_synth_get_active_voice_count(synth); }
    void Render_Seconds() {
        for (int frame = 0; frame < SECONDS * RATE; frame += PLAIN_BLOCK)
            fluid_synth_write_float(synth, PLAIN_BLOCK, block.data(), 0, 2, block.data(), 1, 2);
    }

private:
    fluid_settings_t* settings;
    fluid_synth_t* synth = nullptr;
    std::array<float, static_cast<std::size_t>(PLAIN_BLOCK) * 2> block{};
};

class Slots_Synth {
public:
    explicit Slots_Synth(const std::filesystem::path& font) {
        std::string error;
        instance = Synth_Instance::Make(RATE, {{font, 1}}, error);
        graph->Swap_Instance(instance.get());
        for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
            Send(Sound_Op::Patch, slot, Program_Of(slot), 0);
    }
    void Note_On(int index) { Send(Sound_Op::NoteOn, Slot_Of(index), Note_Number(index), 100); }
    int Voices() const { return graph->Voice_Count(); }
    void Render_Seconds() {
        for (int frame = 0; frame < SECONDS * RATE; frame += Synth_Graph::PIECE)
            graph->Render(left.data(), right.data(), 1.0F);
    }

private:
    void Send(Sound_Op op, int slot, int a, int b) {
        Sound_Message message;
        message.op = op;
        message.slot = static_cast<std::uint8_t>(slot);
        message.a = static_cast<std::uint8_t>(a);
        message.b = static_cast<std::uint8_t>(b);
        graph->Apply(message);
    }
    std::unique_ptr<Synth_Instance> instance;
    std::unique_ptr<Synth_Graph> graph = std::make_unique<Synth_Graph>();
    std::array<float, Synth_Graph::PIECE> left{};
    std::array<float, Synth_Graph::PIECE> right{};
};

template <typename Synth>
double Timed(Synth& synth) {
    const double before = Cpu_Seconds();
    synth.Render_Seconds();
    return Cpu_Seconds() - before;
}

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

/// Ratio of the graph's time to the plain instance's, of rounds that take turns.
double Compare(const std::filesystem::path& font, int voices) {
    Plain_Synth plain(font);
    Slots_Synth slots(font);
    int index = 0;
    for (; plain.Voices() < voices && index < 512; ++index) {
        plain.Note_On(index);
        slots.Note_On(index);
    }
    Timed(plain);
    Timed(slots);
    std::vector<double> plainTimes;
    std::vector<double> slotsTimes;
    std::vector<double> ratios;
    for (int round = 0; round < ROUNDS; ++round) {
        plainTimes.push_back(Timed(plain));
        slotsTimes.push_back(Timed(slots));
        ratios.push_back(slotsTimes.back() / plainTimes.back());
    }
    const double ratio = Median(ratios);
    std::printf(
        "%3d voices (plain %d, slots %d at the end): plain %.1f ms, slots %.1f ms for %d s; ratio %.3f\n",
        voices, plain.Voices(), slots.Voices(), Median(plainTimes) * 1e3, Median(slotsTimes) * 1e3, SECONDS,
        ratio);
    return ratio;
}

} // namespace

int main() {
    const std::filesystem::path font = Stock_Font();
    if (font.empty()) {
        std::fprintf(stderr, "synth_bench: no General MIDI font found; install timgm6mb-soundfont\n");
        return 2;
    }
    bool within = true;
    for (const int voices : {64, 128})
        within = Compare(font, voices) < LIMIT && within;
    return within ? 0 : 1;
}
