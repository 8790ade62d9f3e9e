#pragma once

#include "platform/synth_graph.h"
#include "timed_synth.h"

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tonvex::bench {

/// The 32 slots of the product. Each has a chain of effects at hand, all of them off.
class Slots_Synth final : public Timed_Synth {
public:
    explicit Slots_Synth(const std::filesystem::path& font) {
        std::string error;
        instance = Synth_Instance::Make(RATE, {{font, 1}}, error);
        graph->Swap_Instance(instance.get());
        for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
            Send(Sound_Op::Patch, slot, Program_Of(slot), 0);
        for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
            chains.push_back(std::make_unique<Effect_Chain>(RATE));
            graph->Set_Effects(slot, chains.back().get(), {});
        }
    }
    void Note_On(int index) override { Send(Sound_Op::NoteOn, Slot_Of(index), Note_Number(index), 100); }
    int Voices() const override { return graph->Voice_Count(); }
    void Render_Seconds() override {
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
    std::vector<std::unique_ptr<Effect_Chain>> chains;
    std::unique_ptr<Synth_Instance> instance;
    std::unique_ptr<Synth_Graph> graph = std::make_unique<Synth_Graph>();
    std::array<float, Synth_Graph::PIECE> left{};
    std::array<float, Synth_Graph::PIECE> right{};
};

} // namespace tonvex::bench
