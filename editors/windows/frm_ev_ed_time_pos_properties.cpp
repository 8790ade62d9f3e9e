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

namespace {

constexpr double BEATS_PER_BAR = 4.0;

} // namespace

frmEvEd_TimePosProperties::frmEvEd_TimePosProperties(User_Dialogs& userDialogs, const Theme& look,
                                                     QWidget* parent)
    : Plain_Dialog(look, tr("Time Properties"), tr("Start and length of the selected events"), parent),
      dialogs(userDialogs), start{.line = new QLineEdit(this)}, length{.line = new QLineEdit(this),
                                                                       .distance = true},
      barBeat(new QRadioButton(tr("&Bar:Beat"), this)), beats(new QRadioButton(tr("B&eats"), this)),
      Check1(new QCheckBox(tr("&Add/Subtract"), this)) {
    setObjectName(QStringLiteral("frmEvEd_TimePosProperties"));
    start.line->setObjectName(QStringLiteral("Text1"));
    start.line->setAccessibleName(tr("Start"));
    length.line->setObjectName(QStringLiteral("Text2"));
    length.line->setAccessibleName(tr("Length"));
    Check1->setObjectName(QStringLiteral("Check1"));
    barBeat->setObjectName(QStringLiteral("barBeat"));
    beats->setObjectName(QStringLiteral("beats"));
    barBeat->setChecked(true);
    auto* fields = new QFormLayout;
    fields->setSpacing(theme.Px(8));
    fields->addRow(tr("&Start at:"), start.line);
    fields->addRow(tr("&Length:"), length.line);
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
    connect(barBeat, &QRadioButton::toggled, this, &frmEvEd_TimePosProperties::Change_Format);
    connect(Check1, &QCheckBox::clicked, this, [this] {
        // What stands there meant a place, not a difference.
        for (Field* field : {&start, &length}) {
            field->line->clear();
            field->shown.clear();
        }
        start.line->setFocus();
    });
    start.line->setFocus();
}

bool frmEvEd_TimePosProperties::Bar_Beat() const {
    return barBeat->isChecked();
}

bool frmEvEd_TimePosProperties::Adds() const {
    return Check1->isChecked();
}

void frmEvEd_TimePosProperties::Show_Times(double startBeat, std::optional<double> lengthBeats) {
    start.value = startBeat;
    length.value = lengthBeats;
    length.line->setEnabled(lengthBeats.has_value());
    Write(start);
    Write(length);
    start.line->selectAll();
}

std::optional<double> frmEvEd_TimePosProperties::Value(const Field& field, bool inBars) const {
    const QString typed = field.line->text().trimmed();
    if (typed.isEmpty() || !field.line->isEnabled())
        return std::nullopt;
    // Left as it was shown it is meant as it came: who changes a length does not move the event.
    if (typed == field.shown)
        return field.value;
    const std::string text = typed.toStdString();
    return field.distance || Adds() ? Parse_Distance(text, inBars) : Parse_Position(text, inBars);
}

void frmEvEd_TimePosProperties::Write(Field& field) {
    const bool place = !field.distance && !Adds();
    if (!field.value || (place && *field.value < 0.0))
        return;
    std::string text = Distance_Text(*field.value, Bar_Beat());
    if (place && Bar_Beat()) {
        // Bars and beats count from 1.
        const std::int64_t bars = std::stoll(text.substr(0, text.find(':')));
        text = std::to_string(bars + 1) + ":" +
               Beats_Text(*field.value - BEATS_PER_BAR * static_cast<double>(bars) + 1.0);
    }
    field.shown = QString::fromStdString(text);
    field.line->setText(field.shown);
}

/// What stands in the fields, in the format chosen now; what is no value stays as it was typed.
void frmEvEd_TimePosProperties::Change_Format() {
    for (Field* field : {&start, &length})
        if (const auto typed = Value(*field, !Bar_Beat())) {
            field->value = typed;
            Write(*field);
        }
}

bool frmEvEd_TimePosProperties::Read_Fields() {
    std::optional<double> read[2];
    for (Field* field : {&start, &length}) {
        auto& value = read[field == &length ? 1 : 0];
        value = Value(*field, Bar_Beat());
        const QString typed = field->line->text().trimmed();
        if (value || typed.isEmpty() || !field->line->isEnabled())
            continue;
        dialogs.Show_Message(Box_Kind::Warning, "Invalid value: " + typed.toStdString());
        return false;
    }
    start.value = read[0];
    length.value = read[1];
    return true;
}

void frmEvEd_TimePosProperties::accept() {
    if (Read_Fields())
        QDialog::accept();
}

} // namespace tonvex
