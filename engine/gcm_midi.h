#pragma once

#include "engine/midiapi.h"
#include "engine/transport_state.h"

#include <array>
#include <cstdint>

namespace tonvex {

/// Notes, patches and pans by channel row. Interface thread. Rows that are not live are passed over
/// (but row 100, the practice channel).
class GCM_Midi {
public:
    GCM_Midi(midiapi& output, GlobalChannelsManager& channels, Transport_State& transport);

    /// The live path. With live on, LiveNotes of the note counts; with live off and the engine running
    /// the call is dropped.
    void GCM_NoteOn(int channelRow, int note, int velocity, bool live, std::int64_t dueNs = midiapi::DUE_NOW);
    void GCM_NoteOff(int channelRow, int note, int velocity, bool live,
                     std::int64_t dueNs = midiapi::DUE_NOW);
    /// The player path: counted by row and note; only the last off goes out.
    void GCM_PlayNoteOn(int channelRow, int note, int velocity, bool live,
                        std::int64_t dueNs = midiapi::DUE_NOW);
    void GCM_PlayNoteOff(int channelRow, int note, int velocity, bool live,
                         std::int64_t dueNs = midiapi::DUE_NOW);
    void GCM_SetChannelPatch(int channelRow, int patchRow);
    /// For each output channel the patch and pan of the last live row on it.
    void GCM_SendAllPatches();
    void Clear_Note_Counts();
    int Note_Count(int channelRow, int note) const;

    int ViewChannelRow = -1;              ///< the channel shown on the record piano
    Transport_Observer* viewer = nullptr; ///< hears the notes of ViewChannelRow; may be null

    /// A patch reference as four bytes: flag, bank, patch low, patch high.
    static std::uint32_t GCM_PackPatch(std::int16_t patch, std::uint8_t bank, std::uint8_t flag) noexcept;
    static void GCM_UnpackPatch(std::uint32_t packed, std::int16_t& patch, std::uint8_t& bank,
                                std::uint8_t& flag) noexcept;

private:
    midiapi& output;
    GlobalChannelsManager& channels;
    Transport_State& transport;
    std::array<std::array<std::int32_t, 128>, GlobalChannelsManager::CHANNEL_ROWS + 1> ChannelNoteCount{};
};

} // namespace tonvex
