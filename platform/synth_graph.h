#pragma once

#include "platform/effects/effect_chain.h"
#include "platform/sound_door.h"
#include "platform/synth_instance.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <fluidsynth/types.h>

namespace tonvex {

/// What the audio thread renders: the synthesizer, its 32 pairs each through its effects, their sum, the
/// levels behind them. Works in pieces of 64 frames, the synthesizer's own grid, so that an order applied
/// between two pieces takes effect at the same place whatever the device's block. Audio thread alone, but for
/// the operations marked otherwise. Neither allocates nor locks.
class Synth_Graph {
public:
    static constexpr int PIECE = EFFECT_PIECE;

    /// Takes over rendering from the instance before, which fades out within one piece; programs, pans
    /// and volumes of all slots are set on the new one. Gives the old one back (nullptr at first); it
    /// may be destroyed, elsewhere.
    Synth_Instance* Swap_Instance(Synth_Instance* fresh) noexcept;

    /// Sounds an order; absurd values are brought into range, a slot above 31 is passed over.
    void Apply(const Sound_Message& message) noexcept;

    /// The slot sounds through chain from the next piece on, set to settings (bounded ones). The chain stays
    /// until another takes its place; nullptr for none.
    void Set_Effects(int slot, Effect_Chain* chain, const Effect_Settings& settings) noexcept;

    /// Ends every voice and every tail at once, without its release.
    void Silence() noexcept;

    /// Renders PIECE frames, with gain (linear) behind all slots reached at the end of the piece.
    void Render(float* left, float* right, float gain) noexcept;

    /// Voices that sound, release included.
    int Voice_Count() const noexcept;
    /// Effects still sound, whether voices do or not.
    bool Rings() const noexcept { return ringing != 0; }

    /// Highest sample since the last call, 1.0 full scale. Interface thread.
    float Take_Slot_Peak(int slot) noexcept;
    float Take_Left_Peak() noexcept { return leftPeak.exchange(0.0F, std::memory_order_relaxed); }
    float Take_Right_Peak() noexcept { return rightPeak.exchange(0.0F, std::memory_order_relaxed); }

private:
    /// What a slot was last set to; outlives instances.
    struct Slot_State {
        std::uint8_t program = 0;
        std::uint8_t bank = 0;
        std::uint8_t volume = 100;
        std::uint8_t pan = 64;
        std::int32_t font = 0;
    };
    using Piece_Buffer = std::array<float, PIECE>;

    void Set_Program(int slot) noexcept;
    void Render_Voices() noexcept;
    void Render_Slots(float* left, float* right) noexcept;
    /// Adds what the slot sounds to left and right.
    void Mix_Slot(std::size_t slot, float* left, float* right) noexcept;
    void Find_Silent_Slots() noexcept;

    Synth_Instance* instance = nullptr;
    std::array<Slot_State, OUTPUT_SLOTS> slotStates{};
    std::uint32_t sounding = 0; ///< bit n: slot n may have voices
    int piecesToCheck = 0;      ///< until the slots that fell silent are looked for
    std::array<Piece_Buffer, static_cast<std::size_t>(OUTPUT_SLOTS) * 2> dry{};
    std::array<Piece_Buffer, static_cast<std::size_t>(OUTPUT_SLOTS) * 2> fade{}; ///< of the instance before
    std::uint32_t fading = 0;                         ///< bit n: slot n has a fade to be sounded
    std::array<Effect_Chain*, OUTPUT_SLOTS> chains{}; ///< nullptr: none was ever on
    std::uint32_t chained = 0;                        ///< bit n: slot n has an effect on or fading
    std::uint32_t ringing = 0;                        ///< bit n: effects of slot n have sound left
    float gainNow = -1.0F;                            ///< below 0: nothing rendered yet
    std::array<fluid_voice_t*, Synth_Instance::POLYPHONY + 1> voices{};
    std::array<std::atomic<float>, OUTPUT_SLOTS> slotPeaks{};
    std::atomic<float> leftPeak{0.0F};
    std::atomic<float> rightPeak{0.0F};
};

} // namespace tonvex
