#pragma once

#include "app/session.h"

#include <QObject>
#include <QTimer>

#include <optional>

namespace tonvex {

/// Practice mode of the main window: while no run is on, keys sound on the selected channel. A MIDI keyboard
/// that is the input does so always, the computer keys while Set_Keys is on. Rounds come from a timer of
/// 1 ms. Interface thread. A run holds it: Hold before, Let_Go after, in pairs.
class Practice_Mode final : public QObject {
    Q_OBJECT
public:
    explicit Practice_Mode(Session& session, QObject* parent = nullptr);
    ~Practice_Mode() override;

    /// NOT_GIVEN for none: nothing sounds.
    void Set_Channel(std::int32_t channelId);
    void Set_Keys(bool on);
    bool Keys() const noexcept { return keys; }
    /// The computer keys sound on a piano on slot 0, whatever channel is selected, until this is taken back.
    void Set_Plain(bool on);
    bool Plain() const noexcept { return plain; }
    /// A sound that no channel has yet.
    struct Trial {
        std::uint8_t slot = 0; ///< output slot 0 to 31
        std::int16_t patchRow = 0;
        std::uint8_t volume = 80; ///< 0 to 127
        std::uint8_t pan = 64;    ///< 0 to 127
        bool operator==(const Trial&) const = default;
    };
    /// The computer keys sound on a slot as it is told here, whatever channel is selected, until that is
    /// taken back. Who takes it back gives the slot its own sound again.
    void Set_Trial(const std::optional<Trial>& sound);
    /// The computer keys play while it runs.
    bool Plays_Keys() const noexcept { return keys || plain || trial; }
    void Hold();
    void Let_Go();
    /// Takes the input device anew, once what comes and goes has come to rest.
    void Renew();
    bool Is_Running() const;
    /// Its set-up lets messages run: a run that one of them asks for has to wait for its end.
    bool Is_Starting() const noexcept { return starting; }

signals:
    void keysChanged(bool on);
    void plainChanged(bool on);

private:
    void Round();
    void Start_If_Wanted();
    void Stop();
    bool Midi_Ready() const;
    /// What practice sounds on: a ChannelID, NOT_GIVEN or the plain piano.
    std::int32_t Wanted_Channel() const noexcept;

    Session& session;
    QTimer rounds;
    QTimer renewal;
    std::int32_t channelId = NOT_GIVEN;
    bool keys = false;
    bool starting = false;
    bool plain = false;
    std::optional<Trial> trial;
    int held = 0;
};

} // namespace tonvex
