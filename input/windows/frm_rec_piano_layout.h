#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "widgets/theme.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QLabel;

namespace tonvex {

class Chord_Chips;
class Level_Meter;
class Piano_View;
class Segment_Selector;
class Staff_View;

/// The record piano: shows which computer key plays which note and lights up what sounds, whether it is
/// played or comes from the song. A click on a key sounds it on the selected channel. Without a key state it
/// also feeds the keyboard from its own key events. Interface thread.
class frmREC_PianoLayout final : public QWidget, public Transport_Observer {
    Q_OBJECT
public:
    static constexpr int LOWEST_SHOWN = 24; ///< notes below are never lit

    frmREC_PianoLayout(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~frmREC_PianoLayout() override;

    void ShowNote(int note);
    void HideNote(int note);
    void Clear_Notes();
    /// Letters and chords from the layout in force.
    void UpdateLayout();
    void Set_Channel(std::int32_t channelId);
    /// While on and without a key state, keys that come here play and go nowhere else.
    void Set_Capture(bool on);
    void Select_Notes_Octave(int octave);
    void Select_QChords_Octave(int octave);
    void Show_Levels(float left, float right, int elapsedMs);
    bool Meters_Are_Still() const;
    void Clear_Clips();
    Piano_View& Piano() { return *piano; }
    Staff_View& Staff() { return *staff; }
    /// The note heads of what sounds, on or off; kept in the settings.
    void View_Staff(bool on);

    void On_Note_Shown(int note) override { ShowNote(note); }
    void On_Note_Hidden(int note) override { HideNote(note); }
    void On_Key_Pressed(int key) override;
    void On_Key_Released(int key) override;
    void On_Octaves_Changed() override { UpdateLayout(); }
    void On_Run_Started(bool recording) override;
    void On_Run_Ended() override;

    /// Without the chords, which a narrow pane leaves out.
    QSize minimumSizeHint() const override;

signals:
    void soundBegan(); ///< something sounds: the meters have work

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool Feed_Key(const QKeyEvent& event, bool down);
    void Mouse_Note_On(int note, int velocity);
    void Mouse_Note_Off(int note);
    void Lay_Out();
    void Fit_Chips();
    void Fit_Height();

    Session& session;
    Theme& theme;
    Observer_Link link;
    std::int32_t channelId = NOT_GIVEN;
    Segment_Selector* notesOctave;
    Segment_Selector* chordsOctave;
    QLabel* layoutName;
    QCheckBox* Check1; ///< View Staff
    Staff_View* staff;
    Piano_View* piano;
    Chord_Chips* chips;
    Level_Meter* meters;
    std::array<int, 128> presses{};
    int mouseRow = -1;
    bool capture = false;
};

} // namespace tonvex
