// The controls of the chord window: where they stand and what they are called.

#include "input/windows/frm_qchord_config.h"

#include "widgets/scroll_part.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSlider>
#include <QVBoxLayout>

#include <utility>

namespace tonvex {

namespace {

constexpr int OCTAVES = 6;
constexpr int LEAST_HEIGHT = 230;
constexpr int MOST_VOLUME = 127;
constexpr int MOST_NAME = static_cast<int>(QChord_Edit::NAME_LENGTH);

QListWidget* Named_List(QWidget* parent, const char* name, const QString& told) {
    auto* list = new QListWidget(parent);
    list->setObjectName(QLatin1String(name));
    list->setAccessibleName(told);
    list->ensurePolished(); // rows are laid out as soon as one is chosen
    return list;
}

QLineEdit* Named_Field(QWidget* parent, const char* name, const QString& told) {
    auto* field = new QLineEdit(parent);
    field->setObjectName(QLatin1String(name));
    field->setAccessibleName(told);
    return field;
}

QLabel* Label_For(QWidget* field, const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(field);
    return label;
}

QPushButton* Named_Button(QWidget* parent, const char* name, const QString& text) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

} // namespace

void frmQChordConfig::Make_Controls() {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(16));
    about = new QLabel(tr("What the chord key plays"), this);
    about->setObjectName(QStringLiteral("about"));
    about->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    all->addWidget(about);
    all->addLayout(Make_Kinds());
    auto* content = new QWidget(this);
    auto* columns = new QHBoxLayout(content);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(theme.Px(24));
    columns->addWidget(Make_Chord_Part(), 1);
    auto* right = new QVBoxLayout;
    right->setSpacing(theme.Px(12));
    right->addWidget(Make_Name_Part());
    right->addWidget(Make_Picking_Part(), 1);
    columns->addLayout(right, 1);
    all->addWidget(new Scroll_Part(theme, content, {0, LEAST_HEIGHT}, this), 1);
    Command5 = Named_Button(this, "Command5", tr("&Test chord"));
    Command5->setToolTip(tr("Sounds the chord on the selected channel until it is stopped"));
    cancel = Named_Button(this, "cancel", tr("&Cancel"));
    ok = Named_Button(this, "ok", tr("O&K"));
    ok->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Command5);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(ok);
    all->addLayout(buttons);
    // All of it in sight, where the screen has room.
    resize(sizeHint().expandedTo({theme.Px(780), theme.Px(600)}).boundedTo(screen()->availableSize()));
}

QLayout* frmQChordConfig::Make_Kinds() {
    sources = new QButtonGroup(this);
    auto* kinds = new QHBoxLayout;
    kinds->setSpacing(theme.Px(16));
    const std::pair<Chord_Source, QString> rows[] = {{Chord_Source::Piano, tr("P&iano chord")},
                                                     {Chord_Source::Guitar, tr("&Guitar chord")},
                                                     {Chord_Source::Custom, tr("Custo&m chord")}};
    for (const auto& [source, text] : rows) {
        auto* button = new QRadioButton(text, this);
        sources->addButton(button, static_cast<int>(source));
        kinds->addWidget(button);
    }
    kinds->addStretch(1);
    return kinds;
}

QWidget* frmQChordConfig::Make_Chord_Part() {
    auto* part = new QWidget(this);
    auto* grid = new QGridLayout(part);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(theme.Px(12));
    grid->setVerticalSpacing(theme.Px(8));
    List1 = Named_List(part, "List1", tr("Root"));
    for (int root = 0; root < 12; ++root)
        List1->addItem(QString::fromStdString(session.notes.RootName(root)));
    List2 = Named_List(part, "List2", tr("Chord type"));
    for (const Chord_Type& type : session.notes.ChordTypeTable)
        List2->addItem(QString::fromStdString(type.TypeName + " (" + type.Suffix + ")"));
    List1->setMinimumSize(theme.Px(72), theme.Px(160));
    List1->setMaximumWidth(theme.Px(96));
    List2->setMinimumWidth(theme.Px(150));
    Combo1 = new QComboBox(part);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->setAccessibleName(tr("Octave"));
    Combo1->addItem(tr("Use Active Octave"));
    for (int octave = 1; octave <= OCTAVES; ++octave)
        Combo1->addItem(tr("Octave %1").arg(octave));
    edit = Named_Button(part, "edit", tr("&Edit"));
    edit->setAccessibleName(tr("Edit the notes of the custom chord"));
    Label7 = new QLabel(part);
    Label7->setObjectName(QStringLiteral("Label7"));
    grid->addWidget(Label_For(List1, tr("&Root:"), part), 1, 0);
    grid->addWidget(Label_For(List2, tr("T&ype:"), part), 1, 1);
    grid->addWidget(List1, 2, 0);
    grid->addWidget(List2, 2, 1);
    grid->addWidget(Label_For(Combo1, tr("&Octave:"), part), 3, 0);
    grid->addWidget(Combo1, 3, 1);
    grid->addWidget(edit, 4, 0);
    grid->addWidget(Label7, 4, 1);
    grid->setRowStretch(2, 1);
    grid->setColumnStretch(1, 1);
    return part;
}

