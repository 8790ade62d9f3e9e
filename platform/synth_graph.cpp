#include "platform/synth_graph.h"

#include <fluidsynth.h>

#include <algorithm>
#include <bit>

namespace tonvex {

namespace {

// Defined by the benchmark that asks what effects cost a slot that has none.
#ifdef TONVEX_WITHOUT_CHAINS
constexpr bool HAS_CHAINS = false;
#else
constexpr bool HAS_CHAINS = true;
#endif

constexpr int VOLUME_CONTROLLER = 7;
constexpr int PAN_CONTROLLER = 10;
/// Slots that fell silent are looked for every so many pieces (about 23 ms).
constexpr int CHECK_EVERY = 16;
constexpr std::int32_t INFINITE_BITS = 0x7f800000;

/// Bits of the largest magnitude: as an integer, since the order is the same and the loop runs in SIMD
/// registers. INFINITE_BITS and above tell that a sample is no number.
std::int32_t Peak_Bits(const float* samples) noexcept {
    std::int32_t peak = 0;
    for (int i = 0; i < Synth_Graph::PIECE; ++i)
        peak = std::max(peak, std::bit_cast<std::int32_t>(samples[i]) & 0x7fffffff);
    return peak;
}

bool Has(std::uint32_t slots, std::size_t slot) noexcept {
    return (slots >> slot & 1U) != 0;
}

void Raise_Peak(std::atomic<float>& peak, float value) noexcept {
    float seen = peak.load(std::memory_order_relaxed);
    while (value > seen && !peak.compare_exchange_weak(seen, value, std::memory_order_relaxed)) {
    }
}

} // namespace

Synth_Instance* Synth_Graph::Swap_Instance(Synth_Instance* fresh) noexcept {
    Synth_Instance* const old = instance;
    fading = old == nullptr ? 0 : sounding;
    if (fading != 0) {
        // Only what goes into the effects changes hands; their tails ring on.
        Render_Voices();
        for (std::size_t slot = 0; slot < OUTPUT_SLOTS; ++slot)
            if (Has(fading, slot))
                for (std::size_t side = 2 * slot; side < 2 * slot + 2; ++side)
                    for (std::size_t i = 0; i < PIECE; ++i)
                        fade[side][i] = dry[side][i] * (1.0F - static_cast<float>(i + 1) / PIECE);
    }
    instance = fresh;
    sounding = 0;
    if (instance == nullptr)
        return old;
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
        const Slot_State& state = slotStates[static_cast<std::size_t>(slot)];
        Set_Program(slot);
        fluid_synth_cc(instance->Synth(), slot, VOLUME_CONTROLLER, state.volume);
        fluid_synth_cc(instance->Synth(), slot, PAN_CONTROLLER, state.pan);
    }
    return old;
}

void Synth_Graph::Set_Program(int slot) noexcept {
    const Slot_State& state = slotStates[static_cast<std::size_t>(slot)];
    const Found_Preset found = instance->Find(slot, state.program, state.bank, state.font);
    if (found.fontId < 0)
        fluid_synth_unset_program(instance->Synth(), slot);
    else
        fluid_synth_program_select(instance->Synth(), slot, found.fontId, found.bank, found.program);
}

void Synth_Graph::Apply(const Sound_Message& message) noexcept {
    if (message.slot >= OUTPUT_SLOTS && message.op != Sound_Op::AllNotesOff)
        return;
    const int slot = message.slot;
    Slot_State& state = slotStates[message.slot % OUTPUT_SLOTS];
    const auto first = std::min<std::uint8_t>(message.a, 127);
    const auto second = std::min<std::uint8_t>(message.b, 127);
    fluid_synth_t* const synth = instance == nullptr ? nullptr : instance->Synth();
    switch (message.op) {
    case Sound_Op::NoteOn:
        if (synth != nullptr) {
            fluid_synth_noteon(synth, slot, first, second);
            sounding |= std::uint32_t{1} << slot;
        }
        break;
    case Sound_Op::NoteOff:
        if (synth != nullptr)
            fluid_synth_noteoff(synth, slot, first);
        break;
    case Sound_Op::Patch:
        state.program = first;
        state.bank = second;
        state.font = message.font;
        if (synth != nullptr)
            Set_Program(slot);
        break;
    case Sound_Op::Pan:
        state.pan = first;
        if (synth != nullptr)
            fluid_synth_cc(synth, slot, PAN_CONTROLLER, first);
        break;
    case Sound_Op::Volume:
        state.volume = first;
        if (synth != nullptr)
            fluid_synth_cc(synth, slot, VOLUME_CONTROLLER, first);
        break;
    case Sound_Op::ChannelNotesOff:
        if (synth != nullptr)
            fluid_synth_all_notes_off(synth, slot);
        break;
    case Sound_Op::AllNotesOff:
        if (synth != nullptr)
            fluid_synth_all_notes_off(synth, -1);
        break;
    }
}

void Synth_Graph::Set_Effects(int slot, Effect_Chain* chain, const Effect_Settings& settings) noexcept {
    if (slot < 0 || slot >= OUTPUT_SLOTS)
        return;
    const auto n = static_cast<std::size_t>(slot);
    const std::uint32_t bit = std::uint32_t{1} << n;
    const bool silent = ((sounding | ringing) & bit) == 0;
    chains[n] = chain;
    if (chain == nullptr) {
        chained &= ~bit;
        ringing &= ~bit;
        return;
    }
    chain->Set(settings, silent);
    chained = chain->Is_Off() ? chained & ~bit : chained | bit;
}

