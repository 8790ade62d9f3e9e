#include "input/windows/test_sound.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int OFF_VELOCITY = 100;
constexpr int STEP_POLL_MS = 2;
constexpr double NS_PER_MINUTE = 6e10;

} // namespace

Test_Sound::Test_Sound(Session& owner, QObject* parent) : QObject(parent), session(owner) {
    end.setSingleShot(true);
    connect(&end, &QTimer::timeout, this, &Test_Sound::Stop);
    steps.setTimerType(Qt::PreciseTimer);
    steps.setInterval(STEP_POLL_MS);
    connect(&steps, &QTimer::timeout, this, &Test_Sound::Send_Due_Steps);
}

Test_Sound::~Test_Sound() {
    const QSignalBlocker quiet(this);
    Stop();
}

int Test_Sound::Slot_Of(std::int32_t channelId) const {
    const int row = session.channels->ChannelI(channelId);
    if (row < 0)
        return 0;
    const int found = session.channels->Channels[static_cast<std::size_t>(row)].OutputChannel;
    return found < GlobalChannelsManager::SLOTS ? found : 0;
}

void Test_Sound::Start_Notes(int outputSlot, const std::vector<int>& notes, int noteVelocity, int forMs) {
    Stop();
    slot = outputSlot;
    on = true;
    for (const int note : notes) {
        if (note < 0 || note > 127)
            continue;
        session.output->Midi_NoteOn(slot, note, noteVelocity);
        sounding.push_back(note);
    }
    if (forMs > 0)
        end.start(forMs);
}

QChordClass& Test_Sound::New_Chord(int outputSlot, const QChordData& chord) {
    Stop();
    slot = outputSlot;
    velocity = chord.ChordVol;
    on = true;
    tempo.ProjectTempo = session.project.ProjectTempo;
    return player.emplace(QChord_Parts{noChanges, tempo, *session.fingerpicks});
}

void Test_Sound::Start_Chord(int outputSlot, const QChordData& chord, int octave) {
    New_Chord(outputSlot, chord).SetQchordData(chord, octave, 0.0);
    Begin_Chord();
}

void Test_Sound::Start_Stored_Chord(int outputSlot, const QChordData& chord) {
    New_Chord(outputSlot, chord).Set_Stored_Chord(chord, 0.0);
    Begin_Chord();
}

void Test_Sound::Begin_Chord() {
    startNs = session.doors.counter.Now_Ns();
    steps.start();
    Send_Due_Steps();
}

void Test_Sound::Send(const QChord_Messages& messages) {
    for (std::size_t row = 0; row < messages.Rows(); ++row) {
        const int note = messages.Notes[row];
        if (messages.Actions[row] == QChord_Messages::NOTE_ON)
            session.output->Midi_NoteOn(slot, note, velocity);
        else
            session.output->Midi_NoteOff(slot, note, OFF_VELOCITY);
    }
}

void Test_Sound::Send_Due_Steps() {
    const auto elapsed = static_cast<double>(session.doors.counter.Now_Ns() - startNs);
    const double beats = elapsed * std::max(tempo.ProjectTempo, 1) / NS_PER_MINUTE;
    QChord_Messages messages;
    while (player->Next_Step_Time() <= beats) {
        player->GetMsg_On_Time(beats, messages);
        Send(messages);
    }
}

void Test_Sound::Stop() {
    end.stop();
    steps.stop();
    if (player) {
        QChord_Messages messages;
        player->GetMsg_On_Time(QChordClass::STOP, messages);
        Send(messages);
        player.reset();
    }
    for (const int note : sounding)
        session.output->Midi_NoteOff(slot, note, OFF_VELOCITY);
    sounding.clear();
    if (!on)
        return;
    on = false;
    emit stopped();
}

} // namespace tonvex
