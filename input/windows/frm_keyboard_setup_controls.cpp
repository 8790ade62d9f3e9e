// The controls of the keyboard window: where they stand and what they are called.

#include "input/windows/frm_keyboard_setup.h"

#include "input/windows/keyboard_view.h"
#include "widgets/help_button.h"
#include "widgets/scroll_part.h"
#include "widgets/segment_selector.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

namespace tonvex {

namespace {

constexpr int TUNINGS = 12;
constexpr int OCTAVES = 6;
constexpr int LEAST_WIDTH = 320;
constexpr int LEAST_HEIGHT = 150;

QPushButton* Named_Button(QWidget* parent, const char* name, const QString& text, const QString& tip) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    button->setAutoDefault(false);
    return button;
}

QHBoxLayout* Row_In(QWidget* line, const Theme& theme) {
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.Px(8));
    return row;
}

QLabel* Label_For(QWidget* field, const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(field);
    return label;
}

} // namespace

void frmKeyboardSetup::Make_Controls() {
    auto* content = new QWidget(this);
    auto* all = new QVBoxLayout(content);
    all->setContentsMargins(theme.Px(20), theme.Px(16), theme.Px(20), theme.Px(16));
    all->setSpacing(theme.Px(12));
    all->addWidget(Make_Layout_Row());
    all->addWidget(Make_Sound_Row());
    view = new Keyboard_View(theme, content);
    view->setObjectName(QStringLiteral("keys"));
    all->addWidget(view, 1);
    all->addWidget(Make_Key_Row());
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(new Scroll_Part(theme, content, {LEAST_WIDTH, LEAST_HEIGHT}, this));
    menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("keyMenu"));
}

QWidget* frmKeyboardSetup::Make_Layout_Row() {
    auto* line = new QWidget(this);
    auto* row = Row_In(line, theme);
    Combo1 = new QComboBox(line);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->setAccessibleName(tr("Keyboard layout"));
    Combo1->setMinimumWidth(theme.Px(200));
    modified = new QLabel(line);
    modified->setObjectName(QStringLiteral("modified"));
    modified->setProperty("dim", true);
    wbButton2 = Named_Button(line, "wbButton2", tr("Sa&ve as..."), tr("Save the layout under a new name"));
    wbButton3 = Named_Button(line, "wbButton3", tr("&Delete..."), tr("Delete the layout in force"));
    Command3 = Named_Button(line, "Command3", tr("&Save as template"),
                            tr("Save this layout and the sound of the selected channel as a template for new "
                               "channels"));
    wbButton4 = Named_Button(line, "wbButton4", tr("Pract&ice"),
                             tr("Try the keys on a piano; nothing is recorded (Escape ends it)"));
    wbButton4->setCheckable(true);
    row->addWidget(Label_For(Combo1, tr("Keyboard &layout:"), line));
    row->addWidget(Combo1);
    row->addWidget(wbButton2);
    row->addWidget(wbButton3);
    row->addWidget(Command3);
    row->addWidget(modified);
    row->addStretch(1);
    row->addWidget(wbButton4);
    return line;
}

QWidget* frmKeyboardSetup::Make_Sound_Row() {
    auto* line = new QWidget(this);
    auto* row = Row_In(line, theme);
    tuning = new QComboBox(line);
    tuning->setObjectName(QStringLiteral("mnuKeyboardTuning"));
    tuning->setAccessibleName(tr("Keyboard tuning"));
    for (int root = 0; root < TUNINGS; ++root)
        tuning->addItem(QString());
    matchSongKey = new QCheckBox(tr("Match song &key"), line);
    matchSongKey->setObjectName(QStringLiteral("matchSongKey"));
    notesOctave = new Segment_Selector(theme, tr("Notes Octave"), tr("F1 to F6"), OCTAVES, line);
    notesOctave->setObjectName(QStringLiteral("notesOctave"));
    chordsOctave = new Segment_Selector(theme, tr("QChords Octave"), tr("F7 to F12"), OCTAVES, line);
    chordsOctave->setObjectName(QStringLiteral("chordsOctave"));
    row->addWidget(Label_For(tuning, tr("&Tuning:"), line));
    row->addWidget(tuning);
    row->addWidget(matchSongKey);
    row->addStretch(1);
    row->addWidget(Label_For(notesOctave, tr("&Notes Octave"), line));
    row->addWidget(notesOctave);
    row->addSpacing(theme.Px(12));
    row->addWidget(Label_For(chordsOctave, tr("&QChords Octave"), line));
    row->addWidget(chordsOctave);
    return line;
}

QWidget* frmKeyboardSetup::Make_Key_Row() {
    auto* line = new QWidget(this);
    auto* row = Row_In(line, theme);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(theme.Px(2));
    keyText = new QLabel(line);
    keyText->setObjectName(QStringLiteral("keyText"));
    auto* hint = new QLabel(tr("Double click on a key to config."), line);
    hint->setObjectName(QStringLiteral("hint"));
    hint->setProperty("dim", true);
    texts->addWidget(keyText);
    texts->addWidget(hint);
    functions =
        Named_Button(line, "functions", tr("F&unction..."), tr("What the selected key does (Menu key)"));
    configure = Named_Button(line, "configure", tr("Confi&gure..."),
                             tr("Set the note or chord of the selected key (Enter)"));
    row->addLayout(texts, 1);
    row->addWidget(functions);
    row->addWidget(configure);
    row->addWidget(Make_Help_Button(line, QStringLiteral("window-keyboard setup")));
    return line;
}

} // namespace tonvex
