#pragma once

#include "engine/midiapi.h"
#include "engine/transport_state.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace tonvex {

/// Notes, patches and pans by channel row. Interface thread. Rows that are not live, audio rows and notes
/// outside 0 to 127 are passed over; row 100, the practice channel, always counts as live.
class GCM_Midi {
public:
    GCM_Midi(midiapi& output, GlobalChannelsManager& channels, Transport_State& transport);

    /// The live path. With live on, LiveNotes of the note counts; with live off and the engine running
    /// the call is dropped. A live off does not go out while a stored note holds the note on that output
    /// slot: that one's end brings the off.
    void GCM_NoteOn(int channelRow, int note, int velocity, bool live, std::int64_t dueNs = midiapi::DUE_NOW);
    void GCM_NoteOff(int channelRow, int note, int velocity, bool live,
                     std::int64_t dueNs = midiapi::DUE_NOW);
    /// One of several live presses of a note lets go: the note sounds on.
    void GCM_LiveRelease(int note);
    /// Hears the counters of live presses after each change while the thread engine runs.
    std::function<void(const std::array<std::int32_t, 128>&)> onLiveNotes;
    /// Asked when the performer lets a note go, after onLiveNotes: whether the thread engine sounds a stored
    /// note there, and so ends it.
    std::function<bool(int slot, int note)> engineTakesOver;
    /// The player path: counted by row and note. Every on goes out; an off goes out only when no row on the
    /// same output slot holds the note any more, the performer included, and an off that no on went before
    /// goes nowhere. A note ends on the slot that it began on, whatever the row's OutputChannel has become.
    /// Into a capture every counted off goes.
    void GCM_PlayNoteOn(int channelRow, int note, int velocity, bool live,
                        std::int64_t dueNs = midiapi::DUE_NOW);
    void GCM_PlayNoteOff(int channelRow, int note, int velocity, bool live,
                         std::int64_t dueNs = midiapi::DUE_NOW);
    /// patchRow of Global_Patches, of Global_DrumPatches on slot 9. Rows outside the table send nothing.
    void GCM_SetChannelPatch(int channelRow, int patchRow);
    /// The row's pan to its output slot, when the slot was last sent another.
    void GCM_SetChannelPan(int channelRow);
    /// For each output channel the patch and pan of the last live row on it, whatever was sent before: the
    /// state that a device just opened, or fonts just loaded, must be given.
    void GCM_SendAllPatches();
    /// What the row's output channel sounds through. Audio rows have no output channel.
    void GCM_SetChannelEffects(int channelRow);
    /// The same of each output channel: for a device just opened, a song just begun.
    void GCM_SendAllEffects();
    /// The volume map of each output channel at position 0, whatever was sent before.
    void GCM_SendAllVolumes();
    /// What stands between two runs: of each output channel the pan and the volume map at position 0, but
    /// never a volume below RESET_VOLUME_FLOOR, so that the keys can be heard. Sends only what differs from
    /// the last value sent.
    void GCM_ResetMaps();
    /// The pan and the volume map of each output channel at a position in beats. Sends only what differs from
    /// the last value sent. An output channel that was never given a pan has no channel, and gets none here.
    void GCM_UpdateMaps(double time);
    static constexpr int RESET_VOLUME_FLOOR = 64;
    /// Forgets what the player path holds; sends nothing.
    void Clear_Note_Counts();
    int Note_Count(int channelRow, int note) const;
    /// What is sent is written into a file, see midiapi::Set_Capture.
    bool Is_Captured() const noexcept { return output.MidiCaptureOn(); }
    /// A key of the channel being recorded holds the note, on the row's output slot.
    bool Performer_Holds(int channelRow, int note) const;
    /// patchRow last sent to the row's output slot; -1 before the first, and for a row without one.
    int Slot_Patch(int channelRow) const;

    /// The channel that is shown on the record piano, -1 for none. The notes of the one before go from there.
    void View_Channel(int channelRow);
    Transport_Observer* viewer = nullptr; ///< hears the notes of the channel viewed; may be null
    /// Notes of this row's player path are shown, those that the player library sounds too.
    bool Views(int channelRow) const noexcept { return viewer != nullptr && channelRow == ViewChannelRow; }

    /// A patch reference as four bytes: flag, bank, patch low, patch high.
    static std::uint32_t GCM_PackPatch(std::int16_t patch, std::uint8_t bank, std::uint8_t flag) noexcept;
    static void GCM_UnpackPatch(std::uint32_t packed, std::int16_t& patch, std::uint8_t& bank,
                                std::uint8_t& flag) noexcept;

private:
    static constexpr std::size_t NOTES = 128;
    static constexpr std::size_t ROWS = GlobalChannelsManager::CHANNEL_ROWS + 1; ///< the practice row too
    static constexpr int UNKNOWN = -1;                                           ///< nothing was sent yet

    /// The output slot of a row that notes may go to; -1 for any other.
    int Slot_Of(int channelRow) const;
    void Send_Patch(int slot, int patchRow);
    void Send_Pan(int slot, int value);
    void Send_Volume(int slot, int value);
    void Send_What_Differs(int slot, int pan, int volume);
    void Count_Live(int note, int change);
    bool Stored_Takes_Over(int slot, int note) const;
    bool Dropped(bool live) const noexcept { return !live && transport.EngineRunning; }
    void Show_Note(int channelRow, int note);
    void Hide_Note(int channelRow, int note);

    midiapi& output;
    GlobalChannelsManager& channels;
    Transport_State& transport;
    int ViewChannelRow = -1;
    std::array<std::array<std::int32_t, NOTES>, ROWS> ChannelNoteCount{};
    std::array<std::array<std::uint8_t, NOTES>, ROWS> noteSlot{}; ///< valid while the count is above 0
    std::array<std::array<std::int32_t, NOTES>, OUTPUT_SLOTS> slotNoteCount{};
    std::array<std::int32_t, NOTES> shownNotes{};
    std::array<int, OUTPUT_SLOTS> lastPatch{};
    std::array<int, OUTPUT_SLOTS> lastPan{};
    std::array<int, OUTPUT_SLOTS> lastVolume{};
};

} // namespace tonvex
