#pragma once

#include "engine/cue_engine.h"
#include "engine/gcm_midi.h"
#include "engine/qchord_class.h"
#include "engine/render_midi_event_col_class.h"
#include "platform/run_loop.h"
#include "song/global_channels_manager.h"

#include <array>
#include <cstdint>
#include <span>

namespace tonvex {

/// Turns the song into the lists that the player library plays. Interface thread.
class RenderModule {
public:
    static constexpr int NO_CHANNEL = -1;

    /// All outlive the module.
    RenderModule(GlobalChannelsManager& channels, GCM_Midi& gcm, CueEngine& engine, Run_Loop& loop,
                 const QChord_Parts& chordParts);

    /// Hands over a list for every live MIDI row; that of excludeRow (NO_CHANNEL: none) holds its marker
    /// alone. The library must be paused. False when the library takes no lists: nothing was handed over.
    bool Render_Start(int excludeRow);
    /// The rows of one channel, marker first, in the order in which its events are walked. Sends the
    /// channel's patches to the output at once, so that the sounds are there when they are due.
    Render_MidiEventColClass Render_Channel(int channelRow);
    Render_MidiEventColClass Render_EmptyChannel(int channelRow) const;
    /// Renders a channel anew and replaces its list; what sounds of the channel ends. A row that had no list
    /// at Render_Start gets none.
    void Render_UpdateChannel(int channelRow);
    /// The same, but only what sounds of the renewed events (EventIDs) ends, and what the new list lacks.
    void Render_UpdateEvents(int channelRow, std::span<const std::int32_t> renewed);
    /// The channel's list holds its marker alone from now on.
    void Render_DropChannel(int channelRow);
    /// Does not return before the library is paused.
    void Render_StopPlayer();

private:
    static constexpr std::int32_t NO_LIST = -1;

    Render_MidiEventColClass Render(int channelRow, bool sendPatches,
                                    std::span<const std::int32_t> renewed = {});
    void Add_Note(Render_MidiEventColClass& list, std::int16_t slot,
                  const ChannelClass::Event_View& event) const;
    void Add_Chord(Render_MidiEventColClass& list, std::int16_t slot,
                   const ChannelClass::Event_View& event) const;
    void Add_Patch(Render_MidiEventColClass& list, std::int16_t slot,
                   const ChannelClass::Event_View& event) const;
    std::int32_t List_Of(int channelRow) const;

    GlobalChannelsManager& channels;
    GCM_Midi& gcm;
    CueEngine& engine;
    Run_Loop& loop;
    QChord_Parts chordParts;
    std::array<std::int32_t, GlobalChannelsManager::CHANNEL_ROWS> listOfRow{};
};

} // namespace tonvex
