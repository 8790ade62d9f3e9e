#include "widgets/effect_gesture.h"

#include "song/effect_records.h"

#include <utility>

namespace tonvex {

Effect_Gesture::Effect_Gesture(Session& owner, Msg_Sender who) : session(owner), sender(who) {}

int Effect_Gesture::Row_Of(std::int32_t channelId) const {
    return session.channels->Effect_Row(session.channels->ChannelI(channelId));
}

Effect_Settings Effect_Gesture::Heard(int row) const {
    Effect_Settings settings = session.channels->Effects.Row(row);
    if (turned && turned->row == row) {
        const auto kind = static_cast<std::size_t>(turned->kind);
        settings.values[kind][turned->parameter] = turned->value;
        settings.values[kind] = Bounded(turned->kind, settings.values[kind]);
    }
    return settings;
}

/// The effects of audio outputs are not the synthesizer's.
void Effect_Gesture::Sound(int row) const {
    if (row < Song_Effects::SLOTS)
        session.output->Midi_SetEffects(row, Heard(row));
}

Effect_Values Effect_Gesture::Values(std::int32_t channelId, Effect_Kind kind) const {
    const int row = Row_Of(channelId);
    return row < 0 ? Neutral_Values(kind) : Heard(row).Of(kind);
}

void Effect_Gesture::Turn(std::int32_t channelId, Effect_Kind kind, std::size_t parameter, float value) {
    if (turned && (turned->channelId != channelId || turned->kind != kind || turned->parameter != parameter))
        End();
    const int row = Row_Of(channelId);
    if (row < 0)
        return;
    turned = Turned{channelId, row, kind, parameter, value};
    Sound(row);
}

void Effect_Gesture::End() {
    if (!turned)
        return;
    const Turned done = *turned;
    const Effect_Values values = Heard(done.row).Of(done.kind);
    const bool changed =
        Row_Of(done.channelId) == done.row && values != session.channels->Effects.Row(done.row).Of(done.kind);
    if (!changed)
        return Cancel();
    turned.reset();
    session.hub->Message(sender, MSG_SET_EFFECTS, done.channelId, static_cast<std::int32_t>(done.kind),
                         std::monostate{}, Effect_Record_Text(done.kind, values));
}

void Effect_Gesture::Cancel() {
    if (const auto gone = std::exchange(turned, std::nullopt))
        Sound(gone->row);
}

} // namespace tonvex
