#include "input/windows/frm_rec_piano_layout.h"

#include "input/fallback_keys.h"
#include "input/windows/layout_notice.h"
#include "input/windows/staff_view.h"
#include "platform/qt/virtual_keys.h"
#include "widgets/chord_chips.h"
#include "widgets/key_captions.h"
#include "widgets/level_meter.h"
#include "widgets/piano_view.h"
#include "widgets/segment_selector.h"
#include "widgets/tool_button.h"

#include <QCheckBox>
#include <QDockWidget>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QPainter>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int COMPUTER_KEYS = 256;
constexpr int USUAL_FIRST = 36; ///< five octaves from C2
constexpr int SHOWN_SEMITONES = 60;
constexpr int OCTAVES = 6;
constexpr int NOTE_OFF_VELOCITY = 100;
constexpr int COMFORT = 160;   ///< what the piano gets above its least width before chords take room
constexpr int LEAST_PANE = 80; ///< heights at 100 %: with all that must be, without and with the staff
constexpr int LOW_PANE = 124;
constexpr int HIGH_PANE = 176;

} // namespace

frmREC_PianoLayout::frmREC_PianoLayout(Session& owner, Theme& look, QWidget* parent)
    : QWidget(parent), session(owner), theme(look), link(session.observers, *this),
      notesOctave(new Segment_Selector(theme, tr("Notes Octave"), tr("F1 to F6"), OCTAVES, this)),
      chordsOctave(new Segment_Selector(theme, tr("QChords Octave"), tr("F7 to F12"), OCTAVES, this)),
      layoutName(new QLabel(this)), Check1(new QCheckBox(tr("View Staff"), this)),
      staff(new Staff_View(theme, this)), piano(new Piano_View(theme, this)),
      chips(new Chord_Chips(theme, this)), meters(new Level_Meter(theme, tr("Output level"), 2, this)) {
    setAccessibleName(tr("Piano layout (Rec)"));
    setWindowTitle(tr("Piano layout (Rec)"));
    setFocusPolicy(Qt::ClickFocus);
    layoutName->setProperty("dim", true);
    meters->Set_Design_Size(14, 92);
    Check1->setObjectName(QStringLiteral("Check1"));
    Lay_Out();
    Check1->setChecked(session.settings.Global_PianoLayout_ShowStaff != 0);
    staff->setVisible(Check1->isChecked());
    Fit_Height();
    connect(Check1, &QCheckBox::clicked, this, &frmREC_PianoLayout::View_Staff);
    connect(&theme, &Theme::Changed, this, &frmREC_PianoLayout::Fit_Height);
    connect(notesOctave, &Segment_Selector::chosenByUser, this, &frmREC_PianoLayout::Select_Notes_Octave);
    connect(chordsOctave, &Segment_Selector::chosenByUser, this, &frmREC_PianoLayout::Select_QChords_Octave);
    connect(piano, &Piano_View::notePressed, this, &frmREC_PianoLayout::Mouse_Note_On);
    connect(piano, &Piano_View::noteReleased, this, &frmREC_PianoLayout::Mouse_Note_Off);
    UpdateLayout();
}

frmREC_PianoLayout::~frmREC_PianoLayout() {
    if (session.gcm->viewer == this)
        session.gcm->viewer = nullptr;
}

void frmREC_PianoLayout::Lay_Out() {
    auto* octaves = new QGridLayout;
    octaves->addWidget(new QLabel(tr("Notes Octave:"), this), 0, 0);
    octaves->addWidget(notesOctave, 0, 1);
    octaves->addWidget(new QLabel(tr("QChords Octave:"), this), 1, 0);
    octaves->addWidget(chordsOctave, 1, 1);
    octaves->addWidget(layoutName, 2, 0, 1, 2);
    octaves->addWidget(Check1, 3, 0, 1, 2);
    octaves->setHorizontalSpacing(theme.Px(8));
    octaves->setVerticalSpacing(theme.Px(4));
    octaves->setRowStretch(4, 1);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(theme.Px(12), theme.Px(8), theme.Px(12), theme.Px(8));
    row->setSpacing(theme.Px(16));
    row->addLayout(octaves);
    row->addWidget(piano, 1);
    row->addWidget(staff);
    row->addWidget(chips, 0, Qt::AlignVCenter);
    row->addWidget(meters, 0, Qt::AlignVCenter);
}

QSize frmREC_PianoLayout::minimumSizeHint() const {
    QSize least = QWidget::minimumSizeHint();
    if (!chips->isHidden())
        least.rwidth() -= chips->minimumSizeHint().width() + layout()->spacing();
    least.setHeight(theme.Px(Check1->isChecked() ? LOW_PANE : LEAST_PANE));
    return least;
}

