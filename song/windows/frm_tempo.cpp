#include "song/windows/frm_tempo.h"

#include "song/time_text.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSpinBox>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <limits>

namespace tonvex {

namespace {

constexpr int ID_ROLE = Qt::UserRole;

QSpinBox* Make_Tempo_Field(const QString& name, const char* objectName, QWidget* parent) {
    auto* field = new QSpinBox(parent);
    field->setObjectName(QLatin1String(objectName));
    field->setAccessibleName(name);
    field->setRange(1, std::numeric_limits<std::int16_t>::max());
    field->setSuffix(QObject::tr(" BPM"));
    field->setButtonSymbols(QAbstractSpinBox::NoButtons);
    // Half a number is no tempo.
    field->setKeyboardTracking(false);
    return field;
}

} // namespace

frmTempo::frmTempo(Session& owner, const Theme& theme, QWidget* parent) : QDialog(parent), session(owner) {
    setWindowTitle(tr("Tempo changes"));
    setObjectName(QStringLiteral("frmTempo"));
    Make_Controls(theme);
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        if (msgId == MSG_GENERAL_UPDATE || msgId == MSG_SET_TEMPO || msgId == MSG_MOVE_TEMPO_CHANGE ||
            (msgId >= MSG_ADD_TEMPO_CHANGE && msgId <= MSG_SET_TEMPO_CHANGE))
            Update_View();
    });
    Update_View();
}

frmTempo::~frmTempo() {
    // A field that has the focus loses it on the way out, and there is nobody left to hear of it.
    songTempo->disconnect(this);
    session.events.Unsubscribe(subscription);
}

void frmTempo::Make_Controls(const Theme& theme) {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    auto* about = new QLabel(tr("Tempo of the song"), this);
    about->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    all->addWidget(about);

    auto* base = new QHBoxLayout;
    auto* baseLabel = new QLabel(tr("&Tempo from the start:"), this);
    songTempo = Make_Tempo_Field(tr("Tempo from the start"), "songTempo", this);
    baseLabel->setBuddy(songTempo);
    connect(songTempo, &QSpinBox::valueChanged, this, [this](int tempo) {
        if (tempo != session.project.ProjectTempo)
            session.hub->Message(this, MSG_SET_TEMPO, std::int32_t{tempo});
    });
    base->addWidget(baseLabel);
    base->addWidget(songTempo);
    base->addStretch(1);
    all->addLayout(base);

    auto* listLabel = new QLabel(tr("Chan&ges:"), this);
    List1 = new QTreeWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Tempo changes"));
    List1->setRootIsDecorated(false);
    List1->setUniformRowHeights(true);
    List1->setHeaderLabels({tr("Position"), tr("Tempo")});
    List1->header()->setSectionResizeMode(QHeaderView::Stretch);
    List1->setMinimumSize(theme.Px(320), theme.Px(180));
    listLabel->setBuddy(List1);
    connect(List1, &QTreeWidget::currentItemChanged, this, &frmTempo::Show_Selected);
    auto* deleteKey = new QShortcut(QKeySequence(Qt::Key_Delete), List1);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, &frmTempo::Remove);
    all->addWidget(listLabel);
    all->addWidget(List1, 1);
    all->addWidget(Make_Fields(theme));

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(theme.Px(8));
    buttons->addWidget(Make_Button(tr("&Add"), "add", &frmTempo::Add));
    changeButton = Make_Button(tr("&Change"), "change", &frmTempo::Change);
    deleteButton = Make_Button(tr("&Delete"), "delete", &frmTempo::Remove);
    deleteButton->setToolTip(tr("Delete the selected change (Del)"));
    buttons->addWidget(changeButton);
    buttons->addWidget(deleteButton);
    buttons->addStretch(1);
    auto* close = new QPushButton(tr("C&lose"), this);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addWidget(close);
    all->addLayout(buttons);
}

QWidget* frmTempo::Make_Fields(const Theme& theme) {
    auto* fields = new QWidget(this);
    auto* row = new QHBoxLayout(fields);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.Px(8));
    auto* positionLabel = new QLabel(tr("&Position:"), fields);
    Text1 = new QLineEdit(QStringLiteral("1:1.0"), fields);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Position"));
    Text1->setToolTip(tr("Bar and beat, as in 3:2.5; Enter adds a change there"));
    positionLabel->setBuddy(Text1);
    connect(Text1, &QLineEdit::returnPressed, this, &frmTempo::Add);
    auto* here = Make_Button(tr("&Here"), "here", &frmTempo::Take_Play_Position);
    here->setAccessibleName(tr("Take the play position"));
    here->setToolTip(tr("Takes the play position"));
    auto* tempoLabel = new QLabel(tr("Te&mpo:"), fields);
    Text2 = Make_Tempo_Field(tr("Tempo"), "Text2", fields);
    Text2->setValue(session.project.ProjectTempo);
    tempoLabel->setBuddy(Text2);
    row->addWidget(positionLabel);
    row->addWidget(Text1, 1);
    row->addWidget(here);
    row->addWidget(tempoLabel);
    row->addWidget(Text2);
    return fields;
}

