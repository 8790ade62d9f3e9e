#include "engine/windows/frm_metronome_setup.h"

#include "base/rounding.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr int HIGHEST_NOTE = 127;
constexpr int LOUDEST = 100;
constexpr double VELOCITY_FACTOR = 1.27;
constexpr int SLOWEST = 20;
constexpr int FASTEST = 300;

} // namespace

frmMetronomeSetup::frmMetronomeSetup(Session& owner, const Theme& look, QWidget* parent)
    : Plain_Dialog(look, tr("Setup Metronome"), tr("The click on every beat of a recording"), parent),
      session(owner), link(session.observers, *this) {
    setObjectName(QStringLiteral("frmMetronomeSetup"));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(theme.Px(12));
    grid->setVerticalSpacing(theme.Px(12));
    grid->setColumnStretch(2, 1);
    note = Make_Pair(grid, tr("&Note:"), tr("Note of the click"), 1, HIGHEST_NOTE);
    volume = Make_Pair(grid, tr("&Volume:"), tr("Volume of the click"), 2, LOUDEST);
    speed =
        Make_Pair(grid, tr("&Speed of the test:"), tr("Speed of the test in beats per minute"), 3, FASTEST);
    noteName = new QLabel(this);
    speedLabel = new QLabel(tr("(Project speed)"), this);
    speedLabel->setObjectName(QStringLiteral("speedLabel"));
    for (QLabel* label : {noteName, speedLabel}) {
        label->setProperty("dim", true);
        label->setTextFormat(Qt::PlainText);
    }
    grid->addWidget(noteName, 0, 3);
    grid->addWidget(speedLabel, 2, 3);
    grid->setColumnMinimumWidth(3, theme.Px(130));
    column->addLayout(grid);

    const Foot foot = Add_Buttons();
    foot.ok->setObjectName(QStringLiteral("Command1"));
    foot.cancel->setObjectName(QStringLiteral("Command2"));
    Command3 = new QPushButton(tr("Test Metronome"), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Command3->setAutoDefault(false);
    // Its text changes; its place and its neighbours stay.
    Command3->setMinimumWidth(Command3->sizeHint().width());
    foot.row->insertWidget(0, Command3);
    setTabOrder(Command3, foot.cancel);
    setTabOrder(foot.cancel, foot.ok);

    connect(note.text, &QSpinBox::valueChanged, this, &frmMetronomeSetup::Show_Note_Name);
    connect(speed.text, &QSpinBox::valueChanged, this, &frmMetronomeSetup::Show_Speed);
    connect(Command3, &QPushButton::clicked, this, &frmMetronomeSetup::Toggle_Test);
    clicks.setSingleShot(true);
    clicks.setTimerType(Qt::PreciseTimer);
    connect(&clicks, &QTimer::timeout, this, &frmMetronomeSetup::Click);
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        if (msgId == MSG_GENERAL_UPDATE)
            Take_Song();
    });
    Take_Song();
    Show_Note_Name();
}

frmMetronomeSetup::~frmMetronomeSetup() {
    session.events.Unsubscribe(subscription);
}

/// What the user has set stays where the song's own value is as it was.
void frmMetronomeSetup::Take_Song() {
    const Project_State& project = session.project;
    const int tempo = project.ProjectTempo;
    if (std::exchange(songNote, project.MetronomeNoteB) != project.MetronomeNoteB)
        note.text->setValue(songNote);
    if (std::exchange(songVolume, project.MetronomeNoteA) != project.MetronomeNoteA)
        volume.text->setValue(songVolume);
    if (std::exchange(songTempo, tempo) != tempo) {
        speed.text->setRange(std::min(SLOWEST, tempo), std::max(FASTEST, tempo));
        speed.bar->setRange(speed.text->minimum(), speed.text->maximum());
        speed.text->setValue(tempo);
    }
    Show_Speed();
}

frmMetronomeSetup::Pair frmMetronomeSetup::Make_Pair(QGridLayout* grid, const QString& caption,
                                                     const QString& name, int number, int most) {
    Pair pair{new QSpinBox(this), new QSlider(Qt::Horizontal, this)};
    pair.text->setObjectName(QStringLiteral("Text%1").arg(number));
    pair.bar->setObjectName(QStringLiteral("HScroll%1").arg(number));
    pair.text->setAccessibleName(name);
    pair.bar->setAccessibleName(name);
    pair.text->setButtonSymbols(QAbstractSpinBox::NoButtons);
    pair.text->setRange(0, most);
    pair.bar->setRange(0, most);
    pair.bar->setMinimumWidth(theme.Px(200));
    connect(pair.bar, &QSlider::valueChanged, pair.text, &QSpinBox::setValue);
    connect(pair.text, &QSpinBox::valueChanged, pair.bar, &QSlider::setValue);
    auto* label = new QLabel(caption, this);
    label->setBuddy(pair.text);
    const int row = number - 1;
    grid->addWidget(label, row, 0);
    grid->addWidget(pair.text, row, 1);
    grid->addWidget(pair.bar, row, 2);
    return pair;
}

void frmMetronomeSetup::Show_Note_Name() {
    const int row = note.text->value() - NotesStuff::FIRST_DRUM_NOTE;
    const bool named = row >= 0 && row < NotesStuff::DRUM_NAMES;
    noteName->setText(
        named ? QString::fromStdString(session.notes.DrumSoundNames[static_cast<std::size_t>(row)])
              : QString());
}

void frmMetronomeSetup::Show_Speed() {
    const bool same = speed.text->value() == session.project.ProjectTempo;
    speedLabel->setText(same ? tr("(Project speed)") : QString());
}

void frmMetronomeSetup::Toggle_Test() {
    if (clicks.isActive()) {
        Stop_Test();
        return;
    }
    Command3->setText(tr("Stop"));
    nextClickMs = session.doors.counter.Now_Ms();
    Click();
}

void frmMetronomeSetup::Stop_Test() {
    clicks.stop();
    Command3->setText(tr("Test Metronome"));
}

void frmMetronomeSetup::Click() {
    const auto velocity = static_cast<int>(RoundHalfEven(volume.text->value() * VELOCITY_FACTOR));
    session.output->Midi_NoteOn(DRUM_SLOT, note.text->value(), velocity);
    // By the clock, so that the beats do not drift by what a timer comes late; a beat that was missed while
    // the program was busy is not made up for.
    const std::int64_t nowMs = session.doors.counter.Now_Ms();
    const std::int64_t beatMs = RoundHalfEven(Beat_Length_Ms(speed.text->value()));
    nextClickMs = std::max(nextClickMs + beatMs, nowMs);
    clicks.start(static_cast<int>(nextClickMs - nowMs));
}

void frmMetronomeSetup::accept() {
    Project_State& project = session.project;
    if (note.text->value() != project.MetronomeNoteB || volume.text->value() != project.MetronomeNoteA) {
        project.MetronomeNoteB = note.text->value();
        project.MetronomeNoteA = volume.text->value();
        project.Modified = true;
        session.hub->Message(this, MSG_GENERAL_UPDATE);
    }
    QDialog::accept();
}

void frmMetronomeSetup::done(int result) {
    Stop_Test();
    QDialog::done(result);
}

void frmMetronomeSetup::On_Run_Started(bool) {
    Stop_Test();
}

} // namespace tonvex
