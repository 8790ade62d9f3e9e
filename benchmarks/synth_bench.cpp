// What the 32 slots and their effects cost in processor time:
// - the synthesizer graph against one plain FluidSynth instance that mixes the same notes to one stereo pair,
//   effects off in both (under 1.3);
// - the graph with all effects off against one compiled without them (under 1.05);
// - 32 chains of all effects against the plain instance with 128 voices (under 4).
// Status 1 when a ratio is out of its bounds.

#include "slots_synth.h"

#include <fluidsynth.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace tonvex;
using namespace tonvex::bench;

constexpr int ROUNDS = 9;
constexpr int PLAIN_BLOCK = 512;
constexpr double LIMIT = 1.3;
constexpr double DRY_LIMIT = 1.05;
constexpr double CHAINS_LIMIT = 4.0;

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

class Plain_Synth final : public Timed_Synth {
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
    ~Plain_Synth() override {
        delete_fluid_synth(synth);
        delete_fluid_settings(settings);
    }
    Plain_Synth(const Plain_Synth&) = delete;
    Plain_Synth& operator=(const Plain_Synth&) = delete;

    void Note_On(int index) override { fluid_synth_noteon(synth, Slot_Of(index), Note_Number(index), 100); }
    int Voices() const override { return fluid_synth_get_active_voice_count(synth); }
    void Render_Seconds() override {
        for (int frame = 0; frame < SECONDS * RATE; frame += PLAIN_BLOCK)
            fluid_synth_write_float(synth, PLAIN_BLOCK, block.data(), 0, 2, block.data(), 1, 2);
    }

private:
    fluid_settings_t* settings;
    fluid_synth_t* synth = nullptr;
    std::array<float, static_cast<std::size_t>(PLAIN_BLOCK) * 2> block{};
};

/// 32 chains with every effect on, fed with noise.
class All_Chains final : public Timed_Synth {
public:
    All_Chains() {
        Effect_Settings settings;
        settings.on.fill(true);
        for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
            chains.push_back(std::make_unique<Effect_Chain>(RATE));
            chains.back()->Set(settings, true);
        }
        for (float& sample : noise)
            sample = static_cast<float>(random() % 2001) / 10000.0F - 0.1F;
    }
    void Note_On(int) override {}
    int Voices() const override { return 0; }
    void Render_Seconds() override {
        for (int frame = 0; frame < SECONDS * RATE; frame += EFFECT_PIECE)
            for (const auto& chain : chains) {
                left = noise;
                right = noise;
                chain->Process(left.data(), right.data());
            }
    }

private:
    using Piece = std::array<float, EFFECT_PIECE>;
    std::minstd_rand random{1};
    std::vector<std::unique_ptr<Effect_Chain>> chains;
    Piece noise{};
    Piece left{};
    Piece right{};
};

double Timed(Timed_Synth& synth) {
    const double before = Cpu_Seconds();
    synth.Render_Seconds();
    return Cpu_Seconds() - before;
}

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

void Fill(Timed_Synth& synth, int voices) {
    for (int index = 0; synth.Voices() < voices && index < 512; ++index)
        synth.Note_On(index);
}

/// Rounds of both take turns.
bool Compare(const char* what, Timed_Synth& own, Timed_Synth& baseline, double limit) {
    Timed(own);
    Timed(baseline);
    std::vector<double> ownTimes;
    std::vector<double> baselineTimes;
    std::vector<double> ratios;
    for (int round = 0; round < ROUNDS; ++round) {
        baselineTimes.push_back(Timed(baseline));
        ownTimes.push_back(Timed(own));
        ratios.push_back(ownTimes.back() / baselineTimes.back());
    }
    const double ratio = Median(ratios);
    std::printf("%-46s %8.1f ms against %8.1f ms for %d s: %.3f times (under %.2f)\n", what,
                Median(ownTimes) * 1e3, Median(baselineTimes) * 1e3, SECONDS, ratio, limit);
    return ratio < limit;
}

} // namespace

int main() {
    const std::filesystem::path font = Stock_Font();
    if (font.empty()) {
        std::fprintf(stderr, "synth_bench: no General MIDI font found; install timgm6mb-soundfont\n");
        return 2;
    }
    bool within = true;
    for (const int voices : {64, 128}) {
        Plain_Synth plain(font);
        Slots_Synth slots(font);
        const auto dry = Make_Dry_Synth(font);
        for (Timed_Synth* synth :
             {static_cast<Timed_Synth*>(&plain), static_cast<Timed_Synth*>(&slots), dry.get()})
            Fill(*synth, voices);
        const std::string sounding = std::to_string(voices) + " voices, ";
        within = Compare((sounding + "32 slots, one pair").c_str(), slots, plain, LIMIT) && within;
        within = Compare((sounding + "effects off, left out").c_str(), slots, *dry, DRY_LIMIT) && within;
    }
    Plain_Synth plain(font);
    Fill(plain, 128);
    All_Chains chains;
    within = Compare("32 slots of all effects, 128 voices", chains, plain, CHAINS_LIMIT) && within;
    return within ? 0 : 1;
}
