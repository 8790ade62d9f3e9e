#include "input/windows/frm_qchord_config.h"

#include "platform/qt/core_words.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include <algorithm>

namespace tonvex {

frmQChordConfig::frmQChordConfig(Session& owner, const Theme& look, std::int32_t channel, QWidget* parent)
    : QDialog(parent), session(owner), theme(look), channelId(channel), sound(owner) {
    setWindowTitle(tr("QChord Config"));
    Make_Controls();
    Connect_Controls();
    Load_WorkStruct(work);
}

void frmQChordConfig::Connect_Controls() {
    connect(sources, &QButtonGroup::idClicked, this,
            [this](int id) { Source_Chosen(static_cast<Chord_Source>(id)); });
    // What the user chooses builds the chord; what a record shows leaves it as it is.
    for (QListWidget* list : {List1, List2})
        connect(list, &QListWidget::currentRowChanged, this, &frmQChordConfig::Chord_Chosen);
    connect(Combo1, &QComboBox::currentIndexChanged, this, &frmQChordConfig::Chord_Chosen);
    connect(edit, &QPushButton::clicked, this, &frmQChordConfig::Edit_Custom);
    connect(Check1, &QCheckBox::toggled, this, &frmQChordConfig::Enable_Controls);
    connect(Check3, &QCheckBox::toggled, this, &frmQChordConfig::Enable_Controls);
    connect(VScroll1, &QSlider::valueChanged, this,
            [this](int value) { volumeValue->setText(QString::number(value)); });
    connect(Command5, &QPushButton::clicked, this, &frmQChordConfig::Toggle_Test);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(&sound, &Test_Sound::stopped, this, [this] {
        busy = false;
        Command5->setText(tr("&Test chord"));
        Enable_Controls();
    });
}

void frmQChordConfig::Set_About(const QString& text) {
    about->setText(text);
}

void frmQChordConfig::Disable_VariableOctave() {
    if (!activeOctaveOffered)
        return;
    activeOctaveOffered = false;
    const QSignalBlocker quiet(Combo1);
    Combo1->removeItem(0);
}

/// Row of Combo1 of an octave, -1 for one that is not offered.
int frmQChordConfig::Fixed_Octave_Row(int octave) const {
    const int row = activeOctaveOffered ? octave : octave - 1;
    return row < Combo1->count() ? row : -1;
}

/// Where there is no active octave, as the event sounds them.
std::vector<int> frmQChordConfig::Sounding_Notes() const {
    return QChord_Edit::Sounding_Notes(work, activeOctaveOffered ? session.layout->QChordsOctave
                                                                 : QChordClass::Stored_Octave(work));
}

void frmQChordConfig::Load_WorkStruct(const QChordData& record) {
    work = record;
    const double tempo = session.project.ProjectTempo;
    const QChord_Choice choice = QChord_Edit::Choice_Of(record, tempo);
    const QSignalBlocker quiet[] = {QSignalBlocker(List1), QSignalBlocker(List2), QSignalBlocker(Combo1)};
    sources->button(static_cast<int>(choice.source))->setChecked(true);
    List1->setCurrentRow(choice.root < List1->count() ? choice.root : -1);
    List2->setCurrentRow(choice.type);
    Combo1->setCurrentIndex(Fixed_Octave_Row(choice.octave));
    Text3->setText(QString::fromStdString(choice.name));
    VScroll1->setValue(choice.volume);
    volumeValue->setText(QString::number(choice.volume));
    Check1->setChecked(choice.picking.usePicking);
    Check2->setChecked(choice.repeat);
    Check3->setText(tr("Use &beats (%1 BPM)").arg(tempo));
    Check3->setChecked(choice.picking.useBeats);
    Text1->setText(QString::fromStdString(choice.picking.delay));
    Text2->setText(QString::fromStdString(choice.picking.pattern));
    List3->setCurrentRow(choice.picking.beatsRow);
    Show_Notes();
    Enable_Controls();
}

Chord_Source frmQChordConfig::Source() const {
    return static_cast<Chord_Source>(sources->checkedId());
}

void frmQChordConfig::Source_Chosen(Chord_Source source) {
    if (source == Chord_Source::Custom) {
        QChord_Edit::Set_Custom(Sounding_Notes(), work);
        Show_Notes();
    } else {
        const QSignalBlocker quiet[] = {QSignalBlocker(List1), QSignalBlocker(List2), QSignalBlocker(Combo1)};
        if (List1->currentRow() < 0)
            List1->setCurrentRow(0);
        if (List2->currentRow() < 0)
            List2->setCurrentRow(0);
        Chord_Chosen();
    }
    Enable_Controls();
}

void frmQChordConfig::Chord_Chosen() {
    if (Source() == Chord_Source::Custom || List1->currentRow() < 0 || List2->currentRow() < 0)
        return;
    if (Combo1->currentIndex() < 0) { // the octave of a record that offers none
        const QSignalBlocker quiet(Combo1);
        Combo1->setCurrentIndex(0);
    }
    const int octave = Combo1->currentIndex() + (activeOctaveOffered ? 0 : 1);
    QChord_Edit::Set_Chord(session.notes, Source(), List1->currentRow(), List2->currentRow(), octave, work);
    Text3->setText(QString::fromStdString(work.ChordName));
    Show_Notes();
}

void frmQChordConfig::Edit_Custom() {
    if (pianoWindow != nullptr || busy)
        return;
    pianoWindow = new frmPianoLayout(session, theme, channelId, this);
    pianoWindow->setAttribute(Qt::WA_DeleteOnClose);
    pianoWindow->SetMode(Piano_Selection::Mode::Chord);
    pianoWindow->SetVolume(VScroll1->value());
    pianoWindow->SetChord(Sounding_Notes());
    connect(pianoWindow.data(), &QDialog::accepted, this, &frmQChordConfig::frmPianoLayoutObj_Closed);
    pianoWindow->open();
}

void frmQChordConfig::frmPianoLayoutObj_Closed() {
    QChord_Edit::Set_Custom(pianoWindow->GetChord(), work);
    VScroll1->setValue(pianoWindow->GetVolume());
    Show_Notes();
}

void frmQChordConfig::Show_Notes() {
    Label7->setText(Core_Words(QChord_Edit::Notes_Text(session.notes, work)));
}

void frmQChordConfig::Enable_Controls() {
    const Chord_Source source = Source();
    const bool custom = source == Chord_Source::Custom;
    List1->setEnabled(!custom);
    List2->setEnabled(!custom);
    Combo1->setEnabled(source == Chord_Source::Piano);
    edit->setEnabled(custom && !busy);
    frame->setEnabled(Check1->isChecked());
    Text1->setEnabled(!Check3->isChecked());
    List3->setEnabled(Check3->isChecked());
    ok->setEnabled(!busy);
}

Picking_Choice frmQChordConfig::Picking() const {
    return {Check1->isChecked(), Check3->isChecked(), Text1->text().toStdString(),
            Text2->text().toStdString(), List3->currentRow()};
}

void frmQChordConfig::Warn(const std::string& text) {
    session.doors.dialogs.Show_Message(Box_Kind::Warning, text, windowTitle().toStdString());
}

/// False after a warning.
bool frmQChordConfig::Read_Controls() {
    if (work.Active == 0) {
        Warn("No chord selected");
        return false;
    }
    const std::string warning = QChord_Edit::Read_Picking(Picking(), work);
    if (!warning.empty()) {
        Warn(warning);
        return false;
    }
    work.ChordName = Text3->text().trimmed().toStdString();
    work.ChordVol = static_cast<std::uint8_t>(VScroll1->value());
    work.ChordFlagB = Check2->isChecked() ? 1 : 0;
    return true;
}

void frmQChordConfig::Toggle_Test() {
    if (busy) {
        sound.Stop();
        return;
    }
    if (!Read_Controls())
        return;
    busy = true;
    Command5->setText(tr("S&top"));
    Enable_Controls();
    const int slot = sound.Slot_Of(channelId);
    if (activeOctaveOffered)
        sound.Start_Chord(slot, work, session.layout->QChordsOctave);
    else
        sound.Start_Stored_Chord(slot, work);
}

void frmQChordConfig::accept() {
    if (!busy && Read_Controls())
        QDialog::accept();
}

void frmQChordConfig::done(int result) {
    sound.Stop();
    QDialog::done(result);
}

} // namespace tonvex
