#pragma once

#include "engine/cue_output.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

/// Keeps what the player library sends, as a synthesizer's queue would: what is taken back never sounds.
/// One thread.
class Recording_Cue_Output final : public Cue_Output {
public:
    bool refuses = false; ///< there is no room

    void Use(bool useSynth) noexcept override { synth = useSynth; }
    bool Send(const Sound_Message& message) noexcept override {
        if (!refuses)
            kept.push_back(message);
        return !refuses;
    }
    bool Take_Back(std::int64_t fromNs) noexcept override {
        if (!refuses)
            std::erase_if(kept, [fromNs](const Sound_Message& message) { return message.dueNs >= fromNs; });
        return !refuses;
    }
    void Sounded(const Sound_Message& message) noexcept override { told.push_back(message); }

    /// What sounds, in the order in which it does.
    std::vector<Sound_Message> Sounding_Order() const {
        std::vector<Sound_Message> sorted = kept;
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const auto& left, const auto& right) { return left.dueNs < right.dueNs; });
        return sorted;
    }
    /// "<ms> +<note>/<slot> v<velocity>", "<ms> -<note>/<slot>" or "<ms> patch <program>/<slot>", a line
    /// each.
    std::string Text() const {
        std::string text;
        for (const Sound_Message& message : Sounding_Order()) {
            text += std::to_string(message.dueNs / 1'000'000);
            const std::string what = std::to_string(message.a) + "/" + std::to_string(message.slot);
            if (message.op == Sound_Op::NoteOn)
                text += " +" + what + " v" + std::to_string(message.b) + "\n";
            else
                text += (message.op == Sound_Op::Patch ? " patch " : " -") + what + "\n";
        }
        return text;
    }

    bool synth = false;
    std::vector<Sound_Message> told;

private:
    std::vector<Sound_Message> kept;
};

} // namespace tonvex