void frmREC_PianoLayout::resizeEvent(QResizeEvent*) {
    // A low pane keeps its piano and its octaves.
    const bool low = height() < theme.Px(LOW_PANE) - theme.Px(8);
    layoutName->setVisible(!low);
    Check1->setVisible(!low);
    meters->Set_Design_Size(14, low ? 60 : 92);
    Fit_Chips();
}

void frmREC_PianoLayout::Fit_Chips() {
    // A narrow pane keeps its piano and leaves the chords out.
    const int needed = minimumSizeHint().width() + layout()->spacing() + chips->minimumSizeHint().width() +
                       theme.Px(COMFORT);
    const bool shown = !chips->Chips().empty() && needed <= width() && Check1->isVisibleTo(this);
    if (chips->isHidden() == shown)
        chips->setVisible(shown);
}

void frmREC_PianoLayout::Fit_Height() {
    setMaximumHeight(theme.Px(Check1->isChecked() ? HIGH_PANE : LOW_PANE));
}

void frmREC_PianoLayout::View_Staff(bool on) {
    session.settings.Global_PianoLayout_ShowStaff = on ? 1 : 0;
    Check1->setChecked(on);
    staff->Clear();
    for (int note = LOWEST_SHOWN; on && note < 128; ++note)
        if (presses[static_cast<std::size_t>(note)] > 0)
            staff->Set_Note(note, session.notes.NoteName(note));
    Fit_Height();
    staff->setVisible(on);
    // The staves need the height to be read.
    auto* dock = qobject_cast<QDockWidget*>(parentWidget());
    auto* window = dock == nullptr ? nullptr : qobject_cast<QMainWindow*>(dock->parentWidget());
    if (on && window != nullptr && !dock->isFloating())
        window->resizeDocks({dock}, {theme.Px(HIGH_PANE)}, Qt::Vertical);
}

void frmREC_PianoLayout::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), theme.Tokens().panel);
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, rect(), theme.Px(5));
}

void frmREC_PianoLayout::UpdateLayout() {
    const KeyboardLayout& layout = *session.layout;
    const auto captions = Key_Captions();
    std::array<QString, 128> letters;
    std::vector<Chord_Chips::Chip> chords;
    int lowest = 127;
    int highest = 0;
    for (int key = 0; key < COMPUTER_KEYS; ++key) {
        const KeyMapEntry& entry = layout.KeyMap[static_cast<std::size_t>(key)];
        const QString& letter = captions[static_cast<std::size_t>(key)];
        if (entry.Enabled == 0 || letter.isEmpty() || entry.Target < 0 ||
            entry.Target >= KeyboardLayout::KEYS)
            continue;
        const auto target = static_cast<std::size_t>(entry.Target);
        if (entry.Kind == KEY_QCHORD) {
            chords.push_back({key, letter, QString::fromStdString(layout.KeyQChordTable[target].ChordName)});
        } else if (entry.Kind == KEY_NOTE) {
            const int note = layout.Sounding_Note(layout.KeyNoteTable[target].Note);
            if (note < 0 || note > 127)
                continue;
            QString& label = letters[static_cast<std::size_t>(note)];
            if (label.isEmpty())
                label = letter;
            lowest = std::min(lowest, note);
            highest = std::max(highest, note);
        }
    }
    // Five octaves: the usual ones, moved by octaves as far as the letters need.
    int first = USUAL_FIRST;
    if (lowest <= highest) {
        while (first > 0 && lowest < first)
            first -= 12;
        while (first + SHOWN_SEMITONES < highest && first + SHOWN_SEMITONES + 12 <= 127)
            first += 12;
    }
    std::array<QString, 128> names;
    for (int note = 0; note < 128; ++note)
        names[static_cast<std::size_t>(note)] = QString::fromStdString(session.notes.NoteName(note));
    piano->Set_Range(first, first + SHOWN_SEMITONES);
    piano->Set_Labels(letters);
    piano->Set_Note_Names(names);
    chips->Set_Chips(std::move(chords));
    Fit_Chips();
    notesOctave->Show_Choice(layout.NotesOctave);
    chordsOctave->Show_Choice(layout.QChordsOctave);
    layoutName->setText(
        tr("%1 · F1–F6 notes, F7–F12 chords").arg(QString::fromStdString(layout.KeyboardFileName)));
}

void frmREC_PianoLayout::Select_Notes_Octave(int octave) {
    session.layout->NotesOctave = std::clamp(octave, 0, OCTAVES - 1);
    Tell_Layout_Changed(session);
}

