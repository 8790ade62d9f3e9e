#include "song/windows/frm_set_pitch.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cstdlib>

namespace tonvex {

namespace {

constexpr int MOST_SEMITONES = 48;
constexpr int OCTAVE = 12;
constexpr int HIGHEST_NOTE = 127;

} // namespace

frmSetPitch::frmSetPitch(Session& owner, const Theme& look, QWidget* parent)
    : Plain_Dialog(look, tr("Change pitch"), tr("Move the whole song up or down"), parent), session(owner),
      Text1(new QSpinBox(this)), Label1(new QLabel(this)) {
    setObjectName(QStringLiteral("frmSetPitch"));
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(tr("&Semitones:"), this);
    label->setBuddy(Text1);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Semitones"));
    Text1->setToolTip(tr("Twelve are an octave; below 0 the song goes down"));
    Text1->setRange(-MOST_SEMITONES, MOST_SEMITONES);
    Text1->setButtonSymbols(QAbstractSpinBox::NoButtons);
    row->addWidget(label);
    row->addWidget(Text1);
    row->addStretch(1);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setWordWrap(true);
    Label1->setMinimumWidth(theme.Px(320));
    column->addLayout(row);
    column->addWidget(Label1);
    Add_Buttons();
    connect(Text1, &QSpinBox::valueChanged, this, &frmSetPitch::Show_Result);
    Show_Result();
    Text1->selectAll();
}

int frmSetPitch::Lost_Notes() const {
    int lost = 0;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!session.channels->Is_Live_Row(row))
            continue;
        const ChannelClass& store = session.channels->Store(row);
        for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
            const auto event = store.ReadEvent(i);
            if (!event || event->Note == nullptr)
                continue;
            const int moved = event->Note->Note + Text1->value();
            lost += moved < 0 || moved > HIGHEST_NOTE ? 1 : 0;
        }
    }
    return lost;
}

void frmSetPitch::Show_Result() {
    const int semitones = std::abs(Text1->value());
    QString text = semitones == 0 ? tr("The song stays as it is.")
                                  : tr("%1 octaves and %2 semitones %3.")
                                        .arg(semitones / OCTAVE)
                                        .arg(semitones % OCTAVE)
                                        .arg(Text1->value() > 0 ? tr("up") : tr("down"));
    if (const int lost = Lost_Notes(); lost > 0)
        text += QLatin1Char('\n') +
                tr("%1 note(s) leave the range of notes (0-127) and are deleted; undo brings them back.")
                    .arg(lost);
    Label1->setText(text);
}

void frmSetPitch::accept() {
    Text1->interpretText();
    // A run that began meanwhile plays the song as it is.
    if (session.transport.Song_Runs())
        return;
    if (Text1->value() != 0)
        session.hub->Message(this, MSG_TRANSPOSE_SONG, std::int32_t{Text1->value()});
    QDialog::accept();
}

} // namespace tonvex