QWidget* frmQChordConfig::Make_Name_Part() {
    auto* part = new QWidget(this);
    auto* grid = new QGridLayout(part);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(theme.Px(12));
    grid->setVerticalSpacing(theme.Px(8));
    Text3 = Named_Field(part, "Text3", tr("Chord name"));
    Text3->setMaxLength(MOST_NAME);
    VScroll1 = new QSlider(Qt::Horizontal, part);
    VScroll1->setObjectName(QStringLiteral("VScroll1"));
    VScroll1->setAccessibleName(tr("Volume"));
    VScroll1->setRange(0, MOST_VOLUME);
    VScroll1->setPageStep(16);
    volumeValue = new QLabel(part);
    volumeValue->setFont(theme.Digits(Text_Size::Body));
    volumeValue->setMinimumWidth(theme.Px(32));
    volumeValue->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(Label_For(Text3, tr("&Name:"), part), 0, 0);
    grid->addWidget(Text3, 0, 1, 1, 2);
    grid->addWidget(Label_For(VScroll1, tr("&Volume:"), part), 1, 0);
    grid->addWidget(VScroll1, 1, 1);
    grid->addWidget(volumeValue, 1, 2);
    return part;
}

QWidget* frmQChordConfig::Make_Picking_Part() {
    auto* part = new QWidget(this);
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(theme.Px(8));
    Check1 = new QCheckBox(tr("       &Use picking style:"), part);
    Check1->setObjectName(QStringLiteral("Check1"));
    column->addWidget(Check1);
    auto* note =
        new QLabel(tr("If use picking style is not selected, all notes are hit simultaneously."), part);
    note->setProperty("dim", true);
    note->setWordWrap(true);
    column->addWidget(note);
    frame = new QWidget(part);
    auto* grid = new QGridLayout(frame);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(theme.Px(12));
    grid->setVerticalSpacing(theme.Px(8));
    Text2 = Named_Field(frame, "Text2", tr("Picking pattern"));
    Text2->setPlaceholderText(tr("1 is the lowest"));
    QLayout* presets = Make_Presets(); // in the order in which Tab goes through
    Text1 = Named_Field(frame, "Text1", tr("Picking delay in milliseconds"));
    Text1->setPlaceholderText(tr("milliseconds"));
    Check3 = new QCheckBox(frame);
    Check3->setObjectName(QStringLiteral("Check3"));
    List3 = Named_List(frame, "List3", tr("Beats per note"));
    List3->setMinimumHeight(theme.Px(84));
    for (int row = 0; row < QChord_Edit::BEATS_ROWS; ++row)
        List3->addItem(QString::fromStdString(QChord_Edit::Beats_Text(row)));
    Check2 = new QCheckBox(tr("Repe&at"), frame);
    Check2->setObjectName(QStringLiteral("Check2"));
    Check2->setToolTip(tr("Plays the pattern again and again while the key is held"));
    grid->addWidget(Label_For(Text2, tr("Picking &Pattern:"), frame), 0, 0);
    grid->addWidget(Text2, 0, 1);
    grid->addLayout(presets, 1, 1);
    grid->addWidget(Label_For(Text1, tr("Picking &speed (Beats):"), frame), 2, 0);
    grid->addWidget(Text1, 2, 1);
    grid->addWidget(Check3, 3, 1);
    grid->addWidget(Label_For(List3, tr("Note &length:"), frame), 4, 0, Qt::AlignTop);
    grid->addWidget(List3, 4, 1);
    grid->addWidget(Check2, 5, 1);
    grid->setRowStretch(4, 1);
    grid->setColumnStretch(1, 1);
    column->addWidget(frame, 1);
    return part;
}

QLayout* frmQChordConfig::Make_Presets() {
    auto* grid = new QGridLayout;
    auto* group = new QButtonGroup(this);
    // A pattern that is typed and is none of these leaves all of them off.
    group->setExclusive(false);
    const std::pair<const char*, const char*> rows[] = {{"1 2 3 4 5 6", "&1 2 3 4 5 6"},
                                                        {"6 5 4 3 2 1", "&6 5 4 3 2 1"},
                                                        {"1 3 2 4", "1 &3 2 4"},
                                                        {"1 4 3 2", "1 &4 3 2"}};
    int place = 0;
    for (const auto& [pattern, text] : rows) {
        auto* button = new QRadioButton(QLatin1String(text), frame);
        button->setAccessibleName(tr("Picking pattern %1").arg(QLatin1String(pattern)));
        const QString whole = QLatin1String(pattern);
        connect(button, &QRadioButton::clicked, this, [this, button, whole] {
            Text2->setText(whole);
            button->setChecked(true);
        });
        connect(Text2, &QLineEdit::textChanged, button,
                [button, whole](const QString& typed) { button->setChecked(typed.simplified() == whole); });
        group->addButton(button);
        grid->addWidget(button, place / 2, place % 2);
        ++place;
    }
    return grid;
}

} // namespace tonvex
