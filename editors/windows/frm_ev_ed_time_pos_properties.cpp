#include "editors/windows/frm_ev_ed_time_pos_properties.h"

#include "editors/event_texts.h"
#include "song/time_text.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tonvex {

frmEvEd_TimePosProperties::frmEvEd_TimePosProperties(User_Dialogs& userDialogs, const Theme& look,
                                                     QWidget* parent)
    : Plain_Dialog(look, tr("Time Properties"), tr("Start and length of the selected events"), parent),
      dialogs(userDialogs), Text1(new QLineEdit(this)), Text2(new QLineEdit(this)),
      Check1(new QCheckBox(tr("&Add/Subtract"), this)), barBeat(new QRadioButton(tr("&Bar:Beat"), this)),
      beats(new QRadioButton(tr("B&eats"), this)) {
    setObjectName(QStringLiteral("frmEvEd_TimePosProperties"));
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Start"));
    Text2->setObjectName(QStringLiteral("Text2"));
    Text2->setAccessibleName(tr("Length"));
    Check1->setObjectName(QStringLiteral("Check1"));
    barBeat->setObjectName(QStringLiteral("barBeat"));
    beats->setObjectName(QStringLiteral("beats"));
    barBeat->setChecked(true);
    auto* fields = new QFormLayout;
    fields->setSpacing(theme.Px(8));
    fields->addRow(tr("&Start at:"), Text1);
    fields->addRow(tr("&Length:"), Text2);
    auto* formats = new QHBoxLayout;
    formats->addWidget(barBeat);
    formats->addWidget(beats);
    formats->addStretch(1);
    fields->addRow(tr("Format:"), formats);
    column->addLayout(fields);
    column->addWidget(Check1);
    auto* hint =
        new QLabel(tr("Use the Add/Subtract option to add the value to the current length/start of the "
                      "event(s)."),
                   this);
    hint->setProperty("dim", true);
    hint->setWordWrap(true);
    hint->setMinimumWidth(theme.Px(340));
    column->addWidget(hint);
    Add_Buttons();
    connect(barBeat, &QRadioButton::clicked, this, &frmEvEd_TimePosProperties::Write_Fields);
    connect(beats, &QRadioButton::clicked, this, &frmEvEd_TimePosProperties::Write_Fields);
    connect(Check1, &QCheckBox::clicked, this, [this] {
        // What stands there meant a place, not a difference.
        Text1->clear();
        Text2->clear();
        Text1->setFocus();
    });
    Text1->setFocus();
}

bool frmEvEd_TimePosProperties::Bar_Beat() const {
    return barBeat->isChecked();
}

bool frmEvEd_TimePosProperties::Adds() const {
    return Check1->isChecked();
}

void frmEvEd_TimePosProperties::Show_Times(double startBeat, std::optional<double> lengthBeats) {
    start = startBeat;
    length = lengthBeats;
    Text2->setEnabled(lengthBeats.has_value());
    Write_Fields();
    Text1->selectAll();
}

/// The values shown last in the other format.
void frmEvEd_TimePosProperties::Write_Fields() {
    const bool adds = Adds();
    const auto position = [&](double value) {
        if (adds)
            return Distance_Text(value, Bar_Beat());
        // Bars and beats count from 1.
        if (!Bar_Beat())
            return Beats_Text(value);
        const std::string distance = Distance_Text(value, true);
        const std::size_t colon = distance.find(':');
        return std::to_string(std::stoll(distance.substr(0, colon)) + 1) + ":" +
               Beats_Text(value - 4.0 * static_cast<double>(std::stoll(distance.substr(0, colon))) + 1.0);
    };
    if (start)
        Text1->setText(QString::fromStdString(position(*start)));
    if (length)
        Text2->setText(QString::fromStdString(Distance_Text(*length, Bar_Beat())));
}

bool frmEvEd_TimePosProperties::Read_Fields() {
    const auto read = [&](const QLineEdit& field, bool distance, std::optional<double>& value) {
        const std::string text = field.text().trimmed().toStdString();
        value.reset();
        if (text.empty() || !field.isEnabled())
            return true;
        value = distance ? Parse_Distance(text, Bar_Beat()) : Parse_Position(text, Bar_Beat());
        if (!value)
            dialogs.Show_Message(Box_Kind::Warning, "Invalid value: " + text);
        return value.has_value();
    };
    return read(*Text1, Adds(), start) && read(*Text2, true, length);
}

void frmEvEd_TimePosProperties::accept() {
    if (Read_Fields())
        QDialog::accept();
}

} // namespace tonvex