void frmREC_PianoLayout::Select_QChords_Octave(int octave) {
    session.layout->QChordsOctave = std::clamp(octave, 0, OCTAVES - 1);
    Tell_Layout_Changed(session);
}

void frmREC_PianoLayout::ShowNote(int note) {
    if (note < LOWEST_SHOWN || note > 127)
        return;
    int& count = presses[static_cast<std::size_t>(note)];
    // An off without its on, at the edge of a run, takes no later on away.
    count = std::max(count, 0) + 1;
    if (count == 1) {
        piano->Set_Lit(note, true);
        if (Check1->isChecked())
            staff->Set_Note(note, session.notes.NoteName(note));
    }
    emit soundBegan();
}

void frmREC_PianoLayout::HideNote(int note) {
    if (note < LOWEST_SHOWN || note > 127)
        return;
    if (--presses[static_cast<std::size_t>(note)] == 0) {
        piano->Set_Lit(note, false);
        staff->Clear_Note(note);
    }
}

void frmREC_PianoLayout::Clear_Notes() {
    presses.fill(0);
    piano->Clear_Lit();
    staff->Clear();
}

void frmREC_PianoLayout::On_Key_Pressed(int key) {
    chips->Set_Lit(key, true);
}

void frmREC_PianoLayout::On_Key_Released(int key) {
    chips->Set_Lit(key, false);
}

void frmREC_PianoLayout::On_Run_Started(bool) {
    Clear_Notes();
    emit soundBegan();
}

void frmREC_PianoLayout::On_Run_Ended() {
    Clear_Notes();
}

void frmREC_PianoLayout::Set_Channel(std::int32_t newId) {
    channelId = newId;
}

void frmREC_PianoLayout::Mouse_Note_On(int note, int velocity) {
    mouseRow = session.channels->ChannelI(channelId);
    if (mouseRow < 0)
        return;
    session.gcm->GCM_NoteOn(mouseRow, note, velocity, true);
    ShowNote(note);
    emit soundBegan();
}

void frmREC_PianoLayout::Mouse_Note_Off(int note) {
    if (mouseRow < 0)
        return;
    session.gcm->GCM_NoteOff(mouseRow, note, NOTE_OFF_VELOCITY, true);
    HideNote(note);
    mouseRow = -1;
}

void frmREC_PianoLayout::Set_Capture(bool on) {
    capture = on;
}

bool frmREC_PianoLayout::Feed_Key(const QKeyEvent& event, bool down) {
    if (!capture)
        return false;
    constexpr Qt::KeyboardModifiers COMMANDS = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (down && (event.modifiers() & COMMANDS) != 0)
        return false;
    // A key that plays does not come here then; the others have their functions.
    if (session.keyboard->DirectInputOK())
        return false;
    if (event.isAutoRepeat())
        return true;
    const int scanCode = Fallback_Scan_Code(Virtual_Key_Of(event));
    if (scanCode >= 0)
        session.keyboard->SetKeyState(scanCode, down ? 1 : 0, session.doors.counter.Now_Ns());
    return true;
}

void frmREC_PianoLayout::keyPressEvent(QKeyEvent* event) {
    if (!Feed_Key(*event, true))
        QWidget::keyPressEvent(event);
}

void frmREC_PianoLayout::keyReleaseEvent(QKeyEvent* event) {
    if (!Feed_Key(*event, false))
        QWidget::keyReleaseEvent(event);
}

bool frmREC_PianoLayout::event(QEvent* event) {
    // Without a key state the shortcuts of the window would take the letters that are to sound.
    if (event->type() == QEvent::ShortcutOverride && capture && !session.keyboard->DirectInputOK()) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if ((key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0 &&
            Fallback_Scan_Code(Virtual_Key_Of(key)) >= 0) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void frmREC_PianoLayout::focusOutEvent(QFocusEvent* event) {
    // The release of a key that is held now would go elsewhere.
    if (capture && !session.keyboard->DirectInputOK())
        for (int key = 0; key < COMPUTER_KEYS; ++key)
            session.keyboard->SetKeyState(key, 0, session.doors.counter.Now_Ns());
    QWidget::focusOutEvent(event);
}

void frmREC_PianoLayout::Show_Levels(float left, float right, int elapsedMs) {
    meters->Show_Peaks(left, right, elapsedMs);
}

void frmREC_PianoLayout::Clear_Clips() {
    meters->Clear_Clip();
}

bool frmREC_PianoLayout::Meters_Are_Still() const {
    return meters->Is_Still();
}

} // namespace tonvex