void Synth_Graph::Silence() noexcept {
    fading = 0;
    if (instance != nullptr) {
        fluid_synth_all_sounds_off(instance->Synth(), -1);
        for (int piece = 0; piece < CHECK_EVERY && sounding != 0; ++piece) {
            Render_Voices();
            Find_Silent_Slots();
        }
    }
    for (Effect_Chain* const chain : chains)
        if (chain != nullptr)
            chain->Clear();
    ringing = 0;
    for (auto& peak : slotPeaks)
        peak.store(0.0F, std::memory_order_relaxed);
}

void Synth_Graph::Find_Silent_Slots() noexcept {
    piecesToCheck = CHECK_EVERY;
    fluid_synth_get_voicelist(instance->Synth(), voices.data(), static_cast<int>(voices.size()), -1);
    sounding = 0;
    for (const fluid_voice_t* voice : voices) {
        if (voice == nullptr)
            break;
        const int slot = fluid_voice_get_channel(voice);
        if (slot >= 0 && slot < OUTPUT_SLOTS)
            sounding |= std::uint32_t{1} << slot;
    }
}

void Synth_Graph::Render_Voices() noexcept {
    // A pair that is not handed over is not mixed, so slots without voices cost nothing here.
    std::array<float*, static_cast<std::size_t>(OUTPUT_SLOTS) * 2> outputs{};
    for (std::size_t slot = 0; slot < OUTPUT_SLOTS; ++slot) {
        if (!Has(sounding, slot))
            continue;
        for (std::size_t side = 2 * slot; side < 2 * slot + 2; ++side) {
            dry[side].fill(0.0F);
            outputs[side] = dry[side].data();
        }
    }
    fluid_synth_process(instance->Synth(), PIECE, 0, nullptr, static_cast<int>(outputs.size()),
                        outputs.data());
}

void Synth_Graph::Render_Slots(float* left, float* right) noexcept {
    std::fill_n(left, PIECE, 0.0F);
    std::fill_n(right, PIECE, 0.0F);
    if (sounding != 0)
        Render_Voices();
    const std::uint32_t heard = sounding | fading | ringing;
    if (heard == 0)
        return;
    for (std::size_t slot = 0; slot < OUTPUT_SLOTS; ++slot)
        if (Has(heard, slot))
            Mix_Slot(slot, left, right);
    fading = 0;
    if (sounding != 0 && --piecesToCheck <= 0)
        Find_Silent_Slots();
}

void Synth_Graph::Mix_Slot(std::size_t slot, float* left, float* right) noexcept {
    Piece_Buffer& slotLeft = dry[2 * slot];
    Piece_Buffer& slotRight = dry[2 * slot + 1];
    if (!Has(sounding, slot)) {
        slotLeft.fill(0.0F);
        slotRight.fill(0.0F);
    }
    if (Has(fading, slot)) {
        for (std::size_t i = 0; i < PIECE; ++i) {
            slotLeft[i] += fade[2 * slot][i];
            slotRight[i] += fade[2 * slot + 1][i];
        }
    }
    std::int32_t peak = std::max(Peak_Bits(slotLeft.data()), Peak_Bits(slotRight.data()));
    if (peak >= INFINITE_BITS) // a damaged font may give this; one slot's silence is better than all of it
        return;
    if (HAS_CHAINS && Has(chained, slot)) {
        const std::uint32_t bit = std::uint32_t{1} << slot;
        chains[slot]->Process(slotLeft.data(), slotRight.data());
        ringing = chains[slot]->Rings() ? ringing | bit : ringing & ~bit;
        if (chains[slot]->Is_Off())
            chained &= ~bit;
        peak = std::max(Peak_Bits(slotLeft.data()), Peak_Bits(slotRight.data()));
        if (peak >= INFINITE_BITS) {
            chains[slot]->Clear();
            return;
        }
    }
    Raise_Peak(slotPeaks[slot], std::bit_cast<float>(peak));
    for (std::size_t i = 0; i < PIECE; ++i) {
        left[i] += slotLeft[i];
        right[i] += slotRight[i];
    }
}

void Synth_Graph::Render(float* left, float* right, float gain) noexcept {
    Render_Slots(left, right);
    // A volume that jumped would click; it moves along a line within the piece.
    const float from = gainNow < 0.0F ? gain : gainNow;
    const float step = (gain - from) / PIECE;
    for (int i = 0; i < PIECE; ++i) {
        const float factor = from + step * static_cast<float>(i + 1);
        left[i] *= factor;
        right[i] *= factor;
    }
    gainNow = gain;
    Raise_Peak(leftPeak, std::bit_cast<float>(Peak_Bits(left)));
    Raise_Peak(rightPeak, std::bit_cast<float>(Peak_Bits(right)));
}

int Synth_Graph::Voice_Count() const noexcept {
    return instance == nullptr ? 0 : fluid_synth_get_active_voice_count(instance->Synth());
}

float Synth_Graph::Take_Slot_Peak(int slot) noexcept {
    if (slot < 0 || slot >= OUTPUT_SLOTS)
        return 0.0F;
    return slotPeaks[static_cast<std::size_t>(slot)].exchange(0.0F, std::memory_order_relaxed);
}

} // namespace tonvex