QPushButton* frmTempo::Make_Button(const QString& text, const char* name, void (frmTempo::*clicked)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, clicked);
    return button;
}

void frmTempo::Update_View() {
    const QSignalBlocker quietTempo(songTempo);
    songTempo->setValue(session.project.ProjectTempo);
    const auto selected = Selected();
    const QSignalBlocker quietList(List1);
    List1->clear();
    for (const TempoChange& change : session.tempoChanges.In_Time_Order()) {
        auto* item = new QTreeWidgetItem(
            {QString::fromStdString(Format_Beats(change.BeatN)), tr("%1 BPM").arg(change.Tempo)});
        item->setData(0, ID_ROLE, change.ID);
        List1->addTopLevelItem(item);
        if (selected == change.ID)
            List1->setCurrentItem(item);
    }
    changeButton->setEnabled(Selected().has_value());
    deleteButton->setEnabled(Selected().has_value());
}

std::optional<std::int32_t> frmTempo::Selected() const {
    const QTreeWidgetItem* item = List1->currentItem();
    return item == nullptr ? std::nullopt : std::optional(item->data(0, ID_ROLE).toInt());
}

void frmTempo::Show_Selected() {
    const auto id = Selected();
    changeButton->setEnabled(id.has_value());
    deleteButton->setEnabled(id.has_value());
    double beats = 0.0;
    std::int16_t tempo = 0;
    if (!id || !session.tempoChanges.GetTempoChange_byID(*id, beats, tempo))
        return;
    Text1->setText(QString::fromStdString(Format_Beats(beats)));
    Text2->setValue(tempo);
}

void frmTempo::Take_Play_Position() {
    Text1->setText(QString::fromStdString(Format_Beats(session.transport.PlayPosition)));
    Text1->setFocus();
}

void frmTempo::Say(const std::string& text) {
    session.doors.dialogs.Show_Message(Box_Kind::Warning, text);
    Text1->setFocus();
    Text1->selectAll();
}

std::optional<double> frmTempo::Typed_Position() {
    const auto beats = Parse_Beats(Text1->text().toStdString());
    if (beats && *beats >= 0.0 && *beats < TempoChangeClass::NO_CHANGE_BEAT)
        return beats;
    Say("Invalid Value");
    return std::nullopt;
}

bool frmTempo::Is_Free(double beats) {
    if (session.tempoChanges.ValidTempoBeatN(beats) == -1)
        return true;
    Say(tr("There is a tempo change at this position already. Select it in the list to change its tempo.")
            .toStdString());
    return false;
}

void frmTempo::Add() {
    Text2->interpretText(); // a mnemonic leaves the focus in the field
    const auto beats = Typed_Position();
    if (!beats || !Is_Free(*beats))
        return;
    session.hub->Message(this, MSG_ADD_TEMPO_CHANGE, *beats, std::int32_t{Text2->value()});
    const auto& changes = session.tempoChanges.In_Time_Order();
    for (std::size_t row = 0; row < changes.size(); ++row)
        if (changes[row].BeatN == *beats)
            List1->setCurrentItem(List1->topLevelItem(static_cast<int>(row)));
}

void frmTempo::Change() {
    const auto id = Selected();
    double beats = 0.0;
    std::int16_t tempo = 0;
    if (!id || !session.tempoChanges.GetTempoChange_byID(*id, beats, tempo))
        return;
    Text2->interpretText();
    const std::int32_t newTempo = Text2->value();
    const MsgManager::Batch batch(*session.hub); // one step, though both may change
    // The field shows tenths; a text that was not touched leaves the finer position alone.
    if (Text1->text().trimmed().toStdString() != Format_Beats(beats)) {
        const auto wanted = Typed_Position();
        if (!wanted || (*wanted != beats && !Is_Free(*wanted)))
            return;
        if (*wanted != beats)
            session.hub->Message(this, MSG_MOVE_TEMPO_CHANGE, *id, *wanted);
    }
    if (newTempo != tempo)
        session.hub->Message(this, MSG_SET_TEMPO_CHANGE, *id, newTempo);
}

void frmTempo::Remove() {
    if (const auto id = Selected())
        session.hub->Message(this, MSG_DELETE_TEMPO_CHANGE, *id);
}

} // namespace tonvex
