#pragma once

#include "input/piano_selection.h"
#include "input/windows/test_sound.h"
#include "widgets/theme.h"

#include <QDialog>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

namespace tonvex {

class Piano_Marks;

/// "Piano layout": one note, or the notes of a chord, clicked on a piano. It works on what it was handed;
/// the caller takes the answer when the dialog was accepted. Interface thread. Session and theme outlive it.
class frmPianoLayout final : public QDialog {
    Q_OBJECT
public:
    frmPianoLayout(Session& session, const Theme& theme, std::int32_t channelId, QWidget* parent = nullptr);

    /// One note or a chord. The notes of a chord are always MIDI notes.
    void SetMode(Piano_Selection::Mode mode);
    /// 0 to 127.
    void SetVolume(int volume);
    int GetVolume() const;
    /// Stored notes: MIDI notes, or from 128 on semitones above the active octave.
    void SetChord(const std::vector<int>& notes);
    std::vector<int> GetChord() const { return selection.Notes(); }
    /// For callers to whom there is no active octave.
    void Disable_VariableOctave();
    /// What the notes are for, above the piano.
    void Set_About(const QString& text);
    Piano_Marks& Piano() { return *piano; }

    void accept() override;
    void done(int result) override;

private:
    void Make_Controls();
    QWidget* Make_Octave_Row();
    QWidget* Make_Volume_Row();
    int Octave_Start() const;
    int Sounding(int stored) const;
    QString Place_Name(int place) const;
    void Fill_Octaves();
    void Show_Selection();
    void Toggle_Test();

    Session& session;
    const Theme& theme;
    std::int32_t channelId;
    Piano_Selection selection;
    Test_Sound sound;
    bool variableAllowed = true;
    QLabel* about = nullptr;
    QLabel* chosen = nullptr;
    QComboBox* octaves = nullptr;
    Piano_Marks* piano = nullptr;
    QCheckBox* Check1 = nullptr;     ///< Variable Octave
    QSlider* HScroll1 = nullptr;     ///< volume
    QSpinBox* Text1 = nullptr;       ///< its number
    QPushButton* Command1 = nullptr; ///< Test
    QPushButton* Command2 = nullptr; ///< OK
    QPushButton* Command3 = nullptr; ///< Cancel
};

} // namespace tonvex
