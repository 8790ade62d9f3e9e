#pragma once

#include "app/session.h"

#include <cstdint>
#include <optional>

namespace tonvex {

/// The effect that a user is turning now: each step is heard at once, the song takes one change at the end of
/// the gesture, none when it ends where it began. Interface thread. The session outlives it, and the sender
/// whom the change names.
class Effect_Gesture {
public:
    Effect_Gesture(Session& session, Msg_Sender sender);
    ~Effect_Gesture() { Cancel(); }
    Effect_Gesture(const Effect_Gesture&) = delete;
    Effect_Gesture& operator=(const Effect_Gesture&) = delete;

    /// One parameter of an effect of the channel's output; value is brought into its range. What was turned
    /// before, when it is another one, ends first. Nothing for a channel that is gone.
    void Turn(std::int32_t channelId, Effect_Kind kind, std::size_t parameter, float value);
    /// Sends the change.
    void End();
    /// Everything sounds as the song has it.
    void Cancel();
    bool Is_Open() const noexcept { return turned.has_value(); }
    /// What an effect's values are for the eye: those that are heard.
    Effect_Values Values(std::int32_t channelId, Effect_Kind kind) const;

private:
    struct Turned {
        std::int32_t channelId;
        int row; ///< of the table of effects
        Effect_Kind kind;
        std::size_t parameter;
        float value;
    };
    int Row_Of(std::int32_t channelId) const;
    /// The row's settings as they are heard.
    Effect_Settings Heard(int row) const;
    void Sound(int row) const;

    Session& session;
    Msg_Sender sender;
    std::optional<Turned> turned;
};

} // namespace tonvex
