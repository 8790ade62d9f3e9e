#pragma once

#include "app/session.h"
#include "engine/qchord_class.h"

#include <QObject>
#include <QTimer>

#include <optional>
#include <vector>

namespace tonvex {

/// Sounds what a key of the layout would, on one output slot, without a run. A timer asks the chord what
/// changes, so nothing waits. Interface thread. The session outlives it; what sounds ends with it.
class Test_Sound final : public QObject {
    Q_OBJECT
public:
    explicit Test_Sound(Session& session, QObject* parent = nullptr);
    ~Test_Sound() override;

    /// The output slot of a channel; 0 without a channel of that ID and for an audio channel.
    int Slot_Of(std::int32_t channelId) const;
    /// MIDI notes together, until Stop, or for forMs when that is above 0.
    void Start_Notes(int slot, const std::vector<int>& notes, int velocity, int forMs = 0);
    /// A chord as a key of it sounds, until Stop. octave: the chord octave in force, 0 to 5.
    void Start_Chord(int slot, const QChordData& chord, int octave);
    /// A chord of an event sounds as the event does, until Stop.
    void Start_Stored_Chord(int slot, const QChordData& chord);
    void Stop();
    bool Is_On() const noexcept { return on; }

signals:
    void stopped();

private:
    QChordClass& New_Chord(int slot, const QChordData& chord);
    void Begin_Chord();
    void Send(const QChord_Messages& messages);
    void Send_Due_Steps();

    Session& session;
    /// The tempo of the song's start throughout: a chord is tested outside of time.
    TempoChangeClass noChanges;
    Project_State tempo;
    std::optional<QChordClass> player;
    QTimer end;
    QTimer steps;
    std::vector<int> sounding;
    std::int64_t startNs = 0;
    int slot = 0;
    int velocity = 0;
    bool on = false;
};

} // namespace tonvex
