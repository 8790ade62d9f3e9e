#pragma once

#include "input/qchord_edit.h"
#include "input/windows/frm_piano_layout.h"
#include "input/windows/test_sound.h"
#include "widgets/theme.h"

#include <QDialog>
#include <QPointer>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSlider;

namespace tonvex {

/// "QChord Config": one chord record, with its picking. It works on the record handed in; the caller takes
/// it back when the dialog was accepted. Interface thread. Session and theme outlive it.
class frmQChordConfig final : public QDialog {
    Q_OBJECT
public:
    frmQChordConfig(Session& session, const Theme& theme, std::int32_t channelId, QWidget* parent = nullptr);

    void Load_WorkStruct(const QChordData& record);
    void Get_WorkStruct(QChordData& record) const { record = work; }
    /// For callers to whom there is no active octave. Before Load_WorkStruct.
    void Disable_VariableOctave();
    /// What the chord is for, on top.
    void Set_About(const QString& text);
    /// The piano of a custom chord while it is open.
    frmPianoLayout* Open_Piano() const { return pianoWindow; }

    void accept() override;
    void done(int result) override;

private:
    void Make_Controls();
    QLayout* Make_Kinds();
    QWidget* Make_Chord_Part();
    QWidget* Make_Name_Part();
    QWidget* Make_Picking_Part();
    QLayout* Make_Presets();
    void Connect_Controls();

    Chord_Source Source() const;
    void Source_Chosen(Chord_Source source);
    void Chord_Chosen();
    void Edit_Custom();
    void frmPianoLayoutObj_Closed();
    void Show_Notes();
    void Enable_Controls();
    Picking_Choice Picking() const;
    bool Read_Controls();
    void Warn(const std::string& text);
    void Toggle_Test();
    int Fixed_Octave_Row(int octave) const;
    std::vector<int> Sounding_Notes() const;

    Session& session;
    const Theme& theme;
    std::int32_t channelId;
    QChordData work;
    Test_Sound sound;
    bool busy = false; ///< a test is on
    bool activeOctaveOffered = true;
    QPointer<frmPianoLayout> pianoWindow;

    QLabel* about = nullptr;
    QButtonGroup* sources = nullptr; ///< by Chord_Source
    QListWidget* List1 = nullptr;    ///< roots
    QListWidget* List2 = nullptr;    ///< chord types
    QListWidget* List3 = nullptr;    ///< note lengths
    QComboBox* Combo1 = nullptr;     ///< octave
    QPushButton* edit = nullptr;
    QLabel* Label7 = nullptr;    ///< notes
    QLineEdit* Text1 = nullptr;  ///< delay
    QLineEdit* Text2 = nullptr;  ///< pattern
    QLineEdit* Text3 = nullptr;  ///< name
    QCheckBox* Check1 = nullptr; ///< picking
    QCheckBox* Check2 = nullptr; ///< repeat
    QCheckBox* Check3 = nullptr; ///< beats
    QWidget* frame = nullptr;    ///< all that concerns picking
    QSlider* VScroll1 = nullptr; ///< volume
    QLabel* volumeValue = nullptr;
    QPushButton* Command5 = nullptr; ///< test
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

} // namespace tonvex
