#include "input/windows/frm_piano_layout.h"

#include "input/windows/piano_marks.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int OCTAVE = 12;
constexpr int TEST_MS = 1500;
constexpr int MOST_VOLUME = 127;

} // namespace

frmPianoLayout::frmPianoLayout(Session& owner, const Theme& look, std::int32_t channel, QWidget* parent)
    : QDialog(parent), session(owner), theme(look), channelId(channel), sound(owner) {
    setWindowTitle(tr("Piano layout"));
    Make_Controls();
    piano->octaveName = [this](int octave) { return Place_Name(selection.First_Place() + octave * OCTAVE); };
    piano->slotName = [this](int slot) { return Place_Name(selection.First_Place() + slot); };
    connect(piano, &Piano_Marks::toggled, this, &frmPianoLayout::Show_Selection);
    connect(octaves, &QComboBox::activated, this, [this](int row) {
        selection.Set_First_Place(row * OCTAVE);
        piano->Selection_Changed();
    });
    connect(Check1, &QCheckBox::clicked, this, [this](bool on) {
        selection.Set_Variable(on, Octave_Start());
        Fill_Octaves();
        Show_Selection();
    });
    connect(HScroll1, &QSlider::valueChanged, Text1, &QSpinBox::setValue);
    connect(Text1, &QSpinBox::valueChanged, HScroll1, &QSlider::setValue);
    connect(Command1, &QPushButton::clicked, this, &frmPianoLayout::Toggle_Test);
    connect(Command2, &QPushButton::clicked, this, &QDialog::accept);
    connect(Command3, &QPushButton::clicked, this, &QDialog::reject);
    connect(&sound, &Test_Sound::stopped, this, [this] { Command1->setText(tr("&Test")); });
    SetVolume(MOST_VOLUME);
    SetMode(Piano_Selection::Mode::Note);
    piano->setFocus();
}

