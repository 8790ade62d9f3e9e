#pragma once

#include "engine/midi_capture.h"
#include "project/midi_format.h"
#include "song/global_channels_manager.h"

#include <array>
#include <cstdint>

namespace tonvex {

/// Keeps what the playback engine sends as tracks of a MIDI file, one for each MIDI channel. Interface
/// thread.
///
/// A slot below 16 has the MIDI channel of its number. A slot above goes to the lowest MIDI channel that no
/// slot uses, never the drum channel; with none free to the channel that a MIDI port would mask it to. What
/// is sent to a slot that no live channel is on is left out.
class Export_Buffers final : public Midi_Capture {
public:
    static constexpr std::int64_t TICKS_A_BEAT = 192;

    /// The slots in use are taken from the table now.
    explicit Export_Buffers(const GlobalChannelsManager& channels);

    /// Where what is taken next stands; never falls.
    void Set_Position(double beats) noexcept;
    void Take(Sound_Op op, int slot, int a, int b) override;

    /// The first live channel row whose notes go to the MIDI channel; -1 when none does.
    int First_Row_Of(int midiChannel) const { return firstRow[static_cast<std::size_t>(midiChannel)]; }
    bool Is_Used(int slot) const { return channelOfSlot[static_cast<std::size_t>(slot)] != UNUSED; }
    /// Bytes used in a column.
    std::int64_t ExportBufferLen(int midiChannel) const {
        return static_cast<std::int64_t>(ExportBuffer[static_cast<std::size_t>(midiChannel)].size());
    }

    /// By MIDI channel: each message behind its delta, without the end of the track.
    std::array<midi_format::Bytes, midi_format::CHANNELS> ExportBuffer;

    static std::int64_t Tick_At(double beats) noexcept;

private:
    static constexpr int UNUSED = -1;

    std::array<int, GlobalChannelsManager::SLOTS> channelOfSlot{};
    std::array<int, midi_format::CHANNELS> firstRow{};
    std::array<std::int64_t, midi_format::CHANNELS> lastTick{};
    std::int64_t tick = 0;
};

} // namespace tonvex
