#pragma once

#include "platform/effects/effect_settings.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tonvex {

inline constexpr int OUTPUT_SLOTS = 32;
inline constexpr int DRUM_SLOT = 9;

enum class Sound_Op : std::uint8_t { NoteOn, NoteOff, Patch, Pan, Volume, ChannelNotesOff, AllNotesOff };

/// One order to the synthesizer.
struct Sound_Message {
    std::int64_t dueNs = 0; ///< Millisecond_Counter time at which it is due; sounds one block later
    Sound_Op op = Sound_Op::NoteOn;
    std::uint8_t slot = 0; ///< output slot 0 to 31
    std::uint8_t a = 0;    ///< note, program, or value, 0 to 127
    std::uint8_t b = 0;    ///< velocity or bank, 0 to 127
    std::int32_t font = 0; ///< Patch: font handle, 0 for the last font in the list that has the preset
};

/// What the open device really does. Frames are frames of the running stream.
struct Sound_Status {
    bool open = false;
    bool deviceLost = false; ///< the device vanished; the program runs on in silence
    bool quiet = false;      ///< no device: the quiet driver counts time
    std::string driver;      ///< "JACK", "PulseAudio", "ALSA", "Quiet", "Offline"
    std::string deviceName;
    int sampleRate = 0;
    int blockFrames = 0;
    double latencyMs = 0.0;  ///< from due moment to the sound leaving the program, as measured
    double cpuPercent = 0.0; ///< of one block's time spent in the callback, smoothed
    std::uint64_t droppedMessages = 0;
    float peakLeft = 0.0F; ///< since the last call of Status, 1.0 is full scale
    float peakRight = 0.0F;
};

struct Sound_Request {
    int bufferMs = 100; ///< the user's setting, Global_BASSBufferSize
    int updateMs = 18;  ///< update period worked out from it; the block is the largest power of two of
                        ///< frames that is not longer than this
};

/// The road to the built-in synthesizer: 32 slots, one stereo pair each.
/// Calls: interface thread, but Post_From_Player and Take_Back_From_Player (the player thread). The audio
/// thread sees only queues.
class Sound_Door {
public:
    virtual ~Sound_Door() = default;
    /// Opens a device, or the quiet driver when there is none (status().quiet tells). False, with a text
    /// in error, only when the synthesizer itself cannot be made.
    virtual bool Open(const Sound_Request& request, std::string& error) = 0;
    virtual void Close() = 0;
    virtual Sound_Status Status() = 0;
    /// Shortest buffer in ms that the open device can do.
    virtual int Minimum_Buffer_Ms() const = 0;

    /// False when the queue is full: the message is dropped and counted.
    virtual bool Post(const Sound_Message& message) noexcept = 0;
    /// False when the queue is full: the caller posts again later. Notes that meet no running stream are
    /// let go, with true.
    virtual bool Post_From_Player(const Sound_Message& message) noexcept = 0;
    /// What Post_From_Player was given before this call and is due at fromNs or later does not sound; what
    /// is posted behind it does. Certain when the call comes before fromNs; what was due by the time of the
    /// call may have sounded. False when the queue is full: nothing was taken back.
    virtual bool Take_Back_From_Player(std::int64_t fromNs) noexcept = 0;

    /// Replaces the fonts in use; later ones take precedence. Loads in a scratch synthesizer on the
    /// calling thread, then swaps on the audio thread between two blocks. The result has one handle
    /// (above 0) or 0 (could not be loaded) a path.
    virtual std::vector<std::int32_t> Set_Fonts(const std::vector<std::filesystem::path>& paths) = 0;

    /// What the slot (0 to 31; any other is passed over) sounds through from the next block on; values out of
    /// range are brought into it. Nothing clicks: effects fade in and out, values glide. Holds until it is
    /// set anew, while the door is closed too.
    virtual void Set_Effects(int slot, const Effect_Settings& settings) noexcept = 0;

    /// 0 to 127, behind all slots.
    virtual void Set_Master_Volume(int value) noexcept = 0;
    virtual int Master_Volume() const noexcept = 0;
    /// Amplification behind the master volume, 1.0 to 4.0.
    virtual void Set_Amplification(float factor) noexcept = 0;
    /// Peak of one slot since the last call.
    virtual float Slot_Peak(int slot) noexcept = 0;
};

} // namespace tonvex
