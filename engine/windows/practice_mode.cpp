#include "engine/windows/practice_mode.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int RENEWAL_MS = 120; ///< ports come and go in bursts

} // namespace

Practice_Mode::Practice_Mode(Session& owner, QObject* parent) : QObject(parent), session(owner) {
    rounds.setTimerType(Qt::PreciseTimer);
    rounds.setInterval(1);
    connect(&rounds, &QTimer::timeout, this, &Practice_Mode::Round);
    renewal.setSingleShot(true);
    renewal.setInterval(RENEWAL_MS);
    connect(&renewal, &QTimer::timeout, this, [this] {
        Stop();
        Start_If_Wanted();
    });
}

Practice_Mode::~Practice_Mode() {
    Stop();
}

bool Practice_Mode::Is_Running() const {
    return session.practiceRecorder->IsRunning();
}

bool Practice_Mode::Midi_Ready() const {
    if (session.input->InputDevice == 0 || session.input->MidiInDevice < 0)
        return false;
    const auto ports = session.output->Input_Devices();
    return std::any_of(ports.begin(), ports.end(), [this](const Device_Row& port) {
        return port.DeviceID == session.input->MidiInDevice;
    });
}

void Practice_Mode::Set_Channel(std::int32_t newId) {
    if (newId == channelId)
        return;
    channelId = newId;
    Stop();
    Start_If_Wanted();
}

void Practice_Mode::Set_Keys(bool on) {
    if (on == keys)
        return;
    keys = on;
    // Keys that are down end with the practice that they began in.
    Stop();
    Start_If_Wanted();
    if (keys && held == 0 && !Is_Running())
        keys = false;
    emit keysChanged(keys);
}

void Practice_Mode::Set_Plain(bool on) {
    if (on == plain)
        return;
    Stop();
    plain = on;
    // The piano has taken slot 0 from its channel.
    if (!plain)
        session.gcm->GCM_SendAllPatches();
    Start_If_Wanted();
    if (plain && held == 0 && !Is_Running())
        plain = false;
    emit plainChanged(plain);
}

void Practice_Mode::Set_Trial(const std::optional<Trial>& sound) {
    if (sound == trial)
        return;
    Stop();
    trial = sound;
    if (trial) {
        constexpr int ROW = GlobalChannelsManager::PRACTICE_ROW;
        GlobalChannel& practice = session.channels->Channels[ROW];
        practice.OutputChannel = trial->slot;
        practice.PatchI = trial->patchRow;
        practice.Volume = trial->volume;
        practice.Pan = trial->pan;
        session.gcm->GCM_SetChannelPatch(ROW, trial->patchRow);
        session.gcm->GCM_SetChannelPan(ROW);
    }
    Start_If_Wanted();
}

void Practice_Mode::Hold() {
    ++held;
    Stop();
}

void Practice_Mode::Let_Go() {
    if (held > 0 && --held == 0)
        Start_If_Wanted();
}

void Practice_Mode::Renew() {
    renewal.start();
}

std::int32_t Practice_Mode::Wanted_Channel() const noexcept {
    if (trial)
        return RecorderClass::PRACTICE_TEST;
    return plain ? RecorderClass::PRACTICE_PLAIN : channelId;
}

void Practice_Mode::Start_If_Wanted() {
    if (held > 0 || starting || Is_Running() || session.transport.Song_Runs() ||
        Wanted_Channel() == NOT_GIVEN)
        return;
    const bool midi = Midi_Ready();
    // Without its MIDI keyboard the input cannot be opened; that is told when something is to be recorded.
    if (!midi && (!Plays_Keys() || session.input->InputDevice != 0))
        return;
    session.practiceRecorder->PracticeMode = true;
    const std::int32_t asked = Wanted_Channel();
    const bool askedKeys = keys;
    const std::optional<Trial> askedTrial = trial;
    starting = true;
    session.practiceRecorder->StartRecording(0.0, 1.0F, asked, false, true, false);
    starting = false;
    if (!Is_Running())
        return;
    // What was asked for meanwhile.
    if (held > 0 || Wanted_Channel() != asked || keys != askedKeys || trial != askedTrial) {
        Stop();
        Start_If_Wanted();
        return;
    }
    rounds.start();
}

void Practice_Mode::Stop() {
    rounds.stop();
    if (!Is_Running() || starting)
        return;
    session.practiceRecorder->StopRequested = true;
    session.practiceRecorder->StartRecording(0.0, 0.0F, 0, false, false, true);
}

void Practice_Mode::Round() {
    // With the computer keys at rest there is nobody to click for.
    session.practiceRecorder->StartRecording(0.0, 0.0F, 0, false, Plays_Keys(), true);
    if (Is_Running())
        return;
    rounds.stop();
    // Escape among the keys has ended it.
    if (trial) {
        trial.reset();
        Start_If_Wanted();
    } else if (plain) {
        Set_Plain(false);
    } else if (keys) {
        keys = false;
        emit keysChanged(false);
        Start_If_Wanted();
    }
}

} // namespace tonvex
