#include "song/windows/frm_set_speed.h"

#include "base/rounding.h"
#include "song/time_text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int LEAST_PERCENT = 10;
constexpr int MOST_PERCENT = 1000;
constexpr int UNCHANGED = 100;

QString Minutes_And_Seconds(double ms) {
    const std::int64_t seconds = RoundHalfUp(ms / 1000.0);
    return QStringLiteral("%1:%2")
        .arg(seconds / 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

frmSetSpeed::frmSetSpeed(Session& owner, const Theme& look, QWidget* parent)
    : Plain_Dialog(look, tr("Change speed"), tr("Play the song faster or slower"), parent), session(owner),
      Text1(new QSpinBox(this)), Label1(new QLabel(this)) {
    setObjectName(QStringLiteral("frmSetSpeed"));
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(tr("&Speed:"), this);
    label->setBuddy(Text1);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Speed in percent"));
    Text1->setRange(LEAST_PERCENT, MOST_PERCENT);
    Text1->setValue(UNCHANGED);
    Text1->setSuffix(tr(" %"));
    Text1->setButtonSymbols(QAbstractSpinBox::NoButtons);
    row->addWidget(label);
    row->addWidget(Text1);
    row->addStretch(1);
    Label1->setObjectName(QStringLiteral("Label1"));
    column->addLayout(row);
    column->addWidget(Label1);
    Add_Buttons();
    connect(Text1, &QSpinBox::valueChanged, this, &frmSetSpeed::Show_Length);
    Show_Length();
    Text1->selectAll();
}

double frmSetSpeed::Factor() const {
    return static_cast<double>(UNCHANGED) / Text1->value();
}

void frmSetSpeed::Show_Length() {
    // Marks and tempo changes stay where they are.
    const double beats =
        std::max(session.channels->Longest_Channel_Beats() * Factor(), session.marks.Last_Beat());
    const double ms = Beats_To_MS(beats, session.tempoChanges, session.project);
    Label1->setText(tr("New length: ") + QString::fromStdString(Format_Beats(beats)) + tr(" (bars:beats)") +
                    QStringLiteral("   ") + Minutes_And_Seconds(ms) + tr(" (mm:ss)"));
}

void frmSetSpeed::accept() {
    Text1->interpretText();
    // A run that began meanwhile plays the song as it is.
    if (session.transport.Song_Runs())
        return;
    if (Text1->value() != UNCHANGED)
        session.hub->Message(this, MSG_CHANGE_SPEED, Factor());
    QDialog::accept();
}

} // namespace tonvex