void frmPianoLayout::Make_Controls() {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    about = new QLabel(this);
    about->setObjectName(QStringLiteral("about"));
    about->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    all->addWidget(about);
    chosen = new QLabel(this);
    chosen->setObjectName(QStringLiteral("chosen"));
    chosen->setWordWrap(true);
    all->addWidget(chosen);
    all->addWidget(Make_Octave_Row());
    piano = new Piano_Marks(theme, selection, this);
    piano->setObjectName(QStringLiteral("piano"));
    all->addWidget(piano, 1);
    all->addWidget(Make_Volume_Row());
    auto* buttons = new QHBoxLayout;
    Command1 = new QPushButton(tr("&Test"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setAccessibleName(tr("Test the notes"));
    Command1->setToolTip(tr("Sounds what is marked on the selected channel"));
    Command1->setAutoDefault(false);
    Command3 = new QPushButton(tr("&Cancel"), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Command3->setAutoDefault(false);
    Command2 = new QPushButton(tr("O&K"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command2->setDefault(true);
    buttons->addWidget(Command1);
    buttons->addStretch(1);
    buttons->addWidget(Command3);
    buttons->addWidget(Command2);
    all->addLayout(buttons);
}

QWidget* frmPianoLayout::Make_Octave_Row() {
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("&First octave:"), line);
    octaves = new QComboBox(line);
    octaves->setObjectName(QStringLiteral("octaves"));
    octaves->setAccessibleName(tr("First octave of the piano"));
    label->setBuddy(octaves);
    Check1 = new QCheckBox(tr("&Variable Octave"), line);
    Check1->setObjectName(QStringLiteral("Check1"));
    Check1->setToolTip(tr("The note follows the octave that F1 to F6 select"));
    row->addWidget(label);
    row->addWidget(octaves);
    row->addStretch(1);
    row->addWidget(Check1);
    return line;
}

QWidget* frmPianoLayout::Make_Volume_Row() {
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("V&olume:"), line);
    HScroll1 = new QSlider(Qt::Horizontal, line);
    HScroll1->setObjectName(QStringLiteral("HScroll1"));
    HScroll1->setAccessibleName(tr("Volume"));
    HScroll1->setRange(0, MOST_VOLUME);
    HScroll1->setPageStep(16);
    Text1 = new QSpinBox(line);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Volume as a number"));
    Text1->setRange(0, MOST_VOLUME);
    Text1->setButtonSymbols(QAbstractSpinBox::NoButtons);
    Text1->setAlignment(Qt::AlignRight);
    label->setBuddy(Text1);
    row->addWidget(label);
    row->addWidget(HScroll1, 1);
    row->addWidget(Text1);
    return line;
}

int frmPianoLayout::Octave_Start() const {
    return session.layout->Sounding_Note(Piano_Selection::RELATIVE);
}

int frmPianoLayout::Sounding(int stored) const {
    return session.layout->Sounding_Note(stored);
}

QString frmPianoLayout::Place_Name(int place) const {
    if (selection.Variable())
        return place % OCTAVE == 0
                   ? QStringLiteral("+%1").arg(place / OCTAVE)
                   : QString::fromStdString(session.notes.NoteName(Piano_Selection::RELATIVE + place, true));
    return QString::fromStdString(session.notes.NoteName(place));
}

void frmPianoLayout::Fill_Octaves() {
    octaves->clear();
    for (int place = 0; place <= Piano_Selection::LAST_FIRST_PLACE; place += OCTAVE)
        octaves->addItem(selection.Variable() ? Place_Name(place)
                                              : tr("%1 (note %2)").arg(Place_Name(place)).arg(place));
}

void frmPianoLayout::Show_Selection() {
    octaves->setCurrentIndex(selection.First_Place() / OCTAVE);
    Check1->setChecked(selection.Variable());
    QStringList names;
    for (const int note : selection.Notes())
        names << QString::fromStdString(session.notes.NoteName(note, true));
    const bool chord = selection.Get_Mode() == Piano_Selection::Mode::Chord;
    chosen->setText(names.isEmpty()
                        ? tr("Nothing marked yet. Click a key, or move with the arrows and press Space.")
                    : chord ? tr("Notes: %1").arg(names.join(QLatin1Char(' ')))
                            : tr("Note: %1").arg(names.front()));
    piano->Selection_Changed();
}

void frmPianoLayout::SetMode(Piano_Selection::Mode mode) {
    const bool chord = mode == Piano_Selection::Mode::Chord;
    selection.SetMode(mode);
    if (chord && selection.Variable())
        selection.Set_Variable(false, Octave_Start());
    Check1->setVisible(variableAllowed && !chord);
    Set_About(chord ? tr("The notes of the chord") : tr("The note of the key"));
    Fill_Octaves();
    Show_Selection();
}

void frmPianoLayout::Set_About(const QString& text) {
    about->setText(text);
}

void frmPianoLayout::SetVolume(int volume) {
    HScroll1->setValue(std::clamp(volume, 0, MOST_VOLUME));
    Text1->setValue(HScroll1->value());
}

int frmPianoLayout::GetVolume() const {
    return HScroll1->value();
}

void frmPianoLayout::SetChord(const std::vector<int>& notes) {
    selection.Set_Notes(notes);
    const bool chord = selection.Get_Mode() == Piano_Selection::Mode::Chord;
    if (selection.Variable() && (chord || !variableAllowed))
        selection.Set_Variable(false, Octave_Start());
    Fill_Octaves();
    Show_Selection();
    piano->Go_To_Mark();
}

void frmPianoLayout::Disable_VariableOctave() {
    variableAllowed = false;
    if (selection.Variable())
        selection.Set_Variable(false, Octave_Start());
    Check1->hide();
    Fill_Octaves();
    Show_Selection();
}

void frmPianoLayout::Toggle_Test() {
    if (sound.Is_On()) {
        sound.Stop();
        return;
    }
    std::vector<int> notes = selection.Notes();
    for (int& note : notes)
        note = Sounding(note);
    if (notes.empty())
        return;
    Command1->setText(tr("S&top"));
    sound.Start_Notes(sound.Slot_Of(channelId), notes, GetVolume(), TEST_MS);
}

void frmPianoLayout::accept() {
    const std::string warning = selection.Check();
    if (warning.empty())
        QDialog::accept();
    else
        session.doors.dialogs.Show_Message(Box_Kind::Warning, warning, windowTitle().toStdString());
}

void frmPianoLayout::done(int result) {
    sound.Stop();
    QDialog::done(result);
}

} // namespace tonvex
