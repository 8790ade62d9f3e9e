// The product's graph once more, under another name and without its chains of effects.
#define TONVEX_WITHOUT_CHAINS
#define Synth_Graph Dry_Synth_Graph
#define Slots_Synth Dry_Slots_Synth

#include "platform/synth_graph.cpp" // NOLINT(bugprone-suspicious-include)
#include "slots_synth.h"

namespace tonvex::bench {

std::unique_ptr<Timed_Synth> Make_Dry_Synth(const std::filesystem::path& font) {
    return std::make_unique<Dry_Slots_Synth>(font);
}

} // namespace tonvex::bench
